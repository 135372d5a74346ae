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
using namespace std::string_literals;

/// Per language: its unit, a line with the row of DrawInfo each of its tokens
/// is painted from (the line break last), a comment the end of input closes,
/// a comment over two lines read with EndLines False, and numbers.
struct PascalCase : Scanner<TSxCodePascalParser, uSxCodePascalParser::ptEndOfFile, uSxCodePascalParser::ptLineBreak> {
    static constexpr auto& DrawInfo = uSxCodePascalParser::DrawInfo;
    static constexpr auto Start = &uSxCodePascalParser::Initialization, Stop = &uSxCodePascalParser::Finalization;
    static inline const String ClassName = u"TsxCodePasParser", Language = u"Pascal", ColourLine = u"begin 'a' {c} x #1.5 $f;";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0, 6, 7, 0};
    static constexpr bool EndLinesMatter = true;
    static inline const String OpenComment = u"(* abc", LinesComment = u"{a\r\nb}c", Numbers = u"1..5 1.5 $fg 1e5";
    static inline const std::string OpenCommentTokens = "{40}(* abc";
    static inline const std::string LinesCommentTokens = "{40}{a\r\nb}{35}c";
    static inline const std::string NumberTokens = "{38}1{49}..{38}5{6} {39}1.5{6} {38}$f{35}g{6} {38}1{35}e5";
};

struct VBCase : Scanner<TSxCodeVBParser, uSxCodeVBParser::vtEndOfFile, uSxCodeVBParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeVBParser::DrawInfo;
    static constexpr auto Start = &uSxCodeVBParser::Initialization, Stop = &uSxCodeVBParser::Finalization;
    static inline const String ClassName = u"TSxCodeVBParser", Language = u"Visual Basic", ColourLine = u"Dim x = 1 ' c";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 4, 0, 6, 0, 5, 0, 3, 0};
    static constexpr bool EndLinesMatter = false;
    static inline const String OpenComment = u"' abc", LinesComment = u"' a\r\nb", Numbers = u"1..5 1.5 $fg 1e5";
    static inline const std::string NumberTokens = "{55}1{62}..{55}5{1} {56}1.5{1} {55}$f{4}g{1} {55}1{4}e5";
    // the line end goes back to the input, also at the end of input
    static inline const std::string OpenCommentTokens = "{57}' abc{0}\r";
    static inline const std::string LinesCommentTokens = "{57}' a{0}\r{4}b";
};

struct JSCase : Scanner<TSxCodeJSParser, uSxCodeJSParser::vtEndOfFile, uSxCodeJSParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeJSParser::DrawInfo;
    static constexpr auto Start = &uSxCodeJSParser::Initialization, Stop = &uSxCodeJSParser::Finalization;
    static inline const String ClassName = u"TSxCodeJSParser", Language = u"JavaScript", ColourLine = u"{ x }";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 4, 0, 1, 0};
    static constexpr bool EndLinesMatter = true;
    static inline const String OpenComment = u"/* abc", LinesComment = u"/*a\r\nb*/c", Numbers = u"1..5 1.5 $fg 1e5";
    static inline const std::string NumberTokens = "{56}1{63}..{56}5{1} {57}1.5{1} {56}$f{4}g{1} {56}1{4}e5";
    static inline const std::string OpenCommentTokens = "{58}/* abc";
    static inline const std::string LinesCommentTokens = "{58}/*a\r\nb*/{4}c";
};

struct SqlCase : Scanner<TSxCodeSqlParser, uSxCodeSqlParser::vtEndOfFile, uSxCodeSqlParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeSqlParser::DrawInfo;
    static constexpr auto Start = &uSxCodeSqlParser::Initialization, Stop = &uSxCodeSqlParser::Finalization;
    static inline const String ClassName = u"TSxCodeSqlParser", Language = u"Sql", ColourLine = u"ON 'q' 1 @p -- c";
    static inline const std::vector<std::size_t> ColourRows{2, 1, 3, 1, 4, 1, 5, 1, 7, 2};
    static constexpr bool EndLinesMatter = false;
    static inline const String OpenComment = u"/* abc", LinesComment = u"/* a\r\nb */x", Numbers = u"10 1,5 1.5 12a";
    // the piece takes the terminator that ended it
    static inline const std::string OpenCommentTokens = "{9}/* abc\0"s;
    static inline const std::string LinesCommentTokens = "{9}/* a{0}\r\n{9}b */{1}x";
    static inline const std::string NumberTokens = "{7}10{1} {7}1,5{1} {7}1.5{1} {1}12{1}a";
};

struct XmlCase : Scanner<TSxCodeXMLParser, uSxCodeXmlParser::vtEndOfFile, uSxCodeXmlParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeXmlParser::DrawInfo;
    static constexpr auto Start = &uSxCodeXmlParser::Initialization, Stop = &uSxCodeXmlParser::Finalization;
    static inline const String ClassName = u"TSxCodeXMLParser", Language = u"XML", ColourLine = u"<!-- c -->";
    static inline const std::vector<std::size_t> ColourRows{5, 7, 5, 2};
    static constexpr bool EndLinesMatter = false;
    static inline const String OpenComment = u"<!-- abc", LinesComment = u"<!-- a\r\nb -->", Numbers = u"<a>1.5";
    static inline const std::string OpenCommentTokens = "{9}<{16}!-- abc\0\0"s;
    static inline const std::string LinesCommentTokens = "{9}<{16}!-- a\r\nb --{10}>";
    // digits are characters of the state's kind, like any other
    static inline const std::string NumberTokens = "{9}<{8}a{10}>{12}1{12}.{12}5";
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
    const auto cut = L::Scan(String(u"a") + Char(0) + u"b");
    EXPECT_TRUE(cut.size() == 1 && cut[0].second == u"a");
}

// The end of input closes a comment; with EndLines False a comment over two
// lines is one token where the language's comments span lines.
TYPED_TEST(Scanners, CommentsAtTheEndOfInputAndOverLineEnds)
{
    using L = TypeParam;
    Probe<typename L::Parser> p;
    FeedOnce(p, L::OpenComment);
    EXPECT_EQ(L::Golden(L::Collect(p)), L::OpenCommentTokens);
    EXPECT_TRUE(p.LineKind() == 0 && p.RemarkEnd().empty());
    EXPECT_EQ(L::Dump(L::LinesComment, false), L::LinesCommentTokens);
    EXPECT_EQ(L::Dump(L::LinesComment, true) == L::LinesCommentTokens, !L::EndLinesMatter);
}

TYPED_TEST(Scanners, NumberForms)
{
    EXPECT_EQ(TypeParam::Dump(TypeParam::Numbers), TypeParam::NumberTokens);
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
    EXPECT_FALSE(Paint(p).More);
}

TYPED_TEST(Scanners, UnitRegistersTheClassAndReleasesTheRowNames)
{
    using L = TypeParam;
    const auto saved = L::DrawInfo;  // released names and all
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
