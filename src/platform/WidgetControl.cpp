// Controls over stock Qt widgets: captions, tab stops, anchors and the
// properties common to every control of a form definition.
#include "platform/WidgetControl.h"

#include <QWidget>

#include <algorithm>

namespace sx {

SX_DEFINE_CLASS(TWidgetControl, TWinControl)

TWidgetControl::TWidgetControl(TComponent* AOwner, QWidget* widget) : TWinControl(AOwner, widget)
{
    widget->removeEventFilter(MessageTarget());
}

TWidgetControl::~TWidgetControl() = default;

void TWidgetControl::SetCaption(const String& value)
{
    if (value == FCaption)
        return;
    FCaption = value;
    CaptionChanged();
}

bool TWidgetControl::Enabled() const { return Widget() && Widget()->isEnabled(); }

void TWidgetControl::SetEnabled(bool value)
{
    if (Widget())
        Widget()->setEnabled(value);
}

bool TWidgetControl::ReadProperty(const TFormProperty& Property)
{
    if (Property.Name == u"geometry") {
        const TRect& r = Property.Bounds;
        SetBounds(r.Left, r.Top, r.Width(), r.Height());
    } else if (Property.Name == u"anchors") {
        SetAnchors(AnchorsFromText(Property.Text));
    } else if (Property.Name == u"tabOrder") {
        SetTabOrder(Property.Number);
    } else if (Property.Name == u"visible") {
        SetVisible(Property.Bool);
    } else if (Property.Name == u"enabled") {
        SetEnabled(Property.Bool);
    } else {
        return false;
    }
    return true;
}

void TWidgetControl::CollectTabStops(std::vector<QWidget*>& Chain) const
{
    if (TabStop() && Widget())
        Chain.push_back(Widget());
    std::vector<const TWidgetControl*> children;
    for (int i = 0; i < ControlCount(); ++i)
        if (const auto* child = dynamic_cast<const TWidgetControl*>(Controls(i)))
            children.push_back(child);
    std::stable_sort(children.begin(), children.end(),
                     [](const TWidgetControl* a, const TWidgetControl* b) { return a->TabOrder() < b->TabOrder(); });
    for (const TWidgetControl* child : children)
        child->CollectTabStops(Chain);
}

void TWidgetControl::PlaceWidget() { TWinControl::BoundsChanged(); }

void TWidgetControl::BoundsChanged()
{
    PlaceWidget();
    const TPoint extent = ClientExtent();
    const TPoint before = std::exchange(FAnchoredExtent, extent);
    if (extent != before)
        AnchorChildren(extent.X - before.X, extent.Y - before.Y);
}

void TWidgetControl::AnchorChildren(Integer dx, Integer dy)
{
    for (int i = 0; i < ControlCount(); ++i) {
        TControl* child = Controls(i);
        const TAnchors anchors = child->Anchors();
        Integer left = child->Left(), top = child->Top(), width = child->Width(), height = child->Height();
        if (anchors.Contains(TAnchorKind::akRight)) {
            if (anchors.Contains(TAnchorKind::akLeft))
                width += dx;
            else
                left += dx;
        }
        if (anchors.Contains(TAnchorKind::akBottom)) {
            if (anchors.Contains(TAnchorKind::akTop))
                height += dy;
            else
                top += dy;
        }
        child->SetBounds(left, top, width, height);
    }
}

TAnchors AnchorsFromText(const String& text)
{
    static const struct {
        const char16_t* Name;
        TAnchorKind Kind;
    } names[] = {{u"akLeft", TAnchorKind::akLeft},
                 {u"akTop", TAnchorKind::akTop},
                 {u"akRight", TAnchorKind::akRight},
                 {u"akBottom", TAnchorKind::akBottom}};
    TAnchors anchors;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t bar = std::min(text.find(u'|', start), text.size());
        const String name = Trim(text.substr(start, bar - start));
        const auto* it = std::find_if(std::begin(names), std::end(names), [&](const auto& n) { return name == n.Name; });
        if (it == std::end(names))
            throw EReadError(u"Invalid anchor: " + name);
        anchors.Include(it->Kind);
        start = bar + 1;
    }
    return anchors;
}

void RunGuarded(const std::function<void()>& handler)
{
    try {
        handler();
    } catch (const std::exception& e) {
        HandleApplicationException(e);
    }
}

}  // namespace sx
