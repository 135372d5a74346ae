// What only one language's tokenizer does. Pascal: numbers that a second
// period ends, the SOAP comment fields and the unit's class name, only the
// short one. SQL: the letter tree and its building check, a block comment
// that lasts until a reset, the process-wide colour and keyword tables, and
// PeekString. XML: a reset back to the start state, and a run started at a
// line that opens with a tag.
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeXmlParser.h"
#include "parsers/ParserTestSupport.h"

namespace {

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeSqlParser;
namespace pas = sx::uSxCodePascalParser;
using Pascal = Scanner<TSxCodePascalParser, pas::ptEndOfFile, pas::ptLineBreak>;
using Sql = Scanner<TSxCodeSqlParser, vtEndOfFile, vtLineBreak>;
using Xml = Scanner<TSxCodeXMLParser, uSxCodeXmlParser::vtEndOfFile, uSxCodeXmlParser::vtLineBreak>;

// A second period ends the number at once: what stands before it stays an
// integer number, coloured as "Number".
TEST(PascalParser, SecondPeriodLeavesAnIntegerNumber)
{
    using namespace pas;
    EXPECT_EQ(Pascal::Scan(u"1.2.3"), (Pascal::Tokens{{ptNumber, u"1.2"}, {ptPeriod, u"."}, {ptNumber, u"3"}}));
    EXPECT_EQ(Pascal::Scan(u"5.5.."), (Pascal::Tokens{{ptNumber, u"5.5"}, {ptRange, u".."}}));
    TSxCodePascalParser p(nullptr);
    FeedOnce(p, u"1.2.3");
    const Painted number = Paint(p);
    const auto& row = pas::DrawInfo[6];
    EXPECT_TRUE(number.Text == u"1.2" && number.Back == row.BckColor && number.Fore == row.TextColor);
}

TEST(PascalParser, EveryCommentClearsTheSoapFieldsAndTheUnitRegistersTheShortName)
{
    TSxCodePascalParser p(nullptr);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    FeedOnce(p, u"{}");
    Paint(p);
    EXPECT_TRUE(p.SoapCommentLineStart() == -1 && p.SoapComment().empty());
    pas::Initialization();  // the unit registers the short class name only
    EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
}

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
    Probe<TSxCodeSqlParser> p;
    FeedOnce(p, u"/* a");
    Sql::Collect(p);
    FeedOnce(p, u"x\r\n");  // more input, read on without a reset
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{9}x{0}\r\n");
    FeedOnce(p, u"x\r\n");
    p.ResetBuffer();
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}x{0}\r\n");
}

TEST(SqlParser, TheTablesAreShared)
{
    TSxCodeSqlParser p(nullptr);
    DrawInfo[2].Style = TFontStyles{TFontStyle::fsBold};
    DrawInfo[2].BckColor = clYellow;
    FeedOnce(p, u"ON");
    const Painted keyword = Paint(p);
    EXPECT_TRUE(keyword.Back == clYellow && keyword.Style.Contains(TFontStyle::fsBold));
    Finalization();  // releases the keywords too
    EXPECT_TRUE(SxSqlKeyWords[0].empty());
    Initialization();  // start values again
    EXPECT_TRUE(DrawInfo[2].BckColor == clWindow && SxSqlKeyWords[0] == u"ADD");
}

TEST(SqlParser, PeekStringLeavesTheInputAsItWas)
{
    Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(PieceFeed{{u"ab", u"cd"}});
    EXPECT_EQ(p.PeekString(3), u"abc");
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}ab{1}c{1}d");
}

// The state goes on over line breaks and over new input until a reset.
TEST(XmlParser, AResetGoesBackToTheStartState)
{
    Probe<TSxCodeXMLParser> p;
    FeedOnce(p, u"<a b=\"x");  // stops inside a value
    Xml::Collect(p);
    FeedOnce(p, u"q");
    p.ResetBuffer();
    EXPECT_EQ(Xml::Golden(Xml::Collect(p)), "{9}q");
}

// The state is not kept per line: a run started at a line that opens with a
// tag gives the tokens of the full run, one started in content does not.
TEST(XmlParser, RestartAtATagGivesTheTokensOfTheFullRun)
{
    const std::vector<String> doc = {u"<?xml v=\"1\"?>", u"<r a=\"1", u"2\">text", u"<!-- c", u"<x> -->",
                                     u"<![CDATA[", u"<y>", u"]]><z/>", u"<w k='q'>tail", u"more</w>"};
    const std::vector<bool> startsWithTag = {true, true, false, true, false, true, false, false, true, false};
    const std::string all = Xml::Golden(Xml::ScanLines(doc));
    for (std::size_t i = 0; i < doc.size(); ++i) {
        if (!startsWithTag[i])
            continue;
        const std::string tail = Xml::Golden(Xml::ScanLines(doc, 0, nullptr, i));
        ASSERT_GE(all.size(), tail.size());
        EXPECT_EQ(all.substr(all.size() - tail.size()), tail) << "from line " << i;
    }
    EXPECT_EQ(Xml::Golden(Xml::ScanLines(doc, 0, nullptr, 9)).substr(0, 4), "{9}m");
}

}  // namespace
