// Painting judged on pixels: gutter, margin, token colours, line bands,
// selection, read-only darkening and the line state of a paint that starts
// in the middle of the text.
#include "codeedit/WordParser.h"
#include "codeedit/uSxCodeEdit.h"
#include "support/RenderHelpers.h"

#include <gtest/gtest.h>

#include <vector>

using namespace sx;
using namespace sx::test;

namespace {

class PaintTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        edit = host.Add<TSxCodeEdit>(400, 300);
        edit->SetParser(new WordParser(edit));
        Render(*edit);  // the first paint measures the font
        cw = edit->GetCharWidth();
        lh = edit->GetLineWidth();
        gw = edit->GuttorWidth();
    }

    /// The cell of a character on the screen, with the view at the top left.
    TRect Cell(int column, int line) const
    {
        const int x = gw + 2 + column * cw;
        return Rect(x, line * lh, x + cw, (line + 1) * lh);
    }

    /// Whether a cell shows the colour behind its glyph: a third of its
    /// pixels at least (the ink of a bold glyph covers much of the rest).
    bool CellIs(const QImage& image, int column, int line, TColor color) const
    {
        const TRect c = Cell(column, line);
        return CountPixels(image, c, Drawn(color)) * 3 > c.Width() * c.Height();
    }

    Host host;
    TSxCodeEdit* edit = nullptr;
    int cw = 0, lh = 0, gw = 0;
};

TEST_F(PaintTest, GutterShowsFaceWithTwoRulesAtItsRightEdge)
{
    const QImage image = Render(*edit);
    EXPECT_EQ(PixelAt(image, 0, 10), Drawn(clBtnFace));
    EXPECT_EQ(PixelAt(image, gw - 3, 10), Drawn(clBtnFace));
    EXPECT_EQ(PixelAt(image, gw - 2, 10), Drawn(clBtnHighlight));
    EXPECT_EQ(PixelAt(image, gw - 1, 10), Drawn(clBtnShadow));
    EXPECT_EQ(PixelAt(image, gw, 10), Drawn(clWindow));
}

TEST_F(PaintTest, WithoutGutterTheTextStartsAtTheLeftEdge)
{
    edit->SetShowGuttor(false);
    edit->Lines().SetText(u"ab");
    gw = 0;
    const QImage image = Render(*edit);
    EXPECT_EQ(PixelAt(image, 0, 10), Drawn(clWindow));
    EXPECT_TRUE(CellIs(image, 0, 0, clYellow));
}

TEST_F(PaintTest, RightMarginStandsAtItsColumnAndGoesWhenScrolledPast)
{
    edit->SetRightMargin(10);
    edit->SetRightMarginColor(clRed);
    QImage image = Render(*edit);
    const int x = gw + 10 * cw + 2;
    EXPECT_EQ(PixelAt(image, x, 5 * lh), Drawn(clRed));
    EXPECT_EQ(CountPixels(image, Rect(0, 0, x, 100), Drawn(clRed)), 0);

    edit->HScrollBar().SetPosition(10);  // M = 2: still inside the text area
    image = Render(*edit);
    EXPECT_EQ(PixelAt(image, gw + 2, 5 * lh), Drawn(clRed));

    edit->HScrollBar().SetPosition(11);
    image = Render(*edit);
    EXPECT_EQ(CountPixels(image, Rect(0, 0, 400, 300), Drawn(clRed)), 0);
}

TEST_F(PaintTest, TokensTakeTheColoursTheParserGives)
{
    edit->Lines().SetText(u"ab +{c");
    const QImage image = Render(*edit);
    EXPECT_TRUE(CellIs(image, 0, 0, clYellow));
    EXPECT_TRUE(CellIs(image, 1, 0, clYellow));
    EXPECT_TRUE(CellIs(image, 2, 0, clWindow));
    EXPECT_TRUE(CellIs(image, 3, 0, clAqua));
    EXPECT_TRUE(CellIs(image, 5, 0, clLime));
    EXPECT_TRUE(CellIs(image, 6, 0, clWindow));  // behind the line end stays the fill
}

TEST_F(PaintTest, DefaultParserPaintsWholeLinesInWindowColours)
{
    edit->SetParser(nullptr);
    edit->Lines().SetText(u"x+y");
    const QImage image = Render(*edit);
    EXPECT_TRUE(CellIs(image, 1, 0, clWindow));
    const TRect cell = Cell(1, 0);
    EXPECT_LT(CountPixels(image, cell, Drawn(clWindow)), cell.Width() * cell.Height());  // the + is drawn
}

TEST_F(PaintTest, LineChangeEventBandsItsLineFromTheFirstTokenToTheRightEdge)
{
    edit->Lines().SetText(u"one\r\ntwo\r\n\r\nfour");
    std::vector<std::pair<int, TColor>> calls;
    edit->SetOnParserLineChange([&](Integer line, TColor& back, TColor& font) {
        calls.emplace_back(line, back);
        if (line != 2 && line != 3)
            return false;
        back = clFuchsia;
        font = clWhite;
        return true;
    });
    const QImage image = Render(*edit);
    ASSERT_GE(calls.size(), 4u);
    EXPECT_EQ(calls[0], std::make_pair(1, clYellow));  // the first token's colours come in
    EXPECT_EQ(calls[2], std::make_pair(3, clWindow));  // an empty line is called too
    EXPECT_TRUE(CellIs(image, 0, 1, clFuchsia));
    EXPECT_TRUE(CellIs(image, 30, 1, clFuchsia));
    EXPECT_TRUE(CellIs(image, 0, 2, clFuchsia));
    EXPECT_TRUE(CellIs(image, 0, 0, clYellow));
    EXPECT_TRUE(CellIs(image, 30, 3, clWindow));
}

