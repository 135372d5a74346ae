// The line store: its compact text (narrow and wide lines, shared blocks that
// go with their last line, adopted buffers read in place), change events
// around every change and nested updates, joined text with CR LF and
// splitting at any line break.
#include "platform/LineText.h"
#include "platform/StringList.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace sx;

namespace {

TLineView ViewOf(const String& s) { return TLineView(s.data(), s.size()); }

TEST(LineText, LatinOneTextIsKeptNarrowAndOtherTextWide)
{
    TLineTextStore store;
    for (const auto& [text, narrow] : {std::pair{String(u"Größe ÿ ½"), true}, std::pair{String(u"λόγος"), false}}) {
        for (const TLineText line : {store.Own(ViewOf(text)), store.Pack(ViewOf(text))}) {
            EXPECT_EQ(line.View().NarrowData() != nullptr, narrow);
            EXPECT_EQ(line.View().WideData() != nullptr, !narrow);
            EXPECT_EQ(line.View().ToString(), text);
            store.Release(line);
        }
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
    EXPECT_GT(store.LiveBlocks(), 4u);
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

TEST(StringList, LoadedLinesFreeTheirBlocksWhenReplacedOrDeleted)
{
    TStringList list(64, 32);
    String text;
    for (int i = 0; i < 20; ++i)
        text += u"line number " + IntToStr(i) + u"\r\n";
    list.SetText(text);
    EXPECT_GT(list.TextBlocks(), 5u);
    for (Integer i = 0; i < 10; ++i)
        list.Put(i, u"edited");
    for (Integer i = 19; i >= 10; --i)
        list.Delete(i);
    EXPECT_EQ(list.Count(), 10);
    EXPECT_EQ(list.TextBlocks(), 0u);
    EXPECT_EQ(list.Get(9), u"edited");
}

TEST(StringList, EachChangeIsFramedByEventsAndNestedUpdatesReportOnceAtTheOutermostEnds)
{
    TStringList list;
    std::string log;
    list.OnChanging = [&](TObject*) { log += "<"; };
    list.OnChange = [&](TObject*) { log += ">"; };
    list.Add(u"a");
    list.Put(0, u"b");
    list.PutObject(0, 5);
    list.Insert(0, u"c");
    list.Delete(1);
    list.Clear();
    list.Clear();  // nothing to clear: no events
    EXPECT_EQ(log, "<><><><><><>");
    log.clear();
    list.BeginUpdate();
    list.BeginUpdate();
    list.Add(u"a");
    list.Add(u"b");
    list.EndUpdate();
    EXPECT_EQ(log, "<");
    list.EndUpdate();
    EXPECT_EQ(log, "<>");
    list.SetText(u"x\r\ny");
    EXPECT_EQ(log, "<><>");
}

TEST(StringList, TextJoinsWithCrLfAndSplitsAtAnyBreak)
{
    const std::pair<String, std::vector<String>> cases[] = {
        {u"a\r\nb\nc\rd\r\n", {u"a", u"b", u"c", u"d"}},
        {u"a\n\nb", {u"a", u"", u"b"}},
        {u"", {}},
        {String(u"a") + Char(0) + u"b", {String(u"a") + Char(0) + u"b"}},  // a character 0 is text like any other
    };
    TStringList list;
    for (const auto& [text, lines] : cases) {
        list.SetText(text);
        ASSERT_EQ(list.Count(), Integer(lines.size())) << StrToUtf8(text);
        String joined;
        for (Integer i = 0; i < list.Count(); ++i) {
            EXPECT_EQ(list.Strings(i), lines[std::size_t(i)]);
            joined += lines[std::size_t(i)] + u"\r\n";
        }
        EXPECT_EQ(list.Text(), joined);
    }
}

}  // namespace
