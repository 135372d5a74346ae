// The fold rules of Pascal, Visual Basic, JavaScript, XML and SQL. Each rule
// looks at one code token at a time; what it must remember in between (a
// keyword that opens only when the next token agrees, where a tag stands) it
// keeps as a few bits of AState, which follow from the tokens alone.
#include "codeedit/uSxCodeFoldRules.h"

#include "codeedit/SxScanner.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"

#include <algorithm>
#include <initializer_list>

namespace sx {

namespace {

using Text = std::u16string_view;

/// Blanks, tabs and line breaks: no rule looks at them.
bool IsBlank(Text AText)
{
    return std::all_of(AText.begin(), AText.end(), [](Char c) { return c <= scan::Blank; });
}

bool SameUpper(Char a, Char AUpper) { return scan::AsciiUpper(a) == AUpper; }

/// Whether AText is the word AUpperWord, blind to the case of ASCII letters.
bool IsWord(Text AText, Text AUpperWord)
{
    return std::equal(AText.begin(), AText.end(), AUpperWord.begin(), AUpperWord.end(), SameUpper);
}

bool IsOneOf(Text AText, std::initializer_list<Text> AUpperWords)
{
    return std::any_of(AUpperWords.begin(), AUpperWords.end(), [AText](Text w) { return IsWord(AText, w); });
}

// ---------------------------------------------------------------- Pascal

/// begin, case, try, asm, record and the class-like types close with "end",
/// repeat with "until"; a unit's sections run from one section keyword to
/// the next or to the final "end".
class TPascalFoldRules final : public TSxFoldRules {
    enum Kind : Integer { Block, Record, Repeat, Section };
    enum Flag : std::uint16_t {
        AfterEquals = 1,   ///< the last code token was "="
        TypePending = 2,   ///< behind "= class", "= object" or "= interface"
        InAncestors = 4,   ///< in the "(...)" behind one of those
    };

public:
    void CodeToken(Integer AKind, Text AText, TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        using namespace uSxCodePascalParser;
        if (IsBlank(AText))
            return;
        if ((AState & (TypePending | InAncestors)) && DecideType(AKind, AText, AStack, AState))
            return;
        const bool afterEquals = AState & AfterEquals;
        AState = AKind == ptEquals ? AfterEquals : 0;
        if (afterEquals && (AKind == ptClass || AKind == ptinterface || IsWord(AText, u"DISPINTERFACE")))
            AState = TypePending;
        else
            OpenOrClose(AKind, AText, AStack);
    }

    /// A type still undecided at the line end has its body on the next lines.
    void LineEnd(TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        if (AState & (TypePending | InAncestors))
            AStack.Open(Block);
        AState &= AfterEquals;
    }

private:
    /// A class-like type opens unless it is a forward declaration ("class;"),
    /// a short one ("class(TBase);") or a class reference ("class of"). Answers
    /// whether the token was used up by the decision.
    static bool DecideType(Integer AKind, Text AText, TSxFoldStack& AStack, std::uint16_t& AState)
    {
        using namespace uSxCodePascalParser;
        if (AState & InAncestors) {
            if (AKind == ptCloseParen)
                AState = TypePending;
            return true;
        }
        AState = 0;
        if (AKind == ptOpenParen) {
            AState = InAncestors;
            return true;
        }
        if (AKind == ptSemicolon || IsWord(AText, u"OF"))
            return true;
        AStack.Open(Block);
        return false;
    }

    static void OpenOrClose(Integer AKind, Text AText, TSxFoldStack& AStack)
    {
        using namespace uSxCodePascalParser;
        switch (AKind) {
        case ptBegin:
        case ptTry:
            AStack.Open(Block);
            break;
        case ptEnd:
            CloseWithEnd(AStack);
            break;
        case ptUntil:
            AStack.Close(FoldKind(Repeat));
            break;
        case ptinterface:
        case ptImplementation:
            StartSection(AStack);
            break;
        case ptIdentifier:
            OpenOrCloseByWord(AText, AStack);
            break;
        default:
            break;
        }
    }

    /// The words that the parser does not count as keywords.
    static void OpenOrCloseByWord(Text AText, TSxFoldStack& AStack)
    {
        if (IsWord(AText, u"RECORD"))
            AStack.Open(Record);
        else if (IsWord(AText, u"CASE")) {
            // a record's variant part ends with the record's own "end"
            if (AStack.Top() != Record)
                AStack.Open(Block);
        } else if (IsWord(AText, u"ASM"))
            AStack.Open(Block);
        else if (IsWord(AText, u"REPEAT"))
            AStack.Open(Repeat);
        else if (IsOneOf(AText, {u"INITIALIZATION", u"FINALIZATION"}))
            StartSection(AStack);
    }

    static void StartSection(TSxFoldStack& AStack)
    {
        AStack.Close(FoldKind(Section));
        AStack.Open(Section);
    }

