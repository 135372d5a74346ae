// Cut, copy, paste and undo as message handlers, so that keys, menus and
// applications reach them the same way.
#include "codeedit/uSxCodeEdit.h"

#include "platform/Clipboard.h"

namespace sx {

using namespace uSxCodeEdit;

void TSxCodeEdit::WMCut(TMessage&)
{
    String cut;
    DeleteSelected(ctCut, cut);
    Clipboard().SetAsText(cut);
}

void TSxCodeEdit::WMCopy(TMessage&)
{
    String selected;
    GetSelected(selected);
    Clipboard().SetAsText(selected);
}

void TSxCodeEdit::WMPaste(TMessage&)
{
    const String pasted = Clipboard().AsText();
    String deleted;
    DeleteSelected(ctDelete, deleted);
    InsertText(ctPaste, pasted);
    SetSelection(true);
}

void TSxCodeEdit::WMUndo(TMessage&) { FUndoList->Undo(); }

bool TSxCodeEdit::GetCanPaste() { return !Clipboard().AsText().empty(); }

bool TSxCodeEdit::GetCanUndo() { return FUndoList->Count() > 0; }

}  // namespace sx
