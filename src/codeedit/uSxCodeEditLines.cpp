// The code edit control's line store: each change is named to the listeners
// before the store makes it.
#include "codeedit/uSxCodeEditLines.h"

namespace sx {

void TSxCodeEditLines::Put(Integer Index, const String& S)
{
    if (Index >= 0 && Index < Count())
        Tell([&](TSxLinesListener& l) { l.LineReplacing(Index, S.size()); });
    TStringList::Put(Index, S);
}

void TSxCodeEditLines::Insert(Integer Index, const String& S)
{
    if (Index >= 0 && Index <= Count())
        Tell([&](TSxLinesListener& l) { l.LineInserting(Index, S.size()); });
    TStringList::Insert(Index, S);
}

void TSxCodeEditLines::Delete(Integer Index)
{
    if (Index >= 0 && Index < Count())
        Tell([&](TSxLinesListener& l) { l.LineDeleting(Index); });
    TStringList::Delete(Index);
}

void TSxCodeEditLines::Clear()
{
    if (Count() > 0)
        AllLinesReplacing();
    TStringList::Clear();
}

void TSxCodeEditLines::SetText(const String& Value)
{
    AllLinesReplacing();
    TStringList::SetText(Value);
}

void TSxCodeEditLines::LoadText(std::u16string_view Value, bool ABreakEndsLine)
{
    AllLinesReplacing();
    TStringList::LoadText(Value, ABreakEndsLine);
}

void TSxCodeEditLines::Assign(const TStrings& Source)
{
    if (&Source != this)
        AllLinesReplacing();
    TStringList::Assign(Source);
}

void TSxCodeEditLines::AllLinesReplacing()
{
    Tell([](TSxLinesListener& l) { l.AllLinesReplacing(); });
}

}  // namespace sx
