// What the five language scanners share, checked on each: line ends and the
// end of input, a comment closed by the end of input, comments with EndLines
// off, number forms, colours from the language's table, and the unit's start
// and stop.
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"
#include "parsers/ScannerTestSupport.h"

namespace {

using namespace sx;
using namespace sx::test;

/// Per language: its unit, a line with the row of DrawInfo each of its tokens
/// is painted from (the line break last), a comment the end of input closes,
/// a comment over two lines read with EndLines False, and numbers.
struct PascalCase : Scanner<TSxCodePascalParser, uSxCodePascalParser::ptEndOfFile, uSxCodePascalParser::ptLineBreak> {
    static constexpr auto& DrawInfo = uSxCodePascalParser::DrawInfo;
    static constexpr auto Start = &uSxCodePascalParser::Initialization, Stop = &uSxCodePascalParser::Finalization;
    static inline const String ClassName = u"TsxCodePasParser", Language = u"Pascal";
    static inline const String ColourLine = u"begin 'a' {c} x #1.5 $f;";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0, 6, 7, 0};
    static constexpr bool EndLinesMatter = true;
    static inline const String OpenComment = u"(* abc", LinesComment = u"{a\r\nb} c", Numbers = u"1..5 1.5 $fg 1e5";
    static inline const Tokens OpenCommentTokens{{Token::ptComment, u"(* abc"}};
    static inline const Tokens LinesCommentTokens{{Token::ptComment, u"{a\r\nb}"}, {Token::ptSpace, u" "},
                                                  {Token::ptIdentifier, u"c"}};
    static inline const Tokens NumberTokens{{Token::ptNumber, u"1"},  {Token::ptRange, u".."},
                                            {Token::ptNumber, u"5"},  {Token::ptSpace, u" "},
                                            {Token::ptFloat, u"1.5"}, {Token::ptSpace, u" "},
                                            {Token::ptNumber, u"$f"}, {Token::ptIdentifier, u"g"},
                                            {Token::ptSpace, u" "},   {Token::ptNumber, u"1"},
                                            {Token::ptIdentifier, u"e5"}};
};

/// Both script languages read numbers alike; a blank is an unknown character.
template <class TParser, auto EndOfFile, auto LineBreak>
struct ScriptCase : Scanner<TParser, EndOfFile, LineBreak> {
    using T = decltype(EndOfFile);
    using Tokens = typename Scanner<TParser, EndOfFile, LineBreak>::Tokens;
    static inline const String Numbers = u"1..5 1.5 $fg 1e5";
    static inline const Tokens NumberTokens{{T::vtNumber, u"1"},  {T::vtRange, u".."},   {T::vtNumber, u"5"},
                                            {T::vtUnknown, u" "}, {T::vtFloat, u"1.5"},  {T::vtUnknown, u" "},
                                            {T::vtNumber, u"$f"}, {T::vtIdentifier, u"g"}, {T::vtUnknown, u" "},
                                            {T::vtNumber, u"1"},  {T::vtIdentifier, u"e5"}};
};

struct VBCase : ScriptCase<TSxCodeVBParser, uSxCodeVBParser::vtEndOfFile, uSxCodeVBParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeVBParser::DrawInfo;
    static constexpr auto Start = &uSxCodeVBParser::Initialization, Stop = &uSxCodeVBParser::Finalization;
    static inline const String ClassName = u"TSxCodeVBParser", Language = u"Visual Basic";
    static inline const String ColourLine = u"Dim x = 1 ' c";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 4, 0, 6, 0, 5, 0, 3, 0};
    static constexpr bool EndLinesMatter = false;
    static inline const String OpenComment = u"' abc", LinesComment = u"' a\r\nb";
    // the line end goes back to the input, also at the end of input
    static inline const Tokens OpenCommentTokens{{T::vtComment, u"' abc"}, {T::vtLineBreak, u"\r"}};
    static inline const Tokens LinesCommentTokens{{T::vtComment, u"' a"}, {T::vtLineBreak, u"\r"},
                                                  {T::vtIdentifier, u"b"}};
};

