// The SQL tokenizer: the letter tree and its building check, token streams,
// colours, and the independence of the tokens from how the input is cut.
#include "codeedit/uSxCodeSqlParser.h"
#include "parsers/ScriptTestSupport.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>
#include <vector>

using namespace sx;
using namespace sx::uSxCodeSqlParser;

namespace {

/// Records the kind of each token as GetNextToken asks the virtual tokenizer for it.
class RecordingSqlParser : public TSxCodeSqlParser {
public:
    using TSxCodeSqlParser::TSxCodeSqlParser;
    TSxSqlToken LastKind = vtInvalid;

protected:
    TSxSqlToken InternalGetNextToken(String& Token) override
    {
        LastKind = TSxCodeSqlParser::InternalGetNextToken(Token);
        return LastKind;
    }
};

/// Hands out the given pieces, then answers False.
void Feed(TSxLangParser& p, std::deque<String> pieces)
{
    p.SetOnGetNewBuffer([pieces = std::move(pieces)](bool reset, String& s) mutable {
        if (reset)
            return true;
        if (pieces.empty())
            return false;
        s = pieces.front();
        pieces.pop_front();
        return true;
    });
    p.ResetBuffer();
}

/// One piece per line, each with its CR LF, as the editor feeds the parser.
std::deque<String> Lines(const String& text)
{
    std::deque<String> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(u"\r\n", start)) != String::npos; start = end + 2)
        lines.push_back(text.substr(start, end + 2 - start));
    if (start < text.size())
        lines.push_back(text.substr(start));
    return lines;
}

const char KindLetter[] = "BUIEKFQNPC";

/// The token stream as {kind}text, line breaks as {B}; stops at the end of input.
std::string Dump(RecordingSqlParser& p)
{
    std::string out;
    String token;
    TColor back = 0, fore = 0;
    TFontStyles style;
    bool lineBreak = false;
    for (int guard = 0; guard < 10000 && p.GetNextToken(token, back, fore, style, lineBreak); ++guard) {
        out += std::string("{") + KindLetter[p.LastKind] + "}";
        if (!lineBreak)
            out += StrToUtf8(token);
    }
    return out;
}

std::string Scan(const String& text)
{
    RecordingSqlParser p(nullptr);
    Feed(p, Lines(text));
    return Dump(p);
}

}  // namespace

TEST(SqlParser, StockTableBuildsTheTreeAndEveryKeywordIsFoundInAnyCase)
{
    RecordingSqlParser p(nullptr);
    for (const String& word : SxSqlKeyWords) {
        if (word.empty())
            continue;
        Feed(p, {word + u" " + LowerCase(word) + u"\r\n"});
        const std::string w = StrToUtf8(word), lower = StrToUtf8(LowerCase(word));
        EXPECT_EQ(Dump(p), "{K}" + w + "{U} {K}" + lower + "{B}");
    }
}

TEST(SqlParser, BuildingCheckNamesTheCharacterAndTheUpperCasedKeyword)
{
    const String saved = SxSqlKeyWords[116];
    // Every character from 'A' to '_' has a place: 7 nodes and an end mark in place of the root's.
    SxSqlKeyWords[116] = u"x[\\]^_y";
    TSxCodeSqlParser built(nullptr);
    for (const String bad : {u"ab1", u"ab ", u"ab\u00e9", u"ab`", u"ab@"}) {
        SxSqlKeyWords[116] = bad;
        try {
            TSxCodeSqlParser p(nullptr);
            ADD_FAILURE() << "no exception for " << StrToUtf8(bad);
        } catch (const Exception& e) {
            const String expected = u"Invalid Character \"" + String(1, bad[2]) + u"\" in keyword \"" +
                                    UpperCase(bad) + u"\" ";
            EXPECT_EQ(e.Message(), expected);
        }
    }
    SxSqlKeyWords[116] = saved;
}

