#include "codeedit/uSxCodeEditPaintCache.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace sx {

TSxPaintKey& TSxPaintKey::AddBytes(const void* AData, std::size_t ACount)
{
    const auto* bytes = static_cast<const unsigned char*>(AData);
    for (std::size_t i = 0; i < ACount; ++i) {
        FHash ^= bytes[i];
        FHash *= 1099511628211ull;
    }
    return *this;
}

bool TSxPaintCache::Begin(std::uint64_t AFrameKey, Integer AFirstRow, Integer ARowCount, double ARowPixels)
{
    const bool sameFrame = AFrameKey == FFrameKey && Integer(FKeys.size()) == ARowCount;
    const Integer moved = AFirstRow - FFirstRow;
    FFrameKey = AFrameKey;
    FFirstRow = AFirstRow;
    FFirstDrawn = ARowCount;
    FLastDrawn = -1;
    FShiftPixels = 0;
    if (!sameFrame) {
        FKeys.assign(std::size_t(std::max(ARowCount, 0)), 0);
        return true;
    }
    if (moved != 0) {
        const bool whole = ARowPixels == std::floor(ARowPixels);
        if (!whole || std::abs(moved) >= ARowCount) {
            std::fill(FKeys.begin(), FKeys.end(), 0);
            return true;
        }
        ShiftKeys(moved);
        FShiftPixels = Integer(-moved * ARowPixels);
    }
    return false;
}

void TSxPaintCache::ShiftKeys(Integer ARows)
{
    // Row r now holds what row r + ARows held.
    std::vector<std::uint64_t> keys(FKeys.size(), 0);
    for (Integer row = 0; row < Integer(keys.size()); ++row) {
        const Integer from = row + ARows;
        if (from >= 0 && from < Integer(FKeys.size()))
            keys[std::size_t(row)] = FKeys[std::size_t(from)];
    }
    FKeys.swap(keys);
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