struct JSCase : ScriptCase<TSxCodeJSParser, uSxCodeJSParser::vtEndOfFile, uSxCodeJSParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeJSParser::DrawInfo;
    static constexpr auto Start = &uSxCodeJSParser::Initialization, Stop = &uSxCodeJSParser::Finalization;
    static inline const String ClassName = u"TSxCodeJSParser", Language = u"JavaScript";
    static inline const String ColourLine = u"{ x }";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 4, 0, 1, 0};
    static constexpr bool EndLinesMatter = true;
    static inline const String OpenComment = u"/* abc", LinesComment = u"/*a\r\nb*/ c";
    static inline const Tokens OpenCommentTokens{{T::vtComment, u"/* abc"}};
    static inline const Tokens LinesCommentTokens{{T::vtComment, u"/*a\r\nb*/"}, {T::vtUnknown, u" "},
                                                  {T::vtIdentifier, u"c"}};
};

struct SqlCase : Scanner<TSxCodeSqlParser, uSxCodeSqlParser::vtEndOfFile, uSxCodeSqlParser::vtLineBreak> {
    using T = uSxCodeSqlParser::TSxSqlToken;
    static constexpr auto& DrawInfo = uSxCodeSqlParser::DrawInfo;
    static constexpr auto Start = &uSxCodeSqlParser::Initialization, Stop = &uSxCodeSqlParser::Finalization;
    static inline const String ClassName = u"TSxCodeSqlParser", Language = u"Sql";
    static inline const String ColourLine = u"ON 'q' 1 @p -- c";
    static inline const std::vector<std::size_t> ColourRows{2, 1, 3, 1, 4, 1, 5, 1, 7, 2};
    static constexpr bool EndLinesMatter = false;
    static inline const String OpenComment = u"/* abc", LinesComment = u"/* a\r\nb */x";
    // the piece takes the terminator that ended it
    static inline const Tokens OpenCommentTokens{{T::vtComment, String(u"/* abc") + Char(0)}};
    static inline const Tokens LinesCommentTokens{{T::vtComment, u"/* a"}, {T::vtLineBreak, u"\r\n"},
                                                  {T::vtComment, u"b */"}, {T::vtUnknown, u"x"}};
    static inline const String Numbers = u"10 1,5 1.5 12a";
    static inline const Tokens NumberTokens{{T::vtNumber, u"10"}, {T::vtUnknown, u" "}, {T::vtNumber, u"1,5"},
                                            {T::vtUnknown, u" "}, {T::vtNumber, u"1.5"}, {T::vtUnknown, u" "},
                                            {T::vtUnknown, u"12"}, {T::vtUnknown, u"a"}};
};

struct XmlCase : Scanner<TSxCodeXMLParser, uSxCodeXmlParser::vtEndOfFile, uSxCodeXmlParser::vtLineBreak> {
    using T = uSxCodeXmlParser::TSxXmlToken;
    static constexpr auto& DrawInfo = uSxCodeXmlParser::DrawInfo;
    static constexpr auto Start = &uSxCodeXmlParser::Initialization, Stop = &uSxCodeXmlParser::Finalization;
    static inline const String ClassName = u"TSxCodeXMLParser", Language = u"XML";
    static inline const String ColourLine = u"<!-- c -->";
    static inline const std::vector<std::size_t> ColourRows{5, 7, 5, 2};
    static constexpr bool EndLinesMatter = false;
    static inline const String OpenComment = u"<!-- abc", LinesComment = u"<!-- a\r\nb -->";
    static inline const Tokens OpenCommentTokens{{T::vtElmStart, u"<"},
                                                 {T::vtComment, String(u"!-- abc") + Char(0) + Char(0)}};
    static inline const Tokens LinesCommentTokens{{T::vtElmStart, u"<"}, {T::vtComment, u"!-- a\r\nb --"},
                                                  {T::vtElmEnd, u">"}};
    // digits are characters of the state's kind, like any other
    static inline const String Numbers = u"<a>1.5";
    static inline const Tokens NumberTokens{{T::vtElmStart, u"<"},     {T::vtElmName, u"a"},
                                            {T::vtElmEnd, u">"},       {T::vtElmCharacters, u"1"},
                                            {T::vtElmCharacters, u"."}, {T::vtElmCharacters, u"5"}};
};

