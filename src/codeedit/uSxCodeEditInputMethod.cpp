// Input methods: text that an input method commits goes the way of typed
// characters; the text it is still composing shows at the caret and enters
// neither the lines nor the undo list; and the answers to its questions that
// open its candidate window at the caret.
#include "codeedit/uSxCodeEdit.h"

#include "platform/Caret.h"

#include <algorithm>
#include <cstdint>

namespace sx {

using namespace uSxCodeEdit;

namespace {


Integer TextWidthIn(const TFont& font, const String& text)
{
    if (text.empty())
        return 0;
    TCanvas measure;
    measure.Font().Assign(font);
    return measure.TextWidth(text);
}

}  // namespace

void TSxCodeEdit::ImeComposition(const TImeComposition& Composition)
{
    // The composition shown so far goes first: the events and repaints of
    // the commit see the text without it.
    const bool wasComposing = !FImePreEdit.empty();
    FImePreEdit.clear();
    FImeCursor = 0;
    ImeReplace(Composition.ReplaceStart, Composition.ReplaceLength);
    TCustomControl::ImeComposition(Composition);
    FImePreEdit = Composition.PreEdit;
    FImeCursor = std::clamp(Composition.PreEditCursor, 0, Integer(FImePreEdit.size()));
    if (wasComposing || !FImePreEdit.empty()) {
        ResetCaret();
        PlaceCaretInComposition();
        Invalidate();
    }
}

void TSxCodeEdit::ImeReplace(Integer AStart, Integer ALength)
{
    if ((AStart == 0 && ALength <= 0) || GetReadOnly())
        return;
    const Integer length = LineLength(FLinePos);
    const std::int64_t start = std::int64_t(ImeColumn(FCharPos)) + AStart;
    const auto from = Integer(std::clamp<std::int64_t>(start, 0, length));
    const auto to = Integer(std::clamp<std::int64_t>(start + std::max(ALength, 0), from, length));
    if (to == from) {
        // Nothing to replace: the commit goes in where the range starts.
        if (AStart != 0)
            SetCharPos(from);
        return;
    }
    // The range becomes the selection, its moving end behind, and goes as
    // a deletion does: one record, with the caret where it stood before.
    FSelEnd = Point(from, FLinePos);
    FSelStart = Point(to, FLinePos);
    String deleted;
    DeleteSelected(ctDelete, deleted);
}

Integer TSxCodeEdit::ImeColumn(Integer AColumn) const
{
    return std::clamp(AColumn, 0, LineLength(FLinePos));
}

bool TSxCodeEdit::CaretCell(TPoint& ACell)
{
    const TSxTextArea area = TextArea();
    ACell = Point(ClampedPixel(area.CellX(FCharPos)), ClampedPixel(area.CellY(FLinePos)));
    return area.Shows(FCharPos, FLinePos);
}

TRect TSxCodeEdit::ImeCaretRect()
{
    TPoint cell;
    CaretCell(cell);
    const Integer x =
        cell.X + TSxTextArea::InnerMargin + TextWidthIn(Font(), FImePreEdit.substr(0, std::size_t(FImeCursor)));
    return Rect(x, cell.Y, x + TSxTextArea::CaretWidth, cell.Y + GetLineWidth());
}

void TSxCodeEdit::PlaceCaretInComposition()
{
    if (FImePreEdit.empty() || GetCaretInfo().Window != this)
        return;
    const TRect r = ImeCaretRect();
    SetCaretPos(r.Left, r.Top);
}

bool TSxCodeEdit::ImeRequest(TImeQuery Query, TImeAnswer& Answer)
{
    switch (Query) {
    case TImeQuery::iqEnabled:
        Answer.Flag = CanFocus();
        return true;
    case TImeQuery::iqCursorRect:
        Answer.Rect = ImeCaretRect();
        return true;
    case TImeQuery::iqFont:
        Answer.Font = &Font();
        return true;
    case TImeQuery::iqSurroundingText:
        if (FLinePos < FLines->Count())
            Answer.Text = FLines->Get(FLinePos);
        return true;
    case TImeQuery::iqCursorPos:
        Answer.Number = ImeColumn(FCharPos);
        return true;
    case TImeQuery::iqAnchorPos:
        // The anchor counts only on the caret's line: the surrounding text is that line.
        Answer.Number = ImeColumn(HasSelection() && FSelEnd.Y == FLinePos ? FSelEnd.X : FCharPos);
        return true;
    case TImeQuery::iqSelection:
        GetSelected(Answer.Text);
        return true;
    case TImeQuery::iqHints:
        // Code: many lines, no capitals of the input method's own, no guessing of words.
        Answer.Hints = TImeHints{TImeHint::ihMultiLine, TImeHint::ihNoAutoUppercase, TImeHint::ihNoPredictiveText};
        return true;
    }
    return false;
}

}  // namespace sx
