// The Pascal tokenizer: token streams, colours, comments across lines and
// restarting a scan at any line from the line kind stored there.
#include "codeedit/uSxCodePascalParser.h"

#include "support/TempRegistryFile.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

using namespace sx;
using namespace sx::uSxCodePascalParser;

namespace {

/// Opens the scanner's own token kinds to the tests.
struct Probe : TSxCodePascalParser {
    Probe() : TSxCodePascalParser(nullptr) {}
    using TSxCodePascalParser::InternalGetNextToken;
};

/// Hands out the pieces one at a time and records the parser's LineKind at
/// the moment each is fetched, as the editor stores it per line.
struct Feed {
    std::vector<String> pieces;
    TSxLangParser* parser = nullptr;
    std::vector<Integer> kinds;
    std::size_t next = 0;
    bool operator()(bool reset, String& s)
    {
        if (reset || next >= pieces.size())
            return reset;
        kinds.push_back(parser->LineKind());
        s = pieces[next++];
        return true;
    }
};

using Tokens = std::vector<std::pair<TPascalToken, String>>;

/// Every token up to the end of input, the end excluded.
Tokens Run(std::vector<String> pieces, bool endLines, Integer startKind = 0, std::vector<Integer>* kinds = nullptr)
{
    Probe p;
    Feed feed{std::move(pieces), &p, {}};
    p.SetOnGetNewBuffer(std::ref(feed));
    p.SetEndLines(endLines);
    p.SetLineKind(startKind);
    Tokens out;
    String text;
    for (TPascalToken kind = p.InternalGetNextToken(text); kind != ptEndOfFile; kind = p.InternalGetNextToken(text)) {
        out.emplace_back(kind, text);
        if (out.size() > 100000) {
            ADD_FAILURE() << "the scanner does not reach the end";
            break;
        }
    }
    if (kinds)
        *kinds = feed.kinds;
    return out;
}

/// The tokens of one piece of text, with no line break added.
Tokens Scan(const String& text, bool endLines = true) { return Run({text}, endLines); }

/// The tokens of lines fed as a paint does: each line with CR LF, EndLines True.
Tokens ScanLines(std::vector<String> lines, Integer startKind = 0, std::vector<Integer>* kinds = nullptr)
{
    for (String& line : lines)
        line += u"\r\n";
    return Run(std::move(lines), true, startKind, kinds);
}

/// The tokens of a text with the blanks between them left out.
Tokens ScanWords(const String& text)
{
    Tokens out = Scan(text);
    std::erase_if(out, [](const auto& t) { return t.first == ptSpace; });
    return out;
}

const String LB = u"\r";

}  // namespace

TEST(PascalParser, OperatorsTakeASecondCharacterOnlyWhenItFits)
{
    EXPECT_EQ(ScanWords(u"<= <> < >= > := : .. . ( ) + - * / , = #"),
              (Tokens{{ptLessEqual, u"<="}, {ptNotEquals, u"<>"}, {ptLess, u"<"}, {ptGreaterEqual, u">="},
                      {ptGreater, u">"}, {ptAssign, u":="}, {ptColon, u":"}, {ptRange, u".."}, {ptPeriod, u"."},
                      {ptOpenParen, u"("}, {ptCloseParen, u")"}, {ptPlus, u"+"}, {ptMinus, u"-"},
                      {ptMultiply, u"*"}, {ptDivide, u"/"}, {ptComma, u","}, {ptEquals, u"="}, {ptHash, u"#"}}));
    EXPECT_EQ(Scan(u"<<="), (Tokens{{ptLess, u"<"}, {ptLessEqual, u"<="}}));
}

