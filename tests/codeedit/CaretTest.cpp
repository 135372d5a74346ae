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
        String text;
        for (int i = 0; i < 300; ++i)
            text += u"line\r\n";
        edit->SetText(text);
    }
    Integer Pos(TScrollBar& bar) { return bar.Position(); }
};

TEST_F(CaretTest, LinePosIsClampedToTheStore)
{
    edit->SetLinePos(-5);
    EXPECT_EQ(edit->LinePos(), 0);
    edit->SetLinePos(305);
    EXPECT_EQ(edit->LinePos(), 299);
    edit->SetText(u"");
    edit->SetLinePos(3);
    EXPECT_EQ(edit->LinePos(), 0);
}

TEST_F(CaretTest, ALineScrollsOneRowSoonerThanAColumn)
{
    TScrollBar& v = edit->VScrollBar();
    TScrollBar& h = edit->HScrollBar();
    const Integer rows = v.PageSize();
    edit->SetLinePos(rows - 1);
    EXPECT_EQ(Pos(v), 0);
    edit->SetLinePos(rows);
    EXPECT_EQ(Pos(v), 0);  // row PageSize - 1 from the top is the bound
    edit->SetLinePos(rows + 1);
    EXPECT_EQ(Pos(v), 1);  // and the caret line stands one row below the page
    edit->SetLinePos(0);
    EXPECT_EQ(Pos(v), 0);

    edit->SetCharPos(h.PageSize());
    EXPECT_EQ(Pos(h), 0);  // a column may reach Position + PageSize
    edit->SetCharPos(h.PageSize() + 3);
    EXPECT_EQ(Pos(h), 3);
    edit->SetCharPos(1);
    EXPECT_EQ(Pos(h), 1);
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
    calls = 0;
    edit->SetCharPos(-1);
    EXPECT_EQ(calls, 2);  // the inner call and the outer one
}

TEST_F(CaretTest, ScreenCaretStandsAtTheCaretCellBehindTheGutter)
{
    edit->SetLinePos(2);
    edit->SetCharPos(3);
    const TCaretInfo info = GetCaretInfo();
    EXPECT_EQ(info.Window, edit);
    EXPECT_TRUE(info.Shown);
    EXPECT_EQ(info.Pos, Point(20 + 3 * edit->GetCharWidth() + 2, 2 * edit->GetLineWidth()));
    EXPECT_EQ(info.Width, 2);
    EXPECT_EQ(info.Height, edit->GetLineWidth());
}

TEST_F(CaretTest, ScreenCaretGoesWhenScrolledOutAndComesBack)
{
    edit->SetLinePos(1);
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(Word(-120)) << 16);
    EXPECT_EQ(GetCaretInfo().Window, nullptr);
    EXPECT_EQ(edit->LinePos(), 1);  // scrolling leaves the caret in the text
    SendMessage(edit, WM_MOUSEWHEEL, NativeUInt(120) << 16);
    EXPECT_EQ(GetCaretInfo().Window, edit);

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
    EXPECT_EQ(GetCaretInfo().Pos.X, 20 + 2 * edit->GetCharWidth() + 2);
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
    EXPECT_EQ(edit->SelEnd(), Point(1, 1));
    EXPECT_EQ(edit->SelStart(), Point(3, 2));
    String selected;
    edit->GetSelected(selected);
    EXPECT_EQ(selected, u"ine\r\nlin");
    EXPECT_EQ(edit->SelLength(), 6);

    auto* other = host.Add<TSxCodeEdit>(200, 100);
    Focus(*other);
    Focus(*edit);  // getting the focus back with Shift up collapses
    EXPECT_EQ(edit->SelEnd(), Point(3, 2));
    EXPECT_EQ(edit->SelStart(), Point(3, 2));
}

}  // namespace
