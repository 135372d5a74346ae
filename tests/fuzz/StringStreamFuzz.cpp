// Fuzz target for the text file reader: any bytes, written to a file and
// loaded with the encoding told from the file, read without a crash; a valid
// UTF-8 file and a UTF-16 file with a byte-order mark read back to exactly
// their text, and any other file loses no byte in the 8-bit reading. The same
// bytes given to the stream in each code page decode without a crash.
#include "FuzzSupport.h"

#include "platform/SxStringStream.h"

#include <fstream>
#include <optional>
#include <unistd.h>

using namespace sx;
using namespace sx::fuzz;

namespace {

/// The text of strictly well-formed UTF-8, or nothing.
std::optional<String> DecodeStrictUtf8(const std::uint8_t* p, std::size_t n)
{
    String out;
    std::size_t i = 0;
    while (i < n) {
        const std::uint8_t b = p[i];
        const std::size_t len = b < 0x80 ? 1 : (b & 0xE0) == 0xC0 ? 2 : (b & 0xF0) == 0xE0 ? 3 : (b & 0xF8) == 0xF0 ? 4 : 0;
        if (len == 0 || i + len > n)
            return std::nullopt;
        char32_t cp = len == 1 ? b : char32_t(b & (0x7F >> len));
        for (std::size_t k = 1; k < len; ++k) {
            if ((p[i + k] & 0xC0) != 0x80)
                return std::nullopt;
            cp = cp << 6 | (p[i + k] & 0x3F);
        }
        constexpr char32_t Smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (cp < Smallest[len] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return std::nullopt;
        if (cp < 0x10000) {
            out.push_back(Char(cp));
        } else {
            out.push_back(Char(0xD800 + ((cp - 0x10000) >> 10)));
            out.push_back(Char(0xDC00 + ((cp - 0x10000) & 0x3FF)));
        }
        i += len;
    }
    return out;
}

String Utf16Units(const std::uint8_t* p, std::size_t n, bool bigEndian)
{
    String out;
    for (std::size_t i = 0; i + 1 < n; i += 2)
        out.push_back(bigEndian ? Char(p[i] << 8 | p[i + 1]) : Char(p[i + 1] << 8 | p[i]));
    return out;
}

String LoadFile(const std::string& path)
{
    TSxStringStream stream(CodePages::Utf16LE, 16);
    stream.LoadFromFile(StrFromUtf8(path), CodePages::Detect);
    return stream.GetWString();
}

void CheckFileReading(const std::uint8_t* data, std::size_t size)
{
    static const std::string path = "/tmp/sx-fuzz-stream-" + std::to_string(getpid()) + ".txt";
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(reinterpret_cast<const char*>(data),
                                                                   std::streamsize(size));
    const String text = LoadFile(path);
    const bool utf8Mark = size >= 3 && data[0] == 0xEF && data[1] == 0xBB && data[2] == 0xBF;
    const bool leMark = size >= 2 && data[0] == 0xFF && data[1] == 0xFE;
    const bool beMark = size >= 2 && data[0] == 0xFE && data[1] == 0xFF;
    if (leMark || beMark) {
        if (size % 2 == 0)
            SX_FUZZ_CHECK(text == Utf16Units(data + 2, size - 2, beMark), "UTF-16 read back as " + Show(text));
        else
            SX_FUZZ_CHECK(text == Utf16Units(data + 2, size - 2, beMark) + u"\uFFFD", "odd UTF-16 tail");
        return;
    }
    const std::size_t skip = utf8Mark ? 3 : 0;
    if (const std::optional<String> decoded = DecodeStrictUtf8(data + skip, size - skip)) {
        SX_FUZZ_CHECK(text == *decoded, "UTF-8 read back as " + Show(text));
        return;
    }
    if (utf8Mark)
        return;  // a mark that lies: each bad byte is replaced, which the reader's own tests cover
    SX_FUZZ_CHECK(text.size() == size, "8-bit reading lost bytes");
    for (std::size_t i = 0; i < size; ++i)
        if (data[i] < 0x80 || data[i] >= 0xA0)
            SX_FUZZ_CHECK(text[i] == Char(data[i]), "byte " + std::to_string(i) + " changed");
}

void CheckEachCodePage(const std::uint8_t* data, std::size_t size)
{
    for (const Integer codePage : {CodePages::Utf8, CodePages::Utf16LE, CodePages::Utf16BE, CodePages::Windows1252}) {
        TSxStringStream stream(codePage, 0);
        if (size > 0)
            stream.Write(data, Integer(size));
        const String text = stream.GetWString();
        SX_FUZZ_CHECK(text.size() <= size, "more characters than bytes");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CheckFileReading(data, size);
    CheckEachCodePage(data, size);
    return 0;
}
