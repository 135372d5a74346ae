// The gap vector against a plain vector, over seeded random edits at several
// grow sizes.
#include "platform/LineGap.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace sx;

namespace {

class LineGapOracle : public ::testing::TestWithParam<std::size_t> {};

TEST_P(LineGapOracle, RandomEditsMatchAPlainVector)
{
    const unsigned seed = 20261123u + unsigned(GetParam());
    std::mt19937 random(seed);
    LineGap<std::string> gap(GetParam());
    std::vector<std::string> plain;
    for (int step = 0; step < 4000; ++step) {
        const std::size_t size = plain.size();
        const int action = int(random() % 10);
        if (action < 6 || size == 0) {
            const std::size_t at = random() % (size + 1);
            const std::string value = std::to_string(step);
            gap.Insert(at, value);
            plain.insert(plain.begin() + std::ptrdiff_t(at), value);
        } else if (action < 9) {
            const std::size_t at = random() % size;
            gap.Delete(at);
            plain.erase(plain.begin() + std::ptrdiff_t(at));
        } else {
            const std::size_t at = random() % size;
            gap[at] += "*";
            plain[at] += "*";
        }
        ASSERT_EQ(gap.Length(), plain.size()) << "seed " << seed << " step " << step;
        const std::size_t probe = random() % (plain.size() + 1);
        if (probe < plain.size()) {
            ASSERT_EQ(gap[probe], plain[probe]) << "seed " << seed << " step " << step;
        }
    }
    for (std::size_t i = 0; i < plain.size(); ++i)
        ASSERT_EQ(gap[i], plain[i]) << "seed " << seed;
}

INSTANTIATE_TEST_SUITE_P(GrowSizes, LineGapOracle, ::testing::Values(1, 2, 7, 64));

TEST(LineGap, EditsNearTheLastOneMoveOnlyTheGap)
{
    LineGap<int> gap(1);
    for (int i = 0; i < 1000; ++i)
        gap.Insert(gap.Length(), i);
    gap.Insert(500, -1);
    EXPECT_EQ(gap.GapStart(), 501u);
    gap.Delete(501);
    EXPECT_EQ(gap.GapStart(), 501u);
    EXPECT_EQ(gap[500], -1);
    EXPECT_EQ(gap[501], 501);
}

}  // namespace
