// The find and replace dialog of the code edit control.
#pragma once

#include "platform/Classes.h"

namespace sx {

namespace fSxCodeEditSearchReplaceDlg {

enum TFrmCodeEditSearchReplaceDlgType { search, replace };

}  // namespace fSxCodeEditSearchReplaceDlg

/// The modal dialog; the control creates it on first use and owns it.
class TFrmCodeEditSearchReplaceDlg : public TComponent {
public:
    explicit TFrmCodeEditSearchReplaceDlg(TComponent* AOwner) : TComponent(AOwner) {}
};

}  // namespace sx
