// Randomized editing in the ordinary suite: sessions of operations drawn from
// seeded generators, with the control's invariants checked after every step
// and the undo round trip at the end, and the sequences the fuzzer found
// replayed byte for byte. A failure prints the seed and the steps.
#include "support/EditingSession.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;

namespace {

/// Runs one session over the bytes; answers whether it ended with the round trip.
bool RunSession(Host& host, const std::vector<std::uint8_t>& bytes, const std::string& name,
                TSxCodeExtOptions options = {})
{
    ByteReader in(bytes.data(), bytes.size());
    return RunEditingSession(host, in, 100, [&](const std::string& what) { ADD_FAILURE() << name << ": " << what; },
                             options);
}

/// Every extended option on, from seed 101.
const TSxCodeExtOptions AllOptions{TSxCodeExtOption::coLineNumbers, TSxCodeExtOption::coCurrentLine,
                                   TSxCodeExtOption::coBracketMatch, TSxCodeExtOption::coRedo,
                                   TSxCodeExtOption::coGroupUndo};

TEST(RandomEditing, SeededSessionsKeepTheInvariantsAndUndoToTheStart)
{
    Host host;
    int roundTrips = 0;
    for (unsigned seed = 1; seed <= 130; ++seed) {
        std::mt19937 random(seed);
        // Short sessions reach the round trip more often; long ones reach more states.
        std::vector<std::uint8_t> bytes(seed % 3 == 0 ? 600 : 120);
        for (std::uint8_t& b : bytes)
            b = std::uint8_t(random());
        roundTrips += RunSession(host, bytes, "seed " + std::to_string(seed), seed > 100 ? AllOptions : TSxCodeExtOptions{})
                          ? 1
                          : 0;
    }
    EXPECT_GT(roundTrips, 10);  // the round trip is not excluded away
}

/// Inputs the editing fuzzer found: faults fixed since, and a replay that
/// the round trip has to leave out.
TEST(RandomEditing, SequencesTheFuzzerFoundStayFixed)
{
    const std::vector<std::vector<std::uint8_t>> found = {
        // A selection from column -3 to the largest column: its length overflowed.
        {0x00, 0x63, 0xee, 0xff, 0xff, 0x62, 0x61, 0x66, 0x0d, 0x14, 0x21, 0x64, 0x02, 0x00, 0x00, 0x00, 0x69, 0x64,
         0x67},
        // Select word, Ctrl+Shift+Page Down, then a typed character.
        {0x0a, 0x20, 0x20, 0xaf, 0xaf, 0xaf, 0x4a, 0x0d, 0x2e, 0x20, 0x21, 0x69, 0x33, 0x76, 0x06, 0xeb, 0x64, 0x20,
         0x02},
        // Enter over a selection that starts behind its line's end (Shift held):
        // a replay the round trip must leave out, since the record puts the
        // text back at the line's end, in front of the tail that moved up.
        {0x02, 0xff, 0x11, 0x11, 0x11, 0x11, 0x11, 0xee, 0x00, 0x00, 0x00, 0x00, 0x21, 0xee, 0xff, 0xff, 0xff, 0xff,
         0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x00, 0x90, 0x73},
    };
    Host host;
    for (std::size_t i = 0; i < found.size(); ++i)
        RunSession(host, found[i], "found input " + std::to_string(i));
}

}  // namespace
