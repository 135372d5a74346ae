// SxCodeEditor's find and replace-all, on the lines as they are stored.
#include "face/SxCodeEditor.h"

#include "codeedit/uSxCodeEdit.h"
#include "face/SxCodeEditorPrivate.h"
#include "platform/QtConvert.h"
#include "platform/StrUtils.h"

#include <algorithm>
#include <optional>

using namespace sx;
using namespace sx::uSxCodeEdit;

namespace {

TStringSearchOptions SearchOptionsOf(SxCodeEditor::FindFlags flags)
{
    TStringSearchOptions options;
    if (flags.testFlag(SxCodeEditor::FindCaseSensitively))
        options.Include(TStringSearchOption::soMatchCase);
    if (flags.testFlag(SxCodeEditor::FindWholeWords))
        options.Include(TStringSearchOption::soWholeWord);
    if (!flags.testFlag(SxCodeEditor::FindBackward))
        options.Include(TStringSearchOption::soDown);
    return options;
}

/// One search over the stored lines.
class LineSearch {
public:
    LineSearch(const TStringList& lines, const QString& text, SxCodeEditor::FindFlags flags)
        : m_lines(lines), m_text(FromQString(text)), m_options(SearchOptionsOf(flags)),
          m_backward(flags.testFlag(SxCodeEditor::FindBackward))
    {
    }

    /// The first hit from a place on, in the search's direction, to the end
    /// of the text in that direction.
    std::optional<SxTextPosition> From(SxTextPosition place) const
    {
        const int step = m_backward ? -1 : 1;
        for (int line = place.line; line >= 0 && line < m_lines.Count(); line += step) {
            const TLineView text = m_lines.Line(line);
            const auto length = Integer(text.size());
            const Integer column = std::min(line == place.line ? place.column : (m_backward ? length : 0), length);
            const Integer hit = m_backward ? SearchLineText(text, 0, column, column, m_text, m_options)
                                           : SearchLineText(text, 0, length, column, m_text, m_options);
            if (hit >= 0)
                return SxTextPosition{line, hit};
        }
        return std::nullopt;
    }

    /// Where a search that wraps around goes on: the other end of the text.
    SxTextPosition Restart() const
    {
        if (!m_backward)
            return SxTextPosition{0, 0};
        const int last = std::max(m_lines.Count() - 1, 0);
        return SxTextPosition{last, int(m_lines.Count() > 0 ? m_lines.Line(last).size() : 0)};
    }

    int Length() const { return int(m_text.size()); }

private:
    const TStringList& m_lines;
    String m_text;
    TStringSearchOptions m_options;
    bool m_backward;
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
    if (m_find->text.isEmpty())
        return false;
    const LineSearch search(m_edit->LineStore(), m_find->text, m_find->flags);
    const bool backward = m_find->flags.testFlag(FindBackward);
    // The selection is the last hit: the next one lies beyond it.
    const SxTextRange selected = selection();
    std::optional<SxTextPosition> hit = search.From(backward ? selected.start : selected.end);
    if (!hit && m_find->flags.testFlag(FindWrapAround))
        hit = search.From(search.Restart());
    if (!hit)
        return false;
    const SxTextPosition front = *hit, back{hit->line, hit->column + search.Length()};
    // The caret goes to the end the search moves on from.
    if (backward)
        setSelection(back.line, back.column, front.line, front.column);
    else
        setSelection(front.line, front.column, back.line, back.column);
    return true;
}

int SxCodeEditor::replaceAll(const QString& text, const QString& replacement, SxCodeEditor::FindFlags flags)
{
    if (text.isEmpty() || isReadOnly())
        return 0;
    const Reporter::Scope scope(*m_reporter);
    const LineSearch search(m_edit->LineStore(), text, flags & ~FindFlags(FindBackward | FindWrapAround));
    const String with = FromQString(replacement);
    const TSxUndoList::TStepScope step(m_edit->UndoList(), isUndoGrouped(), urNone);
    int count = 0;
    SxTextPosition from{0, 0};
    while (const std::optional<SxTextPosition> hit = search.From(from)) {
        setSelection(hit->line, hit->column, hit->line, hit->column + search.Length());
        String deleted;
        m_edit->DeleteSelected(ctDelete, deleted);
        m_edit->InsertText(ctPaste, with);
        ++count;
        // The search goes on behind the text put in, which may hold line breaks.
        from = cursorPosition();
    }
    return count;
}
