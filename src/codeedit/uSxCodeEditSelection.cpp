// The selection that runs beside the caret: setting its two ends, collapsing
// it onto the caret or letting it grow, and clearing it.
#include "uSxCodeEdit.h"

#include <algorithm>

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

bool TSxCodeEdit::HasSelection() const
{
    const bool cleared = FSelStart.X == -1 || FSelEnd.X == -1;
    const bool ranOff = FSelStart.X == MaxInt || FSelEnd.X == MaxInt;
    return !cleared && !ranOff && FSelStart != FSelEnd;
}

bool TSxCodeEdit::SelectionReversed() const
{
    return FSelStart.Y > FSelEnd.Y || (FSelStart.Y == FSelEnd.Y && FSelStart.X > FSelEnd.X);
}

void TSxCodeEdit::SwapSelectionEnds()
{
    std::swap(FSelStart, FSelEnd);
    FLinePos = FSelStart.Y;
    FCharPos = FSelStart.X;
}

bool TSxCodeEdit::RepairSelectionEnd()
{
    if (FSelEnd.Y < FLines->Count())
        return false;
    FLines->Add(String());
    FSelEnd = Point(MaxInt, FLines->Count() - 1);
    return true;
}

String TSxCodeEdit::LinePart(Integer ALine, Integer AFrom, Integer ACount) const
{
    if (ALine < 0 || ALine >= FLines->Count() || ACount <= 0)
        return String();
    const String& line = FLines->Line(ALine);
    const auto from = std::size_t(std::max(AFrom, 0));
    return from < line.size() ? line.substr(from, std::size_t(ACount)) : String();
}

void TSxCodeEdit::GetSelected(String& Selected)
{
    Selected.clear();
    if (!HasSelection())
        return;
    const bool swapped = SelectionReversed();
    if (swapped)
        SwapSelectionEnds();
    RepairSelectionEnd();
    if (FSelStart.Y == FSelEnd.Y) {
        Selected = LinePart(FSelStart.Y, FSelStart.X, FSelEnd.X - FSelStart.X);
    } else {
        Selected = LinePart(FSelStart.Y, FSelStart.X, MaxInt) + sLineBreak;
        for (Integer line = FSelStart.Y + 1; line < FSelEnd.Y; ++line)
            Selected += LinePart(line, 0, MaxInt) + sLineBreak;
        Selected += LinePart(FSelEnd.Y, 0, FSelEnd.X);
    }
    if (swapped)
        SwapSelectionEnds();
}

Integer TSxCodeEdit::SelLength()
{
    if (!HasSelection())
        return 0;
    const bool swapped = SelectionReversed();
    if (swapped)
        SwapSelectionEnds();
    const bool repaired = RepairSelectionEnd();
    const auto lineLength = [this](Integer line) {
        return line >= 0 && line < FLines->Count() ? Integer(FLines->Line(line).size()) : 0;
    };
    Integer result;
    if (FSelStart.Y == FSelEnd.Y) {
        result = FSelEnd.X - FSelStart.X;
    } else {
        result = lineLength(FSelStart.Y) - FSelStart.X;
        for (Integer line = FSelStart.Y + 1; line < FSelEnd.Y; ++line)
            result += lineLength(line);
        result += repaired ? 0 : FSelEnd.X;
    }
    if (swapped)
        SwapSelectionEnds();
    return result;
}

void TSxCodeEdit::InitSelectionAndPosition()
{
    ClearSelection();
    SetCharPos(0);
    SetLinePos(0);
}

}  // namespace sx
