// The undo records of the code edit control: a bounded stack of changes, each
// saying where a change happened and, for a deletion, what text went.
#pragma once

#include "platform/Classes.h"

namespace sx {

class TSxCodeEdit;

namespace uSxCodeEdit {

enum TSxChangeType { ctNone, ctCut, ctPaste, ctDelete, ctInsert };

}  // namespace uSxCodeEdit

using uSxCodeEdit::TSxChangeType;

class TSxUndoItem : public TObject {
public:
    TSxUndoItem(TSxChangeType AChangeType, TPoint AStartPos, TPoint AEndPos, TPoint ACaretPos, String AValue)
        : FChangeType(AChangeType), FStartPos(AStartPos), FEndPos(AEndPos), FCaretPos(ACaretPos),
          FValue(std::move(AValue)) {}

    TSxChangeType ChangeType() const { return FChangeType; }
    void SetChangeType(TSxChangeType v) { FChangeType = v; }
    TPoint StartPos() const { return FStartPos; }
    void SetStartPos(TPoint v) { FStartPos = v; }
    TPoint EndPos() const { return FEndPos; }
    void SetEndPos(TPoint v) { FEndPos = v; }
    TPoint CaretPos() const { return FCaretPos; }
    void SetCaretPos(TPoint v) { FCaretPos = v; }
    const String& Value() const { return FValue; }
    void SetValue(const String& v) { FValue = v; }

private:
    TSxChangeType FChangeType;
    TPoint FStartPos;
    TPoint FEndPos;
    TPoint FCaretPos;
    String FValue;
};

/// The undo stack of one control: at most FMaxUndo records, oldest first.
class TSxUndoList : public TObject {
public:
    explicit TSxUndoList(TSxCodeEdit* AOwner) : FOwner(AOwner) {}

    /// Pushes a record, dropping the oldest when the list is full, and returns it.
    TSxUndoItem* AddUndo(TSxChangeType AChangeType, TPoint AStartPos, TPoint AEndPos, TPoint ACaretPos,
                         const String& AValue);
    /// Plays the newest record backwards and drops it.
    void Undo();
    Integer Count() const { return FUndoList.Count(); }
    TSxUndoItem* Items(Integer index) const { return static_cast<TSxUndoItem*>(FUndoList.Items(index)); }

private:
    /// Replay of a deletion: the stored text goes back in at the start position.
    void PutTextBack(const TSxUndoItem& Item);
    /// Replay of an insertion: the range it covered is deleted.
    void DeleteRange(const TSxUndoItem& Item);

    Integer FMaxUndo = 100;
    TSxCodeEdit* FOwner;
    TObjectList FUndoList{true};
};

}  // namespace sx
