// Caret and scrolling: every caret move goes through SetCharPos and
// SetLinePos, which keep the caret in view; the two scroll bars are laid out
// here, and the wheel and the focus reach the view through this file.
#include "uSxCodeEdit.h"

#include "platform/Caret.h"

namespace sx {

void TSxCodeEdit::SetCharPos(Integer Value)
{
    FCharPos = Value;
    if (FCharPos < 0) {
        SetCharPos(0);
        if (FLinePos > 0)
            SetLinePos(FLinePos - 1);
    }
    if (FCharPos < FHScrollBar->Position())
        FHScrollBar->SetPosition(FCharPos);
    else if (FCharPos > FHScrollBar->Position() + FHScrollBar->PageSize())
        FHScrollBar->SetPosition(FCharPos - FHScrollBar->PageSize());
    ResetCaret();
    if (FOnCursorChange)
        FOnCursorChange(this);
    SetSelection(false);
}

void TSxCodeEdit::SetLinePos(Integer Value)
{
    FLinePos = Value;
    if (FLinePos < 0)
        FLinePos = 0;
    if (FLinePos >= FLines->Count())
        FLinePos = std::max(FLines->Count() - 1, 0);
    if (FLinePos < FVScrollBar->Position())
        FVScrollBar->SetPosition(FLinePos);
    else if (FLinePos > FVScrollBar->Position() + FVScrollBar->PageSize() - 1)
        FVScrollBar->SetPosition(FLinePos - FVScrollBar->PageSize());
    ResetCaret();
    if (FOnCursorChange)
        FOnCursorChange(this);
    SetSelection(false);
}

void TSxCodeEdit::ResetCaret()
{
    const Integer x = (FCharPos - FHScrollBar->Position()) * GetCharWidth();
    const Integer y = (FLinePos - FVScrollBar->Position()) * GetLineWidth();
    const Integer g = RealGuttorWidth();
    const bool inArea = x >= 0 && x < ClientWidth() - g - FVScrollBar->Width() && y >= 0 &&
                        y < ClientHeight() - FHScrollBar->Height();
    if (inArea) {
        FCaret->SetParent(this);
        FCaret->Show(g + x, y, 2, GetLineWidth());
    } else {
        FCaret->Hide();
    }
}

void TSxCodeEdit::PositionScollBars()
{
    if (!HasParentWindow() || InPaint || GetCharWidth() == 0 || GetLineWidth() == 0)
        return;
    const Integer g = RealGuttorWidth();
    const Integer t = FHScrollBar->Height();

    FHScrollBar->SetTabStop(false);
    FHScrollBar->SetKind(TScrollBarKind::sbHorizontal);
    FHScrollBar->SetBounds(g, Height() - t, Width() - t - g, t);
    FHScrollBar->SetMax(500);
    FHScrollBar->SetPageSize((Width() - g - FVScrollBar->Width() - GetCharWidth()) / GetCharWidth());
    if (FHScrollBar->PageSize() >= 0)
        FHScrollBar->SetLargeChange(FHScrollBar->PageSize());

    FVScrollBar->SetTabStop(false);
    FVScrollBar->SetKind(TScrollBarKind::sbVertical);
    FVScrollBar->SetBounds(Width() - t, 0, t, Height() - t);
    FVScrollBar->SetMax(FLines->Count() + 100);
    FVScrollBar->SetPageSize((Height() - FHScrollBar->Height() - GetLineWidth()) / GetLineWidth());
    if (FVScrollBar->PageSize() >= 0)
        FVScrollBar->SetLargeChange(FVScrollBar->PageSize());
}

void TSxCodeEdit::ScrollChange(TObject*)
{
    ResetCaret();
    Invalidate();
}

void TSxCodeEdit::WMMouseWheel(TMessage& Message)
{
    TCustomControl::DefaultHandler(Message);
    const auto delta = static_cast<std::int16_t>(HiWord(Message.WParam));
    if (delta > 0)
        FVScrollBar->SetPosition(FVScrollBar->Position() - FScollLines);
    else
        FVScrollBar->SetPosition(FVScrollBar->Position() + FScollLines);
}

void TSxCodeEdit::CMEnter(TMessage& Message)
{
    TCustomControl::CMEnter(Message);
    SetCharPos(FCharPos);
    FCaret->SetVisible(true);
}

void TSxCodeEdit::CMExit(TMessage& Message)
{
    FCaret->SetVisible(false);
    TCustomControl::CMExit(Message);
    DestroyCaret();
}

}  // namespace sx
