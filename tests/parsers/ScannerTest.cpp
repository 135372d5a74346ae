// The parser base: both feeds, push-back, line counting and the base
// tokenizer. What the five language scanners share, checked on each: line
// ends and the end of input, a comment closed by the end of input, comments
// with EndLines off, number forms, colours from the language's table, and the
// unit's start and stop. Then what only one language's tokenizer does.
// Pascal: numbers that a second period ends, the SOAP comment fields and the
// unit's class name, only the short one. SQL: the letter tree and its
// building check, a block comment that lasts until a reset, the process-wide
// colour and keyword tables, and PeekString. XML: a reset back to the start
// state, and a run started at a line that opens with a tag.
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"
#include "parsers/ParserTestSupport.h"

namespace {

using namespace sx;
using namespace sx::test;
using namespace std::string_literals;
/// A base parser on a feed of the pieces.
struct ParserBase : testing::Test {
    void Feed(std::deque<String> APieces)
    {
        feed.Pieces = std::move(APieces);
        parser.SetOnGetNewBuffer(std::ref(feed));
    }
    /// The next token's text, with "|" for a line break; checks the base's colours.
    String Next()
    {
        const Painted t = Paint(parser);
        EXPECT_TRUE(t.More && t.Back == clWindow && t.Fore == clWindowText && t.Style.Empty());
        return t.LineBreak ? t.Text + u"|" : t.Text;
    }
    String Read(int ACount)
    {
        String read;
        while (ACount-- > 0)
            read += parser.ReadChar();
        return read;
    }
    TSxLangParser parser{nullptr};
    PieceFeed feed;
};

TEST_F(ParserBase, BaseTokenizerSplitsLinesAndKeepsTextBeforeTheEnd)
{
    const std::pair<String, std::vector<String>> cases[] = {
        {u"a\r\n\r\nb", {u"a", u"|", u"|", u"b|"}},
        {u"ab\ncd\ref", {u"abcd", u"|", u"ef|"}},  // a lone LF ends no line, a lone CR does
        {String(u"ab") + Char(0) + u"cd", {u"ab|", u"cd|"}},  // character 0 ends a token, reading goes on
    };
    for (const auto& [text, tokens] : cases) {
        Feed({text});
        for (const String& token : tokens)
            EXPECT_EQ(Next(), token) << StrToUtf8(text);
    }
    TSxLangParser unfed(nullptr);  // without a feed the end comes for ever
    EXPECT_EQ(unfed.ReadChar(), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(Paint(unfed).More && Paint(unfed).LineBreak);
}

TEST_F(ParserBase, EveryReadThatFindsNothingAsksTheCallbackAgain)
{
    Feed({u"", u"x"});
    EXPECT_EQ(Read(4), String(1, Char(0)) + u"x" + Char(0) + Char(0));  // an empty piece, then exhausted
    EXPECT_EQ(feed.Calls, 4);
    Feed({});
    EXPECT_TRUE(parser.PeekChar() == 0 && parser.ReadChar() == 0);  // a peek at the end leaves a terminator
    EXPECT_EQ(feed.Calls, 5);
}

TEST_F(ParserBase, ResetAsksTheCallbackOnceAndKeepsTheLineToLineState)
{
    parser.SetInputStream(Utf16Stream(u"s"), true);
    Feed({u"abc"});  // the callback has priority over the stream
    parser.ReadChar();
    parser.SetLineKind(7);
    parser.SetRemarkEnd(u"*)");
    parser.SetInRemark(true);
    parser.SetEndLines(true);
    parser.ResetBuffer();
    EXPECT_TRUE(feed.Resets == 1 && parser.ReadChar() == u'a' && parser.LineNr() == 1);
    EXPECT_TRUE(parser.LineKind() == 7 && parser.RemarkEnd() == u"*)" && parser.InRemark() && parser.EndLines());
}

TEST_F(ParserBase, StreamsAreReadInBlocksThatAShortReadEnds)
{
    auto* stream = Utf16Stream(u"abc");
    parser.SetInputStream(stream, true);
    // then a new load: an empty read and its terminator
    EXPECT_TRUE(Read(5) == String(u"abc") + Char(0) + Char(0) && stream->Position() == 6);
    parser.SetInputStream(Utf16Stream(String(4096, u'x')), true);
    EXPECT_EQ(Read(4097), String(4096, u'x') + Char(0));  // no terminator in a full first block
    // an odd last byte is dropped; low byte first; a reset rewinds
    parser.SetInputStream(new TMemoryStream({0xAC, 0x20, '!'}), true);
    EXPECT_EQ(Read(2), String(u"\u20AC") + Char(0));
    parser.ResetBuffer();
    EXPECT_EQ(parser.ReadChar(), u'\u20AC');
}

TEST_F(ParserBase, SetInputStreamFreesAnOwnedStreamAndKeepsAForeignOne)
{
    struct Tracked : TMemoryStream {
        bool* Freed;
        explicit Tracked(bool* AFreed) : Freed(AFreed) {}
        ~Tracked() override { *Freed = true; }
    };
    bool ownedFreed = false, foreignFreed = false;
    auto* foreign = new Tracked(&foreignFreed);
    parser.SetInputStream(new Tracked(&ownedFreed), true);
    parser.SetInputStream(foreign, false);
    EXPECT_TRUE(ownedFreed);
    parser.SetInputStream(nullptr, false);
    EXPECT_FALSE(foreignFreed);
    delete foreign;
}

TEST_F(ParserBase, PushesNeedNotBeWhatWasReadAndLineNumbersCountLfBothWays)
{
    Feed({u"xyz\r\n"});
    EXPECT_EQ(parser.ReadChar(), u'x');
    parser.PushChar(u'q');
    EXPECT_EQ(parser.ReadChar(), u'q');
    parser.PushStr(u"abc");  // more than was read: the surplus goes in front of the buffer
    EXPECT_EQ(Read(6), u"abcyz\r");
    EXPECT_TRUE(parser.ReadCurrChar() == u'\r' && parser.PeekChar() == u'\n' && parser.LineNr() == 1);
    EXPECT_TRUE(parser.ReadChar() == u'\n' && parser.LineNr() == 2);
    parser.PushChar(u'\n');
    EXPECT_EQ(parser.LineNr(), 1);
    parser.ResetBuffer();
    parser.PushChar(u'\n');  // a push in front of the buffer counts too
    EXPECT_EQ(parser.LineNr(), 0);
}

using Cases = std::vector<std::pair<String, std::string>>;

/// Lines fed as a paint feeds them, the scan started with a line kind: their
/// tokens, and the kinds stored at each line when they are given.
struct LinesCase {
    std::vector<String> Lines;
    Integer StartKind;
    std::string Tokens;
    std::vector<Integer> Kinds{};
};

/// Per language: its unit, a line with the row of DrawInfo each of its tokens
/// is painted from (the line break last), a comment the end of input closes,
/// texts read with EndLines False, lines fed as a paint feeds them, pieces of
/// lines for the restart property, and short texts, number forms among them,
/// with their tokens as {kind}text, kinds by their numbers.
struct PascalCase : Scanner<TSxCodePascalParser, uSxCodePascalParser::ptEndOfFile, uSxCodePascalParser::ptLineBreak> {
    static constexpr auto& DrawInfo = uSxCodePascalParser::DrawInfo;
    static constexpr auto Start = &uSxCodePascalParser::Initialization, Stop = &uSxCodePascalParser::Finalization;
    static inline const String ClassName = u"TsxCodePasParser", Language = u"Pascal", ColourLine = u"begin 'a' {c} x #1.5 $f;";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0, 6, 7, 0};
    static constexpr bool EndLinesMatter = true;
    static inline const std::pair<String, std::string> OpenComment{u"(* abc", "{40}(* abc"};
    // without EndLines a line comment holds its CR, and the LF is dropped
    static inline const Cases NoEndLines{{u"{a\r\nb}c", "{40}{a\r\nb}{35}c"}, {u"// x\r\ny", "{40}// x\r{35}y"}};
    static inline const std::vector<LinesCase> LineTexts{
        {{u"(* a", u"", u"b *) x", u"{", u"}"}, 0, "{40}(* a{1}\r{40}{1}\r{40}b *){6} {35}x{1}\r{40}{{1}\r{40}}{1}\r",
         {0, 1, 1, 0, 2}},
        // a line comment needs no state; the opening characters are not reused to close
        {{u"a // b (* c", u"(*)", u"x"}, 0, "{35}a{6} {40}// b (* c{1}\r{40}(*){1}\r{40}x{1}\r{40}", {0, 0, 1}},
        {{u"'open (*", u"b"}, 0, "{36}'open (*{1}\r{35}b{1}\r"},  // a string ends with its line
        // a stored line kind turns into the open comment, also kind 3, which is never stored
        {{u"x := 'a'; } y"}, 2, "{40}x := 'a'; }{6} {35}y{1}\r"}, {{u"a }", u"b"}, 3, "{40}a }{1}\r{35}b{1}\r"},
        {{u"", u"*) x"}, 1, "{40}{1}\r{40}*){6} {35}x{1}\r"},
    };
    static inline const std::vector<String> RestartPieces{u"(*", u"*)", u"{", u"}", u"//", u"'", u"''", u" ", u"\t", u"a",
        u"Begin", u"1", u".", u"..", u"$f", u"#", u"*", u")", u"(", u"\u00E9", u":=", u"<"};
    static inline const Cases Texts{
        // number forms
        {u"1..5 1.5 $fg 1e5", "{38}1{49}..{38}5{6} {39}1.5{6} {38}$f{35}g{6} {38}1{35}e5"},
        // a second period ends the number at once, which stays an integer number (coloured as $f is)
        {u"1.2.3 5.5..", "{38}1.2{48}.{38}3{6} {38}5.5{49}.."},
        // operators take a second character only when it fits
        {u"<=<><<=", "{53}<={51}<>{52}<{53}<="}, {u">=>:=:...", "{55}>={54}>{56}:={47}:{49}..{48}."},
        {u"(#@^", "{57}({62}#{63}@{61}^"}, {u"#13#10", "{62}#{38}13{62}#{38}10"},
        // keywords are case-blind whole words; "object" is a class
        {u"Begin CONSTRUCTOR const", "{18}Begin{6} {12}CONSTRUCTOR{6} {43}const"},
        {u"object AS interface out end.", "{27}object{6} {7}AS{6} {33}interface{6} {44}out{6} {19}end{48}."},
        {u"repeat CONSTX _end end1 Zend", "{35}repeat{6} {35}CONSTX{6} {35}_end{6} {35}end1{6} {35}Zend"},
        {u"'it''s'x''", "{36}'it''s'{35}x{36}''"}, {u"a  \t b", "{35}a{6}  {0}\t{6} {35}b"},
        {String(u"a") + Char(8), "{35}a{6}    "},
        {u"caf\u00E9x\u4E00!\"%&?\\`|}~", "{35}caf{0}\u00E9{35}x{0}\u4E00{0}!{0}\"{0}%{0}&{0}?{0}\\{0}`{0}|{0}}{0}~"},
        // comments do not nest
        {u"(* { *)x{ (* }x(* ) * *)", "{40}(* { *){35}x{40}{ (* }{35}x{40}(* ) * *)"},
    };
};

struct VBCase : Scanner<TSxCodeVBParser, uSxCodeVBParser::vtEndOfFile, uSxCodeVBParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeVBParser::DrawInfo;
    static constexpr auto Start = &uSxCodeVBParser::Initialization, Stop = &uSxCodeVBParser::Finalization;
    static inline const String ClassName = u"TSxCodeVBParser", Language = u"Visual Basic", ColourLine = u"Dim x = 1 ' c";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 4, 0, 6, 0, 5, 0, 3, 0};
    static constexpr bool EndLinesMatter = false;
    // the line end goes back to the input, also at the end of input
    static inline const std::pair<String, std::string> OpenComment{u"' abc", "{57}' abc{0}\r"};
    static inline const Cases NoEndLines{{u"' a\r\nb", "{57}' a{0}\r{4}b"}};
    // no comment stays open over a line end, whatever kind a restart brings
    static inline const std::vector<LinesCase> LineTexts{
        {{u"x */ y", u"' a", u"b"}, 1, "{4}x{1} {75}*{76}/{1} {4}y{0}\r{57}' a{0}\r{4}b{0}\r"}};
    static inline const std::vector<String> RestartPieces{u"'", u"\"", u"\"\"", u"(*", u"*)", u"(", u"rem", u"Rem ", u" ",
        u"\t", u"a", u"Sub", u"1", u".", u"..", u"$f", u"&", u"<>", u"\u00E9", u"x1"};
    static inline const Cases Texts{
        // number forms
        {u"1..5 1.5 $fg 1e5", "{55}1{62}..{55}5{1} {56}1.5{1} {55}$f{4}g{1} {55}1{4}e5"},
        {u"x<=<><", "{4}x{66}<={64}<>{65}<"}, {u"<<=>=>", "{65}<{66}<={68}>={67}>"},
        {u"...\\[: \t", "{62}..{61}.{77}\\{71}[{1}:{1} {1}\t"}, {u"!#%?@{\u00E9", "{1}!{1}#{1}%{1}?{1}@{1}{{1}\u00E9"},
        {u"x.End", "{4}x{61}.{7}End"}, {u"1.2.3", "{56}1.2{61}.{55}3"}, {u"&H10", "{52}&{4}H10"},
        {u"\"a\"\"b\"x", "{53}\"a\"\"b\"{4}x"},
        // keywords are case-blind whole words
        {u"ByVal BYREF end exit", "{27}ByVal{1} {28}BYREF{1} {7}end{1} {17}exit"},
        {u"each else elseif executeglobal", "{21}each{1} {31}else{1} {32}elseif{1} {20}executeglobal"},
        {u"And Nothing Remark Rem1 _end ends", "{4}And{1} {4}Nothing{1} {4}Remark{1} {4}Rem1{1} {4}_end{1} {4}ends"},
        // "(*" is no Visual Basic; it is a comment within its line, handed out whole
        {u"a(* note *)b", "{4}a{57}(* note *){4}b"},
    };
};

