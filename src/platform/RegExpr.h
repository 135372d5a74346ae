// Regular expressions over UTF-16 text: a PCRE2 pattern compiled once (by
// its JIT where the machine has one), hits searched forward or backward in a
// buffer under limits that end a runaway match, and replacement templates
// expanded from the groups of the last hit. No PCRE2 header shows here.
#pragma once

#include "platform/SysUtils.h"

#include <memory>

namespace sx {

/// A pattern that does not compile: PCRE2's text, and the offset in the
/// pattern (in code units, from 0) where it stopped.
class ERegExprError : public Exception {
public:
    ERegExprError(String message, Integer offset) : Exception(std::move(message)), FOffset(offset) {}
    Integer Offset() const { return FOffset; }

private:
    Integer FOffset;
};

/// A match that ran into a limit (RegExprMatchLimit, the depth, heap or JIT
/// stack) or another error of PCRE2's matcher; the message is PCRE2's text.
class ERegExprLimit : public Exception {
    using Exception::Exception;
};

/// Steps one match may take at one start position before it stops with
/// ERegExprLimit: PCRE2's own default, stated so that it never grows with the
/// library's build. Nested repeats on a line of a few dozen characters reach
/// it within a fraction of a second.
constexpr Integer RegExprMatchLimit = 10'000'000;
/// The interpreter's nesting of backtracking points, and its memory in KiB.
constexpr Integer RegExprDepthLimit = 1'000'000;
constexpr Integer RegExprHeapLimitKiB = 64 * 1024;
/// The JIT's stack grows up to this many bytes.
constexpr Integer RegExprJitStackBytes = 1 << 20;

struct TRegExprOptions {
    bool CaseSensitive = true;
    /// A hit counts only where no ASCII letter or digit stands right before
    /// or behind it: the whole-word rule of the plain search.
    bool WholeWord = false;
};

/// A hit: its first code unit and its length, never 0. NeedsMore: a search
/// told that text follows the buffer stopped at the buffer's end, where more
/// text might give a hit or change one.
struct TRegExprHit {
    Integer Start = -1;
    Integer Length = 0;
    bool NeedsMore = false;
    bool Found() const { return Start >= 0; }
    Integer End() const { return Start + Length; }
};

/// A compiled pattern (PCRE2 syntax, UTF-16, ^ and $ at line breaks too).
/// Hits are never empty. Not copyable: it owns PCRE2's code and match data.
class TRegExpr {
public:
    /// Raises ERegExprError when the pattern does not compile.
    explicit TRegExpr(const String& Pattern, TRegExprOptions Options = {});
    ~TRegExpr();
    TRegExpr(const TRegExpr&) = delete;
    TRegExpr& operator=(const TRegExpr&) = delete;

    /// Whether a hit may hold a line break ("\n"), by PatternMaySpanLines.
    bool SpansLines() const { return FSpansLines; }
    Integer GroupCount() const;

    /// The first hit in Subject[0, Length) that starts at From or later.
    /// With AMoreFollows the buffer's end is not taken for the text's end:
    /// a search that needs to look past it answers NeedsMore and no hit.
    /// Raises ERegExprLimit.
    TRegExprHit Find(const Char* Subject, Integer Length, Integer From, bool AMoreFollows = false);
    /// Of the hits in Subject[0, Limit) that start at From or later, the one
    /// that starts last; $ matches at the limit only where the subject ends
    /// there. Raises ERegExprLimit.
    TRegExprHit FindLast(const Char* Subject, Integer Length, Integer From, Integer Limit);
    /// Whether a hit starts at Start and ends at End (anchored there).
    bool MatchesAt(const Char* Subject, Integer Length, Integer Start, Integer End);

    /// The replacement for the last hit, its subject unchanged since: $0 the
    /// whole hit, $1..$99 a group (two digits when that group exists),
    /// ${name} or ${number} a group; \n a line feed, \t a tab, \\ and \$ the
    /// character. A group that did not take part, or does not exist, gives
    /// nothing; any other backslash or dollar stands for itself.
    String Expand(const String& Template) const;

private:
    struct Impl;
    /// Runs PCRE2's matcher; answers its result code, raising on an error.
    int Match(const Char* Subject, Integer Length, Integer From, Cardinal Flags);
    TRegExprHit Search(const Char* Subject, Integer Length, Integer From, Cardinal Flags);
    String Group(Integer Number) const;
    /// The group number of ${Name}, or -1.
    Integer GroupNumber(const String& Name) const;

    std::unique_ptr<Impl> FImpl;
    bool FSpansLines = false;
    const Char* FSubject = nullptr;
};

/// Whether a hit of the pattern may hold a line feed, by a conservative look
/// at its syntax: only patterns built of parts that can never match one
/// (letters, ., \w, \d, \S, classes that are not negated...) answer False.
bool PatternMaySpanLines(const String& Pattern);

}  // namespace sx
