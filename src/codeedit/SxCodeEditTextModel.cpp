// The text model of the code edit control's screen reader support: offsets
// over the control's lines, units of text, and the reports of changes,
// gathered to one of each kind per turn of the event loop and built from the
// lines that changed, never from the whole text.
#include "SxCodeEditTextModel.h"

#include "uSxCodeEdit.h"

#include "platform/QtConvert.h"

#include <QWidget>

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
// Whether a screen reader listens, and how events reach it.

/// Follows QAccessible::setActive, which the platform's bridge calls when a
/// screen reader comes or goes, and which an application may call too.
class ActivityWatch : public QAccessible::ActivationObserver {
public:
    void accessibilityActiveChanged(bool active) override { Active = active; }
    bool Active = QAccessible::isActive();
};

/// Made by the first control and kept for the life of the process, since Qt
/// may still report to it while the application shuts down.
ActivityWatch* Watch = nullptr;


/// QAccessible::updateAccessibility passes events on only while the
/// platform's bridge is active; an update handler that an application
/// installed and switched on through QAccessible::setActive hears them
/// without a bridge too.
void Send(QAccessibleEvent& event)
{
    if (QAccessible::isActive()) {
        QAccessible::updateAccessibility(&event);
        return;
    }
    const QAccessible::UpdateHandler handler = QAccessible::installUpdateHandler(nullptr);
    QAccessible::installUpdateHandler(handler);
    if (handler)
        handler(&event);
}

// ---------------------------------------------------------------------------
// Units of text inside one line, as columns [First, Last).

struct TColumns {
    std::size_t First;
    std::size_t Last;
};

bool IsHighSurrogate(Char c) { return c >= 0xD800 && c <= 0xDBFF; }

bool IsLowSurrogate(Char c) { return c >= 0xDC00 && c <= 0xDFFF; }

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

}  // namespace

bool AccessibilityActive() { return Watch && Watch->Active; }

void WatchAccessibilityActivity()
{
    if (Watch)
        return;
    Watch = new ActivityWatch;
    QAccessible::installActivationObserver(Watch);
}

TSxAccessibleTextModel* TSxAccessibleTextModel::Of(TSxCodeEdit& edit)
{
    if (!edit.FAccessibilityAllowed)
        return nullptr;
    if (!edit.FAccessibility)
        edit.FAccessibility = std::make_unique<TSxAccessibleTextModel>(edit);
    return static_cast<TSxAccessibleTextModel*>(edit.FAccessibility.get());
}

TSxAccessibleTextModel::TSxAccessibleTextModel(TSxCodeEdit& edit)
    : FControl(edit), FLines(static_cast<TSxCodeEditLines&>(*edit.FLines))
{
    FLines.SetListener(this);
    FReportedCaret = CaretOffset();
    FReportedSelection = Selection();
    FReportedReadOnly = FControl.GetReadOnly();
}

TOffset TSxAccessibleTextModel::CharacterCount()
{
    if (FCharacterCount < 0) {
        FCharacterCount = 0;
        for (Integer line = 0; line < FLines.Count(); ++line)
            FCharacterCount += LineSpan(line);
    }
    return FCharacterCount;
}

TOffset TSxAccessibleTextModel::LineStart(Integer line)
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

Integer TSxAccessibleTextModel::LineAt(TOffset offset)
{
    const Integer count = FLines.Count();
    offset = std::max<TOffset>(offset, 0);
    CheckAnchor();
    if (offset < FAnchorStart - offset)
        MoveAnchorHome();
    while (FAnchorLine > 0 && offset < FAnchorStart)
        FAnchorStart -= LineSpan(--FAnchorLine);
    while (FAnchorLine < count && offset >= FAnchorStart + LineSpan(FAnchorLine))
        FAnchorStart += LineSpan(FAnchorLine++);
    return FAnchorLine;
}

TOffset TSxAccessibleTextModel::OffsetOf(TPoint position)
{
    if (position.Y < 0 || FLines.Count() == 0)
        return 0;
    if (position.Y >= FLines.Count())
        return CharacterCount();
    const auto length = TOffset(FLines.Line(position.Y).size());
    return LineStart(position.Y) + std::clamp<TOffset>(position.X, 0, length);
}

TPoint TSxAccessibleTextModel::PositionOf(TOffset offset)
{
    const Integer count = FLines.Count();
    if (count == 0)
        return Point(0, 0);
    const Integer line = LineAt(offset);
    if (line >= count)
        return Point(Integer(FLines.Line(count - 1).size()), count - 1);
    const auto length = TOffset(FLines.Line(line).size());
    return Point(Integer(std::clamp<TOffset>(offset - LineStart(line), 0, length)), line);
}

TOffset TSxAccessibleTextModel::CaretOffset() { return OffsetOf(Point(FControl.CharPos(), FControl.LinePos())); }

TSxAccessibleTextModel::TRange TSxAccessibleTextModel::Selection()
{
    if (!FControl.HasSelection())
        return {};
    TPoint first = FControl.SelStart();
    TPoint last = FControl.SelEnd();
    if (first.Y > last.Y || (first.Y == last.Y && first.X > last.X))
        std::swap(first, last);
    const TRange range{OffsetOf(first), OffsetOf(last)};
    return range.Start < range.End ? range : TRange{};
}