TEST(SqlParser, WordsKeywordsAndWhereAWordMayStart)
{
    EXPECT_EQ(Scan(u"SeLeCt CURRENT CURRENT_DATE CURRENT_TIMESTAMP"),
              "{K}SeLeCt{U} {K}CURRENT{U} {K}CURRENT_DATE{U} {K}CURRENT_TIMESTAMP");
    EXPECT_EQ(Scan(u"SELECTED SELECT1"), "{U}SELECTE{U}D{U} {K}SELECT{U}1");
    EXPECT_EQ(Scan(u"a=SELECT a = SELECT"), "{U}a{U}={U}S{U}E{U}L{U}E{U}C{U}T{U} {U}a{U} {U}={U} {K}SELECT");
    EXPECT_EQ(Scan(u"(SELECT,FROM)AS t.ON"), "{U}({K}SELECT{U},{K}FROM{U}){K}AS{U} {U}t{U}.{U}O{U}N");
    EXPECT_EQ(Scan(u"\tON"), "{U}{U}O{U}N");
    EXPECT_EQ(Scan(u"x\r\nON\nON"), "{U}x{B}{K}ON{U}\n{U}O{U}N");
}

TEST(SqlParser, NumbersParametersAndQuotedValuesEndWhereTheyMay)
{
    // numbers need a start and an end; parameters end only at white space
    EXPECT_EQ(Scan(u"10 1,5 1.5 1, 1 .5"), "{N}10{U} {N}1,5{U} {N}1.5{U} {N}1,{U} {N}1{U} {U}.{N}5");
    EXPECT_EQ(Scan(u"(12) 12a x1"), "{U}({N}12{U}){U} {U}12{U}a{U} {U}x{U}1");
    EXPECT_EQ(Scan(u"(@a,@b) x@c @d\tz"), "{U}({P}@a,@b){U} {U}x{U}@{U}c{U} {P}@d{U}{U}z");
    EXPECT_EQ(Scan(u"'a b''c' \"d\"\r\n'abc\r\nx"), "{Q}'a b'{Q}'c'{U} {U}\"{U}d{U}\"{B}{Q}'abc{B}{U}x");
}

TEST(SqlParser, LineCommentsEndAtAnyControlCharacterAndBlockCommentsGoOnePieceALine)
{
    EXPECT_EQ(Scan(u"'v'-- c -- d\tON\r\na-b 5 - 3"),
              "{Q}'v'{C}-- c -- d{U}{U}O{U}N{B}{U}a{U}-{U}b{U} {N}5{U} {U}-{U} {N}3");
    EXPECT_EQ(Scan(u"a /* b\r\n\r\nc\r\n*/ON */ x /*/ON"),
              "{U}a{U} {C}/* b{B}{B}{C}c{B}{C}*/{U}O{U}N{U} {U}*{U}/{U} {U}x{U} {C}/*/{U}O{U}N");
    EXPECT_EQ(Scan(u"/**/ /* a*/\r\n/* 'q' -- \t@p ON\r\n"), "{C}/**/{U} {C}/* a*/{B}{C}/* 'q' -- \t@p ON{B}");
}

TEST(SqlParser, CommentOpenAtTheEndLastsUntilReset)
{
    RecordingSqlParser p(nullptr);
    Feed(p, {u"/* a"});
    // The piece takes the terminator that ended it.
    EXPECT_EQ(Dump(p), std::string("{C}/* a") + '\0');
    bool more = true;
    p.SetOnGetNewBuffer([&more](bool, String& s) {
        s = u"x\r\n";
        return std::exchange(more, false);
    });
    EXPECT_EQ(Dump(p), "{C}x{B}");
    Feed(p, {u"x\r\n"});
    EXPECT_EQ(Dump(p), "{U}x{B}");
}

