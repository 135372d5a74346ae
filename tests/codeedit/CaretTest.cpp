// The caret against the view: how far each setter lets the caret go before
// the view scrolls, the screen caret that exists only with the focus and
// inside the text area, and the selection that follows the caret. The mouse
// through real Qt mouse events: a press puts the caret on the cell under the
// point, a drag selects from its own anchor, a double click selects a word,
// and the right button opens the control's popup menu.
#include "codeedit/EditorFixture.h"
#include "platform/Caret.h"
#include "platform/Menus.h"

#include <QMenu>
#include <QWindow>

using namespace sx;
using namespace sx::test;

namespace {

class CaretTest : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->SetText(LinesOf(300, [](int) { return u"line"; }));
    }
};

TEST_F(CaretTest, LinePosIsClampedAndALineScrollsOneRowSoonerThanAColumn)
{
    TScrollBar& v = edit->VScrollBar();
    TScrollBar& h = edit->HScrollBar();
    const Integer rows = v.PageSize(), columns = h.PageSize();
    // a line may reach row PageSize - 1 of the page; past it, it stands one row below the page
    for (const auto& [line, top] : {std::pair{rows - 1, 0}, {rows, 0}, {rows + 1, 1}, {0, 0}}) {
        edit->SetLinePos(line);
        EXPECT_EQ(v.Position(), top) << "line " << line;
    }
    // a column may reach Position + PageSize
    for (const auto& [column, left] : {std::pair{columns, 0}, {columns + 3, 3}, {1, 1}}) {
        edit->SetCharPos(column);
        EXPECT_EQ(h.Position(), left) << "column " << column;
    }

    for (const auto& [to, clamped] : {std::pair{-5, 0}, {305, 299}}) {
        edit->SetLinePos(to);
        EXPECT_EQ(edit->LinePos(), clamped);
    }
    edit->SetCharPos(-1);  // below column 0: column 0 of the line above
    EXPECT_EQ(Caret(), Point(0, 298));
    edit->SetLinePos(0);
    edit->SetCharPos(-1);
    EXPECT_EQ(edit->LinePos(), 0);
    edit->SetText(u"");  // no line left
    edit->SetLinePos(3);
    EXPECT_EQ(edit->LinePos(), 0);
    EXPECT_EQ(PixelAt(Render(*edit), 50, 5), Drawn(clWindow));
}

TEST_F(CaretTest, CursorChangeFiresOnEveryCallOfEitherSetter)
{
    int calls = 0;
    edit->SetOnCursorChange([&](TObject* sender) {
        EXPECT_EQ(sender, edit);
        ++calls;
    });
    edit->SetCharPos(0);
    edit->SetLinePos(0);
    EXPECT_EQ(calls, 2);  // unchanged values fire too
    edit->SetCharPos(-1);
    EXPECT_EQ(calls, 4);  // the inner call and the outer one
}

TEST_F(CaretTest, ScreenCaretStandsOnTheCaretCellAndGoesWhenScrolledOut)
{
    edit->SetLinePos(2);
    edit->SetCharPos(3);
    TCaretInfo info = GetCaretInfo();
    EXPECT_EQ(info.Window, edit);
    EXPECT_TRUE(info.Shown);
    EXPECT_EQ(info.Pos, CaretCell());  // its height the high-density test checks
    EXPECT_EQ(info.Width, 2);

    edit->SetLinePos(1);
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(Word(-120)) << 16);
    EXPECT_EQ(GetCaretInfo().Window, nullptr);
    EXPECT_EQ(edit->LinePos(), 1);  // scrolling leaves the caret in the text
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(120) << 16);
    EXPECT_EQ(GetCaretInfo().Window, edit);
    EXPECT_EQ(GetCaretInfo().Pos, CaretCell());

    edit->SetCharPos(500 + edit->HScrollBar().PageSize() + 5);  // the bar stops at 500
    EXPECT_EQ(GetCaretInfo().Window, nullptr);
}

TEST_F(CaretTest, OnlyTheFocusedControlHasACaret)
{
    edit->SetCharPos(2);
    auto* other = host.Add<TSxCodeEdit>(200, 100);
    other->SetCharPos(1);  // no focus: no caret, and the focused one keeps its own
    EXPECT_EQ(GetCaretInfo().Window, edit);
    Focus(*other);
    EXPECT_EQ(GetCaretInfo().Window, other);
    EXPECT_TRUE(GetCaretInfo().Shown);
    Focus(*edit);
    EXPECT_EQ(GetCaretInfo().Window, edit);
    EXPECT_EQ(GetCaretInfo().Pos, CaretCell());
}

TEST_F(CaretTest, ShiftHeldLetsTheSelectionGrowAndFocusCollapsesIt)
{
    edit->SetLinePos(1);
    edit->SetCharPos(1);
    QWindow* window = edit->Widget()->window()->windowHandle();
    QTest::keyPress(window, Qt::Key_Shift, Qt::ShiftModifier);  // held as a user holds it
    edit->SetLinePos(2);  // a program moving the caret extends like an arrow key
    edit->SetCharPos(3);
    QTest::keyRelease(window, Qt::Key_Shift, Qt::NoModifier);
    EXPECT_EQ(State().substr(State().find('@')), "@3,2 [3,2-1,1]");

    auto* other = host.Add<TSxCodeEdit>(200, 100);
    Focus(*other);
    Focus(*edit);  // getting the focus back with Shift up collapses
    EXPECT_EQ(edit->SelEnd(), Point(3, 2));
    EXPECT_EQ(edit->SelStart(), Point(3, 2));
}

