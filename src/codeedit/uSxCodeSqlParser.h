// The SQL tokenizer: keywords found through a letter tree, quoted values,
// numbers, parameters, line and block comments; all else is unknown text.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <array>
#include <cstdint>
#include <vector>

namespace sx {

namespace uSxCodeSqlParser {

enum TSxSqlToken {
    vtLineBreak,
    vtUnknown,
    vtInvalid,
    vtEndOfFile,
    vtKeyWord,
    vtFieldName,
    vtQuotedValue,
    vtNumber,
    vtParameter,
    vtComment
};

/// A set of SQL token kinds, two bytes wide.
using TSxSqlTokens = TSet<TSxSqlToken, 16>;
using TSxSqlTokenInfo = TSxTokenInfo<TSxSqlToken>;

/// The colours of all SQL parsers of the process; row 2 is the default row.
extern std::array<TSxSqlTokenInfo, 8> DrawInfo;
/// The table as it stands at start ("Classic"), before an IDE's colours or a theme change it.
std::array<TSxSqlTokenInfo, 8> StockDrawInfo();

constexpr std::size_t SxSqlKeyWordCount = 176;
/// The keywords; each parser reads them once, when it is made.
extern std::array<String, SxSqlKeyWordCount> SxSqlKeyWords;

/// Registers TSxCodeSqlParser and gives both tables their start values.
void Initialization();
/// Releases the strings of both tables and unregisters the class.
void Finalization();

}  // namespace uSxCodeSqlParser

/// The keyword letter tree: a node for each beginning of a keyword, with a
/// child for each character from 'A' (index 0) to '_' (index 30) and a mark
/// where a keyword ends. The nodes stand in one array and name their children
/// by index, so that a walk stays within a few cache lines.
class TSxSqlKeywordTree {
public:
    using NodeIndex = std::uint32_t;
    /// No node: where a walk leaves the tree.
    static constexpr NodeIndex None = 0;
    static constexpr NodeIndex Root = 1;

    TSxSqlKeywordTree();

    /// Adds a keyword in upper case; raises Exception for a character that
    /// has no place in a node, after upper-casing anything outside 'A' to '_'.
    void Add(const String& AKeyWord);
    /// The child of ANode for a letter or the underscore, in either case; None when there is none.
    NodeIndex Child(NodeIndex ANode, Char c) const
    {
        return FNodes[ANode].Children[c >= u'a' ? std::size_t(c - u'a') : std::size_t(c - u'A')];
    }
    /// Whether a keyword ends at ANode.
    bool EndsKeyword(NodeIndex ANode) const { return FNodes[ANode].EndsKeyword; }

private:
    struct Node {
        std::array<NodeIndex, 31> Children{};
        bool EndsKeyword = false;
    };
    std::vector<Node> FNodes;
};

class TSxCodeSqlParser : public TSxLangParser {
    SX_DECLARE_CLASS
public:
    /// Builds the letter tree from SxSqlKeyWords; raises Exception for a
    /// keyword character that the tree has no place for.
    explicit TSxCodeSqlParser(TComponent* aOwner);

    String GetLanguage() override;
    bool GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override;
    /// The next Count characters, left in the input.
    String PeekString(Integer Count);

    std::uint32_t ScanState() const override;
    void SetScanState(std::uint32_t AState) override;
    bool ContinuesBlock() const override;

protected:
    void Reset() override;
    virtual uSxCodeSqlParser::TSxSqlToken InternalGetNextToken(String& Token);

    /// Inside a block comment: the state a line start carries besides LineKind.
    bool FInComment = false;

private:
    uSxCodeSqlParser::TSxSqlToken ScanToken(Char C, String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadCommentPiece(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadQuotedValue(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadNumber(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadWord(Char C, String& Token);

    /// The keywords of SxSqlKeyWords as they were when the parser was made.
    TSxSqlKeywordTree FKeywords;
    /// The character the previous token consumed last; a blank behind a line
    /// break and after Reset. Words, numbers and parameters start only behind
    /// some characters.
    Char FLastChar = u' ';
};

}  // namespace sx
