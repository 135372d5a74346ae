// Screen reader support of the code edit control: offsets over the control's
// lines, units of text, the control's operations a screen reader calls, and
// the reports of changes, gathered to one of each kind per turn of the event
// loop and built from the lines that changed, never from the whole text.
#include "codeedit/uSxCodeEditAccessible.h"

#include "codeedit/uSxCodeEdit.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace sx {

namespace {

/// Lines that one batch of changes may skip between two changed lines and
/// still report them in one event; beyond that the first part goes out alone,
/// so that a batch never copies more unchanged text than this.
constexpr Integer MaxGapLines = 16;

const String LineBreak = u"\r\n";

void AppendLine(const TStringList& lines, Integer index, String& out)
{
    lines.Line(index).AppendTo(out);
    out += LineBreak;
}

// ---------------------------------------------------------------------------
// Units of text inside one line, as columns [First, Last).

struct TColumns {
    std::size_t First;
    std::size_t Last;
};

enum class TCharClass { Blank, Word, Other };

/// Words are runs of letters, digits and the underscore, Latin-1 letters and
/// every character above 255 included; blanks are runs of spaces and tabs;
/// any other character is a unit of its own.
TCharClass ClassOf(Char c)
{
    if (c == u' ' || c == u'\t' || c == 0xA0 || c == 0x3000)
        return TCharClass::Blank;
    const bool asciiWord = c == u'_' || (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
    if (asciiWord || (c >= 0xC0 && c != 0xD7 && c != 0xF7))
        return TCharClass::Word;
    return TCharClass::Other;
}

/// The character at the column; the two halves of a surrogate pair stay together.
TColumns CharacterAt(TLineView line, std::size_t column)
{
    if (IsLowSurrogate(line[column]) && column > 0 && IsHighSurrogate(line[column - 1]))
        return {column - 1, column + 1};
    if (IsHighSurrogate(line[column]) && column + 1 < line.size() && IsLowSurrogate(line[column + 1]))
        return {column, column + 2};
    return {column, column + 1};
}

TColumns WordAt(TLineView line, std::size_t column)
{
    const TCharClass cls = ClassOf(line[column]);
    if (cls == TCharClass::Other)
        return CharacterAt(line, column);
    TColumns word{column, column + 1};
    while (word.First > 0 && ClassOf(line[word.First - 1]) == cls)
        --word.First;
    while (word.Last < line.size() && ClassOf(line[word.Last]) == cls)
        ++word.Last;
    return word;
}

/// The length of the common head of two strings, and of their common tail
/// behind that head.
std::pair<std::size_t, std::size_t> CommonEnds(const String& a, const String& b)
{
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t head = 0;
    while (head < shorter && a[head] == b[head])
        ++head;
    std::size_t tail = 0;
    while (tail < shorter - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail])
        ++tail;
    return {head, tail};
}


/// Moves the bar the least so that first and, where it fits, last show
/// among the room cells a page holds.
void ScrollToShow(TScrollBar& bar, Integer first, Integer last, Integer room)
{
    room = std::max(room, 1);
    Integer position = bar.Position();
    if (std::int64_t(last) >= std::int64_t(position) + room)
        position = last - room + 1;
    if (first < position)
        position = first;
    bar.SetPosition(position);
}

}  // namespace

TSxAccessibleTextModel* TSxAccessibleTextModel::Of(TSxCodeEdit& edit)
{
    if (!edit.FAccessibilityAllowed)
        return nullptr;
    if (!edit.FAccessibility)
        edit.FAccessibility = std::make_unique<TSxAccessibleTextModel>(edit);
    return edit.FAccessibility.get();
}

TAccessibleText* TSxCodeEdit::AccessibleText() { return TSxAccessibleTextModel::Of(*this); }

void TSxCodeEdit::NotifyAccessibility() { FAccessibility->StateChanged(); }

TSxAccessibleTextModel::TSxAccessibleTextModel(TSxCodeEdit& edit)
    : FControl(edit), FLines(*edit.FLines)
{
    FLines.SetListener(this);
    FReportedCaret = CaretOffset();
    FReportedSelection = Selection();
    FReportedReadOnly = FControl.GetReadOnly();
}

TSxAccessibleTextModel::~TSxAccessibleTextModel()
{
    FLines.SetListener(nullptr);
    CancelAccessibilityReport(this);
}

