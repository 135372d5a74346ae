// The base of the controls over stock Qt widgets (forms, pages, edits,
// buttons...): a caption, a tab order, anchors that keep the children in
// place when the control changes size, and the properties a form definition
// sets on it.
#pragma once

#include "platform/Controls.h"

#include <vector>

namespace sx {

/// A form definition that cannot be read: a missing resource, bad XML, an
/// unknown class or property.
class EReadError : public Exception {
    using Exception::Exception;
};

/// One property of a form definition, its value in the field of its kind.
struct TFormProperty {
    String Name;
    String Text;               ///< strings, identifiers, sets ("akLeft|akTop"), a font's family
    Integer Number = 0;        ///< numbers, a font's point size
    bool Bool = false;
    TRect Bounds;              ///< rectangles
    std::vector<String> Items; ///< lists of strings
};

/// A windowed control over one stock Qt widget that handles its own input:
/// the bridge that turns raw Qt events into the messages of a custom-drawn
/// control is taken off, so the widget types, clicks and takes the focus as
/// Qt made it.
class TWidgetControl : public TWinControl {
    SX_DECLARE_CLASS
public:
    ~TWidgetControl() override;

    const String& Caption() const { return FCaption; }
    void SetCaption(const String& value);
    /// Position among the siblings when Tab moves the focus.
    Integer TabOrder() const { return FTabOrder; }
    void SetTabOrder(Integer value) { FTabOrder = value; }
    bool Enabled() const;
    void SetEnabled(bool value);

    /// Width and height of the area the children stand in.
    virtual TPoint ClientExtent() const { return Point(Width(), Height()); }
    /// Takes one property of a form definition; answers False for a name it does not know.
    virtual bool ReadProperty(const TFormProperty& Property);
    /// Appends the widgets that Tab reaches, in tab order: the control's own
    /// when it is a tab stop, then those of its children.
    virtual void CollectTabStops(std::vector<QWidget*>& Chain) const;

protected:
    TWidgetControl(TComponent* AOwner, QWidget* widget);

    virtual void CaptionChanged() {}
    /// Puts the widget at the control's bounds.
    virtual void PlaceWidget();
    void BoundsChanged() override;

private:
    void AnchorChildren(Integer dx, Integer dy);

    String FCaption;
    Integer FTabOrder = 0;
    /// The client extent the children's anchors were last applied to.
    TPoint FAnchoredExtent;
};

/// Reads a set of anchors written as "akLeft|akTop|akRight|akBottom".
TAnchors AnchorsFromText(const String& text);

/// Runs a handler that Qt called: an exception stops here, at the boundary,
/// and goes to the application's exception handler.
void RunGuarded(const std::function<void()>& handler);

}  // namespace sx
