// Undo and redo through real key events: each kind of record played
// backwards against the text, the bound of the stack, records that no longer
// fit the text; the redo keys, typing and Backspace runs grouped under a
// replaceable clock, the depth of the lists, seeded sessions against a model
// of the text, and the classic control unchanged.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"

#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

using UndoReplay = EditorTest;

TEST_F(UndoReplay, EachEditIsPlayedBackwards)
{
    const struct { const char16_t* text; TPoint caret; void (*edit)(TSxCodeEdit&); const char* undone; } cases[] = {
        // a typed character goes but its fill stays
        {u"ab", Point(5, 0), [](TSxCodeEdit& e) { Type(e, QStringLiteral("x")); }, "ab   | @5,0"},
        // Enter is undone without the trimmed spaces
        {u"abc   def", Point(6, 0), [](TSxCodeEdit& e) { Press(e, Qt::Key_Return); }, "abcdef| @6,0"},
        // a join is undone by splitting again
        {u"abc\r\ndef", Point(0, 1), [](TSxCodeEdit& e) { Press(e, Qt::Key_Backspace); }, "abc|def| @0,1"},
        // a paste behind the line end fills the line, and its undo leaves the fill
        {u"ab", Point(4, 0), [](TSxCodeEdit& e) { Clipboard().SetAsText(u"x\r\ny"); SendMessage(&e, WM_PASTE); }, "ab  | @4,0"},
        // an empty insertion writes a record that undoes to nothing
        {u"ab", Point(1, 0), [](TSxCodeEdit& e) { e.InsertText(ctPaste, u""); }, "ab| @1,0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        ASSERT_FALSE(edit->CanUndo());
        Start(c.text, c.caret);
        c.edit(*edit);
        EXPECT_TRUE(edit->CanUndo());
        Undo();
        EXPECT_EQ(State(), c.undone);
        EXPECT_FALSE(edit->CanUndo());
    }
}

TEST_F(UndoReplay, StackKeepsTheNewestHundred)
{
    Start(u"");
    Type(*edit, QString(101, QLatin1Char('a')));
    EXPECT_EQ(edit->UndoList().Count(), 100);
    EXPECT_EQ(edit->UndoList().Items(0)->StartPos(), Point(1, 0));  // the second record is now the oldest
    for (int i = 0; i < 100; ++i)
        Undo();
    EXPECT_EQ(Line(0), u"a");  // the state after the first edit
    EXPECT_FALSE(edit->CanUndo());
}

TEST_F(UndoReplay, RecordsOutliveANewTextAndGoEvenWhenTheyCannotBePlayed)
{
    Start(u"abc", Point(3, 0));
    Type(*edit, QStringLiteral("d"));
    Press(*edit, Qt::Key_Backspace);
    edit->SetText(u"wxyz");
    edit->SetReadOnly(true);
    Undo();  // the put-back path ignores read-only
    EXPECT_EQ(Line(0), u"wxydz");
    Undo();  // the delete path is refused, and the record goes
    EXPECT_EQ(State(), "wxydz| @3,0");
    EXPECT_FALSE(edit->CanUndo());

    // a record that cannot be played goes all the same
    edit->SetReadOnly(false);
    Start(u"abc");
    edit->UndoList().AddUndo(ctNone, Point(0, 0), Point(1, 0), Point(0, 0), u"");
    try {
        Undo();
        FAIL() << "expected an exception";
    } catch (const Exception& e) {
        EXPECT_EQ(e.Message(), u"This undo-action has not yet been implemented!");
    }
    EXPECT_FALSE(edit->CanUndo());
    EXPECT_EQ(edit->Text(), u"abc\r\n");
}

TEST_F(UndoReplay, NeighbouringBreakCharactersMakeOneBreakAndAddCodeGoesInFrontOfTheLastLine)
{
    Start(u"");
    edit->InsertText(ctPaste, u"a\r\nb\n\rc\r\rd\n\ne\r\n\r\nf\ng");
    EXPECT_EQ(State(), "a|b|c|d|e||f|g| @1,7");
    Start(u"xy", Point(1, 0));
    edit->InsertText(ctPaste, u"1\r\n2\r\n");
    EXPECT_EQ(State(), "x1|2|y| @0,2");

    Start(u"begin\r\nend");
    edit->AddCode(u"x;\r\n");
    EXPECT_EQ(edit->Text(), u"begin\r\nx;\r\nend\r\n");
    EXPECT_EQ(edit->UndoList().Items(0)->ChangeType(), ctPaste);
    edit->InsertCode(0, 5, u" y");
    EXPECT_EQ(Line(0), u"begin y");
}

const TSxCodeExtOptions Redo{TSxCodeExtOption::coRedo};
const TSxCodeExtOptions RedoGrouped{TSxCodeExtOption::coRedo, TSxCodeExtOption::coGroupUndo};
constexpr auto Ctrl = Qt::ControlModifier;

class RedoFixture : public EditorTest {
public:
    void SetUp() override
    {
        EditorTest::SetUp();
        edit->UndoList().SetClock([this] { return now; });
    }
    /// A new control in the same window: one with no undo records yet.
    void Fresh(TSxCodeExtOptions options)
    {
        delete edit;
        edit = host.Add<TSxCodeEdit>(400, 300);
        SetUp();
        edit->SetExtOptions(options);
    }
    /// Selects from the anchor to the caret, then presses Ctrl with the key.
    void Command(TPoint anchor, TPoint caret, Qt::Key key)
    {
        Select(anchor, caret);
        PressAndRun(key);
    }
    /// Acts as a user: "<" Backspace, "^" Home, "~" a pause of 1.5 s, "\n" Enter, others typed.
    void Act(const std::string& script)
    {
        for (const char c : script) {
            c == '<' ? Press(*edit, Qt::Key_Backspace)
            : c == '^' ? Press(*edit, Qt::Key_Home)
            : c == '~' ? void(now += 1500)
                       : Type(*edit, QString(QLatin1Char(c)));
            now += 10;
        }
    }
    std::string TextNow() const { return State().substr(0, State().find(" @")); }

    std::int64_t now = 0;
};

TEST_F(RedoFixture, ClassicControlKeepsItsKeys)
{
    Start(u"ab", Point(2, 0));
    Act("xy");
    PressAndRun(Qt::Key_Z);
    PressAndRun(Qt::Key_Y);
    PressAndRun(Qt::Key_Z, Ctrl | Qt::ShiftModifier);
    SendMessage(edit, WM_SX_REDO);
    EXPECT_EQ(State(), "abx| @3,0");  // one record per character, nothing redone
    EXPECT_FALSE(edit->CanRedo());
}

TEST_F(RedoFixture, RedoPutsBackTextCaretAndSelectionOfTheEdit)
{
    const struct { const char16_t* text; TPoint caret; TSxCodeExtOptions options; void (*edit)(RedoFixture&); } cases[] = {
        {u"ab", Point(2, 0), Redo, [](RedoFixture& f) { f.Act("xyz"); }},
        {u"ab   ", Point(5, 0), Redo, [](RedoFixture& f) { f.Act("\n"); }},
        {u"abc\r\ndef", Point(0, 1), Redo, [](RedoFixture& f) { f.Act("<"); }},
        {u"one two", Point(0, 0), RedoGrouped, [](RedoFixture& f) { f.Command(Point(4, 0), Point(7, 0), Qt::Key_V); }},
        {u"one\r\ntwo", Point(0, 0), Redo, [](RedoFixture& f) { f.Command(Point(1, 0), Point(2, 1), Qt::Key_X); }},
        {u"abcdef", Point(6, 0), RedoGrouped, [](RedoFixture& f) { f.Act("<<<xy"); }},
    };
    Clipboard().SetAsText(u"1\r\n2");
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        Fresh(c.options);
        Start(c.text, c.caret);
        c.edit(*this);
        const std::string edited = State();
        edit->SetCharPos(0);  // a caret moved after the edit is not what a redo restores
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z);
        const std::string undone = State();
        while (edit->CanRedo())  // both redo keys
            edit->UndoList().RedoCount() % 2 ? PressAndRun(Qt::Key_Y)
                                             : PressAndRun(Qt::Key_Z, Ctrl | Qt::ShiftModifier);
        EXPECT_EQ(State(), edited);
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z);
        EXPECT_EQ(State(), undone);
    }
}

