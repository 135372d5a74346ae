// File load: the whole text replaced by a text file's content.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/uSxCodeEditLines.h"
#include "platform/SxStringStream.h"

#include <memory>

namespace sx {

namespace {

/// What the stream is asked for: its text back as UTF-16, and a buffer hint.
constexpr Integer StreamCapacityHint = 16;

}  // namespace

void TSxCodeEdit::LoadFromFile(const String& aFileName)
{
    // The caret goes first: the selection collapses at (0, 0) before the text
    // changes, and a load that fails leaves the old text with the caret at the top.
    CaretToTop();
    // Freed at the end, however the load ends.
    const auto stream = std::make_unique<TSxStringStream>(CodePages::Utf16LE, StreamCapacityHint);
    stream->LoadFromFile(aFileName, CodePages::Detect);
    TakeStreamLines(*stream);
}

void TSxCodeEdit::LoadFromStream(TSxStringStream& aStream)
{
    CaretToTop();
    TakeStreamLines(aStream);
}

void TSxCodeEdit::CaretToTop()
{
    SetLinePos(0);
    SetCharPos(0);
    FHScrollBar->SetPosition(0);
    FVScrollBar->SetPosition(0);
}

void TSxCodeEdit::TakeStreamLines(TSxStringStream& aStream)
{
    // TakeLines loads in bulk, past the operations the store reports.
    FLines->AllLinesReplacing();
    aStream.TakeLines(*FLines);
    Invalidate();
}

}  // namespace sx
