// The editor widget's signals: one look at the control after each action,
// compared with the look before it.
#include "face/SxCodeEditorPrivate.h"

#include "codeedit/uSxCodeEdit.h"

#include <QMetaMethod>

SxCodeEditor::Reporter::Scope::Scope(Reporter& reporter, ModifiedEffect effect) : m_reporter(reporter)
{
    ++m_reporter.m_depth;
    if (effect != Keep)
        m_reporter.m_pending = effect;
}

SxCodeEditor::Reporter::Scope::~Scope()
{
    if (--m_reporter.m_depth == 0)
        m_reporter.Report();
}

SxCodeEditor::Reporter::Reporter(SxCodeEditor& editor) : m_editor(editor), m_seen(LookNow()) {}

void SxCodeEditor::Reporter::EventHandled()
{
    if (m_depth == 0)
        Report();
}

bool SxCodeEditor::Reporter::Modified() const
{
    if (m_pending != Keep)
        return m_pending == Dirty;
    return m_modified || m_editor.m_edit->LineStore().ChangeCount() != m_seen.changes;
}

SxCodeEditor::Reporter::Look SxCodeEditor::Reporter::LookNow() const
{
    Look look;
    look.changes = m_editor.m_edit->LineStore().ChangeCount();
    look.caret = m_editor.cursorPosition();
    look.selected = m_editor.hasSelectedText();
    if (look.selected)
        look.selection = m_editor.selection();
    look.readOnly = m_editor.isReadOnly();
    look.foldChanges = m_foldChanges;
    return look;
}

void SxCodeEditor::Reporter::Report()
{
    // A slot may act on the editor while it hears a signal: its changes are
    // reported by another round of this loop, not from inside this one.
    if (m_reporting) {
        m_again = true;
        return;
    }
    m_reporting = true;
    do {
        m_again = false;
        const Look now = LookNow();
        const Look was = std::exchange(m_seen, now);
        EmitChanges(was, now);
    } while (m_again);
    m_reporting = false;
}

void SxCodeEditor::Reporter::EmitChanges(const Look& was, const Look& now)
{
    const bool textChanged = now.changes != was.changes;
    const bool modified = m_pending != Keep ? m_pending == Dirty : m_modified || textChanged;
    m_pending = Keep;
    const bool modificationChanged = modified != m_modified;
    m_modified = modified;
    if (textChanged)
        emit m_editor.textChanged();
    if (modificationChanged)
        emit m_editor.modificationChanged(modified);
    // Caret moves are the most frequent: no signal is emitted that no slot hears.
    static const QMetaMethod cursorSignal = QMetaMethod::fromSignal(&SxCodeEditor::cursorPositionChanged);
    if (now.caret != was.caret && m_editor.isSignalConnected(cursorSignal))
        emit m_editor.cursorPositionChanged(now.caret.line, now.caret.column);
    if (now.selected != was.selected || now.selection != was.selection)
        emit m_editor.selectionChanged();
    if (now.readOnly != was.readOnly)
        emit m_editor.readOnlyChanged(now.readOnly);
    if (now.foldChanges != was.foldChanges)
        emit m_editor.foldingChanged();
}
