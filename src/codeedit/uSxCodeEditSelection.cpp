// The selection that runs beside the caret: setting its two ends, collapsing
// it onto the caret or letting it grow, and clearing it.
#include "uSxCodeEdit.h"

namespace sx {

void TSxCodeEdit::SetSelStart(TPoint Value)
{
    if (Value != FSelStart)
        Invalidate();
    FSelStart = Value;
}

void TSxCodeEdit::SetSelEnd(TPoint Value)
{
    if (Value != FSelEnd)
        Invalidate();
    FSelEnd = Value;
}

void TSxCodeEdit::ClearSelection()
{
    SetSelStart(Point(-1, -1));
    SetSelEnd(Point(-1, -1));
}

void TSxCodeEdit::SetSelection(bool IgnoreShift)
{
    SetSelStart(Point(FCharPos, FLinePos));
    bool keepAnchor;
    if (inMouseMove)
        keepAnchor = FInMouseSetSelection;
    else
        keepAnchor = !IgnoreShift && KeyboardStateToShiftState().Contains(TShiftStateItem::ssShift);
    if (!keepAnchor)
        SetSelEnd(FSelStart);
    FInMouseSetSelection = inMouseMove;
}

void TSxCodeEdit::InitSelectionAndPosition()
{
    ClearSelection();
    SetCharPos(0);
    SetLinePos(0);
}

}  // namespace sx
