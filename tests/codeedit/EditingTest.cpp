// Editing through real key events. Typing and deleting: characters in
// virtual space, Enter with its auto-indent, Tab, typing over a selection,
// the refusals of a read-only control, the change event of an empty deletion,
// the Backspace key with its indent steps and joins, and cut, copy and paste
// as messages, sent or posted, with the clipboard's text in CR LF lines. The
// other keys: caret movement with and without Shift and Ctrl, select-all, the
// Delete key, the command keys that post their messages, the word step, and
// the keys claimed from a dialog. Undo and redo: each kind of record played
// backwards against the text, the bound of the stack, records that no longer
// fit the text; the redo keys, typing and Backspace runs grouped under a
// replaceable clock, the depth of the lists, seeded sessions against a model
// of the text, and the classic control unchanged.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"
#include "platform/Keys.h"

#include <QDialog>
#include <QPushButton>
#include <QVBoxLayout>

#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using Keys = EditorTest;

TEST_F(Keys, CaretKeysMoveWithoutWrappingAndStopAtTheEdges)
{
    constexpr auto None = Qt::NoModifier, Ctrl = Qt::ControlModifier;
    const char16_t* const lines = u"abc\r\nlonger line\r\nx";
    const char16_t* const words = u"foo bar\r\n\r\n  baz\r\nend";
    const struct { const char16_t* text; TPoint from; Qt::Key key; Qt::KeyboardModifiers modifiers; TPoint to; } cases[] = {
        {lines, Point(1, 1), Qt::Key_Up, None, Point(1, 0)},
        {lines, Point(0, 1), Qt::Key_Left, None, Point(0, 1)},  // no wrap to the line above
        {lines, Point(10, 1), Qt::Key_Down, None, Point(10, 2)},  // the column stays on a shorter line
        {lines, Point(10, 2), Qt::Key_Down, None, Point(10, 2)},  // the last line holds
        {lines, Point(10, 2), Qt::Key_Right, None, Point(11, 2)},  // on into virtual space
        {lines, Point(500, 2), Qt::Key_Right, None, Point(500, 2)},  // up to column 500
        {u"  line", Point(4, 0), Qt::Key_Home, None, Point(0, 0)},  // no stop at the first non-blank
        {u"  line", Point(4, 0), Qt::Key_End, None, Point(6, 0)},
        {lines, Point(1, 0), Qt::Key_End, Ctrl, Point(1, 2)},
        {lines, Point(4, 2), Qt::Key_Home, Ctrl, Point(0, 0)},
        // Ctrl with the arrows steps by words, across lines and from virtual space
        {words, Point(5, 0), Qt::Key_Right, Ctrl, Point(7, 0)},  // stops at its own line's end
        {words, Point(7, 0), Qt::Key_Right, Ctrl, Point(0, 2)},
        {words, Point(0, 2), Qt::Key_Right, Ctrl, Point(2, 2)},
        {u"foo bar", Point(5, 0), Qt::Key_Left, Ctrl, Point(0, 0)},  // the character next to the caret is not looked at
        {u"foo bar", Point(0, 0), Qt::Key_Left, Ctrl, Point(0, 0)},
        {u"last one", Point(20, 0), Qt::Key_Right, Ctrl, Point(8, 0)},
        {u"ab cd\r\n\r\nx", Point(0, 2), Qt::Key_Left, Ctrl, Point(5, 0)},  // the end of the nearest line with a word
        {u"ab c\r\nx", Point(0, 1), Qt::Key_Left, Ctrl, Point(3, 0)},  // a one-letter word at the very end: in front of it
        {u"abc", Point(20, 0), Qt::Key_Left, Ctrl, Point(18, 0)},
        // an empty store leaves End nothing to do
        {u"", Point(0, 0), Qt::Key_End, None, Point(0, 0)},
    };
    for (const auto& c : cases) {
        Start(c.text, c.from);
        ASSERT_EQ(Caret(), c.from);
        Press(*edit, c.key, c.modifiers);
        EXPECT_EQ(At(Caret()), At(c.to)) << StrToUtf8(c.text) << " from " << At(c.from) << " key " << c.key;
        EXPECT_EQ(edit->UndoList().Count(), 0);
    }
}

