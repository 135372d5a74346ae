// Numbered messages sent and posted to controls, and the screen updates that
// wait while posted messages are queued.
#pragma once

#include "platform/Messages.h"

#include <functional>

class QEvent;

namespace sx {

class TWinControl;

/// Runs the handler of the message now and answers its result.
NativeInt SendMessage(TWinControl* target, Cardinal Msg, NativeUInt WParam = 0, NativeInt LParam = 0);
/// Queues the message; it runs once the running event handler has returned.
/// Messages to a control that is freed meanwhile are dropped.
bool PostMessage(TWinControl* target, Cardinal Msg, NativeUInt WParam = 0, NativeInt LParam = 0);
/// Runs every message posted so far (for tests and modal loops).
void ProcessPostedMessages();
/// The message that a Qt event carries, when it is a posted message; else none.
const TMessage* PostedMessageOf(const QEvent& event);

/// Shows a change on the screen (a repaint, the caret's block) now, or,
/// while posted messages wait to run, once they have run: as on the classic
/// desktop, whose paint message comes only when no posted message is left, a
/// chain of posted messages (a replace-all) runs through without a paint
/// between two of its links. Of the updates that wait, one runs for each Key;
/// none waits longer than a tenth of a second.
void UpdateScreen(const void* Key, std::function<void()> Update);
/// Drops the waiting update of Key, if there is one (its owner goes away).
void CancelScreenUpdate(const void* Key);

/// While one lives, screen updates run at once, posted messages or not, and
/// those that wait run when it is made: a modal window that comes up in the
/// handler of a posted message shows the screen as it stands, as the classic
/// desktop's modal loop paints it.
class TScreenUpdatesNow {
public:
    TScreenUpdatesNow();
    ~TScreenUpdatesNow();
    TScreenUpdatesNow(const TScreenUpdatesNow&) = delete;
    TScreenUpdatesNow& operator=(const TScreenUpdatesNow&) = delete;
};

}  // namespace sx
