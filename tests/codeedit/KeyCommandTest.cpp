// The keys of the control through real key events: caret movement with and
// without Shift and Ctrl, select-all, the Delete key, the command keys that
// post their messages, the word step, and the keys claimed from a dialog.
#include "codeedit/EditorFixture.h"

#include "platform/Clipboard.h"
#include "platform/Keys.h"

#include <QDialog>
#include <QPushButton>
#include <QVBoxLayout>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using Keys = EditorTest;

/// Presses the key, then runs what it posted.
void PressAndRun(TWinControl& control, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    Press(control, key, modifiers);
    ProcessPostedMessages();
}

TEST_F(Keys, ArrowsMoveWithoutWrappingAndStopAtTheEdges)
{
    Start(u"abc\r\nlonger line\r\nx", Point(1, 1));
    Press(*edit, Qt::Key_Up);
    Press(*edit, Qt::Key_Up);
    EXPECT_EQ(Caret(), Point(1, 0));
    Press(*edit, Qt::Key_Left);
    Press(*edit, Qt::Key_Left);
    EXPECT_EQ(Caret(), Point(0, 0));  // no wrap to a line above
    edit->SetCharPos(10);
    Press(*edit, Qt::Key_Down);
    Press(*edit, Qt::Key_Down);
    Press(*edit, Qt::Key_Down);
    EXPECT_EQ(Caret(), Point(10, 2));  // the column stays, the last line holds
    Press(*edit, Qt::Key_Right);
    EXPECT_EQ(Caret(), Point(11, 2));  // on into virtual space
    edit->SetCharPos(500);
    Press(*edit, Qt::Key_Right);
    EXPECT_EQ(Caret(), Point(500, 2));
}

TEST_F(Keys, HomeEndAndThePageKeys)
{
    String text;
    for (int i = 0; i < 100; ++i)
        text += u"  line " + IntToStr(i) + u"\r\n";
    Start(text, Point(4, 50));
    Press(*edit, Qt::Key_Home);
    EXPECT_EQ(Caret(), Point(0, 50));  // column 0, no stop at the first non-blank
    Press(*edit, Qt::Key_End);
    EXPECT_EQ(Caret(), Point(9, 50));
    const Integer page = edit->VScrollBar().PageSize();
    Press(*edit, Qt::Key_PageDown);
    EXPECT_EQ(edit->LinePos(), 50 + page);
    for (int i = 0; i < 100 / page + 2; ++i)
        Press(*edit, Qt::Key_PageUp);
    EXPECT_EQ(Caret(), Point(9, 0));  // clamped at the top, the column stays
    Press(*edit, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(9, 99));
    Press(*edit, Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(0, 0));
}

