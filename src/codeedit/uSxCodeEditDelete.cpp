// Text deletion: the selection over any number of lines, and the Backspace
// step with its moves back to an indent.
#include "codeedit/uSxCodeEdit.h"

#include "platform/Clipboard.h"

#include <algorithm>

namespace sx {

using namespace uSxCodeEdit;

namespace {

/// Where Backspace may go back to in a line: one past its leading spaces, or
/// 0 when the line does not start with a space. The last character is never
/// counted, so a line of three spaces gives 3 and a line of one character 0.
Integer IndentMark(TLineView line)
{
    std::size_t i = 0;
    while (i + 1 < line.size() && line[i] == u' ')
        ++i;
    return i == 0 ? 0 : Integer(i + 1);
}

/// True when the first ACount characters (or all, if fewer) are codes up to 32.
bool BlankHead(const String& s, Integer ACount)
{
    const auto end = s.begin() + std::min(std::ptrdiff_t(ACount), std::ptrdiff_t(s.size()));
    return std::all_of(s.begin(), end, [](Char c) { return c <= 32; });
}

}  // namespace

void TSxCodeEdit::DeleteSelected(TSxChangeType AChangeType, String& Deleted)
{
    if (GetReadOnly())
        return;
    const TPoint caretBefore = Point(FCharPos, FLinePos);
    Changed();
    Deleted.clear();
    if (!HasSelection())
        return;
    if (SelectionReversed())
        SwapSelectionEnds();
    RepairSelectionEnd();
    if (StartRanOff())
        return;
    TSxUndoItem* record =
        AChangeType != ctNone ? FUndoList->AddUndo(AChangeType, FSelStart, FSelEnd, caretBefore, String()) : nullptr;

    const String head = LinePart(FSelStart.Y, 0, FSelStart.X);
    const String tail = FSelEnd.X == MaxInt ? String() : LinePart(FSelEnd.Y, FSelEnd.X, MaxInt);
    if (FSelStart.Y == FSelEnd.Y) {
        Deleted = LinePart(FSelStart.Y, FSelStart.X, ColumnSpan(FSelStart.X, FSelEnd.X));
    } else {
        Deleted = LinePart(FSelStart.Y, FSelStart.X, MaxInt) + sLineBreak;
        const String lastPiece = LinePart(FSelEnd.Y, 0, FSelEnd.X);
        for (Integer removed = 0; removed < FSelEnd.Y - FSelStart.Y; ++removed) {
            if (removed > 0) {
                FLines->Line(FSelStart.Y).AppendTo(Deleted);
                Deleted += sLineBreak;
            }
            FLines->Delete(FSelStart.Y);
        }
        Deleted += lastPiece;
    }
    FLines->Put(FSelStart.Y, head + tail);
    FSelEnd = FSelStart;
    SetCharPos(FSelStart.X);
    SetLinePos(FSelStart.Y);
    if (record) {
        record->SetValue(Deleted);
        FUndoList->NoteStateAfter(record);
    }
    // The clipboard comes last: should it fail, the cut is complete and its
    // record can bring the text back.
    if (AChangeType == ctCut)
        Clipboard().SetAsText(Deleted);
    Invalidate();
}

void TSxCodeEdit::BackSpaceSelected()
{
    if (GetReadOnly())
        return;
    EnsureLine(FLinePos);
    const String s = FLines->Get(FLinePos);
    if (FCharPos >= 1 && FLinePos >= 1) {
        if (BackToIndent(s))
            return;
        if (Integer(s.size()) < FCharPos) {
            // Back from virtual space to the line's end; nothing is deleted.
            SetCharPos(Integer(s.size()));
            Invalidate();
            return;
        }
    }
    if (FCharPos == 0) {
        if (FLinePos > 0)
            JoinWithLineAbove(s);
        return;
    }
    RemoveCharLeftOfCaret(s);
}

bool TSxCodeEdit::BackToIndent(const String& S)
{
    if (!BlankHead(S, FCharPos))
        return false;
    for (Integer line = FLinePos; line >= 1; --line) {
        const Integer mark = IndentMark(FLines->Line(line));
        if (mark > 0 && mark < FCharPos) {
            SetCharPos(mark - 1);
            return true;
        }
    }
    return false;
}

void TSxCodeEdit::JoinWithLineAbove(const String& S)
{
    const TPoint start = Point(Integer(FLines->Line(FLinePos - 1).size()), FLinePos - 1);
    const TPoint caret = Point(0, FLinePos);
    FUndoList->AddUndo(ctDelete, start, caret, caret, sLineBreak);
    SetCharPos(start.X);
    FLines->Put(FLinePos - 1, TrimRight(FLines->Get(FLinePos - 1)) + S);
    FLines->Delete(FLinePos);
    SetLinePos(FLinePos - 1);
    Invalidate();
}

void TSxCodeEdit::RemoveCharLeftOfCaret(String S)
{
    const auto column = std::size_t(FCharPos - 1);
    const String removed = column < S.size() ? S.substr(column, 1) : String();
    const TPoint caret = Point(FCharPos, FLinePos);
    FUndoList->AddUndo(ctDelete, Point(FCharPos - 1, FLinePos), caret, caret, removed);
    if (!removed.empty())
        S.erase(column, 1);
    if (S.empty()) {
        // A line that loses its last character goes, and the caret ends at
        // the end of the line above.
        FLines->Delete(FLinePos);
        SetLinePos(FLinePos - 1);
        EnsureLine(FLinePos);
        SetCharPos(Integer(FLines->Line(FLinePos).size()));
    } else {
        FLines->Put(FLinePos, TrimRight(S));
        SetCharPos(FCharPos - 1);
    }
    Invalidate();
}

}  // namespace sx
