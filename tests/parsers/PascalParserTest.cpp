// The Pascal tokenizer: token streams, colours, comments across lines and
// restarting a scan at any line from the line kind stored there.
#include "codeedit/uSxCodePascalParser.h"
#include "parsers/ScriptTestSupport.h"

#include "support/TempRegistryFile.h"

using namespace sx;
using namespace sx::uSxCodePascalParser;
using sxtest::LineFeed;

namespace {

/// Opens the scanner's own token kinds to the tests.
struct Probe : TSxCodePascalParser {
    Probe() : TSxCodePascalParser(nullptr) {}
    using TSxCodePascalParser::InternalGetNextToken;
};

struct PascalParser : testing::Test, sxtest::ScriptScanner<Probe, ptEndOfFile, ptLineBreak, ptSpace> {};

const String LB = u"\r";

}  // namespace

TEST_F(PascalParser, OperatorsTakeASecondCharacterOnlyWhenItFits)
{
    EXPECT_EQ(Words(u"<= <> < >= > := : .. . ( #"),
              (Tokens{{ptLessEqual, u"<="}, {ptNotEquals, u"<>"}, {ptLess, u"<"}, {ptGreaterEqual, u">="},
                      {ptGreater, u">"}, {ptAssign, u":="}, {ptColon, u":"}, {ptRange, u".."}, {ptPeriod, u"."},
                      {ptOpenParen, u"("}, {ptHash, u"#"}}));
    EXPECT_EQ(Scan(u"<<="), (Tokens{{ptLess, u"<"}, {ptLessEqual, u"<="}}));
}

TEST_F(PascalParser, KeywordsAreCaseBlindWholeWords)
{
    // Words that share their first letters, and "object", which is a class.
    EXPECT_EQ(Words(u"Begin CONSTRUCTOR const class object private program property interface"),
              (Tokens{{ptBegin, u"Begin"}, {ptConstructor, u"CONSTRUCTOR"}, {ptConst, u"const"},
                      {ptClass, u"class"}, {ptClass, u"object"}, {ptPrivate, u"private"},
                      {ptProgram, u"program"}, {ptProperty, u"property"}, {ptinterface, u"interface"}}));
    for (const auto& [kind, text] : Words(u"repeat for CONSTX _end end1 Integer e Zend string"))
        EXPECT_EQ(kind, ptIdentifier) << StrToUtf8(text);
    EXPECT_EQ(Scan(u"end."), (Tokens{{ptEnd, u"end"}, {ptPeriod, u"."}}));
}

TEST_F(PascalParser, NumbersStopAtASecondPeriodAndHaveNoExponent)
{
    EXPECT_EQ(Scan(u"1..5"), (Tokens{{ptNumber, u"1"}, {ptRange, u".."}, {ptNumber, u"5"}}));
    EXPECT_EQ(Scan(u"1.5"), (Tokens{{ptFloat, u"1.5"}}));
    EXPECT_EQ(Scan(u"1e5"), (Tokens{{ptNumber, u"1"}, {ptIdentifier, u"e5"}}));
    EXPECT_EQ(Scan(u"$ffg"), (Tokens{{ptNumber, u"$ff"}, {ptIdentifier, u"g"}}));
    EXPECT_EQ(Scan(u"$"), (Tokens{{ptNumber, u"$"}}));
    EXPECT_EQ(Scan(u"#13#10"), (Tokens{{ptHash, u"#"}, {ptNumber, u"13"}, {ptHash, u"#"}, {ptNumber, u"10"}}));
}

// A second period ends the number at once: what stands before it stays an
// integer number, coloured as "Number".
TEST_F(PascalParser, SecondPeriodLeavesAnIntegerNumber)
{
    EXPECT_EQ(Scan(u"1.2.3"), (Tokens{{ptNumber, u"1.2"}, {ptPeriod, u"."}, {ptNumber, u"3"}}));
    EXPECT_EQ(Scan(u"5.5.."), (Tokens{{ptNumber, u"5.5"}, {ptRange, u".."}}));
    TSxCodePascalParser p(nullptr);
    sxtest::FeedOnce(p, u"1.2.3");
    String text;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    ASSERT_TRUE(p.GetNextToken(text, back, fore, style, lineBreak));
    EXPECT_EQ(text, u"1.2");
    EXPECT_TRUE(back == DrawInfo[6].BckColor && fore == DrawInfo[6].TextColor);
}

TEST_F(PascalParser, StringsKeepDoubledQuotesAndEndWithTheLine)
{
    EXPECT_EQ(Scan(u"'it''s'x"), (Tokens{{ptString, u"'it''s'"}, {ptIdentifier, u"x"}}));
    EXPECT_EQ(Scan(u"''"), (Tokens{{ptString, u"''"}}));
    EXPECT_EQ(ScanLines({u"'open (*", u"b"}),
              (Tokens{{ptString, u"'open (*"}, {ptLineBreak, LB}, {ptIdentifier, u"b"}, {ptLineBreak, LB}}));
}

