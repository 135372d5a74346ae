// The text stream: reading a file into memory in one piece, telling its
// encoding, and decoding it straight into one UTF-16 string.
#include "platform/SxStringStream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace sx {

using namespace CodePages;

namespace {

using ByteSpan = std::span<const Byte>;

/// Bytes per fread: large enough that the cost of a call vanishes, small
/// enough to live beside the file's own buffer without being noticed.
constexpr std::size_t ReadChunkBytes = 64 * 1024;

constexpr Char ReplacementChar = 0xFFFD;

constexpr Byte Utf8Mark[] = {0xEF, 0xBB, 0xBF};
constexpr Byte Utf16LEMark[] = {0xFF, 0xFE};
constexpr Byte Utf16BEMark[] = {0xFE, 0xFF};

/// Windows-1252 from 0x80 to 0x9F. The five bytes the code page leaves
/// undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) keep their own value, so no byte
/// is lost. Every other byte is the code point of the same value.
constexpr std::array<Char, 32> Windows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

bool IsKnownCodePage(Integer codePage)
{
    return codePage == Utf16LE || codePage == Utf16BE || codePage == Windows1252 || codePage == Utf8;
}

void CheckCodePage(Integer codePage)
{
    if (!IsKnownCodePage(codePage))
        throw EConvertError(u"Unsupported code page " + IntToStr(codePage));
}

/// The byte-order mark of a code page; none for an 8-bit one.
ByteSpan MarkOf(Integer codePage)
{
    switch (codePage) {
    case Utf8:
        return Utf8Mark;
    case Utf16LE:
        return Utf16LEMark;
    case Utf16BE:
        return Utf16BEMark;
    default:
        return {};
    }
}

bool StartsWith(ByteSpan bytes, ByteSpan mark)
{
    return bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
}

/// The first byte at or after p with its high bit set, or end; eight at a time.
const Byte* SkipAscii(const Byte* p, const Byte* end)
{
    constexpr std::uint64_t HighBits = 0x8080808080808080ULL;
    while (end - p >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, sizeof word);
        if ((word & HighBits) != 0)
            break;
        p += 8;
    }
    while (p < end && *p < 0x80)
        ++p;
    return p;
}

bool IsContinuation(Byte b) { return (b & 0xC0) == 0x80; }

/// Length of the well-formed UTF-8 sequence at p (before end), or 0 when the
/// bytes there are none: a lone continuation byte, a lead byte no sequence
/// uses (C0, C1, F5 to FF), a sequence cut short, an overlong form, a
/// surrogate, or a code point beyond U+10FFFF.
std::size_t Utf8SequenceLength(const Byte* p, const Byte* end)
{
    const Byte lead = *p;
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || std::size_t(end - p) < length)
        return 0;
    for (std::size_t k = 1; k < length; ++k)
        if (!IsContinuation(p[k]))
            return 0;
    // The lead byte alone cannot rule these out; the second byte's range can.
    const Byte second = p[1];
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool surrogate = lead == 0xED && second >= 0xA0;
    const bool beyondUnicode = lead == 0xF4 && second >= 0x90;
    return overlong || surrogate || beyondUnicode ? 0 : length;
}

/// The code point of a well-formed sequence of 2 to 4 bytes.
char32_t Utf8SequenceValue(const Byte* p, std::size_t length)
{
    char32_t value = p[0] & (0x7Fu >> length);
    for (std::size_t k = 1; k < length; ++k)
        value = (value << 6) | (p[k] & 0x3Fu);
    return value;
}

bool IsValidUtf8(ByteSpan bytes)
{
    const Byte* p = bytes.data();
    const Byte* end = p + bytes.size();
    while ((p = SkipAscii(p, end)) < end) {
        const std::size_t length = Utf8SequenceLength(p, end);
        if (length == 0)
            return false;
        p += length;
    }
    return true;
}

Integer DetectCodePage(ByteSpan bytes)
{
    for (const Integer codePage : {Utf8, Utf16LE, Utf16BE})
        if (StartsWith(bytes, MarkOf(codePage)))
            return codePage;
    return IsValidUtf8(bytes) ? Utf8 : Windows1252;
}

