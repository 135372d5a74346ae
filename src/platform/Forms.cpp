// Forms over QDialog: the modal loop, the key preview, Enter for the
// default button, placement on the screen and the test seam for modal forms.
#include "platform/Forms.h"

#include "platform/FormReader.h"
#include "platform/Keys.h"
#include "platform/QtConvert.h"
#include "platform/QtKeys.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QKeyEvent>
#include <QScreen>

#include <memory>

namespace sx {

namespace {

TShowModalHook& ShowModalHook()
{
    static TShowModalHook hook;
    return hook;
}

TShiftState ShiftOf(Qt::KeyboardModifiers modifiers)
{
    TShiftState shift;
    if (modifiers & Qt::ShiftModifier)
        shift.Include(TShiftStateItem::ssShift);
    if (modifiers & Qt::ControlModifier)
        shift.Include(TShiftStateItem::ssCtrl);
    if (modifiers & Qt::AltModifier)
        shift.Include(TShiftStateItem::ssAlt);
    return shift;
}

/// The control of the tree under root whose window is widget, or none.
TWinControl* ControlOfWidget(const TWinControl& root, const QWidget* widget)
{
    for (int i = 0; i < root.ControlCount(); ++i) {
        auto* child = dynamic_cast<TWinControl*>(root.Controls(i));
        if (!child)
            continue;
        if (child->Widget() == widget)
            return child;
        if (TWinControl* found = ControlOfWidget(*child, widget))
            return found;
    }
    return nullptr;
}

/// The visible, enabled button marked Default under root, or none.
TButton* FindDefaultButton(const TWinControl& root, const QWidget* window)
{
    for (int i = 0; i < root.ControlCount(); ++i) {
        auto* child = dynamic_cast<TWinControl*>(root.Controls(i));
        if (!child)
            continue;
        auto* button = dynamic_cast<TButton*>(child);
        if (button && button->Default() && button->Enabled() && button->Widget()->isVisibleTo(window))
            return button;
        if (TButton* found = FindDefaultButton(*child, window))
            return found;
    }
    return nullptr;
}

/// The colours a form definition may name.
bool ColorFromIdent(const String& ident, TColor& color)
{
    static const struct {
        const char16_t* Name;
        TColor Color;
    } colors[] = {{u"clBtnFace", clBtnFace}, {u"clWindow", clWindow}, {u"clWindowText", clWindowText},
                  {u"clWhite", clWhite},     {u"clBlack", clBlack}};
    for (const auto& entry : colors) {
        if (ident == entry.Name) {
            color = entry.Color;
            return true;
        }
    }
    return false;
}

bool PositionFromIdent(const String& ident, TPosition& position)
{
    static const char16_t* const names[] = {u"poDesigned",        u"poDefault",        u"poDefaultPosOnly",
                                            u"poDefaultSizeOnly", u"poScreenCenter",   u"poDesktopCenter",
                                            u"poMainFormCenter",  u"poOwnerFormCenter"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (ident == names[i]) {
            position = TPosition(i);
            return true;
        }
    }
    return false;
}

}  // namespace

/// The form's window. Enter and Escape are the form's business, so QDialog's
/// own default-button and reject handling stays out; closing the window asks
/// the form to Close.
class FormWindow : public QDialog {
public:
    explicit FormWindow(TForm* form) : FForm(form) {}
    void Release() { FForm = nullptr; }
    void reject() override
    {
        if (FForm)
            RunGuarded([this] { FForm->Close(); });
    }

protected:
    void keyPressEvent(QKeyEvent* event) override { QWidget::keyPressEvent(event); }
    void closeEvent(QCloseEvent* event) override
    {
        event->ignore();
        reject();
    }
    void resizeEvent(QResizeEvent* event) override
    {
        QDialog::resizeEvent(event);
        if (FForm)
            RunGuarded([this] { FForm->WindowResized(width(), height()); });
    }

private:
    TForm* FForm;
};

/// Shows the form each key of its window first, once: a key the form does
/// not use up is handed on to its widget again with the preview out of the
/// way, and Qt passes it up to the parents from there.
class KeyPreviewFilter : public QObject {
public:
    explicit KeyPreviewFilter(TForm* form) : FForm(form) {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || FHandingOn)
            return false;
        auto* widget = qobject_cast<QWidget*>(watched);
        if (!widget || widget->window() != FForm->Widget())
            return false;
        const auto& key = *static_cast<QKeyEvent*>(event);
        bool used = false;
        RunGuarded([&] { used = FForm->HandleKey(key); });
        if (!used) {
            const std::unique_ptr<QEvent> copy(key.clone());
            FHandingOn = true;
            QCoreApplication::sendEvent(widget, copy.get());
            FHandingOn = false;
        }
        return true;
    }

private:
    TForm* FForm;
    bool FHandingOn = false;
};

