// Text insertion: keyboard input through AddTxt (trimming, auto-indent on
// Enter), any text through InsertText (split at line breaks, nothing
// trimmed), and the typed characters of WM_CHAR.
#include "codeedit/uSxCodeEdit.h"

#include <algorithm>
#include <utility>

namespace sx {

using namespace uSxCodeEdit;

namespace {

bool IsLineBreakChar(Char c) { return c == 13 || c == 10; }

}  // namespace

void TSxCodeEdit::EnsureLine(Integer ALine)
{
    while (FLines->Count() <= ALine)
        FLines->Add(String());
}

void TSxCodeEdit::CheckLineRoom(Integer ALine, Integer AColumn, std::size_t AAdded) const
{
    const std::size_t length = ALine >= 0 && ALine < FLines->Count() ? FLines->Line(ALine).size() : 0;
    if (std::max(length, std::size_t(std::max(AColumn, 0))) + AAdded > std::size_t(MaxLineLength))
        throw EOutOfMemory(u"Out of memory: a line can hold at most " + IntToStr(MaxLineLength) + u" characters");
}

void TSxCodeEdit::AddTxt(const String& aTxt)
{
    if (GetReadOnly())
        return;
    CheckLineRoom(FLinePos, FCharPos, aTxt.size());
    const TPoint start = Point(FCharPos, FLinePos);
    Changed();
    EnsureLine(FLinePos);
    String s = FLines->Get(FLinePos);
    if (Integer(s.size()) < FCharPos)
        s.resize(std::size_t(FCharPos), u' ');
    if (aTxt != u"\r") {
        s.insert(std::size_t(FCharPos), aTxt);
        SetCharPos(FCharPos + Integer(aTxt.size()));
        FLines->Put(FLinePos, TrimRight(s));
    } else {
        BreakLineAtCaret(s);
    }
    FUndoList->AddUndo(ctInsert, start, Point(FCharPos, FLinePos), start, String());
    Invalidate();
}

void TSxCodeEdit::BreakLineAtCaret(const String& S)
{
    const auto column = std::size_t(FCharPos);
    FLines->Put(FLinePos, TrimRight(S.substr(0, column)));
    FLines->Insert(FLinePos + 1, TrimRight(S.substr(column)));
    SetLinePos(FLinePos + 1);
    SetCharPos(0);
    IndentNewLine();
}

void TSxCodeEdit::IndentNewLine()
{
    // The model is the nearest line above that holds more than spaces; only
    // spaces count as indent, so a tab at the head ends the count.
    for (Integer line = FLinePos - 1; line >= 0; --line) {
        const std::size_t indent = FLines->Line(line).FindFirstNot(u' ');
        if (indent == TLineView::npos)
            continue;
        FLines->Put(FLinePos, String(indent, u' ') + FLines->Get(FLinePos));
        SetCharPos(Integer(indent));
        return;
    }
}

void TSxCodeEdit::InsertText(TSxChangeType AChangeType, const String& aTxt)
{
    if (GetReadOnly())
        return;
    CheckLineRoom(FLinePos, FCharPos, aTxt.size());
    const TPoint start = Point(FCharPos, FLinePos);
    Changed();
    FSelStart = start;
    FSelEnd = start;
    EnsureLine(FSelStart.Y);
    if (const String line = FLines->Get(FSelStart.Y); Integer(line.size()) < FSelStart.X)
        FLines->Put(FSelStart.Y, line + String(std::size_t(FSelStart.X) - line.size(), u' '));

    // Any two neighbouring break characters make one break.
    std::size_t segStart = 0;
    std::size_t idx = 0;
    for (; idx < aTxt.size(); ++idx) {
        if (!IsLineBreakChar(aTxt[idx]))
            continue;
        const std::size_t segEnd = idx;
        if (idx + 1 < aTxt.size() && IsLineBreakChar(aTxt[idx + 1]))
            ++idx;
        SplitLineAtSelStart();
        FLines->Put(FSelStart.Y - 1, FLines->Get(FSelStart.Y - 1) + aTxt.substr(segStart, segEnd - segStart));
        segStart = idx + 1;
    }
    if (segStart < idx) {
        const String seg = aTxt.substr(segStart);
        EnsureLine(FSelStart.Y);
        String line = FLines->Get(FSelStart.Y);
        line.insert(std::min(std::size_t(FSelStart.X), line.size()), seg);
        FLines->Put(FSelStart.Y, line);
        SetCharPos(FCharPos + Integer(seg.size()));
    }
    FUndoList->AddUndo(AChangeType, start, Point(FCharPos, FLinePos), start, String());
    Invalidate();
}

void TSxCodeEdit::SplitLineAtSelStart()
{
    EnsureLine(FSelStart.Y);
    const String line = FLines->Get(FSelStart.Y);
    const std::size_t head = std::min(std::size_t(FSelStart.X), line.size());
    FLines->Put(FSelStart.Y, line.substr(0, head));
    FLines->Insert(FSelStart.Y + 1, line.substr(head));
    FSelStart = Point(0, FSelStart.Y + 1);
    FSelEnd = FSelStart;
    SetLinePos(FSelStart.Y);
    SetCharPos(0);
}

void TSxCodeEdit::AddCode(const String& aTxt)
{
    SetLinePos(FLines->Count());
    SetCharPos(0);
    InsertText(ctPaste, aTxt);
}

void TSxCodeEdit::InsertCode(Integer ALinePos, Integer ACharPos, const String& ATxt)
{
    SetLinePos(ALinePos);
    SetCharPos(ACharPos);
    InsertText(ctPaste, ATxt);
}

void TSxCodeEdit::WMChar(TMessage& Message)
{
    TCustomControl::WMChar(Message);
    const Char c = Char(LoWord(Message.WParam));
    String deleted;
    if (IsHighSurrogate(c)) {
        // Held back so that the two halves go in as one character, with one
        // undo record; the low half follows in the next message.
        FPendingHighSurrogate = c;
        return;
    }
    const Char high = std::exchange(FPendingHighSurrogate, Char(0));
    if (c != 8 && c != 9 && c != 13 && c < 32)
        return;
    // The deletion of a selection is an undo step of its own, the run begins behind it.
    if (c != 9)
        DeleteSelected(ctDelete, deleted);
    {
        const TSxUndoList::TStepScope step(*FUndoList, HasExtOption(TSxCodeExtOption::coGroupUndo),
                                           c == 8 ? urBackspace : c == 13 ? urNone : urTyping);
        if (c == 8)
            BackSpaceSelected();
        else if (c == 9)
            AddTxt(String(std::size_t(std::max(FTabIndentSize, 0)), u' '));
        else
            AddTxt(high && IsLowSurrogate(c) ? String{high, c} : String(1, c));
    }
    SetSelection(true);
}

}  // namespace sx
