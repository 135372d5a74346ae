// The line store against a plain vector of lines and slots: thousands of
// seeded random edits through the public TStrings operations, at several
// grow and text block sizes, compared after every step. A failure names seed
// and step.
#include "platform/StringList.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace sx;

namespace {

struct ModelLine {
    String Text;
    NativeInt Slot = 0;
};

String RandomLine(std::mt19937& random)
{
    static const Char Pieces[] = {u'a', u'b', u' ', u'\t', 0xE9, 0xD83D, 0};
    String line;
    for (auto n = random() % 6; n > 0; --n)
        line.push_back(Pieces[random() % std::size(Pieces)]);
    return line;
}

/// The model's text as Text gives it: every line ended by CR LF.
String ModelText(const std::vector<ModelLine>& model)
{
    String text;
    for (const ModelLine& line : model)
        text += line.Text + u"\r\n";
    return text;
}

/// One random edit on the store and the same on the model.
void RandomEdit(std::mt19937& random, TStringList& store, std::vector<ModelLine>& model)
{
    const auto size = Integer(model.size());
    const Integer at = Integer(random() % unsigned(std::max(size, 1)));
    const String line = RandomLine(random);
    const auto action = unsigned(random() % 20);
    if (action < 6 || size == 0) {
        const Integer where = Integer(random() % unsigned(size + 1));
        store.Insert(where, line);
        model.insert(model.begin() + where, ModelLine{line, 0});
    } else if (action < 10) {
        store.Delete(at);
        model.erase(model.begin() + at);
    } else if (action < 14) {
        store.Put(at, line);
        model[std::size_t(at)].Text = line;  // the slot stays with its line
    } else if (action < 17) {
        const auto slot = NativeInt(random() % 5);
        store.PutObject(at, slot);
        model[std::size_t(at)].Slot = slot;
    } else if (action < 18) {
        store.Add(line);
        model.push_back(ModelLine{line, 0});
    } else if (action < 19) {
        EXPECT_THROW(store.Get(size), EListError);
        EXPECT_THROW(store.Delete(-1), EListError);
    } else {
        // Text splits anew: every slot starts at 0 again.
        std::vector<ModelLine> fresh;
        for (auto n = random() % 20; n > 0; --n)
            fresh.push_back(ModelLine{RandomLine(random), 0});
        store.SetText(ModelText(fresh));
        model = fresh;
    }
}

/// A grow size and a size of the text blocks that loaded lines share.
class LineStoreOracle : public ::testing::TestWithParam<std::pair<std::size_t, std::size_t>> {};

TEST_P(LineStoreOracle, RandomEditsMatchAPlainVector)
{
    const auto [growSize, blockBytes] = GetParam();
    const unsigned seed = 7919u * unsigned(growSize) + 11u;
    std::mt19937 random(seed);
    TStringList store(growSize, blockBytes);
    std::vector<ModelLine> model;
    for (int step = 0; step < 3000; ++step) {
        RandomEdit(random, store, model);
        ASSERT_EQ(store.Count(), Integer(model.size())) << "seed " << seed << " step " << step;
        if (model.empty())
            continue;
        const auto probe = Integer(random() % model.size());
        ASSERT_EQ(store.Get(probe), model[std::size_t(probe)].Text) << "seed " << seed << " step " << step;
        ASSERT_EQ(store.GetObject(probe), model[std::size_t(probe)].Slot) << "seed " << seed << " step " << step;
    }
    EXPECT_EQ(store.Text(), ModelText(model)) << "seed " << seed;
    TStringList copy(growSize, blockBytes);
    copy.Assign(store);
    EXPECT_EQ(copy.Text(), store.Text());
    for (Integer i = 0; i < store.Count(); ++i)
        EXPECT_EQ(copy.Objects(i), store.Objects(i)) << i;
    store.Clear();
    EXPECT_EQ(store.TextBlocks(), 0u);
}

INSTANTIATE_TEST_SUITE_P(GrowSizes, LineStoreOracle,
                         ::testing::Values(std::pair{std::size_t(1), std::size_t(16)},
                                           std::pair{std::size_t(3), TLineTextStore::DefaultBlockBytes},
                                           std::pair{std::size_t(64), TLineTextStore::DefaultBlockBytes}));

}  // namespace
