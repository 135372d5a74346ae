// Colour themes: the bundled themes are readable, a theme survives its file,
// a faulty file names its line and changes nothing, Classic restores the
// start values, and the control's colours show in its paint.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxCodeEditTheme.h"
#include "codeedit/uSxCodePascalParser.h"
#include "support/TempFolder.h"

#include <cmath>
#include <functional>

using namespace sx;
using namespace sx::test;

namespace {

constexpr TSxThemeLanguage Languages[] = {TSxThemeLanguage::tlPascal, TSxThemeLanguage::tlVB,
                                          TSxThemeLanguage::tlJS, TSxThemeLanguage::tlXml,
                                          TSxThemeLanguage::tlSql};

/// WCAG 2 relative luminance of a plain colour.
double Luminance(TColor c)
{
    const auto channel = [](Byte b) {
        const double v = b / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(GetRValue(c)) + 0.7152 * channel(GetGValue(c)) + 0.0722 * channel(GetBValue(c));
}

double Contrast(TColor a, TColor b)
{
    const double la = Luminance(a), lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

class Theme : public EditorTest {
protected:
    void TearDown() override { ApplyTheme(TSxCodeEditTheme::Classic()); }
};

TEST(ThemeColors, LightAndDarkAreReadableOnOneGround)
{
    for (const TSxCodeEditTheme& theme : {TSxCodeEditTheme::Light(), TSxCodeEditTheme::Dark()}) {
        const TSxCodeEditColors& e = theme.Editor;
        EXPECT_GE(Contrast(e.LineNumberColor, e.GutterColor), 4.5) << StrToUtf8(theme.Name);
        EXPECT_GE(Contrast(e.SelectionTextColor, e.SelectionColor), 4.5) << StrToUtf8(theme.Name);
        for (const TSxThemeLanguage language : Languages)
            for (const TSxThemeRow& row : theme.Rows(language)) {
                const std::string where = StrToUtf8(theme.Name + u" " + row.Name);
                EXPECT_EQ(row.BckColor, e.Color) << where;  // no token on a ground of its own
                EXPECT_GE(Contrast(row.TextColor, row.BckColor), 4.5) << where;
                EXPECT_GE(Contrast(row.TextColor, e.CurrentLineColor), 4.5) << where;
            }
    }
}

TEST(ThemeColors, SaveAndLoadGiveTheSameTheme)
{
    const TempFolder folder;
    const String file = StrFromUtf8(folder.Path("theme.ini").string());
    for (const TSxCodeEditTheme& theme :
         {TSxCodeEditTheme::Classic(), TSxCodeEditTheme::Light(), TSxCodeEditTheme::Dark()}) {
        theme.SaveToFile(file);
        TSxCodeEditTheme read = TSxCodeEditTheme::Light();
        read.Editor = TSxCodeEditColors{.Color = clRed};
        read.LoadFromFile(file);
        EXPECT_EQ(read, theme) << StrToUtf8(theme.SaveToText());
    }
}

TEST(ThemeColors, AFaultNamesItsLineAndChangesNothing)
{
    const struct {
        const char16_t* Text;
        const char* Message;
    } cases[] = {
        {u"[Editor]\nColor = #000000\nGutterColor = blu", "line 3: unknown colour 'blu'"},
        {u"[Pascal]\nComment = #000000 #12345G", "line 2: unknown colour '#12345G'"},
        {u"; a theme\n\n[Pascal]\nComment = #000000", "line 4: expected a text colour and a background colour, got '#000000'"},
        {u"[SQL]\nComment = #000000 #FFFFFF bold, bld", "line 2: unknown style 'bld'"},
        {u"[Theme]\nName = x\n[Colours]", "line 3: unknown section 'Colours'"},
        {u"[VB]\nSymbol 3 = #000000 #FFFFFF", "line 2: unknown key 'Symbol 3'"},
        {u"Color = #FFFFFF", "line 1: key 'Color' outside a section"},
        {u"[Editor]\nColor #FFFFFF", "line 2: expected [section] or key = value"},
    };
    for (const auto& c : cases) {
        TSxCodeEditTheme theme = TSxCodeEditTheme::Dark();
        try {
            theme.LoadFromText(c.Text);
            ADD_FAILURE() << "no fault in " << c.Message;
        } catch (const ESxTheme& e) {
            EXPECT_EQ(StrToUtf8(e.Message()), c.Message);
        }
        EXPECT_EQ(theme, TSxCodeEditTheme::Dark()) << c.Message;
    }
}

TEST_F(Theme, ClassicAfterDarkRestoresTheStartValues)
{
    const TSxCodeEditTheme dark = TSxCodeEditTheme::Dark();
    ApplyTheme(dark);
    dark.ApplyTo(*edit);
    EXPECT_EQ(uSxCodePascalParser::DrawInfo[7].BckColor, dark.Editor.Color);
    EXPECT_EQ(TSxCodeEditTheme::Current(edit).Editor, dark.Editor);

    const TSxCodeEditTheme classic = TSxCodeEditTheme::Classic();
    ApplyTheme(classic);
    classic.ApplyTo(*edit);
    TSxCodeEditTheme current = TSxCodeEditTheme::Current(edit);
    current.Name = classic.Name;
    // A theme sets colours and styles; the names are the tables' own, which a
    // package stop earlier in the process may have released.
    for (const TSxThemeLanguage language : Languages)
        for (std::size_t i = 0; i < classic.Rows(language).size(); ++i)
            current.Rows(language)[i].Name = classic.Rows(language)[i].Name;
    EXPECT_EQ(current, classic);
    EXPECT_EQ(edit->Colors(), ClassicEditColors);
    EXPECT_EQ(uSxCodePascalParser::DrawInfo[7].BckColor, clRed);  // the Symbol row's start value
}

TEST_F(Theme, AChangedControlColourShows)
{
    Start(u"abc");
    const TColor probe = RGB(0x12, 0x34, 0x56);
    // Column: the cell of the first line looked at, -1 for the gutter. A ground
    // shows in the probe colour itself; glyphs are smoothed, so ink only changes the area.
    const struct { const char* Name; std::function<void()> Set; Integer Column; bool Ground; } cases[] = {
        {"Color", [&] { edit->SetColor(probe); }, 10, true},
        {"GutterColor", [&] { edit->SetGutterColor(probe); }, -1, true},
        {"SelectionColor", [&] { edit->SetSelectionColor(probe); }, 1, true},
        {"SelectionTextColor", [&] { edit->SetSelectionTextColor(probe); }, 1, false},
        {"CaretColor", [&] { edit->SetCaretColor(probe); }, 2, true},
    };
    for (const auto& c : cases) {
        edit->SetColors(ClassicEditColors);
        Select(Point(0, 0), Point(2, 0));
        const TRect area = c.Column < 0 ? Rect(0, 0, 10, 10) : CellRect(*edit, c.Column, 0);
        const QRect rect(area.Left, area.Top, area.Width(), area.Height());
        const QImage before = Render(*edit);
        c.Set();
        const QImage after = Render(*edit);
        EXPECT_NE(before.copy(rect), after.copy(rect)) << c.Name;
        EXPECT_EQ(CountPixels(before, area, probe), 0) << c.Name;
        EXPECT_TRUE(!c.Ground || CountPixels(after, area, probe) > 0) << c.Name;
    }
}

}  // namespace
