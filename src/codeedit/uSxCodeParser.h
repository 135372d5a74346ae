// The abstract tokenizer: a character source with unlimited push-back fed by
// a callback or a stream, the token contract between a language parser and
// whoever draws, the state a parser carries from one line to the next, the
// descriptions of event methods that script parsers write handlers from, and
// the highlight colours of an installed Delphi IDE read from the registry.
#pragma once

#include "platform/Classes.h"
#include "platform/Colors.h"
#include "platform/Streams.h"
#include "platform/TypInfo.h"

#include <array>
#include <cstdint>
#include <functional>

namespace sx {

namespace uSxCodeParser {

/// The base tokenizer's result.
enum TlngToken { tUnknown, tLineBreak, tLine, tEndOfFile };

/// How a parameter of an event method is passed. The values live in the unit's
/// namespace, apart from the token names of the language parsers.
enum TSxParamType { ptVar, ptOut, ptConst, ptNone };

}  // namespace uSxCodeParser

using uSxCodeParser::TSxParamType;

/// Raised for parser errors by clients of the library; the parsers raise none.
class ESxParser : public Exception {
    using Exception::Exception;
};

/// Asked for the next piece of input (AReset False: fill S, answer whether
/// there was any) or told to start again (AReset True: result ignored).
using TSxOnGetNewBuffer = std::function<bool(bool AReset, String& S)>;

/// Paint listener: may change the colours and style of a token.
using TSxOnGetTokenPaintInfo =
    std::function<void(const String& AToken, TColor& ABackGround, TColor& ATextColor, TFontStyles& AFontStyle)>;

/// One parameter of an event method.
class TSxMethodParam : public TObject {
public:
    const String& ParamVarType() const { return FParamVarType; }
    void SetParamVarType(const String& value) { FParamVarType = value; }
    const String& Name() const { return FName; }
    void SetName(const String& value) { FName = value; }
    TSxParamType ParamType() const { return FParamType; }
    void SetParamType(TSxParamType value) { FParamType = value; }

private:
    /// The type's name, with "[]" behind it for an array parameter.
    String FParamVarType;
    String FName;
    /// A value parameter is passed in none of the three ways.
    TSxParamType FParamType = uSxCodeParser::ptNone;
};

/// The signature of an event method, a snapshot taken from the type
/// information of an event property; its caller frees it.
class TSxMethodDescription : public TObject {
public:
    TSxMethodDescription() = default;
    /// Frees the parameter list, which frees the parameters.
    ~TSxMethodDescription() override = default;

    /// Creates a parameter at the end of the list and gives it back; the list owns it.
    TSxMethodParam* AddParam();
    /// The parameter at Index, from 0.
    TSxMethodParam* GetParams(Integer Index) const;
    TSxMethodParam* Params(Integer Index) const { return GetParams(Index); }
    /// The number of parameters in the list.
    Integer GetParamCount() const { return FParams.Count(); }
    Integer ParamCount() const { return GetParamCount(); }
    /// Stores a count that nothing reads; ParamCount always counts the list.
    void SetParamCount(Integer value) { FParamCount = value; }

