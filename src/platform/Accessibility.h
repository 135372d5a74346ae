// Screen reader support of the framework layer: what a control offers a
// screen reader about its text, the changes it reports, and the deferral that
// gathers one turn's changes into one report. The Qt side lives in the .cpp.
#pragma once

#include "platform/Types.h"

#include <cstdint>
#include <functional>

namespace sx {

class TWinControl;

/// An offset into a control's text as a screen reader counts it: UTF-16
/// units from 0, line breaks included as the control counts them.
using TTextOffset = std::int64_t;

/// A stretch of text [Start, End); Start below 0 means none.
struct TTextRange {
    TTextOffset Start = -1;
    TTextOffset End = -1;
    bool Empty() const { return Start < 0; }
    friend bool operator==(const TTextRange&, const TTextRange&) = default;
};

/// The units a screen reader reads text by.
enum class TTextUnit { tuCharacter, tuWord, tuLine, tuSentence, tuParagraph, tuWholeText };

/// What a control offers a screen reader about its text. The control owns
/// it; the framework asks for it through TWinControl::AccessibleText and
/// never keeps it beyond one question. Offsets that lie outside the text are
/// taken to its nearest end unless said otherwise.
class TAccessibleText {
public:
    virtual ~TAccessibleText() = default;

    virtual TTextOffset CharacterCount() = 0;
    virtual String TextBetween(TTextOffset from, TTextOffset to) = 0;
    virtual TTextOffset CaretOffset() = 0;
    /// The selection in text order, or an empty range when nothing is selected.
    virtual TTextRange Selection() = 0;
    /// The unit of the kind that holds the offset; false when none does.
    virtual bool UnitAt(TTextOffset offset, TTextUnit unit, TTextRange& range) = 0;
    /// The cell of the character at the offset, in client pixels.
    virtual TRect CharacterRect(TTextOffset offset) = 0;
    /// The offset of the character at a point in client pixels inside the
    /// control, or -1 when no character is there.
    virtual TTextOffset OffsetAtPoint(TPoint point) = 0;
    virtual bool ReadOnly() = 0;
    virtual bool MultiLine() = 0;

    virtual void SetCaretOffset(TTextOffset offset) = 0;
    /// Selects from the anchor to the caret, which moves to caretOffset.
    virtual void SetSelection(TTextOffset anchorOffset, TTextOffset caretOffset) = 0;
    /// Drops the selection, leaving the caret where it is.
    virtual void RemoveSelection() = 0;
    /// Editing goes through the control's own operations, so that its
    /// read-only state, undo and change events apply.
    virtual void InsertText(TTextOffset offset, const String& text) = 0;
    virtual void DeleteText(TTextOffset from, TTextOffset to) = 0;
    virtual void ReplaceText(TTextOffset from, TTextOffset to, const String& text)
    {
        DeleteText(from, to);
        InsertText(from < to ? from : to, text);
    }
    /// Scrolls the view, not the caret, so that the range shows as far as it fits.
    virtual void ScrollToRange(TTextOffset from, TTextOffset to) = 0;
};

/// Makes the controls that offer an accessible text known to screen readers
/// and starts to follow whether one listens; once per process, at the first
/// windowed control.
void InstallAccessibility();

/// Whether a screen reader listens. While none does, a control need report
/// nothing and keep nothing for its reports.
bool AccessibilityActive();

/// The notifications a control sends about its accessible text. Each goes
/// to the screen reader, if one listens and the control has a window.
void NotifyTextInserted(TWinControl& control, TTextOffset at, const String& text);
void NotifyTextRemoved(TWinControl& control, TTextOffset at, const String& text);
void NotifyTextUpdated(TWinControl& control, TTextOffset at, const String& removed, const String& inserted);
void NotifyCaretMoved(TWinControl& control, TTextOffset caret);
/// The selection is now the range (empty for none), with the caret at caret.
void NotifySelectionChanged(TWinControl& control, TTextRange selection, TTextOffset caret);
void NotifyReadOnlyChanged(TWinControl& control);

/// Runs Report once the running event handler has returned, so that the
/// changes of one turn of the event loop go out as one report. Of the
/// reports that wait, one runs for each Key.
void QueueAccessibilityReport(const void* Key, std::function<void()> Report);
/// Drops the waiting report of Key, if there is one (its owner goes away).
void CancelAccessibilityReport(const void* Key);

}  // namespace sx
