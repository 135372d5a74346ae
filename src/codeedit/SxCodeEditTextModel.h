// The text model behind the code edit control's accessible interface: the
// control's lines counted in the offsets screen readers use, and the reports
// of changes to them. Private to the control's screen reader support.
#pragma once

#include "SxCodeEditAccessible.h"

#include <QAccessible>
#include <QObject>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace sx {

class TSxCodeEdit;

/// An offset into the text as screen readers count it: the lines joined,
/// each followed by CR LF, as the control's Text gives them.
using TOffset = std::int64_t;

constexpr TOffset LineBreakLength = 2;

/// An offset for Qt, which counts in int.
inline int ToInt(TOffset offset) { return int(std::min<TOffset>(offset, std::numeric_limits<int>::max())); }

/// Whether a screen reader listens: QAccessible::setActive, as the platform's
/// bridge or an application calls it, switches it.
bool AccessibilityActive();
/// Starts, once, to follow QAccessible::setActive.
void WatchAccessibilityActivity();

/// The control's text in screen reader offsets, and the changes to report.
/// It keeps one line with its start offset as an anchor, and the character
/// count once it has been asked for, and moves both with each change of the
/// line store, so that a question near the last one, or near the last change,
/// walks over few lines. While a screen reader listens it also keeps the old
/// text of the lines that changed since the last report.
class TSxAccessibleTextModel final : public QObject, public TSxCodeEditAccessibility, public TSxLinesListener {
public:
    /// The model of the control, made on first use; none before the control
    /// is complete or once it is being freed.
    static TSxAccessibleTextModel* Of(TSxCodeEdit& edit);

    explicit TSxAccessibleTextModel(TSxCodeEdit& edit);
    ~TSxAccessibleTextModel() override { FLines.SetListener(nullptr); }
    TSxAccessibleTextModel(const TSxAccessibleTextModel&) = delete;
    TSxAccessibleTextModel& operator=(const TSxAccessibleTextModel&) = delete;

    TSxCodeEdit& Control() const { return FControl; }

    struct TRange {
        TOffset Start = -1;
        TOffset End = -1;
        bool operator==(const TRange&) const = default;
        bool Empty() const { return Start < 0; }
    };

    TOffset CharacterCount();

    /// The offset where the line starts; Count and beyond give the end of the text.
    TOffset LineStart(Integer line);

    /// The line whose characters or line break hold the offset; Count when
    /// the offset lies at or behind the end of the text.
    Integer LineAt(TOffset offset);

    /// A position in the store as an offset: a column beyond its line's end
    /// counts as the line's end, a line beyond the last as the end of the text.
    TOffset OffsetOf(TPoint position);

    /// An offset as a position: inside a line break it is the line's end, at
    /// or behind the end of the text the end of the last line.
    TPoint PositionOf(TOffset offset);

    TOffset CaretOffset();

    /// The selection in text order, or an empty range when nothing is selected.
    TRange Selection();

    String TextBetween(TOffset from, TOffset to);

    /// The unit of the given kind that holds the offset: a character, a
    /// word, or a line with its break (sentences and paragraphs are lines
    /// too). A line break is one unit of each kind. None at the end of the text.
    bool UnitAt(TOffset offset, QAccessible::TextBoundaryType type, TRange& unit);

    // TSxCodeEditAccessibility and TSxLinesListener.
    void StateChanged() override;
    void LineReplacing(Integer Index, std::size_t NewLength) override;
    void LineInserting(Integer Index, std::size_t Length) override;
    void LineDeleting(Integer Index) override;
    void AllLinesReplacing() override;

private:
    enum class TEdit { Replace, Insert, Delete };

    /// Old lines [First, First + old count) became lines [First, First +
    /// NewCount) of the store, or all lines from First on when ToEnd is set;
    /// OldText holds the old lines, each followed by CR LF.
    struct TChange {
        bool Open = false;
        Integer First = 0;
        Integer NewCount = 0;
        bool ToEnd = false;
        String OldText;
    };

    TOffset LineSpan(Integer line) const { return TOffset(FLines.Line(line).size()) + LineBreakLength; }

    void MoveAnchorHome();

    /// An anchor that a change outside the store's reports left behind the
    /// end goes back to the start; it can then only be slow, never wrong.
    void CheckAnchor();

    /// Moves the anchor and the count past a change at line index that
    /// changes the lines by lineDelta and the characters by charDelta.
    void Shift(Integer index, Integer lineDelta, TOffset charDelta);

    Integer ChangeEnd() const { return FChange.ToEnd ? FLines.Count() : FChange.First + FChange.NewCount; }

    /// How many unchanged lines the open change would have to take in to
    /// reach line index.
    Integer GapTo(Integer index, bool needsLine) const;

    /// Widens the open change over the unchanged lines up to line index,
    /// whose old text it takes while the store still holds it.
    void Cover(Integer index, bool needsLine);

    void Record(Integer index, TEdit edit);

    void QueueReport();

    /// Sends what changed since the last report: the text, then the caret,
    /// the selection and the read-only state.
    void Report();

    /// Sends the open change as one event, with only the characters that differ.
    void ReportText();

    TSxCodeEdit& FControl;
    TSxCodeEditLines& FLines;
    Integer FAnchorLine = 0;
    TOffset FAnchorStart = 0;
    /// -1 until asked for.
    TOffset FCharacterCount = -1;
    TChange FChange;
    bool FReportQueued = false;
    TOffset FReportedCaret = 0;
    TRange FReportedSelection;
    bool FReportedReadOnly = false;
};

}  // namespace sx
