// The shortcuts of painting give the pixels of the plain path: text drawn
// from kept shapes or left out when scrolled off against text shaped and
// drawn anew, tokens behind the right edge skipped or cut against a control
// wide enough to draw them, and screen updates that wait for posted messages
// against the state they show.
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Caret.h"
#include "platform/Dialogs.h"
#include "support/Keyboard.h"
#include "support/ModalAnswers.h"
#include "support/RenderHelpers.h"

#include <QCoreApplication>
#include <QScrollBar>

#include <gtest/gtest.h>

using namespace sx;
using namespace sx::test;

namespace {

/// Pascal with every kind of token, text outside ASCII, tabs and long lines.
const String Sample = u"unit Shapes; { a comment }\r\n"
                      u"  S := 'Größe – text' + #13 + 'fi fl ->';\r\n"
                      u"\tX := $FF + 1.5e10; // done\r\n"
                      u"  (* two\r\n   lines *) Y := Z^.Next;\r\n"
                      u"  LongIdentifierThatRunsOnAndOnAndOnAndOn := 'end';\r\n"
                      u"  #1#2#3#4#5#6#7#8#9#10#11#12 := Wide;\r\n"
                      u"end.";

class PaintShortcut : public ::testing::Test {
protected:
    TSxCodeEdit* Make(int width, const String& text)
    {
        auto* edit = host.Add<TSxCodeEdit>(width, 200);
        edit->SetParser(new TSxCodePascalParser(edit));
        edit->SetText(text);
        return edit;
    }
    Host host;
};

TEST_F(PaintShortcut, TextShortcutsDrawWhatThePlainPathDraws)
{
    TSxCodeEdit* edit = Make(400, Sample);
    edit->SetSelStart(Point(4, 1));
    edit->SetSelEnd(Point(9, 4));
    auto& rows = uSxCodePascalParser::DrawInfo;
    const auto saved = rows;
    for (const bool lined : {false, true}) {
        if (lined) {  // identifiers underlined, numbers struck out
            rows[4].Style = TFontStyles{TFontStyle::fsUnderline};
            rows[6].Style = TFontStyles{TFontStyle::fsStrikeOut, TFontStyle::fsItalic};
        }
        for (const char* face : {"Courier New", "Liberation Sans"}) {
            edit->Font().SetName(StrFromLatin1(face));
            for (const Integer scroll : {0, 3, 9, 12}) {
                edit->HScrollBar().SetPosition(scroll);
                Render(*edit);  // fills the kept shapes
                const QImage kept = Render(*edit);
                SetTextShortcuts(false);
                const QImage plain = Render(*edit);
                SetTextShortcuts(true);
                EXPECT_TRUE(kept == plain) << face << ", scrolled " << scroll << (lined ? ", lined" : "");
            }
        }
    }
    rows = saved;
}

TEST_F(PaintShortcut, TokensPastTheRightEdgeShowAsInAWideControl)
{
    // Long tokens that the narrow control cuts and a wide one draws whole,
    // and many short ones behind the narrow control's edge.
    String text = u"{ " + String(700, u'w') + u" }\r\n  S := '" + String(650, u'f') + u"i';\r\n";
    for (int i = 0; i < 300; ++i)
        text += u"Item" + IntToStr(i) + u", ";
    text += u"\r\n  T := '" + String(300, u'a') + u"\u05d0" + String(300, u'b') + u"';";
    TSxCodeEdit* narrow = Make(300, text);
    TSxCodeEdit* wide = Make(7000, text);
    for (const Integer scroll : {0, 7}) {
        for (TSxCodeEdit* edit : {narrow, wide}) {
            edit->HScrollBar().SetPosition(scroll);
            edit->SetSelStart(Point(40, 0));
            edit->SetSelEnd(Point(600, 1));
        }
        const QImage a = Render(*narrow);
        const QImage b = Render(*wide);
        // What the narrow control copies to the screen: left of and above its scroll bars.
        const QRect area(0, 0, 300 - narrow->VScrollBar().Width() - 1, 200 - narrow->HScrollBar().Height() - 1);
        EXPECT_TRUE(a.copy(area) == b.copy(area)) << "scroll " << scroll;
    }
}

TEST_F(PaintShortcut, RepaintsWaitForTheEndOfAChainOfPostedPasses)
{
    TSxCodeEdit* edit = Make(400, LinesOf(200, [](int i) { return i % 4 ? u"  Value := 1;" : u"  Value := Old;"; }));
    int paints = 0;  // a paint calls the handler once for the top line
    edit->SetOnParserLineChange([&](Integer nr, TColor&, TColor&) {
        paints += nr == edit->VScrollBar().Position() + 1 ? 1 : 0;
        return false;
    });
    ModalScript script;
    script.OnForm = [](TForm& form) { FillSearchDialog(form, {.Find = u"Old", .Result = mrYesToAll}); };
    QCoreApplication::processEvents();
    paints = 0;
    PostMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, 1);
    for (int i = 0; i < 1000 && script.Boxes.empty(); ++i)  // the chain ends with the message box
        QCoreApplication::processEvents();
    ASSERT_EQ(script.Boxes.size(), 1u) << "the replace-all chain did not end";
    EXPECT_EQ(script.Boxes[0].Text, u"Search string 'Old' not found.");
    QCoreApplication::processEvents();
    EXPECT_GE(paints, 1);
    EXPECT_LT(paints, 10);  // not one for each of the 50 passes
}