TEST_F(Keys, ShiftExtendsTheSelectionAndItsAbsenceCollapsesIt)
{
    Start(u"abcdef\r\nghijkl", Point(2, 0));
    Press(*edit, Qt::Key_Right, Qt::ShiftModifier);
    Press(*edit, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(edit->SelEnd(), Point(2, 0));
    EXPECT_EQ(edit->SelStart(), Point(3, 1));
    Press(*edit, Qt::Key_End, Qt::ShiftModifier | Qt::ControlModifier);
    String selected;
    edit->GetSelected(selected);
    EXPECT_EQ(selected, u"cdef\r\nghijkl");
    Press(*edit, Qt::Key_Left);
    EXPECT_EQ(edit->SelEnd(), edit->SelStart());
    Press(*edit, Qt::Key_Up);  // an arrow that cannot move collapses all the same
    EXPECT_EQ(edit->SelLength(), 0);
}

TEST_F(Keys, CtrlASelectsAllWithTheKeyGoneBeforeTheApplicationSeesIt)
{
    Start(u"one\r\ntwo\r\nthree", Point(1, 1));
    Word seen = 0xFFFF;
    edit->OnKeyDown = [&](TObject*, Word& key, TShiftState) { seen = key; };
    Press(*edit, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(seen, 0);
    EXPECT_EQ(edit->SelEnd(), Point(0, 0));
    EXPECT_EQ(edit->SelStart(), Point(5, 2));
    EXPECT_EQ(Caret(), Point(5, 2));
    EXPECT_EQ(Line(2), u"three");

    edit->SetText(u"");
    Press(*edit, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(0, 0));
    EXPECT_EQ(edit->SelLength(), 0);
}

TEST_F(Keys, ApplicationMayCancelAMoveInItsKeyHandler)
{
    Start(u"abc", Point(1, 0));
    edit->OnKeyDown = [](TObject*, Word& key, TShiftState) {
        if (key == VK_RIGHT)
            key = 0;
    };
    Press(*edit, Qt::Key_Right);
    EXPECT_EQ(Caret(), Point(1, 0));
}

TEST_F(Keys, DeleteRemovesTheCharacterOrTheLineBreakRightOfTheCaret)
{
    Start(u"abc\r\ndef", Point(1, 0));
    Press(*edit, Qt::Key_Delete);
    EXPECT_EQ(Line(0), u"ac");
    edit->SetCharPos(5);  // behind the end: the next line comes right behind the text
    Press(*edit, Qt::Key_Delete);
    EXPECT_EQ(edit->Text(), u"acdef\r\n");
    EXPECT_EQ(Caret(), Point(5, 0));
    edit->SetCharPos(5);
    Press(*edit, Qt::Key_Delete);  // at the very end: the text stays, a record is written
    EXPECT_EQ(edit->Text(), u"acdef\r\n");
    EXPECT_EQ(edit->UndoList().Count(), 3);
}

TEST_F(Keys, ShiftDeleteCutsAndDeleteTakesASelection)
{
    Start(u"abc\r\ndef", Point(1, 0));
    Press(*edit, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(Clipboard().AsText(), u"b");
    EXPECT_EQ(edit->UndoList().Items(0)->ChangeType(), ctCut);
    Select(Point(0, 0), Point(1, 1));
    Press(*edit, Qt::Key_Delete);
    EXPECT_EQ(edit->Text(), u"ef\r\n");
}

TEST_F(Keys, DeleteOnAReadOnlyControlLeavesItsOneColumnSelection)
{
    Start(u"abc", Point(1, 0));
    edit->SetReadOnly(true);
    Press(*edit, Qt::Key_Delete);
    EXPECT_EQ(Line(0), u"abc");
    EXPECT_EQ(edit->SelStart(), Point(1, 0));
    EXPECT_EQ(edit->SelEnd(), Point(2, 0));
    Press(*edit, Qt::Key_Right);
    EXPECT_EQ(edit->SelLength(), 0);

    edit->SetReadOnly(false);
    edit->SetText(u"");  // no line: the Delete key ends before deleting
    Press(*edit, Qt::Key_Delete);
    EXPECT_EQ(edit->SelEnd(), Point(1, 0));
    EXPECT_EQ(edit->Lines().Count(), 0);
}

TEST_F(Keys, CommandKeysPostTheirMessagesToRunAfterTheKey)
{
    Start(u"one two", Point(4, 0));
    Select(Point(4, 0), Point(7, 0));
    PressAndRun(*edit, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard().AsText(), u"two");

    PressAndRun(*edit, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(Line(0), u"one ");
    PressAndRun(*edit, Qt::Key_V, Qt::ControlModifier);
    PressAndRun(*edit, Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(Line(0), u"one twotwo");
    PressAndRun(*edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Line(0), u"one two");
    PressAndRun(*edit, Qt::Key_F7, Qt::ControlModifier);  // F7 is the second code of V
    EXPECT_EQ(Line(0), u"one twotwo");
    Select(Point(0, 0), Point(3, 0));
    PressAndRun(*edit, Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(Clipboard().AsText(), u"one");
}

TEST_F(Keys, CommandKeysNeedExactlyTheirModifiers)
{
    Start(u"abc", Point(1, 0));
    Select(Point(0, 0), Point(2, 0));
    Clipboard().SetAsText(u"clip");
    PressAndRun(*edit, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    PressAndRun(*edit, Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Clipboard().AsText(), u"clip");
    EXPECT_EQ(Line(0), u"abc");
}

TEST_F(Keys, KeyCommandTakesItsKeysAndPostsTheirMessages)
{
    const TShiftState ctrl{TShiftStateItem::ssCtrl};
    // Ctrl+F, Ctrl+R in lower case, and F3, which shares its code with the lower-case r
    for (const auto& [code, shift] : {std::pair{Word(0x46), ctrl}, {Word(0x72), ctrl}, {Word(0x72), TShiftState{}}}) {
        Word key = code;
        edit->KeyCommand(key, shift);
        EXPECT_EQ(key, 0) << std::hex << code;
    }
    ProcessPostedMessages();
    Start(u"abc");
    Select(Point(0, 0), Point(2, 0));
    Clipboard().SetAsText(u"");
    Word copy = 0x43;
    edit->KeyCommand(copy, ctrl);
    EXPECT_EQ(Clipboard().AsText(), u"");  // posted: it runs after the key has been handled
    ProcessPostedMessages();
    EXPECT_EQ(Clipboard().AsText(), u"ab");
    Word plain = 0x46;
    edit->KeyCommand(plain, {});
    EXPECT_EQ(plain, 0x46);  // a key whose test fails passes on
    Word ctrlR = 0x52;
    edit->KeyCommand(ctrlR, {TShiftStateItem::ssShift});
    EXPECT_EQ(ctrlR, 0x52);
}

TEST_F(Keys, CtrlArrowsStepByWordsAcrossLinesAndFromVirtualSpace)
{
    Start(u"foo bar\r\n\r\n  baz\r\nend", Point(5, 0));
    Press(*edit, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(7, 0));  // stops at its own line's end
    Press(*edit, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(0, 2));
    Press(*edit, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(2, 2));

    Start(u"foo bar", Point(5, 0));
    Press(*edit, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(0, 0));  // the character next to the caret is not looked at
    Press(*edit, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(0, 0));

    Start(u"last one", Point(6, 0));
    Press(*edit, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(8, 0));
    edit->SetCharPos(20);
    Press(*edit, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(8, 0));

    Start(u"ab cd\r\n\r\nx", Point(0, 2));
    Press(*edit, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(5, 0));  // the end of the nearest line with a word

    Start(u"ab c\r\nx", Point(0, 1));
    Press(*edit, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(3, 0));  // a one-letter word at the very end: in front of it

    Start(u"abc", Point(20, 0));
    Press(*edit, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(18, 0));
}

TEST_F(Keys, EmptyStoreLeavesTheCaretKeysWithNothingToDo)
{
    Start(u"");
    Press(*edit, Qt::Key_End);
    Press(*edit, Qt::Key_Down);
    Press(*edit, Qt::Key_Right, Qt::ControlModifier);
    Press(*edit, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Caret(), Point(0, 0));
}

TEST_F(Keys, InADialogTheControlKeepsTabEnterAndTheArrows)
{
    QDialog dialog;
    auto* layout = new QVBoxLayout(&dialog);
    auto* inDialog = new TSxCodeEdit(nullptr);
    layout->addWidget(inDialog->Widget());
    auto* ok = new QPushButton(QStringLiteral("OK"));
    ok->setDefault(true);
    layout->addWidget(ok);
    QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
    dialog.show();
    Focus(*inDialog);
    inDialog->SetText(u"ab");
    inDialog->SetCharPos(1);
    Press(*inDialog, Qt::Key_Tab);
    EXPECT_EQ(inDialog->Text(), u"a  b\r\n");
    Press(*inDialog, Qt::Key_Return);
    Press(*inDialog, Qt::Key_Up);
    EXPECT_TRUE(inDialog->Focused());
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(inDialog->Text(), u"a\r\nb\r\n");
    EXPECT_EQ(inDialog->LinePos(), 0);
    EXPECT_EQ(SendMessage(inDialog, WM_GETDLGCODE), 0x83);
    Press(*inDialog, Qt::Key_Escape);  // claimed by no one: the dialog's own
    EXPECT_FALSE(dialog.isVisible());
}

}  // namespace
