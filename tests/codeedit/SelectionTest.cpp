// Reading the selection: its text and length in both directions, and the
// repair of an end that ran off the last line.
#include "codeedit/uSxCodeEdit.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

TEST(Selection, TextAndLengthInBothDirectionsWithoutMovingAnything)
{
    // caretStays: a reversed pair is swapped and back, which leaves the caret on SelStart
    const struct { TPoint from, to; const char16_t* text; Integer length; bool caretStays; } cases[] = {
        {Point(1, 0), Point(2, 2), u"bc\r\nde\r\nfg", 6, false},  // joined with CR LF, counted without the breaks
        {Point(2, 2), Point(1, 0), u"bc\r\nde\r\nfg", 6, true},
        {Point(5, 0), Point(1, 1), u"\r\nd", 3 - 5 + 1, false},  // a column beyond the end: the first line's term is negative
    };
    for (const auto& c : cases) {
        TSxCodeEdit edit(nullptr);
        edit.SetText(u"abc\r\nde\r\nfgh");
        edit.SetSelEnd(c.from);
        edit.SetSelStart(c.to);
        edit.SetModified(false);
        const TPoint caret = Point(edit.CharPos(), edit.LinePos());
        String text;
        edit.GetSelected(text);
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(edit.SelLength(), c.length);
        EXPECT_EQ(edit.SelEnd(), c.from);
        EXPECT_EQ(edit.SelStart(), c.to);
        EXPECT_EQ(Point(edit.CharPos(), edit.LinePos()) == caret, c.caretStays);
        EXPECT_FALSE(edit.Modified());
    }
}

TEST(Selection, ClearedSelectionReadsEmptyAndAddsNoLine)
{
    TSxCodeEdit edit(nullptr);
    edit.SetText(u"abc");
    edit.ClearSelection();
    String text = u"?";
    edit.GetSelected(text);
    EXPECT_EQ(text, u"");
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
