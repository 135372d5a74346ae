// The XML tokenizer: token streams with their kinds, colours and line breaks.
#include "codeedit/uSxCodeXmlParser.h"
#include "parsers/ScriptTestSupport.h"

#include <string>
#include <vector>

using namespace sx;
using namespace sx::uSxCodeXmlParser;

namespace {

/// Exposes the tokenizer so that tests can see token kinds, not only colours.
class XmlProbe : public TSxCodeXMLParser {
public:
    XmlProbe() : TSxCodeXMLParser(nullptr) {}
    using TSxCodeXMLParser::InternalGetNextToken;
};

/// Hands out the lines from `first` on, each followed by CR LF, as the editor does.
struct LineFeed {
    std::vector<String> lines;
    std::size_t next = 0;
    bool operator()(bool reset, String& s)
    {
        if (reset || next >= lines.size())
            return false;
        s = lines[next++] + u"\r\n";
        return true;
    }
};

using sxtest::FeedOnce;

const char* const KindNames[] = {"LineBreak", "Unknown",    "Invalid",    "EOF",        "AttrName",
                                 "AttrEqual", "AttrQuote",  "AttrValue",  "ElmName",    "ElmStart",
                                 "ElmEnd",    "ElmEndSlash", "ElmChars",  "CDATAStart", "CDATAEnd",
                                 "CDATAChars", "Comment",   "Prolog",     "Processing"};

std::string Printable(const String& text)
{
    std::string out;
    for (Char c : text)
        out += c == 13 ? std::string("\\r") : c == 10 ? std::string("\\n") : std::string(1, char(c));
    return out;
}

/// All tokens up to the end, as "Kind[text]" separated by blanks.
std::string Dump(XmlProbe& p)
{
    std::string out;
    String token;
    for (int guard = 0; guard < 10000; ++guard) {
        const TSxXmlToken kind = p.InternalGetNextToken(token);
        if (kind == vtEndOfFile)
            return out;
        if (!out.empty())
            out += ' ';
        out += std::string(KindNames[kind]) + "[" + Printable(token) + "]";
    }
    ADD_FAILURE() << "no end of input";
    return out;
}

std::string DumpText(const String& text)
{
    XmlProbe p;
    FeedOnce(p, text);
    return Dump(p);
}

std::string DumpLines(const std::vector<String>& lines)
{
    XmlProbe p;
    LineFeed feed{lines};
    p.SetOnGetNewBuffer(std::ref(feed));
    return Dump(p);
}

}  // namespace

TEST(XmlParser, CompleteTagGivesOneTokenPerCharacter)
{
    EXPECT_EQ(DumpLines({u"<a b=\"c\"/>"}),
              "ElmStart[<] ElmName[a] AttrName[ ] AttrName[b] AttrEqual[=] AttrQuote[\"] AttrValue[c] "
              "AttrQuote[\"] ElmEndSlash[/] ElmEnd[>] LineBreak[~~]");
}

TEST(XmlParser, TextBeforeTheFirstTagIsMarkupAndTextAfterATagIsContent)
{
    EXPECT_EQ(DumpText(u"x\"<b>y=\"z"),
              "ElmStart[x] ElmStart[\"] ElmStart[<] ElmName[b] ElmEnd[>] ElmChars[y] ElmChars[=] ElmChars[\"] "
              "ElmChars[z]");
}

TEST(XmlParser, OnlyDoubleQuotesOpenValuesAndOnlyLessThanEndsThem)
{
    EXPECT_EQ(DumpText(u"<a k='v'>/"),
              "ElmStart[<] ElmName[a] AttrName[ ] AttrName[k] AttrEqual[=] AttrName['] AttrName[v] AttrName['] "
              "ElmEnd[>] ElmChars[/]");
    EXPECT_EQ(DumpText(u"<a b=\"x>/=<c"),
              "ElmStart[<] ElmName[a] AttrName[ ] AttrName[b] AttrEqual[=] AttrQuote[\"] AttrValue[x] "
              "AttrValue[>] AttrValue[/] AttrValue[=] ElmStart[<] ElmName[c]");
}

TEST(XmlParser, Comments)
{
    EXPECT_EQ(DumpText(u"<!-- a -->"), "ElmStart[<] Comment[!-- a --] ElmEnd[>]");
    EXPECT_EQ(DumpText(u"<!---->x"), "ElmStart[<] Comment[!----] ElmEnd[>] ElmChars[x]");
    EXPECT_EQ(DumpLines({u"<!-- one", u"two -->"}), "ElmStart[<] Comment[!-- one\\r\\ntwo --] ElmEnd[>] LineBreak[~~]");
}

TEST(XmlParser, UnclosedCommentRunsToTheEnd)
{
    XmlProbe p;
    FeedOnce(p, u"<!-- a");
    String token;
    EXPECT_EQ(p.InternalGetNextToken(token), vtElmStart);
    EXPECT_EQ(p.InternalGetNextToken(token), vtComment);
    EXPECT_EQ(token.substr(0, 5), u"!-- a");
    EXPECT_EQ(p.InternalGetNextToken(token), vtEndOfFile);
    EXPECT_TRUE(token.empty());
}

TEST(XmlParser, CDATASections)
{
    EXPECT_EQ(DumpText(u"<![cdata[x]]>"), "ElmStart[<] CDATAStart[![cdata[] CDATAChars[x] CDATAEnd[]]>]");
    EXPECT_EQ(DumpText(u"<![CDATA[]<>\"]]>t<"),
              "ElmStart[<] CDATAStart[![CDATA[] CDATAChars[]] CDATAChars[<] CDATAChars[>] CDATAChars[\"] "
              "CDATAEnd[]]>] ElmName[t] ElmStart[<]");
}

