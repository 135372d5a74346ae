// Undo: each kind of record played backwards against the text, the bound of
// the stack, and records that no longer fit the text.
#include "codeedit/EditorFixture.h"

#include "platform/Clipboard.h"

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using UndoReplay = EditorTest;

TEST_F(UndoReplay, TypedCharacterGoesButItsFillStays)
{
    EXPECT_FALSE(edit->CanUndo());
    Start(u"ab", Point(5, 0));
    Type(*edit, QStringLiteral("x"));
    EXPECT_TRUE(edit->CanUndo());
    Undo();
    EXPECT_FALSE(edit->CanUndo());
    EXPECT_EQ(Line(0), u"ab   ");
    EXPECT_EQ(Caret(), Point(5, 0));
}

TEST_F(UndoReplay, EnterIsUndoneWithoutTheTrimmedSpaces)
{
    Start(u"abc   def", Point(6, 0));
    Press(*edit, Qt::Key_Return);
    Undo();
    EXPECT_EQ(edit->Text(), u"abcdef\r\n");
    EXPECT_EQ(Caret(), Point(6, 0));
}

TEST_F(UndoReplay, DeletedLinesComeBackAndOnlyACutIsSelectedAgain)
{
    const String text = u"one\r\ntwo\r\nthree\r\nfour\r\n";
    for (const TSxChangeType kind : {ctDelete, ctCut}) {
        Start(text);
        Select(Point(1, 0), Point(2, 2));
        String deleted;
        edit->DeleteSelected(kind, deleted);
        Undo();
        EXPECT_EQ(edit->Text(), text);
        EXPECT_EQ(Caret(), Point(2, 2));
        if (kind == ctCut) {
            EXPECT_EQ(edit->SelStart(), Point(1, 0));
            EXPECT_EQ(edit->SelEnd(), Point(2, 2));
        } else {
            EXPECT_EQ(edit->SelLength(), 0);
        }
    }
}

TEST_F(UndoReplay, JoinIsUndoneBySplittingAgain)
{
    Start(u"abc\r\ndef", Point(0, 1));
    Press(*edit, Qt::Key_Backspace);
    Undo();
    EXPECT_EQ(edit->Text(), u"abc\r\ndef\r\n");
    EXPECT_EQ(Caret(), Point(0, 1));
}

TEST_F(UndoReplay, PasteBehindTheLineEndFillsTheLineAndItsUndoLeavesTheFill)
{
    Start(u"ab", Point(4, 0));
    Clipboard().SetAsText(u"x\r\ny");
    SendMessage(edit, WM_PASTE);
    EXPECT_EQ(edit->Text(), u"ab  x\r\ny\r\n");
    EXPECT_EQ(Caret(), Point(1, 1));
    Undo();
    EXPECT_EQ(edit->Text(), u"ab  \r\n");
    EXPECT_EQ(Caret(), Point(4, 0));
}

TEST_F(UndoReplay, EmptyInsertionWritesARecordThatUndoesToNothing)
{
    Start(u"ab", Point(1, 0));
    edit->InsertText(ctPaste, u"");
    ASSERT_EQ(edit->UndoList().Count(), 1);
    EXPECT_EQ(edit->UndoList().Items(0)->StartPos(), edit->UndoList().Items(0)->EndPos());
    Undo();
    EXPECT_EQ(Line(0), u"ab");
    EXPECT_FALSE(edit->CanUndo());
}

TEST_F(UndoReplay, StackKeepsTheNewestHundred)
{
    Start(u"");
    Type(*edit, QString(101, QLatin1Char('a')));
    EXPECT_EQ(edit->UndoList().Count(), 100);
    EXPECT_EQ(edit->UndoList().Items(0)->StartPos(), Point(1, 0));  // the second record is now the oldest
    for (int i = 0; i < 100; ++i)
        Undo();
    EXPECT_EQ(Line(0), u"a");  // the state after the first edit
    EXPECT_FALSE(edit->CanUndo());
}

TEST_F(UndoReplay, RecordsThatCannotBePlayedGoAnyway)
{
    Start(u"abc");
    edit->UndoList().AddUndo(ctNone, Point(0, 0), Point(1, 0), Point(0, 0), u"");
    try {
        Undo();
        FAIL() << "expected an exception";
    } catch (const Exception& e) {
        EXPECT_EQ(e.Message(), u"This undo-action has not yet been implemented!");
    }
    EXPECT_FALSE(edit->CanUndo());
    EXPECT_EQ(edit->Text(), u"abc\r\n");
}

TEST_F(UndoReplay, RecordsOutliveANewTextAndAReadOnlyControlOnlyPutsBack)
{
    Start(u"abc", Point(3, 0));
    Type(*edit, QStringLiteral("d"));
    Press(*edit, Qt::Key_Backspace);
    edit->SetText(u"wxyz");
    edit->SetReadOnly(true);
    Undo();  // the put-back path ignores read-only
    EXPECT_EQ(Line(0), u"wxydz");
    Undo();  // the delete path is refused, and the record goes
    EXPECT_EQ(Line(0), u"wxydz");
    EXPECT_EQ(Caret(), Point(3, 0));
    EXPECT_FALSE(edit->CanUndo());
}

TEST_F(UndoReplay, NeighbouringBreakCharactersMakeOneBreak)
{
    Start(u"");
    edit->InsertText(ctPaste, u"a\r\nb\n\rc\r\rd\n\ne\r\n\r\nf\ng");
    EXPECT_EQ(edit->Text(), u"a\r\nb\r\nc\r\nd\r\ne\r\n\r\nf\r\ng\r\n");
    EXPECT_EQ(Caret(), Point(1, 7));

    Start(u"xy", Point(1, 0));
    edit->InsertText(ctPaste, u"1\r\n2\r\n");
    EXPECT_EQ(edit->Text(), u"x1\r\n2\r\ny\r\n");
    EXPECT_EQ(Caret(), Point(0, 2));
}

TEST_F(UndoReplay, AddCodeGoesInFrontOfTheLastLine)
{
    Start(u"begin\r\nend");
    edit->AddCode(u"x;\r\n");
    EXPECT_EQ(edit->Text(), u"begin\r\nx;\r\nend\r\n");
    EXPECT_EQ(edit->UndoList().Items(0)->ChangeType(), ctPaste);
    edit->InsertCode(0, 5, u" y");
    EXPECT_EQ(Line(0), u"begin y");
}

}  // namespace
