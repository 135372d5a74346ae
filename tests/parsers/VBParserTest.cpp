// The Visual Basic tokenizer on token streams and colours, and the handler
// operations on realistic scripts.
#include "codeedit/uSxCodeVBParser.h"
#include "parsers/ScriptTestSupport.h"

using namespace sx;
using namespace sx::uSxCodeVBParser;
using sxtest::LineFeed;
using sxtest::TScriptButton;

namespace {

/// Opens the scanner's own token kinds to the tests.
struct Probe : TSxCodeVBParser {
    Probe() : TSxCodeVBParser(nullptr) {}
    using TSxCodeVBParser::InternalGetNextToken;
};

struct VBParser : testing::Test, sxtest::ScriptScanner<Probe, vtEndOfFile, vtLineBreak, vtUnknown> {};
using VBMethods = sxtest::ScriptMethods<TSxCodeVBParser>;

const String LB = u"\r";

}  // namespace

TEST_F(VBParser, RealisticLinesGiveTheirTokens)
{
    EXPECT_EQ(ScanLines({u"Dim total ' running sum"}),
              (Tokens{{vtDim, u"Dim"}, {vtUnknown, u" "}, {vtIdentifier, u"total"}, {vtUnknown, u" "},
                      {vtComment, u"' running sum"}, {vtLineBreak, LB}}));
    EXPECT_EQ(Words(u"For i = 1 To 10: total = total + i * 2.5: Next"),
              (Tokens{{vtFor, u"For"}, {vtIdentifier, u"i"}, {vtEquals, u"="}, {vtNumber, u"1"}, {vtTo, u"To"},
                      {vtNumber, u"10"}, {vtUnknown, u":"}, {vtIdentifier, u"total"}, {vtEquals, u"="},
                      {vtIdentifier, u"total"}, {vtPlus, u"+"}, {vtIdentifier, u"i"}, {vtMultiply, u"*"},
                      {vtFloat, u"2.5"}, {vtUnknown, u":"}, {vtNext, u"Next"}}));
    EXPECT_EQ(Words(u"If x <> \"a\"\"b\" Then MsgBox(x & \"!\")"),
              (Tokens{{vtIf, u"If"}, {vtIdentifier, u"x"}, {vtNotEquals, u"<>"}, {vtString, u"\"a\"\"b\""},
                      {vtThen, u"Then"}, {vtIdentifier, u"MsgBox"}, {vtOpenParen, u"("}, {vtIdentifier, u"x"},
                      {vtConcat, u"&"}, {vtString, u"\"!\""}, {vtCloseParen, u")"}}));
}

TEST_F(VBParser, OperatorsAndUnknownCharacters)
{
    EXPECT_EQ(Words(u"<= <> < >= > .. . \\ ["),
              (Tokens{{vtLessEqual, u"<="}, {vtNotEquals, u"<>"}, {vtLess, u"<"}, {vtGreaterEqual, u">="},
                      {vtGreater, u">"}, {vtRange, u".."}, {vtPeriod, u"."}, {vtDivideInt, u"\\"},
                      {vtOpenBracket, u"["}}));
    EXPECT_EQ(Scan(u"<<="), (Tokens{{vtLess, u"<"}, {vtLessEqual, u"<="}}));
    EXPECT_EQ(Scan(u"  \t"), (Tokens{{vtUnknown, u" "}, {vtUnknown, u" "}, {vtUnknown, u"\t"}}));
    for (const auto& [kind, text] : Scan(u"!#%?@^`|~{}\u00E9\u4E00"))
        EXPECT_EQ(kind, vtUnknown) << StrToUtf8(text);
}

TEST_F(VBParser, KeywordsAreCaseBlindWholeWords)
{
    // Words that share their first letters.
    EXPECT_EQ(Words(u"ByVal BYREF end exit each else erase error elseif execute explicit executeglobal"),
              (Tokens{{vtByVal, u"ByVal"}, {vtByRef, u"BYREF"}, {vtEnd, u"end"}, {vtExit, u"exit"},
                      {vtEach, u"each"}, {vtElse, u"else"}, {vtErase, u"erase"}, {vtError, u"error"},
                      {vtElseIf, u"elseif"}, {vtExecute, u"execute"}, {vtExplicit, u"explicit"},
                      {vtExecuteGlobal, u"executeglobal"}}));
    for (const auto& [kind, text] : Words(u"And Or Not Is Nothing True Call New As Remark Rem1 _end ends"))
        EXPECT_EQ(kind, vtIdentifier) << StrToUtf8(text);
    EXPECT_EQ(Scan(u"x.End"), (Tokens{{vtIdentifier, u"x"}, {vtPeriod, u"."}, {vtEnd, u"End"}}));
}

TEST_F(VBParser, NumbersStringsAndTheDollarPrefix)
{
    EXPECT_EQ(Scan(u"1..5"), (Tokens{{vtNumber, u"1"}, {vtRange, u".."}, {vtNumber, u"5"}}));
    EXPECT_EQ(Scan(u"1.2.3"), (Tokens{{vtFloat, u"1.2"}, {vtPeriod, u"."}, {vtNumber, u"3"}}));
    EXPECT_EQ(Scan(u"1e5"), (Tokens{{vtNumber, u"1"}, {vtIdentifier, u"e5"}}));
    EXPECT_EQ(Scan(u"$10fg"), (Tokens{{vtNumber, u"$10f"}, {vtIdentifier, u"g"}}));
    EXPECT_EQ(Scan(u"&H10"), (Tokens{{vtConcat, u"&"}, {vtIdentifier, u"H10"}}));
    EXPECT_EQ(Scan(u"\"\"x"), (Tokens{{vtString, u"\"\""}, {vtIdentifier, u"x"}}));
    EXPECT_EQ(ScanLines({u"\"open ' rem", u"b"}),
              (Tokens{{vtString, u"\"open ' rem"}, {vtLineBreak, LB}, {vtIdentifier, u"b"}, {vtLineBreak, LB}}));
}