TEST(PascalParser, KeywordsAreCaseBlindWholeWords)
{
    const Tokens words = ScanWords(
        u"as Begin CONSTRUCTOR const Class do destructor end else except function finally if implementation "
        u"interface inherited out object procedure program private protected public published property then "
        u"try type unit uses until var");
    const std::vector<TPascalToken> expected{
        ptAs, ptBegin, ptConstructor, ptConst, ptClass, ptDo, ptDestructor, ptEnd, ptElse, ptExcept, ptFunction,
        ptFinally, ptIf, ptImplementation, ptinterface, ptInherited, ptOut, ptClass, ptProcedure, ptProgram,
        ptPrivate, ptProtected, ptPublic, ptPublished, ptProperty, ptThen, ptTry, ptType, ptUnit, ptUses,
        ptUntil, ptVar};
    ASSERT_EQ(words.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(words[i].first, expected[i]) << i;
    EXPECT_EQ(words[1].second, u"Begin");
    for (const auto& [kind, text] : ScanWords(u"repeat for CONSTX _end end1 Integer e Zend string"))
        EXPECT_EQ(kind, ptIdentifier) << StrToUtf8(text);
    EXPECT_EQ(Scan(u"end."), (Tokens{{ptEnd, u"end"}, {ptPeriod, u"."}}));
}

TEST(PascalParser, NumbersStopAtASecondPeriodAndHaveNoExponent)
{
    EXPECT_EQ(Scan(u"1..5"), (Tokens{{ptNumber, u"1"}, {ptRange, u".."}, {ptNumber, u"5"}}));
    EXPECT_EQ(Scan(u"1.5"), (Tokens{{ptFloat, u"1.5"}}));
    EXPECT_EQ(Scan(u"1.2.3"), (Tokens{{ptFloat, u"1.2"}, {ptPeriod, u"."}, {ptNumber, u"3"}}));
    EXPECT_EQ(Scan(u"1e5"), (Tokens{{ptNumber, u"1"}, {ptIdentifier, u"e5"}}));
    EXPECT_EQ(Scan(u"$ffg"), (Tokens{{ptNumber, u"$ff"}, {ptIdentifier, u"g"}}));
    EXPECT_EQ(Scan(u"$"), (Tokens{{ptNumber, u"$"}}));
    EXPECT_EQ(Scan(u"#13#10"), (Tokens{{ptHash, u"#"}, {ptNumber, u"13"}, {ptHash, u"#"}, {ptNumber, u"10"}}));
}

TEST(PascalParser, StringsKeepDoubledQuotesAndEndWithTheLine)
{
    EXPECT_EQ(Scan(u"'it''s'x"), (Tokens{{ptString, u"'it''s'"}, {ptIdentifier, u"x"}}));
    EXPECT_EQ(Scan(u"''"), (Tokens{{ptString, u"''"}}));
    EXPECT_EQ(ScanLines({u"'open (*", u"b"}),
              (Tokens{{ptString, u"'open (*"}, {ptLineBreak, LB}, {ptIdentifier, u"b"}, {ptLineBreak, LB}}));
}

TEST(PascalParser, BlanksTabsAndUnknownCharacters)
{
    EXPECT_EQ(Scan(u"a  \t b"), (Tokens{{ptIdentifier, u"a"}, {ptSpace, u"  "}, {ptUnknown, u"\t"},
                                        {ptSpace, u" "}, {ptIdentifier, u"b"}}));
    EXPECT_EQ(Scan(String(u"a") + Char(8)), (Tokens{{ptIdentifier, u"a"}, {ptSpace, u"    "}}));
    EXPECT_EQ(Scan(u"caf\u00E9x\u4E00"), (Tokens{{ptIdentifier, u"caf"}, {ptUnknown, u"\u00E9"},
                                                 {ptIdentifier, u"x"}, {ptUnknown, u"\u4E00"}}));
    for (const auto& [kind, text] : Scan(u"!\"%&?\\`|}~"))
        EXPECT_EQ(kind, ptUnknown) << StrToUtf8(text);
}

TEST(PascalParser, LineEndsAndTheEndOfInput)
{
    EXPECT_EQ(Scan(u"a\nb\rc"), (Tokens{{ptIdentifier, u"a"}, {ptIdentifier, u"b"}, {ptLineBreak, LB},
                                        {ptIdentifier, u"c"}}));
    EXPECT_EQ(Scan(u""), Tokens{});
    EXPECT_EQ(Scan(String(u"a") + Char(0) + u"b"), (Tokens{{ptIdentifier, u"a"}}));
}

TEST(PascalParser, ColoursComeFromTheFirstRowThatHoldsTheToken)
{
    const std::vector<String> names{u"WhiteSpace", u"Reserved word", u"string", u"Comment",
                                    u"Identifier", u"Character",     u"Number", u"Symbol"};
    for (std::size_t row = 0; row < names.size(); ++row)
        EXPECT_EQ(DrawInfo[row].Name, names[row]);
    EXPECT_EQ(DrawInfo[3].BckColor, clHighlight);
    EXPECT_EQ(DrawInfo[6].BckColor, clGreen);

    TSxCodePascalParser p(nullptr);
    Feed feed{{u"begin 'a' {c} x #1.5 $f;\r\n"}, &p, {}};
    p.SetOnGetNewBuffer(std::ref(feed));
    // begin, blank, string, blank, comment, blank, identifier, blank, #, the float 1.5, blank, $f, ; and the line break
    const std::vector<std::size_t> rows{1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0, 6, 7, 0};
    String text;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ASSERT_TRUE(p.GetNextToken(text, back, fore, style, lineBreak));
        const TSxPascalInfo& row = DrawInfo[rows[i]];
        EXPECT_TRUE(back == row.BckColor && fore == row.TextColor && style == row.Style) << i;
        EXPECT_EQ(lineBreak, i + 1 == rows.size()) << i;
    }
    lineBreak = true;
    EXPECT_FALSE(p.GetNextToken(text, back, fore, style, lineBreak));
    EXPECT_FALSE(lineBreak);
}

