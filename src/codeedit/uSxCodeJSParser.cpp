// The JavaScript tokenizer: the design of the Visual Basic one with JavaScript
// comments and braces, a block comment that survives a restart at any line,
// and handler operations that write and find function blocks.
#include "codeedit/uSxCodeJSParser.h"

#include "codeedit/SxScriptScanner.h"

#include <cassert>

namespace sx {

using namespace uSxCodeJSParser;
using script::IsNoise;
using script::MethodToken;
using script::ToMethodToken;

namespace uSxCodeJSParser {

// The braces (vtBegin, vtEnd) are reserved words. Row 6 holds vtString and
// vtComment too, but rows 2 and 3 come first and give them their colours.
std::array<TSxJSInfo, 7> DrawInfo = {{
    {u"WhiteSpace", clWindowText, clWindow, {}, {}},
    {u"Reserved word", clBlue, clWindow, TokenRange(vtFunction, vtUntil), {TFontStyle::fsBold}},
    {u"string", clWindowText, clYellow, {vtString}, {}},
    {u"Comment", clGreen, clWindow, {vtComment}, {}},
    {u"Identifier", clWindowText, clWindow, {vtIdentifier}, {}},
    {u"Symbol", clRed, clWindow, {vtHexNumber, vtNumber, vtFloat}, {}},
    {u"Symbol", clBlue, clWindow, TJSTokens{vtConcat, vtString} + TokenRange(vtComment, vtDivideInt), {}},
}};

void Initialization() { RegisterClass(TSxCodeJSParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TSxCodeJSParser::ClassInfo());
}

}  // namespace uSxCodeJSParser

namespace {

using script::CR;
using script::LF;

/// Line kinds: the comment that is open where a line starts.
constexpr Integer lkNoComment = 0;
constexpr Integer lkBlockComment = 1;
constexpr Integer lkBraceComment = 2;
constexpr Integer lkLineComment = 3;

/// End markers of the comment forms.
constexpr std::u16string_view BlockCommentEnd = u"*/";
constexpr std::u16string_view BraceEnd = u"}";
const String LineCommentEnd(1, CR);

constexpr std::u16string_view MethodTemplate = u"\r\nfunction %0:s(%1:s)\r\n{  \r\n} // %0:s\r\n";

/// "}" is vtEnd, so a function directly behind the one before must count, and
/// the one template writes "function" for every kind of event.
constexpr script::HeaderRules JSHeaderRules{true, true};

/// Tokens of one character that need no further read; every other character
/// that the scanner does not handle itself is vtUnknown, the single quote too.
constexpr std::array<TJSToken, 128> SingleCharTokens = [] {
    std::array<TJSToken, 128> table{};
    table.fill(vtUnknown);
    table[0] = vtEndOfFile;
    table[CR] = vtLineBreak;
    table['&'] = vtConcat;
    table['('] = vtOpenParen;
    table[')'] = vtCloseParen;
    table['*'] = vtMultiply;
    table['+'] = vtPlus;
    table[','] = vtComma;
    table['-'] = vtMinus;
    table[';'] = vtSemicolon;
    table['='] = vtEquals;
    table['['] = vtOpenBracket;
    table['\\'] = vtDivideInt;
    table[']'] = vtCloseBracket;
    table['{'] = vtBegin;
    table['}'] = vtEnd;
    return table;
}();

using Keyword = script::Keyword<TJSToken>;

/// The Visual Basic list without EXIT, THEN and UNTIL.
constexpr script::KeywordTable Keywords{std::array<Keyword, 43>{{
    {u"BYVAL", vtByVal}, {u"BYREF", vtByRef},
    {u"CASE", vtCase}, {u"CLASS", vtClass}, {u"CONST", vtConst},
    {u"DIM", vtDim}, {u"DO", vtDo}, {u"DEFAULT", vtDefault},
    {u"END", vtEnd}, {u"EACH", vtEach}, {u"ELSE", vtElse}, {u"ERASE", vtErase}, {u"ERROR", vtError},
    {u"ELSEIF", vtElseIf}, {u"EXECUTE", vtExecute}, {u"EXPLICIT", vtExplicit}, {u"EXECUTEGLOBAL", vtExecuteGlobal},
    {u"FOR", vtFor}, {u"FUNCTION", vtFunction},
    {u"GET", vtGet}, {u"GOTO", vtGoto},
    {u"IN", vtIn}, {u"IF", vtIf},
    {u"LET", vtLet}, {u"LOOP", vtLoop},
    {u"NEXT", vtNext},
    {u"ON", vtOn}, {u"OPTION", vtOption},
    {u"PUBLIC", vtPublic}, {u"PRIVATE", vtPrivate}, {u"PROPERTY", vtProperty}, {u"PRESERVE", vtPreserve},
    {u"REM", vtComment}, {u"REDIM", vtReDim}, {u"RESUME", vtResume}, {u"RANDOMIZE", vtRandomize},
    {u"SELECT", vtSelect}, {u"SET", vtSet}, {u"SUB", vtSub},
    {u"TO", vtTo},
    {u"WHILE", vtWhile}, {u"WEND", vtWend}, {u"WITH", vtWith},
}}};

}  // namespace

SX_DEFINE_CLASS(TSxCodeJSParser, TSxLangParser)

TSxCodeJSParser::TSxCodeJSParser(TComponent* AOwner) : TSxLangParser(AOwner) {}

String TSxCodeJSParser::GetLanguage() { return u"JavaScript"; }

bool TSxCodeJSParser::GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                                   bool& LineBreak)
{
    const TJSToken token = InternalGetNextToken(AToken);
    const TSxJSInfo& row = FindTokenInfo(DrawInfo, 0, token);
    BackGround = row.BckColor;
    TextColor = row.TextColor;
    FontStyle = row.Style;
    if (&row != &DrawInfo[0])
        GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
    LineBreak = token == vtLineBreak;
    GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
    return token != vtInvalid && token != vtEndOfFile;
}

