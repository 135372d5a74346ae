// The JavaScript tokenizer: what it adds to the shared script scanner (its
// comments and braces, with a block comment that survives a restart at any
// line, its keywords, colour table and handler template).
#include "codeedit/uSxCodeJSParser.h"

namespace sx {

using namespace uSxCodeJSParser;

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

/// Line kinds: 1 inside "/*" at a line start. Kinds 2 ("}") and 3 (a comment
/// that ends with the line) are understood on input but never set.
constexpr std::u16string_view BlockCommentEnd = u"*/";
constexpr scan::CommentKind CommentKinds[] = {{BlockCommentEnd, 1}, {u"}", 0}, {u"\r", 0}};
constexpr scan::LineKinds OpenComments{CommentKinds};

using Keyword = scan::Keyword<TJSToken>;

/// The Visual Basic list without EXIT, THEN and UNTIL.
constexpr Keyword KeywordList[] = {
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
};

constexpr scan::KeywordTable<TJSToken> Keywords{KeywordList};

constexpr std::u16string_view MethodTemplate = u"\r\nfunction %0:s(%1:s)\r\n{  \r\n} // %0:s\r\n";

}  // namespace

template class TSxScriptParser<TJSToken, TSxCodeJSParser>;

/// "}" is vtEnd, so a function directly behind the one before must count, and
/// the one template writes "function" for every kind of event.
const ScriptLanguage<TJSToken> TSxCodeJSParser::Script{
    {&DrawInfo, 0, vtInvalid, vtLineBreak, vtEndOfFile, vtComment, &OpenComments},
    &Keywords,
    script::HeaderRules{true, true},
    MethodTemplate,
    MethodTemplate,
};

SX_DEFINE_CLASS(TSxCodeJSParser, TSxLangParser)

TSxCodeJSParser::TSxCodeJSParser(TComponent* AOwner) : Scanner(AOwner) {}

String TSxCodeJSParser::GetLanguage() { return u"JavaScript"; }

/// The characters the shared dispatch leaves to JavaScript: the slash, which
/// may open a comment, "(" and the braces. All others it does not know, the
/// blank and the single quote among them, are vtUnknown.
TJSToken TSxCodeJSParser::ScanOwnToken(Char c, String& AToken)
{
    switch (c) {
    case u'/':
        return ScanSlash(AToken);
    case u'(':
        return vtOpenParen;
    case u'{':
        return vtBegin;
    case u'}':
        return vtEnd;
    default:
        return vtUnknown;
    }
}

/// "/*" opens a block comment, "//" a line comment; else a division.
TJSToken TSxCodeJSParser::ScanSlash(String& AToken)
{
    if (scan::TakeNext(*this, u'*', AToken))
        ReadRemark(String(BlockCommentEnd), AToken);
    else if (scan::TakeNext(*this, u'/', AToken))
        ReadRemark(LineCommentEnd, AToken);
    else
        return vtDivide;
    return vtComment;
}

void TSxCodeJSParser::ReadRemark(const String& AEnd, String& AText)
{
    scan::ReadCommentRest(*this, OpenComments, AEnd, AText);
}

}  // namespace sx
