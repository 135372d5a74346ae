// The popup menu component.
#include "Menus.h"

namespace sx {

SX_DEFINE_CLASS(TPopupMenu, TComponent)

}  // namespace sx