Char* AppendCodePoint(Char* out, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        *out++ = Char(codePoint);
        return out;
    }
    codePoint -= 0x10000;
    *out++ = Char(0xD800 + (codePoint >> 10));
    *out++ = Char(0xDC00 + (codePoint & 0x3FF));
    return out;
}

/// The byte of a character in Windows-1252, or -1 when the code page has none.
int Windows1252Byte(Char c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return int(c);
    const auto* at = std::find(Windows1252High.begin(), Windows1252High.end(), c);
    return at == Windows1252High.end() ? -1 : 0x80 + int(at - Windows1252High.begin());
}

bool EncodeWindows1252(const String& text, TByteBuffer& out)
{
    for (const Char c : text) {
        const int byte = Windows1252Byte(c);
        if (byte < 0)
            return false;
        out.push_back(Byte(byte));
    }
    return true;
}

void EncodeUtf16(const String& text, bool bigEndian, TByteBuffer& out)
{
    for (const Char c : text) {
        const Byte high = Byte(c >> 8), low = Byte(c & 0xFF);
        out.insert(out.end(), bigEndian ? std::initializer_list<Byte>{high, low} : std::initializer_list<Byte>{low, high});
    }
}

/// Each byte that starts no well-formed sequence becomes one U+FFFD.
Char* DecodeUtf8(ByteSpan bytes, Char* out)
{
    const Byte* p = bytes.data();
    const Byte* end = p + bytes.size();
    while (p < end) {
        if (*p < 0x80) {
            *out++ = *p++;
            continue;
        }
        const std::size_t length = Utf8SequenceLength(p, end);
        if (length == 0) {
            *out++ = ReplacementChar;
            ++p;
            continue;
        }
        out = AppendCodePoint(out, Utf8SequenceValue(p, length));
        p += length;
    }
    return out;
}

/// Code units are taken as they stand, lone surrogates included; an odd
/// trailing byte becomes U+FFFD.
Char* DecodeUtf16(ByteSpan bytes, bool bigEndian, Char* out)
{
    const std::size_t high = bigEndian ? 0 : 1;
    const std::size_t unitCount = bytes.size() / 2;
    for (std::size_t i = 0; i < unitCount; ++i) {
        const Byte* unit = bytes.data() + 2 * i;
        *out++ = Char(unit[high] << 8 | unit[1 - high]);
    }
    if (bytes.size() % 2 != 0)
        *out++ = ReplacementChar;
    return out;
}

Char* DecodeWindows1252(ByteSpan bytes, Char* out)
{
    for (const Byte b : bytes)
        *out++ = b >= 0x80 && b <= 0x9F ? Windows1252High[b - 0x80] : Char(b);
    return out;
}

/// Decodes into a string sized once for the most units the bytes can give,
/// then cut to what was written: no allocation per character. No encoding
/// gives more units than it has bytes, an odd UTF-16 tail included.
template <class Decode>
String DecodeInto(std::size_t maxUnits, Decode decode)
{
    String text(maxUnits, u'\0');
    const Char* end = decode(text.data());
    text.resize(std::size_t(end - text.data()));
    return text;
}

bool IsAscii(const Byte* p, std::size_t n) { return SkipAscii(p, p + n) == p + n; }

/// Whether the bytes mean the same in Windows-1252 as in Latin-1: none lies
/// in 0x80 to 0x9F.
bool SameInLatin1(const Byte* p, std::size_t n)
{
    return std::none_of(p, p + n, [](Byte b) { return b >= 0x80 && b <= 0x9F; });
}

/// Whether any of the eight bytes of a word is zero (the classic bit trick).
bool HasZeroByte(std::uint64_t word)
{
    constexpr std::uint64_t Ones = 0x0101010101010101ULL;
    constexpr std::uint64_t HighBits = 0x8080808080808080ULL;
    return ((word - Ones) & ~word & HighBits) != 0;
}

