// A small language for the painting tests: words on yellow, other signs on
// aqua, blanks on the window colour, and comments in braces on lime that may
// span lines through LineKind.
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
        LineBreak = false;
        Char c = ReadChar();
        if (c == 10)
            c = ReadChar();
        if (c == 0) {
            LineBreak = true;
            return false;
        }
        if (c == 13) {
            LineBreak = true;
            return true;
        }
        if (LineKind() == 1 || c == u'{') {
            BackGround = clLime;
            ReadComment(Token, c);
            return true;
        }
        Token += c;
        if (IsWordChar(c)) {
            while (IsWordChar(PeekChar()))
                Token += ReadChar();
            BackGround = clYellow;
            FontStyle = TFontStyles{TFontStyle::fsBold};
        } else if (c == u' ') {
            while (PeekChar() == u' ')
                Token += ReadChar();
        } else {
            BackGround = clAqua;
        }
        return true;
    }

private:
    static bool IsWordChar(Char c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9'); }

    void ReadComment(String& Token, Char c)
    {
        SetLineKind(1);
        for (;;) {
            Token += c;
            if (c == u'}') {
                SetLineKind(0);
                return;
            }
            const Char next = PeekChar();
            if (next == 13 || next == 0)
                return;
            c = ReadChar();
        }
    }
};

}  // namespace sx::test
