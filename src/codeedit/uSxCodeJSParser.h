// The JavaScript tokenizer, which can also write the source of an event
// handler and find handlers in script source.
#pragma once

#include "codeedit/SxScriptParser.h"

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
/// understood on input but never set. CreateMethod writes "function Name(a, b)"
/// for every kind of event, with an empty body in braces and "// Name" behind it.
class TSxCodeJSParser : public TSxScriptParser<uSxCodeJSParser::TJSToken, TSxCodeJSParser> {
    SX_DECLARE_CLASS
    using Scanner = TSxScriptParser<uSxCodeJSParser::TJSToken, TSxCodeJSParser>;
    friend Scanner;

public:
    explicit TSxCodeJSParser(TComponent* AOwner);

    String GetLanguage() override;

protected:
    /// Appends a comment's text behind its opening, the end marker included.
    /// With EndLines True it stops in front of a line end and leaves a comment
    /// that the line end does not close open for the next token.
    void ReadRemark(const String& AEnd, String& AText) override;

private:
    static const ScriptLanguage<uSxCodeJSParser::TJSToken> Script;
    uSxCodeJSParser::TJSToken ScanOwnToken(Char c, String& AToken);
    uSxCodeJSParser::TJSToken ScanSlash(String& AToken);
};

extern template class TSxScriptParser<uSxCodeJSParser::TJSToken, TSxCodeJSParser>;

}  // namespace sx
