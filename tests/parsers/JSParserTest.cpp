// The JavaScript tokenizer: token streams, block comments across lines and a
// restart inside one, and the handler operations on realistic scripts.
#include "codeedit/uSxCodeJSParser.h"
#include "parsers/ScriptTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeJSParser;
using sx::test::TScriptButton;

struct JSParser : testing::Test, sx::test::Scanner<TSxCodeJSParser, vtEndOfFile, vtLineBreak> {};
using JSMethods = sx::test::ScriptMethods<TSxCodeJSParser>;

const String LB = u"\r";

TEST_F(JSParser, WhatDiffersFromVisualBasic)
{
    const std::pair<String, Tokens> cases[] = {
        {u"'abc'", {{vtUnknown, u"'"}, {vtIdentifier, u"abc"}, {vtUnknown, u"'"}}},
        {u"(*x", {{vtOpenParen, u"("}, {vtMultiply, u"*"}, {vtIdentifier, u"x"}}},
        {u"{}&&", {{vtBegin, u"{"}, {vtEnd, u"}"}, {vtConcat, u"&"}, {vtConcat, u"&"}}},
        {u"a/b// c / d", {{vtIdentifier, u"a"}, {vtDivide, u"/"}, {vtIdentifier, u"b"}, {vtComment, u"// c / d"}}},
        {u"\"/* no */\"==!", {{vtString, u"\"/* no */\""}, {vtEquals, u"="}, {vtEquals, u"="}, {vtUnknown, u"!"}}},
        // an escaped quote is not known: the backslash is string text and the quote ends the string
        {u"\"a\\\"b", {{vtString, u"\"a\\\""}, {vtIdentifier, u"b"}}},
        {u"x=rem;", {{vtIdentifier, u"x"}, {vtEquals, u"="}, {vtComment, u"rem;"}}},
        {u"END", {{vtEnd, u"END"}}},
        {u"Function", {{vtFunction, u"Function"}}},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(Scan(text), tokens) << StrToUtf8(text);
    // the Visual Basic keywords less three, and JavaScript's own words, are identifiers
    for (const String word : {u"exit", u"then", u"until", u"begin", u"var", u"return", u"this", u"try"})
        EXPECT_EQ(Scan(word), (Tokens{{vtIdentifier, word}}));
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
    EXPECT_EQ(Scan(u"// x\r\ny", false), (Tokens{{vtComment, u"// x\r"}, {vtIdentifier, u"y"}}));
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

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on.
TEST_F(JSParser, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"/*", u"*/", u"//", u"/", u"*", u"\"", u"'", u"rem ", u" ", u"a", u"function",
                                   u"{", u"}", u"(", u"1.5", u"$f", u"\u00E9", u"<>"});
}

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
    parser.SetInputStream(sx::test::Utf16Stream(Joined(Script) + text), true);
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

}  // namespace
