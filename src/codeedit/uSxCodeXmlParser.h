// The XML tokenizer: a six-state machine over single characters that colours
// tags, attribute names and values, element content, comments, processing
// instructions and CDATA sections, without checking anything.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <array>

namespace sx {

namespace uSxCodeXmlParser {

enum TSxXmlToken {
    vtLineBreak,
    vtUnknown,
    vtInvalid,
    vtEndOfFile,
    vtAttrName,
    vtAttrEqual,
    vtAttrQuote,
    vtAttrValue,
    vtElmName,
    vtElmStart,
    vtElmEnd,
    vtElmEndSlash,
    vtElmCharacters,
    vtCDATAStart,
    vtCDATAEnd,
    vtCDATACharacters,
    vtComment,
    vtProlog,
    vtProcessing
};

using TSxXmlTokens = TSet<TSxXmlToken, 128>;

/// Where the machine stands; it decides the kind of nearly every character.
enum TParseInfo {
    pNone,       ///< before the first '<' of this run
    pData,       ///< in element content, behind a '>'
    pElement,    ///< in a tag, in the element name
    pAttribute,  ///< in a tag, behind the element name, outside a value
    pAttrValue,  ///< in a double-quoted attribute value
    pCDATA       ///< in a CDATA section
};

using TSxXmlTokenInfo = TSxTokenInfo<TSxXmlToken>;

/// The row whose colours a token in no row gets.
constexpr std::size_t DrawInfoDefaultRow = 2;

/// The colour table shared by all XML parsers; an application may recolour it.
extern std::array<TSxXmlTokenInfo, 8> DrawInfo;
/// The table as it stands at start ("Classic"), before an IDE's colours or a theme change it.
std::array<TSxXmlTokenInfo, 8> StockDrawInfo();

/// Registers TSxCodeXMLParser with the class registry.
void Initialization();
/// Releases the names of DrawInfo and unregisters the class.
void Finalization();

}  // namespace uSxCodeXmlParser

class TSxCodeXMLParser : public TSxLangParser {
    SX_DECLARE_CLASS
public:
    explicit TSxCodeXMLParser(TComponent* aOwner);

    String GetLanguage() override;
    bool GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override;

    std::uint32_t ScanState() const override;
    void SetScanState(std::uint32_t AState) override;
    bool ContinuesBlock() const override;

protected:
    void Reset() override;

    /// Count characters read; each one past the end of input is character 0.
    String ReadString(Integer Count);
    /// The next Count characters, left unread.
    String PeekString(Integer Count);
    /// One token, nearly always a single character whose kind the state decides.
    uSxCodeXmlParser::TSxXmlToken InternalGetNextToken(String& Token);

    /// The machine's state, which a line start carries besides LineKind.
    uSxCodeXmlParser::TParseInfo FParseInfo = uSxCodeXmlParser::pNone;

private:
    bool InTag() const;
    uSxCodeXmlParser::TSxXmlToken Enter(uSxCodeXmlParser::TParseInfo state, uSxCodeXmlParser::TSxXmlToken kind);
    uSxCodeXmlParser::TSxXmlToken ReadDeclaration(String& Token);
    uSxCodeXmlParser::TSxXmlToken ReadComment(String& Token);
    uSxCodeXmlParser::TSxXmlToken ReadProcessing(String& Token);
    uSxCodeXmlParser::TSxXmlToken ReadCDATAEnd(String& Token);
    uSxCodeXmlParser::TSxXmlToken ReadLineBreak(String& Token);
};

}  // namespace sx