TEST_F(PaintShortcut, TheCaretShowsWhereQueuedKeysLeftIt)
{
    TSxCodeEdit* edit = Make(400, Sample);
    Focus(*edit);
    for (const Char c : String(u"abc\rdef\rgh"))
        PostMessage(edit, WM_CHAR, c);  // queued keys, the screen caret updated once behind them
    ProcessPostedMessages();
    const TCaretInfo caret = GetCaretInfo();
    ASSERT_EQ(caret.Window, edit);
    EXPECT_EQ(edit->LinePos(), 2);
    const QWidget* block = nullptr;  // the caret's block: the one child that is no scroll bar
    for (const QWidget* child : edit->Widget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        block = qobject_cast<const QScrollBar*>(child) ? block : child;
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->geometry(), QRect(caret.Pos.X, caret.Pos.Y, caret.Width, caret.Height));
}

TEST_F(PaintShortcut, AMessageBoxShowsTheControlAsItStands)
{
    TSxCodeEdit* edit = Make(400, LinesOf(200, [](int i) { return i == 150 ? u"  Hit := 1;" : u"  Value := 1;"; }));
    int paints = 0;
    edit->SetOnParserLineChange([&](Integer, TColor&, TColor&) {
        ++paints;
        return false;
    });
    QCoreApplication::processEvents();
    ModalScript script;
    script.OnForm = [](TForm& form) { FillSearchDialog(form, {.Find = u"Hit", .ReplaceWith = u"Pin", .Prompt = true}); };
    bool asked = false;
    SetMsgBoxHook([&](TMsgBoxKind, const String&, const String&) {  // the script puts its own back
        // The user looks at the hit while the box asks: scrolled to and painted.
        asked = true;
        paints = 0;
        QCoreApplication::processEvents();
        EXPECT_GT(paints, 0);
        auto* bar = static_cast<QScrollBar*>(edit->VScrollBar().Widget());
        EXPECT_EQ(bar->value(), edit->VScrollBar().Position());
        return idYes;
    });
    PostMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, 1);
    for (int i = 0; i < 5 && !asked; ++i)
        QCoreApplication::processEvents();
    EXPECT_TRUE(asked);
    EXPECT_EQ(edit->Lines().Get(150), u"  Pin := 1;");
}

TEST(ScreenUpdates, WaitForPostedMessagesAndRunOncePerKey)
{
    Host host;
    auto* edit = host.Add<TSxCodeEdit>(100, 100);
    int runs = 0;
    PostMessage(edit, WM_USER);
    UpdateScreen(&runs, [&] { ++runs; });
    UpdateScreen(&runs, [&] { ++runs; });
    EXPECT_EQ(runs, 0);
    ProcessPostedMessages();
    EXPECT_EQ(runs, 1);
    PostMessage(edit, WM_USER);
    UpdateScreen(&runs, [&] { ++runs; });
    CancelScreenUpdate(&runs);
    ProcessPostedMessages();
    EXPECT_EQ(runs, 1);
}

}  // namespace