SX_DEFINE_CLASS(TForm, TWidgetControl)

TForm::TForm(TComponent* AOwner)
    : TWidgetControl(AOwner, new FormWindow(this)), FKeyPreviewFilter(new KeyPreviewFilter(this))
{
    Font().OnChange = [this](TObject*) { Widget()->setFont(Font().QtFont()); };
    Widget()->setFont(Font().QtFont());
    SetColor(clBtnFace);
}

TForm::~TForm()
{
    if (FModal)
        EndModal();
    delete FKeyPreviewFilter;
    static_cast<FormWindow*>(Widget())->Release();
    Font().OnChange = nullptr;
}

void TForm::SetModalResult(TModalResult value)
{
    FModalResult = value;
    if (FModalLoop && value != mrNone)
        FModalLoop->quit();
}

TModalResult TForm::ShowModal()
{
    if (FModal || Showing())
        throw EInvalidOperation(u"Cannot make a visible window modal");
    FModalResult = mrNone;
    FModal = true;
    const TScreenUpdatesNow screenUpdates;
    try {
        PlaceOnScreen();
        Widget()->setWindowModality(Qt::ApplicationModal);
        QCoreApplication::instance()->installEventFilter(FKeyPreviewFilter);
        Widget()->show();
        Widget()->activateWindow();
        DoShow();
        if (const TShowModalHook hook = ShowModalHook()) {
            hook(*this);
        } else if (FModalResult == mrNone) {
            QEventLoop loop;
            FModalLoop = &loop;
            loop.exec(QEventLoop::DialogExec);
        }
        if (FModalResult == mrNone)
            FModalResult = mrCancel;
    } catch (...) {
        EndModal();
        throw;
    }
    EndModal();
    return FModalResult;
}

void TForm::EndModal()
{
    FModalLoop = nullptr;
    QCoreApplication::instance()->removeEventFilter(FKeyPreviewFilter);
    Widget()->hide();
    FModal = false;
}

void TForm::Close()
{
    if (FModal)
        SetModalResult(mrCancel);
    else
        Widget()->hide();
}

bool TForm::Showing() const { return Widget()->isVisible(); }

void TForm::DoShow()
{
    if (OnShow)
        OnShow(this);
}

void TForm::SetColor(TColor value)
{
    FColor = value;
    QPalette palette = Widget()->palette();
    palette.setColor(QPalette::Window, ToQColor(value));
    Widget()->setPalette(palette);
    Widget()->setAutoFillBackground(true);
}

TWinControl* TForm::ActiveControl() const
{
    for (const QWidget* w = Widget()->focusWidget(); w && w != Widget(); w = w->parentWidget())
        if (TWinControl* control = ControlOfWidget(*this, w))
            return control;
    return nullptr;
}

TPoint TForm::ClientExtent() const
{
    return Point(std::max(Width() - FrameWidth, 0), std::max(Height() - FrameHeight, 0));
}