    /// "end" closes the innermost block; with none open, the final "end" closes the last section.
    static void CloseWithEnd(TSxFoldStack& AStack)
    {
        AStack.Close(AStack.Top() == Section ? FoldKind(Section) : FoldKind(Block) | FoldKind(Record));
    }
};

// ---------------------------------------------------------------- Visual Basic

/// A block of Visual Basic: the statement's first word that opens it, and the
/// one that closes it, either alone (Next, Loop, Wend) or, for vtEnd, as
/// "End" and the opening word. A block's kind is its index here.
namespace vb = uSxCodeVBParser;

struct TVBBlock {
    vb::TVBToken Opener;
    vb::TVBToken Closer;
};

constexpr TVBBlock VBBlocks[] = {
    {vb::vtSub, vb::vtEnd},    {vb::vtFunction, vb::vtEnd}, {vb::vtProperty, vb::vtEnd}, {vb::vtIf, vb::vtEnd},
    {vb::vtSelect, vb::vtEnd}, {vb::vtWith, vb::vtEnd},     {vb::vtClass, vb::vtEnd},    {vb::vtFor, vb::vtNext},
    {vb::vtDo, vb::vtLoop},    {vb::vtWhile, vb::vtWend},
};

/// The kind of the block that AToken opens as a statement's first word; -1 for none.
Integer VBBlockOpenedBy(Integer AToken)
{
    for (std::size_t i = 0; i < std::size(VBBlocks); ++i)
        if (VBBlocks[i].Opener == AToken)
            return Integer(i);
    return -1;
}

/// The kind of the block that AToken closes: as a statement's first word
/// (Next, Loop, Wend), or behind "End" when AAfterEnd; -1 for none.
Integer VBBlockClosedBy(Integer AToken, bool AAfterEnd)
{
    for (std::size_t i = 0; i < std::size(VBBlocks); ++i)
        if (AAfterEnd ? VBBlocks[i].Opener == AToken && VBBlocks[i].Closer == vb::vtEnd
                      : VBBlocks[i].Closer == AToken && AToken != vb::vtEnd)
            return Integer(i);
    return -1;
}

/// Keywords count only as a statement's first word, behind its modifiers; a
/// statement starts at the line start and behind ":". "If" opens a block
/// only when "Then" ends its line.
class TVBFoldRules final : public TSxFoldRules {
    enum Flag : std::uint16_t {
        InStatement = 1,  ///< the statement's first word is behind
        AfterEnd = 2,     ///< the statement began with "End"
        IfPending = 4,    ///< the statement began with "If"
        ThenLast = 8,     ///< the last code token was "Then"
    };

public:
    void CodeToken(Integer AKind, Text AText, TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        using namespace vb;
        if (IsBlank(AText))
            return;
        if (AText == u":") {
            AState = 0;
            return;
        }
        const std::uint16_t before = AState;
        AState = InStatement | (before & IfPending) | (AKind == vtThen ? ThenLast : 0);
        if (before & AfterEnd)
            Close(VBBlockClosedBy(AKind, true), AStack);
        else if (before & InStatement)
            return;
        else if (IsModifier(AKind, AText))
            AState = before;
        else if (AKind == vtEnd)
            AState |= AfterEnd;
        else if (AKind == vtIf)
            AState |= IfPending;
        else if (const Integer opened = VBBlockOpenedBy(AKind); opened >= 0)
            AStack.Open(opened);
        else
            Close(VBBlockClosedBy(AKind, false), AStack);
    }

    void LineEnd(TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        if ((AState & IfPending) && (AState & ThenLast))
            AStack.Open(VBBlockOpenedBy(vb::vtIf));
        AState = 0;
    }

private:
    static bool IsModifier(Integer AKind, Text AText)
    {
        using namespace vb;
        return AKind == vtPublic || AKind == vtPrivate || AKind == vtDefault ||
               IsOneOf(AText, {u"FRIEND", u"STATIC", u"PROTECTED", u"SHARED", u"OVERRIDES", u"OVERLOADS"});
    }