template <class L>
struct Scanners : testing::Test {};
using Languages = testing::Types<PascalCase, VBCase, JSCase, SqlCase, XmlCase>;
TYPED_TEST_SUITE(Scanners, Languages);

TYPED_TEST(Scanners, OnlyACarriageReturnEndsALineAndCharacterZeroEndsTheInput)
{
    using L = TypeParam;
    typename L::Parser empty(nullptr);
    FeedOnce(empty, u"");
    const Painted end = Paint(empty);
    EXPECT_FALSE(end.More || end.LineBreak);
    const auto lines = L::Scan(u"x\ny\rz");
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const auto& t) { return t.first == L::Break; }), 1);
    String text;
    for (const auto& token : L::Scan(String(u"a") + Char(0) + u"b"))
        text += token.second;
    EXPECT_EQ(text, u"a");
}

TYPED_TEST(Scanners, EndOfInputClosesAnOpenComment)
{
    using L = TypeParam;
    Probe<typename L::Parser> p;
    FeedOnce(p, L::OpenComment);
    EXPECT_EQ(L::Collect(p), L::OpenCommentTokens);
    EXPECT_EQ(p.LineKind(), 0);
    EXPECT_EQ(p.RemarkEnd(), u"");
}

TYPED_TEST(Scanners, WithEndLinesOffACommentRunsOverTheLineEnd)
{
    using L = TypeParam;
    EXPECT_EQ(L::Scan(L::LinesComment, false), L::LinesCommentTokens);
    EXPECT_EQ(L::Scan(L::LinesComment, true) == L::LinesCommentTokens, !L::EndLinesMatter);
}

TYPED_TEST(Scanners, NumberForms)
{
    EXPECT_EQ(TypeParam::Scan(TypeParam::Numbers), TypeParam::NumberTokens);
}

TYPED_TEST(Scanners, EachTokenIsPaintedFromTheFirstRowThatHoldsIt)
{
    using L = TypeParam;
    typename L::Parser p(nullptr);
    LineFeed feed{{L::ColourLine}};
    p.SetOnGetNewBuffer(std::ref(feed));
    for (std::size_t i = 0; i < L::ColourRows.size(); ++i) {
        const Painted t = Paint(p);
        const auto& row = L::DrawInfo[L::ColourRows[i]];
        EXPECT_TRUE(t.More && t.Back == row.BckColor && t.Fore == row.TextColor && t.Style == row.Style) << i;
        EXPECT_EQ(t.LineBreak, i + 1 == L::ColourRows.size()) << i;
    }
    const Painted end = Paint(p);
    EXPECT_FALSE(end.More || end.LineBreak);
}

TYPED_TEST(Scanners, UnitRegistersTheClassAndReleasesTheRowNames)
{
    using L = TypeParam;
    const auto saved = L::DrawInfo;
    L::Start();
    const TClass* cls = GetClass(L::ClassName);
    ASSERT_NE(cls, nullptr);
    const std::unique_ptr<TSxLangParser> made(TSxLangParserClass(*cls).Create(nullptr));
    EXPECT_EQ(made->GetLanguage(), L::Language);
    L::Stop();
    EXPECT_EQ(GetClass(L::ClassName), nullptr);
    for (const auto& row : L::DrawInfo)
        EXPECT_TRUE(row.Name.empty());
    L::DrawInfo = saved;
    L::Start();
}

}  // namespace
