// Drawing helpers shared by the code edit control.
#pragma once

#include "platform/Graphics.h"

namespace sx {

/// Draws one tree button: a white 14 by 14 square with a black outline,
/// centred in ARect. The Boolean is kept for a folding picture; it changes nothing.
void SxPaintTreeButton(TCanvas& ACanvas, const TRect& ARect, bool AExpanded);

/// The fold button of a region (coFolding): the tree button with a minus in
/// it, or a plus while the region is folded.
void SxPaintFoldButton(TCanvas& ACanvas, const TRect& ARect, bool AFolded);

/// The marker behind a folded region's first line: "..." in a frame, at (X, Y)
/// in the canvas's font, ALineHeight high, in AColor.
void SxPaintFoldMarker(TCanvas& ACanvas, Integer X, Integer Y, Integer ALineHeight, TColor AColor);

}  // namespace sx
