// The abstract tokenizer: a character source with unlimited push-back fed by
// a callback or a stream, the token contract between a language parser and
// whoever draws, and the state a parser carries from one line to the next.
#pragma once

#include "platform/Classes.h"
#include "platform/Colors.h"
#include "platform/Streams.h"

#include <array>
#include <functional>

namespace sx {

namespace uSxCodeParser {

/// The base tokenizer's result.
enum TlngToken { tUnknown, tLineBreak, tLine, tEndOfFile };

}  // namespace uSxCodeParser

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

    virtual String CreateMethod(TObject* AInstance, const String& APropName, String& AName);
    virtual String GetSameMethods(TObject* AInstance, const String& APropName);
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
