// The code edit control's line store: a TStringList that names the lines
// each change touches to its listeners, so that the screen reader support can
// follow the text without reading all of it, and the undo list can keep what
// an undo changed for a redo.
#pragma once

#include "platform/StringList.h"

#include <cstddef>
#include <cstdint>

namespace sx {

/// Hears of each change of a TSxCodeEditLines just before it is made, while
/// the lines still hold their old text.
class TSxLinesListener {
public:
    virtual ~TSxLinesListener() = default;
    /// Line Index gets a text of NewLength characters.
    virtual void LineReplacing(Integer Index, std::size_t NewLength) = 0;
    /// A line of Length characters comes in at Index (Index may be Count).
    virtual void LineInserting(Integer Index, std::size_t Length) = 0;
    virtual void LineDeleting(Integer Index) = 0;
    /// Every line is about to be replaced at once.
    virtual void AllLinesReplacing() = 0;
};

/// A TStringList that names the lines of each change to its listeners, if it
/// has any: the screen reader's and the undo history's. Without them it costs
/// two tests per change. A bulk Load
/// passes none of these operations, so whoever calls Load calls
/// AllLinesReplacing first.
class TSxCodeEditLines : public TStringList {
public:
    using TStringList::TStringList;

    void SetListener(TSxLinesListener* Listener) { FListener = Listener; }
    /// Counts the changes made so far, so that a host can tell whether the
    /// text changed between two looks without comparing it.
    std::uint64_t ChangeCount() const { return FChangeCount; }
    void SetHistoryListener(TSxLinesListener* Listener) { FHistoryListener = Listener; }
    /// The folding's listener, told before the others.
    void SetFoldListener(TSxLinesListener* Listener) { FFoldListener = Listener; }
    /// The listener that counts line lengths (the longest line).
    void SetLengthListener(TSxLinesListener* Listener) { FLengthListener = Listener; }

    void Put(Integer Index, const String& S) override;
    void Insert(Integer Index, const String& S) override;
    void Delete(Integer Index) override;
    void Clear() override;
    void SetText(const String& Value) override;
    void LoadText(std::u16string_view Value, bool ABreakEndsLine);
    void Assign(const TStrings& Source) override;
    void AllLinesReplacing();

private:
    /// Calls ATell with each listener there is.
    template <class F>
    void Tell(F ATell)
    {
        ++FChangeCount;
        if (FFoldListener)
            ATell(*FFoldListener);
        if (FListener)
            ATell(*FListener);
        if (FHistoryListener)
            ATell(*FHistoryListener);
        if (FLengthListener)
            ATell(*FLengthListener);
    }

    TSxLinesListener* FListener = nullptr;
    TSxLinesListener* FHistoryListener = nullptr;
    TSxLinesListener* FFoldListener = nullptr;
    TSxLinesListener* FLengthListener = nullptr;
    std::uint64_t FChangeCount = 0;
};

}  // namespace sx
