// The Visual Basic tokenizer on token streams and the paint listener, and the
// handler operations on realistic scripts.
#include "codeedit/uSxCodeVBParser.h"
#include "parsers/ScannerTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeVBParser;

struct VBParser : testing::Test, sx::test::Scanner<TSxCodeVBParser, vtEndOfFile, vtLineBreak> {};

// Tokens as {kind}text: 0 line break, 1 unknown, 4 identifier, 53 string,
// 55 number, 56 real number, 57 comment; keywords and symbols by number.
TEST_F(VBParser, TokensOfShortTexts)
{
    const std::pair<String, std::string> cases[] = {
        {u"x<=<><", "{4}x{66}<={64}<>{65}<"}, {u"<<=>=>", "{65}<{66}<={68}>={67}>"},
        {u"...\\[: \t", "{62}..{61}.{77}\\{71}[{1}:{1} {1}\t"}, {u"!#%?@{\u00E9", "{1}!{1}#{1}%{1}?{1}@{1}{{1}\u00E9"},
        {u"x.End", "{4}x{61}.{7}End"}, {u"1.2.3", "{56}1.2{61}.{55}3"}, {u"&H10", "{52}&{4}H10"},
        {u"\"a\"\"b\"x", "{53}\"a\"\"b\"{4}x"},
        // keywords are case-blind whole words
        {u"ByVal BYREF end exit", "{27}ByVal{1} {28}BYREF{1} {7}end{1} {17}exit"},
        {u"each else elseif executeglobal", "{21}each{1} {31}else{1} {32}elseif{1} {20}executeglobal"},
        {u"And Nothing Remark Rem1 _end ends", "{4}And{1} {4}Nothing{1} {4}Remark{1} {4}Rem1{1} {4}_end{1} {4}ends"},
        // "(*" is no Visual Basic; it is a comment within its line, handed out whole
        {u"a(* note *)b", "{4}a{57}(* note *){4}b"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(Dump(text), tokens) << StrToUtf8(text);
    // comments run to the line end
    EXPECT_EQ(DumpLines({u"Dim total ' running sum", u"a REM b ' c", u"rEm", u"\"open ' rem", u"(*) x"}),
              "{12}Dim{1} {4}total{1} {57}' running sum{0}\r{4}a{1} {57}REM b ' c{0}\r{57}rEm{0}\r"
              "{53}\"open ' rem{0}\r{57}(*) x{0}\r");
}

TEST_F(VBParser, PaintInfoRunsTwiceForATokenWithARowAndOnceForOthers)
{
    TSxCodeVBParser p(nullptr);
    sx::test::LineFeed feed{{u"Dim x"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    std::vector<String> seen;
    p.SetOnPaintInfo([&seen](const String& token, TColor&, TColor& text, TFontStyles&) {
        seen.push_back(token);
        if (token == u"x")
            text = clMaroon;
    });
    EXPECT_EQ(sx::test::Paint(p).Fore, DrawInfo[1].TextColor);
    EXPECT_EQ(sx::test::Paint(p).Fore, DrawInfo[0].TextColor);
    EXPECT_EQ(sx::test::Paint(p).Fore, clMaroon);
    EXPECT_TRUE(sx::test::Paint(p).LineBreak);
    EXPECT_FALSE(sx::test::Paint(p).More);
    // the line break and the end token are shown to the listener too
    EXPECT_EQ(seen, (std::vector<String>{u"Dim", u"Dim", u" ", u"x", u"x", u"\r", String(1, Char(0))}));
}

TEST_F(VBParser, LinesAddUpAndARestartAtAnyLineGivesTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"'", u"\"", u"\"\"", u"(*", u"*)", u"(", u"rem", u"Rem ", u" ", u"\t", u"a",
                                   u"Sub", u"1", u".", u"..", u"$f", u"&", u"<>", u"\u00E9", u"x1"});
}

}  // namespace
