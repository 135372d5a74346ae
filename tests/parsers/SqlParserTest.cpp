// The SQL tokenizer: the letter tree and its building check, token streams,
// the shared colour table, and the independence of the tokens from how the
// input is cut and from where a run starts.
#include "codeedit/uSxCodeSqlParser.h"
#include "parsers/ScannerTestSupport.h"


namespace {

using namespace sx;
using namespace sx::uSxCodeSqlParser;
using Sql = sx::test::Scanner<TSxCodeSqlParser, vtEndOfFile, vtLineBreak>;

/// The tokens as {kind}text, one letter a kind, line breaks as {B} alone.
std::string Dump(const Sql::Tokens& ATokens)
{
    std::string out;
    for (const auto& [kind, text] : ATokens)
        out += std::string("{") + "BUIEKFQNPC"[kind] + "}" + (kind == vtLineBreak ? "" : StrToUtf8(text));
    return out;
}

std::string Scan(const String& AText) { return Dump(Sql::Scan(AText)); }

std::string ScanPieces(std::deque<String> APieces)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(sx::test::PieceFeed{std::move(APieces)});
    return Dump(Sql::Collect(p));
}

TEST(SqlParser, EveryKeywordIsFoundInAnyCase)
{
    for (const String& word : SxSqlKeyWords) {
        const std::string upper = StrToUtf8(word), lower = StrToUtf8(LowerCase(word));
        EXPECT_EQ(Scan(word + u" " + LowerCase(word)), word.empty() ? "{U} " : "{K}" + upper + "{U} {K}" + lower);
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

TEST(SqlParser, TokensOfShortTexts)
{
    const std::pair<String, std::string> cases[] = {
        // words: keywords, whatever their case, and where a word may start
        {u"SeLeCt CURRENT CURRENT_DATE CURRENT_TIMESTAMP",
         "{K}SeLeCt{U} {K}CURRENT{U} {K}CURRENT_DATE{U} {K}CURRENT_TIMESTAMP"},
        {u"SELECTED SELECT1", "{U}SELECTE{U}D{U} {K}SELECT{U}1"},
        {u"a=SELECT a = SELECT", "{U}a{U}={U}S{U}E{U}L{U}E{U}C{U}T{U} {U}a{U} {U}={U} {K}SELECT"},
        {u"(SELECT,FROM)AS t.ON", "{U}({K}SELECT{U},{K}FROM{U}){K}AS{U} {U}t{U}.{U}O{U}N"},
        {u"\tON", "{U}{U}O{U}N"},
        {u"x\r\nON\nON\rON", "{U}x{B}{K}ON{U}\n{U}O{U}N{B}{K}ON"},
        // numbers need a start and an end; parameters end only at white space
        {u"1, 1 .5 (12) x1", "{N}1,{U} {N}1{U} {U}.{N}5{U} {U}({N}12{U}){U} {U}x{U}1"},
        {u"(@a,@b) x@c @d\tz", "{U}({P}@a,@b){U} {U}x{U}@{U}c{U} {P}@d{U}{U}z"},
        {u"'a b''c' \"d\"\r\n'abc\r\nx", "{Q}'a b'{Q}'c'{U} {U}\"{U}d{U}\"{B}{Q}'abc{B}{U}x"},
        // comments: a line comment ends at any control character, a block comment goes one piece a line
        {u"'v'-- c -- d\tON\r\na-b 5 - 3", "{Q}'v'{C}-- c -- d{U}{U}O{U}N{B}{U}a{U}-{U}b{U} {N}5{U} {U}-{U} {N}3"},
        {u"a /* b\r\n\r\nc\r\n*/ON */ x /*/ON",
         "{U}a{U} {C}/* b{B}{B}{C}c{B}{C}*/{U}O{U}N{U} {U}*{U}/{U} {U}x{U} {C}/*/{U}O{U}N"},
        {u"/**/ /* a*/\r\n/* 'q' -- \t@p ON\r\n", "{C}/**/{U} {C}/* a*/{B}{C}/* 'q' -- \t@p ON{B}"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(Scan(text), tokens) << StrToUtf8(text);
}

TEST(SqlParser, CommentOpenAtTheEndLastsUntilReset)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    sx::test::FeedOnce(p, u"/* a");
    Sql::Collect(p);
    sx::test::FeedOnce(p, u"x\r\n");  // more input, read on without a reset
    EXPECT_EQ(Dump(Sql::Collect(p)), "{C}x{B}");
    sx::test::FeedOnce(p, u"x\r\n");
    p.ResetBuffer();
    EXPECT_EQ(Dump(Sql::Collect(p)), "{U}x{B}");
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
            full = full.substr(full.find("{B}") + 3);
        EXPECT_EQ(ScanPieces({lines.begin() + std::ptrdiff_t(start), lines.end()}), full) << "line " << start;
    }
}

TEST(SqlParser, PeekStringLeavesTheInputAsItWas)
{
    sx::test::Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(sx::test::PieceFeed{{u"ab", u"cd"}});
    EXPECT_EQ(p.PeekString(3), u"abc");
    EXPECT_EQ(Dump(Sql::Collect(p)), "{U}ab{U}c{U}d");
}

}  // namespace
