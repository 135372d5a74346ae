// Line numbers in the gutter: the width that fits the last line's number,
// and the whole-line selection by pressing and dragging over the numbers.
#include "codeedit/uSxCodeEdit.h"

#include <algorithm>

namespace sx {

using namespace uSxCodeEdit;

namespace {

Integer DecimalDigits(Integer value)
{
    Integer digits = 1;
    for (; value >= 10; value /= 10)
        ++digits;
    return digits;
}

}  // namespace

Integer TSxCodeEdit::LineNumberGutterWidth() const
{
    const Integer widest = DecimalDigits(std::max(FLines->Count(), 1)) * FCharWidth;
    const Integer left = HasExtOption(TSxCodeExtOption::coFolding) ? FoldButtonRoom : LineNumberLeftMargin;
    return std::max(FGuttorWidth, left + widest + LineNumberRightMargin);
}

bool TSxCodeEdit::OnLineNumbers(Integer X) const
{
    return HasExtOption(TSxCodeExtOption::coLineNumbers) && GetShowGuttor() && X < RealGuttorWidth();
}

Integer TSxCodeEdit::LineAtPixel(Integer Y)
{
    const Integer row = GetLineWidth() > 0 ? Y / GetLineWidth() : 0;
    return std::clamp(LineOfRow(FVScrollBar->Position() + row), 0, std::max(FLines->Count() - 1, 0));
}

void TSxCodeEdit::SelectWholeLines(Integer ALine)
{
    const Integer lastLine = std::max(FLines->Count() - 1, 0);
    // The selection runs from the start of the upper line to the start of the
    // line below the lower one; the last line has none below, so its end.
    const auto lineStart = [&](Integer l) { return l > lastLine ? Point(LineLength(lastLine), lastLine) : Point(0, l); };
    const bool downwards = ALine >= FLineSelectAnchor;
    const TPoint anchor = lineStart(downwards ? FLineSelectAnchor : FLineSelectAnchor + 1);
    const TPoint caret = lineStart(downwards ? ALine + 1 : ALine);
    SetLinePos(caret.Y);
    SetCharPos(caret.X);
    SetSelEnd(anchor);
    SetSelStart(caret);
}

}  // namespace sx
