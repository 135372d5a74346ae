// Regular-expression search (coRegExpSearch) driven through the dialog: the
// check box only with the option, hits with groups within and across lines,
// replace-all undone step by step, a bad pattern and a runaway one.
#include "codeedit/EditorFixture.h"
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "support/ModalAnswers.h"

#include <string>
#include <vector>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

struct Ask {
    String find;
    String replaceWith{};
    bool backward = false;
    bool caseSensitive = false;
    TModalResult result = mrOk;
    bool regExp = true;
};

class RegExpSearch : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        TurnOn(TSxCodeExtOption::coRegExpSearch);
    }
    /// Fills the dialog as asked and runs the passes that follow (a replace-all's
    /// whole chain, one pass per call); States gets the text before and after each change.
    void Run(const Ask& a)
    {
        script.OnForm = [&](TForm& form) {
            auto& d = dynamic_cast<TFrmCodeEditSearchReplaceDlg&>(form);
            d.edtTextToFind()->SetText(a.find);
            d.edtReplaceWith->SetText(a.replaceWith);
            d.rgDirection()->SetItemIndex(a.backward ? 1 : 0);
            d.chkBxCaseSensitive()->SetChecked(a.caseSensitive);
            d.GetChkBxRegExp()->SetChecked(a.regExp);
            form.SetModalResult(a.result);
        };
        PostMessage(edit, WM_SX_SEARCHREPLACEDLG, a.replaceWith.empty() ? 0 : 1);
        states = {edit->Text()};
        for (int i = 0; i < 50; ++i) {
            ProcessPostedMessages();
            if (edit->Text() != states.back())
                states.push_back(edit->Text());
        }
    }
    void Again()
    {
        PostMessage(edit, WM_SX_SEARCHREPLACE);
        ProcessPostedMessages();
    }
    std::string Selection() const { return At(edit->SelStart()) + "-" + At(edit->SelEnd()); }
    String LastBox() const { return script.Boxes.empty() ? String() : script.Boxes.back().Text; }

    ModalScript script;
    std::vector<String> states;
};

TEST_F(RegExpSearch, TheCheckBoxShowsOnlyWithTheOptionAndMovesNothing)
{
    std::vector<Integer> without[2];  // the layout without the option, for each type
    for (const bool on : {false, true}) {
        SCOPED_TRACE(on);
        edit->SetExtOptions(on ? TSxCodeExtOptions{TSxCodeExtOption::coRegExpSearch} : TSxCodeExtOptions{});
        Start(u"abc a.c");
        for (const bool replacing : {false, true}) {
            std::vector<Integer> seen;
            script.OnForm = [&](TForm& form) {
                auto& d = dynamic_cast<TFrmCodeEditSearchReplaceDlg&>(form);
                seen = {d.GetChkBxRegExp()->Visible(), form.Height(), d.rgOrigin()->Top(), form.Height() - d.btnCancel->Top()};
            };
            SendMessage(edit, WM_SX_SEARCHREPLACEDLG, replacing ? 1 : 0);
            const std::vector<Integer>& off = on ? without[replacing] : (without[replacing] = seen);
            // the form grows by the row; the pages stay put and the buttons keep to the bottom
            const Integer grown = on ? fSxCodeEditSearchReplaceDlg::RegExpRowHeight : 0;
            EXPECT_EQ(seen, (std::vector<Integer>{on, off[1] + grown, off[2], off[3]}));
        }
        Run({.find = u"a.c"});  // the box ticked, but hidden without the option: a plain search
        EXPECT_EQ(Selection(), on ? "0,0-3,0" : "4,0-7,0");
    }
}

