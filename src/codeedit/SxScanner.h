// The scanner toolkit of the language parsers: character sets, the readers of
// words, numbers, strings and comments, keyword tables picked by first letter,
// the comment that stays open from line to line, and the steps of
// GetNextToken that every language takes alike.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string_view>

namespace sx::scan {

constexpr Char CR = 13;
constexpr Char LF = 10;
constexpr Char Blank = 32;

/// A set of ASCII characters, tested with one compare and one load. A
/// character from 128 on belongs to no set, so it ends words and numbers.
class CharSet {
public:
    constexpr CharSet() = default;
    constexpr explicit CharSet(std::string_view AChars)
    {
        for (const char c : AChars)
            FMembers[static_cast<unsigned char>(c)] = true;
    }
    /// The characters from AFirst to ALast, both included.
    static constexpr CharSet Range(char AFirst, char ALast)
    {
        CharSet set;
        for (int c = AFirst; c <= ALast; ++c)
            set.FMembers[std::size_t(c)] = true;
        return set;
    }
    constexpr CharSet operator|(const CharSet& AOther) const
    {
        CharSet set = *this;
        for (std::size_t c = 0; c < FMembers.size(); ++c)
            set.FMembers[c] = FMembers[c] || AOther.FMembers[c];
        return set;
    }
    constexpr bool Contains(Char c) const { return c < FMembers.size() && FMembers[c]; }

private:
    std::array<bool, 128> FMembers{};
};

inline constexpr CharSet Letters = CharSet::Range('A', 'Z') | CharSet::Range('a', 'z');
inline constexpr CharSet Digits = CharSet::Range('0', '9');
inline constexpr CharSet WordStart = Letters | CharSet("_");
inline constexpr CharSet WordChars = WordStart | Digits;
inline constexpr CharSet HexDigits = Digits | CharSet::Range('A', 'F') | CharSet::Range('a', 'f');
inline constexpr CharSet NumberChars = Digits | CharSet(".");

/// The ASCII letters a to z folded to upper case; every other character as it is.
constexpr Char AsciiUpper(Char c) { return c >= u'a' && c <= u'z' ? Char(c - 32) : c; }

/// Reads the next character and appends it when it is AExpected; else gives it back.
inline bool TakeNext(TSxLangParser& AParser, Char AExpected, String& AText)
{
    const Char c = AParser.ReadChar();
    if (c == AExpected) {
        AText += c;
        return true;
    }
    AParser.PushChar(c);
    return false;
}

/// Appends characters while AInRun holds for them; gives the first other back
/// to the input and answers it.
template <class TInRun>
Char ReadWhile(TSxLangParser& AParser, TInRun AInRun, String& AText)
{
    Char c = AParser.ReadChar();
    while (AInRun(c)) {
        AText += c;
        c = AParser.ReadChar();
    }
    AParser.PushChar(c);
    return c;
}

inline Char ReadWhile(TSxLangParser& AParser, const CharSet& ASet, String& AText)
{
    return ReadWhile(AParser, [&ASet](Char c) { return ASet.Contains(c); }, AText);
}

/// How the rest of a number ended.
enum class NumberEnd {
    Integer,       ///< no period in it
    Real,          ///< one period, ended by a character that is no number character
    SecondPeriod,  ///< one period, ended by a second one ("1.2.3", "5.5..")
};

/// Appends the rest of a number behind its first digit: digits and one period.
/// A period with a period behind it belongs to a range ("1..5") and ends the
/// number, as a second period does. There is no exponent.
inline NumberEnd ReadNumberRest(TSxLangParser& AParser, String& AText)
{
    bool periodSeen = false;
    Char c = AParser.ReadChar();
    while (NumberChars.Contains(c)) {
        if (c == u'.') {
            if (periodSeen || AParser.PeekChar() == u'.') {
                AParser.PushChar(c);
                return periodSeen ? NumberEnd::SecondPeriod : NumberEnd::Integer;
            }
            periodSeen = true;
        }
        AText += c;
        c = AParser.ReadChar();
    }
    AParser.PushChar(c);
    return periodSeen ? NumberEnd::Real : NumberEnd::Integer;
}

/// Appends a string's text behind its opening quote, the closing quote
/// included. A doubled quote stays doubled, as in the source. A string never
/// runs over a line end: without a closing quote it ends with the line.
inline void ReadQuotedRest(TSxLangParser& AParser, Char AQuote, String& AText)
{
    for (;;) {
        const Char c = AParser.ReadChar();
        if (c == 0 || c == LF || c == CR) {
            AParser.PushChar(c);
            return;
        }
        AText += c;
        if (c == AQuote && !TakeNext(AParser, AQuote, AText))
            return;
    }
}

/// The comments of a language that may be open at a line start, by line kind
/// from 1 on: the end marker a kind stands for, and the kind a comment with
/// that marker sets while it is open (0 for a comment the line end closes,
/// or one only understood on input). Line kind 0 means no open comment.
struct CommentKind {
    std::u16string_view End;
    Integer KindWhileOpen;
};

class LineKinds {
public:
    constexpr explicit LineKinds(std::span<const CommentKind> AKinds) : FKinds(AKinds) {}

