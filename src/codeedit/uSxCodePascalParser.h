// The Pascal tokenizer: keywords, strings, numbers, operators and the three
// comment forms, coloured from one table that every instance shares.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <array>
#include <string_view>

namespace sx {

namespace uSxCodePascalParser {

/// The Pascal token kinds. ptRepeat, ptKeyword, ptHexNumber and ptSoapComment
/// are never handed out (they exist for the colour table and for clients);
/// ptInvalid marks "no token yet" inside the scanner.
enum TPascalToken {
    ptUnknown, ptLineBreak, ptTry, ptExcept, ptFinally, ptInherited, ptSpace, ptAs, ptInvalid, ptEndOfFile,
    ptFunction, ptProcedure, ptConstructor, ptDestructor, ptUnit, ptImplementation, ptProgram, ptUses,
    ptBegin, ptEnd, ptType, ptIf, ptThen, ptElse, ptRepeat, ptUntil, ptDo, ptClass, ptPrivate, ptProtected,
    ptPublic, ptPublished, ptProperty, ptinterface, ptKeyword, ptIdentifier, ptString, ptHexNumber,
    ptNumber, ptFloat, ptComment, ptSoapComment, ptVar, ptConst, ptOut, ptComma, ptSemicolon, ptColon,
    ptPeriod, ptRange, ptEquals, ptNotEquals, ptLess, ptLessEqual, ptGreater, ptGreaterEqual, ptAssign,
    ptOpenParen, ptCloseParen, ptOpenBracket, ptCloseBracket, ptCaret, ptHash, ptAddress, ptPlus,
    ptMinus, ptMultiply, ptDivide
};

using TPascalTokens = TSet<TPascalToken, 128>;
using TSxPascalInfo = TSxTokenInfo<TPascalToken>;

/// Exported for clients of the library; the parser itself does not read them.
inline const TPascalTokens ptSoapMethods{ptFunction, ptProcedure};
inline const TPascalTokens ptComments{ptComment, ptSoapComment};

/// The colour table of all Pascal parsers in the process; row 0 is the default.
extern std::array<TSxPascalInfo, 8> DrawInfo;
/// The table as it stands at start ("Classic"), before an IDE's colours or a theme change it.
std::array<TSxPascalInfo, 8> StockDrawInfo();

/// Registers TsxCodePasParser with the class registry.
void Initialization();
/// Releases the names of DrawInfo and unregisters TsxCodePasParser.
void Finalization();

}  // namespace uSxCodePascalParser

/// The Pascal colouring scanner. Its only line-to-line state is the comment
/// open at a line start, kept in LineKind: 1 inside "(*", 2 inside "{"; 3, a
/// comment that ends with the line, is understood on input but never set.
class TSxCodePascalParser : public TSxLangParser {
    SX_DECLARE_CLASS
public:
    explicit TSxCodePascalParser(TComponent* aOwner);

    String GetLanguage() override;
    bool GetNextToken(String& AToken, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override;

    Integer DelphiVersion() const { return FDelphiVersion; }
    /// Stores the version and, for an installed IDE, takes its highlight colours
    /// into DrawInfo, which every Pascal parser shares. An unknown version
    /// leaves the table as it is; nothing is repainted.
    void SetDelphiVersion(Integer V);

    Integer SoapCommentLineStart() const { return FSoapCommentLineStart; }
    void SetSoapCommentLineStart(Integer value) { FSoapCommentLineStart = value; }
    Integer SoapCommentPosStart() const { return FSoapCommentPosStart; }
    void SetSoapCommentPosStart(Integer value) { FSoapCommentPosStart = value; }
    Integer SoapCommentLineEnd() const { return FSoapCommentLineEnd; }
    void SetSoapCommentLineEnd(Integer value) { FSoapCommentLineEnd = value; }
    Integer SoapCommentPosEnd() const { return FSoapCommentPosEnd; }
    void SetSoapCommentPosEnd(Integer value) { FSoapCommentPosEnd = value; }
    const String& SoapComment() const { return FSoapComment; }
    void SetSoapComment(const String& value) { FSoapComment = value; }

protected:
    /// The next token: its kind, with its text in AToken.
    uSxCodePascalParser::TPascalToken InternalGetNextToken(String& AToken);

    // The readers append what they read to AText, so that one token text is
    // reused from call to call instead of building a string per token.

    /// Appends the hexadecimal digits behind "$".
    void ReadHexNumber(String& AText);
    /// Appends a string's text behind its opening quote, up to and with the closing quote or the line end.
    void ReadString(String& AText);
    /// Appends a comment's text behind its opening, the end marker included.
    void ReadRemark(const String& AEnd, String& AText);
    /// Appends the rest of a number behind its first digit; sets AToken to ptFloat for a real number.
    void ReadNumber(uSxCodePascalParser::TPascalToken& AToken, String& AText);
    /// Appends the rest of a word behind its first character.
    void ReadIdentifier(String& AText);

    Integer FSoapCommentLineEnd = -1;
    Integer FSoapCommentPosEnd = -1;
    Integer FSoapCommentLineStart = -1;
    Integer FSoapCommentPosStart = -1;
    String FSoapComment;
    Integer FDelphiVersion = 0;

private:
    uSxCodePascalParser::TPascalToken ScanToken(Char c, String& AToken);
    uSxCodePascalParser::TPascalToken ScanRemark(Char ASecond, std::u16string_view AEnd, String& AToken,
                                                 uSxCodePascalParser::TPascalToken AAlone);
    void ClearSoapComment();
};

/// The class this unit registers, so that lookup by class name finds the Pascal parser.
class TsxCodePasParser : public TSxCodePascalParser {
    SX_DECLARE_CLASS
public:
    using TSxCodePascalParser::TSxCodePascalParser;
};

}  // namespace sx