TEST(PascalParser, CommentAcrossLinesGivesOnePieceAndOneBreakPerLine)
{
    std::vector<Integer> kinds;
    EXPECT_EQ(ScanLines({u"(* a", u"", u"b *) x", u"{", u"}"}, 0, &kinds),
              (Tokens{{ptComment, u"(* a"}, {ptLineBreak, LB}, {ptComment, u""}, {ptLineBreak, LB},
                      {ptComment, u"b *)"}, {ptSpace, u" "}, {ptIdentifier, u"x"}, {ptLineBreak, LB},
                      {ptComment, u"{"}, {ptLineBreak, LB}, {ptComment, u"}"}, {ptLineBreak, LB}}));
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 1, 1, 0, 2}));
    // a line comment needs no state; the opening characters are not reused to close
    ScanLines({u"a // b (* c", u"(*)", u"x"}, 0, &kinds);
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 0, 1}));
}

TEST(PascalParser, CommentsDoNotNest)
{
    EXPECT_EQ(Scan(u"(* { *)x"), (Tokens{{ptComment, u"(* { *)"}, {ptIdentifier, u"x"}}));
    EXPECT_EQ(Scan(u"{ (* }x"), (Tokens{{ptComment, u"{ (* }"}, {ptIdentifier, u"x"}}));
    EXPECT_EQ(Scan(u"(* ) * *)"), (Tokens{{ptComment, u"(* ) * *)"}}));
}

TEST(PascalParser, EndOfInputClosesAnOpenComment)
{
    Probe p;
    Feed feed{{u"(* abc"}, &p, {}};
    p.SetOnGetNewBuffer(std::ref(feed));
    String text;
    EXPECT_EQ(p.InternalGetNextToken(text), ptComment);
    EXPECT_EQ(text, u"(* abc");
    EXPECT_EQ(p.LineKind(), 0);
    EXPECT_EQ(p.RemarkEnd(), u"");
    EXPECT_EQ(p.InternalGetNextToken(text), ptEndOfFile);
}

TEST(PascalParser, WithoutEndLinesACommentRunsOverLineEnds)
{
    EXPECT_EQ(Scan(u"{a\r\nb} c", false), (Tokens{{ptComment, u"{a\r\nb}"}, {ptSpace, u" "}, {ptIdentifier, u"c"}}));
    EXPECT_EQ(Scan(u"// x\r\ny", false), (Tokens{{ptComment, u"// x\r"}, {ptIdentifier, u"y"}}));
}

