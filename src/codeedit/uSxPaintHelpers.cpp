// The tree button of the gutter.
#include "codeedit/uSxPaintHelpers.h"

namespace sx {

void SxPaintTreeButton(TCanvas& ACanvas, const TRect& ARect, bool)
{
    const Integer x = ARect.Left + (ARect.Right - ARect.Left) / 2 - 7;
    const Integer y = ARect.Top + (ARect.Bottom - ARect.Top) / 2 - 7;
    ACanvas.Pen().Color = clBlack;
    ACanvas.Brush().Color = clWhite;
    ACanvas.Brush().Style = TBrushStyle::bsSolid;
    ACanvas.Rectangle(x, y, x + 14, y + 14);
}

}  // namespace sx