struct JSCase : Scanner<TSxCodeJSParser, uSxCodeJSParser::vtEndOfFile, uSxCodeJSParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeJSParser::DrawInfo;
    static constexpr auto Start = &uSxCodeJSParser::Initialization, Stop = &uSxCodeJSParser::Finalization;
    static inline const String ClassName = u"TSxCodeJSParser", Language = u"JavaScript", ColourLine = u"{ x }";
    static inline const std::vector<std::size_t> ColourRows{1, 0, 4, 0, 1, 0};
    static constexpr bool EndLinesMatter = true;
    static inline const std::pair<String, std::string> OpenComment{u"/* abc", "{58}/* abc"};
    static inline const Cases NoEndLines{{u"/*a\r\nb*/c", "{58}/*a\r\nb*/{4}c"}, {u"// x\r\ny", "{58}// x\r{4}y"}};
    static inline const std::vector<LinesCase> LineTexts{
        {{u"a /* one", u"", u"two *) three */ b", u"/* x */ c"}, 0,
         "{4}a{1} {58}/* one{0}\r{58}{0}\r{58}two *) three */{1} {4}b{0}\r{58}/* x */{1} {4}c{0}\r", {0, 1, 1, 0}},
        // a line comment needs no state; the opening characters do not close a block comment
        {{u"// a /* b", u"/*/", u"x"}, 0, "{58}// a /* b{0}\r{58}/*/{0}\r{58}x{0}\r{58}", {0, 0, 1}},
        // a restart inside a comment continues it; kinds 2 and 3 are understood on input
        {{u"still */ x"}, 1, "{58}still */{1} {4}x{0}\r"}, {{u"", u"*/"}, 1, "{58}{0}\r{58}*/{0}\r"},
        {{u"a } b"}, 2, "{58}a }{1} {4}b{0}\r"}, {{u"a }", u"b"}, 3, "{58}a }{0}\r{4}b{0}\r"},
    };
    static inline const std::vector<String> RestartPieces{u"/*", u"*/", u"//", u"/", u"*", u"\"", u"'", u"rem ", u" ", u"a",
        u"function", u"{", u"}", u"(", u"1.5", u"$f", u"\u00E9", u"<>"};
    static inline const Cases Texts{
        // number forms
        {u"1..5 1.5 $fg 1e5", "{56}1{63}..{56}5{1} {57}1.5{1} {56}$f{4}g{1} {56}1{4}e5"},
        {u"'abc'(*x", "{1}'{4}abc{1}'{70}({76}*{4}x"}, {u"{}&&", "{8}{{7}}{53}&{53}&"},
        {u"a/b// c / d", "{4}a{77}/{4}b{58}// c / d"}, {u"\"/* no */\"==!", "{54}\"/* no */\"{64}={64}={1}!"},
        // an escaped quote is not known: the backslash is string text and the quote ends the string
        {u"\"a\\\"b", "{54}\"a\\\"{4}b"}, {u"x=rem;", "{4}x{64}={58}rem;"}, {u"END Function", "{7}END{1} {5}Function"},
        // the Visual Basic keywords less three, and JavaScript's own words, are identifiers
        {u"exit then until begin var try", "{4}exit{1} {4}then{1} {4}until{1} {4}begin{1} {4}var{1} {4}try"},
    };
};

