// The XML tokenizer: one character per token, its kind given by the state,
// with comments, processing instructions and the CDATA marks read whole.
#include "codeedit/uSxCodeXmlParser.h"

#include "codeedit/SxScanner.h"

namespace sx {

using namespace uSxCodeXmlParser;

namespace uSxCodeXmlParser {

std::array<TSxXmlTokenInfo, 8> StockDrawInfo()
{
    return {{
        {u"WhiteSpace", clWindowText, clWindow, {}, {}},
        {u"AttributeName", clMaroon, clWindow, {vtAttrName}, {}},
        {u"AttributeValue", clBlack, clWindow, {vtAttrValue}, {TFontStyle::fsBold}},
        {u"ElementName", clMaroon, clWindow, {vtElmName}, {}},
        {u"ElemenValue", clBlack, clWindow, {vtElmCharacters}, {TFontStyle::fsBold}},
        {u"XMLChar",
         clBlue,
         clWindow,
         {vtAttrEqual, vtAttrQuote, vtElmStart, vtElmEnd, vtElmEndSlash, vtCDATAStart, vtCDATAEnd, vtProlog,
          vtProcessing},
         {}},
        {u"CDATA", clBlack, clWindow, {vtCDATACharacters}, {}},
        {u"Comment", clGreen, clYellow, {vtComment}, {}},
    }};
}

std::array<TSxXmlTokenInfo, 8> DrawInfo = StockDrawInfo();

void Initialization() { RegisterClass(TSxCodeXMLParser::ClassInfo()); }

void Finalization()
{
    ReleaseRowNames(DrawInfo);
    UnRegisterClass(TSxCodeXMLParser::ClassInfo());
}

}  // namespace uSxCodeXmlParser

namespace {

/// The kind a character gets when nothing but the state speaks for it.
constexpr std::array<TSxXmlToken, 6> StateDefaultToken = {
    vtElmStart,        // pNone
    vtElmCharacters,   // pData
    vtElmName,         // pElement
    vtAttrName,        // pAttribute
    vtAttrValue,       // pAttrValue
    vtCDATACharacters  // pCDATA
};

constexpr scan::Language<TSxXmlToken, 8> Xml{&DrawInfo,   DrawInfoDefaultRow, vtInvalid,
                                             vtLineBreak, vtEndOfFile,        vtComment, vtAttrValue};

/// Line breaks come out with this text; it is never drawn.
const Char* const LineBreakText = u"~~";

}  // namespace

SX_DEFINE_CLASS(TSxCodeXMLParser, TSxLangParser)

TSxCodeXMLParser::TSxCodeXMLParser(TComponent* aOwner) : TSxLangParser(aOwner) {}

String TSxCodeXMLParser::GetLanguage() { return u"XML"; }

void TSxCodeXMLParser::Reset()
{
    TSxLangParser::Reset();
    FParseInfo = pNone;
}

// The machine's state rides above LineKind's 16 bits.
std::uint32_t TSxCodeXMLParser::ScanState() const
{
    return std::uint32_t(FLineKind & 0xFFFF) | std::uint32_t(FParseInfo) << 16;
}

void TSxCodeXMLParser::SetScanState(std::uint32_t AState)
{
    FLineKind = Integer(AState & 0xFFFF);
    const std::uint32_t info = AState >> 16;
    FParseInfo = info <= std::uint32_t(pCDATA) ? TParseInfo(info) : pNone;
}

bool TSxCodeXMLParser::ContinuesBlock() const { return FParseInfo == pCDATA; }

String TSxCodeXMLParser::ReadString(Integer Count)
{
    String result;
    result.reserve(Count > 0 ? std::size_t(Count) : 0);
    for (Integer i = 0; i < Count; ++i)
        result.push_back(ReadChar());
    return result;
}

String TSxCodeXMLParser::PeekString(Integer Count) { return PeekChars(Count); }

bool TSxCodeXMLParser::InTag() const { return FParseInfo == pElement || FParseInfo == pAttribute; }

TSxXmlToken TSxCodeXMLParser::Enter(TParseInfo state, TSxXmlToken kind)
{
    FParseInfo = state;
    return kind;
}

TSxXmlToken TSxCodeXMLParser::InternalGetNextToken(String& Token)
{
    const Char c = ReadChar();
    if (c == 0) {
        Token.clear();
        return vtEndOfFile;
    }
    Token.assign(1, c);
    const TSxXmlToken byState = StateDefaultToken[std::size_t(FParseInfo)];
    switch (c) {
    case u'<':
        return FParseInfo == pCDATA ? byState : Enter(pElement, vtElmStart);
    case u'>':
        return InTag() ? Enter(pData, vtElmEnd) : byState;
    case u'/':
        return InTag() ? vtElmEndSlash : byState;
    case u'=':
        return FParseInfo == pAttribute ? vtAttrEqual : byState;
    case u'"':
        if (FParseInfo == pAttribute)
            return Enter(pAttrValue, vtAttrQuote);
        return FParseInfo == pAttrValue ? Enter(pAttribute, vtAttrQuote) : byState;
    case u' ':
        return InTag() ? Enter(pAttribute, vtAttrName) : byState;
    case u'!':
        return FParseInfo == pElement ? ReadDeclaration(Token) : byState;
    case u'?':
        return FParseInfo == pElement ? ReadProcessing(Token) : byState;
    case u']':
        return FParseInfo == pCDATA ? ReadCDATAEnd(Token) : byState;
    case scan::CR:
        return ReadLineBreak(Token);
    default:
        if (c < scan::Blank)
            Token.clear();  // tabs, lone LFs and other controls take no room
        return byState;
    }
}

// Behind "<!": a comment, a CDATA section, or a declaration whose name and
// words are then coloured as element and attribute names.
TSxXmlToken TSxCodeXMLParser::ReadDeclaration(String& Token)
{
    Token += ReadString(2);
    if (Token == u"!--")
        return ReadComment(Token);
    Token += ReadString(5);
    if (CompareText(Token, u"![CDATA[") == 0)
        return Enter(pCDATA, vtCDATAStart);
    PushStr(Token.substr(1));
    Token.resize(1);
    return vtAttrName;
}

// Runs on over line ends up to the "-->"; its '>' is left for the next call,
// which closes the tag as usual.
TSxXmlToken TSxCodeXMLParser::ReadComment(String& Token)
{
    Char c;
    do {
        c = ReadChar();
        Token.push_back(c);
    } while (c != 0 && !(c == u'-' && PeekString(2) == u"->"));
    Token.push_back(ReadChar());
    return vtComment;
}

// A processing instruction or the XML declaration, up to and including the
// next '?', over line ends; the closing '>' comes next as the tag's end.
TSxXmlToken TSxCodeXMLParser::ReadProcessing(String& Token)
{
    for (Char c = ReadChar(); c != 0; c = ReadChar()) {
        Token.push_back(c);
        if (c == u'?')
            break;
    }
    return vtProcessing;
}

// "]]>" closes the section and leaves the machine in a tag, so that text
// before the next '<' is coloured as an element name.
TSxXmlToken TSxCodeXMLParser::ReadCDATAEnd(String& Token)
{
    if (PeekString(2) != u"]>")
        return vtCDATACharacters;
    Token += ReadString(2);
    return Enter(pElement, vtCDATAEnd);
}

TSxXmlToken TSxCodeXMLParser::ReadLineBreak(String& Token)
{
    scan::TakeNext(*this, scan::LF, Token);
    Token = LineBreakText;
    return vtLineBreak;
}

bool TSxCodeXMLParser::GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                                    bool& LineBreak)
{
    return scan::HandOut(*this, Xml, InternalGetNextToken(Token), BackGround, TextColor, FontStyle, LineBreak);
}

}  // namespace sx
