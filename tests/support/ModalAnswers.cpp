// The test's stand-in for the user at modal forms and message boxes.
#include "support/ModalAnswers.h"

#include "codeedit/fSxCodeEditSearchReplaceDlg.h"

namespace sx::test {

ModalScript::ModalScript()
{
    FPreviousFormHook = SetShowModalHook([this](TForm& form) {
        ++FormsShown;
        if (OnForm)
            OnForm(form);
    });
    FPreviousBoxHook = SetMsgBoxHook([this](TMsgBoxKind kind, const String& text, const String&) {
        Boxes.push_back(ShownBox{kind, text});
        if (Answers.empty())
            return DefaultAnswer;
        const Integer answer = Answers.front();
        Answers.pop_front();
        return answer;
    });
}

ModalScript::~ModalScript()
{
    SetShowModalHook(std::move(FPreviousFormHook));
    SetMsgBoxHook(std::move(FPreviousBoxHook));
}

void FillSearchDialog(TForm& form, const SearchInput& in)
{
    auto& d = dynamic_cast<TFrmCodeEditSearchReplaceDlg&>(form);
    if (in.Find)
        d.edtTextToFind()->SetText(*in.Find);
    d.rgDirection()->SetItemIndex(in.Backward ? 1 : 0);
    d.chkBxCaseSensitive()->SetChecked(in.CaseSensitive);
    d.chkBxWholeWordsOnly()->SetChecked(in.WholeWords);
    if (in.Scope)
        d.rgScope()->SetItemIndex(*in.Scope);
    if (in.Origin)
        d.rgOrigin()->SetItemIndex(*in.Origin);
    d.edtReplaceWith->SetText(in.ReplaceWith);
    d.chkBxPromptOnReplace->SetChecked(in.Prompt);
    form.SetModalResult(in.Result);
}

void RefuseModals()
{
    SetShowModalHook([](TForm& form) { form.SetModalResult(mrCancel); });
    SetMsgBoxHook([](TMsgBoxKind, const String&, const String&) { return idCancel; });
}

}  // namespace sx::test