TEST_F(Keys, PageKeysMoveByThePageAndKeepTheColumn)
{
    Start(LinesOf(100, [](int i) { return u"  line " + IntToStr(i); }), Point(9, 50));
    const Integer page = edit->VScrollBar().PageSize();
    Press(*edit, Qt::Key_PageDown);
    EXPECT_EQ(Caret(), Point(9, 50 + page));
    for (int i = 0; i < 100 / page + 2; ++i)
        Press(*edit, Qt::Key_PageUp);
    EXPECT_EQ(Caret(), Point(9, 0));  // clamped at the top
}

TEST_F(Keys, SelectingAndDeletingKeys)
{
    constexpr auto None = Qt::NoModifier, Shift = Qt::ShiftModifier, Ctrl = Qt::ControlModifier;
    const char16_t* const two = u"abcdef\r\nghijkl";
    const struct {
        const char16_t* text; TPoint anchor, caret; Qt::Key key; Qt::KeyboardModifiers modifiers; const char* after; bool readOnly = false;
    } cases[] = {
        // Shift extends the selection, Ctrl with it too, and its absence collapses it
        {two, Point(2, 0), Point(2, 0), Qt::Key_Right, Shift, "abcdef|ghijkl| @3,0 [3,0-2,0]"},
        {two, Point(2, 0), Point(3, 0), Qt::Key_Down, Shift, "abcdef|ghijkl| @3,1 [3,1-2,0]"},
        {two, Point(2, 0), Point(3, 1), Qt::Key_End, Shift | Ctrl, "abcdef|ghijkl| @6,1 [6,1-2,0]"},
        {two, Point(2, 0), Point(6, 1), Qt::Key_Left, None, "abcdef|ghijkl| @5,1"},
        {two, Point(0, 0), Point(1, 0), Qt::Key_Up, None, "abcdef|ghijkl| @1,0"},  // an arrow that cannot move collapses too
        // Ctrl+A selects all
        {u"one\r\ntwo\r\nthree", Point(1, 1), Point(1, 1), Qt::Key_A, Ctrl, "one|two|three| @5,2 [5,2-0,0]"},
        {u"", Point(0, 0), Point(0, 0), Qt::Key_A, Ctrl, " @0,0"},
        // Delete takes the character right of the caret, or the line break behind the line's end
        {u"abc\r\ndef", Point(1, 0), Point(1, 0), Qt::Key_Delete, None, "ac|def| @1,0"},
        {u"ac\r\ndef", Point(5, 0), Point(5, 0), Qt::Key_Delete, None, "acdef| @5,0"},
        {u"abc\r\ndef", Point(0, 0), Point(1, 1), Qt::Key_Delete, None, "ef| @0,0"},  // a selection goes whole
        {u"abc", Point(1, 0), Point(1, 0), Qt::Key_Delete, None, "abc| @1,0 [1,0-2,0]", true},  // read-only: one column selected
        {u"", Point(0, 0), Point(0, 0), Qt::Key_Delete, None, " @0,0 [0,0-1,0]"},  // no line: the key ends before deleting
    };
    for (const auto& c : cases) {
        Start(c.text);
        edit->SetReadOnly(c.readOnly);
        Select(c.anchor, c.caret);
        Press(*edit, c.key, c.modifiers);
        EXPECT_EQ(State(), c.after) << StrToUtf8(c.text) << " from " << At(c.caret) << " key " << c.key;
    }
}

