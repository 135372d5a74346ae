// The parser base: both feeds, push-back, line counting and the base tokenizer.
#include "codeedit/uSxCodeParser.h"
#include "parsers/ScriptTestSupport.h"

#include <deque>

using namespace sx;
using sxtest::Utf16Stream;

namespace {

/// A callback feed that hands out the given pieces, then answers False.
struct PieceFeed {
    std::deque<String> pieces;
    int resets = 0;
    int calls = 0;
    bool operator()(bool reset, String& s)
    {
        if (reset) {
            ++resets;
            return true;
        }
        ++calls;
        if (pieces.empty())
            return false;
        s = pieces.front();
        pieces.pop_front();
        return true;
    }
};

struct Token {
    String text;
    bool lineBreak;
    bool result;
};

Token Next(TSxLangParser& p)
{
    Token t{};
    TColor back = 0, fore = 0;
    TFontStyles style{TFontStyle::fsBold};
    t.result = p.GetNextToken(t.text, back, fore, style, t.lineBreak);
    EXPECT_EQ(back, clWindow);
    EXPECT_EQ(fore, clWindowText);
    EXPECT_TRUE(style.Empty());
    return t;
}

}  // namespace

TEST(ParserBase, BaseTokenizerSplitsLinesAndKeepsTextBeforeTheEnd)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{u"a\r\n\r\nb"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    const Token t1 = Next(p), t2 = Next(p), t3 = Next(p), t4 = Next(p);
    EXPECT_EQ(t1.text, u"a");
    EXPECT_FALSE(t1.lineBreak);
    EXPECT_TRUE(t2.lineBreak && t2.text.empty());
    EXPECT_TRUE(t3.lineBreak && t3.text.empty());
    EXPECT_EQ(t4.text, u"b");
    EXPECT_TRUE(t4.lineBreak);
    EXPECT_TRUE(t1.result && t2.result && t3.result && t4.result);
}

TEST(ParserBase, WithoutAFeedTheEndComesForEver)
{
    TSxLangParser p(nullptr);
    EXPECT_EQ(p.ReadChar(), 0);
    for (int i = 0; i < 3; ++i) {
        const Token t = Next(p);
        EXPECT_TRUE(t.result);
        EXPECT_TRUE(t.lineBreak);
    }
}

TEST(ParserBase, LoneCrEndsALineAndLoneLfDoesNot)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{u"ab\ncd\ref"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    EXPECT_EQ(Next(p).text, u"abcd");
    EXPECT_TRUE(Next(p).lineBreak);
    EXPECT_EQ(Next(p).text, u"ef");
}

TEST(ParserBase, CharacterZeroInsideTheInputEndsATokenAndReadingGoesOn)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{String(u"ab") + Char(0) + u"cd"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    const Token first = Next(p);
    EXPECT_EQ(first.text, u"ab");
    EXPECT_TRUE(first.lineBreak);
    EXPECT_EQ(Next(p).text, u"cd");
}

TEST(ParserBase, EveryReadThatFindsNothingAsksTheCallbackAgain)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{u"", u"x"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    EXPECT_EQ(p.ReadChar(), 0);  // an empty piece
    EXPECT_EQ(p.ReadChar(), u'x');
    EXPECT_EQ(p.ReadChar(), 0);  // exhausted
    EXPECT_EQ(p.ReadChar(), 0);
    EXPECT_EQ(feed.calls, 4);
}

