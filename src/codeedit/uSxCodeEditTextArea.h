// The geometry of the code edit's text area in client pixels: where the cell
// of a column and line stands, where its text is drawn, which cells show, and
// the position under a point. The paint, the caret, the input method support
// and the screen-reader model all take it from here.
#pragma once

#include "platform/Types.h"

#include <algorithm>
#include <cstdint>

namespace sx {

/// The rows lines show on when some lines are hidden (folding): a hidden
/// line shares the row of the shown line above it.
class TSxRowMap {
public:
    virtual Integer RowOf(Integer ALine) const = 0;
    virtual Integer LineOfRow(Integer ARow) const = 0;
    virtual bool IsLineVisible(Integer ALine) const = 0;

protected:
    ~TSxRowMap() = default;
};

struct TSxTextArea {
    /// Text, and a composition at the caret, stand this many pixels right of
    /// their cell's left edge.
    static constexpr Integer InnerMargin = 2;
    /// The width of the caret block.
    static constexpr Integer CaretWidth = 2;

    Integer Left = 0;         ///< the gutter's width: the area's left edge
    Integer Width = 0;        ///< from Left to the vertical scroll bar
    Integer Height = 0;       ///< from the top to the horizontal scroll bar
    Integer CharWidth = 0;    ///< of one column
    Integer LineHeight = 0;   ///< of one line
    Integer FirstColumn = 0;  ///< the column at the left edge (the horizontal scroll position)
    Integer FirstLine = 0;    ///< the row at the top (the vertical scroll position)
    /// With hidden lines, their rows; without, each line is its own row.
    const TSxRowMap* Rows = nullptr;

    std::int64_t RowOf(std::int64_t line) const { return Rows ? Rows->RowOf(Integer(line)) : line; }

    // In 64 bits: a position far out in virtual space lies far outside the area.

    /// The left edge of the column's cell.
    std::int64_t CellX(std::int64_t column) const { return Left + (column - FirstColumn) * CharWidth; }
    /// The top edge of the line's cell.
    std::int64_t CellY(std::int64_t line) const { return (RowOf(line) - FirstLine) * LineHeight; }
    /// Where the column's text is drawn.
    std::int64_t TextX(std::int64_t column) const { return CellX(column) + InnerMargin; }

    /// Whether the top left corner of the cell lies inside the area.
    bool Shows(std::int64_t column, std::int64_t line) const
    {
        const std::int64_t x = CellX(column) - Left;
        const std::int64_t y = CellY(line);
        return x >= 0 && x < Width && y >= 0 && y < Height && (!Rows || Rows->IsLineVisible(Integer(line)));
    }

    /// The column and line whose text cell holds the point; a point left of
    /// the text counts as the first column shown. Needs a measured font.
    TPoint PositionAt(TPoint pixel) const
    {
        const Integer textX = std::max(pixel.X - Left - InnerMargin, 0);
        const Integer row = pixel.Y / LineHeight + FirstLine;
        return Point(textX / CharWidth + FirstColumn, Rows ? Rows->LineOfRow(row) : row);
    }
};

/// A pixel position clamped to plus or minus 2^30, so that sums made of it
/// stay in the range of Integer.
inline Integer ClampedPixel(std::int64_t value)
{
    constexpr std::int64_t farAway = std::int64_t(1) << 30;
    return Integer(std::clamp(value, -farAway, farAway));
}

}  // namespace sx
