// The frame of the control: defaults, the line store and Modified, parser and
// menu ownership, scroll bar layout, the wheel, life inside a Qt window, and
// the package whose start registers the parser classes. Then the Qt side of
// the framework layer where the control's own tests do not reach it: the
// edges of rectangles and lines, the scroll bar's classic semantics, and
// posted messages. Text, clipping and the caret are judged through the
// control's paint and caret tests.
#include "codeedit/EditorFixture.h"
#include "codeedit/SxPackage.h"
#include "platform/Classes.h"
#include "platform/ScrollBar.h"
#include "platform/TypInfo.h"

#include <QAbstractSlider>

using namespace sx;
using namespace sx::test;

namespace {

/// Hears when a component it watches goes away.
class Watcher : public TComponent {
public:
    using TComponent::TComponent;
    void Notification(TComponent* AComponent, TOperation Operation) override
    {
        TComponent::Notification(AComponent, Operation);
        Gone = Gone || (Operation == TOperation::opRemove && AComponent == Watched);
    }
    TComponent* Watched = nullptr;
    bool Gone = false;
};

TEST(Frame, NewControlHasOneEmptyLineAndNoSelectionAndChangesThroughLinesMarkModified)
{
    TSxCodeEdit edit(nullptr);
    EXPECT_EQ(edit.Lines().Count(), 1);
    EXPECT_EQ(Point(edit.CharPos(), edit.LinePos()), Point(0, 0));
    EXPECT_EQ(edit.SelStart(), Point(-1, -1));
    EXPECT_EQ(edit.SelEnd(), Point(-1, -1));
    EXPECT_FALSE(edit.Modified());
    EXPECT_EQ(edit.Options(), (TSxCodeOptions{TSxCodeOption::coShowGuttor, TSxCodeOption::coShowRightMargin}));
    EXPECT_EQ(edit.RightMargin(), 80);
    edit.Lines().Add(u"x");
    EXPECT_TRUE(edit.Modified());
    TStringList other;
    other.SetText(u"a\r\nb");
    edit.SetLines(other);
    EXPECT_FALSE(edit.Modified());
    EXPECT_EQ(edit.Lines().Count(), 2);
    edit.SetText(u"p\r\nq\r\nr");
    EXPECT_TRUE(edit.Modified());
    edit.BeginLoading();
    edit.Loaded();
    EXPECT_FALSE(edit.Modified());
}

TEST(Frame, DefaultParserIsMadeOnDemandAndAForeignOneSurvivesTheControlUnhooked)
{
    TSxLangParser foreign(nullptr);
    {
        TSxCodeEdit edit(nullptr);
        TSxLangParser* parser = edit.Parser();
        ASSERT_NE(parser, nullptr);
        EXPECT_EQ(parser->Owner(), &edit);
        EXPECT_EQ(edit.Parser(), parser);

        Watcher watcher(nullptr);
        watcher.Watched = parser;
        parser->FreeNotification(&watcher);
        edit.SetParser(&foreign);
        edit.SetParser(&foreign);
        EXPECT_TRUE(watcher.Gone);  // the control freed the parser it made
        EXPECT_EQ(edit.Parser(), &foreign);
        edit.SetParser(nullptr);
        EXPECT_EQ(edit.Parser()->Owner(), &edit);  // a default takes its place
        edit.SetParser(&foreign);
        Render(edit);
        EXPECT_TRUE(bool(foreign.OnGetNewBuffer()));
    }
    EXPECT_EQ(foreign.GetLanguage(), u"<undefined language>");
    EXPECT_FALSE(bool(foreign.OnGetNewBuffer()));  // not left calling the control
    foreign.ResetBuffer();
    EXPECT_EQ(foreign.ReadChar(), 0);
}

TEST(Frame, ParserFreedWhileInUseIsReplacedByADefault)
{
    Host host;
    TComponent owner(nullptr);
    auto* edit = new TSxCodeEdit(&owner);
    host.Place(*edit, 200, 100);
    // a sibling under the same owner, and a parser of no owner
    for (TComponent* parserOwner : {&owner, static_cast<TComponent*>(nullptr)}) {
        auto* parser = new TSxLangParser(parserOwner);
        edit->SetParser(parser);
        Render(*edit);
        delete parser;
        ASSERT_NE(edit->Parser(), nullptr);
        EXPECT_EQ(edit->Parser()->Owner(), edit);
        Render(*edit);
    }
}

TEST(Frame, PopupMenuIsClearedWhenItGoesAway)
{
    TComponent owner(nullptr);
    auto* edit = new TSxCodeEdit(&owner);
    auto* menu = new TPopupMenu(&owner);
    edit->SetPopupMenu(menu);
    delete menu;
    EXPECT_EQ(edit->PopupMenu(), nullptr);
}

using ShownFrame = EditorTest;

TEST_F(ShownFrame, ScrollBarsFollowTheSizeAndTheViewMayGoAHundredLinesPastTheEnd)
{
    const int t = edit->HScrollBar().Height();
    EXPECT_EQ(edit->HScrollBar().Max(), 500);
    EXPECT_EQ(edit->VScrollBar().Max(), 101);
    edit->Lines().Add(u"more");
    EXPECT_EQ(edit->VScrollBar().Max(), 102);
    edit->SetBounds(0, 0, 300, 200);
    EXPECT_EQ(edit->VScrollBar().Left(), 300 - t);
    edit->Widget()->resize(500, 350);  // a resize from Qt's side lays them out too
    EXPECT_EQ(edit->Width(), 500);
    EXPECT_EQ(edit->VScrollBar().Left(), 500 - t);
}

TEST_F(ShownFrame, WheelScrollsByTheDesktopLinesAndAZeroDeltaScrollsDown)
{
    edit->SetText(LinesOf(200, [](int) { return u"line"; }));
    EXPECT_EQ(edit->VScrollBar().Position(), 0);
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(Word(-120)) << 16);
    const int step = edit->VScrollBar().Position();
    EXPECT_GE(step, 1);
    SendMessage(edit, WM_MOUSEWHEEL, 0);
    EXPECT_EQ(edit->VScrollBar().Position(), 2 * step);
    for (int i = 0; i < 3; ++i)
        SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(120) << 16);
    EXPECT_EQ(edit->VScrollBar().Position(), 0);
}

TEST(Frame, ControlGoesWithTheQtWindowThatHoldsIt)
{
    Watcher watcher(nullptr);
    {
        Host host;
        auto* edit = host.Add<TSxCodeEdit>(200, 100);
        watcher.Watched = edit;
        edit->FreeNotification(&watcher);
    }
    EXPECT_TRUE(watcher.Gone);
}

TEST(Package, StartRegistersTheParserClassesAndStopTakesThemBack)
{
    Initialize();
    Initialize();  // a second start changes nothing
    // the first parser unit and the last
    EXPECT_NE(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_NE(GetClass(u"TSxCodeSqlParser"), nullptr);
    EXPECT_NE(GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange"), nullptr);
    Finalize();
    EXPECT_EQ(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_EQ(GetClass(u"TSxCodeSqlParser"), nullptr);
    EXPECT_EQ(GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange"), nullptr);
    Initialize();  // the package can start again
    EXPECT_NE(GetClass(u"TSxCodeSqlParser"), nullptr);
    Finalize();
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
