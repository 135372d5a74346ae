// With coPartialPaint the paint keeps its bitmaps from one paint to the next,
// with a key of everything each row of the view showed: the next paint draws
// only the rows whose key changed and copies the others, moved along when
// rows moved (a scroll, a line put in or taken out above them). A key that
// stands for the whole frame (sizes, font, colours, the horizontal position)
// sends every row to be drawn anew.
#pragma once

#include "platform/Graphics.h"

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

namespace sx {

/// Adds up the values that make a key: their bytes, eight at a time, mixed
/// into 64 bits.
class TSxPaintKey {
public:
    template <class T>
    TSxPaintKey& Add(const T& AValue)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        if constexpr (sizeof(T) > sizeof(std::uint64_t)) {
            return AddBytes(&AValue, sizeof AValue);
        } else {
            std::uint64_t word = 0;
            std::memcpy(&word, &AValue, sizeof AValue);
            Mix(word);
            return *this;
        }
    }
    TSxPaintKey& Add(const String& AText) { return AddChars(AText.data(), AText.size()); }
    TSxPaintKey& AddChars(const Char* AText, std::size_t ACount)
    {
        Add(ACount);
        return AddBytes(AText, ACount * sizeof(Char));
    }
    /// Never 0: a row whose key is 0 is one the bitmap does not hold.
    std::uint64_t Value() const { return FHash | 1; }

private:
    TSxPaintKey& AddBytes(const void* AData, std::size_t ACount);
    void Mix(std::uint64_t AWord)
    {
        FHash = (FHash ^ AWord) * 0x9E3779B97F4A7C15ull;
        FHash ^= FHash >> 29;
    }

    std::uint64_t FHash = 14695981039346656037ull;
};

/// Rows First to Last of the view show what rows First - By to Last - By
/// showed: their pixels move down By rows (up when By is negative).
struct TSxRowMove {
    Integer First = 0;
    Integer Last = -1;
    Integer By = 0;
    bool Empty() const { return By == 0 || Last < First; }
};

class TSxPaintCache {
public:
    /// With coPartialPaint: rows are kept and drawn only when they change.
    /// Without, a paint draws every row, on the kept pictures all the same,
    /// so that no paint asks the system for fresh memory.
    bool Partial() const { return FPartial; }
    /// Turns partial paints on or off; the rows kept so far are forgotten.
    void SetPartial(bool AValue)
    {
        FPartial = AValue;
        FKeys.clear();
        Prepared = false;
        ScreenBehind = false;
    }

    /// The kept pictures of the text area and of the gutter.
    TBitmap& Main() { return FMain; }
    TBitmap& Gutter() { return FGutter; }

    /// Starts a paint of ARowCount rows whose first shows row AFirstRow of
    /// the text, in a frame of key AFrameKey; answers whether every row must
    /// be drawn.
    bool Begin(std::uint64_t AFrameKey, Integer AFirstRow, Integer ARowCount);
    /// The move that brings the most rows, at least two, to where the rows
    /// of keys ANew show them: by as many rows as the view scrolled, or by
    /// one (a line put in or taken out); or none. Only the first
    /// AWholeRows rows are whole in the pictures and can be moved from.
    TSxRowMove PlanMove(const std::vector<std::uint64_t>& ANew, Integer AWholeRows) const;
    /// The kept keys move with the rows.
    void Move(const TSxRowMove& AMove);
    /// Whether row ARow must be drawn to show what AKey stands for; the key
    /// is kept for the next paint.
    bool RowChanged(Integer ARow, std::uint64_t AKey);
    /// The first and last row drawn by this paint; First > Last if none.
    Integer FirstDrawn() const { return FFirstDrawn; }
    Integer LastDrawn() const { return FLastDrawn; }

    /// Set by a paint made ahead of its paint event (the rows it drew are
    /// already asked to show); the paint event then only copies.
    bool Prepared = false;
    /// Rows asked to show that no paint event has shown yet: the screen
    /// cannot be moved along with the bitmaps.
    bool ScreenBehind = false;

private:
    /// The longest run of at least two rows whose new key is the kept key
    /// ABy rows above it.
    TSxRowMove LongestRun(const std::vector<std::uint64_t>& ANew, Integer ABy, Integer AWholeRows) const;

    bool FPartial = false;
    TBitmap FMain;
    TBitmap FGutter;
    std::vector<std::uint64_t> FKeys;
    std::uint64_t FFrameKey = 0;
    Integer FFirstRow = 0;
    Integer FScrolled = 0;
    Integer FFirstDrawn = 0;
    Integer FLastDrawn = -1;
};

}  // namespace sx
