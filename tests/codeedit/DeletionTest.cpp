// Deleting: the change event of an empty deletion, the Backspace key with
// its indent steps and joins, and cut, copy and paste as messages, sent or
// posted, with the clipboard's text in CR LF lines.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using Deletion = EditorTest;

TEST_F(Deletion, WithNothingSelectedTheChangeEventStillRuns)
{
    Start(u"ah", Point(1, 0));
    int changes = 0;
    edit->SetOnChange([&](TObject*) { ++changes; });
    String deleted = u"old";
    edit->DeleteSelected(ctDelete, deleted);
    EXPECT_EQ(deleted, u"");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(edit->UndoList().Count(), 0);
    EXPECT_EQ(Caret(), Point(1, 0));
}

TEST_F(Deletion, BackspaceStepsDeletesAndJoins)
{
    const String indented = u"x\r\n  a\r\n   b\r\n      c";
    // records: how many the presses write; -1: not looked at
    const struct { String text; TPoint caret; int presses; const char* after; int records; } cases[] = {
        {u"abc", Point(2, 0), 1, "ac| @1,0", 1},
        {u"abc", Point(0, 0), 1, "abc| @0,0", 0},  // nothing at (0, 0)
        // at column 0 the lines join, the caret at the length with the trimmed spaces
        {u"abc  \r\ndef", Point(0, 1), 1, "abcdef| @5,0", 1},
        {u"\r\nxyz", Point(0, 1), 1, "xyz| @0,0", -1},
        // from virtual space back to the line's end first; on line 0 each step is a record
        {u"a\r\nbc", Point(6, 1), 1, "a|bc| @2,1", 0},
        {u"ab", Point(4, 0), 2, "ab| @2,0", 2},
        // a line's only character takes the line
        {u"a\r\nxyz", Point(1, 0), 1, "xyz| @3,0", -1},
        {u"q", Point(1, 0), 1, "| @0,0", -1},
        // in leading spaces the caret steps back to an indent of a line above (mark 4 here)
        // and only moves; with no mark below 3 above line 0 a space goes
        {indented, Point(6, 3), 1, "x|  a|   b|      c| @3,3", 0},
        {indented, Point(6, 3), 2, "x|  a|   b|     c| @2,3", 1},
        // over a selection: the selection goes, and one step more
        {u"abcdef", Point(4, 0), -1, "aef| @1,0", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text) + " at " + At(c.caret));
        Start(c.text, c.caret);
        if (c.presses < 0)
            Select(Point(2, 0), c.caret);
        const Integer before = edit->UndoList().Count();
        for (int i = 0; i < std::abs(c.presses); ++i)
            Press(*edit, Qt::Key_Backspace);
        EXPECT_EQ(State(), c.after);
        if (c.records >= 0) {
            EXPECT_EQ(edit->UndoList().Count() - before, c.records);
        }
    }
}

TEST_F(Deletion, CutAndCopyRoundTripWithCrLfBetweenLines)
{
    Start(u"one\r\ntwo\r\nthree");
    Select(Point(1, 0), Point(2, 2));
    SendMessage(edit, WM_COPY);
    EXPECT_EQ(Clipboard().AsText(), u"ne\r\ntwo\r\nth");
    EXPECT_EQ(State(), "one|two|three| @2,2 [2,2-1,0]");  // copy leaves caret and selection

    SendMessage(edit, WM_CUT);
    EXPECT_EQ(edit->Text(), u"oree\r\n");
    EXPECT_EQ(Clipboard().AsText(), u"ne\r\ntwo\r\nth");
    Undo();
    EXPECT_EQ(State(), "one|two|three| @2,2 [1,0-2,2]");

    PostMessage(edit, WM_PASTE);  // over the selection: a deletion and a paste record
    EXPECT_EQ(edit->UndoList().Count(), 0);  // posted: it runs with the queue
    ProcessPostedMessages();
    EXPECT_EQ(State(), "one|two|three| @2,2");
    EXPECT_EQ(edit->UndoList().Count(), 2);
}

TEST_F(Deletion, WithNothingSelectedCutAndCopyEmptyTheClipboard)
{
    Start(u"abc", Point(1, 0));
    for (const Cardinal msg : {WM_CUT, WM_COPY}) {
        Clipboard().SetAsText(u"full");
        SendMessage(edit, msg);
        EXPECT_EQ(Clipboard().AsText(), u"");
        EXPECT_FALSE(edit->CanPaste());
    }
    EXPECT_EQ(Line(0), u"abc");
    EXPECT_FALSE(edit->CanUndo());

    edit->SetReadOnly(true);
    Select(Point(0, 0), Point(2, 0));
    SendMessage(edit, WM_CUT);  // refused: nothing goes, the clipboard empties
    EXPECT_EQ(Line(0), u"abc");
    EXPECT_EQ(Clipboard().AsText(), u"");
    SendMessage(edit, WM_COPY);  // copy works on a read-only control
    EXPECT_EQ(Clipboard().AsText(), u"ab");
    Clipboard().SetAsText(u"t");
    EXPECT_TRUE(edit->CanPaste());  // CanPaste wants text whatever read-only says
}

}  // namespace
