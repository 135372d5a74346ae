// The line store: text blocks that loaded lines share and that go with their
// last line, adopted buffers read in place, nested updates. Narrow and wide
// lines, joined text and the events of single changes are checked in
// LineStoreRandomTest; splitting at any line break in TextStreamTest.
#include "platform/LineText.h"
#include "platform/StringList.h"

#include <gtest/gtest.h>

#include <string>

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

}  // namespace
