// The bounded undo stack.
#include "codeedit/uSxCodeEditUndo.h"

#include "codeedit/uSxCodeEdit.h"

#include <algorithm>

namespace sx {

using namespace uSxCodeEdit;

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
    if (FUndoList.Count() == 0)
        return;
    auto* item = static_cast<TSxUndoItem*>(FUndoList.Last());
    // The record goes whether its replay succeeds or raises.
    try {
        switch (item->ChangeType()) {
        case ctCut:
        case ctDelete:
            PutTextBack(*item);
            break;
        case ctPaste:
        case ctInsert:
            DeleteRange(*item);
            break;
        default:
            throw Exception(u"This undo-action has not yet been implemented!");
        }
    } catch (...) {
        FUndoList.Remove(item);
        throw;
    }
    FUndoList.Remove(item);
}

void TSxUndoList::PutTextBack(const TSxUndoItem& Item)
{
    TStrings& lines = FOwner->Lines();
    const TPoint at = Item.StartPos();
    const String line = lines.Get(at.Y);
    const auto column = std::size_t(std::clamp(at.X, 0, Integer(line.size())));
    TStringList pieces;
    SxStringToList(line.substr(0, column) + Item.Value() + line.substr(column), sLineBreak, pieces);
    lines.Delete(at.Y);
    for (Integer i = 0; i < pieces.Count(); ++i)
        lines.Insert(at.Y + i, pieces.Get(i));
    FOwner->SetLinePos(Item.CaretPos().Y);
    FOwner->SetCharPos(Item.CaretPos().X);
    if (Item.ChangeType() == ctCut) {
        FOwner->SetSelStart(Item.StartPos());
        FOwner->SetSelEnd(Item.EndPos());
    }
}

void TSxUndoList::DeleteRange(const TSxUndoItem& Item)
{
    FOwner->SetSelStart(Item.StartPos());
    FOwner->SetSelEnd(Item.EndPos());
    String dropped;
    FOwner->DeleteSelected(ctNone, dropped);
    FOwner->SetLinePos(Item.CaretPos().Y);
    FOwner->SetCharPos(Item.CaretPos().X);
}

}  // namespace sx
