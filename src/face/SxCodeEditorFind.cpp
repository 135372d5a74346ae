// SxCodeEditor's find and replace-all, by the control's own search engine.
#include "face/SxCodeEditor.h"

#include "codeedit/uSxCodeEdit.h"
#include "face/SxCodeEditorPrivate.h"
#include "platform/QtConvert.h"


using namespace sx;
using namespace sx::uSxCodeEdit;

namespace {

TSxFindRequest RequestOf(const QString& text, SxCodeEditor::FindFlags flags, const QString& replacement = QString())
{
    return TSxFindRequest{FromQString(text), flags.testFlag(SxCodeEditor::FindCaseSensitively),
                          flags.testFlag(SxCodeEditor::FindWholeWords), flags.testFlag(SxCodeEditor::FindBackward),
                          flags.testFlag(SxCodeEditor::FindRegularExpression), FromQString(replacement)};
}

/// A hit: where it starts and ends, and what replaces it.
struct Hit {
    TPoint start, end;
    String replacement;
};

}  // namespace

bool SxCodeEditor::find(const QString& text, SxCodeEditor::FindFlags flags)
{
    m_find->text = text;
    m_find->flags = flags;
    return findNext();
}

bool SxCodeEditor::findNext()
{
    const Reporter::Scope scope(*m_reporter);
    const TSxFindRequest request = RequestOf(m_find->text, m_find->flags);
    // The selection is the last hit: the next one lies beyond it, where the caret stands.
    const SxTextRange selected = selection();
    const SxTextPosition from = request.Backward ? selected.start : selected.end;
    TPoint start, end;
    bool found = false;
    try {
        m_edit->SetLinePos(from.line);
        m_edit->SetCharPos(from.column);
        found = m_edit->FindText(request, start, end);
        if (!found && m_find->flags.testFlag(FindWrapAround)) {
            const int last = lineCount() - 1;
            m_edit->SetLinePos(request.Backward ? last : 0);
            m_edit->SetCharPos(request.Backward ? Integer(lineText(last).size()) : 0);
            found = m_edit->FindText(request, start, end);
        }
    } catch (const Exception& e) {
        failWith(ToQString(e.Message()));
    }
    if (!found) {
        setSelection(selected.start.line, selected.start.column, selected.end.line, selected.end.column);
        return false;
    }
    // The caret goes to the end the search moves on from.
    if (request.Backward)
        setSelection(end.Y, end.X, start.Y, start.X);
    else
        setSelection(start.Y, start.X, end.Y, end.X);
    return true;
}

int SxCodeEditor::replaceAll(const QString& text, const QString& replacement, SxCodeEditor::FindFlags flags)
{
    if (text.isEmpty() || isReadOnly())
        return 0;
    const Reporter::Scope scope(*m_reporter);
    const TSxFindRequest request = RequestOf(text, flags & ~FindFlags(FindBackward | FindWrapAround), replacement);
    const TSxUndoList::TStepScope step(m_edit->UndoList(), isUndoGrouped(), urNone);
    int count = 0;
    setCursorPosition(0, 0);
    try {
        Hit hit;
        while (m_edit->FindText(request, hit.start, hit.end, &hit.replacement)) {
            // The caret at the hit's start: a deletion over lines starts on the caret's line.
            setSelection(hit.end.Y, hit.end.X, hit.start.Y, hit.start.X);
            String deleted;
            m_edit->DeleteSelected(ctDelete, deleted);
            m_edit->InsertText(ctPaste, hit.replacement);
            ++count;
        }
    } catch (const Exception& e) {
        failWith(ToQString(e.Message()));  // what was replaced stays, and undoes step by step
    }
    return count;
}
