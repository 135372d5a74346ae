// Folding through the widget: the option, the regions and the fold calls,
// each reported as one action.
#include "face/SxCodeEditor.h"

#include "face/SxCodeEditorPrivate.h"

#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodeFolds.h"

using namespace sx;

bool SxCodeEditor::isFoldingEnabled() const { return extOption(int(TSxCodeExtOption::coFolding)); }

void SxCodeEditor::setFoldingEnabled(bool enabled)
{
    const Reporter::Scope scope(*m_reporter);
    setExtOption(int(TSxCodeExtOption::coFolding), enabled);
}

QList<int> SxCodeEditor::foldRegionStarts() const
{
    QList<int> starts;
    for (const TSxFoldRegion& region : m_edit->FoldRegions())
        starts.append(region.First);
    return starts;
}

int SxCodeEditor::foldRegionEnd(int line) const
{
    const std::optional<TSxFoldRegion> region = m_edit->FoldRegionAt(line);
    return region ? region->Last : -1;
}

bool SxCodeEditor::isFolded(int line) const
{
    for (const TSxFoldRegion& region : m_edit->FoldedRegions())
        if (region.First == line)
            return true;
    return false;
}

bool SxCodeEditor::isLineVisible(int line) const { return m_edit->IsLineVisible(line); }

void SxCodeEditor::fold(int line)
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->Fold(line);
}

void SxCodeEditor::unfold(int line)
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->Unfold(line);
}

void SxCodeEditor::toggleFold(int line)
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->ToggleFold(line);
}

void SxCodeEditor::foldAll()
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->FoldAll();
}

void SxCodeEditor::unfoldAll()
{
    const Reporter::Scope scope(*m_reporter);
    m_edit->UnfoldAll();
}
