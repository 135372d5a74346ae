// What only the XML tokenizer does: a reset back to the start state, and a
// run started at a line that opens with a tag.
#include "codeedit/uSxCodeXmlParser.h"
#include "parsers/ParserTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeXmlParser;
using Xml = sx::test::Scanner<TSxCodeXMLParser, vtEndOfFile, vtLineBreak>;

// The state goes on over line breaks and over new input until a reset.
TEST(XmlParser, AResetGoesBackToTheStartState)
{
    sx::test::Probe<TSxCodeXMLParser> p;
    sx::test::FeedOnce(p, u"<a b=\"x");  // stops inside a value
    Xml::Collect(p);
    sx::test::FeedOnce(p, u"q");
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
