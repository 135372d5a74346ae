// Posted messages travel through Qt's event queue; screen updates wait while
// any of them is queued, so that a chain of messages runs without a paint
// between its links.
#include "platform/PostedMessages.h"

#include "platform/Controls.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <algorithm>
#include <utility>
#include <vector>

namespace sx {

namespace {

const QEvent::Type PostedMessageEventType = static_cast<QEvent::Type>(QEvent::registerEventType());

/// A screen update never waits longer than this for posted messages, so
/// that a long chain of them still shows its progress.
constexpr qint64 MaxScreenUpdateDelayMs = 100;

/// The posted messages not yet handled or dropped, and the screen updates
/// that wait for them, one for each key.
struct ScreenUpdates {
    int PendingMessages = 0;
    /// Modal windows up: updates run at once.
    int ModalDepth = 0;
    std::vector<std::pair<const void*, std::function<void()>>> Waiting;
    QElapsedTimer WaitingSince;
};

ScreenUpdates& Updates()
{
    static ScreenUpdates updates;
    return updates;
}

void RunWaitingUpdates()
{
    for (const auto& [key, update] : std::exchange(Updates().Waiting, {}))
        update();
}

/// A numbered message travelling through Qt's event queue. It counts as
/// pending from its posting until Qt has delivered or dropped it.
class PostedMessageEvent : public QEvent {
public:
    explicit PostedMessageEvent(const TMessage& message) : QEvent(PostedMessageEventType), Message(message)
    {
        ++Updates().PendingMessages;
    }
    ~PostedMessageEvent() override
    {
        if (--Updates().PendingMessages == 0)
            RunWaitingUpdates();
    }
    PostedMessageEvent(const PostedMessageEvent&) = delete;
    PostedMessageEvent& operator=(const PostedMessageEvent&) = delete;
    TMessage Message;
};

}  // namespace

NativeInt SendMessage(TWinControl* target, Cardinal Msg, NativeUInt WParam, NativeInt LParam)
{
    TMessage message{Msg, WParam, LParam, 0};
    target->Dispatch(message);
    return message.Result;
}

bool PostMessage(TWinControl* target, Cardinal Msg, NativeUInt WParam, NativeInt LParam)
{
    if (!target)
        return false;
    QCoreApplication::postEvent(target->MessageTarget(), new PostedMessageEvent(TMessage{Msg, WParam, LParam, 0}));
    return true;
}

void ProcessPostedMessages() { QCoreApplication::sendPostedEvents(nullptr, PostedMessageEventType); }

const TMessage* PostedMessageOf(const QEvent& event)
{
    if (event.type() != PostedMessageEventType)
        return nullptr;
    return &static_cast<const PostedMessageEvent&>(event).Message;
}

void UpdateScreen(const void* Key, std::function<void()> Update)
{
    ScreenUpdates& u = Updates();
    if (u.PendingMessages == 0 || u.ModalDepth > 0) {
        Update();
        return;
    }
    if (u.Waiting.empty())
        u.WaitingSince.start();
    const auto same = [Key](const auto& waiting) { return waiting.first == Key; };
    if (std::find_if(u.Waiting.begin(), u.Waiting.end(), same) == u.Waiting.end())
        u.Waiting.emplace_back(Key, std::move(Update));
    if (u.WaitingSince.elapsed() >= MaxScreenUpdateDelayMs)
        RunWaitingUpdates();
}

void CancelScreenUpdate(const void* Key)
{
    std::erase_if(Updates().Waiting, [Key](const auto& waiting) { return waiting.first == Key; });
}

TScreenUpdatesNow::TScreenUpdatesNow()
{
    ++Updates().ModalDepth;
    RunWaitingUpdates();
}

TScreenUpdatesNow::~TScreenUpdatesNow() { --Updates().ModalDepth; }

}  // namespace sx
