// Search and replace: the dialog message and the search-again message. The
// engine and the dialog come with the find and replace work; until then the
// two messages leave text, caret and selection alone.
#include "uSxCodeEdit.h"

namespace sx {

void TSxCodeEdit::WMSearchReplaceDlg(TMessage&) {}
void TSxCodeEdit::WMSearchReplace(TMessage&) {}

}  // namespace sx
