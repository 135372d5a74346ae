// Deleting: the selection over several lines with the text it hands back,
// cut to the clipboard, and the Backspace key with its indent steps and joins.
#include "codeedit/EditorFixture.h"

#include "platform/Clipboard.h"

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using Deletion = EditorTest;

TEST_F(Deletion, SelectionOverLinesGoesAndItsRecordKnowsTheText)
{
    Start(u"abc\r\nde\r\nfgh");
    Select(Point(1, 0), Point(2, 2));
    String deleted;
    edit->DeleteSelected(ctDelete, deleted);
    EXPECT_EQ(deleted, u"bc\r\nde\r\nfg");
    EXPECT_EQ(edit->Text(), u"ah\r\n");
    EXPECT_EQ(Caret(), Point(1, 0));
    EXPECT_EQ(edit->SelStart(), edit->SelEnd());
    ASSERT_EQ(edit->UndoList().Count(), 1);
    const TSxUndoItem& record = *edit->UndoList().Items(0);
    EXPECT_EQ(record.StartPos(), Point(1, 0));
    EXPECT_EQ(record.EndPos(), Point(2, 2));
    EXPECT_EQ(record.CaretPos(), Point(2, 2));
    EXPECT_EQ(record.Value(), deleted);
}

TEST_F(Deletion, WithoutRecordOrWithoutSelection)
{
    Start(u"abc\r\nde\r\nfgh");
    Select(Point(2, 2), Point(1, 0));  // made backwards
    String deleted;
    edit->DeleteSelected(ctNone, deleted);
    EXPECT_EQ(edit->Text(), u"ah\r\n");
    EXPECT_EQ(edit->UndoList().Count(), 0);

    int changes = 0;
    edit->SetOnChange([&](TObject*) { ++changes; });
    deleted = u"old";
    edit->DeleteSelected(ctDelete, deleted);
    EXPECT_EQ(deleted, u"");
    EXPECT_EQ(changes, 1);  // the change event runs even with nothing to delete
    EXPECT_EQ(edit->UndoList().Count(), 0);
    EXPECT_EQ(Caret(), Point(1, 0));
}

TEST_F(Deletion, CutPutsTheTextOnTheClipboard)
{
    Clipboard().SetAsText(u"before");
    Start(u"one two");
    Select(Point(4, 0), Point(7, 0));
    String deleted;
    edit->DeleteSelected(ctCut, deleted);
    EXPECT_EQ(Clipboard().AsText(), u"two");
    EXPECT_EQ(Line(0), u"one ");  // neither half is trimmed
    EXPECT_EQ(edit->UndoList().Items(0)->ChangeType(), ctCut);
}

TEST_F(Deletion, EndBehindTheLastLineTakesTheLastBreak)
{
    Start(u"ab\r\ncd");
    edit->SetSelStart(Point(2, 1));
    edit->SetSelEnd(Point(0, 2));  // the Delete key at the very end builds this
    String deleted;
    edit->DeleteSelected(ctDelete, deleted);
    EXPECT_EQ(deleted, u"\r\n");
    EXPECT_EQ(edit->Text(), u"ab\r\ncd\r\n");
    EXPECT_EQ(edit->UndoList().Count(), 1);
}

TEST_F(Deletion, SelectionStartingBehindTheLineEndAddsNoSpaces)
{
    Start(u"ab\r\ncdef");
    Select(Point(5, 0), Point(2, 1));
    String deleted;
    edit->DeleteSelected(ctDelete, deleted);
    EXPECT_EQ(deleted, u"\r\ncd");
    EXPECT_EQ(edit->Text(), u"abef\r\n");
}

TEST_F(Deletion, BackspaceRemovesTheCharacterLeftOfTheCaret)
{
    Start(u"abc", Point(2, 0));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(Line(0), u"ac");
    EXPECT_EQ(Caret(), Point(1, 0));
    const TSxUndoItem& record = *edit->UndoList().Items(0);
    EXPECT_EQ(record.ChangeType(), ctDelete);
    EXPECT_EQ(record.StartPos(), Point(1, 0));
    EXPECT_EQ(record.EndPos(), Point(2, 0));
    EXPECT_EQ(record.Value(), u"b");

    Start(u"abc", Point(0, 0));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(Line(0), u"abc");
    EXPECT_EQ(edit->UndoList().Count(), 1);  // nothing at (0, 0)
}

TEST_F(Deletion, BackspaceInLeadingSpacesStepsBackToAnIndent)
{
    Start(u"x\r\n  a\r\n   b\r\n      c", Point(6, 3));
    Press(*edit, Qt::Key_Backspace);  // its own mark is 7; the line above has 4
    EXPECT_EQ(Caret(), Point(3, 3));
    EXPECT_EQ(Line(3), u"      c");  // only the caret moved
    EXPECT_EQ(edit->UndoList().Count(), 0);
    Press(*edit, Qt::Key_Backspace);  // no mark below 3 above line 0: a space goes
    EXPECT_EQ(Caret(), Point(2, 3));
    EXPECT_EQ(Line(3), u"     c");
    EXPECT_EQ(edit->UndoList().Count(), 1);
}

TEST_F(Deletion, BackspaceAtColumnZeroJoinsTheLines)
{
    Start(u"abc  \r\ndef", Point(0, 1));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->Text(), u"abcdef\r\n");
    EXPECT_EQ(Caret(), Point(5, 0));  // the length with the trimmed spaces
    const TSxUndoItem& record = *edit->UndoList().Items(0);
    EXPECT_EQ(record.StartPos(), Point(5, 0));
    EXPECT_EQ(record.EndPos(), Point(0, 1));
    EXPECT_EQ(record.Value(), u"\r\n");

    Start(u"\r\nxyz", Point(0, 1));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->Text(), u"xyz\r\n");
    EXPECT_EQ(Caret(), Point(0, 0));
}

TEST_F(Deletion, BackspaceFromVirtualSpace)
{
    Start(u"a\r\nbc", Point(6, 1));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(Caret(), Point(2, 1));  // back to the line's end first
    EXPECT_EQ(edit->UndoList().Count(), 0);

    Start(u"ab", Point(4, 0));  // on line 0 each step is a record
    Press(*edit, Qt::Key_Backspace);
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(Caret(), Point(2, 0));
    EXPECT_EQ(Line(0), u"ab");
    ASSERT_EQ(edit->UndoList().Count(), 2);
    EXPECT_EQ(edit->UndoList().Items(1)->Value(), u"");
}

TEST_F(Deletion, BackspaceOnALinesOnlyCharacterTakesTheLine)
{
    Start(u"a\r\nxyz", Point(1, 0));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->Text(), u"xyz\r\n");
    EXPECT_EQ(Caret(), Point(3, 0));

    Start(u"q", Point(1, 0));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->Text(), u"\r\n");
    EXPECT_EQ(Caret(), Point(0, 0));
}

TEST_F(Deletion, BackspaceOverASelectionDeletesItAndOneStepMore)
{
    Start(u"abcdef");
    Select(Point(2, 0), Point(4, 0));
    Press(*edit, Qt::Key_Backspace);
    EXPECT_EQ(Line(0), u"aef");
    EXPECT_EQ(Caret(), Point(1, 0));
    EXPECT_EQ(edit->UndoList().Count(), 2);
}

}  // namespace
