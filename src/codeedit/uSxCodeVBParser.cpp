// The Visual Basic tokenizer: a dispatch on the first character of each token,
// small readers behind it, keywords picked by first letter; and the handler
// operations, which run on the same token stream.
#include "codeedit/uSxCodeVBParser.h"

#include "codeedit/SxScriptScanner.h"

#include <cassert>

namespace sx {

using namespace uSxCodeVBParser;
using script::IsNoise;
using script::MethodToken;
using script::ToMethodToken;

namespace uSxCodeVBParser {

// Rows 5 and 6 bear the same name. Row 6 holds vtString and vtComment too, but
// rows 2 and 3 come first and give them their colours.
std::array<TSxVBInfo, 7> DrawInfo = {{
    {u"WhiteSpace", clWindowText, clWindow, {}, {}},
    {u"Reserved word", clBlue, clWindow, TokenRange(vtFunction, vtUntil), {TFontStyle::fsBold}},
    {u"string", clWindowText, clYellow, {vtString}, {}},
    {u"Comment", clGreen, clWindow, {vtComment}, {}},
    {u"Identifier", clWindowText, clWindow, {vtIdentifier}, {}},
    {u"Symbol", clRed, clWindow, {vtHexNumber, vtNumber, vtFloat}, {}},
    {u"Symbol", clBlue, clWindow, TVBTokens{vtConcat, vtString} + TokenRange(vtComment, vtDivideInt), {}},
}};

void Initialization() { RegisterClass(TSxCodeVBParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TSxCodeVBParser::ClassInfo());
}

}  // namespace uSxCodeVBParser

namespace {

using script::CR;
using script::LF;

/// A comment opened by "'" or "REM" ends with the line.
const String LineCommentEnd(1, CR);

constexpr std::u16string_view FunctionTemplate = u"\r\nfunction %0:s(%1:s)\r\n  \r\nend function rem %0:s\r\n";
constexpr std::u16string_view SubTemplate = u"\r\nsub %0:s(%1:s)\r\n  \r\nend sub rem %0:s\r\n";

/// A sub or function behind "end" closes a handler; each fits its own kind of event.
constexpr script::HeaderRules VBHeaderRules{};

/// Tokens of one character that need no further read; every other character
/// that the scanner does not handle itself is vtUnknown.
constexpr std::array<TVBToken, 128> SingleCharTokens = [] {
    std::array<TVBToken, 128> table{};
    table.fill(vtUnknown);
    table[0] = vtEndOfFile;
    table[CR] = vtLineBreak;
    table['&'] = vtConcat;
    table[')'] = vtCloseParen;
    table['*'] = vtMultiply;
    table['+'] = vtPlus;
    table[','] = vtComma;
    table['-'] = vtMinus;
    table['/'] = vtDivide;
    table[';'] = vtSemicolon;
    table['='] = vtEquals;
    table['['] = vtOpenBracket;
    table['\\'] = vtDivideInt;
    table[']'] = vtCloseBracket;
    return table;
}();

using Keyword = script::Keyword<TVBToken>;

constexpr script::KeywordTable Keywords{std::array<Keyword, 46>{{
    {u"BYVAL", vtByVal}, {u"BYREF", vtByRef},
    {u"CASE", vtCase}, {u"CLASS", vtClass}, {u"CONST", vtConst},
    {u"DIM", vtDim}, {u"DO", vtDo}, {u"DEFAULT", vtDefault},
    {u"END", vtEnd}, {u"EXIT", vtExit}, {u"EACH", vtEach}, {u"ELSE", vtElse}, {u"ERASE", vtErase},
    {u"ERROR", vtError}, {u"ELSEIF", vtElseIf}, {u"EXECUTE", vtExecute}, {u"EXPLICIT", vtExplicit},
    {u"EXECUTEGLOBAL", vtExecuteGlobal},
    {u"FOR", vtFor}, {u"FUNCTION", vtFunction},
    {u"GET", vtGet}, {u"GOTO", vtGoto},
    {u"IN", vtIn}, {u"IF", vtIf},
    {u"LET", vtLet}, {u"LOOP", vtLoop},
    {u"NEXT", vtNext},
    {u"ON", vtOn}, {u"OPTION", vtOption},
    {u"PUBLIC", vtPublic}, {u"PRIVATE", vtPrivate}, {u"PROPERTY", vtProperty}, {u"PRESERVE", vtPreserve},
    {u"REM", vtComment}, {u"REDIM", vtReDim}, {u"RESUME", vtResume}, {u"RANDOMIZE", vtRandomize},
    {u"SELECT", vtSelect}, {u"SET", vtSet}, {u"SUB", vtSub},
    {u"TO", vtTo}, {u"THEN", vtThen},
    {u"UNTIL", vtUntil},
    {u"WHILE", vtWhile}, {u"WEND", vtWend}, {u"WITH", vtWith},
}}};

}  // namespace

SX_DEFINE_CLASS(TSxCodeVBParser, TSxLangParser)

TSxCodeVBParser::TSxCodeVBParser(TComponent* AOwner) : TSxLangParser(AOwner) {}

String TSxCodeVBParser::GetLanguage() { return u"Visual Basic"; }

bool TSxCodeVBParser::GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                                   bool& LineBreak)
{
    const TVBToken token = InternalGetNextToken(AToken);
    const TSxVBInfo& row = FindTokenInfo(DrawInfo, 0, token);
    BackGround = row.BckColor;
    TextColor = row.TextColor;
    FontStyle = row.Style;
    if (&row != &DrawInfo[0])
        GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
    LineBreak = token == vtLineBreak;
    GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
    return token != vtInvalid && token != vtEndOfFile;
}