TEST_F(RedoFixture, RunsOfTypingAndBackspacesUndoAsOneStep)
{
    const struct { const char* script; int undos; const char* undone; } cases[] = {
        {"abc", 1, "| @0,0"},
        {"ab~c", 1, "ab| @2,0"},     // a pause ends the run
        {"ab^c", 1, "ab| @0,0"},     // so does a caret move
        {"ab\ncd", 1, "ab|| @0,1"},  // Enter is a step of its own
        {"ab\ncd", 2, "ab| @2,0"},
        {"abcd<<", 1, "abcd| @4,0"},  // a run of Backspaces
        {"ab\n<<", 1, "ab|| @0,1"},  // the run goes on across the line join
        {"abc<x", 1, "ab| @2,0"},
    };
    edit->SetExtOptions(RedoGrouped);
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.script) + " x" + std::to_string(c.undos));
        Start(u"");
        Act(c.script);
        for (int i = 0; i < c.undos; ++i)
            PressAndRun(Qt::Key_Z);
        EXPECT_EQ(State(), c.undone);
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z);
    }
}

TEST_F(RedoFixture, UndoLimitBoundsUndoAndRedo)
{
    edit->SetExtOptions(Redo);
    edit->SetUndoLimit(3);
    Start(u"");
    Act("abcde");
    while (edit->CanUndo())
        PressAndRun(Qt::Key_Z);
    EXPECT_EQ(State(), "ab| @2,0");
    PressAndRun(Qt::Key_Y);
    edit->SetUndoLimit(1);  // the steps furthest from being redone go first
    PressAndRun(Qt::Key_Y);
    EXPECT_EQ(State(), "abcd| @4,0");
    EXPECT_FALSE(edit->CanRedo());
    edit->SetUndoLimit(0);
    Act(std::string(150, 'x'));
    EXPECT_EQ(edit->UndoList().Count(), 151);
}