TEST_F(Keys, TheApplicationSeesTheKeysFirstAndCtrlAIsGoneBeforeIt)
{
    Start(u"abc", Point(1, 0));
    Word seen = 0xFFFF;
    edit->OnKeyDown = [&](TObject*, Word& key, TShiftState) { seen = key; };
    Press(*edit, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(seen, 0);
    edit->OnKeyDown = [](TObject*, Word& key, TShiftState) {  // the application may cancel a move
        if (key == VK_RIGHT)
            key = 0;
    };
    Start(u"abc", Point(1, 0));
    Press(*edit, Qt::Key_Right);
    EXPECT_EQ(Caret(), Point(1, 0));
}

TEST_F(Keys, DeleteAtTheVeryEndTakesTheBreakBehindAndShiftDeleteCuts)
{
    Start(u"ab\r\ncd", Point(2, 1));
    Press(*edit, Qt::Key_Delete);  // the break behind the last line: no change, but a record
    EXPECT_EQ(edit->Text(), u"ab\r\ncd\r\n");
    ASSERT_EQ(edit->UndoList().Count(), 1);
    EXPECT_EQ(edit->UndoList().Items(0)->Value(), u"\r\n");
    Start(u"abc\r\ndef", Point(1, 0));
    Press(*edit, Qt::Key_Delete, Qt::ShiftModifier);  // Shift+Delete cuts
    EXPECT_EQ(Clipboard().AsText(), u"b");
    EXPECT_EQ(edit->UndoList().Items(edit->UndoList().Count() - 1)->ChangeType(), ctCut);
}

TEST_F(Keys, CommandKeysPostTheirMessagesToRunAfterTheKey)
{
    Start(u"one two", Point(4, 0));
    Select(Point(4, 0), Point(7, 0));
    PressAndRun(Qt::Key_C);
    EXPECT_EQ(Clipboard().AsText(), u"two");
    PressAndRun(Qt::Key_X);
    EXPECT_EQ(Line(0), u"one ");
    PressAndRun(Qt::Key_V);
    PressAndRun(Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(Line(0), u"one twotwo");
    PressAndRun(Qt::Key_Z);
    EXPECT_EQ(Line(0), u"one two");
    PressAndRun(Qt::Key_F7);  // F7 is the second code of V
    EXPECT_EQ(Line(0), u"one twotwo");
    Select(Point(0, 0), Point(3, 0));
    PressAndRun(Qt::Key_Insert);
    EXPECT_EQ(Clipboard().AsText(), u"one");

    // Exactly their modifiers: with Shift added, C and X do nothing.
    Clipboard().SetAsText(u"clip");
    PressAndRun(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    PressAndRun(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Clipboard().AsText(), u"clip");
    EXPECT_EQ(Line(0), u"one twotwo");
}

TEST_F(Keys, KeyCommandTakesItsKeysAndPostsTheirMessages)
{
    const TShiftState ctrl{TShiftStateItem::ssCtrl};
    // Ctrl+F, Ctrl+R in lower case, and F3, which shares its code with the lower-case r
    for (const auto& [code, shift] : {std::pair{Word('F'), ctrl}, {Word('r'), ctrl}, {VK_F3, TShiftState{}}}) {
        Word key = code;
        edit->KeyCommand(key, shift);
        EXPECT_EQ(key, 0) << std::hex << code;
    }
    ProcessPostedMessages();
    Start(u"abc");
    Select(Point(0, 0), Point(2, 0));
    Clipboard().SetAsText(u"");
    Word copy = 'C';
    edit->KeyCommand(copy, ctrl);
    EXPECT_EQ(Clipboard().AsText(), u"");  // posted: it runs after the key has been handled
    ProcessPostedMessages();
    EXPECT_EQ(Clipboard().AsText(), u"ab");
    Word plain = 'F';
    edit->KeyCommand(plain, {});
    EXPECT_EQ(plain, 'F');  // a key whose test fails passes on
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
    EXPECT_EQ(SendMessage(inDialog, WM_GETDLGCODE), DLGC_WANTCHARS | DLGC_WANTTAB | DLGC_WANTARROWS);
    Press(*inDialog, Qt::Key_Escape);  // claimed by no one: the dialog's own
    EXPECT_FALSE(dialog.isVisible());
}

using Typing = EditorTest;

TEST_F(Typing, CharactersEnterAndTabGoInAtTheCaretOneRecordEach)
{
    constexpr auto None = Qt::NoModifier;
    const struct {
        const char16_t* text; TPoint anchor, caret; QString typed; Qt::KeyboardModifiers modifiers; const char* after; Integer records;
    } cases[] = {
        // Shift held selects nothing
        {u"ab", Point(1, 0), Point(1, 0), QStringLiteral("xy"), Qt::ShiftModifier, "axyb| @3,0", 2},
        // beyond Latin-1, and a pair of halves that stays one character
        {u"", Point(0, 0), Point(0, 0), QStringLiteral(u"λж語\U0001F642"), None, "λж語\U0001F642| @5,0", 4},
        // in virtual space: fill spaces; a trailing space is not stored, but the next character gets it in front
        {u"ab", Point(5, 0), Point(5, 0), QStringLiteral("x"), None, "ab   x| @6,0", 1},
        {u"ab", Point(5, 0), Point(5, 0), QStringLiteral(" "), None, "ab| @6,0", 1},
        {u"ab", Point(5, 0), Point(5, 0), QStringLiteral(" y"), None, "ab    y| @7,0", 2},
        {u"abc\r\ndef", Point(1, 0), Point(2, 1), QStringLiteral("X"), None, "aXf| @2,0", 2},  // over a selection: two steps
        // Tab inserts its spaces at the caret and only collapses a selection
        {u"abcd", Point(1, 0), Point(3, 0), QStringLiteral("\t"), None, "abc    d| @7,0", 1},
        // Enter splits, trims both halves and indents like the nearest line above that holds text
        {u"foo  bar  ", Point(5, 0), Point(5, 0), QStringLiteral("\n"), None, "foo|bar| @0,1", 1},
        {u"  begin", Point(7, 0), Point(7, 0), QStringLiteral("\n"), None, "  begin|  | @2,1", 1},  // the indent is stored even on an empty line
        {u"    if x\r\ny", Point(0, 1), Point(0, 1), QStringLiteral("\n"), None, "    if x||    y| @4,2", 1},  // at column 0 the empty first half is passed over
        {u"\tz", Point(2, 0), Point(2, 0), QStringLiteral("\n"), None, "\tz|| @0,1", 1},  // a tab at the head of the model ends the count
        {u"\r\n   \r\nabc", Point(0, 2), Point(0, 2), QStringLiteral("\n"), None, "|   ||abc| @0,3", 1},  // only empty lines above
    };
    edit->SetTabIndentSize(4);
    for (const auto& c : cases) {
        Start(c.text);
        Select(c.anchor, c.caret);
        const Integer before = edit->UndoList().Count();  // a new text keeps the undo list
        Type(*edit, c.typed, c.modifiers);
        EXPECT_EQ(State(), c.after) << StrToUtf8(c.text) << " " << c.typed.toStdString();
        EXPECT_EQ(edit->UndoList().Count() - before, c.records);
    }
}

TEST_F(Typing, ControlKeysLeaveNoTraceAndTheKeyPressHandlerMayReplaceOrDrop)
{
    Start(u"abc", Point(1, 0));
    Press(*edit, Qt::Key_B, Qt::ControlModifier);
    Press(*edit, Qt::Key_Escape);
    Press(*edit, Qt::Key_F, Qt::AltModifier);  // Alt with a letter is for menus
    EXPECT_EQ(State(), "abc| @1,0");
    EXPECT_EQ(edit->UndoList().Count(), 0);

    edit->OnKeyPress = [](TObject*, Char& key) { key = key == u'a' ? u'A' : (key == u'b' ? Char(0) : key); };
    Type(*edit, QStringLiteral("abc"));
    EXPECT_EQ(Line(0), u"aAcbc");
}

TEST_F(Typing, ReadOnlyRefusesEveryEditSilentlyButCollapsesTheSelection)
{
    Start(u"abc\r\n  def", Point(3, 1));
    edit->SetReadOnly(true);
    int changes = 0;
    edit->SetOnChange([&](TObject*) { ++changes; });
    Select(Point(0, 0), Point(3, 1));
    Type(*edit, QStringLiteral("x\n"));
    Press(*edit, Qt::Key_Backspace);
    Press(*edit, Qt::Key_Tab);
    EXPECT_EQ(State(), "abc|  def| @3,1");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(edit->UndoList().Count(), 0);
    EXPECT_FALSE(edit->Modified());
}

TEST_F(Typing, ARefusalFromTheChangeEventLeavesTextAndCaretAlone)
{
    Start(u"abc\r\ndef", Point(1, 1));
    Select(Point(0, 0), Point(1, 1));
    edit->SetOnChange([](TObject*) { Abort(); });
    EXPECT_THROW(SendMessage(edit, WM_CHAR, 'x'), EAbort);
    EXPECT_THROW(SendMessage(edit, WM_CHAR, 8), EAbort);
    EXPECT_THROW(edit->InsertText(ctPaste, u"y\r\nz"), EAbort);
    EXPECT_THROW(edit->AddTxt(u"\r"), EAbort);
    EXPECT_EQ(State(), "abc|def| @1,1 [1,1-0,0]");
    EXPECT_EQ(edit->UndoList().Count(), 0);

    // Through the keyboard the refusal ends at the application's handler.
    const ReportedErrors reported;
    Type(*edit, QStringLiteral("q"));
    EXPECT_TRUE(reported.Aborted);
    EXPECT_EQ(edit->Text(), u"abc\r\ndef\r\n");
}

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

const TSxCodeExtOptions Redo{TSxCodeExtOption::coRedo};
const TSxCodeExtOptions RedoGrouped{TSxCodeExtOption::coRedo, TSxCodeExtOption::coGroupUndo};
constexpr auto Ctrl = Qt::ControlModifier;

class RedoFixture : public EditorTest {
public:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->UndoList().SetClock([this] { return now; });
    }
    /// A new control in the same window: one with no undo records yet.
    void Fresh(TSxCodeExtOptions options)
    {
        delete edit;
        edit = host.Add<TSxCodeEdit>(400, 300);
        SetUp();
        edit->SetExtOptions(options);
    }
    /// Selects from the anchor to the caret, then presses Ctrl with the key.
    void Command(TPoint anchor, TPoint caret, Qt::Key key)
    {
        Select(anchor, caret);
        PressAndRun(key);
    }
    /// Acts as a user: "<" Backspace, "^" Home, "~" a pause of 1.5 s, "\n" Enter, others typed.
    void Act(const std::string& script)
    {
        for (const char c : script) {
            c == '<' ? Press(*edit, Qt::Key_Backspace)
            : c == '^' ? Press(*edit, Qt::Key_Home)
            : c == '~' ? void(now += 1500)
                       : Type(*edit, QString(QLatin1Char(c)));
            now += 10;
        }
    }
    std::string TextNow() const { return State().substr(0, State().find(" @")); }

    std::int64_t now = 0;
};

TEST_F(RedoFixture, ClassicControlKeepsItsKeys)
{
    Start(u"ab", Point(2, 0));
    Act("xy");
    PressAndRun(Qt::Key_Z);
    PressAndRun(Qt::Key_Y);
    PressAndRun(Qt::Key_Z, Ctrl | Qt::ShiftModifier);
    SendMessage(edit, WM_SX_REDO);
    EXPECT_EQ(State(), "abx| @3,0");  // one record per character, nothing redone
    EXPECT_FALSE(edit->CanRedo());
}

TEST_F(RedoFixture, RedoPutsBackTextCaretAndSelectionOfTheEdit)
{
    const struct { const char16_t* text; TPoint caret; TSxCodeExtOptions options; void (*edit)(RedoFixture&); } cases[] = {
        {u"ab", Point(2, 0), Redo, [](RedoFixture& f) { f.Act("xyz"); }},
        {u"ab   ", Point(5, 0), Redo, [](RedoFixture& f) { f.Act("\n"); }},
        {u"abc\r\ndef", Point(0, 1), Redo, [](RedoFixture& f) { f.Act("<"); }},
        {u"one two", Point(0, 0), RedoGrouped, [](RedoFixture& f) { f.Command(Point(4, 0), Point(7, 0), Qt::Key_V); }},
        {u"one\r\ntwo", Point(0, 0), Redo, [](RedoFixture& f) { f.Command(Point(1, 0), Point(2, 1), Qt::Key_X); }},
        {u"abcdef", Point(6, 0), RedoGrouped, [](RedoFixture& f) { f.Act("<<<xy"); }},
    };
    Clipboard().SetAsText(u"1\r\n2");
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        Fresh(c.options);
        Start(c.text, c.caret);
        c.edit(*this);
        const std::string edited = State();
        edit->SetCharPos(0);  // a caret moved after the edit is not what a redo restores
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z);
        const std::string undone = State();
        while (edit->CanRedo())  // both redo keys
            edit->UndoList().RedoCount() % 2 ? PressAndRun(Qt::Key_Y)
                                             : PressAndRun(Qt::Key_Z, Ctrl | Qt::ShiftModifier);
        EXPECT_EQ(State(), edited);
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z);
        EXPECT_EQ(State(), undone);
    }
}

