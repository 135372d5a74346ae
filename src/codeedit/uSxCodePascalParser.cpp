// The Pascal tokenizer: a dispatch on the first character of each token, small
// readers behind it, and the comment state that survives a restart at any line.
#include "codeedit/uSxCodePascalParser.h"

#include <cassert>
#include <cstdint>
#include <string_view>

namespace sx {

using namespace uSxCodePascalParser;

namespace uSxCodePascalParser {

std::array<TSxPascalInfo, 8> DrawInfo = {{
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

void Initialization() { RegisterClass(TsxCodePasParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TsxCodePasParser::ClassInfo());
}

}  // namespace uSxCodePascalParser

namespace {

/// Line kinds: the comment that is open where a line starts.
constexpr Integer lkNoComment = 0;
constexpr Integer lkParenStarComment = 1;
constexpr Integer lkBraceComment = 2;
constexpr Integer lkLineComment = 3;

/// End markers of the three comment forms.
constexpr std::u16string_view ParenStarEnd = u"*)";
constexpr std::u16string_view BraceEnd = u"}";
constexpr std::u16string_view LineCommentEnd = u"\r";

constexpr Char CR = 13;
constexpr Char LF = 10;
constexpr Char Backspace = 8;

/// Character classes, as bits of one table over the ASCII range. A character
/// from 128 on belongs to no class, so it ends words and numbers.
enum CharClass : unsigned {
    ccWordStart = 1,  // letters and the underscore
    ccWord = 2,       // word start and digits
    ccDigit = 4,
    ccHexDigit = 8,
    ccNumber = 16,  // digits and the period
    ccKeywordStart = 32,
};

constexpr std::array<std::uint8_t, 128> CharClasses = [] {
    std::array<std::uint8_t, 128> table{};
    const auto add = [&table](char from, char to, unsigned classes) {
        for (int c = from; c <= to; ++c)
            table[std::size_t(c)] = std::uint8_t(table[std::size_t(c)] | classes);
    };
    add('0', '9', ccWord | ccDigit | ccHexDigit | ccNumber);
    add('A', 'Z', ccWordStart | ccWord);
    add('a', 'z', ccWordStart | ccWord);
    add('_', '_', ccWordStart | ccWord);
    add('A', 'F', ccHexDigit);
    add('a', 'f', ccHexDigit);
    add('.', '.', ccNumber);
    for (char c : std::string_view("ABCDEFIOPTUV")) {
        add(c, c, ccKeywordStart);
        add(char(c - 'A' + 'a'), char(c - 'A' + 'a'), ccKeywordStart);
    }
    return table;
}();

bool InClass(Char c, unsigned classes) { return c < CharClasses.size() && (CharClasses[c] & classes) != 0; }

/// Tokens of one character that need no further read; every other ASCII
/// character that the scanner does not handle itself is ptUnknown.
constexpr std::array<TPascalToken, 128> SingleCharTokens = [] {
    std::array<TPascalToken, 128> table{};
    table.fill(ptUnknown);
    table[0] = ptEndOfFile;
    table[CR] = ptLineBreak;
    table['#'] = ptHash;
    table[')'] = ptCloseParen;
    table['*'] = ptMultiply;
    table['+'] = ptPlus;
    table[','] = ptComma;
    table['-'] = ptMinus;
    table[';'] = ptSemicolon;
    table['='] = ptEquals;
    table['@'] = ptAddress;
    table['['] = ptOpenBracket;
    table[']'] = ptCloseBracket;
    table['^'] = ptCaret;
    return table;
}();

struct Keyword {
    std::u16string_view Word;
    TPascalToken Token;
};

/// The keywords, grouped by first letter; within a letter the first equal word wins.
constexpr std::array<Keyword, 32> Keywords{{
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
}};

/// The slice of Keywords that starts with one letter.
struct KeywordRange {
    std::size_t First = 0;
    std::size_t Count = 0;
};

constexpr std::array<KeywordRange, 26> KeywordsByLetter = [] {
    std::array<KeywordRange, 26> ranges{};
    for (std::size_t i = 0; i < Keywords.size(); ++i) {
        KeywordRange& range = ranges[std::size_t(Keywords[i].Word[0] - u'A')];
        if (range.Count == 0)
            range.First = i;
        ++range.Count;
    }
    return ranges;
}();

/// Whether the word, folded to upper case, is the keyword.
bool SameWord(const String& word, std::u16string_view keyword)
{
    if (word.size() != keyword.size())
        return false;
    for (std::size_t i = 0; i < word.size(); ++i)
        if (UpCase(word[i]) != keyword[i])
            return false;
    return true;
}

/// The keyword's token for a whole word, or ptIdentifier.
TPascalToken WordToken(const String& word)
{
    if (!InClass(word[0], ccKeywordStart))
        return ptIdentifier;
    const KeywordRange& range = KeywordsByLetter[std::size_t(UpCase(word[0]) - u'A')];
    for (std::size_t i = range.First; i < range.First + range.Count; ++i)
        if (SameWord(word, Keywords[i].Word))
            return Keywords[i].Token;
    return ptIdentifier;
}

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
    const TPascalToken token = InternalGetNextToken(AToken);
    SetTokenPaintInfo(DrawInfo, 0, token, BackGround, TextColor, FontStyle);
    LineBreak = token == ptLineBreak;
    return token != ptInvalid && token != ptEndOfFile;
}

TPascalToken TSxCodePascalParser::InternalGetNextToken(String& AToken)
{
    AToken.clear();
    // Within a scan a comment left open keeps its marker; a marker that only
    // the line kind brings back means the scan restarts at this line start.
    const bool restartsAtLineStart = FRemarkEnd.empty();
    LineKindToRemarkEnd();
    if (!FRemarkEnd.empty())
        return ContinueRemark(AToken, restartsAtLineStart);
    TPascalToken result = ptInvalid;
    while (result == ptInvalid) {
        const Char c = ReadChar();
        AToken.assign(1, c);
        result = ScanToken(c, AToken);
    }
    assert(result != ptInvalid && "Managed to find an invalid token.");
    return result;
}

/// A restart at a line start brings only LineKind; the open comment's end
/// marker follows from it. Done on every call; it is one switch.
void TSxCodePascalParser::LineKindToRemarkEnd()
{
    switch (FLineKind) {
    case lkParenStarComment:
        FRemarkEnd = ParenStarEnd;
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
TPascalToken TSxCodePascalParser::ContinueRemark(String& AToken, bool AAtLineStart)
{
    if (!AAtLineStart) {
        const Char c = ReadChar();
        if (c == CR) {
            AToken.assign(1, c);  // the LF behind it is dropped by the next call
            return ptLineBreak;
        }
        if (c != LF)
            PushChar(c);
    }
    ReadRemark(FRemarkEnd, AToken);
    return ptComment;
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
        return ScanSpaces(AToken);
    case u'$':
        ReadHexNumber(AToken);
        return ptNumber;
    case u'\'':
        ReadString(AToken);
        return ptString;
    case u'(':
        if (!TakeNext(u'*', AToken))
            return ptOpenParen;
        ReadRemark(String(ParenStarEnd), AToken);
        return ptComment;
    case u'{':
        ReadRemark(String(BraceEnd), AToken);
        return ptComment;
    case u'/':
        if (!TakeNext(u'/', AToken))
            return ptDivide;
        ReadRemark(String(LineCommentEnd), AToken);
        return ptComment;
    case u'.':
        return TakeNext(u'.', AToken) ? ptRange : ptPeriod;
    case u':':
        return TakeNext(u'=', AToken) ? ptAssign : ptColon;
    case u'<':
        return ScanLess(AToken);
    case u'>':
        return TakeNext(u'=', AToken) ? ptGreaterEqual : ptGreater;
    default:
        break;
    }
    if (InClass(c, ccDigit)) {
        TPascalToken token = ptNumber;
        ReadNumber(token, AToken);
        return token;
    }
    if (InClass(c, ccWordStart)) {
        ReadIdentifier(AToken);
        return WordToken(AToken);
    }
    return c < SingleCharTokens.size() ? SingleCharTokens[c] : ptUnknown;
}

TPascalToken TSxCodePascalParser::ScanSpaces(String& AToken)
{
    Char c = ReadChar();
    while (c == u' ') {
        AToken += c;
        c = ReadChar();
    }
    PushChar(c);
    return ptSpace;
}

TPascalToken TSxCodePascalParser::ScanLess(String& AToken)
{
    const Char c = ReadChar();
    if (c == u'=' || c == u'>') {
        AToken += c;
        return c == u'=' ? ptLessEqual : ptNotEquals;
    }
    PushChar(c);
    return ptLess;
}

bool TSxCodePascalParser::TakeNext(Char AExpected, String& AToken)
{
    const Char c = ReadChar();
    if (c == AExpected) {
        AToken += c;
        return true;
    }
    PushChar(c);
    return false;
}

void TSxCodePascalParser::ReadWhile(unsigned AClass, String& AText)
{
    Char c = ReadChar();
    while (InClass(c, AClass)) {
        AText += c;
        c = ReadChar();
    }
    PushChar(c);
}

void TSxCodePascalParser::ReadHexNumber(String& AText) { ReadWhile(ccHexDigit, AText); }

void TSxCodePascalParser::ReadIdentifier(String& AText) { ReadWhile(ccWord, AText); }

/// A second period ends the number at once and leaves it an integer number:
/// the period belongs to a range ("1..5"), or the number already has one
/// ("1.2.3" gives the number 1.2). There is no exponent.
void TSxCodePascalParser::ReadNumber(TPascalToken& AToken, String& AText)
{
    bool periodSeen = false;
    Char c = ReadChar();
    while (InClass(c, ccNumber)) {
        if (c == u'.') {
            if (periodSeen || PeekChar() == u'.') {
                PushChar(c);
                return;
            }
            periodSeen = true;
        }
        AText += c;
        c = ReadChar();
    }
    PushChar(c);
    if (periodSeen)
        AToken = ptFloat;
}

/// A doubled quote stays doubled, as in the source. A string never runs over
/// a line end: without a closing quote it ends with the line.
void TSxCodePascalParser::ReadString(String& AText)
{
    for (;;) {
        const Char c = ReadChar();
        if (c == 0 || c == LF || c == CR) {
            PushChar(c);
            return;
        }
        if (c == u'\'') {
            const Char next = ReadChar();
            if (next != u'\'') {
                PushChar(next);
                AText += c;
                return;
            }
            AText += next;
        }
        AText += c;
    }
}

/// Reads a comment up to and with AEnd. With EndLines True it stops in front
/// of CR or LF and leaves the comment open for the next token (a line comment
/// is closed there instead). Comments do not nest.
void TSxCodePascalParser::ReadRemark(String AEnd, String& AText)
{
    FLineKind = AEnd == ParenStarEnd ? lkParenStarComment : AEnd == BraceEnd ? lkBraceComment : lkNoComment;
    FRemarkEnd = AEnd;
    ClearSoapComment();
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
        if (c == first && !hasSecond) {
            AText += c;
            break;
        }
        if (c == first && PeekChar() == AEnd[1]) {
            AText += c;
            AText += ReadChar();
            break;
        }
        AText += c;
    }
    FLineKind = lkNoComment;
    FRemarkEnd.clear();
}

}  // namespace sx
