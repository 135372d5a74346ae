// The JavaScript tokenizer: token streams, block comments across lines and a
// restart inside one, and the handler operations on realistic scripts.
#include "codeedit/uSxCodeJSParser.h"
#include "parsers/ScannerTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeJSParser;

struct JSParser : testing::Test, sx::test::Scanner<TSxCodeJSParser, vtEndOfFile, vtLineBreak> {};

// Tokens as {kind}text: 0 line break, 1 unknown, 4 identifier, 54 string,
// 58 comment; keywords and symbols by number.
TEST_F(JSParser, WhatDiffersFromVisualBasic)
{
    const std::pair<String, std::string> cases[] = {
        {u"'abc'(*x", "{1}'{4}abc{1}'{70}({76}*{4}x"}, {u"{}&&", "{8}{{7}}{53}&{53}&"},
        {u"a/b// c / d", "{4}a{77}/{4}b{58}// c / d"}, {u"\"/* no */\"==!", "{54}\"/* no */\"{64}={64}={1}!"},
        // an escaped quote is not known: the backslash is string text and the quote ends the string
        {u"\"a\\\"b", "{54}\"a\\\"{4}b"}, {u"x=rem;", "{4}x{64}={58}rem;"}, {u"END Function", "{7}END{1} {5}Function"},
        // the Visual Basic keywords less three, and JavaScript's own words, are identifiers
        {u"exit then until begin var try", "{4}exit{1} {4}then{1} {4}until{1} {4}begin{1} {4}var{1} {4}try"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(Dump(text), tokens) << StrToUtf8(text);
}

TEST_F(JSParser, BlockCommentsAcrossLines)
{
    std::vector<Integer> kinds;
    EXPECT_EQ(DumpLines({u"a /* one", u"", u"two *) three */ b", u"/* x */ c"}, 0, &kinds),
              "{4}a{1} {58}/* one{0}\r{58}{0}\r{58}two *) three */{1} {4}b{0}\r{58}/* x */{1} {4}c{0}\r");
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 1, 1, 0}));
    // a line comment needs no state; the opening characters do not close a block comment
    ScanLines({u"// a /* b", u"/*/", u"x"}, 0, &kinds);
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 0, 1}));
    EXPECT_EQ(Dump(u"// x\r\ny", false), "{58}// x\r{4}y");
}

TEST_F(JSParser, ARestartInsideACommentContinuesIt)
{
    EXPECT_EQ(DumpLines({u"still */ x"}, 1),
              "{58}still */{1} {4}x{0}\r");
    // an empty line inside the comment gets its empty piece, as in a scan from above
    EXPECT_EQ(DumpLines({u"", u"*/"}, 1),
              "{58}{0}\r{58}*/{0}\r");
    // kinds 2 and 3 are understood on input
    EXPECT_EQ(DumpLines({u"a } b"}, 2), "{58}a }{1} {4}b{0}\r");
    EXPECT_EQ(DumpLines({u"a }", u"b"}, 3), "{58}a }{0}\r{4}b{0}\r");
}

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on.
TEST_F(JSParser, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"/*", u"*/", u"//", u"/", u"*", u"\"", u"'", u"rem ", u" ", u"a", u"function",
                                   u"{", u"}", u"(", u"1.5", u"$f", u"\u00E9", u"<>"});
}

}  // namespace
