// The Pascal tokenizer: token streams, comments across lines and restarting a
// scan at any line from the line kind stored there.
#include "codeedit/uSxCodePascalParser.h"
#include "parsers/ScannerTestSupport.h"
#include "support/TempRegistryFile.h"

namespace {

using namespace sx;
using namespace sx::uSxCodePascalParser;

struct PascalParser : testing::Test, sx::test::Scanner<TSxCodePascalParser, ptEndOfFile, ptLineBreak> {
    /// Each text with the tokens it gives.
    static void ExpectTokens(const std::vector<std::pair<String, Tokens>>& ACases)
    {
        for (const auto& [text, tokens] : ACases)
            EXPECT_EQ(Scan(text), tokens) << StrToUtf8(text);
    }
};

const String LB = u"\r";

TEST_F(PascalParser, OperatorsTakeASecondCharacterOnlyWhenItFits)
{
    ExpectTokens({
        {u"<=<><", {{ptLessEqual, u"<="}, {ptNotEquals, u"<>"}, {ptLess, u"<"}}},
        {u"<<=", {{ptLess, u"<"}, {ptLessEqual, u"<="}}},
        {u">=>", {{ptGreaterEqual, u">="}, {ptGreater, u">"}}},
        {u":=:", {{ptAssign, u":="}, {ptColon, u":"}}},
        {u"...", {{ptRange, u".."}, {ptPeriod, u"."}}},
        {u"(#@^", {{ptOpenParen, u"("}, {ptHash, u"#"}, {ptAddress, u"@"}, {ptCaret, u"^"}}},
        {u"#13#10", {{ptHash, u"#"}, {ptNumber, u"13"}, {ptHash, u"#"}, {ptNumber, u"10"}}},
    });
}

TEST_F(PascalParser, KeywordsAreCaseBlindWholeWords)
{
    // words that share their first letters, and "object", which is a class
    ExpectTokens({
        {u"Begin", {{ptBegin, u"Begin"}}},  {u"CONSTRUCTOR", {{ptConstructor, u"CONSTRUCTOR"}}},
        {u"const", {{ptConst, u"const"}}},  {u"object", {{ptClass, u"object"}}},
        {u"AS", {{ptAs, u"AS"}}},           {u"interface", {{ptinterface, u"interface"}}},
        {u"end.", {{ptEnd, u"end"}, {ptPeriod, u"."}}},
    });
    const Tokens words = Scan(u"repeat for CONSTX _end end1 Integer e Zend string");
    ASSERT_EQ(words.size(), 17u);
    for (std::size_t i = 0; i < words.size(); i += 2)
        EXPECT_EQ(words[i].first, ptIdentifier) << StrToUtf8(words[i].second);
}

// A second period ends the number at once: what stands before it stays an
// integer number, coloured as "Number".
TEST_F(PascalParser, SecondPeriodLeavesAnIntegerNumber)
{
    EXPECT_EQ(Scan(u"1.2.3"), (Tokens{{ptNumber, u"1.2"}, {ptPeriod, u"."}, {ptNumber, u"3"}}));
    EXPECT_EQ(Scan(u"5.5.."), (Tokens{{ptNumber, u"5.5"}, {ptRange, u".."}}));
    TSxCodePascalParser p(nullptr);
    sx::test::FeedOnce(p, u"1.2.3");
    const sx::test::Painted number = sx::test::Paint(p);
    EXPECT_EQ(number.Text, u"1.2");
    EXPECT_TRUE(number.Back == DrawInfo[6].BckColor && number.Fore == DrawInfo[6].TextColor);
}

TEST_F(PascalParser, StringsBlanksAndUnknownCharacters)
{
    ExpectTokens({
        {u"'it''s'x", {{ptString, u"'it''s'"}, {ptIdentifier, u"x"}}},
        {u"''", {{ptString, u"''"}}},
        {u"a  \t b", {{ptIdentifier, u"a"}, {ptSpace, u"  "}, {ptUnknown, u"\t"}, {ptSpace, u" "}, {ptIdentifier, u"b"}}},
        {String(u"a") + Char(8), {{ptIdentifier, u"a"}, {ptSpace, u"    "}}},
        {u"caf\u00E9x\u4E00", {{ptIdentifier, u"caf"}, {ptUnknown, u"\u00E9"}, {ptIdentifier, u"x"}, {ptUnknown, u"\u4E00"}}},
        {u"!\"%&?", {{ptUnknown, u"!"}, {ptUnknown, u"\""}, {ptUnknown, u"%"}, {ptUnknown, u"&"}, {ptUnknown, u"?"}}},
        {u"\\`|}~", {{ptUnknown, u"\\"}, {ptUnknown, u"`"}, {ptUnknown, u"|"}, {ptUnknown, u"}"}, {ptUnknown, u"~"}}},
    });
    EXPECT_EQ(ScanLines({u"'open (*", u"b"}),
              (Tokens{{ptString, u"'open (*"}, {ptLineBreak, LB}, {ptIdentifier, u"b"}, {ptLineBreak, LB}}));
}

TEST_F(PascalParser, CommentAcrossLinesGivesOnePieceAndOneBreakPerLine)
{
    std::vector<Integer> kinds;
    EXPECT_EQ(ScanLines({u"(* a", u"", u"b *) x", u"{", u"}"}, 0, &kinds),
              (Tokens{{ptComment, u"(* a"}, {ptLineBreak, LB}, {ptComment, u""}, {ptLineBreak, LB},
                      {ptComment, u"b *)"}, {ptSpace, u" "}, {ptIdentifier, u"x"}, {ptLineBreak, LB},
                      {ptComment, u"{"}, {ptLineBreak, LB}, {ptComment, u"}"}, {ptLineBreak, LB}}));
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 1, 1, 0, 2}));
    // a line comment needs no state; the opening characters are not reused to close
    ScanLines({u"a // b (* c", u"(*)", u"x"}, 0, &kinds);
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 0, 1}));
    // without EndLines a line comment holds its CR, and the LF is dropped
    EXPECT_EQ(Scan(u"// x\r\ny", false), (Tokens{{ptComment, u"// x\r"}, {ptIdentifier, u"y"}}));
}

