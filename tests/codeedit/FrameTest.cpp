// The frame of the control: defaults, the line store and Modified, parser and
// menu ownership, scroll bar layout, the wheel, life inside a Qt window, and
// the package whose start registers the parser classes. The Qt side of the
// framework layer where the control's own tests do not reach it: the edges of
// rectangles and lines, the scroll bar's classic semantics, and posted
// messages; text, clipping and the caret are judged through the control's
// paint and caret tests. Then the extended options, each off by default. Line
// numbers and the current line: the gutter widens to fit the numbers, a click
// or drag on them selects whole lines, and the caret's line shows in its own
// colour under the selection. Bracket matching: Ctrl+] jumps to the partner
// found through the parser's tokens, brackets in strings and comments do not
// count, both brackets show on a ground of their own, a lone one on another.
#include "codeedit/EditorFixture.h"
#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
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
    // the first parser unit, the last, and the control's published properties
    const auto registered = [] {
        return std::string(GetClass(u"TsxCodePasParser") ? "Pascal " : "") + (GetClass(u"TSxCodeSqlParser") ? "SQL " : "") +
               (GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange") ? "control" : "");
    };
    Initialize();
    Initialize();  // a second start changes nothing
    EXPECT_EQ(registered(), "Pascal SQL control");
    Finalize();
    EXPECT_EQ(registered(), "");
    Initialize();  // the package can start again
    EXPECT_EQ(registered(), "Pascal SQL control");
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

class Options : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->SetParser(new TSxCodePascalParser(edit));
    }
    /// A point on the gutter, at the height of the line shown at that row.
    QPoint OnNumber(Integer row) { return QPoint(2, row * edit->GetLineWidth() + 1); }
    /// Pixels of the line-number colour in the gutter's band of a row.
    int NumberInk(const QImage& image, Integer row)
    {
        const Integer h = edit->GetLineWidth();
        return CountPixels(image, Rect(0, row * h, edit->RealGuttorWidth(), (row + 1) * h),
                           Drawn(edit->LineNumberColor()));
    }
    int GroundPixels(const QImage& image, TPoint cell, TColor color)
    {
        return CountPixels(image, CellRect(*edit, cell.X, cell.Y), Drawn(color));
    }
};

using Gutter = Options;
using Brackets = Options;

TEST_F(Gutter, WidensToFitTheLastNumberAndNarrowsAgain)
{
    TurnOn(TSxCodeExtOption::coLineNumbers);
    Start(u"x");
    Render(*edit);
    EXPECT_EQ(edit->RealGuttorWidth(), edit->GuttorWidth());  // one digit fits the classic width
    edit->SetText(LinesOf(1'000'000, [](int) { return u""; }));
    const Integer wide = edit->RealGuttorWidth();
    EXPECT_GT(wide, edit->GuttorWidth());
    EXPECT_EQ(edit->HScrollBar().Left(), wide);
    EXPECT_GT(CellRect(*edit, 0, 0).Left, wide);  // the text never sits under the numbers
    edit->SetText(u"short");
    EXPECT_EQ(edit->RealGuttorWidth(), edit->GuttorWidth());
}

TEST_F(Gutter, NumbersEveryVisibleLineOfTheTextOnlyWithTheOption)
{
    Start(u"begin\r\n\r\nend.");
    EXPECT_EQ(NumberInk(Render(*edit), 0), 0);
    EXPECT_EQ(edit->RealGuttorWidth(), edit->GuttorWidth());
    Drag(OnNumber(0), {OnNumber(1)});  // without numbers a drag on the gutter selects as in the text
    EXPECT_EQ(State(), "begin||end.| @0,1 [0,1-0,0]");
    TurnOn(TSxCodeExtOption::coLineNumbers);
    const QImage image = Render(*edit);
    for (Integer row = 0; row < 3; ++row)
        EXPECT_GT(NumberInk(image, row), 0) << "row " << row;
    EXPECT_EQ(NumberInk(image, 3), 0);  // no number below the last line
}

TEST_F(Gutter, ClickAndDragOnNumbersSelectWholeLines)
{
    TurnOn(TSxCodeExtOption::coLineNumbers);
    Start(u"one\r\ntwo\r\nthree\r\nfour", Point(2, 3));
    const struct {
        Integer from, to;
        const char* state;
    } cases[] = {
        {1, 1, "one|two|three|four| @0,2 [0,2-0,1]"},
        {1, 2, "one|two|three|four| @0,3 [0,3-0,1]"},
        {2, 0, "one|two|three|four| @0,0 [0,0-0,3]"},
        {3, 3, "one|two|three|four| @4,3 [4,3-0,3]"},  // the last line: to its end
    };
    QTest::mouseClick(edit->Widget(), Qt::LeftButton, Qt::NoModifier, OnNumber(2));
    EXPECT_EQ(State(), "one|two|three|four| @0,2");  // a click: the caret at the line's start
    for (const auto& c : cases) {
        Drag(OnNumber(c.from), {OnNumber(c.to)});
        EXPECT_EQ(State(), c.state) << c.from << " to " << c.to;
    }
}

