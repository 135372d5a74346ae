// Test helpers of the language parsers: feeds as the editor and a stream give
// them, token streams, what GetNextToken paints, the restart property, and a
// component with published events of several shapes.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace sx::test {

/// Hands out lines one at a time, each followed by CR LF as the editor feeds
/// them, from line First on; starts again on reset, and records the parser's
/// LineKind at the moment each line is fetched, as the editor stores it.
struct LineFeed {
    explicit LineFeed(std::vector<String> ALines, TSxLangParser* AParser = nullptr, std::size_t AFirst = 0)
        : Lines(std::move(ALines)), Parser(AParser), First(AFirst), Next(AFirst) {}
    bool operator()(bool AReset, String& S)
    {
        if (AReset)
            Kinds.clear();
        Next = AReset ? First : Next;
        if (AReset || Next >= Lines.size())
            return AReset;
        Kinds.push_back(Parser ? Parser->LineKind() : 0);
        S = Lines[Next++] + u"\r\n";
        return true;
    }
    std::vector<String> Lines;
    TSxLangParser* Parser;
    std::size_t First, Next;
    std::vector<Integer> Kinds;
};

/// Hands out the pieces one at a time, then answers False; counts its calls.
struct PieceFeed {
    std::deque<String> Pieces;
    int Resets = 0, Calls = 0;
    bool operator()(bool AReset, String& S)
    {
        Resets += AReset ? 1 : 0;
        Calls += AReset ? 0 : 1;
        if (AReset || Pieces.empty())
            return AReset;
        S = Pieces.front();
        Pieces.pop_front();
        return true;
    }
};

/// Hands out the text as one piece, then nothing.
inline void FeedOnce(TSxLangParser& AParser, const String& AText) { AParser.SetOnGetNewBuffer(PieceFeed{{AText}}); }

/// A stream of the text as raw UTF-16, low byte first.
inline TMemoryStream* Utf16Stream(const String& AText)
{
    std::vector<std::uint8_t> bytes;
    for (const Char c : AText)
        bytes.insert(bytes.end(), {std::uint8_t(c & 0xFF), std::uint8_t(c >> 8)});
    return new TMemoryStream(std::move(bytes));
}

/// One call of GetNextToken: what it hands out and its result.
struct Painted {
    String Text;
    TColor Back = 0, Fore = 0;
    TFontStyles Style;
    bool LineBreak = false, More = false;
};

inline Painted Paint(TSxLangParser& AParser)
{
    Painted p;
    p.More = AParser.GetNextToken(p.Text, p.Back, p.Fore, p.Style, p.LineBreak);
    return p;
}

/// A parser with its tokenizer opened to the tests.
template <class TParser>
struct Probe : TParser {
    Probe() : TParser(nullptr) {}
    using TParser::InternalGetNextToken;
};

/// Token streams of a scanner; EndOfFile and LineBreak are its tokens.
template <class TParser, auto EndOfFile, auto LineBreak>
struct Scanner {
    using Parser = TParser;
    using Token = decltype(EndOfFile);
    static constexpr Token Break = LineBreak;
    using Tokens = std::vector<std::pair<Token, String>>;

    /// Every token up to the end of input, the end excluded.
    static Tokens Collect(Probe<TParser>& AProbe)
    {
        Tokens out;
        String text;
        for (Token kind; (kind = AProbe.InternalGetNextToken(text)) != EndOfFile && out.size() <= 100000;)
            out.emplace_back(kind, text);
        EXPECT_LE(out.size(), 100000u) << "the scanner does not reach the end";
        return out;
    }

    /// The tokens of one piece of text, with no line break added.
    static Tokens Scan(const String& AText, bool AEndLines = true)
    {
        Probe<TParser> p;
        p.SetEndLines(AEndLines);
        FeedOnce(p, AText);
        return Collect(p);
    }

    /// Tokens as "{kind}text", kinds by number: "{35}x{6} {19}end".
    static std::string Golden(const Tokens& ATokens)
    {
        std::string out;
        for (const auto& [kind, text] : ATokens)
            out += "{" + std::to_string(int(kind)) + "}" + StrToUtf8(text);
        return out;
    }
    static std::string Dump(const String& AText, bool AEndLines = true) { return Golden(Scan(AText, AEndLines)); }

