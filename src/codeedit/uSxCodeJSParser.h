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
    // 0 to 4: what is no keyword
    vtLineBreak, vtUnknown, vtInvalid, vtEndOfFile, vtIdentifier,
    // 5 to 52: the keywords, with vtBegin at 8
    vtFunction, vtSub, vtEnd, vtBegin, vtClass, vtPublic, vtPrivate, vtConst, vtDim, vtDo, vtWhile, vtUnitil,
    vtLoop, vtExit, vtErase, vtExecute, vtExecuteGlobal, vtEach, vtIn, vtFor, vtTo, vtNext, vtDefault,
    vtByVal, vtByRef, vtIf, vtThen, vtElse, vtElseIf, vtOn, vtError, vtResume, vtGoto, vtOption, vtExplicit,
    vtProperty, vtGet, vtSet, vtLet, vtRandomize, vtReDim, vtPreserve, vtRem, vtSelect, vtCase, vtWend,
    vtWith, vtUntil,
    // 53 to 58: text, numbers and comments
    vtConcat, vtString, vtHexNumber, vtNumber, vtFloat, vtComment,
    // 59 to 78: punctuation and operators
    vtComma, vtSemicolon, vtColon, vtPeriod, vtRange, vtEquals, vtNotEquals, vtLess, vtLessEqual, vtGreater,
    vtGreaterEqual, vtOpenParen, vtCloseParen, vtOpenBracket, vtCloseBracket, vtPlus, vtMinus, vtMultiply,
    vtDivide, vtDivideInt
};

using TJSTokens = TSet<TJSToken, 128>;
using TSxJSInfo = TSxTokenInfo<TJSToken>;

/// The colour table of all JavaScript parsers in the process; row 0 is the default.
extern std::array<TSxJSInfo, 7> DrawInfo;
/// The table as it stands at start ("Classic"), before an IDE's colours or a theme change it.
std::array<TSxJSInfo, 7> StockDrawInfo();

/// Registers TSxCodeJSParser with the class registry.
void Initialization();
/// Releases the names of DrawInfo and unregisters TSxCodeJSParser.
void Finalization();

}  // namespace uSxCodeJSParser

/// The JavaScript colouring scanner. A block comment can span lines: LineKind
/// is 1 inside "/*" at a line start; 2 ("}") and 3 (a line comment) are
/// understood on input but never set. CreateMethod writes "function Name(a, b)"
/// for every kind of event, with an empty body in braces and "// Name" behind it.
class TSxCodeJSParser : public TSxScriptParser<uSxCodeJSParser::TJSToken> {
    SX_DECLARE_CLASS
public:
    using TSxScriptParser::TSxScriptParser;
};

template <>
const ScriptLanguage<uSxCodeJSParser::TJSToken> TSxScriptParser<uSxCodeJSParser::TJSToken>::Script;
template <>
uSxCodeJSParser::TJSToken TSxScriptParser<uSxCodeJSParser::TJSToken>::ScanOwnToken(Char c, String& AToken);
template <>
void TSxScriptParser<uSxCodeJSParser::TJSToken>::ReadRemark(const String& AEnd, String& AText);
extern template class TSxScriptParser<uSxCodeJSParser::TJSToken>;

}  // namespace sx
