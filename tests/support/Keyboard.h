// Keys as a user presses them: through the window system into the focused
// widget, so that Qt's modifier state is what a real keyboard would leave.
#pragma once

#include "platform/Controls.h"

#include <QString>
#include <Qt>

namespace sx::test {

/// Makes the control's window active and gives the control the focus.
void Focus(TWinControl& control);

/// Presses and releases one key with the modifiers held.
void Press(TWinControl& control, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Types the text one character at a time with the modifiers held; "\n" is the Enter key.
void Type(TWinControl& control, const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

}  // namespace sx::test