struct SqlCase : Scanner<TSxCodeSqlParser, uSxCodeSqlParser::vtEndOfFile, uSxCodeSqlParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeSqlParser::DrawInfo;
    static constexpr auto Start = &uSxCodeSqlParser::Initialization, Stop = &uSxCodeSqlParser::Finalization;
    static inline const String ClassName = u"TSxCodeSqlParser", Language = u"Sql", ColourLine = u"ON 'q' 1 @p -- c";
    static inline const std::vector<std::size_t> ColourRows{2, 1, 3, 1, 4, 1, 5, 1, 7, 2};
    static constexpr bool EndLinesMatter = false;
    // the piece takes the terminator that ended it
    static inline const std::pair<String, std::string> OpenComment{u"/* abc", "{9}/* abc\0"s};
    static inline const Cases NoEndLines{{u"/* a\r\nb */x", "{9}/* a{0}\r\n{9}b */{1}x"}};
    // a block comment goes on over lines within a scan, but leaves no line kind
    static inline const std::vector<LinesCase> LineTexts{
        {{u"/* a", u"b */ ON"}, 0, "{9}/* a{0}\r\n{9}b */{1} {4}ON{0}\r\n", {0, 0}}};
    // a restart inside a block comment is not known to the scanner
    static inline const std::vector<String> RestartPieces{u"SELECT", u"a", u" ", u"'", u"--", u"@p", u",", u"1", u"5",
        u".", u"(", u")", u"ON", u"x1", u"\u00E9", u"-", u"/", u"\"", u"=", u"@"};
    static inline const Cases Texts{
        // number forms
        {u"10 1,5 1.5 12a", "{7}10{1} {7}1,5{1} {7}1.5{1} {1}12{1}a"},
        // words: keywords, whatever their case, and where a word may start
        {u"SeLeCt CURRENT CURRENT_DATE CURRENT_TIMESTAMP",
         "{4}SeLeCt{1} {4}CURRENT{1} {4}CURRENT_DATE{1} {4}CURRENT_TIMESTAMP"},
        {u"SELECTED SELECT1", "{1}SELECTE{1}D{1} {4}SELECT{1}1"},
        {u"a=SELECT a = SELECT", "{1}a{1}={1}S{1}E{1}L{1}E{1}C{1}T{1} {1}a{1} {1}={1} {4}SELECT"},
        {u"(SELECT,FROM)AS t.ON", "{1}({4}SELECT{1},{4}FROM{1}){4}AS{1} {1}t{1}.{1}O{1}N"}, {u"\tON", "{1}{1}O{1}N"},
        {u"x\r\nON\nON\rON", "{1}x{0}\r\n{4}ON{1}\n{1}O{1}N{0}\r{4}ON"},
        // numbers need a start and an end; parameters end only at white space
        {u"1, 1 .5 (12) x1", "{7}1,{1} {7}1{1} {1}.{7}5{1} {1}({7}12{1}){1} {1}x{1}1"},
        {u"(@a,@b) x@c @d\tz", "{1}({8}@a,@b){1} {1}x{1}@{1}c{1} {8}@d{1}{1}z"},
        {u"'a b''c' \"d\"\r\n'abc\r\nx", "{6}'a b'{6}'c'{1} {1}\"{1}d{1}\"{0}\r\n{6}'abc{0}\r\n{1}x"},
        // comments: a line comment ends at any control character, a block comment goes one piece a line
        {u"'v'-- c -- d\tON\r\na-b 5 - 3", "{6}'v'{9}-- c -- d{1}{1}O{1}N{0}\r\n{1}a{1}-{1}b{1} {7}5{1} {1}-{1} {7}3"},
        {u"a /* b\r\n\r\nc\r\n*/ON */ x /*/ON",
         "{1}a{1} {9}/* b{0}\r\n{0}\r\n{9}c{0}\r\n{9}*/{1}O{1}N{1} {1}*{1}/{1} {1}x{1} {9}/*/{1}O{1}N"},
        {u"/**/ /* a*/\r\n/* 'q' -- \t@p ON\r\n", "{9}/**/{1} {9}/* a*/{0}\r\n{9}/* 'q' -- \t@p ON{0}\r\n"},
    };
};

