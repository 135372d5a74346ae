// The bounded undo stack, the steps kept for redo and the runs of typing that
// undo as one step.
#include "codeedit/uSxCodeEditUndo.h"

#include "codeedit/uSxCodeEdit.h"

#include <algorithm>
#include <chrono>

namespace sx {

using namespace uSxCodeEdit;

namespace {

std::int64_t SteadyMilliseconds()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

TSxUndoList::TSxUndoList(TSxCodeEdit* AOwner) : FOwner(AOwner), FClock(SteadyMilliseconds) {}

TSxUndoList::~TSxUndoList() { Listen(nullptr); }

TSxUndoItem* TSxUndoList::AddUndo(TSxChangeType AChangeType, TPoint AStartPos, TPoint AEndPos, TPoint ACaretPos,
                                  const String& AValue)
{
    auto* item = new TSxUndoItem(AChangeType, AStartPos, AEndPos, ACaretPos, AValue);
    item->SetGroup(FOpenGroup);
    Push(item);
    ++FAdded;
    ++FHistory;
    FRedo.clear();
    return item;
}

void TSxUndoList::Push(TSxUndoItem* AItem)
{
    if (FLimit > 0 && FUndoList.Count() >= FLimit)
        FUndoList.Delete(0);
    FUndoList.Add(AItem);
}

void TSxUndoList::Undo()
{
    ++FHistory;
    if (FUndoList.Count() == 0)
        return;
    const Integer group = Items(Count() - 1)->Group();
    TRedoStep step;
    TRedoStep* kept = FListened ? &step : nullptr;
    if (kept && !Items(Count() - 1)->HasStateAfter())
        NoteStateAfter();
    try {
        do
            UndoRecord(kept);
        while (group != 0 && Count() > 0 && Items(Count() - 1)->Group() == group);
    } catch (...) {
        FRedo.clear();  // the lines no longer are what the kept steps expect
        throw;
    }
    if (kept) {
        FRedo.push_back(std::move(step));
        Trim();
    }
}

void TSxUndoList::UndoRecord(TRedoStep* AStep)
{
    auto* item = static_cast<TSxUndoItem*>(FUndoList.Last());
    FRecording = AStep;
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
        FRecording = nullptr;
        FUndoList.Remove(item);
        throw;
    }
    FRecording = nullptr;
    if (AStep)
        AStep->Records.emplace_back(static_cast<TSxUndoItem*>(FUndoList.Extract(item)));
    else
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

void TSxUndoList::Redo()
{
    ++FHistory;
    if (FRedo.empty())
        return;
    TRedoStep step = std::move(FRedo.back());
    FRedo.pop_back();
    FOwner->Changed();
    RevertChanges(step);
    const TSxUndoItem* newest = step.Records.front().get();
    for (auto record = step.Records.rbegin(); record != step.Records.rend(); ++record)
        Push(record->release());
    if (newest->HasStateAfter())
        RestoreState(newest->StateAfter());
}

void TSxUndoList::RevertChanges(const TRedoStep& AStep)
{
    TStrings& lines = FOwner->Lines();
    FReplaying = true;
    try {
        for (auto change = AStep.Changes.rbegin(); change != AStep.Changes.rend(); ++change) {
            switch (change->Kind) {
            case TLineChange::lcReplaced: lines.Put(change->Index, change->OldText); break;
            case TLineChange::lcInserted: lines.Delete(change->Index); break;
            case TLineChange::lcDeleted: lines.Insert(change->Index, change->OldText); break;
            }
        }
    } catch (...) {
        FReplaying = false;
        FRedo.clear();
        throw;
    }
    FReplaying = false;
}

void TSxUndoList::SetLimit(Integer Value)
{
    FLimit = std::max(Value, 0);
    Trim();
}

void TSxUndoList::Trim()
{
    if (FLimit == 0)
        return;
    while (FUndoList.Count() > FLimit)
        FUndoList.Delete(0);
    std::size_t records = 0;
    for (const TRedoStep& step : FRedo)
        records += step.Records.size();
    while (records > std::size_t(FLimit)) {
        records -= FRedo.front().Records.size();
        FRedo.erase(FRedo.begin());
    }
}

void TSxUndoList::SetClock(TSxUndoClock Value) { FClock = Value ? std::move(Value) : SteadyMilliseconds; }

void TSxUndoList::OpenStep(TSxUndoRun AKind)
{
    const std::int64_t now = FClock();
    const bool goesOn = AKind != urNone && AKind == FRun.Kind && FRun.History == FHistory &&
                        FRun.Caret == OwnerState().Caret && now - FRun.Time <= FGroupPause;
    FOpenGroup = goesOn ? FRun.Group : ++FLastGroup;
    FRun.Kind = AKind;
    FRun.Group = FOpenGroup;
    FRun.Time = now;
}

void TSxUndoList::CloseStep()
{
    FOpenGroup = 0;
    FRun.Caret = OwnerState().Caret;
    FRun.History = FHistory;
}

TSxUndoList::TStepScope::TStepScope(TSxUndoList& AList, bool AOn, TSxUndoRun AKind) : FList(AOn ? &AList : nullptr)
{
    if (FList)
        FList->OpenStep(AKind);
}

TSxUndoList::TStepScope::~TStepScope()
{
    if (FList)
        FList->CloseStep();
}

void TSxUndoList::NoteStateAfter(TSxUndoItem* AItem)
{
    if (!FListened)
        return;
    if (!AItem && Count() > 0)
        AItem = Items(Count() - 1);
    if (AItem)
        AItem->SetStateAfter(OwnerState());
}

TSxCaretState TSxUndoList::OwnerState() const
{
    return {Point(FOwner->CharPos(), FOwner->LinePos()), FOwner->SelStart(), FOwner->SelEnd()};
}

void TSxUndoList::RestoreState(const TSxCaretState& AState)
{
    FOwner->SetLinePos(AState.Caret.Y);
    FOwner->SetCharPos(AState.Caret.X);
    FOwner->SetSelStart(AState.SelStart);
    FOwner->SetSelEnd(AState.SelEnd);
}

void TSxUndoList::Listen(TSxCodeEditLines* ALines)
{
    if (FListened)
        FListened->SetHistoryListener(nullptr);
    FListened = ALines;
    if (FListened)
        FListened->SetHistoryListener(this);
    else
        FRedo.clear();
}

void TSxUndoList::LineReplacing(Integer Index, std::size_t) { Note(TLineChange::lcReplaced, Index); }

void TSxUndoList::LineInserting(Integer Index, std::size_t) { Note(TLineChange::lcInserted, Index); }

void TSxUndoList::LineDeleting(Integer Index) { Note(TLineChange::lcDeleted, Index); }

// An undo replays line by line, so a change of every line is always a new edit.
void TSxUndoList::AllLinesReplacing() { FRedo.clear(); }

void TSxUndoList::Note(TLineChange::TKind AKind, Integer AIndex)
{
    if (FReplaying)
        return;
    if (!FRecording) {
        FRedo.clear();
        return;
    }
    FRecording->Changes.push_back(
        {AKind, AIndex, AKind == TLineChange::lcInserted ? String() : FListened->Get(AIndex)});
}

}  // namespace sx
