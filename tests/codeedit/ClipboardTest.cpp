// Cut, copy and paste as messages, sent or posted, with the clipboard's text
// in CR LF lines.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"

using namespace sx;
using namespace sx::test;

namespace {

using ClipboardCommands = EditorTest;

TEST_F(ClipboardCommands, CutAndCopyRoundTripWithCrLfBetweenLines)
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

TEST_F(ClipboardCommands, WithNothingSelectedCutAndCopyEmptyTheClipboard)
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
