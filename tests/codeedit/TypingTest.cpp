// Typing through real key events: characters in virtual space, Enter with
// its auto-indent, Tab, typing over a selection, and the refusals of a
// read-only control.
#include "codeedit/EditorFixture.h"

using namespace sx;
using namespace sx::test;

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
    EXPECT_THROW(edit->InsertText(uSxCodeEdit::ctPaste, u"y\r\nz"), EAbort);
    EXPECT_THROW(edit->AddTxt(u"\r"), EAbort);
    EXPECT_EQ(State(), "abc|def| @1,1 [1,1-0,0]");
    EXPECT_EQ(edit->UndoList().Count(), 0);

    // Through the keyboard the refusal ends at the application's handler.
    const ReportedErrors reported;
    Type(*edit, QStringLiteral("q"));
    EXPECT_TRUE(reported.Aborted);
    EXPECT_EQ(edit->Text(), u"abc\r\ndef\r\n");
}

}  // namespace