struct XmlCase : Scanner<TSxCodeXMLParser, uSxCodeXmlParser::vtEndOfFile, uSxCodeXmlParser::vtLineBreak> {
    static constexpr auto& DrawInfo = uSxCodeXmlParser::DrawInfo;
    static constexpr auto Start = &uSxCodeXmlParser::Initialization, Stop = &uSxCodeXmlParser::Finalization;
    static inline const String ClassName = u"TSxCodeXMLParser", Language = u"XML", ColourLine = u"<!-- c -->";
    static inline const std::vector<std::size_t> ColourRows{5, 7, 5, 2};
    static constexpr bool EndLinesMatter = false;
    static inline const std::pair<String, std::string> OpenComment{u"<!-- abc", "{9}<{16}!-- abc\0\0"s};
    static inline const Cases NoEndLines{{u"<!-- a\r\nb -->", "{9}<{16}!-- a\r\nb --{10}>"}};
    // the state goes on over line breaks
    static inline const std::vector<LinesCase> LineTexts{
        {{u"<a b=\"x", u"y\"", u">z", u"w"}, 0, "{9}<{8}a{4} {4}b{5}={6}\"{7}x{0}~~{7}y{6}\"{0}~~{10}>{12}z{0}~~{12}w{0}~~"},
        {{u"<!-- one", u"two -->"}, 0, "{9}<{16}!-- one\r\ntwo --{10}>{0}~~"},
        {{u"<?pi a", u"b"}, 0, "{9}<{18}?pi a\r\nb\r\n"},
    };
    // digits are characters of the state's kind, like any other
    static inline const Cases Texts{
        // number forms
        {u"<a>1.5", "{9}<{8}a{10}>{12}1{12}.{12}5"},
        // text before the first tag is markup, text behind a tag is content
        {u"x\"<b>y=\"z", "{9}x{9}\"{9}<{8}b{10}>{12}y{12}={12}\"{12}z"},
        // only double quotes open values, and only '<' ends them
        {u"<a k='v'>/", "{9}<{8}a{4} {4}k{5}={4}'{4}v{4}'{10}>{12}/"},
        {u"<a b=\"x>/=<c", "{9}<{8}a{4} {4}b{5}={6}\"{7}x{7}>{7}/{7}={9}<{8}c"},
        {u"<!-- a -->", "{9}<{16}!-- a --{10}>"}, {u"<!---->x", "{9}<{16}!----{10}>{12}x"},
        {u"<![cdata[x]]>", "{9}<{13}![cdata[{15}x{14}]]>"},
        {u"<![CDATA[]<>\"]]>t<", "{9}<{13}![CDATA[{15}]{15}<{15}>{15}\"{14}]]>{8}t{9}<"},
        // a declaration's name and words are coloured as element and attributes
        {u"<!DOCTYPE x>", "{9}<{4}!{8}D{8}O{8}C{8}T{8}Y{8}P{8}E{4} {4}x{10}>"},
        {u"<!a", "{9}<{4}!{8}a"},  // a short one at the end goes back untouched
        {u"<?xml version=\"1.0\"?>", "{9}<{18}?xml version=\"1.0\"?{10}>"},
        // control characters give empty tokens of the state's kind
        {u"<a\t>\t\n<b", "{9}<{8}a{8}{10}>{12}{12}{9}<{8}b"}, {u"<a\rb", "{9}<{8}a{0}~~{8}b"},
    };
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
    FeedOnce(p, L::OpenComment.first);
    EXPECT_EQ(L::Golden(L::Collect(p)), L::OpenComment.second);
    EXPECT_TRUE(p.LineKind() == 0 && p.RemarkEnd().empty());
    for (const auto& [text, tokens] : L::NoEndLines) {
        EXPECT_EQ(L::Dump(text, false), tokens) << StrToUtf8(text);
        EXPECT_EQ(L::Dump(text, true) == tokens, !L::EndLinesMatter) << StrToUtf8(text);
    }
}

