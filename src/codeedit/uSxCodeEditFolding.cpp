// Folded regions and the rows of the shown lines. The hidden lines are kept
// as sorted runs with the count hidden before each, so that a row and its
// line are found by a binary search over the runs.
#include "codeedit/uSxCodeEditFolding.h"

#include <algorithm>

namespace sx {

TSxCodeEditFolding::TSxCodeEditFolding(const TSxCodeEditLines& ALines) : FLines(ALines), FStructure(ALines) {}

bool TSxCodeEditFolding::IsFolded(Integer ALine) const
{
    const auto at = std::lower_bound(FFolded.begin(), FFolded.end(), ALine,
                                     [](const TSxFoldRegion& r, Integer line) { return r.First < line; });
    return at != FFolded.end() && at->First == ALine;
}

bool TSxCodeEditFolding::Fold(Integer ALine)
{
    Sync();
    const std::optional<TSxFoldRegion> region = FStructure.RegionAt(ALine);
    if (!region || IsFolded(ALine))
        return false;
    const auto at = std::lower_bound(FFolded.begin(), FFolded.end(), *region,
                                     [](const TSxFoldRegion& a, const TSxFoldRegion& b) { return a.First < b.First; });
    FFolded.insert(at, *region);
    Changed();
    return true;
}

bool TSxCodeEditFolding::Unfold(Integer ALine)
{
    const auto at =
        std::find_if(FFolded.begin(), FFolded.end(), [&](const TSxFoldRegion& r) { return r.First == ALine; });
    if (at == FFolded.end())
        return false;
    FFolded.erase(at);
    Changed();
    return true;
}

void TSxCodeEditFolding::FoldAll()
{
    Sync();
    FFolded = FStructure.Regions(0, MaxInt);
    Changed();
}

void TSxCodeEditFolding::UnfoldAll()
{
    if (FFolded.empty())
        return;
    FFolded.clear();
    Changed();
}

bool TSxCodeEditFolding::Reveal(Integer ALine)
{
    const auto hides = [&](const TSxFoldRegion& r) { return r.First < ALine && ALine <= r.Last; };
    const auto kept = std::remove_if(FFolded.begin(), FFolded.end(), hides);
    if (kept == FFolded.end())
        return false;
    FFolded.erase(kept, FFolded.end());
    Changed();
    return true;
}

void TSxCodeEditFolding::Sync()
{
    if (FFolded.empty() || FSyncedVersion == FStructure.Version())
        return;
    FSyncedVersion = FStructure.Version();
    const std::vector<TSxFoldRegion> regions = FStructure.Regions(FFolded.front().First, FFolded.back().First);
    std::vector<TSxFoldRegion> kept;
    for (const TSxFoldRegion& folded : FFolded) {
        const auto now = std::find_if(regions.begin(), regions.end(),
                                      [&](const TSxFoldRegion& r) { return r.First == folded.First; });
        if (now != regions.end())
            kept.push_back(*now);
    }
    if (kept != FFolded) {
        FFolded = std::move(kept);
        Changed();
    }
}

void TSxCodeEditFolding::Changed()
{
    Rebuild();
    if (FOnChange)
        FOnChange();
}

void TSxCodeEditFolding::Rebuild()
{
    FHidden.clear();
    FHiddenCount = 0;
    // Regions nest or stand apart; a run ends where the outermost folded region does.
    for (const TSxFoldRegion& r : FFolded) {
        if (!FHidden.empty() && r.First <= FHidden.back().Last) {
            HiddenRun& run = FHidden.back();
            FHiddenCount += std::max(0, r.Last - run.Last);
            run.Last = std::max(run.Last, r.Last);
            continue;
        }
        FHidden.push_back({r.First + 1, r.Last, FHiddenCount});
        FHiddenCount += r.Last - r.First;
    }
}

const TSxCodeEditFolding::HiddenRun* TSxCodeEditFolding::RunAtOrBefore(Integer ALine) const
{
    const auto after = std::upper_bound(FHidden.begin(), FHidden.end(), ALine,
                                        [](Integer line, const HiddenRun& run) { return line < run.First; });
    return after == FHidden.begin() ? nullptr : &*std::prev(after);
}

Integer TSxCodeEditFolding::RowOf(Integer ALine) const
{
    const HiddenRun* run = RunAtOrBefore(ALine);
    if (!run)
        return ALine;
    // A hidden line shares the row of the region's first line.
    if (ALine <= run->Last)
        return run->First - 1 - run->HiddenBefore;
    return ALine - run->HiddenBefore - (run->Last - run->First + 1);
}

Integer TSxCodeEditFolding::LineOfRow(Integer ARow) const
{
    // The last run that starts at or above the row's line.
    const auto after = std::upper_bound(FHidden.begin(), FHidden.end(), ARow, [](Integer row, const HiddenRun& run) {
        return row < run.First - run.HiddenBefore;
    });
    if (after == FHidden.begin())
        return ARow;
    const HiddenRun& run = *std::prev(after);
    return ARow + run.HiddenBefore + (run.Last - run.First + 1);
}

bool TSxCodeEditFolding::IsLineVisible(Integer ALine) const
{
    const HiddenRun* run = RunAtOrBefore(ALine);
    return !run || ALine > run->Last;
}

void TSxCodeEditFolding::Shift(Integer AIndex, Integer ADelta)
{
    bool moved = false;
    for (TSxFoldRegion& r : FFolded)
        if (r.First >= AIndex) {
            r.First += ADelta;
            r.Last += ADelta;
            moved = true;
        }
    if (moved)
        Rebuild();
}

void TSxCodeEditFolding::LineReplacing(Integer Index, std::size_t NewLength)
{
    Reveal(Index);
    FStructure.LineReplacing(Index, NewLength);
}

void TSxCodeEditFolding::LineInserting(Integer Index, std::size_t Length)
{
    Reveal(Index);
    Shift(Index, 1);
    FStructure.LineInserting(Index, Length);
}

void TSxCodeEditFolding::LineDeleting(Integer Index)
{
    Reveal(Index);
    Unfold(Index);
    Shift(Index + 1, -1);
    FStructure.LineDeleting(Index);
}

void TSxCodeEditFolding::AllLinesReplacing()
{
    UnfoldAll();
    FStructure.AllLinesReplacing();
}

}  // namespace sx
