// Qt's input method events and queries in the framework's values.
#include "platform/QtInputMethod.h"

#include "platform/QtConvert.h"

#include <QFont>
#include <QInputMethodEvent>
#include <QInputMethodQueryEvent>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace sx {

namespace {

/// The queries of Qt's that a control is asked, each with its question.
constexpr std::pair<Qt::InputMethodQuery, TImeQuery> ImeQueries[] = {
    {Qt::ImEnabled, TImeQuery::iqEnabled},
    {Qt::ImCursorRectangle, TImeQuery::iqCursorRect},
    {Qt::ImFont, TImeQuery::iqFont},
    {Qt::ImSurroundingText, TImeQuery::iqSurroundingText},
    {Qt::ImCursorPosition, TImeQuery::iqCursorPos},
    {Qt::ImAnchorPosition, TImeQuery::iqAnchorPos},
    {Qt::ImCurrentSelection, TImeQuery::iqSelection},
    {Qt::ImHints, TImeQuery::iqHints},
};

constexpr std::pair<TImeHint, Qt::InputMethodHint> ImeHints[] = {
    {TImeHint::ihMultiLine, Qt::ImhMultiLine},
    {TImeHint::ihNoAutoUppercase, Qt::ImhNoAutoUppercase},
    {TImeHint::ihNoPredictiveText, Qt::ImhNoPredictiveText},
};

Qt::InputMethodHints QtHintsOf(TImeHints hints)
{
    Qt::InputMethodHints result = Qt::ImhNone;
    for (const auto& [hint, qtHint] : ImeHints)
        if (hints.Contains(hint))
            result |= qtHint;
    return result;
}

/// The field of the answer that the query names, as Qt wants it.
QVariant QtValueOf(TImeQuery query, const TImeAnswer& answer)
{
    switch (query) {
    case TImeQuery::iqEnabled: return answer.Flag;
    case TImeQuery::iqCursorRect: return ToQRect(answer.Rect);
    case TImeQuery::iqFont: return answer.Font ? QVariant(answer.Font->QtFont()) : QVariant();
    case TImeQuery::iqSurroundingText:
    case TImeQuery::iqSelection: return ToQString(answer.Text);
    case TImeQuery::iqCursorPos:
    case TImeQuery::iqAnchorPos: return answer.Number;
    case TImeQuery::iqHints: return int(QtHintsOf(answer.Hints));
    }
    return QVariant();
}

}  // namespace

TImeComposition CompositionOf(const QInputMethodEvent& event)
{
    TImeComposition c;
    c.Commit = FromQString(event.commitString());
    c.ReplaceStart = event.replacementStart();
    c.ReplaceLength = event.replacementLength();
    c.PreEdit = FromQString(event.preeditString());
    const auto length = Integer(c.PreEdit.size());
    c.PreEditCursor = length;
    for (const QInputMethodEvent::Attribute& a : event.attributes())
        if (a.type == QInputMethodEvent::Cursor)
            c.PreEditCursor = std::clamp(a.start, 0, length);
    return c;
}

void AnswerInputMethodQueries(QInputMethodQueryEvent& event,
                              const std::function<bool(TImeQuery, TImeAnswer&)>& answerer)
{
    for (const auto& [qtQuery, query] : ImeQueries) {
        if (!(event.queries() & qtQuery))
            continue;
        TImeAnswer answer;
        event.setValue(qtQuery, answerer(query, answer) ? QtValueOf(query, answer) : QVariant());
    }
}

}  // namespace sx