// Each short text gives its tokens, also when fed one character a piece.
TYPED_TEST(Scanners, TokensOfShortTexts)
{
    for (const auto& [text, tokens] : TypeParam::Texts) {
        EXPECT_EQ(TypeParam::Dump(text), tokens) << StrToUtf8(text);
        Probe<typename TypeParam::Parser> p;
        PieceFeed chars;
        for (const Char c : text)
            chars.Pieces.push_back(String(1, c));
        p.SetOnGetNewBuffer(chars);
        p.SetEndLines(true);
        EXPECT_EQ(TypeParam::Golden(TypeParam::Collect(p)), tokens) << "a character a piece: " << StrToUtf8(text);
    }
}

TYPED_TEST(Scanners, TokensAndLineKindsOfLinesFedAsAPaintFeedsThem)
{
    for (const auto& [lines, startKind, tokens, kinds] : TypeParam::LineTexts) {
        std::vector<Integer> stored;
        EXPECT_EQ(TypeParam::Golden(TypeParam::ScanLines(lines, startKind, &stored)), tokens) << StrToUtf8(lines[0]);
        if (!kinds.empty()) {
            EXPECT_EQ(stored, kinds) << StrToUtf8(lines[0]);
        }
    }
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
    // only the script languages write and find handlers; the others answer as the base does
    TScriptButton::RegisterEvents();
    TScriptButton host(nullptr, u"Host1");
    String name = u"kept";
    const bool writes = !made->CreateMethod(&host, u"OnValidate", name).empty();
    EXPECT_TRUE(writes == (name != u"kept") && writes == (L::Language == u"JavaScript" || L::Language == u"Visual Basic"));
    EXPECT_TRUE(made->GetSameMethods(&host, u"OnValidate").empty() && made->MethodLineNr(u"OnValidate") == -1);
    L::Stop();
    EXPECT_EQ(GetClass(L::ClassName), nullptr);
    for (const auto& row : L::DrawInfo)
        EXPECT_TRUE(row.Name.empty());
    L::DrawInfo = saved;
    L::Start();
}

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on. XML keeps no state per line.
template <class L>
struct Restarts : testing::Test {};
using LanguagesWithLineStarts = testing::Types<PascalCase, VBCase, JSCase, SqlCase>;
TYPED_TEST_SUITE(Restarts, LanguagesWithLineStarts);

