// Numbered window messages: the message record, the numbers the system
// answers, and dispatch of a number to a handler through a table.
#pragma once

#include "platform/Types.h"

#include <cstddef>

namespace sx {

using NativeUInt = std::uintptr_t;

struct TMessage {
    Cardinal Msg = 0;
    NativeUInt WParam = 0;
    NativeInt LParam = 0;
    NativeInt Result = 0;
};

// The numbers are the desktop's own and are never renumbered.
constexpr Cardinal WM_ERASEBKGND = 0x0014;
constexpr Cardinal WM_GETDLGCODE = 0x0087;
constexpr Cardinal WM_KEYDOWN = 0x0100;
constexpr Cardinal WM_KEYUP = 0x0101;
constexpr Cardinal WM_CHAR = 0x0102;
constexpr Cardinal WM_MOUSEWHEEL = 0x020A;
constexpr Cardinal WM_CUT = 0x0300;
constexpr Cardinal WM_COPY = 0x0301;
constexpr Cardinal WM_PASTE = 0x0302;
constexpr Cardinal WM_UNDO = 0x0304;
constexpr Cardinal WM_USER = 0x0400;
constexpr Cardinal CM_BASE = 0xB000;
constexpr Cardinal CM_ENTER = CM_BASE + 26;
constexpr Cardinal CM_EXIT = CM_BASE + 27;
constexpr Cardinal CM_WANTSPECIALKEY = CM_BASE + 30;
/// A framework component asks a control for its data link; the result is the link.
constexpr Cardinal CM_GETDATALINK = CM_BASE + 45;

/// Answers of WM_GETDLGCODE: the keys a control wants for itself rather than
/// for the dialog's navigation.
constexpr NativeInt DLGC_WANTARROWS = 0x0001;
constexpr NativeInt DLGC_WANTTAB = 0x0002;
constexpr NativeInt DLGC_WANTALLKEYS = 0x0004;
constexpr NativeInt DLGC_WANTCHARS = 0x0080;

/// Lines per wheel notch as the desktop reports it.
constexpr Cardinal SPI_GETWHEELSCROLLLINES = 104;
/// The wheel delta of one notch.
constexpr Integer WHEEL_DELTA = 120;

inline Word LoWord(NativeUInt v) { return Word(v & 0xFFFF); }
inline Word HiWord(NativeUInt v) { return Word((v >> 16) & 0xFFFF); }

/// One row of a class's message table: a number and the handler that answers it.
template <class T>
struct TMessageHandler {
    Cardinal Msg;
    void (T::*Handler)(TMessage&);
};

/// Calls the handler of Message.Msg from the table; answers whether there was one.
template <class T, std::size_t N>
bool DispatchToHandler(T& target, const TMessageHandler<T> (&table)[N], TMessage& Message)
{
    for (const auto& row : table) {
        if (row.Msg == Message.Msg) {
            (target.*row.Handler)(Message);
            return true;
        }
    }
    return false;
}

}  // namespace sx
