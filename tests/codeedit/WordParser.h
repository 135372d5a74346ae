// A small language for the painting tests: words on yellow in bold, other
// signs on aqua, blanks on the window colour, and comments in braces on lime
// that may span lines through LineKind.
#pragma once

#include "codeedit/uSxCodeParser.h"

namespace sx::test {

class WordParser : public TSxLangParser {
public:
    using TSxLangParser::TSxLangParser;

    bool GetNextToken(String& Token, TColor& BackGround, TColor& TextColor, TFontStyles& FontStyle,
                      bool& LineBreak) override
    {
        Token.clear();
        FontStyle = TFontStyles{};
        TextColor = clBlack;
        BackGround = clWindow;
        Char c = ReadChar();
        if (c == 10)
            c = ReadChar();
        LineBreak = c == 0 || c == 13;
        if (LineBreak)
            return c == 13;
        const bool comment = LineKind() == 1 || c == u'{';
        // A token runs on while its characters are of the kind of its first.
        const auto sameKind = [&](Char next) {
            return comment ? next != 13 && next != 0 && Token.back() != u'}'
                           : (IsWordChar(c) && IsWordChar(next)) || (c == u' ' && next == u' ');
        };
        Token += c;
        while (sameKind(PeekChar()))
            Token += ReadChar();
        if (comment) {
            BackGround = clLime;
            SetLineKind(Token.back() == u'}' ? 0 : 1);
        } else if (IsWordChar(c)) {
            BackGround = clYellow;
            FontStyle = TFontStyles{TFontStyle::fsBold};
        } else if (c != u' ') {
            BackGround = clAqua;
        }
        return true;
    }

private:
    static bool IsWordChar(Char c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9'); }
};

}  // namespace sx::test
