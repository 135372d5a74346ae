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

const String LB = u"\r";

TEST_F(VBParser, TokensOfShortTexts)
{
    const std::pair<String, Tokens> cases[] = {
        {u"x<=<><", {{vtIdentifier, u"x"}, {vtLessEqual, u"<="}, {vtNotEquals, u"<>"}, {vtLess, u"<"}}},
        {u"<<=>=>", {{vtLess, u"<"}, {vtLessEqual, u"<="}, {vtGreaterEqual, u">="}, {vtGreater, u">"}}},
        {u"...\\[:", {{vtRange, u".."}, {vtPeriod, u"."}, {vtDivideInt, u"\\"}, {vtOpenBracket, u"["},
                      {vtUnknown, u":"}}},
        {u"  \t", {{vtUnknown, u" "}, {vtUnknown, u" "}, {vtUnknown, u"\t"}}},
        {u"!#%?@{\u00E9", {{vtUnknown, u"!"}, {vtUnknown, u"#"}, {vtUnknown, u"%"}, {vtUnknown, u"?"},
                           {vtUnknown, u"@"}, {vtUnknown, u"{"}, {vtUnknown, u"\u00E9"}}},
        {u"x.End", {{vtIdentifier, u"x"}, {vtPeriod, u"."}, {vtEnd, u"End"}}},
        {u"1.2.3", {{vtFloat, u"1.2"}, {vtPeriod, u"."}, {vtNumber, u"3"}}},
        {u"&H10", {{vtConcat, u"&"}, {vtIdentifier, u"H10"}}},
        {u"\"a\"\"b\"x", {{vtString, u"\"a\"\"b\""}, {vtIdentifier, u"x"}}},
        // "(*" is no Visual Basic; it is a comment within its line, handed out whole
        {u"a(* note *)b", {{vtIdentifier, u"a"}, {vtComment, u"(* note *)"}, {vtIdentifier, u"b"}}},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(Scan(text), tokens) << StrToUtf8(text);
}

TEST_F(VBParser, KeywordsAreCaseBlindWholeWords)
{
    // words that share their first letters
    const String words[] = {u"ByVal", u"BYREF", u"end", u"exit", u"each", u"else", u"elseif", u"executeglobal"};
    const TVBToken tokens[] = {vtByVal, vtByRef, vtEnd, vtExit, vtEach, vtElse, vtElseIf, vtExecuteGlobal};
    for (std::size_t i = 0; i < std::size(words); ++i)
        EXPECT_EQ(Scan(words[i]), (Tokens{{tokens[i], words[i]}}));
    for (const String word : {u"And", u"Nothing", u"True", u"As", u"Remark", u"Rem1", u"_end", u"ends"})
        EXPECT_EQ(Scan(word), (Tokens{{vtIdentifier, word}}));
}

TEST_F(VBParser, CommentsRunToTheLineEnd)
{
    EXPECT_EQ(ScanLines({u"Dim total ' running sum", u"a REM b ' c", u"rEm", u"\"open ' rem", u"(*) x"}),
              (Tokens{{vtDim, u"Dim"}, {vtUnknown, u" "}, {vtIdentifier, u"total"}, {vtUnknown, u" "},
                      {vtComment, u"' running sum"}, {vtLineBreak, LB}, {vtIdentifier, u"a"}, {vtUnknown, u" "},
                      {vtComment, u"REM b ' c"}, {vtLineBreak, LB}, {vtComment, u"rEm"}, {vtLineBreak, LB},
                      {vtString, u"\"open ' rem"}, {vtLineBreak, LB}, {vtComment, u"(*) x"}, {vtLineBreak, LB}}));
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

const std::vector<String> Script{
    u"Option Explicit",                        // 1
    u"Dim clicks",                             // 2
    u"",                                       // 3
    u"Sub Button1_OnClick(Sender)",            // 4
    u"  clicks = clicks + 1",                  // 5
    u"  If clicks > 3 Then Exit Sub",          // 6
    u"End Sub",                                // 7
    u"Private Sub Helper(ByVal a, ByRef b)",   // 8
    u"  b = a * 2 ' doubles",                  // 9
    u"End Sub",                                // 10
    u"Function Validate(Sender, Value)",       // 11
    u"  Validate = Len(Value) > 0",            // 12
    u"End Function",                           // 13
    u"sub logClick(Sender) rem fits OnClick",  // 14
    u"end sub",                                // 15
};

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
