// The find and replace dialog: built from its form definition, switched
// between its two types, and closed by Escape.
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"

#include "platform/Keys.h"

namespace sx {

using namespace fSxCodeEditSearchReplaceDlg;

namespace {

/// The control of that name among the form's components; raises when the
/// form definition lacks it or gives it another class.
template <class T>
void Bind(const TComponent& form, T*& field, const char16_t* name)
{
    for (int i = 0; i < form.ComponentCount(); ++i) {
        if (form.Components(i)->Name() == name) {
            field = dynamic_cast<T*>(form.Components(i));
            if (field)
                return;
        }
    }
    throw EReadError(String(u"The form definition has no control ") + name + u" of the right class");
}

}  // namespace

SX_DEFINE_CLASS(TFrmCodeEditSearchReplaceDlg, TForm)

TFrmCodeEditSearchReplaceDlg::TFrmCodeEditSearchReplaceDlg(TComponent* AOwner) : TForm(AOwner)
{
    ReadFormDefinition();
    BindControls();
    OnShow = [this](TObject* Sender) { FormShow(Sender); };
    OnKeyDown = [this](TObject* Sender, Word& Key, TShiftState Shift) { FormKeyDown(Sender, Key, Shift); };
    for (Integer i = 0; i < pcMain->PageCount(); ++i)
        pcMain->Pages(i)->SetTabVisible(false);
    // Stored as replace, so that the setter passes its equality test and a
    // new dialog always comes up in the find state.
    FDlgType = replace;
    SetDlgType(search);
}

void TFrmCodeEditSearchReplaceDlg::BindControls()
{
    Bind(*this, pcMain, u"pcMain");
    Bind(*this, tsFind, u"tsFind");
    Bind(*this, btnOK, u"btnOK");
    Bind(*this, btnCancel, u"btnCancel");
    Bind(*this, lblTextToFind, u"lblTextToFind");
    Bind(*this, edtSearchTextToFind, u"edtSearchTextToFind");
    Bind(*this, gbSearchOptions, u"gbSearchOptions");
    Bind(*this, chkBxSearchCaseSensitive, u"chkBxSearchCaseSensitive");
    Bind(*this, chkBxSearchWholeWordsOnly, u"chkBxSearchWholeWordsOnly");
    Bind(*this, rgSearchScope, u"rgSearchScope");
    Bind(*this, rgSearchDirection, u"rgSearchDirection");
    Bind(*this, rgSearchOrigin, u"rgSearchOrigin");
    Bind(*this, tsReplace, u"tsReplace");
    Bind(*this, Label1, u"Label1");
    Bind(*this, edtReplaceTextToFind, u"edtReplaceTextToFind");
    Bind(*this, lblReplaceWith, u"lblReplaceWith");
    Bind(*this, edtReplaceWith, u"edtReplaceWith");
    Bind(*this, gbReplaceOptions, u"gbReplaceOptions");
    Bind(*this, chkBxReplaceCaseSensitive, u"chkBxReplaceCaseSensitive");
    Bind(*this, chkBxReplaceWholeWordsOnly, u"chkBxReplaceWholeWordsOnly");
    Bind(*this, chkBxPromptOnReplace, u"chkBxPromptOnReplace");
    Bind(*this, rgReplaceDirection, u"rgReplaceDirection");
    Bind(*this, rgReplaceScope, u"rgReplaceScope");
    Bind(*this, rgReplaceOrigin, u"rgReplaceOrigin");
    Bind(*this, btnReplaceAll, u"btnReplaceAll");
    Bind(*this, chkBxSearchRegExp, u"chkBxSearchRegExp");
    Bind(*this, chkBxReplaceRegExp, u"chkBxReplaceRegExp");
}

void TFrmCodeEditSearchReplaceDlg::SetDlgType(TFrmCodeEditSearchReplaceDlgType Value)
{
    if (Value == FDlgType)
        return;
    FDlgType = Value;
    const bool replacing = Value == replace;
    SetCaption(replacing ? u"Replace Text" : u"Find Text");
    pcMain->SetActivePage(replacing ? tsReplace : tsFind);
    btnReplaceAll->SetVisible(replacing);
    FitHeight();
    const Integer replaceAllLeft = btnReplaceAll->Left();
    btnReplaceAll->SetLeft(btnOK->Left());
    btnOK->SetLeft(replaceAllLeft);
}

void TFrmCodeEditSearchReplaceDlg::SetRegExpShown(bool Value)
{
    if (Value == FRegExpShown)
        return;
    FRegExpShown = Value;
    chkBxSearchRegExp->SetVisible(Value);
    chkBxReplaceRegExp->SetVisible(Value);
    FitHeight();
}

void TFrmCodeEditSearchReplaceDlg::FitHeight()
{
    SetHeight((Searching() ? SearchDlgHeight : ReplaceDlgHeight) + (FRegExpShown ? RegExpRowHeight : 0));
}

TEdit* TFrmCodeEditSearchReplaceDlg::GetEdtTextToFind() const
{
    return Searching() ? edtSearchTextToFind : edtReplaceTextToFind;
}

TRadioGroup* TFrmCodeEditSearchReplaceDlg::GetRgScope() const { return Searching() ? rgSearchScope : rgReplaceScope; }

TRadioGroup* TFrmCodeEditSearchReplaceDlg::GetRgOrigin() const
{
    return Searching() ? rgSearchOrigin : rgReplaceOrigin;
}

TRadioGroup* TFrmCodeEditSearchReplaceDlg::GetRgDirection() const
{
    return Searching() ? rgSearchDirection : rgReplaceDirection;
}

TCheckBox* TFrmCodeEditSearchReplaceDlg::GetChkBxCaseSensitive() const
{
    return Searching() ? chkBxSearchCaseSensitive : chkBxReplaceCaseSensitive;
}

TCheckBox* TFrmCodeEditSearchReplaceDlg::GetChkBxWholeWordsOnly() const
{
    return Searching() ? chkBxSearchWholeWordsOnly : chkBxReplaceWholeWordsOnly;
}

TCheckBox* TFrmCodeEditSearchReplaceDlg::GetChkBxRegExp() const
{
    return Searching() ? chkBxSearchRegExp : chkBxReplaceRegExp;
}

void TFrmCodeEditSearchReplaceDlg::FormShow(TObject*)
{
    TEdit* edit = Searching() ? edtSearchTextToFind : edtReplaceTextToFind;
    edit->SetFocus();
    edit->SelectAll();
}

void TFrmCodeEditSearchReplaceDlg::FormKeyDown(TObject*, Word& Key, TShiftState)
{
    if (Key == VK_ESCAPE)
        Close();
}

}  // namespace sx
