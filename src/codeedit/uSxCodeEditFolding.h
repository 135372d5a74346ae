// Folding in the control (coFolding): the fold structure of the text, the
// regions the user or the application has folded, and the rows the lines
// show on once the folded regions' lines are hidden.
#pragma once

#include "codeedit/uSxCodeEditLines.h"
#include "codeedit/uSxCodeEditTextArea.h"
#include "codeedit/uSxCodeFolds.h"

#include <functional>
#include <optional>
#include <vector>

namespace sx {

class TSxCodeEditFolding final : public TSxLinesListener, public TSxRowMap {
public:
    explicit TSxCodeEditFolding(const TSxCodeEditLines& ALines);

    void SetParser(TSxLangParser* AParser) { FStructure.SetParser(AParser); }
    TSxFoldStructure& Structure() { return FStructure; }
    /// Called after each change of the folded regions, and of the rows.
    void SetOnChange(std::function<void()> AOnChange) { FOnChange = std::move(AOnChange); }

    /// Brings the folded regions in line with the text after edits: a region
    /// that no longer starts on its line, or that ends elsewhere now, opens
    /// or follows. Cheap when nothing is folded or nothing changed.
    void Sync();

    bool IsFolded(Integer ALine) const;
    /// Folds the region that starts at ALine; False when none starts there.
    bool Fold(Integer ALine);
    /// Unfolds the region folded at ALine; False when none is.
    bool Unfold(Integer ALine);
    /// Folds every region of the text.
    void FoldAll();
    void UnfoldAll();
    /// Unfolds every folded region that hides ALine; answers whether one did.
    bool Reveal(Integer ALine);
    /// The folded regions, in order of their first line.
    const std::vector<TSxFoldRegion>& Folded() const { return FFolded; }

    // TSxRowMap: rows of the shown lines.
    Integer RowOf(Integer ALine) const override;
    Integer LineOfRow(Integer ARow) const override;
    bool IsLineVisible(Integer ALine) const override;
    /// The number of rows: the lines that show.
    Integer RowCount() const { return FLines.Count() - FHiddenCount; }

    // TSxLinesListener: an edit that reaches a hidden line unfolds it first;
    // folded regions move with the lines.
    void LineReplacing(Integer Index, std::size_t NewLength) override;
    void LineInserting(Integer Index, std::size_t Length) override;
    void LineDeleting(Integer Index) override;
    void AllLinesReplacing() override;

private:
    /// A run of hidden lines, with the number hidden before it.
    struct HiddenRun {
        Integer First;
        Integer Last;
        Integer HiddenBefore;
    };
    /// The run that holds ALine, or the last one before it; null for none.
    const HiddenRun* RunAtOrBefore(Integer ALine) const;
    /// Rebuilds the hidden runs and tells the owner.
    void Changed();
    /// The hidden runs from the folded regions.
    void Rebuild();
    /// Shifts the folded regions behind AIndex by ADelta lines.
    void Shift(Integer AIndex, Integer ADelta);

    const TSxCodeEditLines& FLines;
    TSxFoldStructure FStructure;
    std::vector<TSxFoldRegion> FFolded;
    std::vector<HiddenRun> FHidden;
    Integer FHiddenCount = 0;
    std::uint64_t FSyncedVersion = 0;
    std::function<void()> FOnChange;
};

}  // namespace sx
