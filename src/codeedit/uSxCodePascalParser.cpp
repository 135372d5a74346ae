// The Pascal tokenizer: its dispatch on the first character of each token,
// keywords, comment forms and colour table, on the shared scanner toolkit.
#include "codeedit/uSxCodePascalParser.h"

#include "codeedit/SxScanner.h"

#include <string_view>

namespace sx {

using namespace uSxCodePascalParser;

namespace uSxCodePascalParser {

std::array<TSxPascalInfo, 8> StockDrawInfo()
{
    return {{
        {u"WhiteSpace", clWindowText, clWindow, {}, {}},
        {u"Reserved word", clWindowText, clWindow,
         {ptTry, ptExcept, ptFinally, ptInherited, ptAs, ptFunction, ptProcedure, ptConstructor, ptDestructor,
          ptUnit, ptImplementation, ptProgram, ptUses, ptBegin, ptEnd, ptType, ptIf, ptThen, ptElse, ptRepeat,
          ptUntil, ptDo, ptClass, ptPrivate, ptProtected, ptPublic, ptPublished, ptProperty, ptinterface,
          ptKeyword, ptVar, ptConst, ptOut},
         {TFontStyle::fsBold}},
        {u"string", clWindowText, clYellow, {ptString}, {}},
        {u"Comment", clHighlightText, clHighlight, {ptComment}, {}},
        {u"Identifier", clRed, clWhite, {ptIdentifier}, {}},
        {u"Character", clBlue, clWhite, {ptHash}, {TFontStyle::fsItalic}},
        {u"Number", clBlue, clGreen, {ptNumber}, {}},
        {u"Symbol", clBlue, clRed,
         {ptComma, ptSemicolon, ptColon, ptPeriod, ptRange, ptEquals, ptNotEquals, ptLess, ptLessEqual, ptGreater,
          ptGreaterEqual, ptAssign, ptOpenParen, ptCloseParen, ptOpenBracket, ptCloseBracket, ptCaret, ptAddress,
          ptPlus, ptMinus, ptMultiply, ptDivide},
         {}},
    }};
}

std::array<TSxPascalInfo, 8> DrawInfo = StockDrawInfo();

void Initialization() { RegisterClass(TsxCodePasParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TsxCodePasParser::ClassInfo());
}

}  // namespace uSxCodePascalParser

namespace {

using scan::CR;
using scan::LF;

constexpr Char Backspace = 8;

/// End markers of the three comment forms.
constexpr std::u16string_view ParenStarEnd = u"*)";
constexpr std::u16string_view BraceEnd = u"}";
constexpr std::u16string_view LineCommentEnd = u"\r";

/// Line kinds: 1 inside "(*", 2 inside "{" at a line start; 3, a comment that
/// ends with the line, is understood on input but never set.
constexpr scan::CommentKind CommentKinds[] = {{ParenStarEnd, 1}, {BraceEnd, 2}, {LineCommentEnd, 0}};
constexpr scan::LineKinds OpenComments{CommentKinds};

constexpr scan::Language<TPascalToken, 8> Pascal{&DrawInfo,   0,           ptInvalid,    ptLineBreak,
                                                 ptEndOfFile, ptComment, ptString, &OpenComments};

/// Tokens of one character that need no further read; every other character
/// that the scanner does not handle itself is ptUnknown.
constexpr scan::CharTokenTable<TPascalToken>::Entry SingleChars[] = {
    {0, ptEndOfFile}, {CR, ptLineBreak}, {'#', ptHash},       {')', ptCloseParen}, {'*', ptMultiply},
    {'+', ptPlus},    {',', ptComma},    {'-', ptMinus},      {';', ptSemicolon},  {'=', ptEquals},
    {'@', ptAddress}, {'[', ptOpenBracket}, {']', ptCloseBracket}, {'^', ptCaret},
};
constexpr scan::CharTokenTable<TPascalToken> SingleCharTokens{ptUnknown, SingleChars};

using Keyword = scan::Keyword<TPascalToken>;

/// The keywords, grouped by first letter; within a letter the first equal word wins.
constexpr Keyword KeywordList[] = {
    {u"AS", ptAs},
    {u"BEGIN", ptBegin},
    {u"CONSTRUCTOR", ptConstructor}, {u"CONST", ptConst}, {u"CLASS", ptClass},
    {u"DO", ptDo}, {u"DESTRUCTOR", ptDestructor},
    {u"END", ptEnd}, {u"ELSE", ptElse}, {u"EXCEPT", ptExcept},
    {u"FUNCTION", ptFunction}, {u"FINALLY", ptFinally},
    {u"IF", ptIf}, {u"IMPLEMENTATION", ptImplementation}, {u"INTERFACE", ptinterface},
    {u"INHERITED", ptInherited},
    {u"OUT", ptOut}, {u"OBJECT", ptClass},
    {u"PROCEDURE", ptProcedure}, {u"PROGRAM", ptProgram}, {u"PRIVATE", ptPrivate}, {u"PROTECTED", ptProtected},
    {u"PUBLIC", ptPublic}, {u"PUBLISHED", ptPublished}, {u"PROPERTY", ptProperty},
    {u"THEN", ptThen}, {u"TRY", ptTry}, {u"TYPE", ptType},
    {u"UNIT", ptUnit}, {u"USES", ptUses}, {u"UNTIL", ptUntil},
    {u"VAR", ptVar},
};

constexpr scan::KeywordTable<TPascalToken> Keywords{KeywordList};

}  // namespace

SX_DEFINE_CLASS(TSxCodePascalParser, TSxLangParser)
SX_DEFINE_CLASS(TsxCodePasParser, TSxCodePascalParser)

TSxCodePascalParser::TSxCodePascalParser(TComponent* aOwner) : TSxLangParser(aOwner) {}

String TSxCodePascalParser::GetLanguage() { return u"Pascal"; }

void TSxCodePascalParser::SetDelphiVersion(Integer V)
{
    FDelphiVersion = V;
    if (!DelphiKnown(V))
        return;
    // The row names are the IDE's names of its highlight elements.
    for (std::size_t row = DrawInfo.size(); row-- > 0;) {
        TSxPascalInfo& info = DrawInfo[row];
        if (!info.Name.empty())
            GetPaintInfoFromDelphi(FDelphiVersion, info.Name, info.BckColor, info.TextColor, info.Style);
    }
}

void TSxCodePascalParser::ClearSoapComment()
{
    SetSoapCommentLineStart(-1);
    SetSoapCommentPosStart(-1);
    SetSoapCommentLineEnd(-1);
    SetSoapCommentPosEnd(-1);
    SetSoapComment(String());
}

bool TSxCodePascalParser::GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor,
                                       TFontStyles& FontStyle, bool& LineBreak)
{
    return scan::HandOut(*this, Pascal, InternalGetNextToken(AToken), BackGround, TextColor, FontStyle, LineBreak);
}

