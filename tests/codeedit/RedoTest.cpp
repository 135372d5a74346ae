// Redo and grouped undo through real key events: the redo keys, typing and
// Backspace runs under a replaceable clock, the depth of the lists, seeded
// sessions against a model of the text, and the classic control unchanged.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"

#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

const TSxCodeExtOptions Redo{TSxCodeExtOption::coRedo};
const TSxCodeExtOptions RedoGrouped{TSxCodeExtOption::coRedo, TSxCodeExtOption::coGroupUndo};

class RedoFixture : public EditorTest {
public:
    using EditorTest::Select;
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
    void PressAndRun(Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        Press(*edit, key, modifiers);
        ProcessPostedMessages();
    }
    void UndoKey() { PressAndRun(Qt::Key_Z, Qt::ControlModifier); }
    void RedoKey() { PressAndRun(Qt::Key_Y, Qt::ControlModifier); }
    /// Acts as a user: "<" Backspace, "^" Home, "~" a pause of 1.5 s, "\n" Enter, others typed.
    void Act(const char* script)
    {
        for (; *script; ++script) {
            switch (*script) {
            case '<': Press(*edit, Qt::Key_Backspace); break;
            case '^': Press(*edit, Qt::Key_Home); break;
            case '~': now += 1500; break;
            default: Type(*edit, QString(QLatin1Char(*script))); break;
            }
            now += 10;
        }
    }

    /// The text of State, without caret and selection.
    std::string TextNow() const
    {
        const std::string state = State();
        return state.substr(0, state.find(" @"));
    }

    std::int64_t now = 0;
};

TEST_F(RedoFixture, ClassicControlKeepsItsKeysAndRecords)
{
    for (const Qt::KeyboardModifiers modifiers : {Qt::KeyboardModifiers(Qt::ControlModifier),
                                                  Qt::ControlModifier | Qt::ShiftModifier}) {
        Start(u"ab", Point(2, 0));
        Act("xy");
        UndoKey();
        PressAndRun(modifiers == Qt::ControlModifier ? Qt::Key_Y : Qt::Key_Z, modifiers);
        SendMessage(edit, WM_SX_REDO);
        EXPECT_EQ(State(), "abx| @3,0");  // one record per character, nothing redone
        EXPECT_FALSE(edit->CanRedo());
    }
    EXPECT_EQ(edit->UndoLimit(), 100);
    for (Integer i = 0; i < edit->UndoList().Count(); ++i)
        EXPECT_EQ(edit->UndoList().Items(i)->Group(), 0);
}

TEST_F(RedoFixture, RedoPutsBackTextCaretAndSelectionOfTheEdit)
{
    const struct { const char16_t* text; TPoint caret; TSxCodeExtOptions options; void (*edit)(RedoFixture&); } cases[] = {
        {u"ab", Point(2, 0), Redo, [](RedoFixture& f) { f.Act("xyz"); }},
        {u"ab   ", Point(5, 0), Redo, [](RedoFixture& f) { f.Act("\n"); }},
        {u"abc\r\ndef", Point(0, 1), Redo, [](RedoFixture& f) { f.Act("<"); }},
        {u"one two", Point(0, 0), RedoGrouped,
         [](RedoFixture& f) {
             f.Select(Point(4, 0), Point(7, 0));
             Clipboard().SetAsText(u"1\r\n2");
             f.PressAndRun(Qt::Key_V, Qt::ControlModifier);
         }},
        {u"one\r\ntwo", Point(0, 0), Redo,
         [](RedoFixture& f) {
             f.Select(Point(1, 0), Point(2, 1));
             f.PressAndRun(Qt::Key_X, Qt::ControlModifier);
         }},
        {u"abcdef", Point(6, 0), RedoGrouped, [](RedoFixture& f) { f.Act("<<<xy"); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text));
        Fresh(c.options);
        Start(c.text, c.caret);
        c.edit(*this);
        const std::string edited = State();
        edit->SetCharPos(0);  // a caret moved after the edit is not what a redo restores
        while (edit->CanUndo())
            UndoKey();
        const std::string undone = State();
        while (edit->CanRedo())
            RedoKey();
        EXPECT_EQ(State(), edited);
        while (edit->CanUndo())
            PressAndRun(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(State(), undone);
        PressAndRun(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_NE(State(), undone);
        Act("q");  // a new edit leaves nothing to redo
        EXPECT_FALSE(edit->CanRedo());
    }
}

TEST_F(RedoFixture, RunsOfTypingAndBackspacesUndoAsOneStep)
{
    const struct { const char* script; int undos; const char* undone; } cases[] = {
        {"abc", 1, "| @0,0"},
        {"ab~c", 1, "ab| @2,0"},             // a pause ends the run
        {"ab^c", 1, "ab| @0,0"},             // so does a caret move
        {"ab\ncd", 1, "ab|| @0,1"},          // Enter is a step of its own
        {"ab\ncd", 2, "ab| @2,0"},
        {"abcd<<", 1, "abcd| @4,0"},         // a run of Backspaces
        {"abcd<<", 2, "| @0,0"},
        {"ab\n<<", 1, "ab|| @0,1"},          // the run goes on across the line join
        {"abc<x", 1, "ab| @2,0"},
    };
    edit->SetExtOptions(RedoGrouped);
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.script) + " x" + std::to_string(c.undos));
        Start(u"");
        Act(c.script);
        for (int i = 0; i < c.undos; ++i)
            UndoKey();
        EXPECT_EQ(State(), c.undone);
        while (edit->CanUndo())
            UndoKey();
    }
}