TEST_F(RedoFixture, RunsOfTypingAndBackspacesUndoAsOneStep)
{
    const struct { const char* script; int undos; const char* undone; } cases[] = {
        {"abc", 1, "| @0,0"},
        {"ab~c", 1, "ab| @2,0"},     // a pause ends the run
        {"ab^c", 1, "ab| @0,0"},     // so does a caret move
        {"ab\ncd", 1, "ab|| @0,1"},  // Enter is a step of its own
        {"ab\ncd", 2, "ab| @2,0"},
        {"abcd<<", 1, "abcd| @4,0"},  // a run of Backspaces
        {"ab\n<<", 1, "ab|| @0,1"},  // the run goes on across the line join
        {"abc<x", 1, "ab| @2,0"},
    };
    edit->SetExtOptions(RedoGrouped);
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.script) + " x" + std::to_string(c.undos));
        Start(u"");
        Act(c.script);
        for (int i = 0; i < c.undos; ++i)
            PressAndRun(Qt::Key_Z);
        EXPECT_EQ(State(), c.undone);
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z);
    }
}

TEST_F(RedoFixture, UndoLimitBoundsUndoAndRedo)
{
    edit->SetExtOptions(Redo);
    edit->SetUndoLimit(3);
    Start(u"");
    Act("abcde");
    while (edit->CanUndo())
        PressAndRun(Qt::Key_Z);
    EXPECT_EQ(State(), "ab| @2,0");
    PressAndRun(Qt::Key_Y);
    edit->SetUndoLimit(1);  // the steps furthest from being redone go first
    PressAndRun(Qt::Key_Y);
    EXPECT_EQ(State(), "abcd| @4,0");
    EXPECT_FALSE(edit->CanRedo());
    edit->SetUndoLimit(0);
    Act(std::string(150, 'x'));
    EXPECT_EQ(edit->UndoList().Count(), 151);
}

