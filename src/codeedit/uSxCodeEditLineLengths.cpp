// Lines per length, and the longest line from them.
#include "codeedit/uSxCodeEditLineLengths.h"

#include <algorithm>

namespace sx {

Integer TSxLineLengths::Longest()
{
    if (FStale)
        Recount();
    if (!FLong.empty())
        return Integer(std::min<std::size_t>(FLong.rbegin()->first, MaxInt));
    for (std::size_t length = ShortLimit; length-- > 0;)
        if (FShort[length] > 0)
            return Integer(length);
    return 0;
}

void TSxLineLengths::Count(std::size_t ALength, Integer ADelta)
{
    if (FStale)
        return;
    if (ALength < ShortLimit) {
        FShort[ALength] += ADelta;
        return;
    }
    const auto entry = FLong.emplace(ALength, 0).first;
    entry->second += ADelta;
    if (entry->second <= 0)
        FLong.erase(entry);
}

void TSxLineLengths::Recount()
{
    std::fill(FShort.begin(), FShort.end(), 0);
    FLong.clear();
    FStale = false;
    for (Integer i = 0; i < FLines.Count(); ++i)
        Count(FLines.Line(i).size(), 1);
}

void TSxLineLengths::LineReplacing(Integer Index, std::size_t NewLength)
{
    Count(FLines.Line(Index).size(), -1);
    Count(NewLength, 1);
}

void TSxLineLengths::LineInserting(Integer, std::size_t Length) { Count(Length, 1); }

void TSxLineLengths::LineDeleting(Integer Index) { Count(FLines.Line(Index).size(), -1); }

}  // namespace sx
