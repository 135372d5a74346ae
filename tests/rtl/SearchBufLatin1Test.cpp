// SearchBuf over one-byte Latin-1 text answers as SearchBuf does over the
// same characters in UTF-16, for every option and start, letters whose
// upper case lies outside Latin-1 included.
#include "platform/StrUtils.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace sx;

namespace {

TEST(SearchBufLatin1, AnswersAsTheWideSearchDoes)
{
    const unsigned seed = 20261123u;
    std::mt19937 random(seed);
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
        for (const auto option : {TStringSearchOption::soDown, TStringSearchOption::soMatchCase,
                                  TStringSearchOption::soWholeWord})
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
