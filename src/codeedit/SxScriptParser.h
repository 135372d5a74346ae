// The scanner that the Visual Basic and JavaScript parsers share: the same
// token names, readers and operators, the colours with the paint listener,
// and the handler operations on the token stream. Each language adds its own
// characters, keywords, comments and handler templates.
#pragma once

#include "codeedit/SxScanner.h"
#include "codeedit/SxScriptMethods.h"

namespace sx {

/// What a script language brings to the shared scanner besides its own characters.
template <class TToken>
struct ScriptLanguage {
    scan::Language<TToken, 7> Scanner;
    const scan::KeywordTable<TToken>* Keywords;
    /// Which "function" and "sub" tokens open a handler.
    script::HeaderRules Headers;
    /// The text of a new handler for a function event and for every other kind.
    std::u16string_view FunctionTemplate;
    std::u16string_view SubTemplate;
};

/// TToken is the language's token enumeration. TParser, the language's parser
/// class, has a static ScriptLanguage<TToken> Script and a member
/// TToken ScanOwnToken(Char c, String& AToken), which makes the token of a
/// character the shared dispatch does not know.
template <class TToken, class TParser>
class TSxScriptParser : public TSxLangParser {
public:
    using TSxLangParser::TSxLangParser;

    /// Also calls GetPaintInfo: once with the row's colours for a token that
    /// stands in a row of DrawInfo, then once more for every token.
    bool GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override
    {
        const TToken token = InternalGetNextToken(AToken);
        if (scan::FillColours(TParser::Script.Scanner, token, BackGround, TextColor, FontStyle))
            GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
        LineBreak = token == TToken::vtLineBreak;
        GetPaintInfo(AToken, BackGround, TextColor, FontStyle);
        return scan::GoesOn(TParser::Script.Scanner, token);
    }

    /// The handler's name is the component's name, "_" and the event, or the
    /// event alone; the text comes from the function template for a function
    /// event and from the sub template for every other kind.
    String CreateMethod(TObject* AInstance, const String& APropName, String& aName) override
    {
        return script::CreateMethodText(AInstance, APropName, aName, TParser::Script.FunctionTemplate,
                                        TParser::Script.SubTemplate);
    }

    String GetSameMethods(TObject* AInstance, const String& APropName) override
    {
        return script::FindSameMethods(*this, AInstance, APropName, TParser::Script.Headers,
                                       [this](String& AText) { return script::ToMethodToken(GetNextRealToken(AText)); });
    }

    Integer MethodLineNr(const String& AMethodName) override
    {
        return script::FindMethodLine(*this, AMethodName, TParser::Script.Headers,
                                      [this](String& AText) { return script::ToMethodToken(GetNextRealToken(AText)); });
    }

protected:
    /// The next token: its kind, with its text in AToken.
    TToken InternalGetNextToken(String& AToken)
    {
        return scan::NextToken(
            *this, TParser::Script.Scanner, AToken, [this](Char c, String& AText) { return ScanToken(c, AText); },
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
    /// Appends a comment's text behind its opening, up to its end marker.
    virtual void ReadRemark(const String& AEnd, String& AText) = 0;
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
    TParser& Self() { return static_cast<TParser&>(*this); }

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
        return single != TToken::vtUnknown ? single : Self().ScanOwnToken(c, AToken);
    }

    /// A keyword keeps its text as typed; "REM" turns the rest of the line into a comment.
    TToken ScanWord(String& AToken)
    {
        ReadIdentifier(AToken);
        const TToken token = TParser::Script.Keywords->Find(AToken, TToken::vtIdentifier);
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
