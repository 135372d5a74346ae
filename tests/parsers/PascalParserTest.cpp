// What only the Pascal tokenizer does: numbers that a second period ends,
// the SOAP comment fields and the unit's class name, only the short one.
#include "codeedit/uSxCodePascalParser.h"
#include "parsers/ParserTestSupport.h"

namespace {

using namespace sx;
using namespace sx::uSxCodePascalParser;

using Pascal = sx::test::Scanner<TSxCodePascalParser, ptEndOfFile, ptLineBreak>;

// A second period ends the number at once: what stands before it stays an
// integer number, coloured as "Number".
TEST(PascalParser, SecondPeriodLeavesAnIntegerNumber)
{
    EXPECT_EQ(Pascal::Scan(u"1.2.3"), (Pascal::Tokens{{ptNumber, u"1.2"}, {ptPeriod, u"."}, {ptNumber, u"3"}}));
    EXPECT_EQ(Pascal::Scan(u"5.5.."), (Pascal::Tokens{{ptNumber, u"5.5"}, {ptRange, u".."}}));
    TSxCodePascalParser p(nullptr);
    sx::test::FeedOnce(p, u"1.2.3");
    const sx::test::Painted number = sx::test::Paint(p);
    EXPECT_TRUE(number.Text == u"1.2" && number.Back == DrawInfo[6].BckColor && number.Fore == DrawInfo[6].TextColor);
}

TEST(PascalParser, EveryCommentClearsTheSoapFieldsAndTheUnitRegistersTheShortName)
{
    TSxCodePascalParser p(nullptr);
    p.SetSoapCommentLineStart(3);
    p.SetSoapComment(u"x");
    sx::test::FeedOnce(p, u"{}");
    sx::test::Paint(p);
    EXPECT_TRUE(p.SoapCommentLineStart() == -1 && p.SoapComment().empty());
    Initialization();  // the unit registers the short class name only
    EXPECT_EQ(GetClass(u"TSxCodePascalParser"), nullptr);
}

}  // namespace
