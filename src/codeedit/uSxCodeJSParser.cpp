// The JavaScript tokenizer: what it adds to the shared script scanner (its
// comments and braces, with a block comment that survives a restart at any
// line, its keywords, colour table and handler template).
#include "codeedit/uSxCodeJSParser.h"

namespace sx {

using namespace uSxCodeJSParser;

namespace uSxCodeJSParser {

// The braces (vtBegin, vtEnd) are reserved words.
std::array<TSxJSInfo, 7> StockDrawInfo() { return ScriptDrawInfo<TJSToken>(); }

std::array<TSxJSInfo, 7> DrawInfo = StockDrawInfo();

void Initialization() { RegisterClass(TSxCodeJSParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TSxCodeJSParser::ClassInfo());
}

}  // namespace uSxCodeJSParser

namespace {

/// Line kinds: 1 inside "/*" at a line start. Kinds 2 ("}") and 3 (a comment
/// that ends with the line) are understood on input but never set.
constexpr std::u16string_view BlockCommentEnd = u"*/";
constexpr scan::CommentKind CommentKinds[] = {{BlockCommentEnd, 1}, {u"}", 0}, {u"\r", 0}};
constexpr scan::LineKinds OpenComments{CommentKinds};

/// The Visual Basic list without EXIT, THEN and UNTIL.
constexpr auto KeywordList = scan::KeywordsWithout<43>(ScriptKeywords<TJSToken>(), {u"EXIT", u"THEN", u"UNTIL"});
constexpr scan::KeywordTable<TJSToken> Keywords{std::span(KeywordList)};

constexpr std::u16string_view MethodTemplate = u"\r\nfunction %0:s(%1:s)\r\n{  \r\n} // %0:s\r\n";

}  // namespace

/// "}" is vtEnd, so a function directly behind the one before must count, and
/// the one template writes "function" for every kind of event.
template <>
const ScriptLanguage<TJSToken> TSxScriptParser<TJSToken>::Script{
    u"JavaScript",
    {&DrawInfo, 0, vtInvalid, vtLineBreak, vtEndOfFile, vtComment, vtString, &OpenComments},
    &Keywords,
    script::HeaderRules{true, true},
    MethodTemplate,
    MethodTemplate,
};

/// The characters the shared dispatch leaves to JavaScript: the slash, which
/// opens a block comment ("/*") or a line comment ("//"), "(" and the braces. All others it does not know, the
/// blank and the single quote among them, are vtUnknown.
template <>
TJSToken TSxScriptParser<TJSToken>::ScanOwnToken(Char c, String& AToken)
{
    switch (c) {
    case u'/':
        if (scan::TakeNext(*this, u'*', AToken))
            ReadRemark(String(BlockCommentEnd), AToken);
        else if (scan::TakeNext(*this, u'/', AToken))
            ReadRemark(LineCommentEnd, AToken);
        else
            return vtDivide;
        return vtComment;
    case u'(':
        return vtOpenParen;
    case u'{':
        return vtBegin;
    case u'}':
        return vtEnd;
    default:
        return vtUnknown;
    }
}

/// Appends a comment's text behind its opening, the end marker included. With
/// EndLines True it stops in front of a line end and leaves a comment that the
/// line end does not close open for the next token.
template <>
void TSxScriptParser<TJSToken>::ReadRemark(const String& AEnd, String& AText)
{
    scan::ReadCommentRest(*this, OpenComments, AEnd, AText);
}

template class TSxScriptParser<TJSToken>;

SX_DEFINE_CLASS(TSxCodeJSParser, TSxLangParser)

}  // namespace sx
