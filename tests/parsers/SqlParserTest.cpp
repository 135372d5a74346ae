// The SQL tokenizer: the letter tree and its building check, token streams,
// the shared colour table, and the independence of the tokens from how the
// input is cut and from where a run starts.
#include "codeedit/uSxCodeSqlParser.h"
#include "parsers/ParserTestSupport.h"


namespace {

using namespace sx;
using namespace sx::uSxCodeSqlParser;
using Sql = sx::test::Scanner<TSxCodeSqlParser, vtEndOfFile, vtLineBreak>;

std::string Scan(const String& AText) { return Sql::Dump(AText); }

std::string ScanPieces(std::deque<String> APieces)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(sx::test::PieceFeed{std::move(APieces)});
    return Sql::Golden(Sql::Collect(p));
}

TEST(SqlParser, EveryKeywordIsFoundInAnyCase)
{
    for (const String& word : SxSqlKeyWords) {
        const std::string upper = StrToUtf8(word), lower = StrToUtf8(LowerCase(word));
        EXPECT_EQ(Scan(word + u" " + LowerCase(word)), word.empty() ? "{1} " : "{4}" + upper + "{1} {4}" + lower);
    }
}

TEST(SqlParser, BuildingCheckNamesTheCharacterAndTheUpperCasedKeyword)
{
    const String saved = SxSqlKeyWords[116];
    SxSqlKeyWords[116] = u"x[\\]^_y";  // every character from 'A' to '_' has a place
    EXPECT_NO_THROW(TSxCodeSqlParser(nullptr));
    for (const String bad : {u"ab1", u"ab ", u"ab\u00e9", u"ab`", u"ab@"}) {
        SxSqlKeyWords[116] = bad;
        try {
            TSxCodeSqlParser p(nullptr);
            ADD_FAILURE() << "no exception for " << StrToUtf8(bad);
        } catch (const Exception& e) {
            EXPECT_EQ(e.Message(),
                      u"Invalid Character \"" + String(1, bad[2]) + u"\" in keyword \"" + UpperCase(bad) + u"\" ");
        }
    }
    SxSqlKeyWords[116] = saved;
}

TEST(SqlParser, CommentOpenAtTheEndLastsUntilReset)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    sx::test::FeedOnce(p, u"/* a");
    Sql::Collect(p);
    sx::test::FeedOnce(p, u"x\r\n");  // more input, read on without a reset
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{9}x{0}\r\n");
    sx::test::FeedOnce(p, u"x\r\n");
    p.ResetBuffer();
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}x{0}\r\n");
}

TEST(SqlParser, ALineBreakHoldsItsLfAndTheTablesAreShared)
{
    EXPECT_EQ(Sql::Scan(u"\r\n\rx").front().second, u"\r\n");
    TSxCodeSqlParser p(nullptr);
    DrawInfo[2].Style = TFontStyles{TFontStyle::fsBold};
    DrawInfo[2].BckColor = clYellow;
    sx::test::FeedOnce(p, u"ON");
    const sx::test::Painted keyword = sx::test::Paint(p);
    EXPECT_TRUE(keyword.Back == clYellow && keyword.Style.Contains(TFontStyle::fsBold));
    Finalization();  // releases the keywords too
    EXPECT_TRUE(SxSqlKeyWords[0].empty());
    Initialization();  // start values again
    EXPECT_TRUE(DrawInfo[2].BckColor == clWindow && SxSqlKeyWords[0] == u"ADD");
}

TEST(SqlParser, TokensDoNotDependOnHowTheInputIsCut)
{
    const String text = u"SELECT a,b FROM t WHERE x = 'v' AND n = 1.5 -- c\r\n"
                        u"  AND (@p IN (1,2)) /* c\r\n  c */ ORDER BY 12\r\nGO";
    std::deque<String> chars;
    for (const Char c : text)
        chars.push_back(String(1, c));
    EXPECT_EQ(ScanPieces(chars), Scan(text));
}

TEST(SqlParser, RestartAtAnyLineOutsideABlockCommentGivesTheSameTokens)
{
    const std::deque<String> lines{u"SELECT a\r\n", u"  FROM t -- x\r\n", u" WHERE b = 'c'\r\n", u"   AND d > 1,5\r\n"};
    for (std::size_t start = 0; start < lines.size(); ++start) {
        std::string full = ScanPieces(lines);
        for (std::size_t skipped = 0; skipped < start; ++skipped)
            full = full.substr(full.find("{0}\r\n") + 5);
        EXPECT_EQ(ScanPieces({lines.begin() + std::ptrdiff_t(start), lines.end()}), full) << "line " << start;
    }
}

TEST(SqlParser, PeekStringLeavesTheInputAsItWas)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(sx::test::PieceFeed{{u"ab", u"cd"}});
    EXPECT_EQ(p.PeekString(3), u"abc");
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}ab{1}c{1}d");
}

}  // namespace
