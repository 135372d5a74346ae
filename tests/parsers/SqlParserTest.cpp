// What only the SQL tokenizer does: the letter tree and its building check,
// a block comment that lasts until a reset, the process-wide colour and
// keyword tables, and PeekString.
#include "codeedit/uSxCodeSqlParser.h"
#include "parsers/ParserTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeSqlParser;
using Sql = sx::test::Scanner<TSxCodeSqlParser, vtEndOfFile, vtLineBreak>;

TEST(SqlParser, EveryKeywordIsFoundInAnyCase)
{
    for (const String& word : SxSqlKeyWords) {
        const std::string upper = StrToUtf8(word), lower = StrToUtf8(LowerCase(word));
        EXPECT_EQ(Sql::Dump(word + u" " + LowerCase(word)), word.empty() ? "{1} " : "{4}" + upper + "{1} {4}" + lower);
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

TEST(SqlParser, TheTablesAreShared)
{
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

TEST(SqlParser, PeekStringLeavesTheInputAsItWas)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(sx::test::PieceFeed{{u"ab", u"cd"}});
    EXPECT_EQ(p.PeekString(3), u"abc");
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}ab{1}c{1}d");
}

}  // namespace
