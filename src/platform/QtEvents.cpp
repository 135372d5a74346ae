// Qt's events of a control's widget translated into the framework's
// messages and handler calls: keys with the dialog's share of them, the
// mouse, the wheel, focus, size, input methods and painting.
#include "platform/QtEvents.h"

#include "platform/Controls.h"
#include "platform/QtInputMethod.h"
#include "platform/QtKeys.h"

#include <QApplication>
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

namespace sx {

namespace {

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

}  // namespace

TShiftState KeyboardStateToShiftState()
{
    return ShiftStateOf(QGuiApplication::queryKeyboardModifiers(), QGuiApplication::mouseButtons());
}

/// Carries the Qt events of a windowed control's widget to the control, and
/// receives the messages posted to it. Owned by the control, so messages
/// posted to a freed control are dropped with it.
class WidgetBridge : public QObject {
public:
    explicit WidgetBridge(TWinControl* control) : FControl(control) {}

    bool event(QEvent* e) override
    {
        const TMessage* posted = PostedMessageOf(*e);
        if (!posted)
            return QObject::event(e);
        TMessage message = *posted;
        const QPointer<QObject> alive(this);
        Handle([&] { Guarded([&] { FControl->Dispatch(message); }); });
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
        bool handled = false;
        Handle([&] { handled = Deliver(e); });
        // A handler may have freed the control, and this bridge with it.
        if (alive && handled && IsUserInput(type))
            FControl->ImeChanged();
        return handled;
    }

private:
    /// Runs one handling and, when it is not nested in another, fires
    /// OnEventHandled after it, unless the handling freed the control.
    template <class F>
    void Handle(F&& handling)
    {
        const QPointer<QObject> alive(this);
        ++FDepth;
        handling();
        if (!alive)
            return;
        if (--FDepth == 0 && FControl->OnEventHandled)
            Guarded([&] { FControl->OnEventHandled(FControl); });
    }

    int FDepth = 0;

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

QObject* NewWidgetBridge(TWinControl* control) { return new WidgetBridge(control); }

QWidget* NewControlWidget(TCustomControl* control) { return new ControlWidget(control); }

void ReleaseControlWidget(QWidget* widget)
{
    if (auto* own = dynamic_cast<ControlWidget*>(widget))
        own->Release();
}

}  // namespace sx
