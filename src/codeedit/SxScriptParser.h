// The scanner that the Visual Basic and JavaScript parsers share: the same
// token names, readers and operators, the colours with the paint listener,
// and the handler operations on the token stream. Each language adds its own
// characters, keywords, comments and handler templates.
#pragma once

#include "codeedit/SxScanner.h"
#include "codeedit/SxScriptMethods.h"

namespace sx {

/// The colour table of a script language at its start: the rows are the same
/// in both languages, the token sets follow each one's numbering. Row 6
/// holds vtString and vtComment too, but rows 2 and 3 come first and give
/// them their colours.
template <class TToken>
std::array<TSxTokenInfo<TToken>, 7> ScriptDrawInfo()
{
    using T = TToken;
    return {{
        {u"WhiteSpace", clWindowText, clWindow, {}, {}},
        {u"Reserved word", clBlue, clWindow, TokenRange(T::vtFunction, T::vtUntil), {TFontStyle::fsBold}},
        {u"string", clWindowText, clYellow, {T::vtString}, {}},
        {u"Comment", clGreen, clWindow, {T::vtComment}, {}},
        {u"Identifier", clWindowText, clWindow, {T::vtIdentifier}, {}},
        {u"Symbol", clRed, clWindow, {T::vtHexNumber, T::vtNumber, T::vtFloat}, {}},
        {u"Symbol", clBlue, clWindow, TSet<T, 128>{T::vtConcat, T::vtString} + TokenRange(T::vtComment, T::vtDivideInt),
         {}},
    }};
}

/// The Visual Basic keywords, grouped by first letter. "REM" opens a comment
/// to the end of the line.
template <class TToken>
constexpr std::array<scan::Keyword<TToken>, 46> ScriptKeywords()
{
    using T = TToken;
    return {{
        {u"BYVAL", T::vtByVal}, {u"BYREF", T::vtByRef},
        {u"CASE", T::vtCase}, {u"CLASS", T::vtClass}, {u"CONST", T::vtConst},
        {u"DIM", T::vtDim}, {u"DO", T::vtDo}, {u"DEFAULT", T::vtDefault},
        {u"END", T::vtEnd}, {u"EXIT", T::vtExit}, {u"EACH", T::vtEach}, {u"ELSE", T::vtElse},
        {u"ERASE", T::vtErase}, {u"ERROR", T::vtError}, {u"ELSEIF", T::vtElseIf}, {u"EXECUTE", T::vtExecute},
        {u"EXPLICIT", T::vtExplicit}, {u"EXECUTEGLOBAL", T::vtExecuteGlobal},
        {u"FOR", T::vtFor}, {u"FUNCTION", T::vtFunction},
        {u"GET", T::vtGet}, {u"GOTO", T::vtGoto},
        {u"IN", T::vtIn}, {u"IF", T::vtIf},
        {u"LET", T::vtLet}, {u"LOOP", T::vtLoop},
        {u"NEXT", T::vtNext},
        {u"ON", T::vtOn}, {u"OPTION", T::vtOption},
        {u"PUBLIC", T::vtPublic}, {u"PRIVATE", T::vtPrivate}, {u"PROPERTY", T::vtProperty},
        {u"PRESERVE", T::vtPreserve},
        {u"REM", T::vtComment}, {u"REDIM", T::vtReDim}, {u"RESUME", T::vtResume}, {u"RANDOMIZE", T::vtRandomize},
        {u"SELECT", T::vtSelect}, {u"SET", T::vtSet}, {u"SUB", T::vtSub},
        {u"TO", T::vtTo}, {u"THEN", T::vtThen},
        {u"UNTIL", T::vtUntil},
        {u"WHILE", T::vtWhile}, {u"WEND", T::vtWend}, {u"WITH", T::vtWith},
    }};
}

/// What a script language brings to the shared scanner besides its own characters.
template <class TToken>
struct ScriptLanguage {
    std::u16string_view Name;
    scan::Language<TToken, 7> Scanner;
    const scan::KeywordTable<TToken>* Keywords;
    /// Which "function" and "sub" tokens open a handler.
    script::HeaderRules Headers;
    /// The text of a new handler for a function event and for every other kind.
    std::u16string_view FunctionTemplate;
    std::u16string_view SubTemplate;
};

/// TToken is the language's token enumeration. Each language defines, for its
/// TToken, Script, ScanOwnToken and ReadRemark.
template <class TToken>
class TSxScriptParser : public TSxLangParser {
public:
    using TSxLangParser::TSxLangParser;

    String GetLanguage() override { return String(Script.Name); }

    /// Also calls GetPaintInfo: once with the row's colours for a token that
    /// stands in a row of DrawInfo, then once more for every token.
    bool GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override
    {
        const TToken token = InternalGetNextToken(AToken);
        scan::MarkCode(*this, Script.Scanner, token);
        if (scan::FillColours(Script.Scanner, token, BackGround, TextColor, FontStyle))
            GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
        LineBreak = token == TToken::vtLineBreak;
        GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
        return scan::GoesOn(Script.Scanner, token);
    }

    /// The handler's name is the component's name, "_" and the event, or the
    /// event alone; the text comes from the function template for a function
    /// event and from the sub template for every other kind.
    String CreateMethod(TObject* AInstance, const String& APropName, String& aName) override
    {
        return script::CreateMethodText(AInstance, APropName, aName, Script.FunctionTemplate,
                                        Script.SubTemplate);
    }