TEST_F(PaintTest, SelectionLooksTheSameInBothDirections)
{
    edit->Lines().SetText(u"abc\r\nde\r\nfgh");
    edit->SetSelStart(Point(1, 0));
    edit->SetSelEnd(Point(2, 2));
    const QImage forward = Render(*edit);
    edit->SetSelStart(Point(2, 2));
    edit->SetSelEnd(Point(1, 0));
    const QImage backward = Render(*edit);
    EXPECT_EQ(forward, backward);

    EXPECT_TRUE(CellIs(forward, 0, 0, clYellow));
    EXPECT_TRUE(CellIs(forward, 1, 0, clHighlight));
    EXPECT_TRUE(CellIs(forward, 2, 0, clHighlight));
    EXPECT_TRUE(CellIs(forward, 3, 0, clWindow));  // no highlight behind a line end
    EXPECT_TRUE(CellIs(forward, 0, 1, clHighlight));
    EXPECT_TRUE(CellIs(forward, 1, 2, clHighlight));
    EXPECT_TRUE(CellIs(forward, 2, 2, clYellow));
}

TEST_F(PaintTest, EmptySelectionInsideATokenShowsNothing)
{
    edit->Lines().SetText(u"abcd");
    const QImage plain = Render(*edit);
    edit->SetSelStart(Point(2, 0));
    edit->SetSelEnd(Point(2, 0));
    EXPECT_EQ(Render(*edit), plain);
}

TEST_F(PaintTest, ReadOnlyDarkensFillAndTokenBackgroundsButNotTheSelection)
{
    edit->Lines().SetText(u"ab cd");
    edit->SetSelStart(Point(3, 0));
    edit->SetSelEnd(Point(5, 0));
    edit->SetReadOnly(true);
    const QImage image = Render(*edit);
    TColor darkWindow = clWindow, darkYellow = clYellow;
    uSxCodeEdit::DarkenColor(darkWindow, true, 10);
    uSxCodeEdit::DarkenColor(darkYellow, true, 10);
    EXPECT_EQ(darkYellow, RGB(229, 229, 0));
    EXPECT_EQ(PixelAt(image, 300, 200), darkWindow);
    EXPECT_TRUE(CellIs(image, 0, 0, darkYellow));
    EXPECT_TRUE(CellIs(image, 3, 0, clHighlight));
}

TEST_F(PaintTest, PaintThatStartsInsideACommentTakesTheStoredLineKind)
{
    String text = u"{ one\r\ntwo\r\nthree }\r\nfour";
    for (int i = 0; i < 40; ++i)
        text += u"\r\nline";
    edit->Lines().SetText(text);
    Render(*edit);  // a paint from the top stores the state of each line
    EXPECT_EQ(edit->Lines().Objects(1), 1);
    EXPECT_EQ(edit->Lines().Objects(3), 0);

    edit->VScrollBar().SetPosition(1);
    const QImage image = Render(*edit);
    EXPECT_TRUE(CellIs(image, 0, 0, clLime));  // "two" is inside the comment
    EXPECT_TRUE(CellIs(image, 0, 2, clYellow));  // "four" is not
}

TEST_F(PaintTest, JumpToUnpaintedTextKnowsNoCommentFromAbove)
{
    String text = u"{";
    for (int i = 0; i < 100; ++i)
        text += u"\r\nx";
    edit->Lines().SetText(text);
    edit->VScrollBar().SetPosition(90);
    const QImage image = Render(*edit);
    EXPECT_TRUE(CellIs(image, 0, 0, clYellow));
}

TEST_F(PaintTest, TextEndingAboveTheBottomLeavesTheRestBlank)
{
    edit->SetParser(nullptr);
    edit->Lines().SetText(u"ab\r\n");
    std::vector<int> lines;
    edit->SetOnParserLineChange([&](Integer line, TColor&, TColor&) {
        lines.push_back(line);
        return false;
    });
    const QImage image = Render(*edit);
    EXPECT_EQ(lines, std::vector<int>{1});
    EXPECT_EQ(edit->ParserLineNr(), 1);
    EXPECT_EQ(CountPixels(image, Rect(gw, lh, 350, 250), Drawn(clWindow)), (350 - gw) * (250 - lh));
}

TEST_F(PaintTest, ViewPastTheEndPaintsNoLineAndCallsNoHandler)
{
    edit->Lines().SetText(u"ab");
    int calls = 0;
    edit->SetOnParserLineChange([&](Integer, TColor&, TColor&) { return ++calls, false; });
    edit->VScrollBar().SetPosition(50);
    const QImage image = Render(*edit);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(CellIs(image, 0, 0, clWindow));
}

TEST_F(PaintTest, FrameIsDrawnOnlyWithout3DLookAndTheCornerBetweenTheBarsIsFace)
{
    QImage image = Render(*edit);
    EXPECT_NE(PixelAt(image, 30, 0), Drawn(clBlack));
    EXPECT_EQ(PixelAt(image, 399, 299), Drawn(clBtnFace));
    edit->SetCtl3D(false);
    image = Render(*edit);
    EXPECT_EQ(PixelAt(image, 30, 0), Drawn(clBlack));
    EXPECT_EQ(PixelAt(image, 0, 30), Drawn(clBlack));
}

TEST_F(PaintTest, PaintingDoesNotMarkTheTextModified)
{
    edit->Lines().SetText(u"a\r\nb");
    edit->SetModified(false);
    Render(*edit);
    EXPECT_FALSE(edit->Modified());
}

}  // namespace
