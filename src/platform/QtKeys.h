// What a Qt key event means to the controls: its virtual key code for
// KeyDown and KeyUp, and the characters it types for WM_CHAR.
#pragma once

#include "platform/Types.h"

class QKeyEvent;

namespace sx {

/// The virtual key code of the key, or 0 for a key that has none.
Word VirtualKeyOf(const QKeyEvent& event);

/// The character codes the key types, in order: Enter 13, Backspace 8, Tab 9,
/// Escape 27, Ctrl with a letter 1 to 26, nothing with Alt alone, else the
/// text of the key (Ctrl with Alt is AltGr on some desktops, and types). Keys
/// that move or edit without typing (arrows, Delete, function keys) type nothing.
String TypedCharsOf(const QKeyEvent& event);

}  // namespace sx
