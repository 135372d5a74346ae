// Answers for modal forms and message boxes, given through the framework's
// seams: a test stands in for the user, and no test waits for a person; and
// what a test puts into the search and replace dialog.
#pragma once

#include "platform/Dialogs.h"
#include "platform/Forms.h"

#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace sx::test {

/// A message box as it came up.
struct ShownBox {
    TMsgBoxKind Kind;
    String Text;
};

/// While it lives, each modal form goes to OnForm, which fills it in and
/// sets its ModalResult (a form left open ends with Cancel), and each message
/// box is recorded and answered from Answers, front first, then with
/// DefaultAnswer. The seams it replaced come back when it goes.
class ModalScript {
public:
    ModalScript();
    ~ModalScript();
    ModalScript(const ModalScript&) = delete;
    ModalScript& operator=(const ModalScript&) = delete;

    std::function<void(TForm&)> OnForm;
    std::deque<Integer> Answers;
    Integer DefaultAnswer = idCancel;
    std::vector<ShownBox> Boxes;
    int FormsShown = 0;

private:
    TShowModalHook FPreviousFormHook;
    TMsgBoxHook FPreviousBoxHook;
};

/// What a test puts into the search and replace dialog before it closes it;
/// Find, Scope and Origin left empty keep what the dialog shows.
struct SearchInput {
    std::optional<String> Find{};
    String ReplaceWith{};
    bool Backward = false, CaseSensitive = false, WholeWords = false, Prompt = false;
    std::optional<Integer> Scope{}, Origin{};
    TModalResult Result = mrOk;
};

/// Fills in the search and replace dialog, shown as the modal form, and closes it with the input's result.
void FillSearchDialog(TForm& form, const SearchInput& in);

/// For the test main: every modal form is cancelled and every box answered
/// with Cancel, so that a test that opens one unawares goes on.
void RefuseModals();

}  // namespace sx::test
