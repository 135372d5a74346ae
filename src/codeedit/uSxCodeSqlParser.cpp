// The SQL tokenizer: the keyword letter tree, the scanner and its readers,
// and the process-wide colour and keyword tables.
#include "codeedit/uSxCodeSqlParser.h"

#include "codeedit/SxScanner.h"

namespace sx {

namespace uSxCodeSqlParser {

std::array<TSxSqlTokenInfo, 8> StockDrawInfo()
{
    return {{
        {u"WhiteSpace", clWindowText, clWindow, {}, {}},
        {u"Text", clWindowText, clWindow, {vtUnknown}, {}},
        {u"KeyWords", clRed, clWindow, {vtKeyWord}, {}},
        {u"QuotedValues", clBlue, clWindow, {vtQuotedValue}, {}},
        {u"Numbers", clBlue, clWindow, {vtNumber}, {}},
        {u"Parameters", clNavy, clWindow, {vtParameter}, {}},
        {u"Fieldnames", clWindowText, clWindow, {vtFieldName}, {}},
        {u"Comment", clGreen, clWindow, {vtComment}, {}},
    }};
}

namespace {

// By rows of three alphabetical columns, with NEXT added at the end.
constexpr std::array<const char16_t*, SxSqlKeyWordCount> StockKeyWords = {
    u"ADD", u"EXCEPT", u"PERCENT",
    u"ALL", u"EXEC", u"PLAN",
    u"ALTER", u"EXECUTE", u"PRECISION",
    u"AND", u"EXISTS", u"PRIMARY",
    u"ANY", u"EXIT", u"PRINT",
    u"AS", u"FETCH", u"PROC",
    u"ASC", u"FILE", u"PROCEDURE",
    u"AUTHORIZATION", u"FILLFACTOR", u"PUBLIC",
    u"BACKUP", u"FOR", u"RAISERROR",
    u"BEGIN", u"FOREIGN", u"READ",
    u"BETWEEN", u"FREETEXT", u"READTEXT",
    u"BREAK", u"FREETEXTTABLE", u"RECONFIGURE",
    u"BROWSE", u"FROM", u"REFERENCES",
    u"BULK", u"FULL", u"REPLICATION",
    u"BY", u"FUNCTION", u"RESTORE",
    u"CASCADE", u"GOTO", u"RESTRICT",
    u"CASE", u"GRANT", u"RETURN",
    u"CHECK", u"GROUP", u"REVOKE",
    u"CHECKPOINT", u"HAVING", u"RIGHT",
    u"CLOSE", u"HOLDLOCK", u"ROLLBACK",
    u"CLUSTERED", u"IDENTITY", u"ROWCOUNT",
    u"COALESCE", u"IDENTITY_INSERT", u"ROWGUIDCOL",
    u"COLLATE", u"IDENTITYCOL", u"RULE",
    u"COLUMN", u"IF", u"SAVE",
    u"COMMIT", u"IN", u"SCHEMA",
    u"COMPUTE", u"INDEX", u"SELECT",
    u"CONSTRAINT", u"INNER", u"SESSION_USER",
    u"CONTAINS", u"INSERT", u"SET",
    u"CONTAINSTABLE", u"INTERSECT", u"SETUSER",
    u"CONTINUE", u"INTO", u"SHUTDOWN",
    u"CONVERT", u"IS", u"SOME",
    u"CREATE", u"JOIN", u"STATISTICS",
    u"CROSS", u"KEY", u"SYSTEM_USER",
    u"CURRENT", u"KILL", u"TABLE",
    u"CURRENT_DATE", u"LEFT", u"TEXTSIZE",
    u"CURRENT_TIME", u"LIKE", u"THEN",
    u"CURRENT_TIMESTAMP", u"LINENO", u"TO",
    u"CURRENT_USER", u"LOAD", u"TOP",
    u"CURSOR", u"NATIONAL", u"",
    u"TRAN", u"DATABASE", u"NOCHECK",
    u"TRANSACTION", u"DBCC", u"NONCLUSTERED",
    u"TRIGGER", u"DEALLOCATE", u"NOT",
    u"TRUNCATE", u"DECLARE", u"NULL",
    u"TSEQUAL", u"DEFAULT", u"NULLIF",
    u"UNION", u"DELETE", u"OF",
    u"UNIQUE", u"DENY", u"OFF",
    u"UPDATE", u"DESC", u"OFFSETS",
    u"UPDATETEXT", u"DISK", u"ON",
    u"USE", u"DISTINCT", u"OPEN",
    u"USER", u"DISTRIBUTED", u"OPENDATASOURCE",
    u"VALUES", u"DOUBLE", u"OPENQUERY",
    u"VARYING", u"DROP", u"OPENROWSET",
    u"VIEW", u"DUMMY", u"OPENXML",
    u"WAITFOR", u"DUMP", u"OPTION",
    u"WHEN", u"ELSE", u"OR",
    u"WHERE", u"END", u"ORDER",
    u"WHILE", u"ERRLVL", u"OUTER",
    u"WITH", u"ESCAPE", u"OVER",
    u"WRITETEXT", u"NEXT",
};

std::array<String, SxSqlKeyWordCount> MakeStockKeyWords()
{
    std::array<String, SxSqlKeyWordCount> words;
    for (std::size_t i = 0; i < SxSqlKeyWordCount; ++i)
        words[i] = StockKeyWords[i];
    return words;
}

}  // namespace

std::array<TSxSqlTokenInfo, 8> DrawInfo = StockDrawInfo();
std::array<String, SxSqlKeyWordCount> SxSqlKeyWords = MakeStockKeyWords();

void Initialization()
{
    DrawInfo = StockDrawInfo();
    SxSqlKeyWords = MakeStockKeyWords();
    RegisterClass(TSxCodeSqlParser::ClassInfo());
}

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    for (String& word : SxSqlKeyWords)
        word = String();
    UnRegisterClass(TSxCodeSqlParser::ClassInfo());
}

}  // namespace uSxCodeSqlParser

