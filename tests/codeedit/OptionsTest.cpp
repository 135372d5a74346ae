// The extended options, each off by default. Line numbers and the current
// line: the gutter widens to fit the numbers, a click or drag on them selects
// whole lines, and the caret's line shows in its own colour under the
// selection. Bracket matching: Ctrl+] jumps to the partner found through the
// parser's tokens, brackets in strings and comments do not count, both
// brackets show on a ground of their own, a lone one on another.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"

using namespace sx;
using namespace sx::test;

namespace {

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
    EXPECT_GE(wide, 7 * edit->GetCharWidth() + 10);
    EXPECT_EQ(edit->HScrollBar().Left(), wide);
    EXPECT_EQ(CellRect(*edit, 0, 0).Left, wide + 2);  // the text never sits under the numbers
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
