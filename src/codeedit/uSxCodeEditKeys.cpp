// Keyboard commands: KeyDown moves the caret, selects all and deletes with
// the Delete key; the command keys (and with coRedo the redo keys) become
// posted messages; Ctrl with an
// arrow steps word-wise; and the control claims its keys from the dialog.
#include "codeedit/uSxCodeEdit.h"

#include "platform/Keys.h"

namespace sx {

using namespace uSxCodeEdit;

namespace {

bool IsMoveKey(Word key) { return key == VK_PRIOR || key == VK_NEXT || (key >= VK_LEFT && key <= VK_DOWN); }

enum class ShiftTest { ExactlyCtrl, ExactlyShift, NotExactlyCtrl, ExactlyCtrlShift };

/// A key that KeyCommand turns into a posted message. Each letter has a
/// second code, its lower-case character, which as a key code is another
/// key: 'c' is keypad 3, 'v' F7, 'x' F9, 'z' F11, 'f' keypad 6 and 'r' F3.
struct CommandKey {
    Word Key;
    ShiftTest Test;
    Cardinal Msg;
    NativeUInt WParam;
};

constexpr CommandKey CommandKeys[] = {
    {VK_INSERT, ShiftTest::ExactlyCtrl, WM_COPY, 0},
    {VK_INSERT, ShiftTest::ExactlyShift, WM_PASTE, 0},
    {Word('C'), ShiftTest::ExactlyCtrl, WM_COPY, 0},
    {VK_NUMPAD3, ShiftTest::ExactlyCtrl, WM_COPY, 0},
    {Word('V'), ShiftTest::ExactlyCtrl, WM_PASTE, 0},
    {VK_F7, ShiftTest::ExactlyCtrl, WM_PASTE, 0},
    {Word('X'), ShiftTest::ExactlyCtrl, WM_CUT, 0},
    {VK_F9, ShiftTest::ExactlyCtrl, WM_CUT, 0},
    {Word('Z'), ShiftTest::ExactlyCtrl, WM_UNDO, 0},
    {VK_F11, ShiftTest::ExactlyCtrl, WM_UNDO, 0},
    {Word('F'), ShiftTest::ExactlyCtrl, WM_SX_SEARCHREPLACEDLG, 0},
    {VK_NUMPAD6, ShiftTest::ExactlyCtrl, WM_SX_SEARCHREPLACEDLG, 0},
    {Word('R'), ShiftTest::ExactlyCtrl, WM_SX_SEARCHREPLACEDLG, 1},
    {VK_F3, ShiftTest::ExactlyCtrl, WM_SX_SEARCHREPLACEDLG, 1},
    {VK_F3, ShiftTest::NotExactlyCtrl, WM_SX_SEARCHREPLACE, 0},
};

/// With coRedo, looked up before CommandKeys; no key of these is in that table.
constexpr CommandKey RedoKeys[] = {
    {Word('Y'), ShiftTest::ExactlyCtrl, WM_SX_REDO, 0},
    {Word('Z'), ShiftTest::ExactlyCtrlShift, WM_SX_REDO, 0},
};

bool Passes(ShiftTest test, TShiftState shift)
{
    const TShiftState keys = ModifierKeysOf(shift);
    const bool exactlyCtrl = keys == TShiftState{TShiftStateItem::ssCtrl};
    switch (test) {
    case ShiftTest::ExactlyCtrl: return exactlyCtrl;
    case ShiftTest::ExactlyShift: return keys == TShiftState{TShiftStateItem::ssShift};
    case ShiftTest::NotExactlyCtrl: return !exactlyCtrl;
    case ShiftTest::ExactlyCtrlShift: return keys == TShiftState{TShiftStateItem::ssCtrl, TShiftStateItem::ssShift};
    }
    return false;
}

/// The command of Key with Shift in ATable, or null.
template <std::size_t N>
const CommandKey* FindCommand(const CommandKey (&ATable)[N], Word Key, TShiftState Shift)
{
    for (const CommandKey& command : ATable)
        if (command.Key == Key && Passes(command.Test, Shift))
            return &command;
    return nullptr;
}

/// Word characters of the word step: digits, ASCII letters, and every
/// character above 255.
bool IsWordChar(Char c)
{
    return c > 255 || (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

}  // namespace

void TSxCodeEdit::KeyDown(Word& Key, TShiftState Shift)
{
    KeyCommand(Key, Shift);
    if (FoldKey(Key, Shift))
        Key = 0;
    if (Key == VK_OEM_6 && HasExtOption(TSxCodeExtOption::coBracketMatch) &&
        ModifierKeysOf(Shift) == TShiftState{TShiftStateItem::ssCtrl}) {
        GotoMatchingBracket();
        Key = 0;
    }
    if (IsMoveKey(Key))
        SetSelection(false);
    if ((Key == 0x41 || Key == 0x61) && Shift.Contains(TShiftStateItem::ssCtrl)) {
        SelectAll();
        Key = 0;
    }
    TCustomControl::KeyDown(Key, Shift);
    ActOnKey(Key, Shift);
    if (IsMoveKey(Key))
        SetSelection(false);
}

void TSxCodeEdit::SelectAll()
{
    SetLinePos(FLines->Count() - 1);
    SetCharPos(FLines->Count() > 0 ? Integer(FLines->Line(FLinePos).size()) : 0);
    FSelEnd = Point(0, 0);
    FSelStart = Point(FCharPos, FLinePos);
    Invalidate();
}

void TSxCodeEdit::ActOnKey(Word Key, TShiftState Shift)
{
    const bool ctrl = Shift.Contains(TShiftStateItem::ssCtrl);
    switch (Key) {
    case VK_PRIOR: SetLinePos(ShownLineFrom(FLinePos, -FVScrollBar->PageSize())); break;
    case VK_NEXT: SetLinePos(ShownLineFrom(FLinePos, FVScrollBar->PageSize())); break;
    case VK_END:
        if (Shift.Contains(TShiftStateItem::ssShift))
            SetSelection(false);
        if (ctrl)
            SetLinePos(FLines->Count() - 1);
        if (FLinePos < FLines->Count())
            SetCharPos(Integer(FLines->Line(FLinePos).size()));
        break;
    case VK_HOME:
        SetCharPos(0);
        if (ctrl)
            SetLinePos(0);
        break;
    case VK_LEFT:
        if (ctrl)
            GotoNextChar(false);
        else if (FCharPos > 0)
            SetCharPos(FCharPos - 1);
        break;
    case VK_UP:
        if (FLinePos > 0)
            SetLinePos(ShownLineFrom(FLinePos, -1));
        break;
    case VK_RIGHT:
        if (ctrl)
            GotoNextChar(true);
        else if (FCharPos < ColumnRange())
            SetCharPos(FCharPos + 1);
        break;
    case VK_DOWN:
        if (FLinePos < FLines->Count())
            SetLinePos(ShownLineFrom(FLinePos, 1));
        break;
    case VK_DELETE: DeleteKey(Shift); break;
    default: break;
    }
}

void TSxCodeEdit::DeleteKey(TShiftState Shift)
{
    if (FSelEnd.X == -1 || FSelEnd == FSelStart) {
        // No selection: one is built over the character right of the caret,
        // or over the line break when the caret stands at or behind the end.
        FSelStart = Point(FCharPos, FLinePos);
        FSelEnd = Point(FCharPos + 1, FLinePos);
        if (FLinePos > FLines->Count() - 1)
            return;
        if (Integer(FLines->Line(FLinePos).size()) < FSelEnd.X)
            FSelEnd = Point(0, FLinePos + 1);
    }
    String deleted;
    DeleteSelected(Shift.Contains(TShiftStateItem::ssShift) ? ctCut : ctDelete, deleted);
}

void TSxCodeEdit::KeyCommand(Word& Key, TShiftState Shift)
{
    const CommandKey* command =
        HasExtOption(TSxCodeExtOption::coRedo) ? FindCommand(RedoKeys, Key, Shift) : nullptr;
    if (!command)
        command = FindCommand(CommandKeys, Key, Shift);
    if (command) {
        PostMessage(this, command->Msg, command->WParam, 0);
        Key = 0;
    }
}

void TSxCodeEdit::GotoNextChar(bool AForward)
{
    Integer lineIdx = FLinePos;
    if (lineIdx < 0 || lineIdx >= FLines->Count())
        return;
    String s = FLines->Get(lineIdx);
    Integer idx = FCharPos;  // 1-based: the character left of the caret
    const auto length = [](const auto& text) { return Integer(text.size()); };

    // The neighbouring line in the walking direction; at the first or last
    // line a string of one character 0, the end of input.
    const auto nextLine = [&]() -> String {
        if (AForward ? lineIdx >= FLines->Count() - 1 : lineIdx <= 0)
            return String(1, Char(0));
        lineIdx += AForward ? 1 : -1;
        return FLines->Get(lineIdx);
    };
    // The next character of the walk; a line end reads as one CR. Going
    // backward, the walk crosses into the line above only from column 0.
    const auto nextChar = [&]() -> Char {
        if (AForward) {
            if (++idx > length(s)) {
                s = nextLine();
                idx = 0;
                return 13;
            }
        } else if (--idx < 1) {
            if (FCharPos > 0) {
                idx = 0;
                return 0;
            }
            s = nextLine();
            idx = length(s) + 1;
            return 13;
        }
        return idx <= length(s) ? s[std::size_t(idx - 1)] : Char(0);
    };

    if (AForward) {
        const Integer fromLine = lineIdx, fromCol = idx;
        Char c = nextChar();
        while (IsWordChar(c))
            c = nextChar();
        c = nextChar();
        while (c != 13 && !IsWordChar(c))
            c = nextChar();
        if (c == 13 && lineIdx == FLines->Count() - 1)
            idx = length(FLines->Line(lineIdx)) + 1;
        if (fromLine < lineIdx && fromCol < length(FLines->Line(fromLine))) {
            lineIdx = fromLine;
            idx = length(FLines->Line(fromLine)) + 1;
        }
    } else {
        const Integer fromLine = lineIdx;
        Char c = nextChar();
        while (!IsWordChar(c) && c != 0)
            c = nextChar();
        Integer prevIdx, prevLine;
        do {
            prevIdx = idx;
            prevLine = lineIdx;
            c = nextChar();
        } while (IsWordChar(c) && c != 0);
        idx = prevIdx;
        lineIdx = prevLine;
        if (fromLine > lineIdx && idx < length(FLines->Line(lineIdx)))
            idx = length(FLines->Line(lineIdx)) + 1;
    }
    SetCharPos(idx == 0 ? 0 : idx - 1);
    SetLinePos(lineIdx);
}

void TSxCodeEdit::WMGetDlgCode(TMessage& Message)
{
    TCustomControl::DefaultHandler(Message);
    Message.Result = DLGC_WANTCHARS | DLGC_WANTARROWS | DLGC_WANTTAB;
}

void TSxCodeEdit::CMWantSpecialKey(TMessage& Message)
{
    switch (LoWord(Message.WParam)) {
    case VK_UP:
    case VK_DOWN:
    case VK_RETURN:
    case VK_LEFT:
    case VK_RIGHT: Message.Result = 1; break;
    default: break;
    }
}

}  // namespace sx