using namespace uSxCodeSqlParser;

namespace {

using scan::Blank;
using scan::CR;
using scan::LF;

constexpr scan::Language<TSxSqlToken, 8> Sql{&DrawInfo, 2, vtInvalid, vtLineBreak, vtEndOfFile, vtComment, vtQuotedValue};

/// The highest child index a keyword character may take ('_' - 'A').
constexpr Integer LastChildIndex = 30;

/// Characters that continue a number: digits, the comma and the period.
constexpr scan::CharSet NumberChars = scan::Digits | scan::CharSet(",.");
/// Characters behind which a word, a number or a parameter may start.
constexpr scan::CharSet BeforeWord(" (),");
constexpr scan::CharSet BeforeNumber(" (,.");
constexpr scan::CharSet BeforeParameter(" (,");

bool IsLineEnd(Char c) { return c == CR || c == LF; }

}  // namespace

TSxSqlKeywordTree::TSxSqlKeywordTree() : FNodes(2) {}

void TSxSqlKeywordTree::Add(const String& AKeyWord)
{
    const String W = UpperCase(AKeyWord);
    NodeIndex node = Root;
    for (const Char c : W) {
        const Integer index = Integer(c) - 65;
        if (index < 0 || index > LastChildIndex)
            throw Exception(u"Invalid Character \"" + String(1, c) + u"\" in keyword \"" + W + u"\" ");
        NodeIndex child = FNodes[node].Children[std::size_t(index)];
        if (child == None) {
            child = NodeIndex(FNodes.size());
            FNodes.emplace_back();
            FNodes[node].Children[std::size_t(index)] = child;
        }
        node = child;
    }
    // An empty word marks the root, where no walk ends.
    FNodes[node].EndsKeyword = true;
}

SX_DEFINE_CLASS(TSxCodeSqlParser, TSxLangParser)

TSxCodeSqlParser::TSxCodeSqlParser(TComponent* aOwner) : TSxLangParser(aOwner)
{
    for (const String& word : SxSqlKeyWords)
        FKeywords.Add(word);
}

String TSxCodeSqlParser::GetLanguage() { return u"Sql"; }

void TSxCodeSqlParser::Reset()
{
    TSxLangParser::Reset();
    FLastChar = Blank;
    FInComment = false;
}

// An open block comment rides above LineKind's 16 bits.
std::uint32_t TSxCodeSqlParser::ScanState() const
{
    return std::uint32_t(FLineKind & 0xFFFF) | (FInComment ? 1u << 16 : 0u);
}

void TSxCodeSqlParser::SetScanState(std::uint32_t AState)
{
    FLineKind = Integer(AState & 0xFFFF);
    FInComment = (AState >> 16) != 0;
}