TVBToken TSxCodeVBParser::InternalGetNextToken(String& AToken)
{
    TVBToken result = vtInvalid;
    while (result == vtInvalid) {
        const Char c = ReadChar();
        AToken.assign(1, c);
        result = ScanToken(c, AToken);
    }
    assert(result != vtInvalid && "Managed to find an invalid token.");
    return result;
}

TVBToken TSxCodeVBParser::GetNextRealToken(String& AToken)
{
    TVBToken token = InternalGetNextToken(AToken);
    while (IsNoise(token))
        token = InternalGetNextToken(AToken);
    return token;
}

/// One token that starts with c, which AToken already holds; vtInvalid when c
/// makes no token (the LF of a line break).
TVBToken TSxCodeVBParser::ScanToken(Char c, String& AToken)
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
    case u'\'':
        ReadRemark(LineCommentEnd, AToken);
        return vtComment;
    case u'(':
        return ScanParenStarRemark(AToken);
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
        TVBToken token = vtNumber;
        ReadNumber(token, AToken);
        return token;
    }
    if (script::InClass(c, script::ccWordStart))
        return ScanWord(AToken);
    return c < SingleCharTokens.size() ? SingleCharTokens[c] : vtUnknown;
}

/// A keyword keeps its text as typed; "REM" turns the rest of the line into a comment.
TVBToken TSxCodeVBParser::ScanWord(String& AToken)
{
    ReadIdentifier(AToken);
    const TVBToken token = Keywords.Find(AToken, vtIdentifier);
    if (token == vtComment)
        ReadRemark(LineCommentEnd, AToken);
    return token;
}

/// "(" alone, or "(*" opening a comment that runs up to and with "*)" within
/// the line. Such a comment is no Visual Basic; it is handed out whole, as a
/// comment, so that the token texts of the line still make up the line.
TVBToken TSxCodeVBParser::ScanParenStarRemark(String& AToken)
{
    if (!script::TakeNext(*this, u'*', AToken))
        return vtOpenParen;
    for (;;) {
        const Char c = ReadChar();
        if (c == 0 || c == CR || c == LF) {
            PushChar(c);
            return vtComment;
        }
        AToken += c;
        if (c == u'*' && script::TakeNext(*this, u')', AToken))
            return vtComment;
    }
}

void TSxCodeVBParser::ReadHexNumber(String& AText) { script::ReadWhile(*this, script::ccHexDigit, AText); }

void TSxCodeVBParser::ReadIdentifier(String& AText) { script::ReadWhile(*this, script::ccWord, AText); }

void TSxCodeVBParser::ReadNumber(TVBToken& AToken, String& AText)
{
    if (script::ReadNumberRest(*this, AText))
        AToken = vtFloat;
}

void TSxCodeVBParser::ReadString(String& AText) { script::ReadStringRest(*this, AText); }

/// The marker goes back to the input also at the end of input, so that a
/// comment is always followed by a line break.
void TSxCodeVBParser::ReadRemark(const String& AEnd, String& AText)
{
    const Char marker = AEnd.empty() ? Char(0) : AEnd[0];
    for (Char c = ReadChar(); c != marker && c != 0; c = ReadChar())
        AText += c;
    PushStr(AEnd);
}

String TSxCodeVBParser::CreateMethod(TObject* AInstance, const String& APropName, String& aName)
{
    return script::CreateMethodText(AInstance, APropName, aName, FunctionTemplate, SubTemplate);
}

String TSxCodeVBParser::GetSameMethods(TObject* AInstance, const String& APropName)
{
    return script::FindSameMethods(*this, AInstance, APropName, VBHeaderRules,
                                   [this](String& AText) { return ToMethodToken(GetNextRealToken(AText)); });
}

Integer TSxCodeVBParser::MethodLineNr(const String& AMethodName)
{
    return script::FindMethodLine(*this, AMethodName, VBHeaderRules,
                                  [this](String& AText) { return ToMethodToken(GetNextRealToken(AText)); });
}

}  // namespace sx
