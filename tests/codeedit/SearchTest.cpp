// Find and replace. The dialog: the two types with their button swap, the
// getters that follow the page, and the dialog shown modally with Escape,
// Enter and Tab. The engine driven as a user drives it: the dialog message
// with the dialog filled in by the test, then the posted passes, with every
// message box answered by the test.
#include "codeedit/EditorFixture.h"
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "support/ModalAnswers.h"

#include <memory>
#include <string>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;
using namespace sx::fSxCodeEditSearchReplaceDlg;

namespace {

class SearchDialog : public ::testing::Test {
protected:
    /// Caption, page, which of OK and Replace All stands right of the other, and whether Replace All shows.
    std::string Layout()
    {
        return StrToUtf8(dlg->Caption()) + " " + StrToUtf8(dlg->pcMain->ActivePage()->Name()) +
               (dlg->btnOK->Left() > dlg->btnReplaceAll->Left() ? " OK right" : " OK left") +
               (dlg->btnReplaceAll->Visible() ? "" : " hidden");
    }
    std::unique_ptr<TFrmCodeEditSearchReplaceDlg> dlg = std::make_unique<TFrmCodeEditSearchReplaceDlg>(nullptr);
    ModalScript script;
};

TEST_F(SearchDialog, EachChangeOfTypeSwapsTheButtonsResizesAndTurnsTheGetters)
{
    // It comes up as a find dialog without tabs, though the definition stores the replace page.
    EXPECT_EQ(Layout(), "Find Text tsFind OK right hidden");
    EXPECT_FALSE(dlg->tsFind->TabVisible() || dlg->tsReplace->TabVisible());
    EXPECT_EQ(dlg->rgSearchOrigin->Items().Text(), u"From cursor\r\nEntire scope\r\n");
    EXPECT_EQ(dlg->btnReplaceAll->ModalResult(), mrYesToAll);

    dlg->SetDlgType(replace);
    EXPECT_EQ(Layout(), "Replace Text tsReplace OK left");
    dlg->SetDlgType(replace);  // the same type: no swap
    EXPECT_EQ(Layout(), "Replace Text tsReplace OK left");
    dlg->SetDlgType(search);
    EXPECT_EQ(Layout(), "Find Text tsFind OK right hidden");

    // the getters hand out the controls of the active page
    EXPECT_EQ(dlg->rgScope(), dlg->rgSearchScope);
    EXPECT_EQ(dlg->edtTextToFind(), dlg->edtSearchTextToFind);
    dlg->rgScope()->SetItemIndex(1);
    dlg->chkBxCaseSensitive()->SetChecked(true);
    dlg->SetDlgType(replace);
    EXPECT_EQ(dlg->rgScope(), dlg->rgReplaceScope);
    EXPECT_EQ(dlg->rgScope()->ItemIndex(), 0);
    EXPECT_FALSE(dlg->chkBxCaseSensitive()->Checked());
    EXPECT_EQ(dlg->rgSearchScope->ItemIndex(), 1);  // each page keeps its own state
    EXPECT_TRUE(dlg->chkBxSearchCaseSensitive->Checked());
}

TEST_F(SearchDialog, ShowingFocusesTheTextBoxOfThePageWithItsTextSelected)
{
    dlg->SetDlgType(replace);
    dlg->edtReplaceTextToFind->SetText(u"old");
    TWinControl* focused = nullptr;
    String selected;
    script.OnForm = [&](TForm& form) {
        EXPECT_TRUE(form.Showing());
        focused = form.ActiveControl();
        selected = dlg->edtReplaceTextToFind->SelText();
        dlg->btnReplaceAll->Click();
    };
    EXPECT_EQ(dlg->ShowModal(), mrYesToAll);
    EXPECT_EQ(focused, dlg->edtReplaceTextToFind);
    EXPECT_EQ(selected, u"old");
    EXPECT_FALSE(dlg->Showing());
    script.OnForm = nullptr;
    EXPECT_EQ(dlg->ShowModal(), mrCancel);  // a form left open counts as cancelled
}

TEST_F(SearchDialog, EscapeClosesWithCancelAndEnterPressesOK)
{
    dlg->SetDlgType(replace);
    const struct { TWinControl* control; QString typed; Qt::Key key; TModalResult result; } cases[] = {
        {dlg->edtReplaceWith, QStringLiteral("new"), Qt::Key_Escape, mrCancel},
        {dlg->chkBxPromptOnReplace, QString(), Qt::Key_Return, mrOk},
        {dlg->btnCancel, QString(), Qt::Key_Enter, mrCancel},  // a focused button answers Enter itself
    };
    for (const auto& c : cases) {
        TModalResult afterKey = mrNone;
        script.OnForm = [&](TForm& form) {
            c.control->SetFocus();
            QTest::keyClicks(c.control->Widget(), c.typed);
            QTest::keyClick(c.control->Widget(), c.key);
            afterKey = form.ModalResult();
        };
        EXPECT_EQ(dlg->ShowModal(), c.result);
        EXPECT_EQ(afterKey, c.result);
    }
    EXPECT_EQ(dlg->edtReplaceWith->Text(), u"new");  // typed once, kept for the next opening
}

TEST_F(SearchDialog, TabFollowsTheStoredTabOrder)
{
    std::vector<TWinControl*> visited;
    script.OnForm = [&](TForm& form) {
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(form.ActiveControl()->Widget(), Qt::Key_Tab);
            visited.push_back(form.ActiveControl());
        }
    };
    dlg->ShowModal();
    const std::vector<TWinControl*> expected = {dlg->chkBxSearchCaseSensitive, dlg->chkBxSearchWholeWordsOnly,
                                                dlg->rgSearchScope};
    EXPECT_EQ(visited, expected);
}

