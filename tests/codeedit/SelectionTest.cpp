// Reading the selection where the editing test's invariants do not reach:
// ends behind a line's end, no selection, and the repair of an end that ran
// off the last line.
#include "codeedit/uSxCodeEdit.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

TEST(Selection, AnEndBehindItsLineCountsNegativeAndNoSelectionReadsEmptyAddingNoLine)
{
    TSxCodeEdit edit(nullptr);
    edit.SetText(u"abc\r\nde\r\nfgh");
    edit.SetSelEnd(Point(5, 0));
    edit.SetSelStart(Point(1, 1));
    edit.SetModified(false);
    String text;
    edit.GetSelected(text);
    EXPECT_EQ(text, u"\r\nd");
    EXPECT_EQ(edit.SelLength(), 3 - 5 + 1);  // the first line's term is negative
    EXPECT_EQ(edit.SelEnd(), Point(5, 0));
    EXPECT_FALSE(edit.Modified());

    edit.ClearSelection();
    String none = u"?";
    edit.GetSelected(none);
    EXPECT_EQ(none, u"");
    EXPECT_EQ(edit.SelLength(), 0);
    EXPECT_EQ(edit.Lines().Count(), 3);
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
