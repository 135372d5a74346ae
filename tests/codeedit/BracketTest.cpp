// Bracket matching: Ctrl+] jumps to the partner found through the parser's
// tokens, brackets in strings and comments do not count, both brackets show
// on a ground of their own, a lone one on another. Off by default.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"

using namespace sx;
using namespace sx::test;

namespace {

class Brackets : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->SetParser(new TSxCodePascalParser(edit));
        TurnOn(TSxCodeExtOption::coBracketMatch);
    }
    int GroundPixels(const QImage& image, TPoint cell, TColor color)
    {
        return CountPixels(image, CellRect(*edit, cell.X, cell.Y), Drawn(color));
    }
};

TEST_F(Brackets, CtrlBracketJumpsToThePartnerOfCodeBracketsOnly)
{
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
    String gap;
    for (Integer i = 0; i < uSxCodeEdit::BracketSearchLines; ++i)
        gap += u"\r\n";
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
