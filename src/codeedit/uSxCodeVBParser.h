// The Visual Basic tokenizer, which can also write the source of an event
// handler and find handlers in script source.
#pragma once

#include "codeedit/SxScriptParser.h"

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
/// The table as it stands at start ("Classic"), before an IDE's colours or a theme change it.
std::array<TSxVBInfo, 7> StockDrawInfo();

/// Registers TSxCodeVBParser with the class registry.
void Initialization();
/// Releases the names of DrawInfo and unregisters TSxCodeVBParser.
void Finalization();

}  // namespace uSxCodeVBParser

/// The Visual Basic colouring scanner. Its comments end with their line, so it
/// keeps no state from line to line: it neither sets nor reads LineKind.
/// CreateMethod writes "sub Name(a, b)" or, for a function event, "function
/// Name(a, b)", with an empty body and "end sub rem Name" behind it.
class TSxCodeVBParser : public TSxScriptParser<uSxCodeVBParser::TVBToken> {
    SX_DECLARE_CLASS
public:
    using TSxScriptParser::TSxScriptParser;
};

template <>
const ScriptLanguage<uSxCodeVBParser::TVBToken> TSxScriptParser<uSxCodeVBParser::TVBToken>::Script;
template <>
uSxCodeVBParser::TVBToken TSxScriptParser<uSxCodeVBParser::TVBToken>::ScanOwnToken(Char c, String& AToken);
template <>
void TSxScriptParser<uSxCodeVBParser::TVBToken>::ReadRemark(const String& AEnd, String& AText);
extern template class TSxScriptParser<uSxCodeVBParser::TVBToken>;

}  // namespace sx