class SearchEngine : public EditorTest {
protected:
    /// Opens the dialog and answers what it showed when it came up: its
    /// text, "scope" with the index of the scope, and "origin" with that of the origin.
    std::string Open(bool replacing, const SearchInput& in)
    {
        std::string seen;
        script.OnForm = [&](TForm& form) {
            auto& d = dynamic_cast<TFrmCodeEditSearchReplaceDlg&>(form);
            seen = "'" + StrToUtf8(d.edtTextToFind()->Text()) + "' scope " + std::to_string(d.rgScope()->ItemIndex()) +
                   " origin " + std::to_string(d.rgOrigin()->ItemIndex());
            FillSearchDialog(form, in);
        };
        PostMessage(edit, WM_SX_SEARCHREPLACEDLG, replacing ? 1 : 0);
        ProcessPostedMessages();  // the dialog, which posts the first pass
        return seen;
    }
    /// Runs the pass that is due; posted passes run one per call.
    void Pass() { ProcessPostedMessages(); }
    void SearchAgain()
    {
        PostMessage(edit, WM_SX_SEARCHREPLACE);
        Pass();
    }
    /// Runs the chain of a replace-all to its end.
    void RunChain()
    {
        for (int i = 0; i < 100; ++i)
            ProcessPostedMessages();
    }
    /// The selection as "start-end", for readable failures.
    std::string Selection() const { return At(edit->SelStart()) + "-" + At(edit->SelEnd()); }
    String LastBox() const { return script.Boxes.empty() ? String() : script.Boxes.back().Text; }

    ModalScript script;
};

const String NotFoundA = u"Search string 'a' not found.";
const String AskA = u"Do you want to replace this occurrence of 'a'?";

// That the control keeps one dialog shows in the text that the selection test finds kept.
TEST_F(SearchEngine, TheDialogBelongsToTheControlIsCentredAndResetAtEachOpening)
{
    edit->SetCtl3D(false);
    script.OnForm = [&](TForm& form) {
        EXPECT_EQ(form.Owner(), edit);
        EXPECT_FALSE(form.Ctl3D());
        const QRect owner = host.Window().frameGeometry();
        EXPECT_NEAR(form.Left() + form.Width() / 2, owner.center().x(), 1);
        EXPECT_NEAR(form.Top() + form.Height() / 2, owner.center().y(), 1);
    };
    SendMessage(edit, WM_SX_SEARCHREPLACEDLG);
    EXPECT_EQ(script.FormsShown, 1);
    EXPECT_EQ(Open(false, {.Scope = 1, .Origin = 1, .Result = mrCancel}), "'' scope 0 origin 0");
    EXPECT_EQ(Open(false, {.Result = mrCancel}), "'' scope 0 origin 0");
}