TEST(ParserBase, CallbackHasPriorityOverTheStream)
{
    TSxLangParser p(nullptr);
    p.SetInputStream(Utf16Stream(u"s"), true);
    PieceFeed feed{{u"c"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    p.ResetBuffer();
    EXPECT_EQ(p.ReadChar(), u'c');
}

TEST(ParserBase, ResetAsksTheCallbackOnceAndKeepsTheLineToLineState)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{u"abc"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    p.ReadChar();
    p.SetLineKind(7);
    p.SetRemarkEnd(u"*)");
    p.SetInRemark(true);
    p.SetEndLines(true);
    p.ResetBuffer();
    EXPECT_EQ(feed.resets, 1);
    EXPECT_EQ(p.LineNr(), 1);
    EXPECT_EQ(p.LineKind(), 7);
    EXPECT_EQ(p.RemarkEnd(), u"*)");
    EXPECT_TRUE(p.InRemark() && p.EndLines());
}

TEST(ParserBase, ShortStreamEndsInATerminatorAndIsReadAgainAtTheEnd)
{
    TSxLangParser p(nullptr);
    auto* stream = Utf16Stream(u"abc");
    p.SetInputStream(stream, true);
    EXPECT_EQ(p.ReadChar(), u'a');
    EXPECT_EQ(p.ReadChar(), u'b');
    EXPECT_EQ(p.ReadChar(), u'c');
    EXPECT_EQ(p.ReadChar(), 0);
    EXPECT_EQ(p.ReadChar(), 0);  // a new load: an empty read and its terminator
    EXPECT_EQ(stream->Position(), 6);
}

TEST(ParserBase, StreamOfExactlyOneBlockHasNoTerminatorInTheFirstLoad)
{
    TSxLangParser p(nullptr);
    p.SetInputStream(Utf16Stream(String(4096, u'x')), true);
    for (int i = 0; i < 4096; ++i)
        ASSERT_EQ(p.ReadChar(), u'x') << i;
    EXPECT_EQ(p.ReadChar(), 0);
}

TEST(ParserBase, StreamDropsAnOddLastByteReadsLowByteFirstAndRewindsOnReset)
{
    TSxLangParser p(nullptr);
    p.SetInputStream(new TMemoryStream({0xAC, 0x20, '!'}), true);
    EXPECT_EQ(p.ReadChar(), u'\u20AC');
    EXPECT_EQ(p.ReadChar(), 0);
    p.ResetBuffer();
    EXPECT_EQ(p.ReadChar(), u'\u20AC');
}

TEST(ParserBase, SetInputStreamFreesAnOwnedStreamAndKeepsAForeignOne)
{
    struct Tracked : TMemoryStream {
        bool* freed;
        explicit Tracked(bool* f) : freed(f) {}
        ~Tracked() override { *freed = true; }
    };
    bool ownedFreed = false, foreignFreed = false;
    auto* foreign = new Tracked(&foreignFreed);
    {
        TSxLangParser p(nullptr);
        p.SetInputStream(new Tracked(&ownedFreed), true);
        p.SetInputStream(foreign, false);
        EXPECT_TRUE(ownedFreed);
    }
    EXPECT_FALSE(foreignFreed);
    delete foreign;
}

TEST(ParserBase, LineNumberCountsLfOnReadAndPush)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{u"\r\nx"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    EXPECT_EQ(p.ReadChar(), u'\r');
    EXPECT_EQ(p.PeekChar(), u'\n');
    EXPECT_EQ(p.LineNr(), 1);
    EXPECT_EQ(p.ReadChar(), u'\n');
    EXPECT_EQ(p.LineNr(), 2);
    p.PushChar(u'\n');
    EXPECT_EQ(p.LineNr(), 1);
    // a push in front of the buffer counts too
    p.ResetBuffer();
    p.PushChar(u'\n');
    EXPECT_EQ(p.LineNr(), 0);
}

TEST(ParserBase, PushesNeedNotBeWhatWasReadAndMayGoInFrontOfTheBuffer)
{
    TSxLangParser p(nullptr);
    PieceFeed feed{{u"xyz"}};
    p.SetOnGetNewBuffer(std::ref(feed));
    EXPECT_EQ(p.ReadChar(), u'x');
    p.PushChar(u'q');
    EXPECT_EQ(p.ReadChar(), u'q');
    p.PushStr(u"abc");
    String read;
    for (int i = 0; i < 5; ++i)
        read += p.ReadChar();
    EXPECT_EQ(read, u"abcyz");
    EXPECT_EQ(p.ReadCurrChar(), u'z');
}

TEST(ParserBase, PeekAtTheEndLeavesATerminatorToRead)
{
    TSxLangParser p(nullptr);
    PieceFeed feed;
    p.SetOnGetNewBuffer(std::ref(feed));
    EXPECT_EQ(p.PeekChar(), 0);
    EXPECT_EQ(feed.calls, 1);
    EXPECT_EQ(p.ReadChar(), 0);
    EXPECT_EQ(feed.calls, 1);
}

TEST(ParserBase, ClassReferenceBuildsTheParserWithItsOwner)
{
    TComponent owner(nullptr);
    const TSxLangParserClass cls(TSxLangParser::ClassInfo());
    TSxLangParser* p = cls.Create(&owner);
    EXPECT_EQ(p->Owner(), &owner);
    EXPECT_EQ(p->ClassName(), u"TSxLangParser");
    EXPECT_THROW(TSxLangParserClass{TComponent::ClassInfo()}, EInvalidOperation);
}
