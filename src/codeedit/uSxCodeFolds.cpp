// The fold structure: one record per line start with the parser's state, the
// regions open there and the rules' memory, so that a scan can restart at any
// line; and per line the fewest regions open within it, from which the
// regions follow. A region starts on a line that ends with more regions open
// than its fewest, and ends on the first line after it whose fewest falls to
// that number again.
#include "codeedit/uSxCodeFolds.h"

#include <algorithm>

namespace sx {

namespace {

/// Regions nested deeper than this are not told apart: an open beyond it is
/// ignored, so that a text of a million "{" costs no more stack entries.
constexpr std::uint16_t MaxDepth = 4000;
/// Lines a question scans ahead at once, so that a long walk over the
/// records does not restart the parser line by line.
constexpr Integer ScanAhead = 4096;

}  // namespace

/// One scan from a line start: borrows the parser, feeds it the lines from
/// there on, hands the code tokens to the rules and writes the records.
class TSxFoldStructure::Scan final : public TSxFoldStack {
public:
    Scan(TSxFoldStructure& AStructure, Integer AFirst)
        : S(AStructure), P(*AStructure.FParser), TokenLine(AFirst), Fed(AFirst),
          SavedFeed(P.OnGetNewBuffer()), SavedPaintInfo(P.OnPaintInfo())
    {
        const LineRecord start = S.FRecords[std::size_t(AFirst)];
        Stack = start.Stack;
        RuleState = start.RuleState;
        MinDepth = S.Depth(Stack);
        P.SetOnPaintInfo(nullptr);
        P.SetOnGetNewBuffer([this, AFirst](bool AReset, String& AText) { return Feed(AReset, AFirst, AText); });
        P.ResetBuffer();
        P.SetRemarkEnd(String());
        P.SetEndLines(true);
        P.SetScanState(start.ScanState);
    }

    ~Scan()
    {
        P.SetOnGetNewBuffer(SavedFeed);
        P.SetOnPaintInfo(SavedPaintInfo);
    }

    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;

    void Open(Integer AKind) override
    {
        if (S.Depth(Stack) < MaxDepth)
            Stack = S.Push(Stack, AKind);
    }

    void Close(TSxFoldKinds AKinds) override
    {
        for (std::uint32_t s = Stack; s != 0; s = S.Entry(s).Outer)
            if ((AKinds & FoldKind(S.Entry(s).Kind)) != 0) {
                Stack = S.Entry(s).Outer;
                MinDepth = std::min(MinDepth, S.Depth(Stack));
                return;
            }
    }

    Integer Top() const override { return S.Entry(Stack).Kind; }

    /// Scans until line ALast is known, the text ends, or the records from
    /// here on come out as they were.
    void Run(Integer ALast)
    {
        String token;
        TColor back, text;
        TFontStyles style;
        bool lineBreak = false;
        while (P.GetNextToken(token, back, text, style, lineBreak)) {
            if (lineBreak) {
                if (EndLine(P.ScanState()) || S.FValid > ALast)
                    return;
            } else if (Fed - 1 > TokenLine) {
                if (SpanLines(Fed - 1))
                    return;
            } else {
                TakeToken(token);
            }
        }
        // A text whose last line the feed could not end with a line break.
        if (TokenLine < S.FLines.Count())
            EndLine(P.ScanState());
    }

private:
    bool Feed(bool AReset, Integer AFirst, String& AText)
    {
        if (AReset) {
            Fed = AFirst;
            return true;
        }
        if (Fed >= S.FLines.Count())
            return false;
        AText.clear();
        S.FLines.Line(Fed).AppendTo(AText);
        AText += u"\r\n";
        ++Fed;
        return true;
    }

    /// A token within its line: a comment or section that goes on at the
    /// next line start opens a block, one that ends closes it; code between
    /// blocks goes to the rules.
    void TakeToken(const String& AToken)
    {
        const bool inBlock = Top() == FoldKindBlock;
        const bool continues = P.ContinuesBlock();
        if (continues && !inBlock)
            Open(FoldKindBlock);
        else if (!continues && inBlock)
            Close(FoldKind(FoldKindBlock));
        if (P.TokenIsCode() && Top() != FoldKindBlock && S.FRules)
            S.FRules->CodeToken(P.TokenKind(), AToken, *this, RuleState);
    }