TEST_F(PascalParser, BlanksTabsAndUnknownCharacters)
{
    EXPECT_EQ(Scan(u"a  \t b"), (Tokens{{ptIdentifier, u"a"}, {ptSpace, u"  "}, {ptUnknown, u"\t"},
                                        {ptSpace, u" "}, {ptIdentifier, u"b"}}));
    EXPECT_EQ(Scan(String(u"a") + Char(8)), (Tokens{{ptIdentifier, u"a"}, {ptSpace, u"    "}}));
    EXPECT_EQ(Scan(u"caf\u00E9x\u4E00"), (Tokens{{ptIdentifier, u"caf"}, {ptUnknown, u"\u00E9"},
                                                 {ptIdentifier, u"x"}, {ptUnknown, u"\u4E00"}}));
    for (const auto& [kind, text] : Scan(u"!\"%&?\\`|}~"))
        EXPECT_EQ(kind, ptUnknown) << StrToUtf8(text);
}

TEST_F(PascalParser, LineEndsAndTheEndOfInput)
{
    EXPECT_EQ(Scan(u"a\nb\rc"), (Tokens{{ptIdentifier, u"a"}, {ptIdentifier, u"b"}, {ptLineBreak, LB},
                                        {ptIdentifier, u"c"}}));
    EXPECT_EQ(Scan(u""), Tokens{});
    EXPECT_EQ(Scan(String(u"a") + Char(0) + u"b"), (Tokens{{ptIdentifier, u"a"}}));
}

TEST_F(PascalParser, ColoursComeFromTheFirstRowThatHoldsTheToken)
{
    TSxCodePascalParser p(nullptr);
    LineFeed feed{{u"begin 'a' {c} x #1.5 $f;"}, &p};
    p.SetOnGetNewBuffer(std::ref(feed));
    // begin, blank, string, blank, comment, blank, identifier, blank, #, the float 1.5, blank, $f, ; and the line break
    const std::vector<std::size_t> rows{1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0, 6, 7, 0};
    String text;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ASSERT_TRUE(p.GetNextToken(text, back, fore, style, lineBreak));
        const TSxPascalInfo& row = DrawInfo[rows[i]];
        EXPECT_TRUE(back == row.BckColor && fore == row.TextColor && style == row.Style) << i;
        EXPECT_EQ(lineBreak, i + 1 == rows.size()) << i;
    }
    lineBreak = true;
    EXPECT_FALSE(p.GetNextToken(text, back, fore, style, lineBreak));
    EXPECT_FALSE(lineBreak);
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
}

TEST_F(PascalParser, CommentsDoNotNest)
{
    EXPECT_EQ(Scan(u"(* { *)x"), (Tokens{{ptComment, u"(* { *)"}, {ptIdentifier, u"x"}}));
    EXPECT_EQ(Scan(u"{ (* }x"), (Tokens{{ptComment, u"{ (* }"}, {ptIdentifier, u"x"}}));
    EXPECT_EQ(Scan(u"(* ) * *)"), (Tokens{{ptComment, u"(* ) * *)"}}));
}

TEST_F(PascalParser, EndOfInputClosesAnOpenComment)
{
    Probe p;
    sxtest::FeedOnce(p, u"(* abc");
    String text;
    EXPECT_EQ(p.InternalGetNextToken(text), ptComment);
    EXPECT_EQ(text, u"(* abc");
    EXPECT_EQ(p.LineKind(), 0);
    EXPECT_EQ(p.RemarkEnd(), u"");
    EXPECT_EQ(p.InternalGetNextToken(text), ptEndOfFile);
}

TEST_F(PascalParser, WithoutEndLinesACommentRunsOverLineEnds)
{
    EXPECT_EQ(Scan(u"{a\r\nb} c", false), (Tokens{{ptComment, u"{a\r\nb}"}, {ptSpace, u" "}, {ptIdentifier, u"c"}}));
    EXPECT_EQ(Scan(u"// x\r\ny", false), (Tokens{{ptComment, u"// x\r"}, {ptIdentifier, u"y"}}));
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
    ExpectAnyCharactersReachTheEnd();
}

TEST_F(PascalParser, EveryCommentClearsTheSoapFieldsAndAnAbsentIdeLeavesTheColours)
{
    TSxCodePascalParser p(nullptr);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    LineFeed feed{{u"{}"}, &p};
    p.SetOnGetNewBuffer(std::ref(feed));
    String token;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    p.GetNextToken(token, back, fore, style, lineBreak);
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
    sxtest::ExpectUnitStartAndStop(u"TsxCodePasParser", u"Pascal", DrawInfo, [] {
        Initialization();
        EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
    }, &Finalization);
}