TYPED_TEST(Restarts, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    TypeParam::ExpectRestartGivesTheFullPass(TypeParam::RestartPieces);
}

// What only one language's tokenizer does.
using namespace sx::uSxCodeSqlParser;
namespace pas = sx::uSxCodePascalParser;
using Sql = Scanner<TSxCodeSqlParser, vtEndOfFile, vtLineBreak>;
using Xml = Scanner<TSxCodeXMLParser, uSxCodeXmlParser::vtEndOfFile, uSxCodeXmlParser::vtLineBreak>;

TEST(PascalParser, EveryCommentClearsTheSoapFieldsAndTheUnitRegistersTheShortName)
{
    TSxCodePascalParser p(nullptr);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    FeedOnce(p, u"{}");
    Paint(p);
    EXPECT_TRUE(p.SoapCommentLineStart() == -1 && p.SoapComment().empty());
    pas::Initialization();  // the unit registers the short class name only
    EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
}

TEST(SqlParser, EveryKeywordIsFoundInAnyCase)
{
    for (const String& word : SxSqlKeyWords) {
        const std::string upper = StrToUtf8(word), lower = StrToUtf8(LowerCase(word));
        EXPECT_EQ(Sql::Dump(word + u" " + LowerCase(word)), word.empty() ? "{1} " : "{4}" + upper + "{1} {4}" + lower);
    }
}

