// Drawing helpers shared by the code edit control.
#pragma once

#include "platform/Graphics.h"

namespace sx {

/// Draws one tree button: a white 14 by 14 square with a black outline,
/// centred in ARect. The Boolean is kept for a folding picture; it changes nothing.
void SxPaintTreeButton(TCanvas& ACanvas, const TRect& ARect, bool AExpanded);

}  // namespace sx
