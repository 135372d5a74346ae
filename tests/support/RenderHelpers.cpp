// Rendering and pixel reading for the widget tests.
#include "support/RenderHelpers.h"

namespace sx::test {

QImage Render(TWinControl& control)
{
    QWidget* widget = control.Widget();
    QImage image(widget->size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    widget->render(&image);
    return image;
}

TColor PixelAt(const QImage& image, int x, int y)
{
    const QRgb p = image.pixel(x, y);
    return RGB(Byte(qRed(p)), Byte(qGreen(p)), Byte(qBlue(p)));
}

int CountPixels(const QImage& image, const TRect& area, TColor color)
{
    int count = 0;
    for (int y = std::max(0, area.Top); y < std::min(image.height(), area.Bottom); ++y)
        for (int x = std::max(0, area.Left); x < std::min(image.width(), area.Right); ++x)
            count += PixelAt(image, x, y) == color ? 1 : 0;
    return count;
}

TRect CellRect(TSxCodeEdit& edit, Integer column, Integer line)
{
    const Integer cw = edit.GetCharWidth(), lh = edit.GetLineWidth();
    const Integer x = edit.RealGuttorWidth() + 2 + (column - edit.HScrollBar().Position()) * cw;
    const Integer y = (line - edit.VScrollBar().Position()) * lh;
    return Rect(x, y, x + cw, y + lh);
}

void Host::Place(TWinControl& control, int width, int height)
{
    control.Widget()->setParent(FWindow.get());
    control.SetBounds(0, 0, width, height);
    control.Widget()->show();
}

}  // namespace sx::test
