// Virtual key codes: the desktop's numbers for keys that are no characters,
// as KeyDown receives them. Letters and digits are their upper-case ASCII codes.
#pragma once

#include "platform/Types.h"

namespace sx {

constexpr Word VK_BACK = 0x08;
constexpr Word VK_TAB = 0x09;
constexpr Word VK_RETURN = 0x0D;
constexpr Word VK_SHIFT = 0x10;
constexpr Word VK_CONTROL = 0x11;
constexpr Word VK_MENU = 0x12;
constexpr Word VK_PAUSE = 0x13;
constexpr Word VK_CAPITAL = 0x14;
constexpr Word VK_ESCAPE = 0x1B;
constexpr Word VK_SPACE = 0x20;
constexpr Word VK_PRIOR = 0x21;
constexpr Word VK_NEXT = 0x22;
constexpr Word VK_END = 0x23;
constexpr Word VK_HOME = 0x24;
constexpr Word VK_LEFT = 0x25;
constexpr Word VK_UP = 0x26;
constexpr Word VK_RIGHT = 0x27;
constexpr Word VK_DOWN = 0x28;
constexpr Word VK_INSERT = 0x2D;
constexpr Word VK_DELETE = 0x2E;
constexpr Word VK_APPS = 0x5D;
constexpr Word VK_NUMPAD0 = 0x60;
constexpr Word VK_NUMPAD3 = 0x63;
constexpr Word VK_NUMPAD6 = 0x66;
constexpr Word VK_MULTIPLY = 0x6A;
constexpr Word VK_ADD = 0x6B;
constexpr Word VK_SUBTRACT = 0x6D;
constexpr Word VK_DECIMAL = 0x6E;
constexpr Word VK_DIVIDE = 0x6F;
constexpr Word VK_F1 = 0x70;
constexpr Word VK_F3 = 0x72;
constexpr Word VK_F7 = 0x76;
constexpr Word VK_F9 = 0x78;
constexpr Word VK_F11 = 0x7A;
constexpr Word VK_F12 = 0x7B;
constexpr Word VK_NUMLOCK = 0x90;
constexpr Word VK_SCROLL = 0x91;
constexpr Word VK_OEM_4 = 0xDB;  ///< "[" on a US keyboard
constexpr Word VK_OEM_6 = 0xDD;  ///< "]" on a US keyboard

}  // namespace sx
