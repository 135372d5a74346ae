// The fold rules of the five languages: which code tokens open a region that
// folds and which close one. The fold structure (uSxCodeFolds.h) feeds them
// the parser's code tokens in text order; strings and comments never reach
// them, so that a keyword inside either does not count.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace sx {

/// A set of region kinds, one bit each: a language numbers its kinds from 0
/// to 29 (see FoldKind).
using TSxFoldKinds = std::uint32_t;
constexpr TSxFoldKinds FoldKind(Integer AKind) { return TSxFoldKinds(1) << AKind; }

/// The structure's own kind: a comment, CDATA section or other token that
/// runs over several lines. Rules neither open nor close it.
constexpr Integer FoldKindBlock = 31;

/// The regions open at a point of the text, innermost last, as a rule sees and changes them.
class TSxFoldStack {
public:
    virtual void Open(Integer AKind) = 0;
    /// Closes the innermost open region whose kind is in AKinds, with every
    /// region opened inside it; nothing when no such region is open.
    virtual void Close(TSxFoldKinds AKinds) = 0;
    /// The kind of the innermost open region; -1 when none is.
    virtual Integer Top() const = 0;

protected:
    ~TSxFoldStack() = default;
};

/// One language's rules. They keep no state of their own between calls: what
/// they must remember from token to token (a keyword that opens only when
/// the next token agrees) lives in AState, which starts at 0 and is carried
/// over line ends and stored with each line start.
class TSxFoldRules {
public:
    virtual ~TSxFoldRules() = default;
    /// A code token: its kind as the parser's token enumeration numbers it
    /// (TSxLangParser::TokenKind) and its text. Blanks come here too.
    virtual void CodeToken(Integer AKind, std::u16string_view AText, TSxFoldStack& AStack,
                           std::uint16_t& AState) const = 0;
    /// The end of a line, after its last token.
    virtual void LineEnd(TSxFoldStack& AStack, std::uint16_t& AState) const
    {
        (void)AStack;
        (void)AState;
    }
};

/// The rules for the language of AParser, told by its class; none for a
/// parser of another language, whose text then has no regions.
std::unique_ptr<TSxFoldRules> FoldRulesFor(const TSxLangParser& AParser);

}  // namespace sx
