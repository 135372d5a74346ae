// The length of the longest line (coLongLines), for the horizontal scroll
// range: a count of lines per length, kept per change as a listener of the
// line store, so that no edit walks the whole text.
#pragma once

#include "codeedit/uSxCodeEditLines.h"

#include <map>
#include <vector>

namespace sx {

class TSxLineLengths final : public TSxLinesListener {
public:
    explicit TSxLineLengths(const TStringList& ALines) : FLines(ALines) {}

    /// The length of the longest line; counted afresh after a bulk load.
    Integer Longest();

    void LineReplacing(Integer Index, std::size_t NewLength) override;
    void LineInserting(Integer Index, std::size_t Length) override;
    void LineDeleting(Integer Index) override;
    void AllLinesReplacing() override { FStale = true; }

private:
    /// Lines shorter than this are counted in a table, longer ones in a map.
    static constexpr std::size_t ShortLimit = 4096;
    void Count(std::size_t ALength, Integer ADelta);
    void Recount();

    const TStringList& FLines;
    std::vector<Integer> FShort = std::vector<Integer>(ShortLimit, 0);
    std::map<std::size_t, Integer> FLong;
    /// The counts are unknown until the next Recount: the lines were replaced in bulk.
    bool FStale = true;
};

}  // namespace sx