TEST_F(RedoFixture, UndoLimitBoundsUndoAndRedo)
{
    edit->SetExtOptions(Redo);
    edit->SetUndoLimit(3);
    Start(u"");
    Act("abcde");
    EXPECT_EQ(edit->UndoList().Count(), 3);
    while (edit->CanUndo())
        UndoKey();
    EXPECT_EQ(State(), "ab| @2,0");
    RedoKey();
    edit->SetUndoLimit(1);  // the steps furthest from being redone go first
    EXPECT_EQ(edit->UndoList().RedoCount(), 1);
    RedoKey();
    EXPECT_EQ(State(), "abcd| @4,0");
    EXPECT_FALSE(edit->CanRedo());
    edit->SetUndoLimit(0);
    Act(std::string(150, 'x').c_str());
    EXPECT_EQ(edit->UndoList().Count(), 151);
}

/// The model of a session: the texts and carets after each step, the step
/// shown now, and what the last action was, for the rule of the runs.
struct Model {
    struct Snapshot {
        std::string text;
        TPoint caret;
    };
    std::vector<Snapshot> steps;
    std::size_t at = 0;
    char lastRun = 0;
    TPoint runCaret;
    std::int64_t runTime = 0;
};

TEST_F(RedoFixture, SeededSessionsMatchAModelOfTheText)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const bool grouped = seed % 2 == 0;
        Fresh(grouped ? RedoGrouped : Redo);
        edit->SetUndoLimit(0);
        Start(u"ab\r\ncd");
        Model m;
        m.steps.push_back({TextNow(), Caret()});
        for (int step = 0; step < 60; ++step) {
            now += std::int64_t(random() % 1400);
            const TPoint caret = Caret();
            const Integer length = Integer(Line(caret.Y).size());
            // Only edits that undo gives back exactly: letters, Enter, and
            // Backspaces that leave their line a character at the least.
            const char action = "aabb\n<<mzyy"[random() % 11];
            if (action == 'm') {
                const Integer line = Integer(random() % unsigned(edit->Lines().Count()));
                edit->SetLinePos(line);
                edit->SetCharPos(Integer(random() % (Line(line).size() + 1)));
                continue;
            }
            if (action == 'z' || action == 'y') {
                const bool undo = action == 'z';
                const bool redone = !undo && m.at + 1 < m.steps.size();
                undo ? UndoKey() : RedoKey();
                m.at = undo ? m.at - (m.at > 0 ? 1 : 0) : m.at + (redone ? 1 : 0);
                m.lastRun = 0;
                ASSERT_EQ(TextNow(), m.steps[m.at].text);
                if (redone) {
                    ASSERT_EQ(Caret(), m.steps[m.at].caret);
                }
                continue;
            }
            if (action == '<' && !(caret.X == 0 ? caret.Y > 0 : length >= 2 && caret.X <= length))
                continue;
            const char run = action == '\n' ? 0 : action == '<' ? '<' : 'a';
            const bool goesOn =
                grouped && run && run == m.lastRun && caret == m.runCaret && now - m.runTime <= 1000;
            const std::int64_t time = now;
            Act(std::string(1, action).c_str());
            m.steps.resize(m.at + (goesOn ? 0 : 1));
            m.steps.push_back({TextNow(), Caret()});
            m.at = m.steps.size() - 1;
            m.lastRun = run;
            m.runCaret = Caret();
            m.runTime = time;
            ASSERT_FALSE(edit->CanRedo());
        }
    }
}

}  // namespace
