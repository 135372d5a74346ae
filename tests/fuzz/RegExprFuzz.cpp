// Fuzz target for TRegExpr: a random pattern (the input up to its first zero
// byte) over a random text (the rest), with the options of the first byte.
// A pattern either compiles or raises its error with an offset inside it; a
// hit lies in the text, is not empty, and matches again anchored where it
// was reported; a pattern said to keep within a line never gives a hit with
// a line feed; a runaway match ends with ERegExprLimit, never a hang.
#include "FuzzSupport.h"

#include "platform/RegExpr.h"

#include <optional>

using namespace sx;
using namespace sx::fuzz;

namespace {

/// Long enough for nested repeats to reach the match limit, short enough
/// that a backward search (one match per start) stays quick.
constexpr std::size_t MaxPatternBytes = 256;
constexpr std::size_t MaxTextBytes = 1024;

std::optional<TRegExpr> Compile(const String& pattern, TRegExprOptions options)
{
    try {
        return std::optional<TRegExpr>(std::in_place, pattern, options);
    } catch (const ERegExprError& e) {
        SX_FUZZ_CHECK(e.Offset() >= 0 && e.Offset() <= Integer(pattern.size()) + 1, Show(pattern));
        return std::nullopt;
    }
}

void CheckHit(TRegExpr& re, const String& pattern, const String& text, const TRegExprHit& hit, Integer from,
              Integer limit)
{
    if (!hit.Found())
        return;
    const std::string where = Show(pattern) + " in " + Show(text);
    SX_FUZZ_CHECK(hit.Start >= from && hit.Length > 0 && hit.End() <= limit, where);
    if (!re.SpansLines())
        SX_FUZZ_CHECK(text.find(u'\n', std::size_t(hit.Start)) >= std::size_t(hit.End()), where);
    // \G and \K tie a hit to where the search began; (?= and (?<= to text it was cut from.
    if (pattern.find(u"\\G") == String::npos && pattern.find(u"\\K") == String::npos && limit == Integer(text.size()))
        SX_FUZZ_CHECK(re.MatchesAt(text.data(), limit, hit.Start, hit.End()), where);
    re.Expand(u"$0${1}\\n$2${name}\\$");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::uint8_t flags = data[0];
    const auto* begin = data + 1;
    const auto* end = data + size;
    const auto* zero = std::find(begin, end, std::uint8_t(0));
    const String pattern = TextOf(begin, std::min(std::size_t(zero - begin), MaxPatternBytes));
    const String text =
        zero == end ? String() : TextOf(zero + 1, std::min(std::size_t(end - zero - 1), MaxTextBytes));
    std::optional<TRegExpr> re = Compile(pattern, {.CaseSensitive = (flags & 1) != 0, .WholeWord = (flags & 2) != 0});
    if (!re)
        return 0;
    const auto length = Integer(text.size());
    const Integer from = length == 0 ? 0 : Integer(flags >> 2) % length;
    try {
        CheckHit(*re, pattern, text, re->Find(text.data(), length, from), from, length);
        CheckHit(*re, pattern, text, re->FindLast(text.data(), length, 0, length - from), 0, length - from);
        const TRegExprHit more = re->Find(text.data(), length, from, true);
        CheckHit(*re, pattern, text, more, from, length);
    } catch (const ERegExprLimit&) {
        // a runaway match, ended as it should be
    }
    return 0;
}
