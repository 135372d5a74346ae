// Folding (coFolding) in the control: the incremental structure against a
// fresh one after random edits, the buttons and keys, and the caret, edit and
// selection rules around folded regions.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxCodeFolds.h"
#include "codeedit/uSxCodeJSParser.h"

#include <random>

namespace sx::test {
namespace {

// Lines 0-4 form one region, 1-3 one inside it, 5-7 another.
const String Code = u"function f() {\r\n  if (a) {\r\n    b();\r\n  }\r\n}\r\nvar o = {\r\n  x: 1\r\n};\r\nlast();";

class FoldingTest : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->SetParser(new TSxCodeJSParser(edit));
        TurnOn(TSxCodeExtOption::coFolding);
        edit->SetOnFoldChange([this](TObject*) { ++changes; });
        Start(Code);
    }
    std::vector<bool> Shown()
    {
        std::vector<bool> shown;
        for (Integer line = 0; line < edit->Lines().Count(); ++line)
            shown.push_back(edit->IsLineVisible(line));
        return shown;
    }
    /// A press on the fold button of a line that shows.
    void ClickButton(Integer line)
    {
        const TRect cell = CellRect(*edit, 0, line);
        QTest::mouseClick(edit->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, cell.Top + 4));
    }
    int changes = 0;
};

TEST_F(FoldingTest, RegionsOfTheTextAndTheirButtons)
{
    EXPECT_EQ(edit->FoldRegions(), (std::vector<TSxFoldRegion>{{0, 4}, {1, 3}, {5, 7}}));
    ClickButton(5);
    EXPECT_EQ(Shown(), (std::vector<bool>{true, true, true, true, true, true, false, false, true}));
    ClickButton(0);
    EXPECT_EQ(edit->FoldedRegions(), (std::vector<TSxFoldRegion>{{0, 4}, {5, 7}}));
    // Line 8 now shows on the third row, and the scroll bar counts three rows.
    EXPECT_EQ(edit->TextArea().CellY(8), 2 * edit->GetLineWidth());
    EXPECT_EQ(edit->VScrollBar().Max(), 3 + 100);
    ClickButton(0);
    ClickButton(5);
    EXPECT_TRUE(edit->FoldedRegions().empty());
    EXPECT_EQ(changes, 4);
}

TEST_F(FoldingTest, KeysFoldAtTheCaretAndEverywhere)
{
    edit->SetLinePos(2);
    PressAndRun(Qt::Key_BracketLeft, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(edit->FoldedRegions(), (std::vector<TSxFoldRegion>{{1, 3}}));
    EXPECT_EQ(edit->LinePos(), 1) << "the caret leaves the hidden lines";
    PressAndRun(Qt::Key_BracketRight, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(edit->FoldedRegions().empty());
    PressAndRun(Qt::Key_BracketLeft, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(edit->FoldedRegions().size(), 3u);
    PressAndRun(Qt::Key_BracketRight, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(edit->FoldedRegions().empty());
}

TEST_F(FoldingTest, CaretStepsOverFoldedRegions)
{
    edit->Fold(1);
    edit->SetLinePos(1);
    PressAndRun(Qt::Key_Down, Qt::NoModifier);
    EXPECT_EQ(edit->LinePos(), 4);
    PressAndRun(Qt::Key_Up, Qt::NoModifier);
    EXPECT_EQ(edit->LinePos(), 1);
    EXPECT_EQ(edit->FoldedRegions().size(), 1u) << "stepping over keeps the region folded";
    edit->Fold(5);
    edit->SetLinePos(5);
    PressAndRun(Qt::Key_Down, Qt::NoModifier);
    EXPECT_EQ(edit->LinePos(), 8);
}

TEST_F(FoldingTest, ReachingAHiddenLineUnfoldsItsRegion)
{
    struct Case {
        const char* name;
        std::function<void(TSxCodeEdit&)> reach;
    };
    const Case cases[] = {
        {"SetLinePos", [](TSxCodeEdit& e) { e.SetLinePos(2); }},
        {"InsertCode", [](TSxCodeEdit& e) { e.InsertCode(2, 0, u"x"); }},
        {"store edit", [](TSxCodeEdit& e) { e.Lines().Delete(3); }},
        {"undo", [](TSxCodeEdit& e) { SendMessage(&e, WM_UNDO); }},
    };
    for (const Case& c : cases) {
        Start(Code);
        edit->InsertCode(2, 0, u"y");  // what the undo case takes back
        edit->Fold(1);
        c.reach(*edit);
        EXPECT_TRUE(edit->FoldedRegions().empty()) << c.name;
    }
}

TEST_F(FoldingTest, SelectionOverAFoldedRegionTakesItsHiddenLines)
{
    edit->Fold(5);
    Select(Point(0, 5), Point(0, 8));
    SendMessage(edit, WM_CUT);
    EXPECT_EQ(State(), "function f() {|  if (a) {|    b();|  }|}|last();| @0,5");
    Undo();
    EXPECT_EQ(edit->Text(), Code + u"\r\n");
}

TEST_F(FoldingTest, TheLineAfterAFoldedCommentIsPaintedAsCode)
{
    const auto secondRow = [this] {
        const TRect cell = CellRect(*edit, 0, 1);
        return Render(*edit).copy(cell.Left, cell.Top, 120, cell.Bottom - cell.Top);
    };
    Start(u"\r\nvar x;");
    const QImage code = secondRow();
    Start(u"/* a\r\n b */\r\nvar x;");
    edit->Fold(0);
    EXPECT_EQ(secondRow(), code);
}

TEST_F(FoldingTest, EditingTextKeepsTheStructureAsAFreshScanFindsIt)
{
    std::mt19937 random(20261124);
    const std::u16string pieces[] = {u"{", u"}", u"/*", u"*/", u"x", u"\"{\""};
    String text;
    for (int line = 0; line < 60; ++line)
        text += pieces[random() % 6] + pieces[random() % 6] + u"\r\n";
    Start(text);
    TSxCodeJSParser parser(nullptr);
    for (int step = 0; step < 200; ++step) {
        const auto line = Integer(random() % std::uint32_t(edit->Lines().Count()));
        switch (random() % 3) {
        case 0: edit->InsertCode(line, 0, pieces[random() % 6]); break;
        case 1: edit->Lines().Insert(line, pieces[random() % 6]); break;
        default:
            if (edit->Lines().Count() > 1)
                edit->Lines().Delete(line);
            break;
        }
        if (step % 2 == 0)
            continue;  // two edits before the next look
        TStringList copy;
        copy.Assign(edit->Lines());
        TSxFoldStructure fresh(copy);
        fresh.SetParser(&parser);
        ASSERT_EQ(edit->FoldRegions(), fresh.Regions(0, MaxInt)) << "step " << step;
    }
}

}  // namespace
}  // namespace sx::test
