// The undo records of the code edit control: a bounded stack of changes, each
// saying where a change happened and, for a deletion, what text went. With
// coRedo the steps undone are kept to be played forward again; with
// coGroupUndo a run of typing or of Backspaces undoes as one step.
#pragma once

#include "codeedit/uSxCodeEditLines.h"
#include "platform/Classes.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace sx {

class TSxCodeEdit;

namespace uSxCodeEdit {

enum TSxChangeType { ctNone, ctCut, ctPaste, ctDelete, ctInsert };

/// The kinds of edit that run on in one undo step (coGroupUndo); urNone makes a step of its own.
enum TSxUndoRun { urNone, urTyping, urBackspace };

}  // namespace uSxCodeEdit

using uSxCodeEdit::TSxChangeType;
using uSxCodeEdit::TSxUndoRun;

/// The caret and the two ends of the selection.
struct TSxCaretState {
    TPoint Caret;
    TPoint SelStart;
    TPoint SelEnd;
};

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
    /// Neighbouring records of one group undo as one step; 0 is a step of its own.
    Integer Group() const { return FGroup; }
    void SetGroup(Integer v) { FGroup = v; }
    /// Caret and selection as the edit left them, where a redo puts them back;
    /// HasStateAfter is False until the edit is over.
    bool HasStateAfter() const { return FHasStateAfter; }
    const TSxCaretState& StateAfter() const { return FStateAfter; }
    void SetStateAfter(const TSxCaretState& v)
    {
        FStateAfter = v;
        FHasStateAfter = true;
    }

private:
    TSxChangeType FChangeType;
    TPoint FStartPos;
    TPoint FEndPos;
    TPoint FCaretPos;
    String FValue;
    Integer FGroup = 0;
    bool FHasStateAfter = false;
    TSxCaretState FStateAfter;
};

/// Milliseconds from any fixed start; the pause of a typing run is measured by it.
using TSxUndoClock = std::function<std::int64_t()>;

/// The undo stack of one control: at most Limit records, oldest first. With
/// coRedo it hears of each line change (as the line store's history
/// listener): the changes an undo makes are kept with the records it took
/// back, so that a redo can put the lines back as they were; any other
/// change drops what could be redone.
class TSxUndoList : public TObject, private TSxLinesListener {
public:
    explicit TSxUndoList(TSxCodeEdit* AOwner);
    ~TSxUndoList() override;
    TSxUndoList(const TSxUndoList&) = delete;
    TSxUndoList& operator=(const TSxUndoList&) = delete;

    /// Pushes a record, dropping the oldest when the list is full, and returns it.
    TSxUndoItem* AddUndo(TSxChangeType AChangeType, TPoint AStartPos, TPoint AEndPos, TPoint ACaretPos,
                         const String& AValue);
    /// Plays the newest step backwards and drops it: one record, or with
    /// coGroupUndo the records of the newest group. With coRedo the step is
    /// kept for Redo.
    void Undo();
    /// Plays the step undone last forward again (coRedo).
    void Redo();
    Integer Count() const { return FUndoList.Count(); }
    TSxUndoItem* Items(Integer index) const { return static_cast<TSxUndoItem*>(FUndoList.Items(index)); }
    /// The steps that Redo can play, newest undo last.
    Integer RedoCount() const { return Integer(FRedo.size()); }

    /// The most records the list keeps, and the most that can be redone;
    /// 0 keeps all that memory holds.
    Integer Limit() const { return FLimit; }
    void SetLimit(Integer Value);
    /// The longest pause, in milliseconds, that a run of typing or of
    /// Backspaces may hold and still undo as one step.
    Integer GroupPause() const { return FGroupPause; }
    void SetGroupPause(Integer Value) { FGroupPause = Value; }
    void SetClock(TSxUndoClock Value);

    /// Records added until CloseStep share one group (coGroupUndo). A run of
    /// the kind of the last step goes on in that step's group when the caret
    /// stands where the last step left it, no record came and no undo or
    /// redo ran in between, and the pause since is no longer than GroupPause.
    void OpenStep(TSxUndoRun AKind);
    void CloseStep();
    /// Opens a step for its lifetime when AOn is True.
    class TStepScope {
    public:
        TStepScope(TSxUndoList& AList, bool AOn, TSxUndoRun AKind);
        ~TStepScope();
        TStepScope(const TStepScope&) = delete;
        TStepScope& operator=(const TStepScope&) = delete;

    private:
        TSxUndoList* FList;
    };
    /// Counts the records ever added: the control stamps the records that an
    /// edit added with the caret and selection it left.
    std::uint64_t AddedCount() const { return FAdded; }
    /// Takes the owner's caret and selection as the state after the edit of
    /// AItem (the newest record when null); only with coRedo.
    void NoteStateAfter(TSxUndoItem* AItem = nullptr);
    /// Hears of the changes of ALines (while coRedo is on), or of none when null.
    void Listen(TSxCodeEditLines* ALines);

private:
    /// A line as an undo found it before changing it.
    struct TLineChange {
        enum TKind { lcReplaced, lcInserted, lcDeleted } Kind;
        Integer Index;
        String OldText;
    };
    /// One undone step: its records, newest first, and the line changes its
    /// undo made, in order.
    struct TRedoStep {
        std::vector<std::unique_ptr<TSxUndoItem>> Records;
        std::vector<TLineChange> Changes;
    };

    /// Plays the newest record backwards; it goes whether the replay succeeds
    /// or raises, into AStep when one is given, else freed.
    void UndoRecord(TRedoStep* AStep);
    /// Replay of a deletion: the stored text goes back in at the start position.
    void PutTextBack(const TSxUndoItem& Item);
    /// Replay of an insertion: the range it covered is deleted.
    void DeleteRange(const TSxUndoItem& Item);
    /// Puts the lines back as they were before the step's undo.
    void RevertChanges(const TRedoStep& AStep);
    void Push(TSxUndoItem* AItem);
    /// Drops the oldest records, and the steps furthest from being redone,
    /// beyond the limit.
    void Trim();
    TSxCaretState OwnerState() const;
    void RestoreState(const TSxCaretState& AState);

    void LineReplacing(Integer Index, std::size_t NewLength) override;
    void LineInserting(Integer Index, std::size_t Length) override;
    void LineDeleting(Integer Index) override;
    void AllLinesReplacing() override;
    void Note(TLineChange::TKind AKind, Integer AIndex);

    Integer FLimit = 100;
    TSxCodeEdit* FOwner;
    TObjectList FUndoList{true};

    std::vector<TRedoStep> FRedo;
    /// The step whose undo runs now, if its changes are kept; the changes a
    /// redo makes are not noted.
    TRedoStep* FRecording = nullptr;
    bool FReplaying = false;
    TSxCodeEditLines* FListened = nullptr;
    std::uint64_t FAdded = 0;

    /// The group for records added now, and the last run: its kind, group,
    /// where it left the caret, when, and FHistory at that time.
    Integer FOpenGroup = 0;
    Integer FLastGroup = 0;
    struct TRun {
        TSxUndoRun Kind = uSxCodeEdit::urNone;
        Integer Group = 0;
        TPoint Caret;
        std::int64_t Time = 0;
        std::uint64_t History = 0;
    } FRun;
    /// Changes with every record added and every undo and redo.
    std::uint64_t FHistory = 0;
    Integer FGroupPause = 1000;
    TSxUndoClock FClock;
};

}  // namespace sx
