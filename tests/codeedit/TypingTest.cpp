// Typing and deleting through real key events: characters in virtual space,
// Enter with its auto-indent, Tab, typing over a selection, the refusals of a
// read-only control; the change event of an empty deletion, the Backspace key
// with its indent steps and joins, and cut, copy and paste as messages, sent
// or posted, with the clipboard's text in CR LF lines.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

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
