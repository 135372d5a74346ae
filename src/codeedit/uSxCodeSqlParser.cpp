// The SQL tokenizer: the keyword letter tree, the scanner and its readers,
// and the process-wide colour and keyword tables.
#include "uSxCodeSqlParser.h"

namespace sx {

namespace uSxCodeSqlParser {

namespace {

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

/// The row of DrawInfo that colours tokens of no row.
constexpr std::size_t DefaultRow = 2;

/// Letter tree: index of the end mark in a node, and the highest child index
/// a keyword character may take ('_' - 'A').
constexpr std::size_t EndMark = 31;
constexpr Integer LastChildIndex = 30;

constexpr Char CR = 13;
constexpr Char LF = 10;
constexpr Char Blank = 32;

/// Character classes of the scanner. Only ASCII characters are members.
enum CharClass : unsigned char {
    ccLetter = 1 << 0,
    ccWordChar = 1 << 1,         // continues a word in the letter tree
    ccDigit = 1 << 2,
    ccNumberChar = 1 << 3,       // continues a number
    ccBeforeWord = 1 << 4,       // a word may start behind it
    ccBeforeNumber = 1 << 5,     // a number may start behind it
    ccBeforeParameter = 1 << 6,  // a parameter may start behind it
};

constexpr std::array<unsigned char, 128> MakeCharClasses()
{
    std::array<unsigned char, 128> table{};
    for (int c = 'A'; c <= 'Z'; ++c) {
        table[std::size_t(c)] |= ccLetter | ccWordChar;
        table[std::size_t(c + 32)] |= ccLetter | ccWordChar;
    }
    table['_'] |= ccWordChar;
    for (int c = '0'; c <= '9'; ++c)
        table[std::size_t(c)] |= ccDigit | ccNumberChar;
    table[','] |= ccNumberChar | ccBeforeWord | ccBeforeNumber | ccBeforeParameter;
    table['.'] |= ccNumberChar | ccBeforeNumber;
    table[' '] |= ccBeforeWord | ccBeforeNumber | ccBeforeParameter;
    table['('] |= ccBeforeWord | ccBeforeNumber | ccBeforeParameter;
    table[')'] |= ccBeforeWord;
    return table;
}

constexpr std::array<unsigned char, 128> CharClasses = MakeCharClasses();

bool InClass(Char c, CharClass cls) { return c < CharClasses.size() && (CharClasses[c] & cls) != 0; }

bool IsLineEnd(Char c) { return c == CR || c == LF; }

/// The child index of a word character during the walk: case-blind, '_' is 30.
std::size_t WalkIndex(Char c) { return c >= 97 ? std::size_t(c - 97) : std::size_t(c - 65); }

}  // namespace

TSxSqlKeywordNodeList::~TSxSqlKeywordNodeList()
{
    for (auto it = FNodes.rbegin(); it != FNodes.rend(); ++it)
        delete *it;
}

TSxSqlKeywordNode* TSxSqlKeywordNodeList::NewNode()
{
    FNodes.push_back(nullptr);  // the slot first, so that a failed allocation leaks nothing
    FNodes.back() = new TSxSqlKeywordNode();
    return FNodes.back();
}

SX_DEFINE_CLASS(TSxCodeSqlParser, TSxLangParser)

TSxCodeSqlParser::TSxCodeSqlParser(TComponent* aOwner) : TSxLangParser(aOwner)
{
    FKeywordArray = FKeywordArrayList.NewNode();
    BuildKeywordTree();
}

void TSxCodeSqlParser::BuildKeywordTree()
{
    for (const String& word : SxSqlKeyWords)
        AddKeyword(word);
}

void TSxCodeSqlParser::AddKeyword(const String& AKeyWord)
{
    const String W = UpperCase(AKeyWord);
    TSxSqlKeywordNode* node = FKeywordArray;
    for (const Char c : W) {
        const Integer index = Integer(c) - 65;
        if (index < 0 || index > LastChildIndex)
            throw Exception(u"Invalid Character \"" + String(1, c) + u"\" in keyword \"" + W + u"\" ");
        TSxSqlKeywordNode*& child = node->Entries[std::size_t(index)];
        if (!child)
            child = FKeywordArrayList.NewNode();
        node = child;
    }
    // The end mark only has to be there; an empty word marks the root, where no walk ends.
    node->Entries[EndMark] = FKeywordArrayList.NewNode();
}

String TSxCodeSqlParser::GetLanguage() { return u"Sql"; }

void TSxCodeSqlParser::Reset()
{
    TSxLangParser::Reset();
    FLastChar = Blank;
    FInComment = false;
}

String TSxCodeSqlParser::PeekString(Integer Count) { return PeekChars(Count); }

bool TSxCodeSqlParser::GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                                    bool& LineBreak)
{
    const TSxSqlToken T = InternalGetNextToken(Token);
    SetTokenPaintInfo(DrawInfo, DefaultRow, T, BackGround, TextColor, FontStyle);
    LineBreak = T == vtLineBreak;
    return T != vtInvalid && T != vtEndOfFile;
}

TSxSqlToken TSxCodeSqlParser::InternalGetNextToken(String& Token)
{
    Token.clear();
    const Char C = ReadChar();
    if (C == 0)
        return vtEndOfFile;
    Token += C;
    TSxSqlToken result = vtUnknown;
    if (C == CR) {
        if (PeekChar() == LF)
            Token += ReadChar();
        result = vtLineBreak;
    } else if (C == LF) {
        result = vtUnknown;  // a lone LF ends no line
    } else if (FInComment) {
        result = ReadCommentPiece(Token);  // inside a block comment nothing else is recognised
    } else {
        result = ScanToken(C, Token);
    }
    FLastChar = result == vtLineBreak ? Blank : LastConsumed(Token);
    return result;
}

Char TSxCodeSqlParser::LastConsumed(const String& Token) const
{
    // A push back over the start of a freshly loaded buffer leaves nothing
    // behind the read position; the token then holds the character instead.
    if (FPushPos < 1 && !Token.empty())
        return Token.back();
    return ReadCurrChar();
}

TSxSqlToken TSxCodeSqlParser::ScanToken(Char C, String& Token)
{
    switch (C) {
    case u'/':
        return PeekChar() == u'*' ? ReadCommentPiece(Token) : vtUnknown;
    case u'-':
        return PeekChar() == u'-' ? ReadLineComment(Token) : vtUnknown;
    case u'\'':
        return ReadQuotedValue(Token);
    case u'@':
        return InClass(FLastChar, ccBeforeParameter) ? ReadParameter(Token) : vtUnknown;
    default:
        break;
    }
    if (InClass(C, ccDigit))
        return InClass(FLastChar, ccBeforeNumber) ? ReadNumber(Token) : vtUnknown;
    if (InClass(C, ccLetter))
        return InClass(FLastChar, ccBeforeWord) ? ReadWord(C, Token) : vtUnknown;
    if (C < Blank)
        Token.clear();  // control characters are not drawn
    return vtUnknown;
}

// One line's share of a block comment at most; Token holds what is read of it.
TSxSqlToken TSxCodeSqlParser::ReadCommentPiece(String& Token)
{
    const Char next = PeekChar();
    const bool closesNow = Token.back() == u'*' && next == u'/';
    if (!closesNow && !IsLineEnd(next)) {
        for (;;) {
            const Char c = ReadChar();
            Token += c;
            if (c == 0)
                break;
            const Char following = PeekChar();
            if ((c == u'*' && following == u'/') || IsLineEnd(following))
                break;
        }
    }
    if (PeekChar() == u'/') {
        Token += ReadChar();
        FInComment = false;
    } else {
        FInComment = true;
    }
    return vtComment;
}

// Up to the first control character, which is left in the input.
TSxSqlToken TSxCodeSqlParser::ReadLineComment(String& Token)
{
    Char c = ReadChar();
    while (c >= Blank) {
        Token += c;
        c = ReadChar();
    }
    PushChar(c);
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
    Char c = ReadChar();
    while (InClass(c, ccNumberChar)) {
        Token += c;
        c = ReadChar();
    }
    PushChar(c);
    return c <= Blank || c == u')' ? vtNumber : vtUnknown;
}

// Only white space ends a parameter.
TSxSqlToken TSxCodeSqlParser::ReadParameter(String& Token)
{
    Char c = ReadChar();
    while (c > Blank) {
        Token += c;
        c = ReadChar();
    }
    PushChar(c);
    return vtParameter;
}

// Walks the letter tree. The letter that leads out of the tree is part of the
// word already, so a word longer than every keyword it starts with is unknown.
TSxSqlToken TSxCodeSqlParser::ReadWord(Char C, String& Token)
{
    Token.clear();
    const TSxSqlKeywordNode* node = FKeywordArray;
    Char c = C;
    while (node && InClass(c, ccWordChar)) {
        node = node->Entries[WalkIndex(c)];
        Token += c;
        c = ReadChar();
    }
    PushChar(c);
    return node && node->Entries[EndMark] ? vtKeyWord : vtUnknown;
}

}  // namespace sx
