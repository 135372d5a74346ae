// The code edit control's line store: each change is named to the listener
// before the store makes it.
#include "codeedit/uSxCodeEditLines.h"

namespace sx {

void TSxCodeEditLines::Put(Integer Index, const String& S)
{
    if (FListener && Index >= 0 && Index < Count())
        FListener->LineReplacing(Index, S.size());
    TStringList::Put(Index, S);
}

void TSxCodeEditLines::Insert(Integer Index, const String& S)
{
    if (FListener && Index >= 0 && Index <= Count())
        FListener->LineInserting(Index, S.size());
    TStringList::Insert(Index, S);
}

void TSxCodeEditLines::Delete(Integer Index)
{
    if (FListener && Index >= 0 && Index < Count())
        FListener->LineDeleting(Index);
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

void TSxCodeEditLines::Assign(const TStrings& Source)
{
    if (&Source != this)
        AllLinesReplacing();
    TStringList::Assign(Source);
}

void TSxCodeEditLines::AllLinesReplacing()
{
    if (FListener)
        FListener->AllLinesReplacing();
}

}  // namespace sx
