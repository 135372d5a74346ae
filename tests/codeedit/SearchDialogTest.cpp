// The find and replace dialog: the form as its definition stores it, the
// two types with their button swap and heights, the getters that follow the
// page, and the dialog shown modally with Escape, Enter and Tab.
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
    std::unique_ptr<TFrmCodeEditSearchReplaceDlg> dlg = std::make_unique<TFrmCodeEditSearchReplaceDlg>(nullptr);
    ModalScript script;
};

TRect BoundsOf(const TControl& c) { return Rect(c.Left(), c.Top(), c.Left() + c.Width(), c.Top() + c.Height()); }

TEST_F(SearchDialog, ReadsItsFormDefinition)
{
    EXPECT_EQ(dlg->Name(), u"FrmCodeEditSearchReplaceDlg");
    EXPECT_EQ(dlg->Font().Height(), -11);
    EXPECT_EQ(dlg->Position(), TPosition::poOwnerFormCenter);
    EXPECT_EQ(dlg->pcMain->Pages(1), dlg->tsReplace);

    // A control on a page, one inside a group box and one on the form itself.
    const struct {
        TWidgetControl* control;
        TWinControl* parent;
        TRect bounds;
        const char16_t* caption;
        Integer tabOrder;
    } rows[] = {
        {dlg->edtReplaceWith, dlg->tsReplace, Rect(88, 32, 373, 51), u"", 1},
        {dlg->chkBxPromptOnReplace, dlg->gbReplaceOptions, Rect(8, 64, 121, 81), u"Prompt on replace", 2},
        {dlg->btnReplaceAll, dlg.get(), Rect(162, 269 - 62, 237, 294 - 62), u"Replace &All", 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(StrToUtf8(row.control->Name()));
        EXPECT_EQ(row.control->Parent(), row.parent);
        EXPECT_EQ(BoundsOf(*row.control), row.bounds);
        EXPECT_EQ(row.control->Caption(), row.caption);
        EXPECT_EQ(row.control->TabOrder(), row.tabOrder);
    }
    EXPECT_EQ(dlg->rgSearchOrigin->Items().Text(), u"From cursor\r\nEntire scope\r\n");
    EXPECT_EQ(dlg->rgSearchOrigin->ItemIndex(), 1);
    EXPECT_EQ(dlg->btnReplaceAll->ModalResult(), 14);
}

TEST_F(SearchDialog, EachChangeOfTypeSwapsTheButtonsAndResizes)
{
    // It comes up as a find dialog without tabs, though the definition stores the replace page.
    EXPECT_EQ(dlg->Caption(), u"Find Text");
    EXPECT_EQ(dlg->pcMain->ActivePage(), dlg->tsFind);
    EXPECT_FALSE(dlg->tsFind->TabVisible() || dlg->tsReplace->TabVisible() || dlg->btnReplaceAll->Visible());
    EXPECT_EQ(dlg->Height(), 276);
    EXPECT_EQ(dlg->pcMain->Height(), 255 - 62);  // anchored on all four sides
    EXPECT_EQ(dlg->btnOK->Left(), 240);

    dlg->SetDlgType(replace);
    EXPECT_EQ(dlg->Caption(), u"Replace Text");
    EXPECT_EQ(dlg->pcMain->ActivePage(), dlg->tsReplace);
    EXPECT_TRUE(dlg->btnReplaceAll->Visible());
    EXPECT_EQ(dlg->Height(), 319);
    EXPECT_EQ(dlg->btnCancel->Top(), 269 - 19);  // anchored to the bottom
    EXPECT_EQ(dlg->btnOK->Left(), 162);
    EXPECT_EQ(dlg->btnReplaceAll->Left(), 240);

    dlg->SetDlgType(replace);  // the same type: no swap
    EXPECT_EQ(dlg->btnOK->Left(), 162);

    dlg->SetDlgType(search);
    EXPECT_EQ(dlg->btnOK->Left(), 240);
    EXPECT_EQ(dlg->btnReplaceAll->Left(), 162);
    EXPECT_EQ(dlg->Height(), 276);
}

TEST_F(SearchDialog, GettersHandOutTheControlsOfTheActivePage)
{
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
    TModalResult afterKey = mrNone;
    script.OnForm = [&](TForm& form) {
        dlg->edtReplaceWith->SetFocus();
        QTest::keyClicks(dlg->edtReplaceWith->Widget(), QStringLiteral("new"));
        QTest::keyClick(dlg->edtReplaceWith->Widget(), Qt::Key_Escape);
        afterKey = form.ModalResult();
    };
    EXPECT_EQ(dlg->ShowModal(), mrCancel);
    EXPECT_EQ(afterKey, mrCancel);
    EXPECT_EQ(dlg->edtReplaceWith->Text(), u"new");  // typed once, kept for the next opening

    script.OnForm = [&](TForm& form) {
        dlg->chkBxPromptOnReplace->SetFocus();
        QTest::keyClick(dlg->chkBxPromptOnReplace->Widget(), Qt::Key_Return);
        afterKey = form.ModalResult();
    };
    EXPECT_EQ(dlg->ShowModal(), mrOk);
    EXPECT_EQ(afterKey, mrOk);

    script.OnForm = [&](TForm&) {
        dlg->btnCancel->SetFocus();
        QTest::keyClick(dlg->btnCancel->Widget(), Qt::Key_Enter);  // a focused button answers Enter itself
    };
    EXPECT_EQ(dlg->ShowModal(), mrCancel);
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
