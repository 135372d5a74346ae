// The compact text of the line store: narrow and wide lines, shared blocks
// that go with their last line, and adopted buffers read in place.
#include "platform/LineText.h"
#include "platform/StringList.h"

#include <gtest/gtest.h>

#include <vector>

using namespace sx;

namespace {

TLineView ViewOf(const String& s) { return TLineView(s.data(), s.size()); }

TEST(LineText, LatinOneTextIsKeptNarrowAndOtherTextWide)
{
    TLineTextStore store;
    const String latin = u"Größe ÿ ½";
    const String greek = u"λόγος";
    for (const TLineText text : {store.Own(ViewOf(latin)), store.Pack(ViewOf(latin))}) {
        EXPECT_NE(text.View().NarrowData(), nullptr);
        EXPECT_EQ(text.View().ToString(), latin);
        store.Release(text);
    }
    for (const TLineText text : {store.Own(ViewOf(greek)), store.Pack(ViewOf(greek))}) {
        EXPECT_NE(text.View().WideData(), nullptr);
        EXPECT_EQ(text.View().ToString(), greek);
        store.Release(text);
    }
}

TEST(LineText, ViewsReadTheSameEitherWidth)
{
    TLineTextStore store;
    const TLineText narrow = store.Own(ViewOf(u"  ab cd"));
    const TLineText wide = store.Own(ViewOf(u"  ab c\u0100"));
    EXPECT_EQ(narrow.View().Substr(2, 4), u"ab c");
    EXPECT_EQ(wide.View().Substr(2, 4), u"ab c");
    EXPECT_EQ(narrow.View().Substr(5), u"cd");
    EXPECT_EQ(narrow.View().Substr(9), u"");
    EXPECT_EQ(wide.View().FindFirstNot(u' '), 2u);
    EXPECT_EQ(TLineView().FindFirstNot(u' '), TLineView::npos);
    String joined = u">";
    narrow.View().AppendTo(joined);
    wide.View().AppendTo(joined);
    EXPECT_EQ(joined, u">  ab cd  ab c\u0100");
    store.Release(narrow);
    store.Release(wide);
}

TEST(LineText, ASharedBlockGoesWithItsLastLine)
{
    TLineTextStore store(64);
    std::vector<TLineText> lines;
    for (int i = 0; i < 40; ++i)
        lines.push_back(store.Pack(ViewOf(i % 3 ? u"narrow line" : u"wide line \u20AC")));
    const std::size_t blocks = store.LiveBlocks();
    EXPECT_GT(blocks, 4u);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i)
        store.Release(lines[i]);
    EXPECT_EQ(store.LiveBlocks(), 1u);
    EXPECT_EQ(lines.back().View().ToString(), u"wide line \u20AC");  // line 39
    store.Release(lines.back());
    EXPECT_EQ(store.LiveBlocks(), 0u);
}

TEST(LineText, AnAdoptedBufferIsReadInPlaceAndFreedWithItsLastLine)
{
    TLineTextStore store;
    TByteBuffer bytes = {'a', 'b', '\r', '\n', 'c'};
    const Byte* data = bytes.data();  // a moved vector keeps its buffer
    const std::uint32_t block = store.Adopt(std::move(bytes));
    const TLineText ab = store.InPlace(block, data, 2);
    const TLineText c = store.InPlace(block, data + 4, 1);
    EXPECT_EQ(ab.View().NarrowData(), data);
    EXPECT_EQ(ab.View().ToString(), u"ab");
    store.Release(ab);
    EXPECT_EQ(store.LiveBlocks(), 1u);
    store.Release(c);
    EXPECT_EQ(store.LiveBlocks(), 0u);

    store.DropIfUnused(store.Adopt({'x'}));
    EXPECT_EQ(store.LiveBlocks(), 0u);
}

TEST(StringListStore, LoadedLinesFreeTheirBlocksWhenReplacedOrDeleted)
{
    TStringList list(64, 32);
    String text;
    for (int i = 0; i < 20; ++i)
        text += u"line number " + IntToStr(i) + u"\r\n";
    list.SetText(text);
    EXPECT_GT(list.TextBlocks(), 5u);
    for (Integer i = 0; i < 10; ++i)
        list.Put(i, u"edited");
    while (list.Count() > 10)
        list.Delete(10);
    EXPECT_EQ(list.TextBlocks(), 0u);
    EXPECT_EQ(list.Get(9), u"edited");
}

}  // namespace
