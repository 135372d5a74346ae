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

void SxPaintFoldButton(TCanvas& ACanvas, const TRect& ARect, bool AFolded)
{
    SxPaintTreeButton(ACanvas, ARect, !AFolded);
    const Integer x = ARect.Left + (ARect.Right - ARect.Left) / 2 - 7;
    const Integer y = ARect.Top + (ARect.Bottom - ARect.Top) / 2 - 7;
    ACanvas.MoveTo(x + 3, y + 7);
    ACanvas.LineTo(x + 11, y + 7);
    if (AFolded) {
        ACanvas.MoveTo(x + 7, y + 3);
        ACanvas.LineTo(x + 7, y + 11);
    }
}

void SxPaintFoldMarker(TCanvas& ACanvas, Integer X, Integer Y, Integer ALineHeight, TColor AColor)
{
    const String dots = u"...";
    const Integer width = ACanvas.TextWidth(dots) + 4;
    ACanvas.Font().SetColor(AColor);
    ACanvas.Brush().Style = TBrushStyle::bsClear;
    ACanvas.TextOut(X + 2, Y, dots);
    ACanvas.Brush().Style = TBrushStyle::bsSolid;
    ACanvas.Brush().Color = AColor;
    ACanvas.FrameRect(Rect(X, Y, X + width, Y + ALineHeight));
}

}  // namespace sx
