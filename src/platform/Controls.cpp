// Controls over QWidget: bounds, parents, focus, painting, and numbered
// messages sent directly or posted through Qt's event queue.
#include "Controls.h"

#include "Accessibility.h"
#include "QtConvert.h"
#include "QtInputMethod.h"
#include "QtKeys.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace sx {

namespace {

std::function<void(const std::exception&)>& ExceptionHandler()
{
    static std::function<void(const std::exception&)> handler;
    return handler;
}

/// The dynamic property by which a control's widget names its control.
constexpr const char* ControlProperty = "sxControl";

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

/// Runs a handler of the desktop; an exception stops at this boundary.
template <class F>
void Guarded(F&& f)
{
    try {
        f();
    } catch (const std::exception& e) {
        HandleApplicationException(e);
    }
}

/// The message of a wheel turn: the delta in the high word of WParam, the
/// modifier keys in the low word, the screen point in LParam.
TMessage WheelMessage(const QWheelEvent& event)
{
    const int delta = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
    const QPoint global = event.globalPosition().toPoint();
    TMessage m;
    m.Msg = WM_MOUSEWHEEL;
    m.WParam = (NativeUInt(Word(std::int16_t(delta))) << 16);
    m.LParam = NativeInt((Word(global.y()) << 16) | Word(global.x()));
    return m;
}

/// The dialog's share of the keys: Tab moves the focus, the arrows move
/// between buttons, Enter and Escape press the default and cancel buttons,
/// unless the control claims the key through WM_GETDLGCODE or CM_WANTSPECIALKEY.
NativeInt DialogMaskOf(const QKeyEvent& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return 0;
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return DLGC_WANTTAB;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down: return DLGC_WANTARROWS;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape: return DLGC_WANTALLKEYS;
    default: return 0;
    }
}

bool ControlWantsKey(TWinControl* control, const QKeyEvent& event)
{
    const NativeInt mask = DialogMaskOf(event);
    if (mask == 0)
        return true;
    if (SendMessage(control, CM_WANTSPECIALKEY, VirtualKeyOf(event)) != 0)
        return true;
    return (SendMessage(control, WM_GETDLGCODE) & (mask | DLGC_WANTALLKEYS)) != 0;
}

/// Delivers a key of Qt's to the control as the desktop does: WM_KEYDOWN,
/// then one WM_CHAR for each character the key types.
void DeliverKeyPress(TWinControl* control, const QKeyEvent& event)
{
    if (const Word key = VirtualKeyOf(event))
        SendMessage(control, WM_KEYDOWN, key);
    for (const Char c : TypedCharsOf(event))
        SendMessage(control, WM_CHAR, c);
}

TShiftState ShiftStateOf(Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons)
{
    TShiftState state;
    if (modifiers & Qt::ShiftModifier)
        state.Include(TShiftStateItem::ssShift);
    if (modifiers & Qt::ControlModifier)
        state.Include(TShiftStateItem::ssCtrl);
    if (modifiers & Qt::AltModifier)
        state.Include(TShiftStateItem::ssAlt);
    if (buttons & Qt::LeftButton)
        state.Include(TShiftStateItem::ssLeft);
    if (buttons & Qt::RightButton)
        state.Include(TShiftStateItem::ssRight);
    if (buttons & Qt::MiddleButton)
        state.Include(TShiftStateItem::ssMiddle);
    return state;
}

bool ButtonOf(Qt::MouseButton qtButton, TMouseButton& button)
{
    switch (qtButton) {
    case Qt::LeftButton: button = TMouseButton::mbLeft; return true;
    case Qt::RightButton: button = TMouseButton::mbRight; return true;
    case Qt::MiddleButton: button = TMouseButton::mbMiddle; return true;
    default: return false;
    }
}

/// The modifier keys only, as key events report them.
TShiftState ModifierState()
{
    const TShiftState all = KeyboardStateToShiftState();
    TShiftState keys;
    for (const TShiftStateItem item : {TShiftStateItem::ssShift, TShiftStateItem::ssAlt, TShiftStateItem::ssCtrl})
        if (all.Contains(item))
            keys.Include(item);
    return keys;
}

}  // namespace

