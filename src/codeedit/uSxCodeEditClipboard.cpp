// Cut, copy, paste, undo and redo as message handlers, so that keys, menus and
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
    // With coGroupUndo the selection it replaces comes back with the same undo step.
    const TSxUndoList::TStepScope step(*FUndoList, HasExtOption(TSxCodeExtOption::coGroupUndo), urNone);
    String deleted;
    DeleteSelected(ctDelete, deleted);
    InsertText(ctPaste, pasted);
    SetSelection(true);
}

void TSxCodeEdit::WMUndo(TMessage&) { FUndoList->Undo(); }

void TSxCodeEdit::WMRedo(TMessage& Message)
{
    if (HasExtOption(TSxCodeExtOption::coRedo))
        FUndoList->Redo();
    else
        TCustomControl::Dispatch(Message);  // as a message the control does not know
}

bool TSxCodeEdit::GetCanPaste() { return !Clipboard().AsText().empty(); }

bool TSxCodeEdit::GetCanUndo() { return FUndoList->Count() > 0; }

}  // namespace sx
