// The line store and the gap vector that holds its lines: text blocks that
// loaded lines share and that go with their last line, adopted buffers read
// in place, nested updates; and, against a plain vector, thousands of seeded
// random edits at several grow (and text block) sizes, 1 included, compared
// after every step, lines read through their views in both widths, each
// change framed by the change events; indexes out of range raise. A failure
// names seed and step. Splitting at any line break is checked in TextTest.
#include "platform/LineGap.h"
#include "platform/LineText.h"
#include "platform/StringList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

using namespace sx;

namespace {

TEST(LineText, AnAdoptedBufferIsReadInPlaceAndFreedWithItsLastLine)
{
    TLineTextStore store;
    TByteBuffer bytes = {'a', 'b', '\r', '\n', 'c'};
    const Byte* data = bytes.data();  // a moved vector keeps its buffer
    const std::uint32_t block = store.Adopt(std::move(bytes));
    const TLineText ab = store.InPlace(block, data, 2);
    const TLineText c = store.InPlace(block, data + 4, 1);
    EXPECT_EQ(ab.View().NarrowData(), data);
    store.Release(ab);
    EXPECT_EQ(store.LiveBlocks(), 1u);
    store.Release(c);
    EXPECT_EQ(store.LiveBlocks(), 0u);
    store.DropIfUnused(store.Adopt({'x'}));
    EXPECT_EQ(store.LiveBlocks(), 0u);
}

TEST(StringList, LoadedLinesShareBlocksThatGoWithTheirLastLine)
{
    TStringList list(64, 32);
    String text;
    for (int i = 0; i < 20; ++i)
        text += (i % 3 ? u"line " : u"wide line \u20AC ") + IntToStr(i) + u"\r\n";
    list.SetText(text);
    EXPECT_GT(list.TextBlocks(), 5u);
    EXPECT_LT(list.TextBlocks(), 20u);  // fewer than lines: they share
    for (Integer i = 0; i < 10; ++i)
        list.Put(i, u"edited");
    for (Integer i = 18; i >= 10; --i)
        list.Delete(i);
    EXPECT_EQ(list.TextBlocks(), 1u);
    EXPECT_EQ(list.Get(10), u"line 19");
    list.Delete(10);
    EXPECT_EQ(list.TextBlocks(), 0u);
    EXPECT_EQ(list.Get(9), u"edited");
}

TEST(StringList, NestedUpdatesReportOnceAtTheOutermostEnds)
{
    TStringList list;
    std::string log;
    list.OnChanging = [&](TObject*) { log += "<"; };
    list.OnChange = [&](TObject*) { log += ">"; };
    list.BeginUpdate();
    list.BeginUpdate();
    list.Add(u"a");
    list.Add(u"b");
    list.EndUpdate();
    EXPECT_EQ(log, "<");
    list.EndUpdate();
    EXPECT_EQ(log, "<>");
    list.EndUpdate();  // one end too many is ignored
    EXPECT_EQ(log, "<>");
}

TEST(LineGap, EditsNearTheLastOneMoveOnlyTheGap)
{
    LineGap<int> gap(1);
    for (int i = 0; i < 1000; ++i)
        gap.Insert(gap.Length(), i);
    gap.Insert(500, -1);
    EXPECT_EQ(gap.GapStart(), 501u);
    EXPECT_EQ(gap[501], 500);
    gap.Delete(501);
    EXPECT_EQ(gap.GapStart(), 501u);
    EXPECT_EQ(gap[500], -1);
    EXPECT_EQ(gap[501], 501);
}

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

/// One random edit on the store, the same on its gap vector alone and on the
/// model; false when the edit was a refused one, which changes nothing.
bool RandomEdit(std::mt19937& random, TStringList& store, LineGap<ModelLine>& gap, std::vector<ModelLine>& model)
{
    const std::size_t size = model.size(), at = random() % std::max<std::size_t>(size, 1);
    const String line = RandomLine(random);
    const auto action = unsigned(random() % 20);
    if (action < 7 || size == 0) {
        const std::size_t where = action < 6 ? random() % (size + 1) : size;
        action < 6 ? store.Insert(Integer(where), line) : void(store.Add(line));  // Add inserts at the end
        gap.Insert(where, ModelLine{line});
        model.insert(model.begin() + std::ptrdiff_t(where), ModelLine{line});
    } else if (action < 11) {
        store.Delete(Integer(at));
        gap.Delete(at);
        model.erase(model.begin() + std::ptrdiff_t(at));
    } else if (action < 15) {
        store.Put(Integer(at), line);
        gap[at].Text = model[at].Text = line;  // the slot stays with its line
    } else if (action < 18) {
        const auto slot = NativeInt(random() % 5);
        store.PutObject(Integer(at), slot);
        gap[at].Slot = model[at].Slot = slot;
    } else if (action < 19) {
        const auto count = Integer(size);
        EXPECT_THROW(store.Get(count), EListError);
        EXPECT_THROW(store.Get(-1), EListError);
        EXPECT_THROW(store.Delete(count), EListError);
        EXPECT_THROW(store.Delete(-1), EListError);
        EXPECT_THROW(store.Insert(count + 1, line), EListError);
        return false;
    } else {
        // Text splits anew: every slot starts at 0 again.
        model.clear();
        for (auto n = random() % 20; n > 0; --n)
            model.push_back(ModelLine{RandomLine(random)});
        store.SetText(ModelText(model));
        gap.Clear();
        for (const ModelLine& fresh : model)
            gap.Insert(gap.Length(), fresh);
    }
    return true;
}

/// A grow size and a size of the text blocks that loaded lines share.
class LineStoreOracle : public ::testing::TestWithParam<std::pair<std::size_t, std::size_t>> {};

TEST_P(LineStoreOracle, RandomEditsMatchAPlainVector)
{
    const auto [growSize, blockBytes] = GetParam();
    const unsigned seed = 7919u * unsigned(growSize) + 11u;
    std::mt19937 random(seed);
    TStringList store(growSize, blockBytes);
    LineGap<ModelLine> gap(growSize);
    std::vector<ModelLine> model;
    std::string events;
    store.OnChanging = [&](TObject*) { events += "<"; };
    store.OnChange = [&](TObject*) { events += ">"; };
    for (int step = 0; step < 4000; ++step) {
        events.clear();
        const bool changed = RandomEdit(random, store, gap, model);
        const std::string where = "seed " + std::to_string(seed) + " step " + std::to_string(step);
        ASSERT_EQ(events, changed ? "<>" : "") << where;  // each change framed once, a refusal not at all
        ASSERT_EQ(store.Count(), Integer(model.size())) << where;
        ASSERT_EQ(gap.Length(), model.size()) << where;
        for (std::size_t i = 0; i < model.size(); ++i)
            ASSERT_TRUE(gap[i].Text == model[i].Text && gap[i].Slot == model[i].Slot) << where << " line " << i;
        if (model.empty())
            continue;
        const std::size_t probe = random() % model.size(), from = random() % 8;
        const String& text = model[probe].Text;
        ASSERT_EQ(store.Get(Integer(probe)), text) << where;
        ASSERT_EQ(store.GetObject(Integer(probe)), model[probe].Slot) << where;
        // The view reads the same whether the line is kept in one byte a character or in two.
        const TLineView view = store.Line(Integer(probe));
        const bool latin1 = std::all_of(text.begin(), text.end(), [](Char c) { return c <= 0xFF; });
        ASSERT_EQ(view.WideData() == nullptr, latin1) << where;
        ASSERT_EQ(view.Substr(from, 3), text.substr(std::min(from, text.size()), 3)) << where;
        ASSERT_EQ(view.FindFirstNot(u' '), text.find_first_not_of(u' ')) << where;
        String appended = u">";
        view.AppendTo(appended);
        ASSERT_EQ(appended, u">" + text) << where;
    }
    EXPECT_EQ(store.Text(), ModelText(model)) << "seed " << seed;
    TStringList copy(growSize, blockBytes);
    copy.Assign(store);
    ASSERT_EQ(copy.Count(), store.Count());
    for (Integer i = 0; i < store.Count(); ++i) {
        EXPECT_EQ(copy.Get(i), store.Get(i)) << i;
        EXPECT_EQ(copy.Objects(i), store.Objects(i)) << i;
    }
    events.clear();
    store.Clear();
    store.Clear();  // nothing left to clear: no events
    EXPECT_EQ(events, model.empty() ? "" : "<>");
    EXPECT_EQ(store.TextBlocks(), 0u);
}

INSTANTIATE_TEST_SUITE_P(GrowSizes, LineStoreOracle,
                         ::testing::Values(std::pair{std::size_t(1), std::size_t(16)},
                                           std::pair{std::size_t(2), TLineTextStore::DefaultBlockBytes},
                                           std::pair{std::size_t(7), std::size_t(16)},
                                           std::pair{std::size_t(64), TLineTextStore::DefaultBlockBytes}));

}  // namespace