    /// The Name of the component the description was taken from; empty for an object that is no component.
    const String& Name() const { return FName; }
    void SetName(const String& value) { FName = value; }
    /// The property's name, such as OnClick.
    const String& ProcName() const { return FProcName; }
    void SetProcName(const String& value) { FProcName = value; }
    /// The result's type name; empty for a procedure.
    const String& ResultType() const { return FResultType; }
    void SetResultType(const String& value) { FResultType = value; }
    TMethodKind ProcType() const { return FProcType; }
    void SetProcType(TMethodKind value) { FProcType = value; }

private:
    Integer FParamCount = 0;
    String FName;
    String FProcName;
    String FResultType;
    TMethodKind FProcType = mkProcedure;
    TObjectList FParams{true};
};

/// The signature of the event property APropName of AInstance, or none when
/// there is no object, the name is blank, or the object has no published
/// method property of that name. The caller owns the result.
TSxMethodDescription* GetMethodDescription(const TObject* AInstance, const String& APropName);

/// Whether Delphi version V is installed for the current user: the key
/// "software\borland\delphi\V.0\" holds a non-empty value "App".
bool DelphiKnown(Integer V);

/// The highlight colours and style that Delphi version V keeps for the
/// element ASection (a name such as "Comment"); GetPaintInfoFromReg on the
/// key "Software\Borland\Delphi\V.0\Editor\HighLight\".
void GetPaintInfoFromDelphi(Integer V, const String& ASection, TColor& ABackGround, TColor& ATextColor,
                            TFontStyles& AStyle);

/// Reads one highlight element, the subkey ASection of AKey under
/// HKEY_CURRENT_USER. Bold, italic and underline are set or taken out of
/// AStyle, any other style stays; both colours are always overwritten, with
/// clWindow and clWindowText where the element gives none.
void GetPaintInfoFromReg(const String& AKey, const String& ASection, TColor& ABackGround, TColor& ATextColor,
                         TFontStyles& AStyle);

class TSxLangParser : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TSxLangParser(TComponent* aOwner);
    ~TSxLangParser() override;

    virtual String GetLanguage();
    /// Restarts the input from its beginning, whatever the override of Reset left behind.
    void ResetBuffer();
    /// Hands out the next token with its colours; answers whether the caller should go on.
    virtual bool GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                              bool& LineBreak);

    Char ReadChar() { return InternalReadChar(); }
    /// The character last read, again; 0 when nothing of the buffer is consumed.
    Char ReadCurrChar() const;
    Char PeekChar();
    void PushChar(Char AChar) { InternalPushChar(AChar); }
    void PushStr(const String& AStr);
    /// The next Count characters, read and given back again.
    String PeekChars(Integer Count);
    /// Selects the stream feed; with Owner True the parser frees the stream.
    void SetInputStream(TStream* AStream, bool Owner);

    /// The source text of a new handler for the event APropName of AInstance;
    /// AName receives the handler's name. The base writes no text and leaves AName.
    virtual String CreateMethod(TObject* AInstance, const String& APropName, String& AName);
    /// The names of the handlers in the input that fit the event, each followed by CR LF.
    virtual String GetSameMethods(TObject* AInstance, const String& APropName);
    /// The line, from 1, of the handler of that name in the input; -1 when there is none.
    virtual Integer MethodLineNr(const String& AMethodName);

    const TSxOnGetNewBuffer& OnGetNewBuffer() const { return FOnGetNewBuffer; }
    void SetOnGetNewBuffer(TSxOnGetNewBuffer value) { FOnGetNewBuffer = std::move(value); }
    const TSxOnGetTokenPaintInfo& OnPaintInfo() const { return FOnGetPaintInfo; }
    void SetOnPaintInfo(TSxOnGetTokenPaintInfo value) { FOnGetPaintInfo = std::move(value); }
    Integer LineNr() const { return FLineNr; }
    bool InRemark() const { return FInRemark; }
    void SetInRemark(bool value) { FInRemark = value; }
    const String& RemarkEnd() const { return FRemarkEnd; }
    void SetRemarkEnd(const String& value) { FRemarkEnd = value; }
    bool EndLines() const { return FEndLines; }
    void SetEndLines(bool value) { FEndLines = value; }
    Integer LineKind() const { return FLineKind; }
    void SetLineKind(Integer value) { FLineKind = value; }
    /// Whether the token last handed out is code, in which brackets pair
    /// up; a language parser says no for its strings and comments.
    bool TokenIsCode() const { return FTokenIsCode; }
    void SetTokenIsCode(bool value) { FTokenIsCode = value; }
    /// Extension: the kind of the token last handed out, as the language's
    /// token enumeration numbers it.
    Integer TokenKind() const { return FTokenKind; }
    void SetTokenKind(Integer value) { FTokenKind = value; }
    /// Extension: all that a line start carries from the line before, packed
    /// in one number (LineKind, and what a language keeps besides);
    /// SetScanState, after ResetBuffer, restarts the scan in that state.
    virtual std::uint32_t ScanState() const { return std::uint32_t(FLineKind); }
    virtual void SetScanState(std::uint32_t AState) { FLineKind = Integer(AState); }
    /// Extension: whether the scan stands inside a comment or section that
    /// goes on at the next line start.
    virtual bool ContinuesBlock() const { return FLineKind != 0; }