TEST(SqlParser, BuildingCheckNamesTheCharacterAndTheUpperCasedKeyword)
{
    const String saved = SxSqlKeyWords[116];
    SxSqlKeyWords[116] = u"x[\\]^_y";  // every character from 'A' to '_' has a place
    EXPECT_NO_THROW(TSxCodeSqlParser(nullptr));
    for (const String bad : {u"ab1", u"ab ", u"ab\u00e9", u"ab`", u"ab@"}) {
        SxSqlKeyWords[116] = bad;
        try {
            TSxCodeSqlParser p(nullptr);
            ADD_FAILURE() << "no exception for " << StrToUtf8(bad);
        } catch (const Exception& e) {
            EXPECT_EQ(e.Message(),
                      u"Invalid Character \"" + String(1, bad[2]) + u"\" in keyword \"" + UpperCase(bad) + u"\" ");
        }
    }
    SxSqlKeyWords[116] = saved;
}

TEST(SqlParser, CommentOpenAtTheEndLastsUntilReset)
{
    Probe<TSxCodeSqlParser> p;
    FeedOnce(p, u"/* a");
    Sql::Collect(p);
    FeedOnce(p, u"x\r\n");  // more input, read on without a reset
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{9}x{0}\r\n");
    FeedOnce(p, u"x\r\n");
    p.ResetBuffer();
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}x{0}\r\n");
}

