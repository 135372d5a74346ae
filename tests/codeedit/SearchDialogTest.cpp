// The find and replace dialog: the two types with their button swap, the
// getters that follow the page, and the dialog shown modally with Escape,
// Enter and Tab.
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "support/ModalAnswers.h"

#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

using namespace sx;
using namespace sx::test;
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

}  // namespace
