// The JavaScript tokenizer, which can also write the source of an event
// handler and find handlers in script source.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <array>

namespace sx {

namespace uSxCodeJSParser {

/// The JavaScript token kinds: those of Visual Basic with vtBegin at 8.
/// vtUnitil, vtRem, vtHexNumber, vtColon, vtThen, vtUntil and vtExit are never
/// handed out; vtInvalid marks "no token yet" inside the scanner. The braces
/// give vtBegin and vtEnd.
enum TJSToken {
    vtLineBreak, vtUnknown, vtInvalid, vtEndOfFile, vtIdentifier, vtFunction, vtSub, vtEnd, vtBegin, vtClass,
    vtPublic, vtPrivate, vtConst, vtDim, vtDo, vtWhile, vtUnitil, vtLoop, vtExit, vtErase, vtExecute, vtExecuteGlobal,
    vtEach, vtIn, vtFor, vtTo, vtNext, vtDefault, vtByVal, vtByRef, vtIf, vtThen, vtElse, vtElseIf, vtOn,
    vtError, vtResume, vtGoto, vtOption, vtExplicit, vtProperty, vtGet, vtSet, vtLet, vtRandomize, vtReDim,
    vtPreserve, vtRem, vtSelect, vtCase, vtWend, vtWith, vtUntil, vtConcat, vtString, vtHexNumber, vtNumber,
    vtFloat, vtComment, vtComma, vtSemicolon, vtColon, vtPeriod, vtRange, vtEquals, vtNotEquals, vtLess,
    vtLessEqual, vtGreater, vtGreaterEqual, vtOpenParen, vtCloseParen, vtOpenBracket, vtCloseBracket, vtPlus,
    vtMinus, vtMultiply, vtDivide, vtDivideInt
};

using TJSTokens = TSet<TJSToken, 128>;
using TSxJSInfo = TSxTokenInfo<TJSToken>;

/// The colour table of all JavaScript parsers in the process; row 0 is the default.
extern std::array<TSxJSInfo, 7> DrawInfo;

/// Registers TSxCodeJSParser with the class registry.
void Initialization();
/// Releases the names of DrawInfo and unregisters TSxCodeJSParser.
void Finalization();

}  // namespace uSxCodeJSParser

/// The JavaScript colouring scanner. A block comment can span lines: LineKind
/// is 1 inside "/*" at a line start; 2 ("}") and 3 (a line comment) are
/// understood on input but never set.
class TSxCodeJSParser : public TSxLangParser {
    SX_DECLARE_CLASS
public:
    explicit TSxCodeJSParser(TComponent* AOwner);

    String GetLanguage() override;
    /// Also calls GetPaintInfo: once with the row's colours for a token that
    /// stands in a row of DrawInfo, then once more for every token.
    bool GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override;

    /// "function Name(a, b)" for every kind of event, with an empty body in
    /// braces and "// Name" behind the closing brace.
    String CreateMethod(TObject* AInstance, const String& APropName, String& aName) override;
    String GetSameMethods(TObject* AInstance, const String& APropName) override;
    Integer MethodLineNr(const String& AMethodName) override;

protected:
    /// The next token: its kind, with its text in AToken.
    uSxCodeJSParser::TJSToken InternalGetNextToken(String& AToken);
    /// The next token that a method scan looks at: line breaks, unknown
    /// characters, comments, "ByVal" and "ByRef" are skipped.
    uSxCodeJSParser::TJSToken GetNextRealToken(String& AToken);

    // The readers append what they read to AText, so that one token text is
    // reused from call to call instead of building a string per token.

    /// Appends the hexadecimal digits behind "$".
    virtual void ReadHexNumber(String& AText);
    /// Appends a string's text behind its opening quote, the closing quote included.
    virtual void ReadString(String& AText);
    /// Appends a comment's text behind its opening, the end marker included.
    /// With EndLines True it stops in front of a line end and leaves a comment
    /// that the line end does not close open for the next token.
    virtual void ReadRemark(const String& AEnd, String& AText);
    /// Appends the rest of a number behind its first digit; sets AToken to vtFloat for a real number.
    virtual void ReadNumber(uSxCodeJSParser::TJSToken& AToken, String& AText);
    /// Appends the rest of a word behind its first character.
    virtual void ReadIdentifier(String& AText);

private:
    void LineKindToRemarkEnd();
    uSxCodeJSParser::TJSToken ContinueRemark(String& AToken, bool AAtLineStart);
    uSxCodeJSParser::TJSToken ScanToken(Char c, String& AToken);
    uSxCodeJSParser::TJSToken ScanWord(String& AToken);
    uSxCodeJSParser::TJSToken ScanSlash(String& AToken);
};

}  // namespace sx