class Mouse : public EditorTest {
protected:
    /// The middle of the character cell at (column, line) of the text.
    QPoint Cell(Integer column, Integer line)
    {
        const TRect r = CellRect(*edit, column, line);
        return QPoint((r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2);
    }
    QWidget* W() { return edit->Widget(); }
    void Click(QPoint at) { QTest::mouseClick(W(), Qt::LeftButton, Qt::NoModifier, at); }
    void DoubleClick(QPoint at)
    {
        QTest::mouseDClick(W(), Qt::LeftButton, Qt::NoModifier, at);
        ProcessPostedMessages();
    }
};

TEST_F(Mouse, PressPutsTheCaretOnTheCellUnderThePointCountedFromTheView)
{
    Start(u"abc\r\ndefgh\r\nij");
    Click(Cell(3, 1));
    EXPECT_EQ(Caret(), Point(3, 1));
    Click(Cell(9, 0));  // behind the end: virtual space, and typing fills it
    EXPECT_EQ(Caret(), Point(9, 0));
    Type(*edit, QStringLiteral("x"));
    EXPECT_EQ(Line(0), u"abc      x");
    Click(Cell(1, 12));  // below the last line: the last line
    EXPECT_EQ(Caret(), Point(1, 2));
    Click(QPoint(3, Cell(0, 1).y()));  // in the gutter: column 0
    EXPECT_EQ(Caret(), Point(0, 1));
    QTest::mouseMove(W(), Cell(2, 1));  // a move without a press selects nothing
    EXPECT_EQ(State(), "abc      x|defgh|ij| @0,1");

    edit->HScrollBar().SetPosition(10);  // the point counts from the scrolled view
    Click(Cell(12, 0));
    EXPECT_EQ(Caret(), Point(12, 0));

    // with the gutter hidden the press still subtracts its width
    Start(u"abc");
    edit->HScrollBar().SetPosition(10);
    edit->SetShowGuttor(false);
    Click(QPoint(0, 2));
    EXPECT_EQ(edit->CharPos(), edit->HScrollBar().Position());
    Integer x = 0, y = 0;
    edit->CalcCursor(x, y);  // subtracts the gutter width even while it is hidden
    EXPECT_LT(x, edit->HScrollBar().Position());
}

TEST_F(Mouse, DragSelectsInBothDirectionsAndScrollsPastTheBottom)
{
    Start(u"first line\r\nsecond line\r\nthird line");
    Drag(Cell(2, 0), {Cell(3, 0), Cell(4, 2)});
    EXPECT_EQ(State().substr(State().find('@')), "@4,2 [4,2-3,0]");  // the anchor is where the first move landed
    const String down = Selected();
    EXPECT_EQ(down, u"st line\r\nsecond line\r\nthir");

    Drag(Cell(4, 2), {Cell(4, 2), Cell(3, 0)});
    EXPECT_EQ(edit->SelStart(), Point(3, 0));
    EXPECT_EQ(Selected(), down);

    Drag(Cell(5, 1), {Cell(5, 1) + QPoint(1, 0), Cell(8, 2), Cell(5, 1)});  // back where it began: empty
    EXPECT_EQ(edit->SelLength(), 0);
    EXPECT_EQ(Caret(), Point(5, 1));

    Start(LinesOf(200, [](int) { return u"line"; }));
    const int below = edit->Height() + 3 * edit->GetLineWidth();
    Drag(Cell(0, 0), {Cell(1, 0), QPoint(Cell(1, 0).x(), below)});
    EXPECT_GT(edit->VScrollBar().Position(), 0);
    EXPECT_EQ(edit->SelEnd(), Point(1, 0));
    EXPECT_GT(edit->SelStart().Y, edit->VScrollBar().PageSize());
}

TEST_F(Mouse, DoubleClickSelectsTheWordAndLeavesTheCaretBehindIt)
{
    Start(u"x = foo_bar + 1;  end");
    // inside, on the first character, and on the space right behind the word
    for (const Integer column : {6, 4, 11}) {
        DoubleClick(Cell(column, 0));
        EXPECT_EQ(State(), "x = foo_bar + 1;  end| @11,0 [11,0-4,0]") << column;
    }
    DoubleClick(Cell(16, 0));  // a space with no word on either side
    EXPECT_EQ(State(), "x = foo_bar + 1;  end| @16,0");
    DoubleClick(Cell(30, 0));  // behind the end
    EXPECT_EQ(edit->SelLength(), 0);
}

TEST_F(Mouse, RightButtonOpensThePopupMenuAndLeavesTheCaret)
{
    Start(u"abc def", Point(1, 0));
    QTest::mouseClick(W(), Qt::RightButton, Qt::NoModifier, Cell(5, 0));  // no menu: focus only
    EXPECT_EQ(Caret(), Point(1, 0));

    TPopupMenu menu(nullptr);
    auto* item = new TMenuItem(nullptr);
    item->SetCaption(u"&Select word");
    int clicks = 0;
    item->OnClick = [&](TObject*) { ++clicks; };
    menu.Items().Add(item);
    edit->SetPopupMenu(&menu);
    QTest::mouseClick(W(), Qt::RightButton, Qt::NoModifier, Cell(5, 0));
    ASSERT_NE(menu.ShownMenu(), nullptr);
    EXPECT_EQ(menu.PopupComponent(), edit);
    EXPECT_EQ(Caret(), Point(1, 0));
    ASSERT_EQ(menu.ShownMenu()->actions().size(), 1);
    menu.ShownMenu()->actions().first()->trigger();
    EXPECT_EQ(clicks, 1);
    edit->SetPopupMenu(nullptr);
}

}  // namespace