    /// A token that ran from TokenLine over line ends to ALast is a block of
    /// its own; no scan can restart at the line starts inside it.
    bool SpanLines(Integer ALast)
    {
        if (Top() != FoldKindBlock)
            Open(FoldKindBlock);
        while (TokenLine < ALast)
            if (EndLine(NoRestart))
                return true;
        Close(FoldKind(FoldKindBlock));
        return false;
    }

    /// Line TokenLine is done: its fewest goes into its record, the state
    /// reached into the next line's. Answers True when that record held the
    /// same state already and its line is unchanged: all behind it is known.
    bool EndLine(std::uint32_t AScanState)
    {
        if (S.FRules && AScanState != NoRestart)
            S.FRules->LineEnd(*this, RuleState);
        S.FRecords[std::size_t(TokenLine)].MinDepth = MinDepth;
        const LineRecord next{AScanState, Stack, RuleState, 0};
        const Integer line = ++TokenLine;
        MinDepth = S.Depth(Stack);
        const auto known = Integer(S.FRecords.Length());
        if (line < known) {
            LineRecord& old = S.FRecords[std::size_t(line)];
            if (line >= S.FDirtyEnd && AScanState != NoRestart && old.ScanState == next.ScanState &&
                old.Stack == next.Stack && old.RuleState == next.RuleState) {
                // Everything is known again: the next edit starts a new dirty stretch.
                S.FValid = known - 1;
                S.FDirtyEnd = 0;
                return true;
            }
            old = next;
        } else {
            S.FRecords.Insert(std::size_t(line), next);
        }
        S.FValid = line;
        return false;
    }

