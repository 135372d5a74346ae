// The parser base: both feeds, push-back, line counting and the base tokenizer.
#include "codeedit/uSxCodeParser.h"
#include "parsers/ParserTestSupport.h"


namespace {

using namespace sx;
using sx::test::Paint;
using sx::test::Utf16Stream;

/// A base parser on a feed of the pieces.
struct ParserBase : testing::Test {
    void Feed(std::deque<String> APieces)
    {
        feed.Pieces = std::move(APieces);
        parser.SetOnGetNewBuffer(std::ref(feed));
    }
    /// The next token's text, with "|" for a line break; checks the base's colours.
    String Next()
    {
        const sx::test::Painted t = Paint(parser);
        EXPECT_TRUE(t.More && t.Back == clWindow && t.Fore == clWindowText && t.Style.Empty());
        return t.LineBreak ? t.Text + u"|" : t.Text;
    }
    String Read(int ACount)
    {
        String read;
        while (ACount-- > 0)
            read += parser.ReadChar();
        return read;
    }
    TSxLangParser parser{nullptr};
    sx::test::PieceFeed feed;
};

TEST_F(ParserBase, BaseTokenizerSplitsLinesAndKeepsTextBeforeTheEnd)
{
    const std::pair<String, std::vector<String>> cases[] = {
        {u"a\r\n\r\nb", {u"a", u"|", u"|", u"b|"}},
        {u"ab\ncd\ref", {u"abcd", u"|", u"ef|"}},  // a lone LF ends no line, a lone CR does
        {String(u"ab") + Char(0) + u"cd", {u"ab|", u"cd|"}},  // character 0 ends a token, reading goes on
    };
    for (const auto& [text, tokens] : cases) {
        Feed({text});
        for (const String& token : tokens)
            EXPECT_EQ(Next(), token) << StrToUtf8(text);
    }
    TSxLangParser unfed(nullptr);  // without a feed the end comes for ever
    EXPECT_EQ(unfed.ReadChar(), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(Paint(unfed).More && Paint(unfed).LineBreak);
}

TEST_F(ParserBase, EveryReadThatFindsNothingAsksTheCallbackAgain)
{
    Feed({u"", u"x"});
    EXPECT_EQ(Read(4), String(1, Char(0)) + u"x" + Char(0) + Char(0));  // an empty piece, then exhausted
    EXPECT_EQ(feed.Calls, 4);
    Feed({});
    EXPECT_TRUE(parser.PeekChar() == 0 && parser.ReadChar() == 0);  // a peek at the end leaves a terminator
    EXPECT_EQ(feed.Calls, 5);
}

TEST_F(ParserBase, ResetAsksTheCallbackOnceAndKeepsTheLineToLineState)
{
    parser.SetInputStream(Utf16Stream(u"s"), true);
    Feed({u"abc"});  // the callback has priority over the stream
    parser.ReadChar();
    parser.SetLineKind(7);
    parser.SetRemarkEnd(u"*)");
    parser.SetInRemark(true);
    parser.SetEndLines(true);
    parser.ResetBuffer();
    EXPECT_TRUE(feed.Resets == 1 && parser.ReadChar() == u'a' && parser.LineNr() == 1);
    EXPECT_TRUE(parser.LineKind() == 7 && parser.RemarkEnd() == u"*)" && parser.InRemark() && parser.EndLines());
}

TEST_F(ParserBase, StreamsAreReadInBlocksThatAShortReadEnds)
{
    auto* stream = Utf16Stream(u"abc");
    parser.SetInputStream(stream, true);
    // then a new load: an empty read and its terminator
    EXPECT_TRUE(Read(5) == String(u"abc") + Char(0) + Char(0) && stream->Position() == 6);
    parser.SetInputStream(Utf16Stream(String(4096, u'x')), true);
    EXPECT_EQ(Read(4097), String(4096, u'x') + Char(0));  // no terminator in a full first block
    // an odd last byte is dropped; low byte first; a reset rewinds
    parser.SetInputStream(new TMemoryStream({0xAC, 0x20, '!'}), true);
    EXPECT_EQ(Read(2), String(u"\u20AC") + Char(0));
    parser.ResetBuffer();
    EXPECT_EQ(parser.ReadChar(), u'\u20AC');
}

TEST_F(ParserBase, SetInputStreamFreesAnOwnedStreamAndKeepsAForeignOne)
{
    struct Tracked : TMemoryStream {
        bool* Freed;
        explicit Tracked(bool* AFreed) : Freed(AFreed) {}
        ~Tracked() override { *Freed = true; }
    };
    bool ownedFreed = false, foreignFreed = false;
    auto* foreign = new Tracked(&foreignFreed);
    parser.SetInputStream(new Tracked(&ownedFreed), true);
    parser.SetInputStream(foreign, false);
    EXPECT_TRUE(ownedFreed);
    parser.SetInputStream(nullptr, false);
    EXPECT_FALSE(foreignFreed);
    delete foreign;
}

TEST_F(ParserBase, PushesNeedNotBeWhatWasReadAndLineNumbersCountLfBothWays)
{
    Feed({u"xyz\r\n"});
    EXPECT_EQ(parser.ReadChar(), u'x');
    parser.PushChar(u'q');
    EXPECT_EQ(parser.ReadChar(), u'q');
    parser.PushStr(u"abc");  // more than was read: the surplus goes in front of the buffer
    EXPECT_EQ(Read(6), u"abcyz\r");
    EXPECT_TRUE(parser.ReadCurrChar() == u'\r' && parser.PeekChar() == u'\n' && parser.LineNr() == 1);
    EXPECT_TRUE(parser.ReadChar() == u'\n' && parser.LineNr() == 2);
    parser.PushChar(u'\n');
    EXPECT_EQ(parser.LineNr(), 1);
    parser.ResetBuffer();
    parser.PushChar(u'\n');  // a push in front of the buffer counts too
    EXPECT_EQ(parser.LineNr(), 0);
}

}  // namespace
