// The caret wrapper.
#include "codeedit/uSxCodeEditCaret.h"

#include "platform/Caret.h"

namespace sx {

TSxCaret::TSxCaret(TWinControl*) {}

namespace {

/// Removes the thread's caret unless another control holds it: a control
/// that scrolls or goes away without the focus leaves the focused one's caret.
void DestroyCaretOf(TWinControl* parent)
{
    const TWinControl* holder = GetCaretInfo().Window;
    if (!holder || holder == parent)
        DestroyCaret();
}

}  // namespace

TSxCaret::~TSxCaret() { DestroyCaretOf(FParent); }

void TSxCaret::SetParent(TWinControl* Value)
{
    if (Value != FParent) {
        FParent = Value;
        UpdateCaret();
    }
}

void TSxCaret::SetNormal(bool Value)
{
    if (Value != FNormal) {
        FNormal = Value;
        UpdateCaret();
    }
}

void TSxCaret::SetVisible(bool) {}

void TSxCaret::SetColor(TColor Value)
{
    FColor = Value;
    if (GetCaretInfo().Window == FParent)
        SetCaretColor(FParent, FColor);
}

void TSxCaret::Show(Integer X, Integer Y, Integer W, Integer H)
{
    DestroyCaretOf(FParent);
    if (FParent && FParent->Focused()) {
        CreateCaret(FParent, nullptr, W, H);
        SetCaretColor(FParent, FColor);
        SetCaretPos(X + 2, Y);
        ShowCaret(FParent);
    }
}

void TSxCaret::Hide() { DestroyCaretOf(FParent); }

void TSxCaret::UpdateCaret()
{
    DestroyCaretOf(FParent);
    // The shape is made ready without being shown; it never takes the caret
    // away from another control that has the focus.
    const bool free = GetCaretInfo().Window == nullptr || (FParent && FParent->Focused());
    if (FParent && FParent->HasParentWindow() && free) {
        if (FNormal)
            CreateCaret(FParent, nullptr, 2, 10);
        else
            CreateCaret(FParent, nullptr, 10, 10);
        SetCaretColor(FParent, FColor);
    }
}

}  // namespace sx
