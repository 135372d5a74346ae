// The Qt side of the framework layer where the control's own tests do not
// reach it: the edges of rectangles and lines, the scroll bar's classic
// semantics, and posted messages. Text, clipping and the caret are judged
// through the control's paint and caret tests.
#include "platform/ScrollBar.h"
#include "support/RenderHelpers.h"

#include <QAbstractSlider>
#include <QImage>

#include <gtest/gtest.h>

using namespace sx;
using namespace sx::test;

namespace {

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
    const QImage img = b.Image();
    const std::pair<QPoint, TColor> pixels[] = {
        {{2, 2}, clRed},  {{5, 5}, clRed},    {{6, 6}, clWhite},   {{3, 3}, clBlue},   {{10, 4}, clRed},
        {{10, 5}, clWhite}, {{14, 14}, clGreen}, {{13, 13}, clWhite}, {{15, 15}, clWhite},
    };
    for (const auto& [at, colour] : pixels)
        EXPECT_EQ(PixelAt(img, at.x(), at.y()), colour) << at.x() << "," << at.y();
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

    bar.SetPosition(10);
    auto* qbar = static_cast<QAbstractSlider*>(bar.Widget());  // the user moving the Qt bar
    qbar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(bar.Position(), 11);
    EXPECT_EQ(changes, 6);
    bar.SetPageSize(200);  // a page larger than the range is ignored, a negative one kept
    EXPECT_EQ(bar.PageSize(), 0);
    bar.SetPageSize(-2);
    EXPECT_EQ(bar.PageSize(), -2);
}

/// A control that records the messages it is given.
class Recorder : public TCustomControl {
public:
    using TCustomControl::TCustomControl;
    void Dispatch(TMessage& m) override { received.push_back(m.Msg); }
    std::vector<Cardinal> received;
};

TEST(Messages, MessagesPostedToAFreedControlAreDroppedAndTheRestDelivered)
{
    Recorder kept(nullptr);
    auto* freed = new Recorder(nullptr);
    PostMessage(freed, WM_USER);
    PostMessage(&kept, WM_USER + 1);
    delete freed;
    ProcessPostedMessages();  // must not reach the freed control
    EXPECT_EQ(kept.received, std::vector<Cardinal>{WM_USER + 1});
}

}  // namespace
