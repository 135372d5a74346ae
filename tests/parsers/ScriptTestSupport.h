// Test helpers of the language parsers: feeds as the editor and a stream give
// them, token streams of a scanner, the restart property, and a component
// with published events of several shapes.
#pragma once

#include "codeedit/uSxCodeParser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace sxtest {

using namespace sx;

/// Hands out lines one at a time, each followed by CR LF as the editor feeds
/// them, starts again on reset, and records the parser's LineKind at the
/// moment each line is fetched, as the editor stores it per line.
struct LineFeed {
    LineFeed(std::vector<String> ALines, TSxLangParser* AParser) : lines(std::move(ALines)), parser(AParser) {}
    std::vector<String> lines;
    TSxLangParser* parser = nullptr;
    std::vector<Integer> kinds;
    std::size_t next = 0;
    bool operator()(bool reset, String& s)
    {
        if (reset) {
            next = 0;
            kinds.clear();
            return true;
        }
        if (next >= lines.size())
            return false;
        kinds.push_back(parser->LineKind());
        s = lines[next++] + u"\r\n";
        return true;
    }
};

/// Hands out the text as one piece, then nothing.
inline void FeedOnce(TSxLangParser& parser, const String& text)
{
    parser.SetOnGetNewBuffer([text, done = false](bool reset, String& s) mutable {
        if (reset || done)
            return reset;
        s = text;
        return done = true;
    });
}

/// A stream of the text as raw UTF-16, low byte first.
inline TMemoryStream* Utf16Stream(const String& text)
{
    std::vector<std::uint8_t> bytes;
    for (Char c : text) {
        bytes.push_back(std::uint8_t(c & 0xFF));
        bytes.push_back(std::uint8_t(c >> 8));
    }
    return new TMemoryStream(std::move(bytes));
}

/// Token streams of a scanner. Probe opens the parser's InternalGetNextToken;
/// the three tokens are those of its language, Blank the kind of its blanks.
template <class Probe, auto EndOfFile, auto LineBreak, auto Blank>
struct ScriptScanner {
    using Token = decltype(EndOfFile);
    using Tokens = std::vector<std::pair<Token, String>>;

    /// Every token up to the end of input, the end excluded.
    static Tokens Collect(Probe& p)
    {
        Tokens out;
        String text;
        for (Token kind = p.InternalGetNextToken(text); kind != EndOfFile; kind = p.InternalGetNextToken(text)) {
            out.emplace_back(kind, text);
            if (out.size() > 100000) {
                ADD_FAILURE() << "the scanner does not reach the end";
                break;
            }
        }
        return out;
    }

    /// The tokens of one piece of text, with no line break added.
    static Tokens Scan(const String& text, bool endLines = true)
    {
        Probe p;
        p.SetEndLines(endLines);
        FeedOnce(p, text);
        return Collect(p);
    }

    /// The tokens of lines fed as a paint does: each line with CR LF, EndLines
    /// True, the scan started with the given line kind.
    static Tokens ScanLines(std::vector<String> lines, Integer startKind = 0, std::vector<Integer>* kinds = nullptr)
    {
        Probe p;
        LineFeed feed{std::move(lines), &p};
        p.SetOnGetNewBuffer(std::ref(feed));
        p.SetEndLines(true);
        p.SetLineKind(startKind);
        Tokens out = Collect(p);
        if (kinds)
            *kinds = feed.kinds;
        return out;
    }

    /// The tokens of a text with the blanks left out.
    static Tokens Words(const String& text)
    {
        Tokens out = Scan(text);
        std::erase_if(out, [](const auto& t) {
            return t.first == Blank && t.second.find_first_not_of(u' ') == String::npos;
        });
        return out;
    }

