// The Visual Basic tokenizer, which can also write the source of an event
// handler and find handlers in script source.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <array>

namespace sx {

namespace uSxCodeVBParser {

/// The Visual Basic token kinds. vtUnitil, vtRem, vtHexNumber and vtColon are
/// never handed out ("UNTIL" gives vtUntil, "REM" a comment, a hexadecimal
/// number vtNumber); vtInvalid marks "no token yet" inside the scanner.
enum TVBToken {
    vtLineBreak, vtUnknown, vtInvalid, vtEndOfFile, vtIdentifier, vtFunction, vtSub, vtEnd, vtClass, vtPublic,
    vtPrivate, vtConst, vtDim, vtDo, vtWhile, vtUnitil, vtLoop, vtExit, vtErase, vtExecute, vtExecuteGlobal,
    vtEach, vtIn, vtFor, vtTo, vtNext, vtDefault, vtByVal, vtByRef, vtIf, vtThen, vtElse, vtElseIf, vtOn,
    vtError, vtResume, vtGoto, vtOption, vtExplicit, vtProperty, vtGet, vtSet, vtLet, vtRandomize, vtReDim,
    vtPreserve, vtRem, vtSelect, vtCase, vtWend, vtWith, vtUntil, vtConcat, vtString, vtHexNumber, vtNumber,
    vtFloat, vtComment, vtComma, vtSemicolon, vtColon, vtPeriod, vtRange, vtEquals, vtNotEquals, vtLess,
    vtLessEqual, vtGreater, vtGreaterEqual, vtOpenParen, vtCloseParen, vtOpenBracket, vtCloseBracket, vtPlus,
    vtMinus, vtMultiply, vtDivide, vtDivideInt
};

using TVBTokens = TSet<TVBToken, 128>;
using TSxVBInfo = TSxTokenInfo<TVBToken>;

/// The colour table of all Visual Basic parsers in the process; row 0 is the default.
extern std::array<TSxVBInfo, 7> DrawInfo;

/// Registers TSxCodeVBParser with the class registry.
void Initialization();
/// Releases the names of DrawInfo and unregisters TSxCodeVBParser.
void Finalization();

}  // namespace uSxCodeVBParser

/// The Visual Basic colouring scanner. Its comments end with their line, so it
/// keeps no state from line to line: it neither sets nor reads LineKind.
class TSxCodeVBParser : public TSxLangParser {
    SX_DECLARE_CLASS
public:
    explicit TSxCodeVBParser(TComponent* AOwner);

    String GetLanguage() override;
    /// Also calls GetPaintInfo: once with the row's colours for a token that
    /// stands in a row of DrawInfo, then once more for every token.
    bool GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override;

    /// "sub Name(a, b)" or, for a function event, "function Name(a, b)", with
    /// an empty body and "end sub rem Name" behind it.
    String CreateMethod(TObject* AInstance, const String& APropName, String& aName) override;
    String GetSameMethods(TObject* AInstance, const String& APropName) override;
    Integer MethodLineNr(const String& AMethodName) override;

protected:
    /// The next token: its kind, with its text in AToken.
    uSxCodeVBParser::TVBToken InternalGetNextToken(String& AToken);
    /// The next token that a method scan looks at: line breaks, unknown
    /// characters, comments, "ByVal" and "ByRef" are skipped.
    uSxCodeVBParser::TVBToken GetNextRealToken(String& AToken);

    // The readers append what they read to AText, so that one token text is
    // reused from call to call instead of building a string per token.

    /// Appends the hexadecimal digits behind "$".
    virtual void ReadHexNumber(String& AText);
    /// Appends a string's text behind its opening quote, the closing quote included.
    virtual void ReadString(String& AText);
    /// Appends a comment's text behind its opening, up to the end marker (one
    /// character) or the end of input, and gives the marker back to the input.
    virtual void ReadRemark(const String& AEnd, String& AText);
    /// Appends the rest of a number behind its first digit; sets AToken to vtFloat for a real number.
    virtual void ReadNumber(uSxCodeVBParser::TVBToken& AToken, String& AText);
    /// Appends the rest of a word behind its first character.
    virtual void ReadIdentifier(String& AText);

private:
    uSxCodeVBParser::TVBToken ScanToken(Char c, String& AToken);
    uSxCodeVBParser::TVBToken ScanWord(String& AToken);
    uSxCodeVBParser::TVBToken ScanParenStarRemark(String& AToken);
};

}  // namespace sx
