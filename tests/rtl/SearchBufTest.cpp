// SearchBuf: the offsets each direction tries, the bounds of the buffer,
// case-blind comparison beyond ASCII and the whole-word rule.
#include "platform/StrUtils.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

using Opt = TStringSearchOption;

constexpr int WholeBuffer = -1000;

/// The offset of the hit in Buf, or -1.
int Find(const String& buf, int selStart, const String& what, TStringSearchOptions options,
         int bufLen = WholeBuffer, int selLength = 0)
{
    const Integer length = bufLen == WholeBuffer ? Integer(buf.size()) : bufLen;
    const Char* hit = SearchBuf(buf.data(), length, selStart, selLength, what, options);
    return hit ? int(hit - buf.data()) : -1;
}

const TStringSearchOptions Down{Opt::soDown};
const TStringSearchOptions Up{};

TEST(SearchBuf, ForwardStartsBehindTheSelectionAndStaysInsideTheBuffer)
{
    EXPECT_EQ(Find(u"abcabc", 0, u"abc", Down), 0);
    EXPECT_EQ(Find(u"abcabc", 1, u"abc", Down), 3);
    EXPECT_EQ(Find(u"abcabc", 0, u"abc", Down, WholeBuffer, 1), 3);  // SelStart + SelLength
    EXPECT_EQ(Find(u"abcabc", 3, u"abc", Down, 5), -1);     // would end behind BufLen
    EXPECT_EQ(Find(u"abcabc", 4, u"abc", Down), -1);
}

TEST(SearchBuf, BackwardFindsTheLastHitThatEndsAtOrBeforeTheStart)
{
    EXPECT_EQ(Find(u"abcabc", 6, u"abc", Up), 3);
    EXPECT_EQ(Find(u"abcabc", 5, u"abc", Up), 0);
    EXPECT_EQ(Find(u"abcabc", 3, u"abc", Up), 0);
    EXPECT_EQ(Find(u"abcabc", 2, u"abc", Up), -1);
}

TEST(SearchBuf, NothingIsFoundOutsideTheBufferOrForAnEmptyText)
{
    EXPECT_EQ(Find(u"abc", 0, u"a", Down, 0), -1);
    EXPECT_EQ(Find(u"abc", 0, u"a", Down, -3), -1);
    EXPECT_EQ(Find(u"abc", -1, u"a", Down), -1);
    EXPECT_EQ(Find(u"abc", 4, u"c", Up), -1);
    EXPECT_EQ(Find(u"abc", 0, u"", Down), -1);
    EXPECT_EQ(Find(u"abc", 0, u"abcd", Down), -1);
    EXPECT_EQ(SearchBuf(nullptr, 3, 0, 0, u"a", Down), nullptr);
}

TEST(SearchBuf, CaseBlindComparesInUpperCaseBeyondAscii)
{
    EXPECT_EQ(Find(u"xx HeLLo", 0, u"hello", Down), 3);
    EXPECT_EQ(Find(u"xx HeLLo", 0, u"hello", Down + TStringSearchOptions{Opt::soMatchCase}), -1);
    EXPECT_EQ(Find(u"Straße CAFÉ", 0, u"café", Down), 7);
    EXPECT_EQ(Find(u"\u0416\u0443\u043A", 3, u"\u0436\u0423\u043a", Up), 0);  // Жук in mixed case
    EXPECT_EQ(Find(u"\u03C3\u03C2", 0, u"\u03A3\u03A3", Down), 0);            // both sigmas are Σ
    EXPECT_EQ(Find(u"\u00E9", 0, u"e", Down), -1);                             // no accent folding
    EXPECT_EQ(Find(u"[{", 0, u"{", Down), 1);  // no ASCII punctuation is folded onto another
}

TEST(SearchBuf, WholeWordsNeedDelimitersAroundTheHit)
{
    const TStringSearchOptions word = Down + TStringSearchOptions{Opt::soWholeWord};
    EXPECT_EQ(Find(u"cat2 cat", 0, u"cat", word), 5);
    EXPECT_EQ(Find(u"a_cat_b cat", 0, u"cat", word), 2);  // the underscore is a delimiter
    EXPECT_EQ(Find(u"cat", 0, u"cat", word), 0);           // the buffer's end closes the word
    EXPECT_EQ(Find(u"catcat", 0, u"cat", word, 3), 0);     // even inside a longer line
    EXPECT_EQ(Find(u"xcat cat", 1, u"cat", word), 1);      // the first offset tried is a word start
    EXPECT_EQ(Find(u"xcat cat", 0, u"cat", word), 5);
    EXPECT_EQ(Find(u"cat xcat", 8, u"cat", Up + TStringSearchOptions{Opt::soWholeWord}), 5);  // first tried
    EXPECT_EQ(Find(u"cat xcat", 7, u"cat", Up + TStringSearchOptions{Opt::soWholeWord}), 0);
    EXPECT_EQ(Find(u"caf\u00E9 caf", 0, u"caf", word), 0);  // only ASCII letters and digits make words
}

}  // namespace
