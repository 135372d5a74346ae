// The desktop caret: one per thread, a solid block over the widget of the
// control that holds it, blinking at the desktop's cursor flash time.
#pragma once

#include "platform/Colors.h"
#include "platform/Types.h"

namespace sx {

class TWinControl;

/// Makes a caret of that size for the window, hidden; replaces any other caret.
bool CreateCaret(TWinControl* window, void* bitmap, Integer width, Integer height);
/// Moves the caret, in client pixels of its window.
bool SetCaretPos(Integer x, Integer y);
/// Shows the caret and starts its blinking.
bool ShowCaret(TWinControl* window);
bool HideCaret(TWinControl* window);
/// Paints the caret of the window in a colour of its own; a new caret is clWindowText.
bool SetCaretColor(TWinControl* window, TColor color);
/// Removes the caret of the thread; harmless when there is none.
bool DestroyCaret();

/// What a test can ask of the caret of this thread.
struct TCaretInfo {
    TWinControl* Window = nullptr;  ///< none when there is no caret
    TPoint Pos;
    Integer Width = 0;
    Integer Height = 0;
    bool Shown = false;
    TColor Color = clWindowText;
};
TCaretInfo GetCaretInfo();

}  // namespace sx