String TSxAccessibleTextModel::TextBetween(TOffset from, TOffset to)
{
    String out;
    from = std::max<TOffset>(from, 0);
    const Integer count = FLines.Count();
    Integer line = LineAt(from);
    TOffset start = line < count ? LineStart(line) : 0;
    for (; line < count && start < to; ++line) {
        const TLineView text = FLines.Line(line);
        const auto length = TOffset(text.size());
        const TOffset first = std::max(from, start) - start;
        const TOffset last = std::min(to, start + length + LineBreakLength) - start;
        if (first < length)
            out += text.Substr(std::size_t(first), std::size_t(std::min(last, length) - first));
        for (TOffset at = std::max(first, length); at < last; ++at)
            out += LineBreak[std::size_t(at - length)];
        start += length + LineBreakLength;
    }
    return out;
}

bool TSxAccessibleTextModel::UnitAt(TOffset offset, QAccessible::TextBoundaryType type, TRange& unit)
{
    const Integer line = LineAt(offset);
    if (offset < 0 || line >= FLines.Count())
        return false;
    const TOffset start = LineStart(line);
    const TLineView text = FLines.Line(line);
    const auto column = std::size_t(offset - start);
    const bool inText = column < text.size();
    if (type == QAccessible::CharBoundary || type == QAccessible::WordBoundary) {
        if (!inText) {
            unit = {start + TOffset(text.size()), start + TOffset(text.size()) + LineBreakLength};
            return true;
        }
        const TColumns cols = type == QAccessible::CharBoundary ? CharacterAt(text, column) : WordAt(text, column);
        unit = {start + TOffset(cols.First), start + TOffset(cols.Last)};
        return true;
    }
    unit = {start, start + TOffset(text.size()) + LineBreakLength};
    return true;
}

void TSxAccessibleTextModel::StateChanged()
{
    if (AccessibilityActive())
        QueueReport();
}

void TSxAccessibleTextModel::LineReplacing(Integer Index, std::size_t NewLength)
{
    const auto oldLength = TOffset(FLines.Line(Index).size());
    Record(Index, TEdit::Replace);
    Shift(Index, 0, TOffset(NewLength) - oldLength);
}

void TSxAccessibleTextModel::LineInserting(Integer Index, std::size_t Length)
{
    Record(Index, TEdit::Insert);
    Shift(Index, 1, TOffset(Length) + LineBreakLength);
}

void TSxAccessibleTextModel::LineDeleting(Integer Index)
{
    const auto oldLength = TOffset(FLines.Line(Index).size());
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

void TSxAccessibleTextModel::Shift(Integer index, Integer lineDelta, TOffset charDelta)
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
    QMetaObject::invokeMethod(this, [this] { Report(); }, Qt::QueuedConnection);
}

void TSxAccessibleTextModel::Report()
{
    FReportQueued = false;
    QWidget* widget = FControl.Widget();
    if (!AccessibilityActive() || !widget) {
        FChange = {};
        return;
    }
    ReportText();
    const TOffset caret = CaretOffset();
    if (caret != FReportedCaret) {
        FReportedCaret = caret;
        QAccessibleTextCursorEvent event(widget, ToInt(caret));
        Send(event);
    }
    if (const TRange selection = Selection(); selection != FReportedSelection) {
        FReportedSelection = selection;
        QAccessibleTextSelectionEvent event(widget, selection.Empty() ? -1 : ToInt(selection.Start),
                                            selection.Empty() ? -1 : ToInt(selection.End));
        event.setCursorPosition(ToInt(caret));
        Send(event);
    }
    if (const bool readOnly = FControl.GetReadOnly(); readOnly != FReportedReadOnly) {
        FReportedReadOnly = readOnly;
        QAccessible::State changed;
        changed.readOnly = true;
        changed.editable = true;
        QAccessibleStateChangeEvent event(widget, changed);
        Send(event);
    }
}

void TSxAccessibleTextModel::ReportText()
{
    const TChange change = std::exchange(FChange, TChange{});
    QWidget* widget = FControl.Widget();
    if (!change.Open || !widget || !AccessibilityActive())
        return;
    const Integer last = std::min(change.ToEnd ? FLines.Count() : change.First + change.NewCount, FLines.Count());
    String newText;
    for (Integer line = change.First; line < last; ++line)
        AppendLine(FLines, line, newText);
    const auto [head, tail] = CommonEnds(change.OldText, newText);
    const String removed = change.OldText.substr(head, change.OldText.size() - head - tail);
    const String inserted = newText.substr(head, newText.size() - head - tail);
    const int at = ToInt(LineStart(change.First) + TOffset(head));
    if (removed.empty() && inserted.empty())
        return;
    if (removed.empty()) {
        QAccessibleTextInsertEvent event(widget, at, ToQString(inserted));
        Send(event);
    } else if (inserted.empty()) {
        QAccessibleTextRemoveEvent event(widget, at, ToQString(removed));
        Send(event);
    } else {
        QAccessibleTextUpdateEvent event(widget, at, ToQString(removed), ToQString(inserted));
        Send(event);
    }
}

}  // namespace sx