TEST(PascalParser, StoredLineKindTurnsIntoTheOpenComment)
{
    EXPECT_EQ(ScanLines({u"x := 'a'; } y"}, 2),
              (Tokens{{ptComment, u"x := 'a'; }"}, {ptSpace, u" "}, {ptIdentifier, u"y"}, {ptLineBreak, LB}}));
    // an empty line inside the comment gets its empty piece, as in a scan from above
    EXPECT_EQ(ScanLines({u"", u"*) x"}, 1), (Tokens{{ptComment, u""}, {ptLineBreak, LB}, {ptComment, u"*)"},
                                                    {ptSpace, u" "}, {ptIdentifier, u"x"}, {ptLineBreak, LB}}));
    EXPECT_EQ(ScanLines({u"a }", u"b"}, 3), (Tokens{{ptComment, u"a }"}, {ptLineBreak, LB}, {ptIdentifier, u"b"},
                                                    {ptLineBreak, LB}}));
}

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on. The texts of each line's
// tokens must also make up the line.
TEST(PascalParser, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    const std::vector<String> pieces{u"(*", u"*)", u"{", u"}", u"//", u"'", u"''", u" ", u"\t", u"a", u"Begin",
                                     u"1", u".", u"..", u"$f", u"#", u"*", u")", u"(", u"\u00E9", u":=", u"<"};
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<String> lines(25);
        for (String& line : lines)
            for (auto n = random() % 7; n > 0; --n)
                line += pieces[random() % pieces.size()];

        std::vector<Integer> kinds;
        const Tokens full = ScanLines(lines, 0, &kinds);
        ASSERT_EQ(kinds.size(), lines.size());
        std::vector<std::size_t> lineStart{0};
        String lineText;
        for (std::size_t i = 0; i < full.size(); ++i) {
            if (full[i].first != ptLineBreak) {
                lineText += full[i].second;
                continue;
            }
            ASSERT_LT(lineStart.size(), lines.size() + 1);
            EXPECT_EQ(lineText, lines[lineStart.size() - 1]);
            lineText.clear();
            lineStart.push_back(i + 1);
        }
        ASSERT_EQ(lineStart.size(), lines.size() + 1);
        for (std::size_t k = 1; k < lines.size(); ++k) {
            const std::vector<String> rest(lines.begin() + std::ptrdiff_t(k), lines.end());
            EXPECT_EQ(ScanLines(rest, kinds[k]), Tokens(full.begin() + std::ptrdiff_t(lineStart[k]), full.end()))
                << "restart at line " << k;
        }
    }
}

TEST(PascalParser, AnyCharactersReachTheEnd)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        String text(2000, u' ');
        for (Char& c : text)
            c = Char(1 + random() % 300);
        for (bool endLines : {false, true}) {
            const Tokens tokens = Scan(text, endLines);
            EXPECT_LE(tokens.size(), text.size());
        }
    }
}

TEST(PascalParser, SoapPropertiesAndDelphiVersion)
{
    TSxCodePascalParser p(nullptr);
    EXPECT_EQ(p.GetLanguage(), u"Pascal");
    EXPECT_EQ(p.SoapCommentPosEnd(), -1);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    Feed feed{{u"{}"}, &p, {}};
    p.SetOnGetNewBuffer(std::ref(feed));
    String token;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    p.GetNextToken(token, back, fore, style, lineBreak);
    EXPECT_EQ(p.SoapCommentLineStart(), -1);  // every comment clears them
    EXPECT_EQ(p.SoapComment(), u"");

    const sxtest::ScopedEnv noRegistry("SX_REGISTRY_FILE", "/nonexistent/registry.reg");
    p.SetDelphiVersion(7);
    EXPECT_EQ(p.DelphiVersion(), 7);
    EXPECT_EQ(DrawInfo[3].BckColor, clHighlight);  // an IDE that is not installed leaves the colours
    EXPECT_EQ(DrawInfo[3].Name, u"Comment");
}

TEST(PascalParser, UnitRegistersTheShortClassNameOnly)
{
    const auto saved = DrawInfo;
    Initialization();
    const TClass* cls = GetClass(u"TsxCodePasParser");
    ASSERT_NE(cls, nullptr);
    EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
    const TSxLangParserClass ref(*cls);
    std::unique_ptr<TSxLangParser> made(ref.Create(nullptr));
    EXPECT_EQ(made->GetLanguage(), u"Pascal");
    Finalization();
    EXPECT_EQ(GetClass(u"TsxCodePasParser"), nullptr);
    for (const TSxPascalInfo& row : DrawInfo)
        EXPECT_TRUE(row.Name.empty());
    DrawInfo = saved;
}
