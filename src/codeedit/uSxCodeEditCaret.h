// TSxCaret: the control's wrapper of the desktop caret, destroyed and made
// anew for every move.
#pragma once

#include "platform/Controls.h"

namespace sx {

class TSxCaret : public TObject {
public:
    explicit TSxCaret(TWinControl* aParent);
    ~TSxCaret() override;

    TWinControl* Parent() const { return FParent; }
    void SetParent(TWinControl* Value);
    bool Normal() const { return FNormal; }
    void SetNormal(bool Value);
    bool Visible() const { return FVisible; }
    void SetVisible(bool Value);
    /// The colour of the caret block; the caret in place takes it at once.
    TColor Color() const { return FColor; }
    void SetColor(TColor Value);

    /// Puts a caret of W by H at (X + 2, Y) when the parent has the focus.
    void Show(Integer X, Integer Y, Integer W, Integer H);
    void Hide();

private:
    void UpdateCaret();

    TWinControl* FParent = nullptr;
    bool FNormal = true;
    bool FVisible = false;
    TColor FColor = clWindowText;
};

}  // namespace sx