TPascalToken TSxCodePascalParser::InternalGetNextToken(String& AToken)
{
    return scan::NextToken(
        *this, Pascal, AToken, [this](Char c, String& AText) { return ScanToken(c, AText); },
        [this](const String& AEnd, String& AText) { ReadRemark(AEnd, AText); });
}

/// One token that starts with c, which AToken already holds; ptInvalid when
/// c makes no token (the LF of a line break).
TPascalToken TSxCodePascalParser::ScanToken(Char c, String& AToken)
{
    switch (c) {
    case LF:
        return ptInvalid;
    case Backspace:
        AToken = u"    ";
        return ptSpace;
    case u' ':
        scan::ReadWhile(*this, [](Char next) { return next == u' '; }, AToken);
        return ptSpace;
    case u'$':
        ReadHexNumber(AToken);
        return ptNumber;
    case u'\'':
        ReadString(AToken);
        return ptString;
    case u'(':
        return ScanRemark(u'*', ParenStarEnd, AToken, ptOpenParen);
    case u'{':
        ReadRemark(String(BraceEnd), AToken);
        return ptComment;
    case u'/':
        return ScanRemark(u'/', LineCommentEnd, AToken, ptDivide);
    case u'.':
        return scan::TakeNext(*this, u'.', AToken) ? ptRange : ptPeriod;
    case u':':
        return scan::TakeNext(*this, u'=', AToken) ? ptAssign : ptColon;
    case u'<':
        if (scan::TakeNext(*this, u'=', AToken))
            return ptLessEqual;
        return scan::TakeNext(*this, u'>', AToken) ? ptNotEquals : ptLess;
    case u'>':
        return scan::TakeNext(*this, u'=', AToken) ? ptGreaterEqual : ptGreater;
    default:
        break;
    }
    if (scan::Digits.Contains(c)) {
        TPascalToken token = ptNumber;
        ReadNumber(token, AToken);
        return token;
    }
    if (scan::WordStart.Contains(c)) {
        ReadIdentifier(AToken);
        return Keywords.Find(AToken, ptIdentifier);
    }
    return SingleCharTokens[c];
}

/// A comment whose opening is the character in AToken and ASecond, or the
/// token AAlone when the second character is another.
TPascalToken TSxCodePascalParser::ScanRemark(Char ASecond, std::u16string_view AEnd, String& AToken,
                                             TPascalToken AAlone)
{
    if (!scan::TakeNext(*this, ASecond, AToken))
        return AAlone;
    ReadRemark(String(AEnd), AToken);
    return ptComment;
}

void TSxCodePascalParser::ReadHexNumber(String& AText) { scan::ReadWhile(*this, scan::HexDigits, AText); }

void TSxCodePascalParser::ReadIdentifier(String& AText) { scan::ReadWhile(*this, scan::WordChars, AText); }

/// A number with a period is real; a second period ends the number at once
/// and leaves it an integer number ("1.2.3" gives the number 1.2).
void TSxCodePascalParser::ReadNumber(TPascalToken& AToken, String& AText)
{
    if (scan::ReadNumberRest(*this, AText) == scan::NumberEnd::Real)
        AToken = ptFloat;
}

void TSxCodePascalParser::ReadString(String& AText) { scan::ReadQuotedRest(*this, u'\'', AText); }

/// Every comment clears the SOAP comment fields.
void TSxCodePascalParser::ReadRemark(const String& AEnd, String& AText)
{
    ClearSoapComment();
    scan::ReadCommentRest(*this, OpenComments, AEnd, AText);
}

}  // namespace sx