protected:
    /// Called when the buffer is used up: takes the next piece from the feed.
    virtual void LoadPushBuffer();
    virtual void Reset();
    virtual Char InternalReadChar();
    virtual void InternalPushChar(Char AChar);
    virtual void GetPaintInfo(const String& AToken, TColor& ABackGround, TColor& ATextColor, TFontStyles& AFontStyle);

    /// The base tokenizer: whole lines, line breaks and the end of input.
    uSxCodeParser::TlngToken InternalGetNextToken(String& Token);

    String FText;
    TStream* FInputStream = nullptr;
    String FPushBuffer;
    Integer FPushBufferLength = 0;
    /// invariant: 0 <= FPushPos <= FPushBufferLength; the next character is FPushBuffer[FPushPos]
    Integer FPushPos = 0;
    bool FOwned = false;
    Integer FLineNr = 1;
    TSxOnGetNewBuffer FOnGetNewBuffer;
    bool FInRemark = false;
    String FRemarkEnd;
    bool FEndLines = false;
    Integer FLineKind = 0;
    bool FTokenIsCode = true;
    Integer FTokenKind = 0;
    TSxOnGetTokenPaintInfo FOnGetPaintInfo;

private:
    void LoadFromCallback();
    void LoadFromStream();
    void ReleaseStream();
};

/// One row of a language's colour table. Each language names its own row type
/// after this template (TSxPascalInfo, TSxXmlTokenInfo, ...).
template <class TToken>
struct TSxTokenInfo {
    String Name;
    TColor TextColor = clWindowText;
    TColor BckColor = clWindow;
    TSet<TToken, 128> Tokens;
    TFontStyles Style;
};

/// The tokens from AFirst to ALast, both included, as a row's set.
template <class TToken>
TSet<TToken, 128> TokenRange(TToken AFirst, TToken ALast)
{
    TSet<TToken, 128> tokens;
    for (int t = AFirst; t <= ALast; ++t)
        tokens.Include(TToken(t));
    return tokens;
}

/// Frees the row names of a colour table, as a unit does at its shut-down.
template <class TToken, std::size_t N>
void ReleaseRowNames(std::array<TSxTokenInfo<TToken>, N>& ATable)
{
    for (TSxTokenInfo<TToken>& row : ATable)
        String().swap(row.Name);
}

/// Colours of a token from a colour table: the first row from row 1 on whose
/// set holds the token, else the default row.
template <class TToken, std::size_t N>
const TSxTokenInfo<TToken>& FindTokenInfo(const std::array<TSxTokenInfo<TToken>, N>& table, std::size_t defaultRow,
                                          TToken token)
{
    for (std::size_t row = 1; row < N; ++row)
        if (table[row].Tokens.Contains(token))
            return table[row];
    return table[defaultRow];
}

/// Fills the three colour values of a token from a colour table.
template <class TToken, std::size_t N>
void SetTokenPaintInfo(const std::array<TSxTokenInfo<TToken>, N>& table, std::size_t defaultRow, TToken token,
                       TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle)
{
    const TSxTokenInfo<TToken>& row = FindTokenInfo(table, defaultRow, token);
    BackGround = row.BckColor;
    TextColor = row.TextColor;
    FontStyle = row.Style;
}

/// A class reference to TSxLangParser or a descendant, for choosing a parser class at run time.
using TSxLangParserClass = TClassRef<TSxLangParser>;

}  // namespace sx
