// The JavaScript tokenizer: token streams, block comments across lines and a
// restart inside one, and the handler operations on realistic scripts.
#include "codeedit/uSxCodeJSParser.h"
#include "parsers/ScriptTestSupport.h"

using namespace sx;
using namespace sx::uSxCodeJSParser;
using sxtest::LineFeed;
using sxtest::TScriptButton;

namespace {

/// Opens the scanner's own token kinds to the tests.
struct Probe : TSxCodeJSParser {
    Probe() : TSxCodeJSParser(nullptr) {}
    using TSxCodeJSParser::InternalGetNextToken;
};

struct JSParser : testing::Test, sxtest::ScriptScanner<Probe, vtEndOfFile, vtLineBreak, vtUnknown> {};
using JSMethods = sxtest::ScriptMethods<TSxCodeJSParser>;

const String LB = u"\r";

}  // namespace

TEST_F(JSParser, RealisticLinesGiveTheirTokens)
{
    std::vector<Integer> kinds;
    EXPECT_EQ(ScanLines({u"n = 0; /* shared", u"   state */"}, 0, &kinds),
              (Tokens{{vtIdentifier, u"n"}, {vtUnknown, u" "}, {vtEquals, u"="}, {vtUnknown, u" "},
                      {vtNumber, u"0"}, {vtSemicolon, u";"}, {vtUnknown, u" "}, {vtComment, u"/* shared"},
                      {vtLineBreak, LB}, {vtComment, u"   state */"}, {vtLineBreak, LB}}));
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 1}));
    EXPECT_EQ(Words(u"if (n >= 3 && s) { n = n + 1.5; }"),
              (Tokens{{vtIf, u"if"}, {vtOpenParen, u"("}, {vtIdentifier, u"n"}, {vtGreaterEqual, u">="},
                      {vtNumber, u"3"}, {vtConcat, u"&"}, {vtConcat, u"&"}, {vtIdentifier, u"s"},
                      {vtCloseParen, u")"}, {vtBegin, u"{"}, {vtIdentifier, u"n"}, {vtEquals, u"="},
                      {vtIdentifier, u"n"}, {vtPlus, u"+"}, {vtFloat, u"1.5"}, {vtSemicolon, u";"}, {vtEnd, u"}"}}));
}

TEST_F(JSParser, WhatDiffersFromVisualBasic)
{
    EXPECT_EQ(Scan(u"'abc'"), (Tokens{{vtUnknown, u"'"}, {vtIdentifier, u"abc"}, {vtUnknown, u"'"}}));
    EXPECT_EQ(Scan(u"\"abc\""), (Tokens{{vtString, u"\"abc\""}}));
    EXPECT_EQ(Scan(u"(*x"), (Tokens{{vtOpenParen, u"("}, {vtMultiply, u"*"}, {vtIdentifier, u"x"}}));
    EXPECT_EQ(Words(u"a / b // c / d"),
              (Tokens{{vtIdentifier, u"a"}, {vtDivide, u"/"}, {vtIdentifier, u"b"}, {vtComment, u"// c / d"}}));
    EXPECT_EQ(Words(u"x = \"/* no */\" == y != z"),
              (Tokens{{vtIdentifier, u"x"}, {vtEquals, u"="}, {vtString, u"\"/* no */\""}, {vtEquals, u"="},
                      {vtEquals, u"="}, {vtIdentifier, u"y"}, {vtUnknown, u"!"}, {vtEquals, u"="},
                      {vtIdentifier, u"z"}}));
    // an escaped quote is not known: the backslash is string text and the quote ends the string
    EXPECT_EQ(Scan(u"\"a\\\"b"), (Tokens{{vtString, u"\"a\\\""}, {vtIdentifier, u"b"}}));
    EXPECT_EQ(ScanLines({u"{", u"}"}), (Tokens{{vtBegin, u"{"}, {vtLineBreak, LB}, {vtEnd, u"}"}, {vtLineBreak, LB}}));
}

