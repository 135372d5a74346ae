// What Qt's input method events mean to the controls: a composition step in
// the framework's values, and the answers to Qt's queries.
#pragma once

#include "platform/Controls.h"

#include <functional>

class QInputMethodEvent;
class QInputMethodQueryEvent;

namespace sx {

/// The composition step of the event. Without a cursor attribute the
/// composition's cursor stands at the end of its text.
TImeComposition CompositionOf(const QInputMethodEvent& event);

/// Answers each query of the event that the framework knows through the
/// answerer, which fills in the answer and returns True, or returns False
/// when it has none.
void AnswerInputMethodQueries(QInputMethodQueryEvent& event,
                              const std::function<bool(TImeQuery, TImeAnswer&)>& answerer);

}  // namespace sx
