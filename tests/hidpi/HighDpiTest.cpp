// Drawing on screens of higher density. CTest runs this program with
// QT_SCALE_FACTOR 2 and 1.5: the control then draws its bitmaps in device
// pixels, so rules are whole device pixels where they stand at ratio 1 and
// glyphs have the screen's resolution, while columns, lines and the font's
// metrics keep their meaning in pixels.
#include "codeedit/uSxCodeEdit.h"
#include "platform/Caret.h"
#include "support/Keyboard.h"
#include "support/RenderHelpers.h"

#include <QPixmap>

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace sx;
using namespace sx::test;

namespace {

/// The device columns a pixel column covers at a ratio: those whose centres
/// lie inside it, a centre on its left edge going to the column before, as
/// the painter fills without antialiasing.
std::pair<int, int> DeviceSpan(int x, double ratio)
{
    return {int(std::floor(x * ratio + 0.5)), int(std::floor((x + 1) * ratio + 0.5))};
}

class HighDpi : public ::testing::Test {
protected:
    void SetUp() override
    {
        edit = host.Add<TSxCodeEdit>(400, 300);
        ratio = edit->Widget()->devicePixelRatioF();
        ASSERT_GT(ratio, 1.0) << "run with QT_SCALE_FACTOR set above 1";
        Grab();  // the first paint measures the font
        cw = edit->GetCharWidth();
        lh = edit->GetLineWidth();
        gw = edit->GuttorWidth();
    }

    /// The control as the screen shows it, in device pixels.
    QImage Grab() { return edit->Widget()->grab().toImage(); }

    /// Expects the rule of a colour to cover exactly the device columns of
    /// pixel column X on device row Y.
    void ExpectRule(const QImage& image, int x, int y, TColor colour)
    {
        const auto [first, end] = DeviceSpan(x, ratio);
        ASSERT_LT(first, end);
        for (int d = first; d < end; ++d)
            EXPECT_EQ(PixelAt(image, d, y), Drawn(colour)) << "device column " << d;
        EXPECT_NE(PixelAt(image, first - 1, y), Drawn(colour));
        EXPECT_NE(PixelAt(image, end, y), Drawn(colour));
    }

    Host host;
    TSxCodeEdit* edit = nullptr;
    double ratio = 1.0;
    int cw = 0, lh = 0, gw = 0;
};

// Sizes that the ratio makes fractional round up; fills are whole device
// pixels, as the rules of the control show below.
TEST(HighDpiBitmap, HoldsItsPixelsTimesTheRatio)
{
    for (const double ratio : {2.0, 1.5}) {
        TBitmap bitmap;
        bitmap.SetDevicePixelRatio(ratio);
        bitmap.SetSize(11, 5);
        EXPECT_EQ(Point(bitmap.Width(), bitmap.Height()), Point(11, 5));
        EXPECT_EQ(bitmap.Image().size(), QSize(int(std::ceil(11 * ratio)), int(std::ceil(5 * ratio))));
        EXPECT_EQ(bitmap.Image().devicePixelRatio(), ratio);
    }
}

TEST_F(HighDpi, PixelsKeepTheirMeaningAndTheImageHasTheDevicesSize)
{
    const QImage image = Grab();
    EXPECT_EQ(image.size(), QSize(int(std::lround(400 * ratio)), int(std::lround(300 * ratio))));

    // The font measures as it does on a bitmap of ratio 1.
    TBitmap plain;
    plain.SetSize(10, 10);
    plain.Canvas().Font().Assign(edit->Font());
    EXPECT_EQ(cw, plain.Canvas().TextWidth(u"X"));
    EXPECT_EQ(lh, plain.Canvas().TextHeight(u"XygpPQIiJ"));

    edit->SetText(u"abc\r\ndefgh");
    Focus(*edit);
    edit->SetLinePos(1);
    edit->SetCharPos(3);
    const TCaretInfo caret = GetCaretInfo();
    EXPECT_EQ(caret.Pos, Point(gw + 2 + 3 * cw, lh));
    EXPECT_EQ(caret.Height, lh);
}

TEST_F(HighDpi, RulesAreWholeDevicePixelsWhereTheyStandAtRatioOne)
{
    edit->SetRightMargin(10);
    edit->SetRightMarginColor(clRed);
    const QImage image = Grab();
    const int y = int(100 * ratio);
    ExpectRule(image, gw - 2, y, clBtnHighlight);
    ExpectRule(image, gw - 1, y, clBtnShadow);
    const int margin = gw + 10 * cw + 2;
    ExpectRule(image, margin, y, clRed);
    // Nothing blends the rule into the white beside it.
    std::set<TColor> around;
    for (int d = int((margin - 4) * ratio); d < int((margin + 5) * ratio); ++d)
        around.insert(PixelAt(image, d, y));
    EXPECT_EQ(around, (std::set<TColor>{Drawn(clRed), Drawn(clWindow)}));
}

TEST_F(HighDpi, GlyphsHaveTheDevicesResolution)
{
    edit->SetText(u"MWMWMW  iiliil  @@%%##");
    const QImage image = Grab();
    // A picture drawn at ratio 1 and scaled up gives equal neighbours in
    // every pair of device columns that come from one pixel column; glyphs
    // drawn at the device's resolution differ there along their edges.
    const TRect text = Rect(gw + 2, 0, gw + 2 + 22 * cw, lh);
    int ink = 0, finer = 0, solid = 0;
    for (int y = int(text.Top * ratio); y < int(text.Bottom * ratio); ++y) {
        for (int d = int(text.Left * ratio); d + 1 < int(text.Right * ratio); ++d) {
            const TColor here = PixelAt(image, d, y);
            ink += here != Drawn(clWindow) ? 1 : 0;
            solid += here == Drawn(clWindowText) ? 1 : 0;
            const bool onePixelColumn = std::floor((d + 0.5) / ratio) == std::floor((d + 1.5) / ratio);
            finer += onePixelColumn && here != PixelAt(image, d + 1, y) ? 1 : 0;
        }
    }
    EXPECT_GT(ink, 100);
    EXPECT_GT(solid, 0);  // stems are dark through, not smeared grey
    EXPECT_GT(finer, ink / 20);
}

}  // namespace
