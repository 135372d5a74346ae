// Exceptions, string conversion and the classic string helpers.
#include "platform/SysUtils.h"

#include <algorithm>
#include <cmath>

namespace sx {

namespace {

void AppendUtf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

/// Length of the well-formed UTF-8 sequence at text[i], or 0 when it is not one
/// (bad lead byte, missing continuation, overlong form or a surrogate).
size_t Utf8SequenceLength(const std::string& text, size_t i)
{
    const auto b = static_cast<unsigned char>(text[i]);
    if (b < 0x80)
        return 1;
    const size_t length = b >= 0xF0 && b <= 0xF4 ? 4 : b >= 0xE0 ? 3 : b >= 0xC2 && b < 0xE0 ? 2 : 0;
    if (length == 0 || i + length > text.size())
        return 0;
    for (size_t k = 1; k < length; ++k)
        if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
            return 0;
    const auto b1 = static_cast<unsigned char>(text[i + 1]);
    if ((b == 0xE0 && b1 < 0xA0) || (b == 0xED && b1 >= 0xA0) || (b == 0xF0 && b1 < 0x90) || (b == 0xF4 && b1 >= 0x90))
        return 0;
    return length;
}

}  // namespace

String StrFromLatin1(const char* text)
{
    String result;
    for (const char* p = text; *p; ++p)
        result += static_cast<Char>(static_cast<unsigned char>(*p));
    return result;
}

String StrFromUtf8(const std::string& text)
{
    String result;
    result.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const size_t length = Utf8SequenceLength(text, i);
        if (length == 0) {
            result += u'\uFFFD';
            ++i;
            continue;
        }
        char32_t cp = static_cast<unsigned char>(text[i]) & (length == 1 ? 0x7F : 0x7F >> length);
        for (size_t k = 1; k < length; ++k)
            cp = (cp << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        if (cp >= 0x10000) {
            cp -= 0x10000;
            result += static_cast<Char>(0xD800 + (cp >> 10));
            result += static_cast<Char>(0xDC00 + (cp & 0x3FF));
        } else {
            result += static_cast<Char>(cp);
        }
        i += length;
    }
    return result;
}

std::string StrToUtf8(const String& text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const Char c = text[i];
        if (IsHighSurrogate(c) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            AppendUtf8(out, 0x10000 + ((char32_t(c) - 0xD800) << 10) + (char32_t(text[i + 1]) - 0xDC00));
            ++i;
        } else if (IsHighSurrogate(c) || IsLowSurrogate(c)) {
            AppendUtf8(out, 0xFFFD);
        } else {
            AppendUtf8(out, c);
        }
    }
    return out;
}

Exception::Exception(String message) : FMessage(std::move(message)), FUtf8(StrToUtf8(FMessage)) {}

void Abort() { throw EAbort(); }

Char UpCase(Char c) { return (c >= u'a' && c <= u'z') ? Char(c - 32) : c; }

String UpperCase(const String& s)
{
    String r(s);
    for (Char& c : r)
        c = UpCase(c);
    return r;
}

String LowerCase(const String& s)
{
    String r(s);
    for (Char& c : r)
        if (c >= u'A' && c <= u'Z')
            c = Char(c + 32);
    return r;
}

int CompareText(const String& a, const String& b)
{
    const size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        const int d = int(UpCase(a[i])) - int(UpCase(b[i]));
        if (d != 0)
            return d;
    }
    return int(a.size()) - int(b.size());
}

String Trim(const String& s)
{
    size_t first = 0;
    while (first < s.size() && s[first] <= u' ')
        ++first;
    size_t last = s.size();
    while (last > first && s[last - 1] <= u' ')
        --last;
    return s.substr(first, last - first);
}

String TrimRight(const String& s)
{
    size_t last = s.size();
    while (last > 0 && s[last - 1] <= u' ')
        --last;
    return s.substr(0, last);
}

Integer MulDiv(Integer a, Integer b, Integer c)
{
    if (c == 0)
        return -1;
    return Integer(std::llround(double(a) * double(b) / double(c)));
}

String IntToStr(long long value) { return StrFromLatin1(std::to_string(value).c_str()); }

}  // namespace sx