TEST_F(RedoFixture, SeededSessionsMatchAModelOfTheText)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const bool grouped = seed % 2 == 0;
        Fresh(grouped ? RedoGrouped : Redo);
        Start(u"ab\r\ncd");
        // The model: text and caret after each step, the step shown, and the
        // last run: its kind, where it left the caret and when it began.
        std::vector<std::pair<std::string, TPoint>> steps{{TextNow(), Caret()}};
        std::size_t at = 0;
        char lastRun = 0;
        TPoint runCaret;
        std::int64_t runTime = 0;
        for (int step = 0; step < 60; ++step) {
            now += std::int64_t(random() % 1400);
            const TPoint caret = Caret();
            const auto length = Integer(Line(caret.Y).size());
            // Only edits that undo gives back exactly: letters, Enter, and
            // Backspaces that leave their line a character at the least.
            const char action = "aabb\n<<mzyy"[random() % 11];
            if (action == 'm') {
                edit->SetLinePos(Integer(random() % unsigned(edit->Lines().Count())));
                edit->SetCharPos(Integer(random() % (Line(edit->LinePos()).size() + 1)));
            } else if (action == 'z' || action == 'y') {
                const bool redone = action == 'y' && at + 1 < steps.size();
                PressAndRun(action == 'z' ? Qt::Key_Z : Qt::Key_Y);
                at = action == 'z' ? at - (at > 0 ? 1 : 0) : at + (redone ? 1 : 0);
                lastRun = 0;
                ASSERT_EQ(TextNow(), steps[at].first);
                ASSERT_TRUE(!redone || Caret() == steps[at].second) << "redo leaves the caret as the edit did";
            } else if (action != '<' || (caret.X == 0 ? caret.Y > 0 : length >= 2 && caret.X <= length)) {
                const char run = action == '\n' ? 0 : action == '<' ? '<' : 'a';
                const bool goesOn = grouped && run && run == lastRun && caret == runCaret && now - runTime <= 1000;
                runTime = now;
                Act(std::string(1, action));
                steps.resize(at + (goesOn ? 0 : 1));
                steps.push_back({TextNow(), Caret()});
                at = steps.size() - 1;
                lastRun = run;
                runCaret = Caret();
                ASSERT_FALSE(edit->CanRedo()) << "an edit leaves nothing to redo";
            }
        }
    }
}

}  // namespace
