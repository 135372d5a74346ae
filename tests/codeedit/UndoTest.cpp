// Undo: each kind of record played backwards against the text, the bound of
// the stack, and records that no longer fit the text.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using UndoReplay = EditorTest;

TEST_F(UndoReplay, EachEditIsPlayedBackwards)
{
    const struct { const char16_t* text; TPoint caret; void (*edit)(TSxCodeEdit&); const char* undone; } cases[] = {
        // a typed character goes but its fill stays
        {u"ab", Point(5, 0), [](TSxCodeEdit& e) { Type(e, QStringLiteral("x")); }, "ab   | @5,0"},
        // Enter is undone without the trimmed spaces
        {u"abc   def", Point(6, 0), [](TSxCodeEdit& e) { Press(e, Qt::Key_Return); }, "abcdef| @6,0"},
        // a join is undone by splitting again
        {u"abc\r\ndef", Point(0, 1), [](TSxCodeEdit& e) { Press(e, Qt::Key_Backspace); }, "abc|def| @0,1"},
        // a paste behind the line end fills the line, and its undo leaves the fill
        {u"ab", Point(4, 0), [](TSxCodeEdit& e) { Clipboard().SetAsText(u"x\r\ny"); SendMessage(&e, WM_PASTE); }, "ab  | @4,0"},
        // an empty insertion writes a record that undoes to nothing
        {u"ab", Point(1, 0), [](TSxCodeEdit& e) { e.InsertText(ctPaste, u""); }, "ab| @1,0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        ASSERT_FALSE(edit->CanUndo());
        Start(c.text, c.caret);
        c.edit(*edit);
        EXPECT_TRUE(edit->CanUndo());
        Undo();
        EXPECT_EQ(State(), c.undone);
        EXPECT_FALSE(edit->CanUndo());
    }
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

TEST_F(UndoReplay, RecordsOutliveANewTextAndGoEvenWhenTheyCannotBePlayed)
{
    Start(u"abc", Point(3, 0));
    Type(*edit, QStringLiteral("d"));
    Press(*edit, Qt::Key_Backspace);
    edit->SetText(u"wxyz");
    edit->SetReadOnly(true);
    Undo();  // the put-back path ignores read-only
    EXPECT_EQ(Line(0), u"wxydz");
    Undo();  // the delete path is refused, and the record goes
    EXPECT_EQ(State(), "wxydz| @3,0");
    EXPECT_FALSE(edit->CanUndo());

    // a record that cannot be played goes all the same
    edit->SetReadOnly(false);
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

TEST_F(UndoReplay, NeighbouringBreakCharactersMakeOneBreakAndAddCodeGoesInFrontOfTheLastLine)
{
    Start(u"");
    edit->InsertText(ctPaste, u"a\r\nb\n\rc\r\rd\n\ne\r\n\r\nf\ng");
    EXPECT_EQ(State(), "a|b|c|d|e||f|g| @1,7");
    Start(u"xy", Point(1, 0));
    edit->InsertText(ctPaste, u"1\r\n2\r\n");
    EXPECT_EQ(State(), "x1|2|y| @0,2");

    Start(u"begin\r\nend");
    edit->AddCode(u"x;\r\n");
    EXPECT_EQ(edit->Text(), u"begin\r\nx;\r\nend\r\n");
    EXPECT_EQ(edit->UndoList().Items(0)->ChangeType(), ctPaste);
    edit->InsertCode(0, 5, u" y");
    EXPECT_EQ(Line(0), u"begin y");
}

}  // namespace
