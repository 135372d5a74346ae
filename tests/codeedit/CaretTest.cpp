// The caret against the view: how far each setter lets the caret go before
// the view scrolls, the screen caret that exists only with the focus and
// inside the text area, and the selection that follows the caret.
#include "codeedit/EditorFixture.h"
#include "platform/Caret.h"

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
    {
        ShiftHeld shift(*edit);
        edit->SetLinePos(2);  // a program moving the caret extends like an arrow key
        edit->SetCharPos(3);
    }
    EXPECT_EQ(State().substr(State().find('@')), "@3,2 [3,2-1,1]");

    auto* other = host.Add<TSxCodeEdit>(200, 100);
    Focus(*other);
    Focus(*edit);  // getting the focus back with Shift up collapses
    EXPECT_EQ(edit->SelEnd(), Point(3, 2));
    EXPECT_EQ(edit->SelStart(), Point(3, 2));
}

}  // namespace
