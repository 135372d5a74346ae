// The line store: change events around every change, nested updates, joined
// text with CR LF, splitting at any line break, and indexes out of range.
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

}  // namespace
