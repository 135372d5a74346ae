// The Visual Basic tokenizer: what it adds to the shared script scanner (its
// comments, keywords, colour table and handler templates).
#include "codeedit/uSxCodeVBParser.h"

namespace sx {

using namespace uSxCodeVBParser;

namespace uSxCodeVBParser {

std::array<TSxVBInfo, 7> StockDrawInfo() { return ScriptDrawInfo<TVBToken>(); }

std::array<TSxVBInfo, 7> DrawInfo = StockDrawInfo();

void Initialization() { RegisterClass(TSxCodeVBParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TSxCodeVBParser::ClassInfo());
}

}  // namespace uSxCodeVBParser

namespace {

using scan::CR;
using scan::LF;

constexpr auto KeywordList = ScriptKeywords<TVBToken>();
constexpr scan::KeywordTable<TVBToken> Keywords{std::span(KeywordList)};

/// "(" alone, or "(*" opening a comment that runs up to and with "*)" within
/// the line. Such a comment is no Visual Basic; it is handed out whole, as a
/// comment, so that the token texts of the line still make up the line.
TVBToken ScanParenStarRemark(TSxLangParser& AParser, String& AToken)
{
    if (!scan::TakeNext(AParser, u'*', AToken))
        return vtOpenParen;
    for (;;) {
        const Char c = AParser.ReadChar();
        if (c == 0 || c == CR || c == LF) {
            AParser.PushChar(c);
            return vtComment;
        }
        AToken += c;
        if (c == u'*' && scan::TakeNext(AParser, u')', AToken))
            return vtComment;
    }
}

}  // namespace

/// A sub or function behind "end" closes a handler; each fits its own kind of event.
template <>
const ScriptLanguage<TVBToken> TSxScriptParser<TVBToken>::Script{
    u"Visual Basic",
    {&DrawInfo, 0, vtInvalid, vtLineBreak, vtEndOfFile, vtComment, vtString},
    &Keywords,
    script::HeaderRules{},
    u"\r\nfunction %0:s(%1:s)\r\n  \r\nend function rem %0:s\r\n",
    u"\r\nsub %0:s(%1:s)\r\n  \r\nend sub rem %0:s\r\n",
};

/// The characters the shared dispatch leaves to Visual Basic: "'" opens a
/// comment to the end of the line, "(" may open a comment of its own. All
/// others it does not know, the blank among them, are vtUnknown.
template <>
TVBToken TSxScriptParser<TVBToken>::ScanOwnToken(Char c, String& AToken)
{
    switch (c) {
    case u'\'':
        ReadRemark(LineCommentEnd, AToken);
        return vtComment;
    case u'(':
        return ScanParenStarRemark(*this, AToken);
    case u'/':
        return vtDivide;
    default:
        return vtUnknown;
    }
}

/// Reads up to the end marker (one character) or the end of input, without
/// the marker, which goes back to the input also at the end of input, so that
/// a comment is always followed by a line break.
template <>
void TSxScriptParser<TVBToken>::ReadRemark(const String& AEnd, String& AText)
{
    const Char marker = AEnd.empty() ? Char(0) : AEnd[0];
    for (Char c = ReadChar(); c != marker && c != 0; c = ReadChar())
        AText += c;
    PushStr(AEnd);
}

template class TSxScriptParser<TVBToken>;

SX_DEFINE_CLASS(TSxCodeVBParser, TSxLangParser)

}  // namespace sx
