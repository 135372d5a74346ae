// Colour conversion to Qt.
#include "platform/QtConvert.h"

#include "platform/Graphics.h"

namespace sx {

QColor ToQColor(TColor color)
{
    const TColor rgb = ColorToRGB(color);
    return QColor(GetRValue(rgb), GetGValue(rgb), GetBValue(rgb));
}

}  // namespace sx
