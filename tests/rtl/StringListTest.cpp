// The line store: change events around every change, nested updates, joined
// text with CR LF, splitting at any line break, and the integer slot.
#include "platform/StringList.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

struct EventLog {
    std::string log;
    void Attach(TStringList& list)
    {
        list.OnChanging = [this](TObject*) { log += "<"; };
        list.OnChange = [this](TObject*) { log += ">"; };
    }
};

TEST(StringList, EveryChangeIsFramedByChangingAndChange)
{
    TStringList list;
    EventLog events;
    events.Attach(list);
    list.Add(u"a");
    list.Put(0, u"b");
    list.PutObject(0, 5);
    list.Insert(0, u"c");
    list.Delete(1);
    EXPECT_EQ(events.log, "<><><><><>");
    list.Clear();
    list.Clear();  // nothing to clear: no events
    EXPECT_EQ(events.log, "<><><><><><>");
}

TEST(StringList, NestedUpdatesReportOnceAtTheOutermostEnds)
{
    TStringList list;
    EventLog events;
    events.Attach(list);
    list.BeginUpdate();
    list.BeginUpdate();
    list.Add(u"a");
    list.Add(u"b");
    list.EndUpdate();
    EXPECT_EQ(events.log, "<");
    list.EndUpdate();
    EXPECT_EQ(events.log, "<>");
    list.SetText(u"x\r\ny");
    EXPECT_EQ(events.log, "<><>");
}

TEST(StringList, TextJoinsWithCrLfAndSplitsAtAnyBreak)
{
    TStringList list;
    list.SetText(u"a\r\nb\nc\rd\r\n");
    ASSERT_EQ(list.Count(), 4);
    EXPECT_EQ(list.Strings(3), u"d");
    EXPECT_EQ(list.Text(), u"a\r\nb\r\nc\r\nd\r\n");
    list.SetText(u"a\n\nb");
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Strings(1), u"");
    list.SetText(u"");
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Text(), u"");
    list.SetText(String(u"a") + Char(0) + u"b");
    EXPECT_EQ(list.Strings(0).size(), 3u);  // a character 0 is text like any other
}

TEST(StringList, SlotsStartAtZeroAndTravelWithTheirLines)
{
    TStringList list;
    list.SetText(u"a\r\nb\r\nc");
    list.PutObject(2, 42);
    list.Insert(1, u"new");
    EXPECT_EQ(list.Objects(1), 0);
    EXPECT_EQ(list.Objects(3), 42);
    TStringList copy;
    copy.Assign(list);
    EXPECT_EQ(copy.Objects(3), 42);
    EXPECT_EQ(copy.Text(), list.Text());
}

TEST(StringList, OutOfRangeIndexRaisesListError)
{
    TStringList list;
    list.Add(u"a");
    EXPECT_THROW(list.Get(1), EListError);
    EXPECT_THROW(list.Get(-1), EListError);
    EXPECT_THROW(list.Insert(3, u"x"), EListError);
    EXPECT_THROW(list.Delete(1), EListError);
    EXPECT_NO_THROW(list.Insert(1, u"end"));
}

TEST(StringList, TinyGrowSizeStillHoldsManyLines)
{
    TStringList list(1);
    for (int i = 0; i < 1000; ++i)
        list.Insert(0, IntToStr(i));
    EXPECT_EQ(list.Count(), 1000);
    EXPECT_EQ(list.Strings(0), u"999");
    EXPECT_EQ(list.Strings(999), u"0");
}

}  // namespace