    TSxFoldStructure& S;
    TSxLangParser& P;
    /// The line the next token starts on.
    Integer TokenLine;
    /// The next line the feed hands out.
    Integer Fed;
    TSxOnGetNewBuffer SavedFeed;
    TSxOnGetTokenPaintInfo SavedPaintInfo;
    std::uint32_t Stack = 0;
    std::uint16_t RuleState = 0;
    std::uint16_t MinDepth = 0;
};

TSxFoldStructure::TSxFoldStructure(const TStringList& ALines) : FLines(ALines), FRecords(1024)
{
    FStacks.push_back({0, -1, 0});  // entry 0: no region open
    FRecords.Insert(0, LineRecord{});
}

TSxFoldStructure::~TSxFoldStructure() = default;

void TSxFoldStructure::SetParser(TSxLangParser* AParser)
{
    FParser = AParser;
    FRules = AParser ? FoldRulesFor(*AParser) : nullptr;
    AllLinesReplacing();
}

std::uint32_t TSxFoldStructure::Push(std::uint32_t AStack, Integer AKind)
{
    const std::uint64_t key = std::uint64_t(AStack) << 32 | std::uint32_t(AKind);
    const auto found = FStackIndex.find(key);
    if (found != FStackIndex.end())
        return found->second;
    const auto entry = std::uint32_t(FStacks.size());
    FStacks.push_back({AStack, AKind, std::uint16_t(Depth(AStack) + 1)});
    FStackIndex.emplace(key, entry);
    return entry;
}

void TSxFoldStructure::EnsureScanned(Integer ALine)
{
    const Integer count = FLines.Count();
    if (!FParser)
        return;
    ALine = std::min(ALine, count - 1);
    while (FValid <= ALine && FValid < count) {
        // A line start inside a token over several lines is no restart point.
        while (FValid > 0 && FRecords[std::size_t(FValid)].ScanState == NoRestart)
            --FValid;
        Scan(*this, FValid).Run(ALine);
    }
}

bool TSxFoldStructure::IsHeader(Integer ALine) const
{
    return Depth(FRecords[std::size_t(ALine) + 1].Stack) > FRecords[std::size_t(ALine)].MinDepth;
}

std::vector<TSxFoldRegion> TSxFoldStructure::Regions(Integer AFrom, Integer ATo)
{
    std::vector<TSxFoldRegion> found;
    if (!FParser || !FRules)
        return found;
    const Integer count = FLines.Count();
    ATo = std::min(ATo, count - 1);
    // The lines that started a region still open, with their fewest: a line
    // whose fewest falls to one of them ends that region and those inside it.
    struct Opener {
        Integer Line;
        std::uint16_t MinDepth;
    };
    std::vector<Opener> open;
    for (Integer line = std::max(AFrom, 0); line < count; ++line) {
        if (line >= FValid)
            EnsureScanned(line + ScanAhead);
        const std::uint16_t fewest = FRecords[std::size_t(line)].MinDepth;
        const bool header = IsHeader(line);
        for (; !open.empty() && open.back().MinDepth >= fewest; open.pop_back()) {
            // A line that closes a region and opens the next stays shown.
            const Integer last = header ? line - 1 : line;
            if (last > open.back().Line)
                found.push_back({open.back().Line, last});
        }
        if (header && line <= ATo)
            open.push_back({line, fewest});
        if (open.empty() && line >= ATo)
            break;
    }
    std::sort(found.begin(), found.end(), [](const TSxFoldRegion& a, const TSxFoldRegion& b) {
        return a.First < b.First;
    });
    return found;
}

std::optional<TSxFoldRegion> TSxFoldStructure::RegionAt(Integer ALine)
{
    if (FCacheVersion != FVersion) {
        FRegionCache.clear();
        FCacheVersion = FVersion;
    }
    const auto cached = FRegionCache.find(ALine);
    if (cached != FRegionCache.end())
        return cached->second;
    const std::vector<TSxFoldRegion> regions = Regions(ALine, ALine);
    std::optional<TSxFoldRegion> region;
    if (!regions.empty())
        region = regions.front();
    FRegionCache.emplace(ALine, region);
    return region;
}

std::optional<TSxFoldRegion> TSxFoldStructure::RegionAround(Integer ALine)
{
    if (ALine < 0 || ALine >= FLines.Count())
        return std::nullopt;
    if (const std::optional<TSxFoldRegion> own = RegionAt(ALine))
        return own;
    EnsureScanned(ALine);
    // Backwards: a line whose fewest lies below the fewest of every line
    // between it and ALine may hold ALine in its region.
    std::uint16_t between = FRecords[std::size_t(ALine)].MinDepth;
    for (Integer line = ALine - 1; line >= 0 && between > 0; --line) {
        const std::uint16_t fewest = FRecords[std::size_t(line)].MinDepth;
        if (fewest < between) {
            const std::optional<TSxFoldRegion> region = RegionAt(line);
            if (region && region->Last >= ALine)
                return region;
            between = fewest;
        }
    }
    return std::nullopt;
}

std::uint32_t TSxFoldStructure::ScanStateAt(Integer ALine) const
{
    if (ALine < 0 || ALine > FValid)
        return 0;
    const std::uint32_t state = FRecords[std::size_t(ALine)].ScanState;
    return state == NoRestart ? 0 : state;
}

void TSxFoldStructure::Invalidate(Integer AIndex)
{
    ++FVersion;
    FValid = std::min(FValid, AIndex);
    FDirtyEnd = std::max(FDirtyEnd, AIndex + 1);
}

void TSxFoldStructure::LineReplacing(Integer Index, std::size_t)
{
    if (Index < Integer(FRecords.Length()))
        Invalidate(Index);
}

void TSxFoldStructure::LineInserting(Integer Index, std::size_t)
{
    if (Index >= Integer(FRecords.Length()))
        return;
    // The new line starts where the line it pushes down started.
    FRecords.Insert(std::size_t(Index), FRecords[std::size_t(Index)]);
    if (FDirtyEnd > Index)
        ++FDirtyEnd;
    Invalidate(Index);
}

void TSxFoldStructure::LineDeleting(Integer Index)
{
    const auto known = Integer(FRecords.Length());
    if (Index >= known)
        return;
    // The line behind takes the deleted line's start, which stays right.
    if (Index + 1 < known)
        FRecords.Delete(std::size_t(Index) + 1);
    if (FDirtyEnd > Index + 1)
        --FDirtyEnd;
    Invalidate(Index);
}

void TSxFoldStructure::AllLinesReplacing()
{
    ++FVersion;
    FRecords.Clear();
    FRecords.Insert(0, LineRecord{});
    FValid = 0;
    FDirtyEnd = 0;
}

}  // namespace sx
