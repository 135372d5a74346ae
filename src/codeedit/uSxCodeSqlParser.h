// The SQL tokenizer: keywords found through a letter tree, quoted values,
// numbers, parameters, line and block comments; all else is unknown text.
#pragma once

#include "uSxCodeParser.h"

#include <array>
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

constexpr std::size_t SxSqlKeyWordCount = 176;
/// The keywords; each parser reads them once, when it is made.
extern std::array<String, SxSqlKeyWordCount> SxSqlKeyWords;

/// Registers TSxCodeSqlParser and gives both tables their start values.
void Initialization();
/// Releases the strings of both tables and unregisters the class.
void Finalization();

}  // namespace uSxCodeSqlParser

/// One node of the keyword letter tree: a child per character from 'A' (index
/// 0) to '_' (index 30), and at index 31 the end mark of a keyword.
struct TSxSqlKeywordNode {
    std::array<TSxSqlKeywordNode*, 32> Entries{};
};

/// Every node of a letter tree in the order of creation; frees them from the
/// last to the first.
class TSxSqlKeywordNodeList {
public:
    TSxSqlKeywordNodeList() = default;
    ~TSxSqlKeywordNodeList();
    // Deleted so that two lists never free the same nodes.
    TSxSqlKeywordNodeList(const TSxSqlKeywordNodeList&) = delete;
    TSxSqlKeywordNodeList& operator=(const TSxSqlKeywordNodeList&) = delete;

    /// Makes a node with all entries empty and keeps it.
    TSxSqlKeywordNode* NewNode();
    Integer Count() const { return Integer(FNodes.size()); }

private:
    std::vector<TSxSqlKeywordNode*> FNodes;
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
    /// The number of nodes of this parser's letter tree, end marks included.
    Integer KeywordNodeCount() const { return FKeywordArrayList.Count(); }

protected:
    void Reset() override;
    virtual uSxCodeSqlParser::TSxSqlToken InternalGetNextToken(String& Token);

    /// Inside a block comment: the state a line start carries besides LineKind.
    bool FInComment = false;

private:
    void BuildKeywordTree();
    void AddKeyword(const String& AKeyWord);
    uSxCodeSqlParser::TSxSqlToken ScanToken(Char C, String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadCommentPiece(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadLineComment(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadQuotedValue(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadNumber(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadParameter(String& Token);
    uSxCodeSqlParser::TSxSqlToken ReadWord(Char C, String& Token);
    /// The character the token just read consumed last.
    Char LastConsumed(const String& Token) const;

    TSxSqlKeywordNode* FKeywordArray = nullptr;
    TSxSqlKeywordNodeList FKeywordArrayList;
    Char FLastChar = u' ';
};

}  // namespace sx