TEST_F(RegExpSearch, FindsHitsWithinAndAcrossLinesInBothDirections)
{
    const struct { const char16_t* text; TPoint caret; Ask ask; std::vector<std::string> hits; } cases[] = {
        {u"x1 y22 z333", Point(0, 0), {.find = u"[a-z](\\d+)"}, {"0,0-2,0", "3,0-6,0", "7,0-11,0"}},
        {u"x1 y22 z333", Point(11, 0), {.find = u"[a-z]\\d+", .backward = true}, {"11,0-7,0", "6,0-3,0", "2,0-0,0"}},
        {u"Ab ab", Point(0, 0), {.find = u"AB", .caseSensitive = true}, {}},
        {u"Ab ab", Point(0, 0), {.find = u"AB"}, {"0,0-2,0", "3,0-5,0"}},
        {u"foo bar\r\nfoo", Point(0, 0), {.find = u"o$"}, {"2,1-3,1"}},  // $ at the line end, not at the caret
        {u"foo\r\nbar foo", Point(6, 1), {.find = u"o$", .backward = true}, {"3,0-2,0"}},
        {u"end;\r\n  begin", Point(0, 0), {.find = u";\\s+(\\w+)"}, {"3,0-7,1"}},
        {u"a\r\nb\r\na\r\nb", Point(1, 3), {.find = u"a\\Rb", .backward = true}, {"1,3-0,2", "1,1-0,0"}},
        {u"a\r\n\r\nb", Point(0, 0), {.find = u"a\\n\\nb"}, {"0,0-1,2"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text) + " / " + StrToUtf8(c.ask.find));
        Start(c.text, c.caret);
        Run(c.ask);
        for (std::size_t i = 0; i < c.hits.size(); ++i) {
            if (i > 0)
                Again();
            EXPECT_EQ(Selection(), c.hits[i]);
        }
        Again();
        EXPECT_EQ(LastBox(), u"Search string '" + c.ask.find + u"' not found.");
        script.Boxes.clear();
    }
}

TEST_F(RegExpSearch, ReplaceAllExpandsGroupsAndLineBreaksAndUndoesStepByStep)
{
    const struct { const char16_t* text; Ask ask; const char16_t* after; } cases[] = {
        {u"k1=v1 k2=v2", {.find = u"(?<k>\\w+)=(\\w+)", .replaceWith = u"$2:${k}"}, u"v1:k1 v2:k2\r\n"},
        {u"a, b, c", {.find = u", ", .replaceWith = u",\\n"}, u"a,\r\nb,\r\nc\r\n"},
        {u"a;\r\n  b;\r\nc", {.find = u";\\s*\\n\\s*", .replaceWith = u"; "}, u"a; b; c\r\n"},
        {u"x\r\ny\r\nx", {.find = u"^(\\w)$", .replaceWith = u"[$1]", .backward = true}, u"[x]\r\n[y]\r\n[x]\r\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        Start(c.text, c.ask.backward ? Point(1, 2) : Point(0, 0));
        Ask all = c.ask;
        all.result = mrYesToAll;
        Run(all);
        EXPECT_EQ(edit->Text(), c.after);
        // Each replacement is a deletion and an insertion; undo walks back through every pass.
        ASSERT_EQ(std::size_t(edit->UndoList().Count()), 2 * (states.size() - 1));
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            Undo();
            Undo();
            EXPECT_EQ(edit->Text(), states[i]) << i;
        }
    }
}

TEST_F(RegExpSearch, ABadPatternShowsPcresMessageAndChangesNothing)
{
    Start(u"ab(c ab", Point(1, 0));
    Run({.find = u"b"});
    Start(u"ab(c ab", Point(1, 0));
    Run({.find = u"ab(c", .replaceWith = u"x", .result = mrYesToAll});
    EXPECT_EQ(LastBox(), u"The regular expression 'ab(c' is not valid at position 5: missing closing parenthesis.");
    EXPECT_EQ(State(), "ab(c ab| @1,0");
    Again();  // the last good search stands
    EXPECT_EQ(Selection(), "1,0-2,0");
}

TEST_F(RegExpSearch, ARunawayPatternStopsTheChainWithEveryStepUndoable)
{
    const String runaway = String(40, u'a') + u"b";
    const String text = u"x\r\nx\r\n" + runaway + u"\r\nx\r\n";
    Start(text);
    Run({.find = u"x|(a+)+$", .replaceWith = u"y", .result = mrYesToAll});
    EXPECT_NE(StrToUtf8(LastBox()).find("took too many steps"), std::string::npos) << StrToUtf8(LastBox());
    EXPECT_EQ(edit->Text(), u"y\r\ny\r\n" + runaway + u"\r\nx\r\n");
    EXPECT_EQ(edit->UndoList().Count(), 4);
    for (int i = 0; i < 4; ++i)
        Undo();
    EXPECT_EQ(edit->Text(), text);
}

}  // namespace