TEST_F(SearchEngine, PassesWalkTheHitsInTheirDirectionWithTheCaretAtTheSelectionsEnd)
{
    // hits: the selection after the first pass, then after each repeat
    const struct { const char16_t* text; TPoint caret; SearchInput in; std::vector<std::string> hits; } cases[] = {
        {u"aXa", Point(0, 0), {.Find = u"a"}, {"0,0-1,0", "2,0-3,0"}},
        {u"aXa", Point(3, 0), {.Find = u"a", .Backward = true}, {"3,0-2,0", "1,0-0,0"}},
        {u"ab ab", Point(3, 0), {.Find = u"ab"}, {"3,0-5,0"}},  // a hit may start at the caret
        {u"ab ab", Point(2, 0), {.Find = u"ab", .Backward = true}, {"2,0-0,0"}},  // or end there
        {u"xab\r\nab", Point(10, 0), {.Find = u"ab"}, {"0,1-2,1"}},  // nothing behind the caret's line end
        {u"xab\r\nab", Point(10, 0), {.Find = u"ab", .Backward = true}, {"3,0-1,0"}},  // the whole line
        {u"Cat cat catalog cat", Point(0, 0), {.Find = u"cat", .CaseSensitive = true, .WholeWords = true},
         {"4,0-7,0", "16,0-19,0"}},
        {u"Cat cat catalog cat", Point(0, 0), {.Find = u"CAT", .WholeWords = true}, {"0,0-3,0"}},
        // a pass behind the last hit shows the message and keeps the hit
        {u"aXa", Point(1, 0), {.Find = u"a"}, {"2,0-3,0", "2,0-3,0"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text) + " from " + At(c.caret));
        Start(c.text, c.caret);
        Open(false, c.in);
        Pass();
        for (std::size_t i = 0; i < c.hits.size(); ++i) {
            if (i > 0)
                SearchAgain();
            EXPECT_EQ(Selection(), c.hits[i]);
            EXPECT_EQ(At(edit->SelEnd()), At(Caret()));
        }
    }
    ASSERT_EQ(script.Boxes.size(), 1u);  // from the last row alone
    EXPECT_EQ(LastBox(), NotFoundA);
}

TEST_F(SearchEngine, TheSelectionFillsTheTextBoxOrLimitsTheFirstHitTheSameInBothDirections)
{
    Start(u"a1\r\na2\r\na3\r\na4");
    Select(Point(1, 0), Point(1, 2));
    EXPECT_EQ(Open(false, {.Find = u"a"}), "'' scope 1 origin 1");
    Pass();
    EXPECT_EQ(Selection(), "0,1-1,1");
    SearchAgain();
    SearchAgain();
    EXPECT_EQ(Selection(), "0,3-1,3");  // on past the selection's end

    for (const bool rightToLeft : {false, true}) {
        SCOPED_TRACE(rightToLeft);
        Start(u"a b a b a");
        rightToLeft ? Select(Point(7, 0), Point(2, 0)) : Select(Point(2, 0), Point(7, 0));
        // the selection holds a blank: no text taken, the last one stays
        EXPECT_EQ(Open(false, {.Find = u"a", .Backward = true, .Origin = 1}), "'a' scope 1 origin 0");
        Pass();
        EXPECT_EQ(Selection(), "5,0-4,0");  // the a behind the selection's end is not found
    }

    // a selection of one line without blanks fills the text box; with a blank it only limits the range
    Start(u"foo bar");
    Select(Point(4, 0), Point(7, 0));
    EXPECT_EQ(Open(false, {.Result = mrCancel}), "'bar' scope 0 origin 0");
    Select(Point(0, 0), Point(5, 0));
    EXPECT_EQ(Open(false, {}), "'bar' scope 1 origin 0");  // the text left as it was
    Pass();
    EXPECT_EQ(LastBox(), u"Search string 'bar' not found.");  // from the caret to the selection's end
}