TEST_F(JSParser, KeywordsAreTheVisualBasicListLessThree)
{
    EXPECT_EQ(Words(u"END else elseif Function executeglobal"),
              (Tokens{{vtEnd, u"END"}, {vtElse, u"else"}, {vtElseIf, u"elseif"}, {vtFunction, u"Function"},
                      {vtExecuteGlobal, u"executeglobal"}}));
    for (const auto& [kind, text] : Words(u"exit then until begin var return new this switch try catch"))
        EXPECT_EQ(kind, vtIdentifier) << StrToUtf8(text);
    EXPECT_EQ(Scan(u"x = rem;"), (Tokens{{vtIdentifier, u"x"}, {vtUnknown, u" "}, {vtEquals, u"="},
                                         {vtUnknown, u" "}, {vtComment, u"rem;"}}));
}

TEST_F(JSParser, BlockCommentsAcrossLines)
{
    std::vector<Integer> kinds;
    EXPECT_EQ(ScanLines({u"a /* one", u"", u"two *) three */ b", u"/* x */ c"}, 0, &kinds),
              (Tokens{{vtIdentifier, u"a"}, {vtUnknown, u" "}, {vtComment, u"/* one"}, {vtLineBreak, LB},
                      {vtComment, u""}, {vtLineBreak, LB},
                      {vtComment, u"two *) three */"}, {vtUnknown, u" "}, {vtIdentifier, u"b"}, {vtLineBreak, LB},
                      {vtComment, u"/* x */"}, {vtUnknown, u" "}, {vtIdentifier, u"c"}, {vtLineBreak, LB}}));
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 1, 1, 0}));
    // a line comment needs no state; the opening characters do not close a block comment
    ScanLines({u"// a /* b", u"/*/", u"x"}, 0, &kinds);
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 0, 1}));
}

TEST_F(JSParser, ARestartInsideACommentContinuesIt)
{
    EXPECT_EQ(ScanLines({u"still */ x"}, 1),
              (Tokens{{vtComment, u"still */"}, {vtUnknown, u" "}, {vtIdentifier, u"x"}, {vtLineBreak, LB}}));
    // an empty line inside the comment gets its empty piece, as in a scan from above
    EXPECT_EQ(ScanLines({u"", u"*/"}, 1),
              (Tokens{{vtComment, u""}, {vtLineBreak, LB}, {vtComment, u"*/"}, {vtLineBreak, LB}}));
    // kinds 2 and 3 are understood on input
    EXPECT_EQ(ScanLines({u"a } b"}, 2), (Tokens{{vtComment, u"a }"}, {vtUnknown, u" "}, {vtIdentifier, u"b"},
                                                {vtLineBreak, LB}}));
    EXPECT_EQ(ScanLines({u"a }", u"b"}, 3), (Tokens{{vtComment, u"a }"}, {vtLineBreak, LB}, {vtIdentifier, u"b"},
                                                    {vtLineBreak, LB}}));
}

TEST_F(JSParser, EndOfInputAndEndLinesFalse)
{
    Probe p;
    sxtest::FeedOnce(p, u"/* abc");
    String text;
    EXPECT_EQ(p.InternalGetNextToken(text), vtComment);
    EXPECT_EQ(text, u"/* abc");
    EXPECT_EQ(p.LineKind(), 0);
    EXPECT_EQ(p.RemarkEnd(), u"");
    EXPECT_EQ(p.InternalGetNextToken(text), vtEndOfFile);

    EXPECT_EQ(Scan(u"/*a\r\nb*/ c", false), (Tokens{{vtComment, u"/*a\r\nb*/"}, {vtUnknown, u" "},
                                                    {vtIdentifier, u"c"}}));
    EXPECT_EQ(Scan(u"// x\r\ny", false), (Tokens{{vtComment, u"// x\r"}, {vtIdentifier, u"y"}}));
}