    static void Close(Integer AKind, TSxFoldStack& AStack)
    {
        if (AKind >= 0)
            AStack.Close(FoldKind(AKind));
    }
};

// ---------------------------------------------------------------- JavaScript

/// Braces of code. The parser gives "}" the kind of the word "end" too, so the text decides.
class TJSFoldRules final : public TSxFoldRules {
    static constexpr Integer Braces = 0;

public:
    void CodeToken(Integer, Text AText, TSxFoldStack& AStack, std::uint16_t&) const override
    {
        if (AText == u"{")
            AStack.Open(Braces);
        else if (AText == u"}")
            AStack.Close(FoldKind(Braces));
    }
};

// ---------------------------------------------------------------- XML

/// Elements. An element opens at its name and closes at "</"; an empty
/// element ("<name/>") closes again at its "/>". Declarations, processing
/// instructions and CDATA open nothing.
class TXmlFoldRules final : public TSxFoldRules {
    static constexpr Integer Element = 0;
    /// Where the tokens stand, kept whole in AState.
    enum Place : std::uint16_t {
        Content,    ///< outside tags
        TagStart,   ///< behind "<"
        StartTag,   ///< in a start tag, behind the "<" and the name
        SlashInTag, ///< behind a "/" in a start tag
        OtherTag,   ///< in any other tag, up to its ">"
    };

public:
    void CodeToken(Integer AKind, Text AText, TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        if (AKind != uSxCodeXmlParser::vtLineBreak && !IsBlank(AText))
            AState = Next(Place(AState), AKind, AStack);
    }

private:
    static Place Next(Place APlace, Integer AKind, TSxFoldStack& AStack)
    {
        using namespace uSxCodeXmlParser;
        if (AKind == vtElmStart)
            return TagStart;
        if (AKind == vtCDATAEnd)
            return Content;
        switch (APlace) {
        case TagStart:
            if (AKind == vtElmName) {
                AStack.Open(Element);
                return StartTag;
            }
            if (AKind == vtElmEndSlash)
                AStack.Close(FoldKind(Element));
            return AKind == vtElmEnd ? Content : OtherTag;
        case StartTag:
            if (AKind == vtElmEnd)
                return Content;
            return AKind == vtElmEndSlash ? SlashInTag : StartTag;
        case SlashInTag:
            if (AKind != vtElmEnd)
                return StartTag;
            AStack.Close(FoldKind(Element));
            return Content;
        case OtherTag:
            return AKind == vtElmEnd ? Content : OtherTag;
        default:
            return Content;
        }
    }
};

// ---------------------------------------------------------------- SQL

/// BEGIN and CASE close with END, "(" with ")". A BEGIN that starts a
/// transaction opens nothing. END IF, END LOOP, END WHILE and END REPEAT
/// close nothing, as their IF or loop opened nothing; END CASE closes a CASE
/// without opening another. So BEGIN and END wait for the next code token,
/// or the line end, to decide.
class TSqlFoldRules final : public TSxFoldRules {
    enum Kind : Integer { Block, Paren };
    enum Flag : std::uint16_t {
        BeginPending = 1,  ///< the last code token was BEGIN
        EndPending = 2,    ///< the last code token was END
    };

public:
    void CodeToken(Integer AKind, Text AText, TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        if (IsBlank(AText))
            return;
        const std::uint16_t before = AState;
        AState = 0;
        if (before & BeginPending) {
            if (StartsOneOf(AText, {u";", u"TRANSACTION", u"WORK", u"DISTRIBUTED"}))
                return;
            AStack.Open(Block);
        }
        if (before & EndPending) {
            if (StartsOneOf(AText, {u"IF", u"LOOP", u"WHILE", u"REPEAT"}))
                return;
            AStack.Close(FoldKind(Block));
            if (IsWord(AText, u"CASE"))
                return;
        }
        if (AText == u"(")
            AStack.Open(Paren);
        else if (AText == u")")
            AStack.Close(FoldKind(Paren));
        else if (AKind == uSxCodeSqlParser::vtKeyWord)
            Keyword(AText, AStack, AState);
    }

    void LineEnd(TSxFoldStack& AStack, std::uint16_t& AState) const override
    {
        if (AState & BeginPending)
            AStack.Open(Block);
        if (AState & EndPending)
            AStack.Close(FoldKind(Block));
        AState = 0;
    }

private:
    static void Keyword(Text AText, TSxFoldStack& AStack, std::uint16_t& AState)
    {
        if (IsWord(AText, u"BEGIN"))
            AState = BeginPending;
        else if (IsWord(AText, u"END"))
            AState = EndPending;
        else if (IsWord(AText, u"CASE"))
            AStack.Open(Block);
    }

    /// Whether the token begins one of the words. The parser hands out a word
    /// that is no keyword in pieces, the first one ending at the first letter
    /// that no keyword goes on with ("WORK" comes as "WO", "R", "K"), so the
    /// first piece stands for the word.
    static bool StartsOneOf(Text AText, std::initializer_list<Text> AUpperWords)
    {
        return std::any_of(AUpperWords.begin(), AUpperWords.end(), [AText](Text AWord) {
            return (AText.size() >= 2 || AText.size() == AWord.size()) && AText.size() <= AWord.size() &&
                   IsWord(AText, AWord.substr(0, AText.size()));
        });
    }
};

}  // namespace

std::unique_ptr<TSxFoldRules> FoldRulesFor(const TSxLangParser& AParser)
{
    if (dynamic_cast<const TSxCodePascalParser*>(&AParser))
        return std::make_unique<TPascalFoldRules>();
    if (dynamic_cast<const TSxCodeVBParser*>(&AParser))
        return std::make_unique<TVBFoldRules>();
    if (dynamic_cast<const TSxCodeJSParser*>(&AParser))
        return std::make_unique<TJSFoldRules>();
    if (dynamic_cast<const TSxCodeXMLParser*>(&AParser))
        return std::make_unique<TXmlFoldRules>();
    if (dynamic_cast<const TSxCodeSqlParser*>(&AParser))
        return std::make_unique<TSqlFoldRules>();
    return nullptr;
}

}  // namespace sx
