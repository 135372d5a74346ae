// The Visual Basic tokenizer: what it adds to the shared script scanner (its
// comments, keywords, colour table and handler templates).
#include "codeedit/uSxCodeVBParser.h"

namespace sx {

using namespace uSxCodeVBParser;

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

using scan::CR;
using scan::LF;

using Keyword = scan::Keyword<TVBToken>;

constexpr Keyword KeywordList[] = {
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
};

constexpr scan::KeywordTable<TVBToken> Keywords{KeywordList};

}  // namespace

template class TSxScriptParser<TVBToken, TSxCodeVBParser>;

/// A sub or function behind "end" closes a handler; each fits its own kind of event.
const ScriptLanguage<TVBToken> TSxCodeVBParser::Script{
    {&DrawInfo, 0, vtInvalid, vtLineBreak, vtEndOfFile, vtComment},
    &Keywords,
    script::HeaderRules{},
    u"\r\nfunction %0:s(%1:s)\r\n  \r\nend function rem %0:s\r\n",
    u"\r\nsub %0:s(%1:s)\r\n  \r\nend sub rem %0:s\r\n",
};

SX_DEFINE_CLASS(TSxCodeVBParser, TSxLangParser)

TSxCodeVBParser::TSxCodeVBParser(TComponent* AOwner) : Scanner(AOwner) {}

String TSxCodeVBParser::GetLanguage() { return u"Visual Basic"; }

/// The characters the shared dispatch leaves to Visual Basic: "'" opens a
/// comment to the end of the line, "(" may open a comment of its own. All
/// others it does not know, the blank among them, are vtUnknown.
TVBToken TSxCodeVBParser::ScanOwnToken(Char c, String& AToken)
{
    switch (c) {
    case u'\'':
        ReadRemark(LineCommentEnd, AToken);
        return vtComment;
    case u'(':
        return ScanParenStarRemark(AToken);
    case u'/':
        return vtDivide;
    default:
        return vtUnknown;
    }
}

/// "(" alone, or "(*" opening a comment that runs up to and with "*)" within
/// the line. Such a comment is no Visual Basic; it is handed out whole, as a
/// comment, so that the token texts of the line still make up the line.
TVBToken TSxCodeVBParser::ScanParenStarRemark(String& AToken)
{
    if (!scan::TakeNext(*this, u'*', AToken))
        return vtOpenParen;
    for (;;) {
        const Char c = ReadChar();
        if (c == 0 || c == CR || c == LF) {
            PushChar(c);
            return vtComment;
        }
        AToken += c;
        if (c == u'*' && scan::TakeNext(*this, u')', AToken))
            return vtComment;
    }
}

/// The marker goes back to the input also at the end of input, so that a
/// comment is always followed by a line break.
void TSxCodeVBParser::ReadRemark(const String& AEnd, String& AText)
{
    const Char marker = AEnd.empty() ? Char(0) : AEnd[0];
    for (Char c = ReadChar(); c != marker && c != 0; c = ReadChar())
        AText += c;
    PushStr(AEnd);
}

}  // namespace sx
