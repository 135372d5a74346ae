// Message boxes: a text with OK, Yes and No, or Yes, No and Cancel, over
// Qt's message box, and the seam that lets a program answer them.
#pragma once

#include "platform/Types.h"

#include <functional>

namespace sx {

/// The answers of a message box.
constexpr Integer idOk = 1;
constexpr Integer idCancel = 2;
constexpr Integer idYes = 6;
constexpr Integer idNo = 7;

enum class TMsgBoxKind { mbInfo, mbYesNo, mbYesNoCancel };

/// A modal box with the text and one button; returns when it is closed.
void SxMsgBoxInfo(const String& Text, const String& Caption);
/// A modal box with Yes and No: answers idYes (6) or idNo.
Integer SxMsgBoxYesNo(const String& Text, const String& Caption);
/// A modal box with Yes, No and Cancel: answers idYes (6), idNo or idCancel (2).
Integer SxMsgBoxYesNoCancel(const String& Text, const String& Caption);

/// Stands in for the user at message boxes: when set, each box calls it
/// instead of showing itself and answers what it answers.
using TMsgBoxHook = std::function<Integer(TMsgBoxKind Kind, const String& Text, const String& Caption)>;
/// Installs the hook (or none) and answers the one it replaces.
TMsgBoxHook SetMsgBoxHook(TMsgBoxHook Hook);

}  // namespace sx
