// The fold structure of a text: the parser's state at every line start and
// the regions that can fold, computed from the parser's tokens through the
// language's fold rules, and kept up to date incrementally. It is scanned
// lazily, only as far as a question needs; an edit rescans from the edited
// line only until the state at a line start comes out as it was before.
// Folding takes its regions from it, exact colours its line states.
#pragma once

#include "codeedit/uSxCodeEditLines.h"
#include "codeedit/uSxCodeFoldRules.h"
#include "platform/LineGap.h"
#include "platform/StringList.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace sx {

/// A region that folds: its first line stays shown, the lines after it up to
/// Last hide. A region spans at least two lines.
struct TSxFoldRegion {
    Integer First = 0;
    Integer Last = 0;
    bool operator==(const TSxFoldRegion&) const = default;
};

class TSxFoldStructure : public TSxLinesListener {
public:
    /// Follows ALines; its owner installs it as a listener of the store.
    explicit TSxFoldStructure(const TStringList& ALines);
    ~TSxFoldStructure() override;

    /// The parser that tokenizes for the structure, and with it the rules of
    /// its language; with none, or one of a language without rules, the
    /// text has no regions, and with a parser the line states are still
    /// scanned. The parser is borrowed for each scan: its feed
    /// and its paint listener are put back afterwards.
    void SetParser(TSxLangParser* AParser);

    /// The region whose first line is ALine, if one starts there and folds.
    std::optional<TSxFoldRegion> RegionAt(Integer ALine);
    /// The innermost region that holds ALine after its first line, or that
    /// starts at it.
    std::optional<TSxFoldRegion> RegionAround(Integer ALine);
    /// The regions whose first line lies from AFrom to ATo, in order of
    /// their first line (an outer region before the ones inside it).
    std::vector<TSxFoldRegion> Regions(Integer AFrom, Integer ATo);
    /// Scans until the records of lines up to ALine, and the start of the
    /// line after it, are known.
    void EnsureScanned(Integer ALine);
    /// The parser's scan state at the start of ALine as far as the text is
    /// scanned (see TSxLangParser::ScanState); 0 beyond, and inside a token
    /// that runs over the line start. It never scans: a paint asks it while
    /// the parser is busy.
    std::uint32_t ScanStateAt(Integer ALine) const;
    TSxLangParser* Parser() const { return FParser; }
    /// Whether the state of every line start is known.
    bool Complete() const { return FValid >= FLines.Count(); }
    /// The lines whose start state is known, from the first on.
    Integer KnownLines() const { return FValid; }
    /// Counts the changes of the structure's input: edits and a new parser.
    std::uint64_t Version() const { return FVersion; }

    // TSxLinesListener: the records follow the lines.
    void LineReplacing(Integer Index, std::size_t NewLength) override;
    void LineInserting(Integer Index, std::size_t Length) override;
    void LineDeleting(Integer Index) override;
    void AllLinesReplacing() override;

private:
    class Scan;
    friend class Scan;

    /// What the scan knows of one line start, and of the line behind it.
    struct LineRecord {
        /// The parser's scan state at the line start; NoRestart when a token
        /// runs over the line start, so that no scan can restart there.
        std::uint32_t ScanState = 0;
        /// The regions open at the line start, an entry of FStacks.
        std::uint32_t Stack = 0;
        /// The rules' memory at the line start.
        std::uint16_t RuleState = 0;
        /// The fewest regions open at any point of the line (its start too).
        std::uint16_t MinDepth = 0;
    };
    static constexpr std::uint32_t NoRestart = 0xFFFFFFFFu;

    /// One entry of the stacks: the innermost region's kind and the entry of
    /// the regions around it. Equal stacks are one entry, so that two line
    /// starts compare in one step.
    struct StackEntry {
        std::uint32_t Outer;
        Integer Kind;
        std::uint16_t Depth;
    };
    std::uint32_t Push(std::uint32_t AStack, Integer AKind);
    const StackEntry& Entry(std::uint32_t AStack) const { return FStacks[AStack]; }
    std::uint16_t Depth(std::uint32_t AStack) const { return FStacks[AStack].Depth; }

    /// Whether more regions are open at the end of ALine than at its fewest:
    /// the line starts a region. Its record and the next are scanned.
    bool IsHeader(Integer ALine) const;
    /// Takes the records' stale parts as unknown: an edit at AIndex.
    void Invalidate(Integer AIndex);

    const TStringList& FLines;
    TSxLangParser* FParser = nullptr;
    std::unique_ptr<TSxFoldRules> FRules;
    /// One record per line start, for lines 0 to FRecords.Length() - 1; the
    /// record at index Count stands for the end of the text.
    LineGap<LineRecord> FRecords;
    /// Records below FValid are known with their lines' MinDepth; the start
    /// state of record FValid is known too.
    Integer FValid = 0;
    /// Records from FDirtyEnd on were known before the last edits and their
    /// lines are unchanged: a scan that reaches one of them in the state it
    /// holds may stop there.
    Integer FDirtyEnd = 0;
    std::vector<StackEntry> FStacks;
    /// The entry of each (outer entry, kind) pair, to find an equal stack.
    std::unordered_map<std::uint64_t, std::uint32_t> FStackIndex;
    /// Answers of RegionAt for the current Version.
    std::unordered_map<Integer, std::optional<TSxFoldRegion>> FRegionCache;
    std::uint64_t FCacheVersion = 0;
    std::uint64_t FVersion = 0;
};

}  // namespace sx
