// The text of the demo editor's About box, kept apart from the window so that
// a test can read it without showing anything.
#pragma once

#include <QString>

namespace sx::demo {

/// The About box's title.
QString AboutTitle();
/// Rich text naming the library and its version, the Qt version the editor
/// runs on (and was built with), and what the control is.
QString AboutText();

}  // namespace sx::demo