TShiftState KeyboardStateToShiftState()
{
    return ShiftStateOf(QGuiApplication::queryKeyboardModifiers(), QGuiApplication::mouseButtons());
}

bool SystemParametersInfo(Cardinal uiAction, Cardinal, void* pvParam, Cardinal)
{
    if (uiAction != SPI_GETWHEELSCROLLLINES || !pvParam)
        return false;
    *static_cast<Integer*>(pvParam) = qobject_cast<QApplication*>(QCoreApplication::instance())
                                          ? QApplication::wheelScrollLines()
                                          : 3;
    return true;
}

void SetApplicationExceptionHandler(std::function<void(const std::exception&)> handler)
{
    ExceptionHandler() = std::move(handler);
}

void HandleApplicationException(const std::exception& e)
{
    if (ExceptionHandler())
        ExceptionHandler()(e);
    else if (!dynamic_cast<const EAbort*>(&e))  // an abort is silent by definition
        std::fprintf(stderr, "Unhandled exception in an event handler: %s\n", e.what());
}

/// Carries the Qt events of a windowed control's widget to the control, and
/// receives the messages posted to it. Owned by the control, so messages
/// posted to a freed control are dropped with it.
class WidgetBridge : public QObject {
public:
    explicit WidgetBridge(TWinControl* control) : FControl(control) {}

    bool event(QEvent* e) override
    {
        if (e->type() != PostedMessageEventType)
            return QObject::event(e);
        TMessage message = static_cast<PostedMessageEvent*>(e)->Message;
        const QPointer<QObject> alive(this);
        Guarded([&] { FControl->Dispatch(message); });
        if (alive)
            FControl->ImeChanged();
        return true;
    }

