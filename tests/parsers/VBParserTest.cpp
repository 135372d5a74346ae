// The Visual Basic tokenizer on token streams and the paint listener, and the
// handler operations on realistic scripts.
#include "codeedit/uSxCodeVBParser.h"
#include "parsers/ScriptTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeVBParser;
using sx::test::TScriptButton;

struct VBParser : testing::Test, sx::test::Scanner<TSxCodeVBParser, vtEndOfFile, vtLineBreak> {};
using VBMethods = sx::test::ScriptMethods<TSxCodeVBParser>;

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

// Handlers on lines 4, 8, 11 and 14.
const std::vector<String> Script{
    u"Option Explicit", u"Dim clicks", u"", u"Sub Button1_OnClick(Sender)", u"  clicks = clicks + 1",
    u"  If clicks > 3 Then Exit Sub", u"End Sub", u"Private Sub Helper(ByVal a, ByRef b)", u"  b = a * 2 ' doubles",
    u"End Sub", u"Function Validate(Sender, Value)", u"  Validate = Len(Value) > 0", u"End Function",
    u"sub logClick(Sender) rem fits OnClick", u"end sub"};

TEST_F(VBMethods, CreateMethodWritesASubOrAFunction)
{
    String name = u"old";
    EXPECT_EQ(parser.CreateMethod(&button1, u"OnClick", name),
              u"\r\nsub Button1_OnClick(Sender)\r\n  \r\nend sub rem Button1_OnClick\r\n");
    EXPECT_EQ(name, u"Button1_OnClick");
    EXPECT_EQ(parser.CreateMethod(&button1, u"OnValidate", name),
              u"\r\nfunction Button1_OnValidate(Sender, Value)\r\n  \r\nend function rem Button1_OnValidate\r\n");
    TScriptButton unnamed(nullptr);
    EXPECT_EQ(parser.CreateMethod(&unnamed, u"OnKeyPress", name),
              u"\r\nsub OnKeyPress(Sender, Key)\r\n  \r\nend sub rem OnKeyPress\r\n");
    EXPECT_EQ(name, u"OnKeyPress");
    EXPECT_EQ(parser.CreateMethod(&button1, u"OnIdle", name),
              u"\r\nsub Button1_OnIdle()\r\n  \r\nend sub rem Button1_OnIdle\r\n");
    // without a method description there is nothing to write
    EXPECT_EQ(parser.CreateMethod(&button1, u"Caption", name), u"");
    EXPECT_EQ(parser.CreateMethod(nullptr, u"OnClick", name), u"");
    EXPECT_EQ(parser.GetSameMethods(nullptr, u"OnClick"), u"");
}

TEST_F(VBMethods, SameMethodsFitByKindAndParameterCountAndLinesAreFoundCaseBlind)
{
    Feed(Script);
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"), u"Button1_OnClick\r\nlogClick\r\n");
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnKeyPress"), u"Helper\r\n");  // ByVal and ByRef are noise
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnValidate"), u"Validate\r\n");
    EXPECT_EQ(parser.MethodLineNr(u"BUTTON1_ONCLICK"), 4);
    EXPECT_EQ(parser.MethodLineNr(u"helper"), 8);
    EXPECT_EQ(parser.MethodLineNr(u"LogClick"), 14);
    EXPECT_EQ(parser.MethodLineNr(u"clicks"), -1);
    // "exit sub" is taken for a header when an identifier follows it
    Feed({u"If done Then Exit Sub", u"count = 0"});
    EXPECT_EQ(parser.MethodLineNr(u"count"), 2);
    Feed({});
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"), u"");
    EXPECT_EQ(parser.MethodLineNr(u"x"), -1);
}

TEST_F(VBMethods, AGeneratedHandlerIsFoundUnderBothNames)
{
    TScriptButton button2(nullptr, u"Button2");
    String name1, name2;
    const String text = Joined(Script) + parser.CreateMethod(&button1, u"OnClick", name1) +
                        parser.CreateMethod(&button2, u"OnClick", name2);
    parser.SetInputStream(sx::test::Utf16Stream(text), true);
    // the name behind "end sub rem" is comment text, no header
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"),
              u"Button1_OnClick\r\nlogClick\r\nButton1_OnClick\r\nButton2_OnClick\r\n");
    EXPECT_EQ(parser.MethodLineNr(name1), 4);  // the first header of a name wins
    EXPECT_EQ(parser.MethodLineNr(name2), 21);
    EXPECT_EQ(parser.MethodLineNr(name2), 21);  // each scan rewinds the stream
}

TEST_F(VBMethods, MethodScansWorkOnAnyFeed)
{
    const String source = Joined(Script);
    std::size_t next = 0;  // one character per piece
    parser.SetOnGetNewBuffer([&](bool reset, String& s) {
        if (reset)
            next = 0;
        else if (next < source.size())
            s.assign(1, source[next++]);
        return reset || !s.empty();
    });
    EXPECT_EQ(parser.MethodLineNr(u"validate"), 11);
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnKeyPress"), u"Helper\r\n");
    TSxCodeVBParser unfed(nullptr);
    EXPECT_EQ(unfed.MethodLineNr(u"Helper"), -1);
}

}  // namespace
