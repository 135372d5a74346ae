// Typing through real key events: characters in virtual space, Enter with
// its auto-indent, Tab, typing over a selection, and the refusals of a
// read-only control.
#include "codeedit/EditorFixture.h"

using namespace sx;
using namespace sx::test;

namespace {

using Typing = EditorTest;

TEST_F(Typing, KeysReachTheTextAtTheCaretAndEachKeyIsOneRecord)
{
    Start(u"ab", Point(1, 0));
    Type(*edit, QStringLiteral("xy"));
    EXPECT_EQ(Line(0), u"axyb");
    EXPECT_EQ(Caret(), Point(3, 0));
    EXPECT_EQ(edit->UndoList().Count(), 2);
    EXPECT_TRUE(edit->Modified());
}

TEST_F(Typing, CharactersBeyondLatin1AreTypedAndAPairStaysTogether)
{
    Start(u"");
    Type(*edit, QStringLiteral(u"λж語"));
    Type(*edit, QString::fromUtf8("\xF0\x9F\x99\x82"));  // one character outside the basic plane
    EXPECT_EQ(Line(0), u"λж語\U0001F642");
    EXPECT_EQ(Caret(), Point(5, 0));
    EXPECT_EQ(edit->UndoList().Count(), 4);
    Undo();
    EXPECT_EQ(Line(0), u"λж語");
}

TEST_F(Typing, TypingInVirtualSpaceFillsWithSpacesAndTrimsTheLine)
{
    Start(u"ab", Point(5, 0));
    Type(*edit, QStringLiteral("x"));
    EXPECT_EQ(Line(0), u"ab   x");
    EXPECT_EQ(Caret(), Point(6, 0));

    Start(u"ab", Point(5, 0));
    Type(*edit, QStringLiteral(" "));
    EXPECT_EQ(Line(0), u"ab");  // a trailing space is not stored...
    EXPECT_EQ(Caret(), Point(6, 0));
    Type(*edit, QStringLiteral("y"));
    EXPECT_EQ(Line(0), u"ab    y");  // ...but the next character gets it in front
}

TEST_F(Typing, EnterSplitsTrimsAndIndentsLikeTheNearestLineAboveThatHoldsText)
{
    const struct {
        const char16_t* text;
        TPoint caret;
        const char16_t* after;
        TPoint caretAfter;
    } cases[] = {
        {u"foo  bar  ", Point(5, 0), u"foo\r\nbar\r\n", Point(0, 1)},  // both halves trimmed
        {u"  begin", Point(7, 0), u"  begin\r\n  \r\n", Point(2, 1)},  // the indent is stored even on an empty line
        // at column 0 the first half is empty and is passed over
        {u"    if x\r\ny", Point(0, 1), u"    if x\r\n\r\n    y\r\n", Point(4, 2)},
        {u"\tz", Point(2, 0), u"\tz\r\n\r\n", Point(0, 1)},  // a tab at the head of the model ends the count
        {u"\r\n   \r\nabc", Point(0, 2), u"\r\n   \r\n\r\nabc\r\n", Point(0, 3)},  // only empty lines above
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        Start(c.text, c.caret);
        Press(*edit, Qt::Key_Return);
        EXPECT_EQ(edit->Text(), c.after);
        EXPECT_EQ(Caret(), c.caretAfter);
        EXPECT_EQ(edit->UndoList().Items(edit->UndoList().Count() - 1)->EndPos(), c.caretAfter);
    }
}

TEST_F(Typing, TabInsertsItsSpacesAtTheCaretAndOnlyCollapsesTheSelection)
{
    Start(u"abcd", Point(1, 0));
    edit->SetTabIndentSize(4);
    Select(Point(1, 0), Point(3, 0));
    Press(*edit, Qt::Key_Tab);
    EXPECT_EQ(Line(0), u"abc    d");
    EXPECT_EQ(Caret(), Point(7, 0));
    EXPECT_EQ(edit->SelLength(), 0);
    EXPECT_EQ(edit->UndoList().Count(), 1);
}

TEST_F(Typing, TypingOverASelectionReplacesItInTwoSteps)
{
    Start(u"abc\r\ndef");
    Select(Point(1, 0), Point(2, 1));
    Type(*edit, QStringLiteral("X"));
    EXPECT_EQ(edit->Text(), u"aXf\r\n");
    EXPECT_EQ(edit->UndoList().Count(), 2);
    Undo();
    Undo();
    EXPECT_EQ(edit->Text(), u"abc\r\ndef\r\n");
}

TEST_F(Typing, ShiftHeldWhileTypingStillLeavesNoSelection)
{
    Start(u"abc", Point(1, 0));
    Type(*edit, QStringLiteral("X"), Qt::ShiftModifier);
    EXPECT_EQ(Line(0), u"aXbc");
    EXPECT_EQ(edit->SelStart(), edit->SelEnd());
}

TEST_F(Typing, ControlKeysLeaveNoTrace)
{
    Start(u"abc", Point(1, 0));
    Press(*edit, Qt::Key_B, Qt::ControlModifier);
    Press(*edit, Qt::Key_Escape);
    Press(*edit, Qt::Key_F, Qt::AltModifier);  // Alt with a letter is for menus
    EXPECT_EQ(Line(0), u"abc");
    EXPECT_EQ(edit->UndoList().Count(), 0);
}

TEST_F(Typing, KeyPressHandlerMayReplaceOrDropTheCharacter)
{
    Start(u"");
    edit->OnKeyPress = [](TObject*, Char& key) { key = key == u'a' ? u'A' : (key == u'b' ? Char(0) : key); };
    Type(*edit, QStringLiteral("abc"));
    EXPECT_EQ(Line(0), u"Ac");
}

TEST_F(Typing, ReadOnlyRefusesEveryEditSilentlyButCollapsesTheSelection)
{
    Start(u"abc\r\n  def", Point(3, 1));
    edit->SetReadOnly(true);
    edit->SetModified(false);
    int changes = 0;
    edit->SetOnChange([&](TObject*) { ++changes; });
    Select(Point(0, 0), Point(3, 1));
    Type(*edit, QStringLiteral("x\n"));
    Press(*edit, Qt::Key_Backspace);
    Press(*edit, Qt::Key_Tab);
    String deleted = u"kept";
    edit->DeleteSelected(uSxCodeEdit::ctCut, deleted);
    edit->InsertText(uSxCodeEdit::ctPaste, u"y");
    EXPECT_EQ(edit->Text(), u"abc\r\n  def\r\n");
    EXPECT_EQ(deleted, u"kept");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(edit->UndoList().Count(), 0);
    EXPECT_FALSE(edit->Modified());
    EXPECT_EQ(edit->SelStart(), edit->SelEnd());
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
    EXPECT_EQ(edit->Text(), u"abc\r\ndef\r\n");
    EXPECT_EQ(Caret(), Point(1, 1));
    EXPECT_EQ(edit->SelEnd(), Point(0, 0));
    EXPECT_EQ(edit->UndoList().Count(), 0);

    // Through the keyboard the refusal ends at the application's handler.
    std::string reported;
    SetApplicationExceptionHandler([&](const std::exception& e) { reported = e.what(); });
    Type(*edit, QStringLiteral("q"));
    SetApplicationExceptionHandler(nullptr);
    EXPECT_FALSE(reported.empty());
    EXPECT_EQ(edit->Text(), u"abc\r\ndef\r\n");
}

TEST_F(Typing, AnEmptiedStoreGetsTheLinesAnEditNeeds)
{
    Start(u"");
    EXPECT_EQ(edit->Lines().Count(), 0);
    edit->AddTxt(u"a");
    EXPECT_EQ(edit->Text(), u"a\r\n");
    Start(u"");
    edit->InsertText(uSxCodeEdit::ctPaste, u"b");
    EXPECT_EQ(edit->Text(), u"b\r\n");
    Start(u"");
    edit->AddCode(u"c\r\n");
    EXPECT_EQ(edit->Text(), u"c\r\n\r\n");
}

}  // namespace
