// Shared pieces of the fuzz targets: lines split as the line store keeps
// them, and a check that stops the run with a message when an invariant breaks.
#pragma once

#include "platform/StringList.h"
#include "platform/SysUtils.h"
#include "platform/Types.h"
#include "support/ByteReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace sx::fuzz {

using test::ByteReader;
using test::TextOf;

/// Stops the run: libFuzzer keeps the input that got here as a crash.
[[noreturn]] inline void Fail(const char* what, const std::string& detail = std::string())
{
    std::fprintf(stderr, "invariant broken: %s %s\n", what, detail.c_str());
    std::abort();
}

#define SX_FUZZ_CHECK(cond, detail)         \
    do {                                    \
        if (!(cond))                        \
            ::sx::fuzz::Fail(#cond, detail); \
    } while (false)

/// A string for a failure message, in UTF-8, with control characters as \xNN.
inline std::string Show(const String& s)
{
    std::string out = "\"";
    for (const Char c : s) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "\\x%02X", unsigned(c));
        out += c < 32 ? std::string(hex) : StrToUtf8(String(1, c));
    }
    return out + "\"";
}

/// The lines of a text as the line store keeps them: split at CR LF, a lone
/// CR or a lone LF, with no line behind a final break.
inline std::vector<String> SplitLines(const String& text)
{
    TStringList store;
    store.SetText(text);
    std::vector<String> lines;
    for (Integer i = 0; i < store.Count(); ++i)
        lines.push_back(store.Get(i));
    return lines;
}

/// Feeds the lines to the parser, each with CR LF, from the first again each
/// time the parser starts again.
template <class TParser>
void Feed(TParser& parser, std::vector<String> lines)
{
    parser.SetOnGetNewBuffer([lines = std::move(lines), next = std::size_t(0)](bool AReset, String& S) mutable {
        next = AReset ? 0 : next;
        if (AReset || next >= lines.size())
            return AReset;
        S = lines[next++] + u"\r\n";
        return true;
    });
}

}  // namespace sx::fuzz
