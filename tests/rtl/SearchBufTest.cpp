// SearchBuf: the offsets each direction tries, the bounds of the buffer,
// case-blind comparison beyond ASCII and the whole-word rule; and its
// one-byte Latin-1 twin, which must answer as the wide search does. The
// search engine's tests meet plain hits in each direction, ASCII case and words.
#include "platform/StrUtils.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace sx;

namespace {

using Opt = TStringSearchOption;

constexpr int WholeBuffer = -1000;

const TStringSearchOptions Down{Opt::soDown};
const TStringSearchOptions Up{};
const TStringSearchOptions DownWord = Down + TStringSearchOptions{Opt::soWholeWord};
const TStringSearchOptions UpWord{Opt::soWholeWord};

TEST(SearchBuf, FindsWhereEachRuleSays)
{
    const struct {
        String buf;
        int selStart;
        String what;
        TStringSearchOptions options;
        int expected;  ///< the offset of the hit, or -1
        int bufLen = WholeBuffer;
        int selLength = 0;
    } cases[] = {
        // Forward starts behind the selection and stays inside the buffer.
        {u"abcabc", 1, u"abc", Down, 3},
        {u"abcabc", 0, u"abc", Down, 3, WholeBuffer, 1},  // SelStart + SelLength
        {u"abcabc", 3, u"abc", Down, -1, 5},              // would end behind BufLen
        {u"abcabc", 4, u"abc", Down, -1},
        // Backward finds the last hit that ends at or before the start.
        {u"abcabc", 5, u"abc", Up, 0},
        {u"abcabc", 2, u"abc", Up, -1},
        // Nothing outside the buffer, nothing for an empty or a longer text.
        {u"abc", 0, u"a", Down, -1, 0},
        {u"abc", 0, u"a", Down, -1, -3},
        {u"abc", -1, u"a", Down, -1},
        {u"abc", 4, u"c", Up, -1},
        {u"abc", 0, u"", Down, -1},
        {u"abc", 0, u"abcd", Down, -1},
        // Case-blind compares in upper case, beyond ASCII too.
        {u"Straße CAFÉ", 0, u"café", Down, 7},
        {u"\u0416\u0443\u043A", 3, u"\u0436\u0423\u043a", Up, 0},  // Жук in mixed case
        {u"\u03C3\u03C2", 0, u"\u03A3\u03A3", Down, 0},             // both sigmas are Σ
        {u"\u00E9", 0, u"e", Down, -1},                             // no accent folding
        {u"[{", 0, u"{", Down, 1},  // no ASCII punctuation is folded onto another
        // Whole words need delimiters around the hit.
        {u"a_cat_b cat", 0, u"cat", DownWord, 2},  // the underscore is a delimiter
        {u"cat", 0, u"cat", DownWord, 0},           // the buffer's end closes the word
        {u"catcat", 0, u"cat", DownWord, 0, 3},     // even inside a longer line
        {u"xcat cat", 1, u"cat", DownWord, 1},      // the first offset tried is a word start
        {u"xcat cat", 0, u"cat", DownWord, 5},
        {u"cat xcat", 8, u"cat", UpWord, 5},  // the first offset tried going up
        {u"cat xcat", 7, u"cat", UpWord, 0},
        {u"caf\u00E9 caf", 0, u"caf", DownWord, 0},  // only ASCII letters and digits make words
    };
    for (const auto& c : cases) {
        const Integer length = c.bufLen == WholeBuffer ? Integer(c.buf.size()) : c.bufLen;
        const Char* hit = SearchBuf(c.buf.data(), length, c.selStart, c.selLength, c.what, c.options);
        EXPECT_EQ(hit ? int(hit - c.buf.data()) : -1, c.expected)
            << StrToUtf8(c.what) << " in " << StrToUtf8(c.buf) << " from " << c.selStart;
    }
    EXPECT_EQ(SearchBuf(nullptr, 3, 0, 0, u"a", Down), nullptr);
}

TEST(SearchBufLatin1, AnswersAsTheWideSearchDoes)
{
    const unsigned seed = 20261123u;
    std::mt19937 random(seed);
    // Letters whose upper case lies outside Latin-1 included.
    const Char alphabet[] = {u'a', u'A', u'b', u'_', u' ', u'1', 0xDF, 0xFF, 0xB5, 0xE9, 0xC9, u'x'};
    for (int round = 0; round < 3000; ++round) {
        std::vector<Byte> narrow(random() % 24);
        String wide;
        for (Byte& b : narrow) {
            b = Byte(alphabet[random() % std::size(alphabet)]);
            wide += Char(b);
        }
        String needle;
        for (std::size_t n = 1 + random() % 3; n > 0; --n)
            needle += random() % 8 ? alphabet[random() % std::size(alphabet)] : Char(0x178);
        TStringSearchOptions options;
        for (const auto option : {Opt::soDown, Opt::soMatchCase, Opt::soWholeWord})
            if (random() % 2)
                options.Include(option);
        const auto length = Integer(narrow.size());
        const auto start = Integer(random() % std::size_t(length + 2)) - 1;
        const Byte* hit = SearchBufLatin1(narrow.data(), length, start, 0, needle, options);
        const Char* expected = SearchBuf(wide.data(), length, start, 0, needle, options);
        ASSERT_EQ(hit ? hit - narrow.data() : -1, expected ? expected - wide.data() : -1)
            << "seed " << seed << " round " << round;
    }
}

}  // namespace
