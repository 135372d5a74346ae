// Caret and scrolling: every caret move goes through SetCharPos and
// SetLinePos, which keep the caret in view; the two scroll bars are laid out
// here, and the wheel and the focus reach the view through this file.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/uSxCodeEditFolding.h"
#include "codeedit/uSxCodeEditLineLengths.h"
#include "platform/Caret.h"

#include <algorithm>
#include <cstdint>

namespace sx {

namespace {

/// A - B without overflow: a caret column may be as large as an Integer goes
/// and a page size may be negative, while a bar takes an Integer position.
Integer ClampedDifference(Integer A, Integer B)
{
    const std::int64_t d = std::int64_t(A) - B;
    return Integer(std::clamp<std::int64_t>(d, -MaxInt - 1, MaxInt));
}

}  // namespace

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
    else if (std::int64_t(FCharPos) > std::int64_t(FHScrollBar->Position()) + FHScrollBar->PageSize())
        FHScrollBar->SetPosition(ClampedDifference(FCharPos, FHScrollBar->PageSize()));
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
    // The caret never stands on a hidden line: its region unfolds.
    if (TSxCodeEditFolding* folding = ActiveFolding())
        folding->Reveal(FLinePos);
    const Integer row = RowOfLine(FLinePos);
    if (row < FVScrollBar->Position())
        FVScrollBar->SetPosition(row);
    else if (std::int64_t(row) > std::int64_t(FVScrollBar->Position()) + FVScrollBar->PageSize() - 1)
        FVScrollBar->SetPosition(ClampedDifference(row, FVScrollBar->PageSize()));
    ResetCaret();
    if (FOnCursorChange)
        FOnCursorChange(this);
    SetSelection(false);
}

void TSxCodeEdit::ResetCaret()
{
    const TSxTextArea area = TextArea();
    if (area.Shows(FCharPos, FLinePos)) {
        FCaret->SetParent(this);
        FCaret->Show(Integer(area.CellX(FCharPos)), Integer(area.CellY(FLinePos)), TSxTextArea::CaretWidth,
                     area.LineHeight);
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
    FHScrollBar->SetMax(ColumnRange());
    FHScrollBar->SetPageSize((Width() - g - FVScrollBar->Width() - GetCharWidth()) / GetCharWidth());
    if (FHScrollBar->PageSize() >= 0)
        FHScrollBar->SetLargeChange(FHScrollBar->PageSize());

    FVScrollBar->SetTabStop(false);
    FVScrollBar->SetKind(TScrollBarKind::sbVertical);
    FVScrollBar->SetBounds(Width() - t, 0, t, Height() - t);
    // The bar counts the rows: with folding, the lines that show.
    FVScrollBar->SetMax((FFolding ? FFolding->RowCount() : FLines->Count()) + 100);
    FVScrollBar->SetPageSize((Height() - FHScrollBar->Height() - GetLineWidth()) / GetLineWidth());
    if (FVScrollBar->PageSize() >= 0)
        FVScrollBar->SetLargeChange(FVScrollBar->PageSize());
}

Integer TSxCodeEdit::ColumnRange()
{
    // The classic range is 500 columns; with coLongLines it reaches one
    // column behind the longest line.
    constexpr Integer ClassicColumns = 500;
    if (!FLineLengths)
        return ClassicColumns;
    return std::max(ClassicColumns, std::min(FLineLengths->Longest(), uSxCodeEdit::MaxLineLength - 1) + 1);
}

void TSxCodeEdit::ApplyLongLinesOption()
{
    const bool wanted = HasExtOption(TSxCodeExtOption::coLongLines);
    if (wanted == bool(FLineLengths))
        return;
    FLines->SetLengthListener(nullptr);
    FLineLengths.reset();
    if (wanted) {
        FLineLengths = std::make_unique<TSxLineLengths>(*FLines);
        FLines->SetLengthListener(FLineLengths.get());
    }
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
