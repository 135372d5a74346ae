// A driver of the editing engine for randomized tests: bytes become a
// starting text and a sequence of operations on a fresh control, as a user
// and an application drive it, with the control's invariants checked after
// every step and an undo round trip at the end. The fuzz target feeds it the
// fuzzer's bytes, the ordinary suite bytes from a seeded generator.
#pragma once

#include "codeedit/uSxCodeEdit.h"
#include "support/ByteReader.h"
#include "support/ModalAnswers.h"
#include "support/RenderHelpers.h"

#include <functional>
#include <string>

namespace sx::test {

/// The control with a count of the messages it handles, so that a driver
/// can tell when a chain of posted messages has run out.
class CountingCodeEdit : public TSxCodeEdit {
public:
    using TSxCodeEdit::TSxCodeEdit;
    void Dispatch(TMessage& Message) override
    {
        ++Dispatched;
        TSxCodeEdit::Dispatch(Message);
    }
    using TSxCodeEdit::HasSelection;
    int Dispatched = 0;
};

/// Lines with trailing white space cut and empty lines at the end dropped:
/// the text as undo promises to give it back, since the control trims lines
/// and adds fill spaces and empty lines that no record holds.
String UndoComparable(const String& text);

class EditingSession {
public:
    /// AOnFailure receives a description of a broken invariant and the steps so far.
    EditingSession(Host& AHost, std::function<void(const std::string&)> AOnFailure);
    ~EditingSession();
    EditingSession(const EditingSession&) = delete;
    EditingSession& operator=(const EditingSession&) = delete;

    /// Reads a starting text, then up to AMaxSteps operations until the bytes run out.
    void Run(ByteReader& AIn, int AMaxSteps);
    /// Whether the last run ended with the undo round trip checked.
    bool RoundTripChecked() const { return FRoundTripChecked; }

private:
    enum class TStep { Place, Select, Type, Enter, Tab, Backspace, Key, Clipboard, Undo, ReadOnly, ReplaceLines,
                       Insert, Search, SetClipboard, Count };

    void Step(TStep AStep);
    void NoteDeletionFromVirtualSpace(TStep AStep);
    void CheckInvariants();
    void CheckSelectionLength();
    void FinishWithUndo();
    void Check(bool ACondition, const std::string& AWhat);
    void Lossy(const char* AReason);

    // The steps.
    void PlaceCaret();
    void SelectRange();
    void TypeChars();
    void SendChar(Char AChar);
    void Backspace();
    void Enter();
    void PressKey();
    void ClipboardCommand();
    void UndoOnce(bool AByKey);
    void ReplaceLines();
    void InsertCode();
    void SearchOrReplace();
    void SetClipboardContent();

    // Choices read from the bytes.
    Integer LineChoice();
    Integer ColumnChoice(Integer ALine);
    String TextChoice(std::size_t AMax);
    Char CharChoice();

    /// Runs posted messages until none is left, failing if a chain never ends.
    void PumpPostedMessages();
    /// True when undoing the newest record must raise the line store's index error.
    bool UndoMustFail();
    String LineOrEmpty(Integer ALine);

    Host& FHost;
    std::function<void(const std::string&)> FOnFailure;
    CountingCodeEdit* FEdit = nullptr;
    ModalScript FModals;
    ByteReader* FIn = nullptr;
    std::string FLog;
    String FStartText;
    const char* FLossy = nullptr;
    bool FCaretStale = false;
    bool FRoundTripChecked = false;
    /// Only the first broken invariant is reported; the run stops behind it.
    bool FFailed = false;
    /// Exceptions that reached the framework's event boundary during the step.
    std::vector<std::string> FReported;
    /// What the running step may raise: the index error of a stale undo record,
    /// and the error of a line grown beyond what a line can hold.
    bool FMayRaiseListError = false;
    bool FMayRaiseOutOfMemory = false;
};

}  // namespace sx::test