    String GetSameMethods(TObject* AInstance, const String& APropName) override
    {
        return script::FindSameMethods(*this, AInstance, APropName, Script.Headers,
                                       [this](String& AText) { return script::ToMethodToken(GetNextRealToken(AText)); });
    }

    Integer MethodLineNr(const String& AMethodName) override
    {
        return script::FindMethodLine(*this, AMethodName, Script.Headers,
                                      [this](String& AText) { return script::ToMethodToken(GetNextRealToken(AText)); });
    }

protected:
    /// The next token: its kind, with its text in AToken.
    TToken InternalGetNextToken(String& AToken)
    {
        return scan::NextToken(
            *this, Script.Scanner, AToken, [this](Char c, String& AText) { return ScanToken(c, AText); },
            [this](const String& AEnd, String& AText) { ReadRemark(AEnd, AText); });
    }

    /// The next token that a method scan looks at: line breaks, unknown
    /// characters, comments, "ByVal" and "ByRef" are skipped.
    TToken GetNextRealToken(String& AToken)
    {
        TToken token = InternalGetNextToken(AToken);
        while (script::IsNoise(token))
            token = InternalGetNextToken(AToken);
        return token;
    }

    // The readers append what they read to AText, so that one token text is
    // reused from call to call instead of building a string per token.

    /// Appends the hexadecimal digits behind "$".
    virtual void ReadHexNumber(String& AText) { scan::ReadWhile(*this, scan::HexDigits, AText); }
    /// Appends a string's text behind its opening double quote, the closing quote included.
    virtual void ReadString(String& AText) { scan::ReadQuotedRest(*this, u'"', AText); }
    /// Appends a comment's text behind its opening, up to its end marker; each
    /// language reads its comments in its own way.
    virtual void ReadRemark(const String& AEnd, String& AText);
    /// Appends the rest of a number behind its first digit; sets AToken to
    /// vtFloat for a number with a period, also one that a second period ends.
    virtual void ReadNumber(TToken& AToken, String& AText)
    {
        if (scan::ReadNumberRest(*this, AText) != scan::NumberEnd::Integer)
            AToken = TToken::vtFloat;
    }
    /// Appends the rest of a word behind its first character.
    virtual void ReadIdentifier(String& AText) { scan::ReadWhile(*this, scan::WordChars, AText); }

    /// Comments opened by a word ("REM") or "//" end with the line.
    inline static const String LineCommentEnd{scan::CR};

private:
    /// What the language brings to the shared scanner.
    static const ScriptLanguage<TToken> Script;

    /// The token of a character the shared dispatch does not know, which
    /// AToken already holds.
    TToken ScanOwnToken(Char c, String& AToken);

    /// One token that starts with c, which AToken already holds; vtInvalid
    /// when c makes no token (the LF of a line break).
    TToken ScanToken(Char c, String& AToken)
    {
        switch (c) {
        case scan::LF:
            return TToken::vtInvalid;
        case u'"':
            ReadString(AToken);
            return TToken::vtString;
        case u'$':
            ReadHexNumber(AToken);
            return TToken::vtNumber;
        case u'.':
            return scan::TakeNext(*this, u'.', AToken) ? TToken::vtRange : TToken::vtPeriod;
        case u'<':
            if (scan::TakeNext(*this, u'=', AToken))
                return TToken::vtLessEqual;
            return scan::TakeNext(*this, u'>', AToken) ? TToken::vtNotEquals : TToken::vtLess;
        case u'>':
            return scan::TakeNext(*this, u'=', AToken) ? TToken::vtGreaterEqual : TToken::vtGreater;
        default:
            break;
        }
        if (scan::Digits.Contains(c)) {
            TToken token = TToken::vtNumber;
            ReadNumber(token, AToken);
            return token;
        }
        if (scan::WordStart.Contains(c))
            return ScanWord(AToken);
        const TToken single = SingleCharTokens[c];
        return single != TToken::vtUnknown ? single : ScanOwnToken(c, AToken);
    }

    /// A keyword keeps its text as typed; "REM" turns the rest of the line into a comment.
    TToken ScanWord(String& AToken)
    {
        ReadIdentifier(AToken);
        const TToken token = Script.Keywords->Find(AToken, TToken::vtIdentifier);
        if (token == TToken::vtComment)
            ReadRemark(LineCommentEnd, AToken);
        return token;
    }

    /// Tokens of one character that both languages hand out without a further read.
    static constexpr typename scan::CharTokenTable<TToken>::Entry SingleChars[] = {
        {0, TToken::vtEndOfFile},   {scan::CR, TToken::vtLineBreak},  {'&', TToken::vtConcat},
        {')', TToken::vtCloseParen}, {'*', TToken::vtMultiply},        {'+', TToken::vtPlus},
        {',', TToken::vtComma},      {'-', TToken::vtMinus},           {';', TToken::vtSemicolon},
        {'=', TToken::vtEquals},     {'[', TToken::vtOpenBracket},     {'\\', TToken::vtDivideInt},
        {']', TToken::vtCloseBracket},
    };
    static constexpr scan::CharTokenTable<TToken> SingleCharTokens{TToken::vtUnknown, SingleChars};
};

}  // namespace sx