TTextOffset TSxAccessibleTextModel::CharacterCount()
{
    if (FCharacterCount < 0) {
        FCharacterCount = 0;
        for (Integer line = 0; line < FLines.Count(); ++line)
            FCharacterCount += LineSpan(line);
    }
    return FCharacterCount;
}

TTextOffset TSxAccessibleTextModel::LineStart(Integer line)
{
    const Integer count = FLines.Count();
    if (line >= count)
        return CharacterCount();
    line = std::max(line, 0);
    CheckAnchor();
    if (line < FAnchorLine - line)
        MoveAnchorHome();
    while (FAnchorLine < line)
        FAnchorStart += LineSpan(FAnchorLine++);
    while (FAnchorLine > line)
        FAnchorStart -= LineSpan(--FAnchorLine);
    return FAnchorStart;
}

Integer TSxAccessibleTextModel::LineAt(TTextOffset offset)
{
    const Integer count = FLines.Count();
    offset = std::max<TTextOffset>(offset, 0);
    CheckAnchor();
    if (offset < FAnchorStart - offset)
        MoveAnchorHome();
    while (FAnchorLine > 0 && offset < FAnchorStart)
        FAnchorStart -= LineSpan(--FAnchorLine);
    while (FAnchorLine < count && offset >= FAnchorStart + LineSpan(FAnchorLine))
        FAnchorStart += LineSpan(FAnchorLine++);
    return FAnchorLine;
}

TTextOffset TSxAccessibleTextModel::OffsetOf(TPoint position)
{
    if (position.Y < 0 || FLines.Count() == 0)
        return 0;
    if (position.Y >= FLines.Count())
        return CharacterCount();
    const auto length = TTextOffset(FLines.Line(position.Y).size());
    return LineStart(position.Y) + std::clamp<TTextOffset>(position.X, 0, length);
}

TPoint TSxAccessibleTextModel::PositionOf(TTextOffset offset)
{
    const Integer count = FLines.Count();
    if (count == 0)
        return Point(0, 0);
    const Integer line = LineAt(offset);
    if (line >= count)
        return Point(Integer(FLines.Line(count - 1).size()), count - 1);
    const auto length = TTextOffset(FLines.Line(line).size());
    return Point(Integer(std::clamp<TTextOffset>(offset - LineStart(line), 0, length)), line);
}

TTextOffset TSxAccessibleTextModel::CaretOffset() { return OffsetOf(Point(FControl.CharPos(), FControl.LinePos())); }

TTextRange TSxAccessibleTextModel::Selection()
{
    if (!FControl.HasSelection())
        return {};
    TPoint first = FControl.SelStart();
    TPoint last = FControl.SelEnd();
    if (first.Y > last.Y || (first.Y == last.Y && first.X > last.X))
        std::swap(first, last);
    const TTextRange range{OffsetOf(first), OffsetOf(last)};
    return range.Start < range.End ? range : TTextRange{};
}

String TSxAccessibleTextModel::TextBetween(TTextOffset from, TTextOffset to)
{
    String out;
    from = std::max<TTextOffset>(from, 0);
    const Integer count = FLines.Count();
    Integer line = LineAt(from);
    TTextOffset start = line < count ? LineStart(line) : 0;
    for (; line < count && start < to; ++line) {
        const TLineView text = FLines.Line(line);
        const auto length = TTextOffset(text.size());
        const TTextOffset first = std::max(from, start) - start;
        const TTextOffset last = std::min(to, start + length + LineBreakLength) - start;
        if (first < length)
            out += text.Substr(std::size_t(first), std::size_t(std::min(last, length) - first));
        for (TTextOffset at = std::max(first, length); at < last; ++at)
            out += LineBreak[std::size_t(at - length)];
        start += length + LineBreakLength;
    }
    return out;
}

bool TSxAccessibleTextModel::UnitAt(TTextOffset offset, TTextUnit unit, TTextRange& range)
{
    if (unit == TTextUnit::tuWholeText) {
        range = {0, CharacterCount()};
        return true;
    }
    const Integer line = LineAt(offset);
    if (offset < 0 || line >= FLines.Count())
        return false;
    const TTextOffset start = LineStart(line);
    const TLineView text = FLines.Line(line);
    const auto column = std::size_t(offset - start);
    const bool inText = column < text.size();
    if (unit == TTextUnit::tuCharacter || unit == TTextUnit::tuWord) {
        if (!inText) {
            range = {start + TTextOffset(text.size()), start + TTextOffset(text.size()) + LineBreakLength};
            return true;
        }
        const TColumns cols = unit == TTextUnit::tuCharacter ? CharacterAt(text, column) : WordAt(text, column);
        range = {start + TTextOffset(cols.First), start + TTextOffset(cols.Last)};
        return true;
    }
    range = {start, start + TTextOffset(text.size()) + LineBreakLength};
    return true;
}