TEST_F(VBParser, CommentsRunToTheLineEnd)
{
    EXPECT_EQ(ScanLines({u"a REM b ' c", u"rEm", u"remark"}),
              (Tokens{{vtIdentifier, u"a"}, {vtUnknown, u" "}, {vtComment, u"REM b ' c"}, {vtLineBreak, LB},
                      {vtComment, u"rEm"}, {vtLineBreak, LB}, {vtIdentifier, u"remark"}, {vtLineBreak, LB}}));
    // at the end of input a comment is still followed by a line break
    EXPECT_EQ(Scan(u"x ' last"), (Tokens{{vtIdentifier, u"x"}, {vtUnknown, u" "}, {vtComment, u"' last"},
                                         {vtLineBreak, LB}}));
    // "(*" is no Visual Basic; it is a comment within its line, handed out whole
    EXPECT_EQ(Scan(u"a(* note *)b"), (Tokens{{vtIdentifier, u"a"}, {vtComment, u"(* note *)"},
                                             {vtIdentifier, u"b"}}));
    EXPECT_EQ(ScanLines({u"(*) x", u"y"}),
              (Tokens{{vtComment, u"(*) x"}, {vtLineBreak, LB}, {vtIdentifier, u"y"}, {vtLineBreak, LB}}));
}

TEST_F(VBParser, LineEndsAndTheEndOfInput)
{
    EXPECT_EQ(Scan(u"a\nb\rc"), (Tokens{{vtIdentifier, u"a"}, {vtIdentifier, u"b"}, {vtLineBreak, LB},
                                        {vtIdentifier, u"c"}}));
    EXPECT_EQ(Scan(u""), Tokens{});
    EXPECT_EQ(Scan(String(u"a") + Char(0) + u"b"), (Tokens{{vtIdentifier, u"a"}}));
}

TEST_F(VBParser, ColoursComeFromTheFirstRowAndPaintInfoRunsOnceOrTwice)
{
    TSxCodeVBParser p(nullptr);
    LineFeed feed{{u"Dim x = 1 ' c"}, &p};
    p.SetOnGetNewBuffer(std::ref(feed));
    std::vector<String> seen;
    p.SetOnPaintInfo([&seen](const String& token, TColor&, TColor& text, TFontStyles&) {
        seen.push_back(token);
        if (token == u"x")
            text = clMaroon;
    });
    // Dim, blank, x, blank, =, blank, 1, blank, the comment, the line break
    const std::vector<std::size_t> rows{1, 0, 4, 0, 6, 0, 5, 0, 3, 0};
    String text;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    std::size_t calls = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ASSERT_TRUE(p.GetNextToken(text, back, fore, style, lineBreak));
        const TSxVBInfo& row = DrawInfo[rows[i]];
        EXPECT_EQ(back, row.BckColor) << i;
        EXPECT_EQ(fore, text == u"x" ? clMaroon : row.TextColor) << i;
        EXPECT_EQ(style, row.Style) << i;
        EXPECT_EQ(lineBreak, i + 1 == rows.size()) << i;
        calls += rows[i] == 0 ? 1 : 2;
        EXPECT_EQ(seen.size(), calls) << i;
    }
    EXPECT_FALSE(p.GetNextToken(text, back, fore, style, lineBreak));
    EXPECT_EQ(seen.size(), calls + 1);  // the end token is shown to the listener too
}

TEST_F(VBParser, LinesAddUpAndARestartAtAnyLineGivesTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"'", u"\"", u"\"\"", u"(*", u"*)", u"(", u"rem", u"Rem ", u" ", u"\t", u"a",
                                   u"Sub", u"1", u".", u"..", u"$f", u"&", u"<>", u"\u00E9", u"x1"});
    ExpectAnyCharactersReachTheEnd();
}

TEST_F(VBParser, UnitStartAndStop)
{
    sxtest::ExpectUnitStartAndStop(u"TSxCodeVBParser", u"Visual Basic", DrawInfo, &Initialization, &Finalization);
}

namespace {

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

}  // namespace

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

TEST_F(VBMethods, SameMethodsFitByKindAndParameterCount)
{
    Feed(Script);
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"), u"Button1_OnClick\r\nlogClick\r\n");
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnKeyPress"), u"Helper\r\n");  // ByVal and ByRef are noise
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnValidate"), u"Validate\r\n");
    Feed({});
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"), u"");
}

TEST_F(VBMethods, MethodLineNrFindsHeadersCaseBlind)
{
    Feed(Script);
    EXPECT_EQ(parser.MethodLineNr(u"BUTTON1_ONCLICK"), 4);
    EXPECT_EQ(parser.MethodLineNr(u"helper"), 8);
    EXPECT_EQ(parser.MethodLineNr(u"LogClick"), 14);
    EXPECT_EQ(parser.MethodLineNr(u"clicks"), -1);
    // "exit sub" is taken for a header when an identifier follows it
    Feed({u"If done Then Exit Sub", u"count = 0"});
    EXPECT_EQ(parser.MethodLineNr(u"count"), 2);
    Feed({});
    EXPECT_EQ(parser.MethodLineNr(u"x"), -1);
}

TEST_F(VBMethods, AGeneratedHandlerIsFoundUnderBothNames)
{
    TScriptButton button2(nullptr, u"Button2");
    String name1, name2;
    const String text = Joined(Script) + parser.CreateMethod(&button1, u"OnClick", name1) +
                        parser.CreateMethod(&button2, u"OnClick", name2);
    parser.SetInputStream(sxtest::Utf16Stream(text), true);
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
