// Controls over QWidget: bounds, parents, focus, visibility, painting, and
// the framework's handling of keys, mouse and focus messages.
#include "platform/Controls.h"

#include "platform/Accessibility.h"
#include "platform/QtConvert.h"
#include "platform/QtEvents.h"

#include <QApplication>
#include <QInputMethod>
#include <QPointer>
#include <QWidget>

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

}  // namespace

TShiftState ModifierKeysOf(TShiftState Shift)
{
    TShiftState keys;
    for (const TShiftStateItem item : {TShiftStateItem::ssShift, TShiftStateItem::ssAlt, TShiftStateItem::ssCtrl})
        if (Shift.Contains(item))
            keys.Include(item);
    return keys;
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
    : TControl(AOwner), FWidget(widget), FBridge(NewWidgetBridge(this))
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
    ReleaseControlWidget(FWidget);
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

void TWinControl::UpdateRect(const TRect& ARect)
{
    if (FWidget)
        FWidget->update(ToQRect(ARect));
}

void TWinControl::ScrollRect(const TRect& ARect, Integer ADy)
{
    if (FWidget)
        FWidget->scroll(0, ADy, ToQRect(ARect));
}

void TWinControl::SetOpaquePaint(bool AValue)
{
    if (FWidget)
        FWidget->setAttribute(Qt::WA_OpaquePaintEvent, AValue);
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
    KeyDown(key, ModifierKeysOf(KeyboardStateToShiftState()));
    Message.WParam = key;
}

void TWinControl::WMKeyUp(TMessage& Message)
{
    Word key = LoWord(Message.WParam);
    KeyUp(key, ModifierKeysOf(KeyboardStateToShiftState()));
    Message.WParam = key;
}

void TWinControl::WMChar(TMessage& Message)
{
    Char key = Char(LoWord(Message.WParam));
    KeyPress(key);
    Message.WParam = key;
}

TCustomControl::TCustomControl(TComponent* AOwner) : TWinControl(AOwner, NewControlWidget(this))
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

TWinControl* FindControl(const QWidget* widget)
{
    return widget ? static_cast<TWinControl*>(widget->property(ControlProperty).value<void*>()) : nullptr;
}

}  // namespace sx