TEST_F(JSParser, BracesAreBoldReservedWords)
{
    TSxCodeJSParser p(nullptr);
    LineFeed feed{{u"{}"}, &p};
    p.SetOnGetNewBuffer(std::ref(feed));
    String text;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(p.GetNextToken(text, back, fore, style, lineBreak));
        EXPECT_EQ(fore, clBlue);
        EXPECT_EQ(style, TFontStyles{TFontStyle::fsBold});
    }
    EXPECT_TRUE(DrawInfo[6].Tokens.Contains(vtComment) && !DrawInfo[6].Tokens.Contains(vtFloat));
}

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on.
TEST_F(JSParser, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"/*", u"*/", u"//", u"/", u"*", u"\"", u"'", u"rem ", u" ", u"a", u"function",
                                   u"{", u"}", u"(", u"1.5", u"$f", u"\u00E9", u"<>"});
    ExpectAnyCharactersReachTheEnd();
}

namespace {

const std::vector<String> Script{
    u"// click handlers",                                                             // 1
    u"var clicks = 0;",                                                               // 2
    u"function Button1_OnClick(Sender)",                                              // 3
    u"{",                                                                             // 4
    u"  clicks = clicks + 1; /* counted",                                             // 5
    u"     function notAHeader(x) */",                                                // 6
    u"} // Button1_OnClick",                                                          // 7
    u"function add(a, b) { return a + b; } FUNCTION twice(x) { return add(x, x); }",  // 8
};

}  // namespace

TEST_F(JSMethods, CreateMethodWritesOneTemplateForEveryKind)
{
    String name;
    EXPECT_EQ(parser.CreateMethod(&button1, u"OnClick", name),
              u"\r\nfunction Button1_OnClick(Sender)\r\n{  \r\n} // Button1_OnClick\r\n");
    EXPECT_EQ(name, u"Button1_OnClick");
    TScriptButton unnamed(nullptr);
    EXPECT_EQ(parser.CreateMethod(&unnamed, u"OnValidate", name),
              u"\r\nfunction OnValidate(Sender, Value)\r\n{  \r\n} // OnValidate\r\n");
    EXPECT_EQ(name, u"OnValidate");
    EXPECT_EQ(parser.CreateMethod(&button1, u"Caption", name), u"");
}

TEST_F(JSMethods, FunctionsCountBehindBracesAndFitAnyKind)
{
    Feed(Script);
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"), u"Button1_OnClick\r\ntwice\r\n");
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnKeyPress"), u"add\r\n");
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnValidate"), u"add\r\n");
    EXPECT_EQ(parser.MethodLineNr(u"button1_onclick"), 3);
    EXPECT_EQ(parser.MethodLineNr(u"ADD"), 8);
    EXPECT_EQ(parser.MethodLineNr(u"twice"), 8);
    EXPECT_EQ(parser.MethodLineNr(u"notAHeader"), -1);
    EXPECT_EQ(parser.MethodLineNr(u"clicks"), -1);
}

TEST_F(JSMethods, AGeneratedHandlerIsFoundUnderBothNames)
{
    TScriptButton button2(nullptr, u"Button2");
    String name1, name2;
    const String text = parser.CreateMethod(&button1, u"OnKeyPress", name1) +
                        parser.CreateMethod(&button2, u"OnKeyPress", name2);
    parser.SetInputStream(sxtest::Utf16Stream(Joined(Script) + text), true);
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnKeyPress"), u"add\r\nButton1_OnKeyPress\r\nButton2_OnKeyPress\r\n");
    EXPECT_EQ(parser.MethodLineNr(name1), 10);
    EXPECT_EQ(parser.MethodLineNr(u"BUTTON2_ONKEYPRESS"), 14);
}

TEST_F(JSMethods, AScanStartsOutsideTheCommentAPaintLeftOpen)
{
    Feed(Script);
    parser.SetLineKind(1);
    parser.SetRemarkEnd(u"*/");
    EXPECT_EQ(parser.MethodLineNr(u"Button1_OnClick"), 3);
    Feed({});
    EXPECT_EQ(parser.GetSameMethods(&button1, u"OnClick"), u"");
    EXPECT_EQ(parser.MethodLineNr(u"x"), -1);
}

TEST_F(JSParser, UnitStartAndStop)
{
    sxtest::ExpectUnitStartAndStop(u"TSxCodeJSParser", u"JavaScript", DrawInfo, &Initialization, &Finalization);
}