void TForm::PlaceWidget()
{
    const TPoint client = ClientExtent();
    Widget()->move(Left(), Top());
    Widget()->resize(client.X, client.Y);
}

void TForm::WindowResized(Integer clientWidth, Integer clientHeight)
{
    if (clientWidth + FrameWidth != Width() || clientHeight + FrameHeight != Height())
        SetBounds(Left(), Top(), clientWidth + FrameWidth, clientHeight + FrameHeight);
}

void TForm::PlaceOnScreen()
{
    QRect area;
    if (FPosition == TPosition::poOwnerFormCenter || FPosition == TPosition::poMainFormCenter) {
        for (TComponent* owner = Owner(); owner && area.isNull(); owner = owner->Owner())
            if (auto* control = dynamic_cast<TWinControl*>(owner); control && control->Widget())
                area = control->Widget()->window()->frameGeometry();
    }
    const bool centred = FPosition == TPosition::poOwnerFormCenter || FPosition == TPosition::poMainFormCenter ||
                         FPosition == TPosition::poScreenCenter || FPosition == TPosition::poDesktopCenter;
    if (centred && area.isNull() && QGuiApplication::primaryScreen())
        area = QGuiApplication::primaryScreen()->availableGeometry();
    if (area.isNull()) {
        PlaceWidget();
        return;
    }
    const QPoint centre = area.center();
    SetBounds(centre.x() - Width() / 2, centre.y() - Height() / 2, Width(), Height());
}

void TForm::CaptionChanged() { Widget()->setWindowTitle(ToQString(Caption())); }

bool TForm::HandleKey(const QKeyEvent& event)
{
    Word key = VirtualKeyOf(event);
    if (key == 0)
        return false;
    if (FKeyPreview) {
        KeyDown(key, ShiftOf(event.modifiers()));
        if (key == 0)
            return true;
    }
    const bool plain = !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    return key == VK_RETURN && plain && PressButtonForEnter();
}

bool TForm::PressButtonForEnter()
{
    auto* button = dynamic_cast<TButton*>(ActiveControl());
    if (!button)
        button = FindDefaultButton(*this, Widget());
    if (!button)
        return false;
    button->Click();
    return true;
}

bool TForm::ReadProperty(const TFormProperty& Property)
{
    const String& name = Property.Name;
    if (name == u"windowTitle") {
        SetCaption(Property.Text);
    } else if (name == u"font") {
        Font().SetName(Property.Text);
        Font().SetSize(Property.Number);
    } else if (name == u"color") {
        TColor color;
        if (!ColorFromIdent(Property.Text, color))
            throw EReadError(u"Invalid colour: " + Property.Text);
        SetColor(color);
    } else if (name == u"ctl3D") {
        SetCtl3D(Property.Bool);
    } else if (name == u"keyPreview") {
        SetKeyPreview(Property.Bool);
    } else if (name == u"position") {
        if (!PositionFromIdent(Property.Text, FPosition))
            throw EReadError(u"Invalid position: " + Property.Text);
    } else {
        return TWidgetControl::ReadProperty(Property);
    }
    return true;
}

void TForm::Loaded()
{
    TWidgetControl::Loaded();
    UpdateTabOrder();
}

void TForm::UpdateTabOrder()
{
    std::vector<QWidget*> chain;
    CollectTabStops(chain);
    for (std::size_t i = 1; i < chain.size(); ++i)
        QWidget::setTabOrder(chain[i - 1], chain[i]);
}

void TForm::ReadFormDefinition() { ReadComponentRes(*this, ClassName()); }

TForm* GetParentForm(TControl* Control)
{
    for (TControl* control = Control; control; control = control->Parent())
        if (auto* form = dynamic_cast<TForm*>(control))
            return form;
    return nullptr;
}

TShowModalHook SetShowModalHook(TShowModalHook Hook) { return std::exchange(ShowModalHook(), std::move(Hook)); }

}  // namespace sx