/// The first CR or LF at or after p, or end, eight bytes at a time; ascii
/// tells whether every byte before it is below 0x80.
const Byte* FindLineEnd(const Byte* p, const Byte* end, bool& ascii)
{
    constexpr std::uint64_t Ones = 0x0101010101010101ULL;
    constexpr std::uint64_t HighBits = 0x8080808080808080ULL;
    std::uint64_t seen = 0;
    while (end - p >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, sizeof word);
        if (HasZeroByte(word ^ (Ones * '\r')) || HasZeroByte(word ^ (Ones * '\n')))
            break;
        seen |= word;
        p += 8;
    }
    while (p < end && *p != '\r' && *p != '\n')
        seen |= *p++;
    ascii = (seen & HighBits) == 0;
    return p;
}

/// Writes a decoded line at out, narrow where it fits one byte a character,
/// if it ends before roomEnd, and stores it there; else the store packs a
/// copy. Answers where the next line may go.
Byte* PutDecodedLine(TLineView line, Byte* out, const Byte* roomEnd, TStringList::TLoader& loader,
                     std::uint32_t block)
{
    const bool narrow = FitsNarrow(line.WideData(), line.size());
    Byte* at = narrow ? out : out + reinterpret_cast<std::uintptr_t>(out) % 2;
    const std::size_t bytes = line.size() * (narrow ? 1 : sizeof(Char));
    if (at > roomEnd || std::size_t(roomEnd - at) < bytes) {
        loader.Add(line);
        return out;
    }
    if (narrow) {
        std::transform(line.WideData(), line.WideData() + line.size(), at, [](Char c) { return Byte(c); });
        loader.AddInPlace(block, at, line.size());
    } else {
        std::memcpy(at, line.WideData(), bytes);
        loader.AddInPlace(block, reinterpret_cast<const Char*>(at), line.size());
    }
    return at + bytes;
}

/// Each line of 8-bit text, split as ForEachLine splits, written down over
/// the bytes already read (the line breaks close up, and so does the room
/// that decoding frees) and stored where it lies; a decoded line that does
/// not fit there yet is packed apart. The memory past the last line goes
/// back to the system.
template <class Keep, class Decode>
void AddByteLines(Byte* begin, Byte* end, TStringList::TLoader& loader, std::uint32_t block, String& scratch,
                  Keep keepsBytes, Decode decode)
{
    Byte* out = begin;
    const Byte* start = begin;
    while (start < end) {
        bool ascii;
        const Byte* p = FindLineEnd(start, end, ascii);
        const auto n = std::size_t(p - start);
        if (p < end && *p == '\r')
            ++p;
        if (p < end && *p == '\n')
            ++p;
        if (ascii || keepsBytes(start, n)) {
            std::memmove(out, start, n);
            loader.AddInPlace(block, out, n);
            out += n;
        } else {
            scratch.resize(n);
            const Char* last = decode(ByteSpan(start, n), scratch.data());
            out = PutDecodedLine(TLineView(scratch.data(), std::size_t(last - scratch.data())), out, p, loader, block);
        }
        start = p;
    }
    loader.GiveBackTail(block, out);
}

/// How many LF bytes there are: room for the lines, made at once.
std::size_t CountLineFeeds(ByteSpan bytes)
{
    std::size_t count = 0;
    if (bytes.empty())
        return count;
    const Byte* p = bytes.data();
    const Byte* const end = p + bytes.size();
    while ((p = static_cast<const Byte*>(std::memchr(p, '\n', std::size_t(end - p)))) != nullptr) {
        ++count;
        ++p;
    }
    return count;
}

/// The lines of UTF-16 bytes, split at the code units CR and LF; an odd
/// trailing byte is one more character, U+FFFD.
void AddUtf16Lines(ByteSpan bytes, bool bigEndian, TStringList::TLoader& loader, String& scratch)
{
    const std::size_t high = bigEndian ? 0 : 1;
    const std::size_t units = bytes.size() / 2 + bytes.size() % 2;
    const auto unit = [&](std::size_t i) {
        if (2 * i + 1 >= bytes.size())
            return ReplacementChar;
        return Char(bytes[2 * i + high] << 8 | bytes[2 * i + 1 - high]);
    };
    std::size_t i = 0;
    while (i < units) {
        scratch.clear();
        for (Char c; i < units && (c = unit(i)) != u'\r' && c != u'\n'; ++i)
            scratch += c;
        loader.Add(TLineView(scratch.data(), scratch.size()));
        if (i < units && unit(i) == u'\r')
            ++i;
        if (i < units && unit(i) == u'\n')
            ++i;
    }
}