TEST_F(SearchEngine, ReplaceOnceLeavesADeleteAndAPasteRecord)
{
    Start(u"one two one");
    Open(true, {.Find = u" one ", .ReplaceWith = u"1"});  // the search text is trimmed
    Pass();
    EXPECT_EQ(State(), "1 two one| @1,0");
    EXPECT_EQ(edit->UndoList().Count(), 2);
    SearchAgain();  // search again replaces again
    EXPECT_EQ(Line(0), u"1 two 1");
    Undo();  // the paste record alone
    EXPECT_EQ(Line(0), u"1 two ");
    Undo();
    EXPECT_EQ(Line(0), u"1 two one");

    Start(u"xay");  // the replacement is not trimmed
    Open(true, {.Find = u"a", .ReplaceWith = u" a "});
    Pass();
    EXPECT_EQ(Line(0), u"x a y");
}

TEST_F(SearchEngine, AnswersNoAndCancelEndTheChainWithTheHitSelected)
{
    Start(u"a a");
    script.Answers = {idNo};
    Open(true, {.Find = u"a", .ReplaceWith = u"b", .Prompt = true});
    RunChain();
    EXPECT_EQ(State(), "a a| @1,0 [0,0-1,0]");
    ASSERT_EQ(script.Boxes.size(), 1u);  // no further pass, no message
    EXPECT_EQ(script.Boxes[0].Kind, TMsgBoxKind::mbYesNo);
    EXPECT_EQ(script.Boxes[0].Text, AskA);

    Start(u"a a a");  // Cancel ends a replace-all
    script.Boxes.clear();
    script.Answers = {idYes, idCancel};
    Open(true, {.Find = u"a", .ReplaceWith = u"x", .Prompt = true, .Result = mrYesToAll});
    RunChain();
    EXPECT_EQ(State(), "x a a| @3,0 [2,0-3,0]");
    EXPECT_EQ(script.Boxes.size(), 2u);
}

TEST_F(SearchEngine, ReplaceAllRunsItsChainToTheMessageAtTheEnd)
{
    const SearchInput ask{.Find = u"a", .ReplaceWith = u"x", .Prompt = true, .Result = mrYesToAll};
    const struct {
        const char16_t* text; TPoint caret; SearchInput in; Integer answer; bool readOnly; const char16_t* after; std::size_t boxes;
    } cases[] = {
        // every old hit is replaced once, in both directions, though the replacement holds the text
        {u"a ba\r\na a", Point(0, 0), {.Find = u"a", .ReplaceWith = u"aa", .Result = mrYesToAll}, idCancel, false,
         u"aa baa\r\naa aa\r\n", 1},
        {u"a a\r\na", Point(1, 1), {.Find = u"a", .ReplaceWith = u"ab", .Backward = true, .Result = mrYesToAll},
         idCancel, false, u"ab ab\r\nab\r\n", 1},
        {u"a b a\r\na", Point(0, 0), ask, idNo, false, u"a b a\r\na\r\n", 4},  // each hit asked, none replaced
        {u"a a", Point(0, 0), ask, idYes, true, u"a a\r\n", 3},  // a read-only control changes nothing
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        script.Boxes.clear();
        script.DefaultAnswer = c.answer;
        Start(c.text, c.caret);
        edit->SetReadOnly(c.readOnly);
        const Integer records = edit->UndoList().Count();
        Open(true, c.in);
        RunChain();
        EXPECT_EQ(edit->Text(), c.after);
        ASSERT_EQ(script.Boxes.size(), c.boxes);
        EXPECT_EQ(LastBox(), NotFoundA);
        if (c.boxes > 1) {  // asked at each hit, with Cancel to end the chain
            EXPECT_EQ(script.Boxes[0].Kind, TMsgBoxKind::mbYesNoCancel);
            EXPECT_EQ(edit->UndoList().Count(), records);
        }
    }
}

TEST_F(SearchEngine, NothingToRepeatBeforeADialogAndAnEmptyTextEndsTheSearch)
{
    Start(u"abc");
    SearchAgain();
    EXPECT_TRUE(script.Boxes.empty());
    EXPECT_EQ(script.FormsShown, 0);
    Open(false, {.Find = u"a", .Result = mrCancel});
    Pass();
    EXPECT_TRUE(script.Boxes.empty());  // a cancelled dialog posts nothing
    SearchAgain();
    EXPECT_EQ(LastBox(), u"Search string '' not found.");
    Open(false, {.Find = u""});
    Pass();
    EXPECT_EQ(script.Boxes.size(), 2u);
    EXPECT_EQ(Caret(), Point(0, 0));
}

}  // namespace
