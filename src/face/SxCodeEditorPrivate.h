// The editor widget's inner parts: the reporter, which looks at the control
// after each user action and each call of the widget and emits the signals of
// what changed; the format of the file loaded last; the last search.
#pragma once

#include "face/SxCodeEditor.h"
#include "platform/SxStringStream.h"

#include <cstdint>

/// How the last loaded file was written, so that a save writes it the same way.
struct SxCodeEditor::FileFormat {
    sx::Integer codePage = sx::CodePages::Utf8;
    bool byteOrderMark = false;
    sx::String lineBreak = u"\n";
};

/// What findNext() looks for.
struct SxCodeEditor::FindState {
    QString text;
    FindFlags flags;
};

/// Looks at the control once an action is done and emits the widget's
/// signals for what differs from the last look. Actions nest: a call that
/// makes other calls, or an event inside another, reports once, at the end
/// of the outermost one.
class SxCodeEditor::Reporter {
public:
    /// What an action does to the modified flag besides its edits.
    enum ModifiedEffect { Keep, Clean, Dirty };

    /// One action of the widget: reports when the outermost one ends.
    class Scope {
    public:
        explicit Scope(Reporter& reporter, ModifiedEffect effect = Keep);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Reporter& m_reporter;
    };

    explicit Reporter(SxCodeEditor& editor);

    /// The control handled a Qt event or a posted message: reports unless a
    /// call of the widget is under way, which reports at its end.
    void EventHandled();
    /// The control's folding changed: reported with the next look.
    void FoldingChanged() { ++m_foldChanges; }
    /// Emits the signals of what changed since the last look.
    void Report();
    /// Whether the text changed since it was last marked clean, counting the
    /// changes not reported yet.
    bool Modified() const;

private:
    /// What the signals are about, as one look at the control sees it.
    struct Look {
        std::uint64_t changes = 0;
        SxTextPosition caret;
        bool selected = false;
        SxTextRange selection;
        bool readOnly = false;
        std::uint64_t foldChanges = 0;
        friend bool operator==(const Look&, const Look&) = default;
    };
    Look LookNow() const;
    void EmitChanges(const Look& was, const Look& now);

    SxCodeEditor& m_editor;
    Look m_seen;
    bool m_modified = false;
    ModifiedEffect m_pending = Keep;
    int m_depth = 0;
    bool m_reporting = false;
    bool m_again = false;
    std::uint64_t m_foldChanges = 0;
};
