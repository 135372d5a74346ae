// The Pascal tokenizer: token streams, comments across lines and restarting a
// scan at any line from the line kind stored there.
#include "codeedit/uSxCodePascalParser.h"
#include "parsers/ParserTestSupport.h"
#include "support/TempRegistryFile.h"

namespace {

using namespace sx;
using namespace sx::uSxCodePascalParser;

struct PascalParser : testing::Test, sx::test::Scanner<TSxCodePascalParser, ptEndOfFile, ptLineBreak> {};

// A second period ends the number at once: what stands before it stays an
// integer number, coloured as "Number".
TEST_F(PascalParser, SecondPeriodLeavesAnIntegerNumber)
{
    EXPECT_EQ(Scan(u"1.2.3"), (Tokens{{ptNumber, u"1.2"}, {ptPeriod, u"."}, {ptNumber, u"3"}}));
    EXPECT_EQ(Scan(u"5.5.."), (Tokens{{ptNumber, u"5.5"}, {ptRange, u".."}}));
    TSxCodePascalParser p(nullptr);
    sx::test::FeedOnce(p, u"1.2.3");
    const sx::test::Painted number = sx::test::Paint(p);
    EXPECT_TRUE(number.Text == u"1.2" && number.Back == DrawInfo[6].BckColor && number.Fore == DrawInfo[6].TextColor);
}

TEST_F(PascalParser, CommentAcrossLinesGivesOnePieceAndOneBreakPerLineAndIsStoredInTheLineKind)
{
    std::vector<Integer> kinds;
    EXPECT_EQ(DumpLines({u"(* a", u"", u"b *) x", u"{", u"}"}, 0, &kinds),
              "{40}(* a{1}\r{40}{1}\r{40}b *){6} {35}x{1}\r{40}{{1}\r{40}}{1}\r");
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 1, 1, 0, 2}));
    // a line comment needs no state; the opening characters are not reused to close
    ScanLines({u"a // b (* c", u"(*)", u"x"}, 0, &kinds);
    EXPECT_EQ(kinds, (std::vector<Integer>{0, 0, 1}));
    // without EndLines a line comment holds its CR, and the LF is dropped
    EXPECT_EQ(Dump(u"// x\r\ny", false), "{40}// x\r{35}y");
    // a string ends with its line
    EXPECT_EQ(DumpLines({u"'open (*", u"b"}), "{36}'open (*{1}\r{35}b{1}\r");
    // a stored line kind turns into the open comment
    EXPECT_EQ(DumpLines({u"x := 'a'; } y"}, 2), "{40}x := 'a'; }{6} {35}y{1}\r");
    // an empty line inside the comment gets its empty piece, as in a scan from above
    EXPECT_EQ(DumpLines({u"", u"*) x"}, 1), "{40}{1}\r{40}*){6} {35}x{1}\r");
    EXPECT_EQ(DumpLines({u"a }", u"b"}, 3), "{40}a }{1}\r{35}b{1}\r");
}

// A paint starts at any line with the kind a full pass left there; it must see
// the tokens the full pass saw from that line on.
TEST_F(PascalParser, RestartAtAnyLineGivesTheTokensOfTheFullPass)
{
    ExpectRestartGivesTheFullPass({u"(*", u"*)", u"{", u"}", u"//", u"'", u"''", u" ", u"\t", u"a", u"Begin",
                                   u"1", u".", u"..", u"$f", u"#", u"*", u")", u"(", u"\u00E9", u":=", u"<"});
}

TEST_F(PascalParser, EveryCommentClearsTheSoapFieldsAndTheUnitRegistersTheShortName)
{
    TSxCodePascalParser p(nullptr);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    sx::test::FeedOnce(p, u"{}");
    sx::test::Paint(p);
    EXPECT_TRUE(p.SoapCommentLineStart() == -1 && p.SoapComment().empty());

    const auto saved = DrawInfo;
    const sx::test::ScopedEnv noRegistry("SX_REGISTRY_FILE", "/nonexistent/registry.reg");
    p.SetDelphiVersion(7);
    EXPECT_EQ(DrawInfo[3].BckColor, saved[3].BckColor);
    EXPECT_EQ(DrawInfo[3].Name, u"Comment");

    Initialization();  // the unit registers the short class name only
    EXPECT_NE(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
}

}  // namespace