/// The system's reason comes as UTF-8 (or ASCII) in the C library's locale.
/// The system's reason for a failed file operation, as text.
String ReasonText(const char* reason)
{
    const ByteSpan bytes(reinterpret_cast<const Byte*>(reason), std::strlen(reason));
    return DecodeInto(bytes.size(), [&](Char* out) { return DecodeUtf8(bytes, out); });
}

[[noreturn]] void RaiseOpenError(const String& fileName, const char* reason)
{
    throw EFOpenError(u"Cannot open file \"" + fileName + u"\". " + ReasonText(reason));
}

FileHandle OpenForReading(const String& fileName, const std::string& path)
{
    FileHandle file(std::fopen(path.c_str(), "rb"));
    if (!file)
        RaiseOpenError(fileName, std::strerror(errno));
    // A directory opens for reading on some systems and fails only at the first read.
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        RaiseOpenError(fileName, std::strerror(EISDIR));
    return file;
}

/// The file's size where the system tells it, else 0: a pipe or a file under
/// /proc tells none, and its buffer grows as it is read.
std::uintmax_t SizeHint(const std::string& path)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return error ? 0 : size;
}

}  // namespace

TSxStringStream::TSxStringStream(Integer aCodePage, Integer /*aCapacityHint*/) : FCodePage(aCodePage)
{
    CheckCodePage(aCodePage);
}

void TSxStringStream::LoadFromFile(const String& aFileName, Integer aCodePage)
{
    if (aCodePage != Detect)
        CheckCodePage(aCodePage);
    ReadFile(aFileName);
    FCodePage = aCodePage == Detect ? DetectCodePage(Bytes()) : aCodePage;
    SetPosition(0);
}

void TSxStringStream::SaveToFile(const String& aFileName) const
{
    const FileHandle file(std::fopen(StrToUtf8(aFileName).c_str(), "wb"));
    const TByteBuffer& bytes = Bytes();
    const bool written = file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() &&
                         std::fflush(file.get()) == 0;
    if (!written)
        throw EFCreateError(u"Cannot create file \"" + aFileName + u"\". " + ReasonText(std::strerror(errno)));
}

void TSxStringStream::ReadFile(const String& aFileName)
{
    const std::string path = StrToUtf8(aFileName);
    const FileHandle file = OpenForReading(aFileName, path);
    Clear();
    // Read straight into a buffer of the told size; a file with no size (a
    // pipe) or one that grew meanwhile goes on in chunks, which are added
    // only when they bring something, so that a buffer of the right size
    // never grows.
    TByteBuffer bytes(std::size_t(SizeHint(path)));
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    std::vector<Byte> chunk(ReadChunkBytes);
    while (!std::ferror(file.get())) {
        const std::size_t got = std::fread(chunk.data(), 1, chunk.size(), file.get());
        if (got == 0)
            break;
        bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + std::ptrdiff_t(got));
    }
    if (std::ferror(file.get()))
        RaiseOpenError(aFileName, std::strerror(errno));
    SetBytes(std::move(bytes));
}

void TSxStringStream::TakeLines(TStringList& Lines)
{
    TByteBuffer bytes = TakeBytes();
    ByteSpan text(bytes);
    const ByteSpan mark = MarkOf(FCodePage);
    if (StartsWith(text, mark))
        text = text.subspan(mark.size());
    // The buffer moves into the store, its bytes stay where they are.
    Byte* const begin = bytes.data() + (text.data() - bytes.data());
    Byte* const end = begin + text.size();
    String scratch;
    Lines.Load(CountLineFeeds(text) + 1, [&](TStringList::TLoader& loader) {
        switch (FCodePage) {
        case Utf16LE:
        case Utf16BE:
            AddUtf16Lines(text, FCodePage == Utf16BE, loader, scratch);
            break;
        case Utf8:
            AddByteLines(begin, end, loader, loader.Adopt(std::move(bytes)), scratch, IsAscii, DecodeUtf8);
            break;
        default:
            AddByteLines(begin, end, loader, loader.Adopt(std::move(bytes)), scratch, SameInLatin1, DecodeWindows1252);
        }
    });
}