bool TSxCodeSqlParser::ContinuesBlock() const { return FInComment; }

String TSxCodeSqlParser::PeekString(Integer Count) { return PeekChars(Count); }

bool TSxCodeSqlParser::GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                                    bool& LineBreak)
{
    return scan::HandOut(*this, Sql, InternalGetNextToken(Token), BackGround, TextColor, FontStyle, LineBreak);
}

TSxSqlToken TSxCodeSqlParser::InternalGetNextToken(String& Token)
{
    const Char C = ReadChar();
    if (C == 0) {
        Token.clear();
        return vtEndOfFile;
    }
    Token.assign(1, C);
    TSxSqlToken result = vtUnknown;  // a lone LF ends no line
    if (C == CR) {
        scan::TakeNext(*this, LF, Token);
        result = vtLineBreak;
    } else if (C != LF) {
        // inside a block comment nothing else is recognised
        result = FInComment ? ReadCommentPiece(Token) : ScanToken(C, Token);
    }
    // The last character a token consumed is the last of its text, or the
    // control character whose token has no text.
    FLastChar = result == vtLineBreak ? Blank : Token.empty() ? C : Token.back();
    return result;
}

TSxSqlToken TSxCodeSqlParser::ScanToken(Char C, String& Token)
{
    switch (C) {
    case u'/':
        return scan::TakeNext(*this, u'*', Token) ? ReadCommentPiece(Token) : vtUnknown;
    case u'-':
        if (!scan::TakeNext(*this, u'-', Token))
            return vtUnknown;
        scan::ReadWhile(*this, [](Char c) { return c >= Blank; }, Token);  // any control character ends it
        return vtComment;
    case u'\'':
        return ReadQuotedValue(Token);
    case u'@':
        if (!BeforeParameter.Contains(FLastChar))
            return vtUnknown;
        scan::ReadWhile(*this, [](Char c) { return c > Blank; }, Token);  // only white space ends it
        return vtParameter;
    default:
        break;
    }
    if (scan::Digits.Contains(C))
        return BeforeNumber.Contains(FLastChar) ? ReadNumber(Token) : vtUnknown;
    if (scan::Letters.Contains(C))
        return BeforeWord.Contains(FLastChar) ? ReadWord(C, Token) : vtUnknown;
    if (C < Blank)
        Token.clear();  // control characters are not drawn
    return vtUnknown;
}

// One line's share of a block comment at most; Token holds what is read of
// it. next is the character behind Token, read ahead.
TSxSqlToken TSxCodeSqlParser::ReadCommentPiece(String& Token)
{
    Char next = ReadChar();
    bool readOn = !(Token.back() == u'*' && next == u'/') && !IsLineEnd(next);
    while (readOn) {
        const Char c = next;
        Token += c;
        next = ReadChar();
        readOn = c != 0 && !(c == u'*' && next == u'/') && !IsLineEnd(next);
    }
    FInComment = next != u'/';
    if (FInComment)
        PushChar(next);
    else
        Token += next;
    return vtComment;
}

// Up to the closing quote, or to the end of the line when there is none.
TSxSqlToken TSxCodeSqlParser::ReadQuotedValue(String& Token)
{
    for (;;) {
        const Char c = ReadChar();
        if (c < Blank) {
            PushChar(c);
            break;
        }
        Token += c;
        if (c == u'\'')
            break;
    }
    return vtQuotedValue;
}

// A run of digits, commas and periods is a number only if white space or ')' follows.
TSxSqlToken TSxCodeSqlParser::ReadNumber(String& Token)
{
    const Char end = scan::ReadWhile(*this, NumberChars, Token);
    return end <= Blank || end == u')' ? vtNumber : vtUnknown;
}

// Walks the letter tree. The letter that leads out of the tree is part of the
// word already, so a word longer than every keyword it starts with is unknown.
TSxSqlToken TSxCodeSqlParser::ReadWord(Char C, String& Token)
{
    Token.clear();
    TSxSqlKeywordTree::NodeIndex node = TSxSqlKeywordTree::Root;
    Char c = C;
    while (node != TSxSqlKeywordTree::None && scan::WordStart.Contains(c)) {
        node = FKeywords.Child(node, c);
        Token += c;
        c = ReadChar();
    }
    PushChar(c);
    return node != TSxSqlKeywordTree::None && FKeywords.EndsKeyword(node) ? vtKeyWord : vtUnknown;
}

}  // namespace sx
