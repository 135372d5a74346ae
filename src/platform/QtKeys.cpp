// Qt's key numbers mapped onto the desktop's virtual key codes.
#include "platform/QtKeys.h"

#include "platform/Keys.h"
#include "platform/QtConvert.h"

#include <QKeyEvent>

#include <array>
#include <utility>

namespace sx {

namespace {

/// Keys whose code does not follow from their Qt number by a rule.
constexpr std::array<std::pair<int, Word>, 39> KeyTable{{
    {Qt::Key_Backspace, VK_BACK},   {Qt::Key_Tab, VK_TAB},          {Qt::Key_Backtab, VK_TAB},
    {Qt::Key_Return, VK_RETURN},    {Qt::Key_Enter, VK_RETURN},     {Qt::Key_Shift, VK_SHIFT},
    {Qt::Key_Control, VK_CONTROL},  {Qt::Key_Alt, VK_MENU},         {Qt::Key_Pause, VK_PAUSE},
    {Qt::Key_CapsLock, VK_CAPITAL}, {Qt::Key_Escape, VK_ESCAPE},    {Qt::Key_Space, VK_SPACE},
    {Qt::Key_PageUp, VK_PRIOR},     {Qt::Key_PageDown, VK_NEXT},    {Qt::Key_End, VK_END},
    {Qt::Key_Home, VK_HOME},        {Qt::Key_Left, VK_LEFT},        {Qt::Key_Up, VK_UP},
    {Qt::Key_Right, VK_RIGHT},      {Qt::Key_Down, VK_DOWN},        {Qt::Key_Insert, VK_INSERT},
    {Qt::Key_Delete, VK_DELETE},    {Qt::Key_Menu, VK_APPS},        {Qt::Key_NumLock, VK_NUMLOCK},
    {Qt::Key_ScrollLock, VK_SCROLL},
    // Punctuation of a US keyboard, with its shifted forms.
    {Qt::Key_Semicolon, 0xBA},      {Qt::Key_Colon, 0xBA},          {Qt::Key_Equal, 0xBB},
    {Qt::Key_Comma, 0xBC},          {Qt::Key_Minus, 0xBD},          {Qt::Key_Period, 0xBE},
    {Qt::Key_Slash, 0xBF},          {Qt::Key_QuoteLeft, 0xC0},      {Qt::Key_BracketLeft, 0xDB},
    {Qt::Key_Backslash, 0xDC},      {Qt::Key_BracketRight, 0xDD},   {Qt::Key_Apostrophe, 0xDE},
    {Qt::Key_BraceLeft, 0xDB},      {Qt::Key_BraceRight, 0xDD},
}};

/// The digit row's shifted characters of a US keyboard, in the order 0 to 9.
constexpr std::array<int, 10> ShiftedDigits{Qt::Key_ParenRight, Qt::Key_Exclam,   Qt::Key_At,
                                            Qt::Key_NumberSign, Qt::Key_Dollar,   Qt::Key_Percent,
                                            Qt::Key_AsciiCircum, Qt::Key_Ampersand, Qt::Key_Asterisk,
                                            Qt::Key_ParenLeft};

Word KeypadKey(int key)
{
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return Word(VK_NUMPAD0 + (key - Qt::Key_0));
    switch (key) {
    case Qt::Key_Asterisk: return VK_MULTIPLY;
    case Qt::Key_Plus: return VK_ADD;
    case Qt::Key_Minus: return VK_SUBTRACT;
    case Qt::Key_Period:
    case Qt::Key_Comma: return VK_DECIMAL;
    case Qt::Key_Slash: return VK_DIVIDE;
    default: return 0;
    }
}

}  // namespace

Word VirtualKeyOf(const QKeyEvent& event)
{
    const int key = event.key();
    if (event.modifiers() & Qt::KeypadModifier) {
        if (const Word code = KeypadKey(key))
            return code;
    }
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
        return Word(key);
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return Word(VK_F1 + (key - Qt::Key_F1));
    if (key == Qt::Key_Plus)
        return 0xBB;
    for (std::size_t digit = 0; digit < ShiftedDigits.size(); ++digit)
        if (ShiftedDigits[digit] == key)
            return Word(Qt::Key_0 + int(digit));
    for (const auto& [qtKey, code] : KeyTable)
        if (qtKey == key)
            return code;
    return 0;
}

String TypedCharsOf(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return String(1, Char(13));
    case Qt::Key_Backspace: return String(1, Char(8));
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return String(1, Char(9));
    case Qt::Key_Escape: return String(1, Char(27));
    default: break;
    }
    const Qt::KeyboardModifiers mods = event.modifiers();
    const bool ctrl = mods & Qt::ControlModifier;
    const bool alt = mods & Qt::AltModifier;
    if (alt && !ctrl)
        return String();  // Alt with a key chooses from menus and types nothing
    if (ctrl && !alt) {
        const int key = event.key();
        return key >= Qt::Key_A && key <= Qt::Key_Z ? String(1, Char(key - Qt::Key_A + 1)) : String();
    }
    String typed;
    for (const Char c : FromQString(event.text()))
        if (c >= 32 && c != 127)  // control characters come only from the keys above
            typed += c;
    return typed;
}

}  // namespace sx