    /// On random lines made of the pieces: the texts of each line's tokens
    /// make up the line, and a run started at any line with the kind the full
    /// pass stored there gives the tokens of the full pass from that line on.
    static void ExpectRestartGivesTheFullPass(const std::vector<String>& pieces)
    {
        for (unsigned seed = 1; seed <= 30; ++seed) {
            SCOPED_TRACE(seed);
            std::mt19937 random(seed);
            std::vector<String> lines(20);
            for (String& line : lines)
                for (auto n = random() % 7; n > 0; --n)
                    line += pieces[random() % pieces.size()];
            std::vector<Integer> kinds;
            const Tokens full = ScanLines(lines, 0, &kinds);
            ASSERT_EQ(kinds.size(), lines.size());
            std::vector<std::size_t> lineStart{0};
            String lineText;
            for (std::size_t i = 0; i < full.size(); ++i) {
                if (full[i].first != LineBreak) {
                    lineText += full[i].second;
                    continue;
                }
                ASSERT_LE(lineStart.size(), lines.size());
                EXPECT_EQ(lineText, lines[lineStart.size() - 1]);
                lineText.clear();
                lineStart.push_back(i + 1);
            }
            ASSERT_EQ(lineStart.size(), lines.size() + 1);
            for (std::size_t k = 1; k < lines.size(); ++k)
                EXPECT_EQ(ScanLines({lines.begin() + std::ptrdiff_t(k), lines.end()}, kinds[k]),
                          Tokens(full.begin() + std::ptrdiff_t(lineStart[k]), full.end()))
                    << "restart at line " << k;
        }
    }

    /// Random characters, with and without EndLines, always reach the end.
    static void ExpectAnyCharactersReachTheEnd()
    {
        for (unsigned seed = 1; seed <= 20; ++seed) {
            std::mt19937 random(seed);
            String text(2000, u' ');
            for (Char& c : text)
                c = Char(1 + random() % 300);
            for (bool endLines : {false, true})
                EXPECT_LE(Scan(text, endLines).size(), text.size() + 1) << seed;
        }
    }
};

/// The unit's start registers the parser class; its stop unregisters it and
/// releases the names of the colour table.
template <class Table>
void ExpectUnitStartAndStop(const String& className, const String& language, Table& drawInfo, void (*start)(),
                            void (*stop)())
{
    const Table saved = drawInfo;
    start();
    const TClass* cls = GetClass(className);
    ASSERT_NE(cls, nullptr);
    std::unique_ptr<TSxLangParser> made(TSxLangParserClass(*cls).Create(nullptr));
    EXPECT_EQ(made->GetLanguage(), language);
    stop();
    EXPECT_EQ(GetClass(className), nullptr);
    for (const auto& row : drawInfo)
        EXPECT_TRUE(row.Name.empty());
    drawInfo = saved;
}

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
    /// OnValidate(Sender, const Value): Boolean, and a plain property Caption.
    static void RegisterEvents()
    {
        RegisterPublishedProps(ClassInfo(), {
            {u"OnClick", NotifyEventType()},
            {u"OnKeyPress", MethodType(u"TKeyPressEvent", mkProcedure,
                                       {{u"Sender", u"TObject"}, {u"Key", u"Char", {pfVar}}})},
            {u"OnIdle", MethodType(u"TIdleEvent", mkProcedure, {})},
            {u"OnValidate", MethodType(u"TValidateEvent", mkFunction,
                                       {{u"Sender", u"TObject"}, {u"Value", u"string", {pfConst}}}, u"Boolean")},
            {u"Caption", PlainType(tkUString, u"string")},
        });
    }
};

/// A script parser over lines, with the events of TScriptButton registered.
template <class Parser>
struct ScriptMethods : testing::Test {
    ScriptMethods() { TScriptButton::RegisterEvents(); }
    void Feed(std::vector<String> lines)
    {
        feed.lines = std::move(lines);
        parser.SetOnGetNewBuffer(std::ref(feed));
    }
    /// The script's lines joined with CR LF, each line ended.
    static String Joined(const std::vector<String>& lines)
    {
        String text;
        for (const String& line : lines)
            text += line + u"\r\n";
        return text;
    }
    Parser parser{nullptr};
    LineFeed feed{{}, &parser};
    TScriptButton button1{nullptr, u"Button1"};
};

}  // namespace sxtest
