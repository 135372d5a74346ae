// Folding in the control (coFolding): the operations for applications, the
// fold buttons in the gutter and the fold keys, and the rows that caret
// moves and scrolling count once lines hide.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/uSxCodeEditFolding.h"
#include "platform/Keys.h"

#include <algorithm>
#include <chrono>

namespace sx {

using namespace uSxCodeEdit;

namespace {

/// The fold button's cell: the classic tree button's place in the gutter.
constexpr Integer FoldButtonLeft = 4;
constexpr Integer FoldButtonRight = 20;

}  // namespace

TSxCodeEditFolding* TSxCodeEdit::ActiveFolding()
{
    if (!FFolding || !HasExtOption(TSxCodeExtOption::coFolding))
        return nullptr;
    FFolding->Sync();
    return FFolding.get();
}

TSxFoldStructure* TSxCodeEdit::LineStates()
{
    if (!FFolding || !HasExtOption(TSxCodeExtOption::coExactColors))
        return nullptr;
    return &FFolding->Structure();
}

void TSxCodeEdit::ScheduleLineScan()
{
    TSxFoldStructure* states = LineStates();
    if (FLineScanPosted || !states || states->Complete())
        return;
    FLineScanPosted = PostMessage(this, WM_SX_SCANLINES);
}

void TSxCodeEdit::WMScanLines(TMessage&)
{
    FLineScanPosted = false;
    TSxFoldStructure* states = LineStates();
    if (!states)
        return;
    // Slices of lines until the time is up, so that the control stays
    // responsive; a paint that needs a line not yet known scans up to it.
    constexpr Integer SliceLines = 2000;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(LineScanSliceMs);
    while (!states->Complete() && std::chrono::steady_clock::now() < deadline)
        states->EnsureScanned(states->KnownLines() + SliceLines);
    ScheduleLineScan();
}

void TSxCodeEdit::ApplyFoldingOption()
{
    // The line states serve folding and exact colours alike.
    const bool wanted =
        HasExtOption(TSxCodeExtOption::coFolding) || HasExtOption(TSxCodeExtOption::coExactColors);
    ScheduleLineScan();
    if (wanted == bool(FFolding))
        return;
    if (!wanted) {
        FLines->SetFoldListener(nullptr);
        FFolding.reset();
        return;
    }
    FFolding = std::make_unique<TSxCodeEditFolding>(*FLines);
    FFolding->SetParser(GetParser());
    FFolding->SetOnChange([this] {
        PositionScollBars();
        ResetCaret();
        Invalidate();
        if (FOnFoldChange)
            FOnFoldChange(this);
    });
    FLines->SetFoldListener(FFolding.get());
    ScheduleLineScan();
}

bool TSxCodeEdit::Fold(Integer ALine)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    if (!folding)
        return false;
    std::optional<TSxFoldRegion> region = folding->Structure().RegionAt(ALine);
    if (!region || folding->IsFolded(region->First))
        region = folding->Structure().RegionAround(ALine);
    while (region && folding->IsFolded(region->First))
        region = region->First > 0 ? folding->Structure().RegionAround(region->First - 1) : std::nullopt;
    if (!region || !folding->Fold(region->First))
        return false;
    CaretOutOfFolds();
    return true;
}

bool TSxCodeEdit::Unfold(Integer ALine)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return folding && (folding->Unfold(ALine) || folding->Reveal(ALine));
}

bool TSxCodeEdit::ToggleFold(Integer ALine)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    if (!folding)
        return false;
    return folding->IsFolded(ALine) ? folding->Unfold(ALine) : Fold(ALine);
}

void TSxCodeEdit::FoldAll()
{
    if (TSxCodeEditFolding* folding = ActiveFolding()) {
        folding->FoldAll();
        CaretOutOfFolds();
    }
}

void TSxCodeEdit::UnfoldAll()
{
    if (TSxCodeEditFolding* folding = ActiveFolding())
        folding->UnfoldAll();
}

bool TSxCodeEdit::IsLineVisible(Integer ALine)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return !folding || folding->IsLineVisible(ALine);
}

std::vector<TSxFoldRegion> TSxCodeEdit::FoldRegions()
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return folding ? folding->Structure().Regions(0, MaxInt) : std::vector<TSxFoldRegion>{};
}

std::optional<TSxFoldRegion> TSxCodeEdit::FoldRegionAt(Integer ALine)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return folding ? folding->Structure().RegionAt(ALine) : std::nullopt;
}

std::vector<TSxFoldRegion> TSxCodeEdit::FoldedRegions()
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return folding ? folding->Folded() : std::vector<TSxFoldRegion>{};
}

void TSxCodeEdit::CaretOutOfFolds()
{
    TSxCodeEditFolding* folding = ActiveFolding();
    if (!folding || folding->IsLineVisible(FLinePos))
        return;
    // The first line of the outermost folded region that hides the caret.
    for (const TSxFoldRegion& r : folding->Folded())
        if (r.First < FLinePos && FLinePos <= r.Last) {
            SetLinePos(r.First);
            SetCharPos(LineLength(r.First));
            return;
        }
}

Integer TSxCodeEdit::RowOfLine(Integer ALine)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return folding ? folding->RowOf(ALine) : ALine;
}

Integer TSxCodeEdit::LineOfRow(Integer ARow)
{
    TSxCodeEditFolding* folding = ActiveFolding();
    return folding ? folding->LineOfRow(ARow) : ARow;
}

Integer TSxCodeEdit::ShownLineFrom(Integer ALine, Integer ASteps)
{
    if (!ActiveFolding())
        return ALine + ASteps;
    // Past the last row the caret stays on the last line that shows.
    const std::int64_t last = std::max(FFolding->RowCount() - 1, 0);
    return LineOfRow(Integer(std::clamp<std::int64_t>(std::int64_t(RowOfLine(ALine)) + ASteps, 0, last)));
}

bool TSxCodeEdit::ClickFoldButton(Integer X, Integer Y)
{
    if (!ActiveFolding() || !GetShowGuttor() || X < FoldButtonLeft || X >= FoldButtonRight)
        return false;
    const Integer line = LineAtPixel(Y);
    if (!FFolding->IsFolded(line) && !FFolding->Structure().RegionAt(line))
        return false;
    ToggleFold(line);
    return true;
}

bool TSxCodeEdit::FoldKey(Word Key, TShiftState Shift)
{
    if (!ActiveFolding() || (Key != VK_OEM_4 && Key != VK_OEM_6))
        return false;
    const TShiftState keys = ModifierKeysOf(Shift);
    const bool fold = Key == VK_OEM_4;
    if (keys == TShiftState{TShiftStateItem::ssCtrl, TShiftStateItem::ssShift}) {
        fold ? Fold(FLinePos) : Unfold(FLinePos);
        return true;
    }
    if (keys == TShiftState{TShiftStateItem::ssCtrl, TShiftStateItem::ssAlt}) {
        fold ? FoldAll() : UnfoldAll();
        return true;
    }
    return false;
}

}  // namespace sx
