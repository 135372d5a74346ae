// TRegExpr: hits forward and backward, case and whole words, groups in
// replacements, compile errors with their offsets, the match limit on a
// catastrophic pattern, and which patterns may span lines.
#include "platform/RegExpr.h"

#include <gtest/gtest.h>

#include <string>

using namespace sx;

namespace {

/// A hit as "start+length", "more" for NeedsMore, "-" for none.
std::string Show(const TRegExprHit& hit)
{
    return hit.NeedsMore ? "more" : hit.Found() ? std::to_string(hit.Start) + "+" + std::to_string(hit.Length) : "-";
}

const TRegExprOptions Blind{.CaseSensitive = false};
const TRegExprOptions Word{.WholeWord = true};

TEST(RegExpr, FindsForwardAndBackward)
{
    const struct {
        String pattern; TRegExprOptions options; String subject; int from; int limit; std::string hit;
    } cases[] = {
        // limit < 0: forward from `from`; otherwise the last hit in [from, limit]
        {u"b+", {}, u"abbcb", 0, -1, "1+2"},
        {u"b+", {}, u"abbcb", 2, -1, "2+1"},
        {u"B", {}, u"abc", 0, -1, "-"},
        {u"B", Blind, u"abc", 0, -1, "1+1"},
        {u"\u00C9t\u00C9", Blind, u"\u00E9t\u00E9", 0, -1, "0+3"},  // case-blind beyond ASCII
        {u"x*", {}, u"ab", 0, -1, "-"},                               // never an empty hit
        {u"^b", {}, u"a\nb", 0, -1, "2+1"},                           // ^ and $ at line breaks
        {u"cat", Word, u"cats cat", 0, -1, "5+3"},
        {u"a|b", Word, u"a_b", 0, -1, "0+1"},  // the underscore stands apart, as in the plain search
        {u"\U0001F600", {}, u"x\U0001F600", 0, -1, "1+2"},  // a pair of surrogates is one character
        {u"aa", {}, u"aaa", 0, 3, "1+2"},                   // backward: the latest start
        {u"a+", {}, u"aaa", 0, 2, "1+1"},                   // ending at the limit
        {u"ab", {}, u"abab", 0, 1, "-"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.pattern) + " in " + StrToUtf8(c.subject));
        TRegExpr re(c.pattern, c.options);
        const auto length = Integer(c.subject.size());
        const TRegExprHit hit = c.limit < 0 ? re.Find(c.subject.data(), length, c.from)
                                            : re.FindLast(c.subject.data(), length, c.from, c.limit);
        EXPECT_EQ(Show(hit), c.hit);
    }
}

TEST(RegExpr, NeedsMoreWhenTheHitCouldGrowPastTheBuffer)
{
    const struct { String pattern; String subject; std::string hit; } cases[] = {
        {u"a\\nb", u"xa", "more"}, {u"a+", u"xaa", "more"}, {u"a$", u"xa", "more"}, {u"a+", u"aab", "0+2"},
    };
    for (const auto& c : cases) {
        TRegExpr re(c.pattern);
        EXPECT_EQ(Show(re.Find(c.subject.data(), Integer(c.subject.size()), 0, true)), c.hit) << StrToUtf8(c.pattern);
    }
}

TEST(RegExpr, ExpandsGroupsNamesAndEscapes)
{
    const struct { String pattern; String subject; String replacement; String expected; } cases[] = {
        {u"(\\w+)=(\\w+)", u"key=val", u"$2=$1 ($0)", u"val=key (key=val)"},
        {u"(?<k>\\w+)=(?<v>\\w+)", u"a=b", u"${v}:${k}:${1}", u"b:a:a"},
        {u"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)", u"abcdefghijk", u"$11$10$1", u"kja"},
        {u"(a)", u"a", u"$12 $9 ${nope}", u"a2  "},  // $1 then "2"; missing groups give nothing
        {u"(a)|(b)", u"b", u"[$1]", u"[]"},            // a group that took no part
        {u"a", u"a", u"\\n\\t\\\\\\$1\\q$x$", u"\n\t\\$1\\q$x$"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.pattern));
        TRegExpr re(c.pattern);
        ASSERT_TRUE(re.Find(c.subject.data(), Integer(c.subject.size()), 0).Found());
        EXPECT_EQ(re.Expand(c.replacement), c.expected);
    }
}

TEST(RegExpr, ABadPatternRaisesPcresTextAndOffset)
{
    const struct { String pattern; TRegExprOptions options; const char* text; Integer offset; } cases[] = {
        {u"ab(c", {}, "missing closing parenthesis", 4},
        {u"a)b", Word, "unmatched closing parenthesis", 1},  // the offset in the user's pattern
        {u"[z-a]", {}, "range out of order", 3},
        {u"a{2,1}", {}, "numbers out of order", 5},
    };
    for (const auto& c : cases) {
        try {
            TRegExpr re(c.pattern, c.options);
            ADD_FAILURE() << "compiled: " << StrToUtf8(c.pattern);
        } catch (const ERegExprError& e) {
            EXPECT_NE(StrToUtf8(e.Message()).find(c.text), std::string::npos) << StrToUtf8(e.Message());
            EXPECT_EQ(e.Offset(), c.offset) << StrToUtf8(c.pattern);
        }
    }
}

TEST(RegExpr, ACatastrophicPatternEndsWithTheMatchLimit)
{
    const String subject = String(40, u'a') + u"b";
    for (const TRegExprOptions options : {TRegExprOptions{}, Blind}) {
        TRegExpr re(u"(a+)+$", options);
        EXPECT_THROW(re.Find(subject.data(), Integer(subject.size()), 0), ERegExprLimit);
        EXPECT_THROW(re.FindLast(subject.data(), Integer(subject.size()), 0, 41), ERegExprLimit);
    }
}

TEST(RegExpr, OnlyPatternsThatCanMatchALineFeedSpanLines)
{
    const struct { const char16_t* pattern; bool spans; } cases[] = {
        {u"foo.*bar", false}, {u"^\\w+\\s*$", true}, {u"[a-z\\d_]+\\b", false}, {u"a\\nb", true},
        {u"a\\Rb", true}, {u"[^x]", true}, {u"[\\s\\S]", true}, {u"(?s).", true}, {u"(?i:a.)", false},
        {u"(*CR).", true}, {u"\\x0a", true}, {u"\\012", true}, {u"(a)\\1", false}, {u"[\\t-z]", true},
        {u"[[:alpha:]]", false}, {u"[[:space:]]", true}, {u"\\N+", false}, {u"\\N{U+000A}", true},
        {u"\\p{Cc}", true}, {u"\\Qa\\E", true}, {u"\\z", true}, {u"[]a]", false}, {u"\\S\\h\\V", false},
        {u"a\nb", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PatternMaySpanLines(c.pattern), c.spans) << StrToUtf8(c.pattern);
}

}  // namespace