    /// A restart at a line start brings only LineKind; the open comment's end
    /// marker follows from it. Kind 0 and unknown kinds leave RemarkEnd alone.
    void RestoreRemarkEnd(TSxLangParser& AParser) const
    {
        const Integer kind = AParser.LineKind();
        if (kind >= 1 && std::size_t(kind) <= FKinds.size())
            AParser.SetRemarkEnd(String(FKinds[std::size_t(kind - 1)].End));
    }

    /// The line kind while a comment with the end marker AEnd is open.
    Integer KindWhileOpen(std::u16string_view AEnd) const
    {
        for (const CommentKind& kind : FKinds)
            if (kind.End == AEnd)
                return kind.KindWhileOpen;
        return 0;
    }

private:
    std::span<const CommentKind> FKinds;
};

/// Reads a comment behind its opening up to and with the end marker AEnd; the
/// end of input closes it too. While it reads, LineKind and RemarkEnd say that
/// the comment is open. With EndLines True it stops in front of CR or LF and
/// leaves the comment open for the next token, unless the line end is itself
/// the marker, which closes it. Comments do not nest, and the characters of
/// the opening are not reused to close it.
inline void ReadCommentRest(TSxLangParser& AParser, const LineKinds& AKinds, std::u16string_view AEnd, String& AText)
{
    const Char first = AEnd.empty() ? Char(0) : AEnd[0];
    const bool hasSecond = AEnd.size() > 1;
    const Char second = hasSecond ? AEnd[1] : Char(0);
    const bool endsWithTheLine = AEnd.size() == 1 && (first == CR || first == LF);
    AParser.SetLineKind(AKinds.KindWhileOpen(AEnd));
    AParser.SetRemarkEnd(String(AEnd));
    for (;;) {
        const Char c = AParser.ReadChar();
        if ((c == CR || c == LF) && AParser.EndLines()) {
            AParser.PushChar(c);
            if (endsWithTheLine && first == c)
                AParser.SetRemarkEnd(String());
            return;
        }
        if (c == 0)
            break;
        AText += c;
        if (c == first && (!hasSecond || TakeNext(AParser, second, AText)))
            break;
    }
    AParser.SetLineKind(0);
    AParser.SetRemarkEnd(String());
}

template <class TToken>
struct Keyword {
    std::u16string_view Word;
    TToken Token;
};

/// A keyword list grouped by first letter, in upper case; a word is compared
/// only with the keywords of its own first letter, in the order of the list.
/// Built at compile time.
template <class TToken>
class KeywordTable {
public:
    constexpr explicit KeywordTable(std::span<const Keyword<TToken>> AWords) : FWords(AWords)
    {
        for (std::size_t i = 0; i < FWords.size(); ++i) {
            LetterRange& range = FByLetter[std::size_t(FWords[i].Word[0] - u'A')];
            if (range.Count == 0)
                range.First = i;
            else if (range.First + range.Count != i)
                throw "keywords must be grouped by their first letter";
            ++range.Count;
        }
    }

    /// The token of a whole word, blind to the case of ASCII letters, or ANotFound.
    TToken Find(const String& AWord, TToken ANotFound) const
    {
        const Char first = AWord.empty() ? Char(0) : AsciiUpper(AWord[0]);
        if (first < u'A' || first > u'Z')
            return ANotFound;
        const LetterRange& range = FByLetter[std::size_t(first - u'A')];
        for (std::size_t i = range.First; i < range.First + range.Count; ++i)
            if (SameWord(AWord, FWords[i].Word))
                return FWords[i].Token;
        return ANotFound;
    }

private:
    static bool SameWord(const String& AWord, std::u16string_view AKeyword)
    {
        if (AWord.size() != AKeyword.size())
            return false;
        for (std::size_t i = 0; i < AWord.size(); ++i)
            if (AsciiUpper(AWord[i]) != AKeyword[i])
                return false;
        return true;
    }