TEST_F(RedoFixture, SeededSessionsMatchAModelOfTheText)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const bool grouped = seed % 2 == 0;
        Fresh(grouped ? RedoGrouped : Redo);
        Start(u"ab\r\ncd");
        // The model: text and caret after each step, the step shown, and the
        // last run: its kind, where it left the caret and when it began.
        std::vector<std::pair<std::string, TPoint>> steps{{TextNow(), Caret()}};
        std::size_t at = 0;
        char lastRun = 0;
        TPoint runCaret;
        std::int64_t runTime = 0;
        for (int step = 0; step < 60; ++step) {
            now += std::int64_t(random() % 1400);
            const TPoint caret = Caret();
            const auto length = Integer(Line(caret.Y).size());
            // Only edits that undo gives back exactly: letters, Enter, and
            // Backspaces that leave their line a character at the least.
            const char action = "aabb\n<<mzyy"[random() % 11];
            if (action == 'm') {
                edit->SetLinePos(Integer(random() % unsigned(edit->Lines().Count())));
                edit->SetCharPos(Integer(random() % (Line(edit->LinePos()).size() + 1)));
            } else if (action == 'z' || action == 'y') {
                const bool redone = action == 'y' && at + 1 < steps.size();
                PressAndRun(action == 'z' ? Qt::Key_Z : Qt::Key_Y);
                at = action == 'z' ? at - (at > 0 ? 1 : 0) : at + (redone ? 1 : 0);
                lastRun = 0;
                ASSERT_EQ(TextNow(), steps[at].first);
                ASSERT_TRUE(!redone || Caret() == steps[at].second) << "redo leaves the caret as the edit did";
            } else if (action != '<' || (caret.X == 0 ? caret.Y > 0 : length >= 2 && caret.X <= length)) {
                const char run = action == '\n' ? 0 : action == '<' ? '<' : 'a';
                const bool goesOn = grouped && run && run == lastRun && caret == runCaret && now - runTime <= 1000;
                runTime = now;
                Act(std::string(1, action));
                steps.resize(at + (goesOn ? 0 : 1));
                steps.push_back({TextNow(), Caret()});
                at = steps.size() - 1;
                lastRun = run;
                runCaret = Caret();
                ASSERT_FALSE(edit->CanRedo()) << "an edit leaves nothing to redo";
            }
        }
    }
}

}  // namespace