TEST(XmlParser, DeclarationNameAndWordsAreColouredAsElementAndAttributes)
{
    EXPECT_EQ(DumpText(u"<!DOCTYPE x>"),
              "ElmStart[<] AttrName[!] ElmName[D] ElmName[O] ElmName[C] ElmName[T] ElmName[Y] ElmName[P] "
              "ElmName[E] AttrName[ ] AttrName[x] ElmEnd[>]");
    // A short declaration at the end of input gives the characters back untouched.
    EXPECT_EQ(DumpText(u"<!a"), "ElmStart[<] AttrName[!] ElmName[a]");
}

TEST(XmlParser, ProcessingInstructions)
{
    EXPECT_EQ(DumpText(u"<?xml version=\"1.0\"?>"), "ElmStart[<] Processing[?xml version=\"1.0\"?] ElmEnd[>]");
    EXPECT_EQ(DumpLines({u"<?pi a", u"b"}), "ElmStart[<] Processing[?pi a\\r\\nb\\r\\n]");
}

TEST(XmlParser, ControlCharactersGiveEmptyTokensOfTheStatesKind)
{
    EXPECT_EQ(DumpText(u"<a\t>\t\n<b"), "ElmStart[<] ElmName[a] ElmName[] ElmEnd[>] ElmChars[] ElmChars[] "
                                         "ElmStart[<] ElmName[b]");
}

TEST(XmlParser, TagsAndValuesGoOnOverLineBreaks)
{
    EXPECT_EQ(DumpLines({u"<a b=\"x", u"y\"", u">z", u"w"}),
              "ElmStart[<] ElmName[a] AttrName[ ] AttrName[b] AttrEqual[=] AttrQuote[\"] AttrValue[x] "
              "LineBreak[~~] AttrValue[y] AttrQuote[\"] LineBreak[~~] ElmEnd[>] ElmChars[z] LineBreak[~~] "
              "ElmChars[w] LineBreak[~~]");
    EXPECT_EQ(DumpText(u"<a\rb"), "ElmStart[<] ElmName[a] LineBreak[~~] ElmName[b]");
}

TEST(XmlParser, ResetGoesBackToTheStartState)
{
    XmlProbe p;
    LineFeed feed{{u"<a b=\"x"}};  // stops inside a value
    p.SetOnGetNewBuffer(std::ref(feed));
    Dump(p);
    feed = LineFeed{{u"q"}};
    p.ResetBuffer();
    EXPECT_EQ(Dump(p), "ElmStart[q] LineBreak[~~]");
}

TEST(XmlParser, GetNextTokenGivesColoursFromTheTable)
{
    TSxCodeXMLParser p(nullptr);
    FeedOnce(p, u"<!-- c -->\r\n");
    String text;
    TColor back = 0, fore = 0;
    TFontStyles style;
    bool lineBreak = true;
    // "XMLChar", "Comment", "XMLChar", then the line break in the colours of row 2.
    const TColor expectedFore[] = {clBlue, clGreen, clBlue, clBlack};
    const TColor expectedBack[] = {clWindow, clYellow, clWindow, clWindow};
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(p.GetNextToken(text, back, fore, style, lineBreak));
        EXPECT_EQ(fore, expectedFore[i]) << i;
        EXPECT_EQ(back, expectedBack[i]) << i;
        EXPECT_EQ(lineBreak, i == 3) << i;
    }
    EXPECT_EQ(text, u"~~");
    EXPECT_TRUE(style.Contains(TFontStyle::fsBold));
    EXPECT_FALSE(p.GetNextToken(text, back, fore, style, lineBreak));
    EXPECT_FALSE(lineBreak);
    EXPECT_TRUE(text.empty());
}

TEST(XmlParser, UnitStartAndStop)
{
    sxtest::ExpectUnitStartAndStop(u"TSxCodeXMLParser", u"XML", DrawInfo, &Initialization, &Finalization);
}

// The state is not kept per line: a run started at a line that opens with a
// tag gives the tokens of the full run, one started in content does not.
TEST(XmlParser, RestartAtATagGivesTheTokensOfTheFullRun)
{
    const std::vector<String> doc = {u"<?xml v=\"1\"?>", u"<r a=\"1", u"2\">text", u"<!-- c", u"<x> -->",
                                     u"<![CDATA[", u"<y>", u"]]><z/>", u"<w k='q'>tail", u"more</w>"};
    const std::vector<bool> startsWithTag = {true, true, false, true, false, true, false, false, true, false};
    XmlProbe full;
    LineFeed fullFeed{doc};
    full.SetOnGetNewBuffer(std::ref(fullFeed));
    const std::string all = Dump(full);
    EXPECT_EQ(full.LineKind(), 0);
    for (std::size_t i = 0; i < doc.size(); ++i) {
        if (!startsWithTag[i])
            continue;
        XmlProbe part;
        LineFeed feed{doc, i};
        part.SetOnGetNewBuffer(std::ref(feed));
        const std::string tail = Dump(part);
        ASSERT_GE(all.size(), tail.size());
        EXPECT_EQ(all.substr(all.size() - tail.size()), tail) << "from line " << i;
    }
    XmlProbe content;
    LineFeed contentFeed{doc, 9};
    content.SetOnGetNewBuffer(std::ref(contentFeed));
    EXPECT_EQ(Dump(content).substr(0, 11), "ElmStart[m]");
}
