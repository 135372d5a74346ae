// The mouse: a press puts the caret, a drag selects, a double click selects
// a word, and a right press opens the popup menu. Pixels map to positions
// through the fixed grid of one character cell by one line.
#include "codeedit/uSxCodeEdit.h"

namespace sx {

using namespace uSxCodeEdit;

namespace {

/// Word characters of a double click: digits, ASCII letters and the underscore.
bool IsSelectWordChar(Char c)
{
    return c == u'_' || (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

}  // namespace

void TSxCodeEdit::MoveCaretToPoint(Integer X, Integer Y)
{
    if (GetCharWidth() > 0)
        SetCharPos(std::max(FHScrollBar->Position() + (X - RealGuttorWidth()) / GetCharWidth(), 0));
    if (GetLineWidth() > 0)
        SetLinePos(LineOfRow(FVScrollBar->Position() + Y / GetLineWidth()));
}

void TSxCodeEdit::MouseDown(TMouseButton Button, TShiftState Shift, Integer X, Integer Y)
{
    TCustomControl::MouseDown(Button, Shift, X, Y);
    SetFocus();
    if (Button == TMouseButton::mbLeft && ClickFoldButton(X, Y))
        return;
    if (Button == TMouseButton::mbLeft) {
        InMouseDown = true;
        inMouseMove = false;
        FInMouseSetSelection = false;
        // A press on a line number puts the caret at the start of its line,
        // as a press left of the text does; a drag from there selects lines.
        FSelectingLines = OnLineNumbers(X);
        if (FSelectingLines)
            FLineSelectAnchor = LineAtPixel(Y);
        MoveCaretToPoint(X, Y);
    }
    if (Button == TMouseButton::mbRight && FPopupMenu) {
        const TPoint screen = ClientToScreen(Point(X, Y));
        FPopupMenu->SetPopupComponent(this);
        FPopupMenu->Popup(screen.X, screen.Y);
    }
}

void TSxCodeEdit::MouseMove(TShiftState Shift, Integer X, Integer Y)
{
    TCustomControl::MouseMove(Shift, X, Y);
    if (!InMouseDown)
        return;
    if (FSelectingLines) {
        SelectWholeLines(LineAtPixel(Y));
        return;
    }
    // The first move of a drag sets the anchor where it lands; from then on
    // the anchor stands still and the moving end follows the mouse.
    inMouseMove = true;
    MoveCaretToPoint(X, Y);
    SetSelection(false);
}

void TSxCodeEdit::MouseUp(TMouseButton Button, TShiftState Shift, Integer X, Integer Y)
{
    TCustomControl::MouseUp(Button, Shift, X, Y);
    InMouseDown = false;
    inMouseMove = false;
    FInMouseSetSelection = false;
    FSelectingLines = false;
}

void TSxCodeEdit::DblClick()
{
    TCustomControl::DblClick();
    PostMessage(this, WM_SX_SELECTWORD, 0, 0);
}

void TSxCodeEdit::WMSselectWord(TMessage&)
{
    if (FLines->Count() <= FLinePos)
        return;
    const TLineView s = FLines->Line(FLinePos);
    const Integer length = Integer(s.size());
    if (FCharPos >= length)
        return;
    Integer wordEnd = FCharPos;
    while (wordEnd < length && IsSelectWordChar(s[std::size_t(wordEnd)]))
        ++wordEnd;
    Integer wordStart = FCharPos;
    while (wordStart > 0 && IsSelectWordChar(s[std::size_t(wordStart - 1)]))
        --wordStart;
    SetCharPos(wordEnd);
    FSelEnd.X = wordStart;
    FSelStart.X = wordEnd;
    Invalidate();
}

void TSxCodeEdit::CalcCursor(Integer& X, Integer& Y)
{
    // Line numbers widen the gutter; without them the gutter's set width counts, shown or not.
    const Integer gutter = HasExtOption(TSxCodeExtOption::coLineNumbers) ? RealGuttorWidth() : FGuttorWidth;
    X = GetCharWidth() >= 1 ? FHScrollBar->Position() + (X - gutter) / GetCharWidth() : -1;
    Y = GetLineWidth() >= 1 ? FVScrollBar->Position() + Y / GetLineWidth() : -1;
}

}  // namespace sx
