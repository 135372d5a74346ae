// The popup menu component. It is a component of its own so that a control
// hears of its removal through the owner's notification.
#pragma once

#include "Classes.h"

namespace sx {

class TPopupMenu : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TPopupMenu(TComponent* AOwner) : TComponent(AOwner) {}
    /// The component the menu was last opened for.
    TComponent* PopupComponent() const { return FPopupComponent; }
    void SetPopupComponent(TComponent* value) { FPopupComponent = value; }

private:
    TComponent* FPopupComponent = nullptr;
};

}  // namespace sx