    /// The tokens of lines fed as a paint does: each line with CR LF, EndLines
    /// True, the scan started with the given line kind.
    static Tokens ScanLines(std::vector<String> ALines, Integer AStartKind = 0, std::vector<Integer>* AKinds = nullptr,
                            std::size_t AFirst = 0)
    {
        Probe<TParser> p;
        LineFeed feed(std::move(ALines), &p, AFirst);
        p.SetOnGetNewBuffer(std::ref(feed));
        p.SetEndLines(true);
        p.SetLineKind(AStartKind);
        const Tokens out = Collect(p);
        if (AKinds)
            *AKinds = feed.Kinds;
        return out;
    }

    /// On random lines made of the pieces: the texts of each line's tokens
    /// make up the line, and a run started at any line with the kind the full
    /// pass stored there gives the tokens of the full pass from that line on.
    /// Random characters, with and without EndLines, always reach the end.
    static void ExpectRestartGivesTheFullPass(const std::vector<String>& APieces)
    {
        for (unsigned seed = 1; seed <= 30; ++seed) {
            SCOPED_TRACE(seed);
            std::mt19937 random(seed);
            std::vector<String> lines(20);
            for (String& line : lines)
                for (auto n = random() % 7; n > 0; --n)
                    line += APieces[random() % APieces.size()];
            std::vector<Integer> kinds;
            const Tokens full = ScanLines(lines, 0, &kinds);
            auto from = full.begin();  // the first token of line k
            for (std::size_t k = 0; k < lines.size(); ++k) {
                const Tokens restarted = ScanLines({lines.begin() + std::ptrdiff_t(k), lines.end()}, kinds[k]);
                EXPECT_EQ(restarted, Tokens(from, full.end())) << "restart at line " << k;
                String text;
                for (; from != full.end() && from->first != LineBreak; ++from)
                    text += from->second;
                EXPECT_EQ(text, lines[k]);
                ASSERT_NE(from++, full.end()) << "no line break behind line " << k;
            }
            String noise(500, u' ');
            for (Char& c : noise)
                c = Char(1 + random() % 300);
            for (const bool endLines : {false, true})
                EXPECT_LE(Scan(noise, endLines).size(), noise.size() + 1);
        }
    }
};

/// A component that publishes events of every shape a handler is written for.
class TScriptButton : public TComponent {
public:
    explicit TScriptButton(TComponent* AOwner, const String& AName = String()) : TComponent(AOwner)
    {
        SetName(AName);
    }
    static const TClass& ClassInfo()
    {
        static const TClass info(u"TScriptButton", &TComponent::ClassInfo(), ClassFactory<TScriptButton>());
        return info;
    }
    const TClass& ClassType() const override { return ClassInfo(); }

    /// OnClick(Sender), OnKeyPress(Sender, var Key), OnIdle(), a function
    /// OnValidate(Sender, const Value): Boolean, events with parameters of
    /// every way of passing, an array parameter, a class function, a procedure
    /// with a result type, one without type information, and a plain property.
    static void RegisterEvents()
    {
        RegisterPublishedProps(ClassInfo(), {
            {u"OnClick", NotifyEventType()},
            {u"OnKeyPress", MethodType(u"TKeyPressEvent", mkProcedure, {{u"Sender", u"TObject"}, {u"Key", u"Char", {pfVar}}})},
            {u"OnIdle", MethodType(u"TIdleEvent", mkProcedure, {})},
            {u"OnValidate", MethodType(u"TValidateEvent", mkFunction,
                                       {{u"Sender", u"TObject"}, {u"Value", u"string", {pfConst}}}, u"Boolean")},
            {u"OnPassing", MethodType(u"TPassingEvent", mkProcedure,
                                      {{u"A", u"Integer", {pfVar}}, {u"B", u"string", {pfConst}}, {u"C", u"Integer", {pfOut}},
                                       {u"D", u"Integer"}, {u"E", u"Integer", {pfVar, pfConst}}, {u"F", u"Integer", {pfConst, pfOut}}})},
            {u"OnArray", MethodType(u"TArrayEvent", mkProcedure, {{u"Values", u"Integer", {pfConst, pfArray}}})},
            {u"OnCount", MethodType(u"TCountEvent", mkClassFunction, {}, u"Integer")},
            {u"OnOdd", MethodType(u"TOddEvent", mkProcedure, {}, u"Integer")},
            {u"OnBroken", std::nullopt},
            {u"Caption", PlainType(tkUString, u"string")},
        });
    }
};

}  // namespace sx::test