TEST_F(Gutter, CurrentLineShowsBehindWindowColouredTokensAndUnderTheSelection)
{
    Start(u"begin\r\n  x := 1;\r\nend.", Point(0, 1));
    const TColor current = Drawn(edit->CurrentLineColor());
    EXPECT_EQ(CountPixels(Render(*edit), Rect(0, 0, 400, 300), current), 0);  // off by default

    TurnOn(TSxCodeExtOption::coCurrentLine);
    const TRect blank = CellRect(*edit, 30, 1);  // right of the text on the caret's line
    EXPECT_EQ(PixelAt(Render(*edit), blank.Left + 1, blank.Top + 1), current);
    const TRect otherLine = CellRect(*edit, 30, 0);
    EXPECT_EQ(PixelAt(Render(*edit), otherLine.Left + 1, otherLine.Top + 1), Drawn(clWindow));

    Select(Point(0, 1), Point(4, 1));
    const TRect selected = CellRect(*edit, 1, 1);
    EXPECT_EQ(PixelAt(Render(*edit), selected.Left + 1, selected.Top + 1), Drawn(clHighlight));
}

TEST_F(Brackets, CtrlBracketJumpsToThePartnerOfCodeBracketsOnly)
{
    TurnOn(TSxCodeExtOption::coBracketMatch);
    const struct {
        bool script;
        const char16_t* text;
        TPoint caret, after;
    } cases[] = {
        {false, u"f(a, (b), c)", {1, 0}, {11, 0}},                  // at the caret: before the partner
        {false, u"f(a, (b), c)", {12, 0}, {2, 0}},                  // behind the caret: behind the partner
        {false, u"s := '(' + (x);", {11, 0}, {13, 0}},              // the quoted one does not count
        {false, u"(a { ) }\r\n(* ) *)\r\n)", {0, 0}, {0, 2}},       // nor those in comments, across lines
        {false, u"[a(])", {0, 0}, {3, 0}},                          // only its own kind pairs up
        {false, u"(a", {0, 0}, {0, 0}},                             // none: the caret stays
        {true, u"if (a) { s = \"}\"; /* } */ }", {7, 0}, {26, 0}},  // script strings and comments
    };
    for (const auto& c : cases) {
        if (c.script)
            edit->SetParser(new TSxCodeJSParser(edit));
        Start(c.text, c.caret);
        Press(*edit, Qt::Key_BracketRight, Qt::ControlModifier);
        EXPECT_EQ(At(Caret()), At(c.after)) << StrToUtf8(c.text);
        EXPECT_EQ(edit->Text(), String(c.text) + u"\r\n");
    }
}

TEST_F(Brackets, APartnerOutOfReachIsNeitherFoundNorMissing)
{
    TurnOn(TSxCodeExtOption::coBracketMatch);
    const String gap = LinesOf(uSxCodeEdit::BracketSearchLines, [](int) { return u""; });
    const String longLine(uSxCodeEdit::BracketSearchChars, u'(');
    TPoint bracket, partner;
    for (const String& text : {u"(" + gap + u"\r\n)", u"(\r\n" + longLine + u"\r\n)", u"(" + gap + u"\r\nx"})
    {
        Start(text);
        EXPECT_FALSE(edit->MatchingBracket(bracket, partner));
    }
    Start(u"(" + gap + u")");  // just within reach
    ASSERT_TRUE(edit->MatchingBracket(bracket, partner));
    EXPECT_EQ(At(partner), At(Point(0, uSxCodeEdit::BracketSearchLines)));
}

TEST_F(Brackets, BothBracketsOnTheirGroundALoneOneOnItsOwn)
{
    TurnOn(TSxCodeExtOption::coBracketMatch);
    Start(u"x := (a + b);", Point(5, 0));
    QImage image = Render(*edit);
    EXPECT_GT(GroundPixels(image, Point(5, 0), edit->BracketMatchColor()), 0);
    EXPECT_GT(GroundPixels(image, Point(11, 0), edit->BracketMatchColor()), 0);
    EXPECT_EQ(GroundPixels(image, Point(7, 0), edit->BracketMatchColor()), 0);

    Start(u"x := (a + b;", Point(5, 0));
    EXPECT_GT(GroundPixels(Render(*edit), Point(5, 0), edit->BracketMismatchColor()), 0);

    edit->SetExtOptions({});
    Start(u"x := (a + b);", Point(5, 0));
    EXPECT_EQ(GroundPixels(Render(*edit), Point(5, 0), edit->BracketMatchColor()), 0);
    Press(*edit, Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(At(Caret()), "5,0");  // Ctrl+] does nothing without the option
}

}  // namespace
