// The mouse through real Qt mouse events: a press puts the caret on the cell
// under the point, a drag selects from its own anchor, a double click selects
// a word, and the right button opens the control's popup menu.
#include "codeedit/EditorFixture.h"
#include "platform/Menus.h"

#include <QMenu>

using namespace sx;
using namespace sx::test;

namespace {

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
    EXPECT_EQ(x, edit->HScrollBar().Position() - edit->GuttorWidth() / edit->GetCharWidth());
    EXPECT_EQ(y, 0);
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
