// Reading the selection: its text and length in both directions, and the
// repair of an end that ran off the last line.
#include "codeedit/uSxCodeEdit.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

struct Selected {
    String text;
    Integer length;
};

Selected Read(TSxCodeEdit& edit)
{
    Selected s;
    edit.GetSelected(s.text);
    s.length = edit.SelLength();
    return s;
}

TEST(Selection, OverLinesJoinsWithCrLfAndCountsNoBreaks)
{
    TSxCodeEdit edit(nullptr);
    edit.SetText(u"abc\r\nde\r\nfgh");
    edit.SetSelEnd(Point(1, 0));
    edit.SetSelStart(Point(2, 2));
    const Selected forward = Read(edit);
    EXPECT_EQ(forward.text, u"bc\r\nde\r\nfg");
    EXPECT_EQ(forward.length, 6);

    edit.SetSelEnd(Point(2, 2));
    edit.SetSelStart(Point(1, 0));
    edit.SetModified(false);
    const Integer caretX = edit.CharPos(), caretY = edit.LinePos();
    const Selected backward = Read(edit);
    EXPECT_EQ(backward.text, forward.text);
    EXPECT_EQ(backward.length, 6);
    EXPECT_EQ(edit.SelStart(), Point(1, 0));
    EXPECT_EQ(edit.SelEnd(), Point(2, 2));
    EXPECT_EQ(edit.CharPos(), caretX);
    EXPECT_EQ(edit.LinePos(), caretY);
    EXPECT_FALSE(edit.Modified());
}

TEST(Selection, ColumnsBeyondTheLineEndGiveOnlyWhatTheLineHolds)
{
    TSxCodeEdit edit(nullptr);
    edit.SetText(u"ab\r\ncd");
    edit.SetSelEnd(Point(5, 0));
    edit.SetSelStart(Point(1, 1));
    const Selected s = Read(edit);
    EXPECT_EQ(s.text, u"\r\nc");
    EXPECT_EQ(s.length, 2 - 5 + 1);  // the first line's term is negative
}

TEST(Selection, ClearedSelectionReadsEmptyAndAddsNoLine)
{
    TSxCodeEdit edit(nullptr);
    edit.SetText(u"abc");
    edit.ClearSelection();
    EXPECT_EQ(Read(edit).text, u"");
    EXPECT_EQ(edit.SelLength(), 0);
    EXPECT_EQ(edit.Lines().Count(), 1);
}

TEST(Selection, EndBeyondTheLastLineIsRepairedOnceAndThenReadsEmpty)
{
    TSxCodeEdit edit(nullptr);
    edit.SetText(u"abc\r\ndef\r\nghi");
    edit.SetSelEnd(Point(1, 0));
    edit.SetSelStart(Point(2, 2));
    edit.Lines().Clear();
    edit.Lines().Add(u"xyz");
    String text;
    edit.GetSelected(text);
    EXPECT_EQ(text, u"yz\r\n");
    EXPECT_EQ(edit.Lines().Count(), 2);
    EXPECT_EQ(edit.SelStart().X, MaxInt);
    edit.GetSelected(text);
    EXPECT_EQ(text, u"");
    EXPECT_EQ(edit.SelLength(), 0);
}

}  // namespace