TEST_F(PascalParser, CommentsDoNotNest)
{
    ExpectTokens({
        {u"(* { *)x", {{ptComment, u"(* { *)"}, {ptIdentifier, u"x"}}},
        {u"{ (* }x", {{ptComment, u"{ (* }"}, {ptIdentifier, u"x"}}},
        {u"(* ) * *)", {{ptComment, u"(* ) * *)"}}},
    });
}

TEST_F(PascalParser, StoredLineKindTurnsIntoTheOpenComment)
{
    EXPECT_EQ(ScanLines({u"x := 'a'; } y"}, 2),
              (Tokens{{ptComment, u"x := 'a'; }"}, {ptSpace, u" "}, {ptIdentifier, u"y"}, {ptLineBreak, LB}}));
    // an empty line inside the comment gets its empty piece, as in a scan from above
    EXPECT_EQ(ScanLines({u"", u"*) x"}, 1), (Tokens{{ptComment, u""}, {ptLineBreak, LB}, {ptComment, u"*)"},
                                                    {ptSpace, u" "}, {ptIdentifier, u"x"}, {ptLineBreak, LB}}));
    EXPECT_EQ(ScanLines({u"a }", u"b"}, 3), (Tokens{{ptComment, u"a }"}, {ptLineBreak, LB}, {ptIdentifier, u"b"},
                                                    {ptLineBreak, LB}}));
}

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on.
TEST_F(PascalParser, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"(*", u"*)", u"{", u"}", u"//", u"'", u"''", u" ", u"\t", u"a", u"Begin",
                                   u"1", u".", u"..", u"$f", u"#", u"*", u")", u"(", u"\u00E9", u":=", u"<"});
}

TEST_F(PascalParser, EveryCommentClearsTheSoapFieldsAndAnAbsentIdeLeavesTheColours)
{
    TSxCodePascalParser p(nullptr);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    sx::test::FeedOnce(p, u"{}");
    sx::test::Paint(p);
    EXPECT_EQ(p.SoapCommentLineStart(), -1);
    EXPECT_EQ(p.SoapComment(), u"");

    const auto saved = DrawInfo;
    const sxtest::ScopedEnv noRegistry("SX_REGISTRY_FILE", "/nonexistent/registry.reg");
    p.SetDelphiVersion(7);
    EXPECT_EQ(DrawInfo[3].BckColor, saved[3].BckColor);
    EXPECT_EQ(DrawInfo[3].Name, u"Comment");
}

TEST_F(PascalParser, UnitRegistersTheShortClassNameOnly)
{
    Initialization();
    EXPECT_NE(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
}

}  // namespace
