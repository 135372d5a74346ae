// The selection that runs beside the caret: setting its two ends, collapsing
// it onto the caret or letting it grow, and clearing it.
#include "codeedit/uSxCodeEdit.h"

#include <algorithm>
#include <cstdint>

namespace sx {

void TSxCodeEdit::SetSelStart(TPoint Value)
{
    if (Value != FSelStart)
        Invalidate();
    FSelStart = Value;
    AccessibleStateChanged();
}

void TSxCodeEdit::SetSelEnd(TPoint Value)
{
    if (Value != FSelEnd)
        Invalidate();
    FSelEnd = Value;
    AccessibleStateChanged();
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
    // An end on a line before the first, which only an application can set,
    // reads as none, as an end that ran off the last line does: no line
    // operation may be asked for a negative line.
    const bool beforeText = FSelStart.Y < 0 || FSelEnd.Y < 0;
    return !cleared && !ranOff && !beforeText && FSelStart != FSelEnd;
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

Integer TSxCodeEdit::ColumnSpan(Integer AFrom, Integer ATo)
{
    return Integer(std::clamp<std::int64_t>(std::int64_t(ATo) - AFrom, -std::int64_t(MaxInt) - 1, MaxInt));
}

bool TSxCodeEdit::StartRanOff() const { return FSelStart.Y > FSelEnd.Y; }

String TSxCodeEdit::LinePart(Integer ALine, Integer AFrom, Integer ACount) const
{
    // Columns in front of 0 hold nothing: a range that starts there is cut
    // to its part from column 0 on.
    const std::int64_t from = std::max<std::int64_t>(AFrom, 0);
    const std::int64_t count = std::int64_t(ACount) - (from - AFrom);
    if (ALine < 0 || ALine >= FLines->Count() || count <= 0)
        return String();
    return FLines->Line(ALine).Substr(std::size_t(from), std::size_t(count));
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
    if (StartRanOff()) {
        if (swapped)
            SwapSelectionEnds();
        return;
    }
    if (FSelStart.Y == FSelEnd.Y) {
        Selected = LinePart(FSelStart.Y, FSelStart.X, ColumnSpan(FSelStart.X, FSelEnd.X));
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
    if (StartRanOff()) {
        if (swapped)
            SwapSelectionEnds();
        return 0;
    }
    const auto lineLength = [this](Integer line) {
        return line >= 0 && line < FLines->Count() ? Integer(FLines->Line(line).size()) : 0;
    };
    // Summed in 64 bits and saturated: the ends may lie at any column.
    std::int64_t result;
    if (FSelStart.Y == FSelEnd.Y) {
        result = std::int64_t(FSelEnd.X) - FSelStart.X;
    } else {
        result = std::int64_t(lineLength(FSelStart.Y)) - FSelStart.X;
        for (Integer line = FSelStart.Y + 1; line < FSelEnd.Y; ++line)
            result += lineLength(line);
        result += repaired ? 0 : FSelEnd.X;
    }
    if (swapped)
        SwapSelectionEnds();
    return Integer(std::clamp<std::int64_t>(result, -std::int64_t(MaxInt) - 1, MaxInt));
}

void TSxCodeEdit::InitSelectionAndPosition()
{
    ClearSelection();
    SetCharPos(0);
    SetLinePos(0);
}

}  // namespace sx