TEST(SqlParser, LineEndsAndTheEndOfInput)
{
    RecordingSqlParser p(nullptr);
    Feed(p, {});
    String token = u"junk";
    TColor back = 0, fore = 0;
    TFontStyles style;
    bool lineBreak = true;
    EXPECT_FALSE(p.GetNextToken(token, back, fore, style, lineBreak));
    EXPECT_TRUE(token.empty());
    EXPECT_FALSE(lineBreak);

    Feed(p, {u"\r\n\rx"});
    EXPECT_TRUE(p.GetNextToken(token, back, fore, style, lineBreak));
    EXPECT_EQ(token, u"\r\n");
    EXPECT_TRUE(lineBreak);
    EXPECT_EQ(back, clWindow);
    EXPECT_EQ(fore, clRed);  // row 2, the default row
    EXPECT_TRUE(p.GetNextToken(token, back, fore, style, lineBreak));
    EXPECT_EQ(token, u"\r");
}

TEST(SqlParser, ColoursComeFromTheSharedTable)
{
    RecordingSqlParser p(nullptr);
    String token;
    TColor back = 0, fore = 0;
    TFontStyles style;
    bool lineBreak = false;
    Feed(p, {u"ON 'q' 1 @p -- c"});
    std::vector<TColor> colours;
    while (p.GetNextToken(token, back, fore, style, lineBreak))
        colours.push_back(fore);
    const TColor text = clWindowText;
    EXPECT_EQ(colours, (std::vector<TColor>{clRed, text, clBlue, text, clBlue, text, clNavy, text, clGreen}));

    DrawInfo[2].Style = TFontStyles{TFontStyle::fsBold};
    DrawInfo[2].BckColor = clYellow;
    Feed(p, {u"ON"});
    p.GetNextToken(token, back, fore, style, lineBreak);
    EXPECT_EQ(back, clYellow);
    EXPECT_TRUE(style.Contains(TFontStyle::fsBold));
    Initialization();  // start values again
    EXPECT_EQ(DrawInfo[2].BckColor, clWindow);
}

TEST(SqlParser, TokensDoNotDependOnHowTheInputIsCut)
{
    const String text = u"SELECT a,b FROM t WHERE x = 'v' AND n = 1.5 -- c\r\n"
                        u"  AND (@p IN (1,2)) /* c\r\n  c */ ORDER BY 12\r\nGO";
    RecordingSqlParser whole(nullptr), byChar(nullptr);
    Feed(whole, {text});
    std::deque<String> chars;
    for (Char c : text)
        chars.push_back(String(1, c));
    Feed(byChar, chars);
    EXPECT_EQ(Dump(byChar), Dump(whole));
}

TEST(SqlParser, RestartAtAnyLineOutsideABlockCommentGivesTheSameTokens)
{
    const std::deque<String> lines = Lines(u"SELECT a\r\n  FROM t -- x\r\n WHERE b = 'c'\r\n   AND d > 1,5\r\n");
    RecordingSqlParser p(nullptr);
    for (std::size_t start = 0; start < lines.size(); ++start) {
        Feed(p, lines);
        std::string full = Dump(p);
        for (std::size_t skipped = 0; skipped < start; ++skipped)
            full = full.substr(full.find("{B}") + 3);
        Feed(p, std::deque<String>(lines.begin() + std::ptrdiff_t(start), lines.end()));
        EXPECT_EQ(Dump(p), full) << "line " << start;
        EXPECT_EQ(p.LineKind(), 0);
    }
}

TEST(SqlParser, UnitRegistersTheClassAndReleasesItsTables)
{
    sxtest::ExpectUnitStartAndStop(u"TSxCodeSqlParser", u"Sql", DrawInfo, &Initialization, [] {
        Finalization();
        EXPECT_TRUE(SxSqlKeyWords[0].empty());
    });
    Initialization();  // start values again
    EXPECT_FALSE(SxSqlKeyWords[0].empty());
}

TEST(SqlParser, PeekStringLeavesTheInputAsItWas)
{
    RecordingSqlParser p(nullptr);
    Feed(p, {u"ab", u"cd"});
    EXPECT_EQ(p.PeekString(3), u"abc");
    EXPECT_EQ(Dump(p), "{U}ab{U}c{U}d");
}
