// The highlight colours of an installed Delphi IDE: reading one element from
// a registry file, and the Pascal colour table taking them over.
#include "codeedit/uSxCodePascalParser.h"
#include "parsers/ParserTestSupport.h"
#include "platform/Registry.h"

#ifndef _WIN32

#include "support/TempRegistryFile.h"

#include <string>

namespace {

using namespace sx;
using namespace sx::uSxCodePascalParser;
using sx::test::TempRegistryFile;

const std::string Delphi7 = R"(Windows Registry Editor Version 5.00
[HKEY_CURRENT_USER\Software\Borland\Delphi\7.0]
"App"="C:\\Borland\\Delphi7\\Bin\\delphi32.exe"
[HKEY_CURRENT_USER\Software\Borland\Delphi\8.0]
"App"=""
)";

/// Delphi 7 installed, with one highlight element, "Comment", of these values.
std::string WithComment(const std::string& AValues)
{
    return Delphi7 + "[HKEY_CURRENT_USER\\Software\\Borland\\Delphi\\7.0\\Editor\\Highlight\\Comment]\n" + AValues;
}

struct Element {
    TColor BackGround = clRed;
    TColor TextColor = clRed;
    TFontStyles Style{TFontStyle::fsBold, TFontStyle::fsStrikeOut};
};

/// The element ASection read from Delphi 7 with "Comment" of these values;
/// AOldIndexes puts the two old palette indexes (0), which an IDE always
/// writes, in front of them.
Element ReadElement(const std::string& AValues, const String& ASection = u"Comment", bool AOldIndexes = true)
{
    const std::string old = "\"Background Color\"=dword:00000000\n\"Foreground Color\"=dword:00000000\n";
    TempRegistryFile file(WithComment((AOldIndexes ? old : "") + AValues));
    Element e;
    GetPaintInfoFromDelphi(7, ASection, e.BackGround, e.TextColor, e.Style);
    return e;
}

/// DrawInfo is shared by the whole process: every test gets it back as it was.
class DelphiColors : public ::testing::Test {
protected:
    void TearDown() override { DrawInfo = FSaved; }
    decltype(DrawInfo) FSaved = DrawInfo;
};

// Without a registry no version is known; with one, a version with an empty
// App is not known either.
TEST_F(DelphiColors, UnknownVersionLeavesTheTableAlone)
{
    {
        const sx::test::ScopedEnv noRegistry("SX_REGISTRY_FILE", "/nonexistent/registry.reg");
        TSxCodePascalParser(nullptr).SetDelphiVersion(7);
    }
    TempRegistryFile file(Delphi7);
    EXPECT_TRUE(DelphiKnown(7));
    EXPECT_FALSE(DelphiKnown(8));
    TSxCodePascalParser(nullptr).SetDelphiVersion(6);
    for (std::size_t row = 0; row < DrawInfo.size(); ++row) {
        const TSxPascalInfo &now = DrawInfo[row], &before = FSaved[row];
        EXPECT_TRUE(now.Name == before.Name && now.BckColor == before.BckColor && now.TextColor == before.TextColor &&
                    now.Style == before.Style) << row;
    }
}

TEST_F(DelphiColors, FlagsAreIntegersOrTheWordTrue)
{
    const std::pair<std::string, bool> cases[] = {
        {R"("Bold"=dword:00000001)", true}, {R"("Bold"="tRuE")", true}, {R"("Bold"="1")", true},
        {R"("Bold"="yes")", false},         {R"("Bold"="")", false},    {"", false},
    };
    for (const auto& [values, bold] : cases) {
        const Element e = ReadElement(values);
        EXPECT_EQ(e.Style.Contains(TFontStyle::fsBold), bold) << values;
        EXPECT_TRUE(e.Style.Contains(TFontStyle::fsStrikeOut)) << values;
    }
    EXPECT_EQ(ReadElement("\"Italic\"=\"True\"\n\"Underline\"=dword:00000002").Style,
              (TFontStyles{TFontStyle::fsItalic, TFontStyle::fsUnderline, TFontStyle::fsStrikeOut}));
}

TEST_F(DelphiColors, ColoursAreIdentifiersOrPaletteIndexes)
{
    const std::pair<std::string, TColor> cases[] = {
        {R"("Background Color New"="clMoneyGreen")", clMoneyGreen}, {R"("Background Color New"="7")", 0x808080},
        {R"("Background Color New"=dword:00000009)", 0x0000FF}, {R"("Background Color New"="16")", clWindow},
        {R"("Background Color New"="banana")", clWindow},
        // without the new value the older palette index is taken
        {"\"Background Color\"=dword:0000000c", 0xFF0000},
        {"\"Background Color New\"=\"\"\n\"Background Color\"=dword:00000000", 0x000000},
        {"\"Background Color\"=dword:00000010", clWindow},
        {"\"Background Color New\"=\"clTeal\"\n\"Background Color\"=dword:00000001", clTeal},
    };
    for (const auto& [values, colour] : cases)
        EXPECT_EQ(ReadElement(values).BackGround, colour) << values;
    const Element byDefault = ReadElement("\"Default ForeGround\"=\"True\"\n\"Foreground Color New\"=\"clRed\"\n"
                                          "\"Default Background\"=dword:00000001\n\"Background Color New\"=\"clRed\"");
    EXPECT_TRUE(byDefault.TextColor == clWindowText && byDefault.BackGround == clWindow);
}

TEST_F(DelphiColors, MissingElementGivesTheSystemColours)
{
    const Element e = ReadElement("", u"No such element");
    EXPECT_TRUE(e.BackGround == clWindow && e.TextColor == clWindowText);
    EXPECT_EQ(e.Style, TFontStyles{TFontStyle::fsStrikeOut});
    // an element with no colour at all has no old palette index either: the
    // registry reader reports the missing integer
    EXPECT_THROW(ReadElement(R"("Bold"="True")", u"Comment", false), ERegistryException);
}

TEST_F(DelphiColors, VersionRecoloursEveryPascalParser)
{
    TempRegistryFile file(WithComment("\"Bold\"=\"True\"\n\"Background Color New\"=\"clBlack\"\n"
                                      "\"Foreground Color New\"=\"clLime\""));
    DrawInfo[5].Name.clear();  // a row without a name is left alone
    TSxCodePascalParser first(nullptr), second(nullptr);
    first.SetDelphiVersion(7);
    sx::test::FeedOnce(second, u"{x}");
    const sx::test::Painted comment = sx::test::Paint(second);
    EXPECT_TRUE(comment.Back == clBlack && comment.Fore == clLime && comment.Style == TFontStyles{TFontStyle::fsBold});
    // elements the IDE does not list fall back on the system colours
    EXPECT_TRUE(DrawInfo[7].BckColor == clWindow && DrawInfo[7].TextColor == clWindowText);
    EXPECT_TRUE(DrawInfo[5].BckColor == FSaved[5].BckColor && DrawInfo[5].Style == FSaved[5].Style);
}

}  // namespace

#endif
