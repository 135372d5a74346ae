// Bracket matching (coBracketMatch): the bracket next to the caret and its
// partner, found through the parser's tokens so that brackets in strings and
// comments do not count, within BracketSearchLines lines of the caret and
// BracketSearchChars characters of the lines that hold brackets.
#include "codeedit/uSxCodeEdit.h"

#include "codeedit/uSxCodeEditLines.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace sx {

using uSxCodeEdit::BracketSearchChars;
using uSxCodeEdit::BracketSearchLines;

namespace {

constexpr std::u16string_view Openers = u"([{";
constexpr std::u16string_view Closers = u")]}";

bool IsBracket(Char c) { return Openers.find(c) != Openers.npos || Closers.find(c) != Closers.npos; }

bool HoldsBracket(const TLineView& line)
{
    for (std::size_t i = 0; i < line.size(); ++i)
        if (IsBracket(line[i]))
            return true;
    return false;
}

/// The bracket that closes c, or that c closes.
Char PartnerOf(Char c)
{
    const std::size_t open = Openers.find(c);
    return open != Openers.npos ? Closers[open] : Openers[Closers.find(c)];
}

}  // namespace

std::vector<TSxCodeEdit::TBracketAt> TSxCodeEdit::CodeBrackets(Integer ALine, std::size_t& ABudget)
{
    std::vector<TBracketAt> found;
    const TLineView line = FLines->Line(ALine);
    if (ABudget == 0 || !HoldsBracket(line))
        return found;
    ABudget -= std::min(ABudget, line.size());
    // The line alone, from the line kind the paint left for it, as the paint
    // tokenizes it; the parser's own feed is put back behind.
    TSxLangParser* parser = GetParser();
    const TSxOnGetNewBuffer savedFeed = parser->OnGetNewBuffer();
    bool fed = false;
    parser->SetOnGetNewBuffer([&](bool AReset, String& S) {
        if (AReset || fed)
            return AReset;
        fed = true;
        S.clear();
        line.AppendTo(S);
        S += u"\r\n";
        return true;
    });
    parser->ResetBuffer();
    parser->SetRemarkEnd(String());
    parser->SetEndLines(true);
    parser->SetLineKind(Integer(FLines->Objects(ALine)));
    String token;
    TColor back, text;
    TFontStyles style;
    bool lineBreak = false;
    Integer column = 0;
    while (parser->GetNextToken(token, back, text, style, lineBreak) && !lineBreak) {
        if (parser->TokenIsCode())
            for (std::size_t i = 0; i < token.size(); ++i)
                if (IsBracket(token[i]))
                    found.push_back({column + Integer(i), token[i], text, style});
        column += Integer(token.size());
    }
    parser->SetOnGetNewBuffer(savedFeed);
    return found;
}

bool TSxCodeEdit::BracketAtCaret(TBracketAt& ABracket)
{
    if (FLinePos < 0 || FLinePos >= FLines->Count())
        return false;
    // The bracket before the caret first, the one just typed; then the one after it.
    std::size_t budget = BracketSearchChars;
    const std::vector<TBracketAt> brackets = CodeBrackets(FLinePos, budget);
    for (const Integer column : {FCharPos - 1, FCharPos})
        for (const TBracketAt& b : brackets)
            if (b.Column == column) {
                ABracket = b;
                return true;
            }
    return false;
}

bool TSxCodeEdit::MatchingBracket(TPoint& ABracket, TPoint& APartner)
{
    TBracketAt bracket{-1, 0, clNone, {}};
    if (!HasExtOption(TSxCodeExtOption::coBracketMatch) || !BracketAtCaret(bracket))
        return false;
    const std::optional<TPoint> partner = FindPartner(bracket);
    if (!partner)
        return false;
    ABracket = Point(bracket.Column, FLinePos);
    APartner = *partner;
    return true;
}

std::optional<TPoint> TSxCodeEdit::FindPartner(const TBracketAt& ABracket)
{
    const bool forward = Openers.find(ABracket.Bracket) != Openers.npos;
    const Char partner = PartnerOf(ABracket.Bracket);
    // Depth counts the brackets of the same kind that open (forward) or close
    // (backward) on the way; the partner is the one that brings it to zero.
    Integer depth = 0;
    const Integer step = forward ? 1 : -1;
    const Integer last = forward ? std::min(FLines->Count() - 1, FLinePos + BracketSearchLines)
                                 : std::max(0, FLinePos - BracketSearchLines);
    std::size_t budget = BracketSearchChars;
    for (Integer line = FLinePos; forward ? line <= last : line >= last; line += step) {
        std::vector<TBracketAt> brackets = CodeBrackets(line, budget);
        if (!forward)
            std::reverse(brackets.begin(), brackets.end());
        for (const TBracketAt& b : brackets) {
            if (line == FLinePos && (forward ? b.Column <= ABracket.Column : b.Column >= ABracket.Column))
                continue;
            if (b.Bracket == ABracket.Bracket)
                ++depth;
            else if (b.Bracket == partner && depth-- == 0)
                return Point(b.Column, line);
        }
    }
    // Out of reach, the partner may still be there: no answer is better than a wrong one.
    const bool textEnded = forward ? last == FLines->Count() - 1 : last == 0;
    if (!textEnded || budget == 0)
        return std::nullopt;
    return Point(-1, -1);
}

void TSxCodeEdit::GotoMatchingBracket()
{
    TPoint bracket, partner;
    if (!MatchingBracket(bracket, partner) || partner.X < 0)
        return;
    // The caret keeps its side: behind the bracket it goes behind the partner.
    const bool behind = bracket.X == FCharPos - 1;
    SetLinePos(partner.Y);
    SetCharPos(partner.X + (behind ? 1 : 0));
    SetSelection(true);
}

}  // namespace sx