TEST(SqlParser, TheTablesAreShared)
{
    TSxCodeSqlParser p(nullptr);
    DrawInfo[2].Style = TFontStyles{TFontStyle::fsBold};
    DrawInfo[2].BckColor = clYellow;
    FeedOnce(p, u"ON");
    const Painted keyword = Paint(p);
    EXPECT_TRUE(keyword.Back == clYellow && keyword.Style.Contains(TFontStyle::fsBold));
    Finalization();  // releases the keywords too
    EXPECT_TRUE(SxSqlKeyWords[0].empty());
    Initialization();  // start values again
    EXPECT_TRUE(DrawInfo[2].BckColor == clWindow && SxSqlKeyWords[0] == u"ADD");
}

TEST(SqlParser, PeekStringLeavesTheInputAsItWas)
{
    Probe<TSxCodeSqlParser> p;
    p.SetOnGetNewBuffer(PieceFeed{{u"ab", u"cd"}});
    EXPECT_EQ(p.PeekString(3), u"abc");
    EXPECT_EQ(Sql::Golden(Sql::Collect(p)), "{1}ab{1}c{1}d");
}

// The state goes on over line breaks and over new input until a reset.
TEST(XmlParser, AResetGoesBackToTheStartState)
{
    Probe<TSxCodeXMLParser> p;
    FeedOnce(p, u"<a b=\"x");  // stops inside a value
    Xml::Collect(p);
    FeedOnce(p, u"q");
    p.ResetBuffer();
    EXPECT_EQ(Xml::Golden(Xml::Collect(p)), "{9}q");
}

// The state is not kept per line: a run started at a line that opens with a
// tag gives the tokens of the full run, one started in content does not.
TEST(XmlParser, RestartAtATagGivesTheTokensOfTheFullRun)
{
    const std::vector<String> doc = {u"<?xml v=\"1\"?>", u"<r a=\"1", u"2\">text", u"<!-- c", u"<x> -->",
                                     u"<![CDATA[", u"<y>", u"]]><z/>", u"<w k='q'>tail", u"more</w>"};
    const std::vector<bool> startsWithTag = {true, true, false, true, false, true, false, false, true, false};
    const std::string all = Xml::Golden(Xml::ScanLines(doc));
    for (std::size_t i = 0; i < doc.size(); ++i) {
        if (!startsWithTag[i])
            continue;
        const std::string tail = Xml::Golden(Xml::ScanLines(doc, 0, nullptr, i));
        ASSERT_GE(all.size(), tail.size());
        EXPECT_EQ(all.substr(all.size() - tail.size()), tail) << "from line " << i;
    }
    EXPECT_EQ(Xml::Golden(Xml::ScanLines(doc, 0, nullptr, 9)).substr(0, 4), "{9}m");
}

}  // namespace