/// The cell of the character on the screen, as the caret stands in front of
/// it: columns of the control's character width, rows of its line height.
TRect TSxAccessibleTextModel::CharacterRect(TTextOffset offset)
{
    const TPoint at = PositionOf(offset);
    const TSxTextArea area = FControl.TextArea();
    const std::int64_t x = area.TextX(at.X);
    const std::int64_t y = area.CellY(at.Y);
    return Rect(ClampedPixel(x), ClampedPixel(y), ClampedPixel(x + area.CharWidth),
                ClampedPixel(y + area.LineHeight));
}

TTextOffset TSxAccessibleTextModel::OffsetAtPoint(TPoint point)
{
    const TSxTextArea area = FControl.TextArea();
    if (area.CharWidth <= 0 || area.LineHeight <= 0)
        return -1;
    const TPoint at = area.PositionAt(point);
    if (at.Y >= FLines.Count())
        return -1;
    return OffsetOf(at);
}

bool TSxAccessibleTextModel::ReadOnly() { return FControl.GetReadOnly(); }

void TSxAccessibleTextModel::SetCaretOffset(TTextOffset offset)
{
    const TPoint at = PositionOf(offset);
    FControl.SetLinePos(at.Y);
    FControl.SetCharPos(at.X);
}

void TSxAccessibleTextModel::SetSelection(TTextOffset anchorOffset, TTextOffset caretOffset)
{
    const TPoint anchor = PositionOf(anchorOffset);
    SetCaretOffset(caretOffset);
    FControl.SetSelEnd(anchor);
}

void TSxAccessibleTextModel::RemoveSelection()
{
    const TPoint caret = Point(FControl.CharPos(), FControl.LinePos());
    FControl.SetSelStart(caret);
    FControl.SetSelEnd(caret);
}

void TSxAccessibleTextModel::InsertText(TTextOffset offset, const String& text)
{
    if (FControl.GetReadOnly() || text.empty())
        return;
    const TPoint at = PositionOf(offset);
    FControl.InsertCode(at.Y, at.X, text);
}

void TSxAccessibleTextModel::DeleteText(TTextOffset from, TTextOffset to)
{
    if (FControl.GetReadOnly() || from == to)
        return;
    SetSelection(std::min(from, to), std::max(from, to));
    String deleted;
    FControl.DeleteSelected(uSxCodeEdit::ctDelete, deleted);
}

/// Scrolls so that the start of the range shows, and its end too where both fit.
void TSxAccessibleTextModel::ScrollToRange(TTextOffset from, TTextOffset to)
{
    const TPoint first = PositionOf(from);
    const TPoint last = PositionOf(std::max(from, to));
    TScrollBar& vertical = FControl.VScrollBar();
    TScrollBar& horizontal = FControl.HScrollBar();
    ScrollToShow(vertical, first.Y, last.Y, vertical.PageSize());
    ScrollToShow(horizontal, first.X, first.Y == last.Y ? last.X : first.X, horizontal.PageSize() + 1);
}

void TSxAccessibleTextModel::StateChanged()
{
    if (AccessibilityActive())
        QueueReport();
}

void TSxAccessibleTextModel::LineReplacing(Integer Index, std::size_t NewLength)
{
    const auto oldLength = TTextOffset(FLines.Line(Index).size());
    Record(Index, TEdit::Replace);
    Shift(Index, 0, TTextOffset(NewLength) - oldLength);
}

void TSxAccessibleTextModel::LineInserting(Integer Index, std::size_t Length)
{
    Record(Index, TEdit::Insert);
    Shift(Index, 1, TTextOffset(Length) + LineBreakLength);
}

void TSxAccessibleTextModel::LineDeleting(Integer Index)
{
    const auto oldLength = TTextOffset(FLines.Line(Index).size());
    Record(Index, TEdit::Delete);
    Shift(Index, -1, -(oldLength + LineBreakLength));
}