    bool eventFilter(QObject* watched, QEvent* e) override
    {
        if (watched != FControl->Widget())
            return false;
        const QEvent::Type type = e->type();
        const QPointer<QObject> alive(this);
        const bool handled = Deliver(e);
        // A handler may have freed the control, and this bridge with it.
        if (alive && handled && IsUserInput(type))
            FControl->ImeChanged();
        return handled;
    }

private:
    /// Hands a Qt event of the widget to the control; answers whether the
    /// widget's own handling is to be skipped.
    bool Deliver(QEvent* e)
    {
        switch (e->type()) {
        case QEvent::Resize: {
            const QSize size = static_cast<QResizeEvent*>(e)->size();
            Guarded([&] { FControl->WidgetResized(size.width(), size.height()); });
            break;
        }
        case QEvent::ParentChange:
            Guarded([&] { FControl->ParentWindowChanged(); });
            break;
        case QEvent::FocusIn:
            Guarded([&] { SendMessage(FControl, CM_ENTER); });
            break;
        case QEvent::FocusOut:
            Guarded([&] {
                EndComposition();
                SendMessage(FControl, CM_EXIT);
            });
            break;
        case QEvent::Wheel: {
            TMessage message = WheelMessage(*static_cast<QWheelEvent*>(e));
            Guarded([&] { FControl->Dispatch(message); });
            return true;
        }
        case QEvent::KeyPress: {
            const auto& key = *static_cast<QKeyEvent*>(e);
            bool wanted = true;
            Guarded([&] {
                wanted = ControlWantsKey(FControl, key);
                if (wanted)
                    DeliverKeyPress(FControl, key);
            });
            return wanted;
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            // A click ends a composition as text widgets end it: the input
            // method commits what it holds, before the caret moves away.
            if (FComposing)
                QGuiApplication::inputMethod()->commit();
            Guarded([&] { DeliverMouse(*static_cast<QMouseEvent*>(e)); });
            return true;
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
            Guarded([&] { DeliverMouse(*static_cast<QMouseEvent*>(e)); });
            return true;
        case QEvent::InputMethod:
            if (!TakesInputMethod())
                break;
            Guarded([&] { DeliverComposition(CompositionOf(*static_cast<QInputMethodEvent*>(e))); });
            e->accept();
            return true;
        case QEvent::InputMethodQuery:
            if (!TakesInputMethod())
                break;
            Guarded([&] { AnswerQueries(*static_cast<QInputMethodQueryEvent*>(e)); });
            e->accept();
            return true;
        case QEvent::KeyRelease:
            if (const Word key = VirtualKeyOf(*static_cast<QKeyEvent*>(e)))
                Guarded([&] { SendMessage(FControl, WM_KEYUP, key); });
            return true;
        default:
            break;
        }
        return false;
    }

    /// The events after which the caret or the text may have moved: the input
    /// method is told to ask again. Moves with no button down change nothing.
    static bool IsUserInput(QEvent::Type type)
    {
        switch (type) {
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
        case QEvent::Wheel:
        case QEvent::InputMethod: return true;
        default: return false;
        }
    }

    /// A custom-drawn control composes in its own way; a wrapped Qt widget
    /// (an edit field of a dialog) keeps Qt's handling.
    bool TakesInputMethod() const { return dynamic_cast<TCustomControl*>(FControl) != nullptr; }

    void DeliverComposition(const TImeComposition& composition)
    {
        FComposing = !composition.PreEdit.empty();
        FControl->ImeComposition(composition);
    }

    /// The focus goes while a composition shows: the control drops it.
    void EndComposition()
    {
        if (FComposing && TakesInputMethod())
            DeliverComposition(TImeComposition{});
    }

    void AnswerQueries(QInputMethodQueryEvent& event)
    {
        AnswerInputMethodQueries(event, [this](TImeQuery query, TImeAnswer& answer) {
            return FControl->ImeRequest(query, answer);
        });
    }

    /// A double click comes from Qt in place of the second press: it goes to
    /// the control as a press with ssDouble, then DblClick for the left button.
    void DeliverMouse(const QMouseEvent& event)
    {
        const QPoint at = event.position().toPoint();
        TShiftState shift = ShiftStateOf(event.modifiers(), event.buttons());
        if (event.type() == QEvent::MouseMove) {
            FControl->MouseMove(shift, at.x(), at.y());
            return;
        }
        TMouseButton button;
        if (!ButtonOf(event.button(), button))
            return;
        if (event.type() == QEvent::MouseButtonRelease) {
            FControl->MouseUp(button, shift, at.x(), at.y());
            return;
        }
        const bool isDouble = event.type() == QEvent::MouseButtonDblClick;
        if (isDouble)
            shift.Include(TShiftStateItem::ssDouble);
        FControl->MouseDown(button, shift, at.x(), at.y());
        if (isDouble && button == TMouseButton::mbLeft)
            FControl->DblClick();
    }

    TWinControl* FControl;
    /// A composition shows in the control: its last step had a pre-edit text.
    bool FComposing = false;
};

/// The widget of a custom-drawn control: paints through the control's Paint
/// and frees the control when Qt destroys the widget from outside.
class ControlWidget : public QWidget {
public:
    explicit ControlWidget(TCustomControl* control) : FControl(control) {}
    ~ControlWidget() override
    {
        if (FControl) {
            TCustomControl* control = FControl;
            FControl = nullptr;
            control->WidgetDestroyed();
            delete control;
        }
    }
    void Release() { FControl = nullptr; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (!FControl)
            return;
        QPainter painter(this);
        Guarded([&] { FControl->PaintWidget(painter); });
    }

private:
    TCustomControl* FControl;
};

SX_DEFINE_CLASS(TControl, TComponent)
SX_DEFINE_CLASS(TWinControl, TControl)
SX_DEFINE_CLASS(TCustomControl, TWinControl)

TControl::TControl(TComponent* AOwner) : TComponent(AOwner)
{
    FFont.OnChange = [this](TObject*) { Invalidate(); };
}

TControl::~TControl()
{
    if (FParent)
        FParent->RemoveChild(this);
}

void TControl::SetBounds(Integer ALeft, Integer ATop, Integer AWidth, Integer AHeight)
{
    if (ALeft == FLeft && ATop == FTop && AWidth == FWidth && AHeight == FHeight)
        return;
    FLeft = ALeft;
    FTop = ATop;
    FWidth = AWidth;
    FHeight = AHeight;
    BoundsChanged();
}

void TControl::SetParent(TWinControl* AParent)
{
    if (AParent == FParent)
        return;
    if (FParent)
        FParent->RemoveChild(this);
    FParent = AParent;
    if (FParent)
        FParent->AddChild(this);
}

void TControl::DragDrop(TObject* Source, Integer X, Integer Y)
{
    if (OnDragDrop)
        OnDragDrop(this, Source, X, Y);
}

void TControl::SetVisible(bool value)
{
    if (value != FVisible) {
        FVisible = value;
        VisibleChanged();
    }
}

TWinControl::TWinControl(TComponent* AOwner, QWidget* widget)
    : TControl(AOwner), FWidget(widget), FBridge(new WidgetBridge(this))
{
    FWidget->installEventFilter(FBridge);
    FWidget->setFocusPolicy(Qt::NoFocus);
    FWidget->setProperty(ControlProperty, QVariant::fromValue(static_cast<void*>(this)));
    if (FWidget->testAttribute(Qt::WA_InputMethodEnabled))
        FImeMode = TImeMode::imDontCare;
    InstallAccessibility();
}

TWinControl::~TWinControl()
{
    // Child controls go first, while their widgets still live inside ours.
    while (!FControls.empty())
        delete FControls.back();
    delete FBridge;
    if (FWidget)
        FWidget->setProperty(ControlProperty, QVariant());
    if (auto* own = dynamic_cast<ControlWidget*>(FWidget))
        own->Release();
    delete FWidget;
}

void TWinControl::WidgetDestroyed()
{
    // Qt is deleting the widget; its children go with it, so the child
    // controls are freed now while they can still let go of their widgets.
    while (!FControls.empty())
        delete FControls.back();
    FWidget->removeEventFilter(FBridge);
    FWidget->setProperty(ControlProperty, QVariant());
    FWidget = nullptr;
}

void TWinControl::AddChild(TControl* child) { FControls.push_back(child); }

void TWinControl::RemoveChild(TControl* child) { std::erase(FControls, child); }

void TWinControl::SetParent(TWinControl* AParent)
{
    TControl::SetParent(AParent);
    if (!FWidget)
        return;
    FWidget->setParent(AParent ? AParent->Widget() : nullptr);
    BoundsChanged();
    VisibleChanged();
}

bool TWinControl::HasParentWindow() const
{
    return Parent() != nullptr || (FWidget && FWidget->parentWidget() != nullptr);
}

void TWinControl::BoundsChanged()
{
    if (!FWidget)
        return;
    if (FWidget->parentWidget())
        FWidget->setGeometry(Left(), Top(), Width(), Height());
    else
        FWidget->resize(Width(), Height());
}

void TWinControl::VisibleChanged()
{
    // A top-level widget is shown by its host; a child follows Visible.
    if (FWidget && FWidget->parentWidget())
        FWidget->setVisible(Visible());
}

void TWinControl::WidgetResized(Integer width, Integer height)
{
    if (width != Width() || height != Height())
        SetBounds(Left(), Top(), width, height);
}

void TWinControl::SetTabStop(bool value)
{
    FTabStop = value;
    if (FWidget)
        FWidget->setFocusPolicy(value ? Qt::StrongFocus : Qt::ClickFocus);
}

void TWinControl::SetCtl3D(bool value)
{
    if (value != FCtl3D) {
        FCtl3D = value;
        Invalidate();
    }
}

bool TWinControl::Focused() const { return FWidget && FWidget->hasFocus(); }

bool TWinControl::CanFocus() const
{
    return FWidget && FWidget->isEnabled() && FWidget->focusPolicy() != Qt::NoFocus;
}

void TWinControl::SetImeMode(TImeMode value)
{
    FImeMode = value;
    if (FWidget)
        FWidget->setAttribute(Qt::WA_InputMethodEnabled, value != TImeMode::imDisable);
}

void TWinControl::ImeComposition(const TImeComposition& Composition)
{
    for (const Char c : Composition.Commit)
        SendMessage(this, WM_CHAR, c);
}

bool TWinControl::ImeRequest(TImeQuery, TImeAnswer&) { return false; }

void TWinControl::ImeChanged()
{
    if (FImeMode != TImeMode::imDisable && Focused())
        QGuiApplication::inputMethod()->update(Qt::ImQueryInput);
}

void TWinControl::SetFocus()
{
    if (FWidget)
        FWidget->setFocus(Qt::OtherFocusReason);
}

void TWinControl::Invalidate()
{
    if (FWidget)
        UpdateScreen(FWidget, [widget = QPointer<QWidget>(FWidget)] {
            if (widget)
                widget->update();
        });
}

void TWinControl::Repaint()
{
    if (FWidget)
        FWidget->repaint();
}

void TWinControl::Dispatch(TMessage& Message)
{
    switch (Message.Msg) {
    case CM_ENTER:
        CMEnter(Message);
        break;
    case CM_EXIT:
        CMExit(Message);
        break;
    case WM_KEYDOWN:
        WMKeyDown(Message);
        break;
    case WM_KEYUP:
        WMKeyUp(Message);
        break;
    case WM_CHAR:
        WMChar(Message);
        break;
    default:
        TControl::Dispatch(Message);
    }
}

void TWinControl::CMEnter(TMessage&)
{
    if (OnEnter)
        OnEnter(this);
}

void TWinControl::CMExit(TMessage&)
{
    if (OnExit)
        OnExit(this);
}

void TWinControl::KeyDown(Word& Key, TShiftState Shift)
{
    if (OnKeyDown)
        OnKeyDown(this, Key, Shift);
}

void TWinControl::KeyUp(Word& Key, TShiftState Shift)
{
    if (OnKeyUp)
        OnKeyUp(this, Key, Shift);
}

void TWinControl::KeyPress(Char& Key)
{
    if (OnKeyPress)
        OnKeyPress(this, Key);
}

void TWinControl::MouseDown(TMouseButton Button, TShiftState Shift, Integer X, Integer Y)
{
    if (OnMouseDown)
        OnMouseDown(this, Button, Shift, X, Y);
}

void TWinControl::MouseMove(TShiftState Shift, Integer X, Integer Y)
{
    if (OnMouseMove)
        OnMouseMove(this, Shift, X, Y);
}

void TWinControl::MouseUp(TMouseButton Button, TShiftState Shift, Integer X, Integer Y)
{
    if (OnMouseUp)
        OnMouseUp(this, Button, Shift, X, Y);
}

void TWinControl::DblClick()
{
    if (OnDblClick)
        OnDblClick(this);
}

TPoint TWinControl::ClientToScreen(TPoint Point) const
{
    if (!FWidget)
        return Point;
    const QPoint global = FWidget->mapToGlobal(QPoint(Point.X, Point.Y));
    return sx::Point(global.x(), global.y());
}

void TWinControl::WMKeyDown(TMessage& Message)
{
    Word key = LoWord(Message.WParam);
    KeyDown(key, ModifierState());
    Message.WParam = key;
}

void TWinControl::WMKeyUp(TMessage& Message)
{
    Word key = LoWord(Message.WParam);
    KeyUp(key, ModifierState());
    Message.WParam = key;
}

void TWinControl::WMChar(TMessage& Message)
{
    Char key = Char(LoWord(Message.WParam));
    KeyPress(key);
    Message.WParam = key;
}

TCustomControl::TCustomControl(TComponent* AOwner) : TWinControl(AOwner, new ControlWidget(this))
{
    // Moves reach the control with no button down too, as the desktop sends them.
    Widget()->setMouseTracking(true);
    SetImeMode(TImeMode::imDontCare);
}

TCustomControl::~TCustomControl() = default;

void TCustomControl::PaintWidget(QPainter& painter)
{
    FCanvas.Attach(&painter);
    try {
        Paint();
    } catch (...) {
        FCanvas.Detach();
        throw;
    }
    FCanvas.Detach();
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

TWinControl* FindControl(const QWidget* widget)
{
    return widget ? static_cast<TWinControl*>(widget->property(ControlProperty).value<void*>()) : nullptr;
}

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

}  // namespace sx
