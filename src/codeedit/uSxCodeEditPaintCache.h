// With coPartialPaint the paint keeps its bitmaps from one paint to the next,
// with a key of everything each row of the view showed: the next paint draws
// only the rows whose key changed and copies the others, moved along when the
// view scrolled by whole rows. A key that stands for the whole frame (sizes,
// font, colours, the horizontal position) sends every row to be drawn anew.
#pragma once

#include "platform/Graphics.h"

#include <cstdint>
#include <vector>

namespace sx {

/// Adds up the values that make a key (64-bit FNV-1a over their bytes).
class TSxPaintKey {
public:
    template <class T>
    TSxPaintKey& Add(const T& AValue)
    {
        return AddBytes(&AValue, sizeof AValue);
    }
    TSxPaintKey& Add(const String& AText)
    {
        Add(AText.size());
        return AddBytes(AText.data(), AText.size() * sizeof(Char));
    }
    /// Never 0: a row whose key is 0 is one the bitmap does not hold.
    std::uint64_t Value() const { return FHash | 1; }

private:
    TSxPaintKey& AddBytes(const void* AData, std::size_t ACount);

    std::uint64_t FHash = 14695981039346656037ull;
};

class TSxPaintCache {
public:
    /// The kept pictures of the text area and of the gutter.
    TBitmap& Main() { return FMain; }
    TBitmap& Gutter() { return FGutter; }

    /// Starts a paint of ARowCount rows whose first shows row AFirstRow of
    /// the text, in a frame of key AFrameKey; answers whether every row must
    /// be drawn. When only the first row moved, by fewer rows than the view
    /// has, and a row is a whole number ARowPixels of device pixels, the
    /// rows' keys move with it, and the paint moves its pictures by
    /// ShiftPixels.
    bool Begin(std::uint64_t AFrameKey, Integer AFirstRow, Integer ARowCount, double ARowPixels);
    /// Whether row ARow must be drawn to show what AKey stands for; the key
    /// is kept for the next paint.
    bool RowChanged(Integer ARow, std::uint64_t AKey);
    /// The first and last row drawn by this paint; First > Last if none.
    Integer FirstDrawn() const { return FFirstDrawn; }
    Integer LastDrawn() const { return FLastDrawn; }
    /// Device pixels the pictures move down (up when negative) for this
    /// paint; when they move, every row shows anew.
    Integer ShiftPixels() const { return FShiftPixels; }
    bool Shifted() const { return FShiftPixels != 0; }
    /// Forgets every row: the next paint draws them all.
    void Clear() { FKeys.clear(); }

    /// Set by a paint made ahead of its paint event (the rows it drew are
    /// already asked to show); the paint event then only copies.
    bool Prepared = false;

private:
    void ShiftKeys(Integer ARows);

    TBitmap FMain;
    TBitmap FGutter;
    std::vector<std::uint64_t> FKeys;
    std::uint64_t FFrameKey = 0;
    Integer FFirstRow = 0;
    Integer FFirstDrawn = 0;
    Integer FLastDrawn = -1;
    Integer FShiftPixels = 0;
};

}  // namespace sx