TJSToken TSxCodeJSParser::InternalGetNextToken(String& AToken)
{
    AToken.clear();
    // Within a scan a comment left open keeps its marker; a marker that only
    // the line kind brings back means the scan restarts at this line start.
    const bool restartsAtLineStart = FRemarkEnd.empty();
    LineKindToRemarkEnd();
    if (!FRemarkEnd.empty())
        return ContinueRemark(AToken, restartsAtLineStart);
    TJSToken result = vtInvalid;
    while (result == vtInvalid) {
        const Char c = ReadChar();
        AToken.assign(1, c);
        result = ScanToken(c, AToken);
    }
    assert(result != vtInvalid && "Managed to find an invalid token.");
    return result;
}

TJSToken TSxCodeJSParser::GetNextRealToken(String& AToken)
{
    TJSToken token = InternalGetNextToken(AToken);
    while (IsNoise(token))
        token = InternalGetNextToken(AToken);
    return token;
}

/// A restart at a line start brings only LineKind; the open comment's end
/// marker follows from it. Done on every call; it is one switch.
void TSxCodeJSParser::LineKindToRemarkEnd()
{
    switch (FLineKind) {
    case lkBlockComment:
        FRemarkEnd = BlockCommentEnd;
        break;
    case lkBraceComment:
        FRemarkEnd = BraceEnd;
        break;
    case lkLineComment:
        FRemarkEnd = LineCommentEnd;
        break;
    default:
        break;
    }
}

/// The next piece of a comment that is open: up to its end or the line end.
/// Each line the comment crosses gets its piece, possibly empty, before its
/// line break. Mid-scan a CR here follows the piece already handed out and is
/// the line break; at a restart nothing of the line has been handed out yet,
/// so an empty line still gets its empty piece first, as in a scan from above.
TJSToken TSxCodeJSParser::ContinueRemark(String& AToken, bool AAtLineStart)
{
    if (!AAtLineStart) {
        const Char c = ReadChar();
        if (c == CR) {
            AToken.assign(1, c);  // the LF behind it is dropped by the next call
            return vtLineBreak;
        }
        if (c != LF)
            PushChar(c);
    }
    const String marker = FRemarkEnd;
    ReadRemark(marker, AToken);
    return vtComment;
}

