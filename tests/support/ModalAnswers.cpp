// The test's stand-in for the user at modal forms and message boxes.
#include "support/ModalAnswers.h"

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

void RefuseModals()
{
    SetShowModalHook([](TForm& form) { form.SetModalResult(mrCancel); });
    SetMsgBoxHook([](TMsgBoxKind, const String&, const String&) { return idCancel; });
}

}  // namespace sx::test