void TSxAccessibleTextModel::AllLinesReplacing()
{
    FAnchorLine = 0;
    FAnchorStart = 0;
    FCharacterCount = -1;
    if (!AccessibilityActive()) {
        FChange = {};
        return;
    }
    ReportText();
    FChange = {true, 0, 0, true, String()};
    for (Integer line = 0; line < FLines.Count(); ++line)
        AppendLine(FLines, line, FChange.OldText);
    QueueReport();
}

void TSxAccessibleTextModel::MoveAnchorHome()
{
    FAnchorLine = 0;
    FAnchorStart = 0;
}

void TSxAccessibleTextModel::CheckAnchor()
{
    if (FAnchorLine > FLines.Count() || FAnchorStart < 0)
        MoveAnchorHome();
}

void TSxAccessibleTextModel::Shift(Integer index, Integer lineDelta, TTextOffset charDelta)
{
    if (FCharacterCount >= 0)
        FCharacterCount += charDelta;
    if (index < FAnchorLine) {
        FAnchorLine += lineDelta;
        FAnchorStart += charDelta;
    }
}

Integer TSxAccessibleTextModel::GapTo(Integer index, bool needsLine) const
{
    if (index < FChange.First)
        return FChange.First - index;
    return std::max(0, index + (needsLine ? 1 : 0) - ChangeEnd());
}

void TSxAccessibleTextModel::Cover(Integer index, bool needsLine)
{
    if (index < FChange.First) {
        String head;
        for (Integer line = index; line < FChange.First; ++line)
            AppendLine(FLines, line, head);
        FChange.OldText.insert(0, head);
        FChange.NewCount += FChange.First - index;
        FChange.First = index;
    }
    for (Integer line = ChangeEnd(); line < index + (needsLine ? 1 : 0); ++line) {
        AppendLine(FLines, line, FChange.OldText);
        ++FChange.NewCount;
    }
}

void TSxAccessibleTextModel::Record(Integer index, TEdit edit)
{
    if (!AccessibilityActive()) {
        FChange = {};
        return;
    }
    const bool needsLine = edit != TEdit::Insert;
    if (FChange.Open && GapTo(index, needsLine) > MaxGapLines)
        ReportText();
    if (!FChange.Open)
        FChange = {true, index, 0, false, String()};
    Cover(index, needsLine);
    if (edit == TEdit::Insert)
        ++FChange.NewCount;
    else if (edit == TEdit::Delete)
        --FChange.NewCount;
    QueueReport();
}

void TSxAccessibleTextModel::QueueReport()
{
    if (FReportQueued)
        return;
    FReportQueued = true;
    QueueAccessibilityReport(this, [this] { Report(); });
}

void TSxAccessibleTextModel::Report()
{
    FReportQueued = false;
    if (!AccessibilityActive()) {
        FChange = {};
        return;
    }
    ReportText();
    const TTextOffset caret = CaretOffset();
    if (caret != FReportedCaret) {
        FReportedCaret = caret;
        NotifyCaretMoved(FControl, caret);
    }
    if (const TTextRange selection = Selection(); selection != FReportedSelection) {
        FReportedSelection = selection;
        NotifySelectionChanged(FControl, selection, caret);
    }
    if (const bool readOnly = FControl.GetReadOnly(); readOnly != FReportedReadOnly) {
        FReportedReadOnly = readOnly;
        NotifyReadOnlyChanged(FControl);
    }
}

void TSxAccessibleTextModel::ReportText()
{
    const TChange change = std::exchange(FChange, TChange{});
    if (!change.Open || !AccessibilityActive())
        return;
    const Integer last = std::min(change.ToEnd ? FLines.Count() : change.First + change.NewCount, FLines.Count());
    String newText;
    for (Integer line = change.First; line < last; ++line)
        AppendLine(FLines, line, newText);
    const auto [head, tail] = CommonEnds(change.OldText, newText);
    const String removed = change.OldText.substr(head, change.OldText.size() - head - tail);
    const String inserted = newText.substr(head, newText.size() - head - tail);
    if (removed.empty() && inserted.empty())
        return;
    const TTextOffset at = LineStart(change.First) + TTextOffset(head);
    if (removed.empty())
        NotifyTextInserted(FControl, at, inserted);
    else if (inserted.empty())
        NotifyTextRemoved(FControl, at, removed);
    else
        NotifyTextUpdated(FControl, at, removed, inserted);
}

}  // namespace sx
