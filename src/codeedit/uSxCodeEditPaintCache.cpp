#include "codeedit/uSxCodeEditPaintCache.h"

#include <algorithm>
#include <cstring>

namespace sx {

TSxPaintKey& TSxPaintKey::AddBytes(const void* AData, std::size_t ACount)
{
    // Eight bytes at a time: a key is made for every row of every paint.
    const auto* bytes = static_cast<const unsigned char*>(AData);
    for (; ACount >= 8; bytes += 8, ACount -= 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes, 8);
        Mix(word);
    }
    if (ACount > 0) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, ACount);
        Mix(word ^ (std::uint64_t(ACount) << 56));
    }
    return *this;
}

bool TSxPaintCache::Begin(std::uint64_t AFrameKey, Integer AFirstRow, Integer ARowCount)
{
    const bool sameFrame = AFrameKey == FFrameKey && Integer(FKeys.size()) == ARowCount;
    FScrolled = AFirstRow - FFirstRow;
    FFrameKey = AFrameKey;
    FFirstRow = AFirstRow;
    FFirstDrawn = ARowCount;
    FLastDrawn = -1;
    if (!sameFrame)
        FKeys.assign(std::size_t(std::max(ARowCount, 0)), 0);
    return !sameFrame;
}

TSxRowMove TSxPaintCache::LongestRun(const std::vector<std::uint64_t>& ANew, Integer ABy, Integer AWholeRows) const
{
    TSxRowMove best;
    const auto count = Integer(std::min(ANew.size(), FKeys.size()));
    Integer runStart = 0;
    for (Integer row = 0; row <= count; ++row) {
        const Integer from = row - ABy;
        const bool matches = row < count && from >= 0 && from < std::min(count, AWholeRows) && ANew[std::size_t(row)] != 0 &&
                             ANew[std::size_t(row)] == FKeys[std::size_t(from)];
        if (matches)
            continue;
        if (row - runStart >= 2 && row - runStart > best.Last - best.First + 1)
            best = TSxRowMove{runStart, row - 1, ABy};
        runStart = row + 1;
    }
    return best;
}

TSxRowMove TSxPaintCache::PlanMove(const std::vector<std::uint64_t>& ANew, Integer AWholeRows) const
{
    TSxRowMove best;
    for (const Integer by : {-FScrolled, 1, -1}) {
        if (by == 0)
            continue;
        const TSxRowMove run = LongestRun(ANew, by, AWholeRows);
        if (run.Last - run.First > best.Last - best.First)
            best = run;
    }
    return best;
}

void TSxPaintCache::Move(const TSxRowMove& AMove)
{
    const std::vector<std::uint64_t> kept = FKeys;
    for (Integer row = AMove.First; row <= AMove.Last; ++row)
        FKeys[std::size_t(row)] = kept[std::size_t(row - AMove.By)];
}

bool TSxPaintCache::RowChanged(Integer ARow, std::uint64_t AKey)
{
    if (ARow < 0 || ARow >= Integer(FKeys.size()))
        return true;
    auto& kept = FKeys[std::size_t(ARow)];
    if (kept == AKey)
        return false;
    kept = AKey;
    FFirstDrawn = std::min(FFirstDrawn, ARow);
    FLastDrawn = std::max(FLastDrawn, ARow);
    return true;
}

}  // namespace sx
