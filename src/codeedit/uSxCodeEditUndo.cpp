// The bounded undo stack.
#include "uSxCodeEditUndo.h"

#include "uSxCodeEdit.h"

namespace sx {

TSxUndoItem* TSxUndoList::AddUndo(TSxChangeType AChangeType, TPoint AStartPos, TPoint AEndPos, TPoint ACaretPos,
                                  const String& AValue)
{
    if (FUndoList.Count() >= FMaxUndo)
        FUndoList.Delete(0);
    auto* item = new TSxUndoItem(AChangeType, AStartPos, AEndPos, ACaretPos, AValue);
    FUndoList.Add(item);
    return item;
}

void TSxUndoList::Undo()
{
    // Replaying a record is added with the editing operations it reverses.
    (void)FOwner;
}

}  // namespace sx
