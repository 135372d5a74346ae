// The find and replace dialog of the code edit control: one form with a
// page for find and one for replace, whose tabs are never shown. It holds
// no logic of searching; its getters hand the engine the controls of the
// page that is up.
#pragma once

#include "platform/ComCtrls.h"
#include "platform/Forms.h"

namespace sx {

namespace fSxCodeEditSearchReplaceDlg {

enum TFrmCodeEditSearchReplaceDlgType { search, replace };

/// Form heights of the two types; pcMain and the buttons follow by their anchors.
constexpr Integer SearchDlgHeight = 276;
constexpr Integer ReplaceDlgHeight = 319;
/// What either grows by while the "Regular expression" check boxes show.
constexpr Integer RegExpRowHeight = 24;

}  // namespace fSxCodeEditSearchReplaceDlg

using fSxCodeEditSearchReplaceDlg::TFrmCodeEditSearchReplaceDlgType;

/// The modal dialog; the control creates it on first use and owns it. Its
/// controls come from the form definition TFrmCodeEditSearchReplaceDlg.ui.
class TFrmCodeEditSearchReplaceDlg : public TForm {
    SX_DECLARE_CLASS
public:
    explicit TFrmCodeEditSearchReplaceDlg(TComponent* AOwner);

    // The controls of the form, owned by it.
    TPageControl* pcMain = nullptr;
    TTabSheet* tsFind = nullptr;
    TButton* btnOK = nullptr;
    TButton* btnCancel = nullptr;
    TLabel* lblTextToFind = nullptr;
    TEdit* edtSearchTextToFind = nullptr;
    TGroupBox* gbSearchOptions = nullptr;
    TCheckBox* chkBxSearchCaseSensitive = nullptr;
    TCheckBox* chkBxSearchWholeWordsOnly = nullptr;
    TRadioGroup* rgSearchScope = nullptr;
    TRadioGroup* rgSearchDirection = nullptr;
    TRadioGroup* rgSearchOrigin = nullptr;
    TTabSheet* tsReplace = nullptr;
    TLabel* Label1 = nullptr;
    TEdit* edtReplaceTextToFind = nullptr;
    TLabel* lblReplaceWith = nullptr;
    TEdit* edtReplaceWith = nullptr;
    TGroupBox* gbReplaceOptions = nullptr;
    TCheckBox* chkBxReplaceCaseSensitive = nullptr;
    TCheckBox* chkBxReplaceWholeWordsOnly = nullptr;
    TCheckBox* chkBxPromptOnReplace = nullptr;
    TRadioGroup* rgReplaceDirection = nullptr;
    TRadioGroup* rgReplaceScope = nullptr;
    TRadioGroup* rgReplaceOrigin = nullptr;
    TButton* btnReplaceAll = nullptr;
    /// "Regular expression" on each page, hidden unless SetRegExpShown shows them.
    TCheckBox* chkBxSearchRegExp = nullptr;
    TCheckBox* chkBxReplaceRegExp = nullptr;

    TFrmCodeEditSearchReplaceDlgType DlgType() const { return FDlgType; }
    /// Caption, page, height and the visible Replace All button follow the
    /// type; each change of type also swaps the places of OK and Replace All.
    void SetDlgType(TFrmCodeEditSearchReplaceDlgType Value);
    /// Shows or hides the "Regular expression" check boxes; the form grows
    /// below the pages by RegExpRowHeight to hold them, nothing else moves
    /// within the pages.
    void SetRegExpShown(bool Value);
    bool RegExpShown() const { return FRegExpShown; }

    // The controls of the active page.
    TEdit* edtTextToFind() const { return GetEdtTextToFind(); }
    TRadioGroup* rgScope() const { return GetRgScope(); }
    TRadioGroup* rgOrigin() const { return GetRgOrigin(); }
    TRadioGroup* rgDirection() const { return GetRgDirection(); }
    TCheckBox* chkBxCaseSensitive() const { return GetChkBxCaseSensitive(); }
    TCheckBox* chkBxWholeWordsOnly() const { return GetChkBxWholeWordsOnly(); }
    TEdit* GetEdtTextToFind() const;
    TRadioGroup* GetRgScope() const;
    TRadioGroup* GetRgOrigin() const;
    TRadioGroup* GetRgDirection() const;
    TCheckBox* GetChkBxCaseSensitive() const;
    TCheckBox* GetChkBxWholeWordsOnly() const;
    TCheckBox* GetChkBxRegExp() const;

    /// The text box of the active page takes the focus with all its text selected.
    void FormShow(TObject* Sender);
    /// Escape closes the dialog, from whichever control has the focus.
    void FormKeyDown(TObject* Sender, Word& Key, TShiftState Shift);

private:
    void BindControls();
    /// The height of the type, with the row of the check boxes when they show.
    void FitHeight();
    bool Searching() const { return FDlgType == fSxCodeEditSearchReplaceDlg::search; }

    TFrmCodeEditSearchReplaceDlgType FDlgType = fSxCodeEditSearchReplaceDlg::search;
    bool FRegExpShown = false;
};

}  // namespace sx