String TSxStringStream::GetWString() const
{
    ByteSpan bytes = Bytes();
    const ByteSpan mark = MarkOf(FCodePage);
    if (StartsWith(bytes, mark))
        bytes = bytes.subspan(mark.size());
    const std::size_t maxUnits = bytes.size();
    switch (FCodePage) {
    case Utf8:
        return DecodeInto(maxUnits, [&](Char* out) { return DecodeUtf8(bytes, out); });
    case Utf16LE:
    case Utf16BE:
        return DecodeInto(maxUnits / 2 + maxUnits % 2,
                          [&](Char* out) { return DecodeUtf16(bytes, FCodePage == Utf16BE, out); });
    default:
        return DecodeInto(maxUnits, [&](Char* out) { return DecodeWindows1252(bytes, out); });
    }
}

bool TSxStringStream::HasByteOrderMark() const { return StartsWith(Bytes(), MarkOf(FCodePage)); }

bool TSxStringStream::IsWellFormed() const
{
    const TByteBuffer& bytes = Bytes();
    switch (FCodePage) {
    case Utf8:
        return !HasByteOrderMark() || IsValidUtf8(ByteSpan(bytes).subspan(sizeof Utf8Mark));
    case Utf16LE:
    case Utf16BE:
        return bytes.size() % 2 == 0;
    default:
        return true;
    }
}

std::size_t TSxStringStream::UnitSize() const { return FCodePage == Utf16LE || FCodePage == Utf16BE ? 2 : 1; }

Char TSxStringStream::AsciiUnitAt(std::size_t AOffset) const
{
    const TByteBuffer& bytes = Bytes();
    if (UnitSize() == 1)
        return bytes[AOffset] < 0x80 ? Char(bytes[AOffset]) : Char(0xFFFF);
    const std::size_t low = FCodePage == Utf16BE ? 1 : 0;
    return bytes[AOffset + 1 - low] == 0 && bytes[AOffset + low] < 0x80 ? Char(bytes[AOffset + low]) : Char(0xFFFF);
}

String TSxStringStream::FirstLineBreak() const
{
    const std::size_t step = UnitSize(), size = Bytes().size();
    for (std::size_t i = 0; i + step <= size; i += step) {
        const Char c = AsciiUnitAt(i);
        if (c == u'\n')
            return u"\n";
        if (c == u'\r')
            return i + 2 * step <= size && AsciiUnitAt(i + step) == u'\n' ? u"\r\n" : u"\r";
    }
    return String();
}

bool TSxStringStream::EndsWithLineBreak() const
{
    const std::size_t step = UnitSize(), size = Bytes().size();
    if (size < step || size % step != 0)
        return false;
    const Char last = AsciiUnitAt(size - step);
    return last == u'\n' || last == u'\r';
}

bool TSxStringStream::SetWString(const String& AText, Integer aCodePage, bool aMark)
{
    CheckCodePage(aCodePage);
    TByteBuffer bytes;
    if (aMark) {
        const ByteSpan mark = MarkOf(aCodePage);
        bytes.assign(mark.begin(), mark.end());
    }
    switch (aCodePage) {
    case Windows1252:
        if (!EncodeWindows1252(AText, bytes))
            return false;
        break;
    case Utf8: {
        const std::string utf8 = StrToUtf8(AText);
        bytes.insert(bytes.end(), utf8.begin(), utf8.end());
        break;
    }
    default:
        EncodeUtf16(AText, aCodePage == Utf16BE, bytes);
    }
    SetBytes(std::move(bytes));
    FCodePage = aCodePage;
    return true;
}

}  // namespace sx
