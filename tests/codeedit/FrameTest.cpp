// The frame of the control: defaults, the line store and Modified, parser and
// menu ownership, scroll bar layout, the wheel, and life inside a Qt window.
#include "codeedit/uSxCodeEdit.h"
#include "support/RenderHelpers.h"

#include <gtest/gtest.h>

using namespace sx;
using namespace sx::test;

namespace {

TRect BoundsOf(const TControl& c) { return Rect(c.Left(), c.Top(), c.Left() + c.Width(), c.Top() + c.Height()); }

/// Hears when a component it watches goes away.
class Watcher : public TComponent {
public:
    using TComponent::TComponent;
    void Notification(TComponent* AComponent, TOperation Operation) override
    {
        TComponent::Notification(AComponent, Operation);
        if (Operation == TOperation::opRemove && AComponent == Watched)
            Gone = true;
    }
    TComponent* Watched = nullptr;
    bool Gone = false;
};

TEST(Frame, NewControlHasOneEmptyLineAndNoSelection)
{
    TSxCodeEdit edit(nullptr);
    EXPECT_EQ(edit.Lines().Count(), 1);
    EXPECT_EQ(Point(edit.CharPos(), edit.LinePos()), Point(0, 0));
    EXPECT_EQ(edit.SelStart(), Point(-1, -1));
    EXPECT_EQ(edit.SelEnd(), Point(-1, -1));
    EXPECT_FALSE(edit.Modified());
    EXPECT_EQ(edit.Options(), (TSxCodeOptions{TSxCodeOption::coShowGuttor, TSxCodeOption::coShowRightMargin}));
    EXPECT_EQ(edit.GuttorWidth(), 20);
    EXPECT_EQ(edit.RightMargin(), 80);
    EXPECT_EQ(edit.Font().Name(), u"Courier new");
}

TEST(Frame, ChangesThroughLinesMarkModifiedButAssigningLinesDoesNot)
{
    TSxCodeEdit edit(nullptr);
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

TEST(Frame, EmptyTextLeavesNoLineAndTheCaretAtTheTop)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(200, 100);
    edit->SetText(u"");
    EXPECT_EQ(edit->Lines().Count(), 0);
    edit->SetLinePos(3);
    EXPECT_EQ(edit->LinePos(), 0);
    const QImage image = Render(*edit);
    EXPECT_EQ(PixelAt(image, 50, 5), Drawn(clWindow));
}

TEST(Frame, DefaultParserIsMadeOnDemandAndAForeignOneSurvivesTheControl)
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
    }
    EXPECT_EQ(foreign.GetLanguage(), u"<undefined language>");
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

TEST(Frame, ParserThatOutlivesTheControlIsNotLeftCallingIt)
{
    TSxLangParser parser(nullptr);
    {
        Host host;
        auto* edit = host.Add<TSxCodeEdit>(200, 100);
        edit->SetParser(&parser);
        Render(*edit);
        EXPECT_TRUE(bool(parser.OnGetNewBuffer()));
    }
    EXPECT_FALSE(bool(parser.OnGetNewBuffer()));
    parser.ResetBuffer();
    EXPECT_EQ(parser.ReadChar(), 0);
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

TEST(Frame, ScrollBarsAreLaidOutOnceTheControlHasAWindow)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(400, 300);
    const int t = edit->HScrollBar().Height();
    const int cw = edit->GetCharWidth(), lh = edit->GetLineWidth();
    ASSERT_GT(cw, 0);
    ASSERT_GT(lh, 0);
    // beside the gutter along the bottom, and down the right edge
    EXPECT_EQ(BoundsOf(edit->HScrollBar()), Rect(20, 300 - t, 400 - t, 300));
    EXPECT_EQ(BoundsOf(edit->VScrollBar()), Rect(400 - t, 0, 400, 300 - t));
    EXPECT_EQ(edit->HScrollBar().Max(), 500);
    EXPECT_EQ(edit->HScrollBar().PageSize(), (400 - 20 - t - cw) / cw);
    EXPECT_EQ(edit->VScrollBar().Max(), 101);
    EXPECT_EQ(edit->VScrollBar().PageSize(), (300 - t - lh) / lh);

    edit->Lines().Add(u"more");
    EXPECT_EQ(edit->VScrollBar().Max(), 102);
    edit->SetBounds(0, 0, 300, 200);
    EXPECT_EQ(edit->VScrollBar().Left(), 300 - t);
}

TEST(Frame, ResizingTheWidgetLaysTheBarsOutAgain)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(400, 300);
    edit->Widget()->resize(500, 350);
    EXPECT_EQ(edit->Width(), 500);
    EXPECT_EQ(edit->VScrollBar().Left(), 500 - edit->VScrollBar().Width());
}

TEST(Frame, WheelScrollsByTheDesktopLinesAndAZeroDeltaScrollsDown)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(400, 300);
    String text;
    for (int i = 0; i < 200; ++i)
        text += u"line\r\n";
    edit->SetText(text);
    const int lines = edit->VScrollBar().Position();
    EXPECT_EQ(lines, 0);
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(Word(-120)) << 16);
    const int step = edit->VScrollBar().Position();
    EXPECT_GE(step, 1);
    SendMessage(edit, WM_MOUSEWHEEL, 0);
    EXPECT_EQ(edit->VScrollBar().Position(), 2 * step);
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(120) << 16);
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(120) << 16);
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

TEST(Frame, SetCharPosBelowZeroMovesToTheLineAbove)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(400, 300);
    edit->SetText(u"a\r\nb\r\nc\r\nd");
    edit->SetLinePos(3);
    edit->SetCharPos(-1);
    EXPECT_EQ(edit->LinePos(), 2);
    EXPECT_EQ(edit->CharPos(), 0);
    edit->SetLinePos(0);
    edit->SetCharPos(-1);
    EXPECT_EQ(edit->LinePos(), 0);
}

}  // namespace