    struct LetterRange {
        std::size_t First = 0;
        std::size_t Count = 0;
    };
    std::span<const Keyword<TToken>> FWords;
    std::array<LetterRange, 26> FByLetter{};
};

/// AWords without the keywords whose words stand in ALeftOut; M is what remains.
template <std::size_t M, class TToken, std::size_t N>
constexpr std::array<Keyword<TToken>, M> KeywordsWithout(const std::array<Keyword<TToken>, N>& AWords,
                                                         std::initializer_list<std::u16string_view> ALeftOut)
{
    std::array<Keyword<TToken>, M> kept{};
    std::size_t count = 0;
    for (const Keyword<TToken>& keyword : AWords)
        if (std::find(ALeftOut.begin(), ALeftOut.end(), keyword.Word) == ALeftOut.end())
            kept[count++] = keyword;
    if (count != M)
        throw "the count of the keywords kept is wrong";
    return kept;
}

/// A table of the tokens of one ASCII character; AUnknown for every other.
template <class TToken>
class CharTokenTable {
public:
    struct Entry {
        char Code;
        TToken Token;
    };
    constexpr CharTokenTable(TToken AUnknown, std::span<const Entry> AEntries) : FUnknown(AUnknown)
    {
        FTokens.fill(AUnknown);
        for (const Entry& entry : AEntries)
            FTokens[static_cast<unsigned char>(entry.Code)] = entry.Token;
    }
    constexpr TToken operator[](Char c) const { return c < FTokens.size() ? FTokens[c] : FUnknown; }

private:
    std::array<TToken, 128> FTokens{};
    TToken FUnknown;
};

/// What the shared steps need to know of a language: its colour table, the
/// row for tokens that stand in no row, and its special token kinds.
template <class TToken, std::size_t N>
struct Language {
    std::array<TSxTokenInfo<TToken>, N>* DrawInfo;
    std::size_t DefaultRow;
    TToken Invalid;  ///< the scanner's mark for "no token yet"
    TToken LineBreak;
    TToken EndOfFile;
    TToken Comment;
    TToken Quoted;  ///< a quoted string or value
    /// The comments that stay open from line to line; none for a language
    /// that keeps no state between lines.
    const LineKinds* OpenComments = nullptr;
};

/// The next token of a scanner. A comment that is open, by RemarkEnd or by
/// the line kind a restart brought, continues: its next piece, up to its end
/// or the line end, is read by AReadRemark. Each line the comment crosses gets
/// its piece, possibly empty, before its line break. Else characters are read
/// until AScan makes a token of one; it answers Invalid for a character that
/// makes none (the LF of a line break).
template <class TToken, std::size_t N, class TScan, class TReadRemark>
TToken NextToken(TSxLangParser& AParser, const Language<TToken, N>& ALanguage, String& AToken, TScan AScan,
                 TReadRemark AReadRemark)
{
    AToken.clear();
    if (ALanguage.OpenComments) {
        // Within a scan a comment left open keeps its marker; a marker that
        // only the line kind brings back means the scan restarts at this line
        // start, where nothing of the line has been handed out yet.
        const bool atRestart = AParser.RemarkEnd().empty();
        ALanguage.OpenComments->RestoreRemarkEnd(AParser);
        if (!AParser.RemarkEnd().empty()) {
            if (!atRestart) {
                const Char c = AParser.ReadChar();
                if (c == CR) {
                    AToken.assign(1, c);  // the LF behind it is dropped by the next call
                    return ALanguage.LineBreak;
                }
                if (c != LF)
                    AParser.PushChar(c);
            }
            const String end = AParser.RemarkEnd();
            AReadRemark(end, AToken);
            return ALanguage.Comment;
        }
    }
    TToken result = ALanguage.Invalid;
    while (result == ALanguage.Invalid) {
        const Char c = AParser.ReadChar();
        AToken.assign(1, c);
        result = AScan(c, AToken);
    }
    return result;
}

/// The colours of a token of kind AKind: those of the first row from row 1 on
/// that holds it, else those of the default row. Answers whether a row other
/// than the default one gave them.
template <class TToken, std::size_t N>
bool FillColours(const Language<TToken, N>& ALanguage, TToken AKind, TColor& BackGround, TColor& TextColor,
                 TFontStyles& FontStyle)
{
    const auto& table = *ALanguage.DrawInfo;
    const TSxTokenInfo<TToken>& row = FindTokenInfo(table, ALanguage.DefaultRow, AKind);
    BackGround = row.BckColor;
    TextColor = row.TextColor;
    FontStyle = row.Style;
    return &row != &table[ALanguage.DefaultRow];
}

/// Whether the caller of GetNextToken goes on behind a token of kind AKind.
template <class TToken, std::size_t N>
bool GoesOn(const Language<TToken, N>& ALanguage, TToken AKind)
{
    return AKind != ALanguage.Invalid && AKind != ALanguage.EndOfFile;
}

/// Tells the parser the kind of the token and whether it is code, neither a
/// quoted string nor a comment: the brackets of code pair up, those of text do not.
template <class TToken, std::size_t N>
void MarkCode(TSxLangParser& AParser, const Language<TToken, N>& ALanguage, TToken AKind)
{
    AParser.SetTokenIsCode(AKind != ALanguage.Quoted && AKind != ALanguage.Comment);
    AParser.SetTokenKind(Integer(AKind));
}

/// The out-arguments and the result of GetNextToken for a token of kind AKind.
template <class TToken, std::size_t N>
bool HandOut(TSxLangParser& AParser, const Language<TToken, N>& ALanguage, TToken AKind, TColor& BackGround,
             TColor& TextColor, TFontStyles& FontStyle, bool& LineBreak)
{
    MarkCode(AParser, ALanguage, AKind);
    FillColours(ALanguage, AKind, BackGround, TextColor, FontStyle);
    LineBreak = AKind == ALanguage.LineBreak;
    return GoesOn(ALanguage, AKind);
}

}  // namespace sx::scan
