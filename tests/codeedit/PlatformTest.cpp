// The Qt side of the framework layer: canvas geometry, the scroll bar's
// classic semantics, posted messages and the caret.
#include "platform/Caret.h"
#include "platform/ScrollBar.h"
#include "support/RenderHelpers.h"

#include <QAbstractSlider>
#include <QImage>

#include <gtest/gtest.h>

using namespace sx;
using namespace sx::test;

namespace {

QImage Picture(TBitmap& bitmap) { return bitmap.Image(); }

void FillWhite(TBitmap& b, int w, int h)
{
    b.SetSize(w, h);
    b.Canvas().Brush().Color = clWhite;
    b.Canvas().FillRect(Rect(0, 0, w, h));
}

TEST(Canvas, RectanglesAndLinesExcludeTheirRightAndBottomEdges)
{
    TBitmap b;
    b.SetSize(20, 20);
    TCanvas& c = b.Canvas();
    c.Brush().Color = clWhite;
    c.FillRect(Rect(0, 0, 20, 20));
    c.Pen().Color = clRed;
    c.Brush().Color = clBlue;
    c.Rectangle(2, 2, 6, 6);
    c.MoveTo(10, 0);
    c.LineTo(10, 5);
    c.Brush().Color = clGreen;
    c.FrameRect(Rect(12, 12, 15, 15));
    const QImage img = Picture(b);
    EXPECT_EQ(PixelAt(img, 2, 2), clRed);
    EXPECT_EQ(PixelAt(img, 5, 5), clRed);
    EXPECT_EQ(PixelAt(img, 6, 6), clWhite);
    EXPECT_EQ(PixelAt(img, 3, 3), clBlue);
    EXPECT_EQ(PixelAt(img, 10, 4), clRed);
    EXPECT_EQ(PixelAt(img, 10, 5), clWhite);
    EXPECT_EQ(PixelAt(img, 14, 14), clGreen);
    EXPECT_EQ(PixelAt(img, 13, 13), clWhite);
    EXPECT_EQ(PixelAt(img, 15, 15), clWhite);
}

TEST(Canvas, TextIsOpaqueOverItsWholeCellAndAdvancesThePen)
{
    TBitmap b;
    b.SetSize(100, 30);
    TCanvas& c = b.Canvas();
    c.Brush().Color = clWhite;
    c.FillRect(Rect(0, 0, 100, 30));
    c.Font().SetName(u"Courier New");
    c.Font().SetSize(10);
    c.Brush().Color = clYellow;
    c.Font().SetColor(clBlack);
    c.TextOut(5, 3, u"ab");
    const int w = c.TextWidth(u"ab"), h = c.TextHeight(u"ab");
    EXPECT_EQ(c.PenPos().X, 5 + w);
    EXPECT_EQ(c.TextWidth(u"abcd"), 2 * w);  // a fixed-pitch face
    const QImage img = Picture(b);
    EXPECT_EQ(PixelAt(img, 5, 3), clYellow);
    EXPECT_EQ(PixelAt(img, 5 + w - 1, 3 + h - 1), clYellow);
    EXPECT_EQ(PixelAt(img, 5 + w, 3), clWhite);
    EXPECT_GT(CountPixels(img, Rect(5, 3, 5 + w, 3 + h), clBlack), 0);
}

TEST(Canvas, DrawingKeepsInsideTheClipRectangle)
{
    TBitmap target, source;
    FillWhite(target, 10, 10);
    FillWhite(source, 10, 10);
    source.Canvas().Brush().Color = clRed;
    source.Canvas().FillRect(Rect(0, 0, 10, 10));
    target.Canvas().SetClipRect(Rect(0, 0, 5, 5));
    target.Canvas().Draw(0, 0, source);
    target.Canvas().ResetClip();
    const QImage img = Picture(target);
    EXPECT_EQ(PixelAt(img, 4, 4), clRed);
    EXPECT_EQ(PixelAt(img, 5, 5), clWhite);
}

TEST(ScrollBar, PositionIsClampedAndEveryChangeIsReported)
{
    TScrollBar bar(nullptr);
    int changes = 0;
    bar.OnChange = [&](TObject*) { ++changes; };
    bar.SetMax(50);
    bar.SetPosition(70);
    EXPECT_EQ(bar.Position(), 50);
    bar.SetPosition(-3);
    EXPECT_EQ(bar.Position(), 0);
    bar.SetPosition(0);
    EXPECT_EQ(changes, 2);
    bar.SetPosition(40);
    bar.SetMax(30);  // shrinking the range pulls the position in
    EXPECT_EQ(bar.Position(), 30);
    EXPECT_EQ(changes, 4);
    EXPECT_THROW(bar.SetParams(0, 10, 5), EInvalidOperation);
}

TEST(ScrollBar, PageLargerThanTheRangeIsIgnoredAndKindTurnsTheBar)
{
    TScrollBar bar(nullptr);
    bar.SetPageSize(200);
    EXPECT_EQ(bar.PageSize(), 0);
    bar.SetPageSize(-2);
    EXPECT_EQ(bar.PageSize(), -2);
    const int w = bar.Width(), h = bar.Height();
    bar.SetKind(TScrollBarKind::sbVertical);
    EXPECT_EQ(bar.Width(), h);
    EXPECT_EQ(bar.Height(), w);
}

TEST(ScrollBar, UserMovingTheQtBarChangesThePosition)
{
    TScrollBar bar(nullptr);
    int changes = 0;
    bar.OnChange = [&](TObject*) { ++changes; };
    auto* qbar = static_cast<QAbstractSlider*>(bar.Widget());
    qbar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(bar.Position(), 1);
    EXPECT_EQ(changes, 1);
}

/// A control that records the messages it is given.
class Recorder : public TCustomControl {
public:
    using TCustomControl::TCustomControl;
    void Dispatch(TMessage& m) override
    {
        received.push_back(m.Msg);
        m.Result = 7;
    }
    std::vector<Cardinal> received;
};

TEST(Messages, MessagesPostedToAFreedControlAreDropped)
{
    auto* r = new Recorder(nullptr);
    PostMessage(r, 0x501);
    delete r;
    ProcessPostedMessages();  // must not reach the freed control
    SUCCEED();
}

TEST(Caret, OneCaretPerThreadThatTestsCanAskAbout)
{
    Host host;
    auto* a = host.Add<Recorder>(50, 50);
    auto* b = host.Add<Recorder>(50, 50);
    EXPECT_TRUE(CreateCaret(a, nullptr, 2, 12));
    SetCaretPos(5, 6);
    ShowCaret(a);
    TCaretInfo info = GetCaretInfo();
    EXPECT_EQ(info.Window, a);
    EXPECT_EQ(info.Pos, Point(5, 6));
    EXPECT_EQ(info.Height, 12);
    EXPECT_TRUE(info.Shown);
    CreateCaret(b, nullptr, 2, 12);  // a new caret replaces the old one
    EXPECT_EQ(GetCaretInfo().Window, b);
    EXPECT_FALSE(GetCaretInfo().Shown);
    DestroyCaret();
    EXPECT_EQ(GetCaretInfo().Window, nullptr);
    EXPECT_TRUE(DestroyCaret());
}

}  // namespace
