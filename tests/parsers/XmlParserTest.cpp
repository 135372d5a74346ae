// The XML tokenizer: token streams with their kinds and line breaks, and a
// run started at a line that opens with a tag.
#include "codeedit/uSxCodeXmlParser.h"
#include "parsers/ScannerTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodeXmlParser;
using Xml = sx::test::Scanner<TSxCodeXMLParser, vtEndOfFile, vtLineBreak>;

const char* const KindNames[] = {"LineBreak", "Unknown",   "Invalid",     "EOF",      "AttrName",
                                 "AttrEqual", "AttrQuote", "AttrValue",   "ElmName",  "ElmStart",
                                 "ElmEnd",    "ElmEndSlash", "ElmChars",  "CDATAStart", "CDATAEnd",
                                 "CDATAChars", "Comment",  "Prolog",      "Processing"};

/// The tokens as "Kind[text]" separated by blanks, CR and LF written as \r and \n.
std::string Dump(const Xml::Tokens& ATokens)
{
    std::string out;
    for (const auto& [kind, text] : ATokens) {
        out += (out.empty() ? "" : " ") + std::string(KindNames[kind]) + "[";
        for (const Char c : text)
            out += c == 13 ? std::string("\\r") : c == 10 ? std::string("\\n") : std::string(1, char(c));
        out += "]";
    }
    return out;
}

std::string DumpLines(const std::vector<String>& ALines, std::size_t AFirst = 0)
{
    sx::test::Probe<TSxCodeXMLParser> p;
    sx::test::LineFeed feed{ALines, nullptr, AFirst};
    p.SetOnGetNewBuffer(std::ref(feed));
    return Dump(Xml::Collect(p));
}

TEST(XmlParser, TokensOfShortTexts)
{
    const std::pair<String, std::string> cases[] = {
        // text before the first tag is markup, text behind a tag is content
        {u"x\"<b>y=\"z", "ElmStart[x] ElmStart[\"] ElmStart[<] ElmName[b] ElmEnd[>] ElmChars[y] ElmChars[=] "
                         "ElmChars[\"] ElmChars[z]"},
        // only double quotes open values, and only '<' ends them
        {u"<a k='v'>/", "ElmStart[<] ElmName[a] AttrName[ ] AttrName[k] AttrEqual[=] AttrName['] AttrName[v] "
                        "AttrName['] ElmEnd[>] ElmChars[/]"},
        {u"<a b=\"x>/=<c", "ElmStart[<] ElmName[a] AttrName[ ] AttrName[b] AttrEqual[=] AttrQuote[\"] "
                           "AttrValue[x] AttrValue[>] AttrValue[/] AttrValue[=] ElmStart[<] ElmName[c]"},
        {u"<!-- a -->", "ElmStart[<] Comment[!-- a --] ElmEnd[>]"},
        {u"<!---->x", "ElmStart[<] Comment[!----] ElmEnd[>] ElmChars[x]"},
        {u"<![cdata[x]]>", "ElmStart[<] CDATAStart[![cdata[] CDATAChars[x] CDATAEnd[]]>]"},
        {u"<![CDATA[]<>\"]]>t<", "ElmStart[<] CDATAStart[![CDATA[] CDATAChars[]] CDATAChars[<] CDATAChars[>] "
                                 "CDATAChars[\"] CDATAEnd[]]>] ElmName[t] ElmStart[<]"},
        // a declaration's name and words are coloured as element and attributes
        {u"<!DOCTYPE x>", "ElmStart[<] AttrName[!] ElmName[D] ElmName[O] ElmName[C] ElmName[T] ElmName[Y] "
                          "ElmName[P] ElmName[E] AttrName[ ] AttrName[x] ElmEnd[>]"},
        {u"<!a", "ElmStart[<] AttrName[!] ElmName[a]"},  // a short one at the end goes back untouched
        {u"<?xml version=\"1.0\"?>", "ElmStart[<] Processing[?xml version=\"1.0\"?] ElmEnd[>]"},
        // control characters give empty tokens of the state's kind
        {u"<a\t>\t\n<b", "ElmStart[<] ElmName[a] ElmName[] ElmEnd[>] ElmChars[] ElmChars[] ElmStart[<] ElmName[b]"},
        {u"<a\rb", "ElmStart[<] ElmName[a] LineBreak[~~] ElmName[b]"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(Dump(Xml::Scan(text)), tokens) << StrToUtf8(text);
}

TEST(XmlParser, TagsValuesCommentsAndInstructionsGoOnOverLineBreaks)
{
    EXPECT_EQ(DumpLines({u"<a b=\"x", u"y\"", u">z", u"w"}),
              "ElmStart[<] ElmName[a] AttrName[ ] AttrName[b] AttrEqual[=] AttrQuote[\"] AttrValue[x] "
              "LineBreak[~~] AttrValue[y] AttrQuote[\"] LineBreak[~~] ElmEnd[>] ElmChars[z] LineBreak[~~] "
              "ElmChars[w] LineBreak[~~]");
    EXPECT_EQ(DumpLines({u"<!-- one", u"two -->"}), "ElmStart[<] Comment[!-- one\\r\\ntwo --] ElmEnd[>] LineBreak[~~]");
    EXPECT_EQ(DumpLines({u"<?pi a", u"b"}), "ElmStart[<] Processing[?pi a\\r\\nb\\r\\n]");
}

TEST(XmlParser, ResetGoesBackToTheStartState)
{
    sx::test::Probe<TSxCodeXMLParser> p;
    sx::test::FeedOnce(p, u"<a b=\"x");  // stops inside a value
    Xml::Collect(p);
    sx::test::FeedOnce(p, u"q");
    p.ResetBuffer();
    EXPECT_EQ(Dump(Xml::Collect(p)), "ElmStart[q]");
}

// The state is not kept per line: a run started at a line that opens with a
// tag gives the tokens of the full run, one started in content does not.
TEST(XmlParser, RestartAtATagGivesTheTokensOfTheFullRun)
{
    const std::vector<String> doc = {u"<?xml v=\"1\"?>", u"<r a=\"1", u"2\">text", u"<!-- c", u"<x> -->",
                                     u"<![CDATA[", u"<y>", u"]]><z/>", u"<w k='q'>tail", u"more</w>"};
    const std::vector<bool> startsWithTag = {true, true, false, true, false, true, false, false, true, false};
    const std::string all = DumpLines(doc);
    for (std::size_t i = 0; i < doc.size(); ++i) {
        if (!startsWithTag[i])
            continue;
        const std::string tail = DumpLines(doc, i);
        ASSERT_GE(all.size(), tail.size());
        EXPECT_EQ(all.substr(all.size() - tail.size()), tail) << "from line " << i;
    }
    EXPECT_EQ(DumpLines(doc, 9).substr(0, 11), "ElmStart[m]");
}

}  // namespace
