// Screen reader support of the code edit control: its lines counted in the
// offsets screen readers use, units of text, the control's own operations
// behind the framework's TAccessibleText, and the reports of changes.
#pragma once

#include "codeedit/uSxCodeEditLines.h"

#include "platform/Accessibility.h"

#include <cstdint>

namespace sx {

class TSxCodeEdit;

/// Offsets count the lines joined, each followed by CR LF, as the control's
/// Text gives them.
constexpr TTextOffset LineBreakLength = 2;

/// The control's text in screen reader offsets, and the changes to report.
/// It keeps one line with its start offset as an anchor, and the character
/// count once it has been asked for, and moves both with each change of the
/// line store, so that a question near the last one, or near the last change,
/// walks over few lines. While a screen reader listens it also keeps the old
/// text of the lines that changed since the last report.
class TSxAccessibleTextModel final : public TAccessibleText, public TSxLinesListener {
public:
    /// The model of the control, made on first use; none before the control
    /// is complete or once it is being freed.
    static TSxAccessibleTextModel* Of(TSxCodeEdit& edit);

    explicit TSxAccessibleTextModel(TSxCodeEdit& edit);
    ~TSxAccessibleTextModel() override;
    /// Deleted: the model is the listener of one control's lines.
    TSxAccessibleTextModel(const TSxAccessibleTextModel&) = delete;
    TSxAccessibleTextModel& operator=(const TSxAccessibleTextModel&) = delete;

    /// The offset where the line starts; Count and beyond give the end of the text.
    TTextOffset LineStart(Integer line);

    /// The line whose characters or line break hold the offset; Count when
    /// the offset lies at or behind the end of the text.
    Integer LineAt(TTextOffset offset);

    /// A position in the store as an offset: a column beyond its line's end
    /// counts as the line's end, a line beyond the last as the end of the text.
    TTextOffset OffsetOf(TPoint position);

    /// An offset as a position: inside a line break it is the line's end, at
    /// or behind the end of the text the end of the last line.
    TPoint PositionOf(TTextOffset offset);

    // TAccessibleText. A character, a word, or a line with its break
    // (sentences and paragraphs are lines too) is a unit; a line break is one
    // unit of each kind, and there is none at the end of the text.
    TTextOffset CharacterCount() override;
    String TextBetween(TTextOffset from, TTextOffset to) override;
    TTextOffset CaretOffset() override;
    TTextRange Selection() override;
    bool UnitAt(TTextOffset offset, TTextUnit unit, TTextRange& range) override;
    TRect CharacterRect(TTextOffset offset) override;
    TTextOffset OffsetAtPoint(TPoint point) override;
    bool ReadOnly() override;
    bool MultiLine() override { return true; }
    void SetCaretOffset(TTextOffset offset) override;
    void SetSelection(TTextOffset anchorOffset, TTextOffset caretOffset) override;
    void RemoveSelection() override;
    void InsertText(TTextOffset offset, const String& text) override;
    void DeleteText(TTextOffset from, TTextOffset to) override;
    void ScrollToRange(TTextOffset from, TTextOffset to) override;

    /// The caret, the selection or ReadOnly may have changed.
    void StateChanged();

    // TSxLinesListener
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

    TTextOffset LineSpan(Integer line) const { return TTextOffset(FLines.Line(line).size()) + LineBreakLength; }

    void MoveAnchorHome();

    /// An anchor that a change outside the store's reports left behind the
    /// end goes back to the start; it can then only be slow, never wrong.
    void CheckAnchor();

    /// Moves the anchor and the count past a change at line index that
    /// changes the lines by lineDelta and the characters by charDelta.
    void Shift(Integer index, Integer lineDelta, TTextOffset charDelta);

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
    TTextOffset FAnchorStart = 0;
    /// -1 until asked for.
    TTextOffset FCharacterCount = -1;
    TChange FChange;
    bool FReportQueued = false;
    TTextOffset FReportedCaret = 0;
    TTextRange FReportedSelection;
    bool FReportedReadOnly = false;
};

}  // namespace sx