/// One token that starts with c, which AToken already holds; vtInvalid when c
/// makes no token (the LF of a line break).
TJSToken TSxCodeJSParser::ScanToken(Char c, String& AToken)
{
    switch (c) {
    case LF:
        return vtInvalid;
    case u'"':
        ReadString(AToken);
        return vtString;
    case u'$':
        ReadHexNumber(AToken);
        return vtNumber;
    case u'/':
        return ScanSlash(AToken);
    case u'.':
        return script::TakeNext(*this, u'.', AToken) ? vtRange : vtPeriod;
    case u'<':
        if (script::TakeNext(*this, u'=', AToken))
            return vtLessEqual;
        return script::TakeNext(*this, u'>', AToken) ? vtNotEquals : vtLess;
    case u'>':
        return script::TakeNext(*this, u'=', AToken) ? vtGreaterEqual : vtGreater;
    default:
        break;
    }
    if (script::InClass(c, script::ccDigit)) {
        TJSToken token = vtNumber;
        ReadNumber(token, AToken);
        return token;
    }
    if (script::InClass(c, script::ccWordStart))
        return ScanWord(AToken);
    return c < SingleCharTokens.size() ? SingleCharTokens[c] : vtUnknown;
}

/// A keyword keeps its text as typed; "REM" turns the rest of the line into a comment.
TJSToken TSxCodeJSParser::ScanWord(String& AToken)
{
    ReadIdentifier(AToken);
    const TJSToken token = Keywords.Find(AToken, vtIdentifier);
    if (token == vtComment)
        ReadRemark(LineCommentEnd, AToken);
    return token;
}

/// "/*" opens a block comment, "//" a line comment; else a division.
TJSToken TSxCodeJSParser::ScanSlash(String& AToken)
{
    if (script::TakeNext(*this, u'*', AToken))
        ReadRemark(String(BlockCommentEnd), AToken);
    else if (script::TakeNext(*this, u'/', AToken))
        ReadRemark(LineCommentEnd, AToken);
    else
        return vtDivide;
    return vtComment;
}

void TSxCodeJSParser::ReadHexNumber(String& AText) { script::ReadWhile(*this, script::ccHexDigit, AText); }

void TSxCodeJSParser::ReadIdentifier(String& AText) { script::ReadWhile(*this, script::ccWord, AText); }

void TSxCodeJSParser::ReadNumber(TJSToken& AToken, String& AText)
{
    if (script::ReadNumberRest(*this, AText))
        AToken = vtFloat;
}

void TSxCodeJSParser::ReadString(String& AText) { script::ReadStringRest(*this, AText); }

/// Comments do not nest, and the characters of the opening are not reused to
/// close it: "/*/" is still open. A line comment is closed by its line end.
void TSxCodeJSParser::ReadRemark(const String& AEnd, String& AText)
{
    FLineKind = AEnd == BlockCommentEnd ? lkBlockComment : lkNoComment;
    FRemarkEnd = AEnd;
    const Char first = AEnd.empty() ? Char(0) : AEnd[0];
    const bool hasSecond = AEnd.size() > 1;
    for (;;) {
        const Char c = ReadChar();
        if ((c == CR || c == LF) && FEndLines) {
            PushChar(c);
            if (AEnd.size() == 1 && first == c)
                FRemarkEnd.clear();
            return;
        }
        if (c == 0)
            break;
        AText += c;
        if (c == first && (!hasSecond || script::TakeNext(*this, AEnd[1], AText)))
            break;
    }
    FLineKind = lkNoComment;
    FRemarkEnd.clear();
}

String TSxCodeJSParser::CreateMethod(TObject* AInstance, const String& APropName, String& aName)
{
    return script::CreateMethodText(AInstance, APropName, aName, MethodTemplate, MethodTemplate);
}

String TSxCodeJSParser::GetSameMethods(TObject* AInstance, const String& APropName)
{
    return script::FindSameMethods(*this, AInstance, APropName, JSHeaderRules,
                                   [this](String& AText) { return ToMethodToken(GetNextRealToken(AText)); });
}

Integer TSxCodeJSParser::MethodLineNr(const String& AMethodName)
{
    return script::FindMethodLine(*this, AMethodName, JSHeaderRules,
                                  [this](String& AText) { return ToMethodToken(GetNextRealToken(AText)); });
}

}  // namespace sx
