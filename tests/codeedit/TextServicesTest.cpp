// The platform's text services. Input methods: commits go the way of typed
// characters, the text being composed shows at the caret and nowhere in the
// text, and the control's answers put the candidate window at the caret.
// Screen readers: the accessible interface that Qt finds for the control's
// widget (role, states, text in CR LF offsets, units of text, caret,
// selection, geometry, editing), and the events a listening screen reader gets.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxDbCodeEdit.h"
#include "platform/Caret.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QFont>
#include <QInputMethodEvent>
#include <QInputMethodQueryEvent>
#include <QTextCharFormat>

#include <algorithm>
#include <random>
#include <string>

using namespace sx;
using namespace sx::test;

namespace {

void Commit(TWinControl& control, const QString& text, int replaceStart = 0, int replaceLength = 0)
{
    QInputMethodEvent event;
    event.setCommitString(text, replaceStart, replaceLength);
    QCoreApplication::sendEvent(control.Widget(), &event);
    EXPECT_TRUE(event.isAccepted());
}

/// A composition step with its text underlined and its cursor at `cursor`.
void Compose(TWinControl& control, const QString& preedit, int cursor)
{
    QTextCharFormat underlined;
    underlined.setFontUnderline(true);
    const QList<QInputMethodEvent::Attribute> attributes{
        {QInputMethodEvent::TextFormat, 0, int(preedit.size()), underlined},
        {QInputMethodEvent::Cursor, cursor, 1, QVariant()},
    };
    QInputMethodEvent event(preedit, attributes);
    QCoreApplication::sendEvent(control.Widget(), &event);
}

void Cancel(TWinControl& control) { Compose(control, QString(), 0); }

QVariant Query(TWinControl& control, Qt::InputMethodQuery query)
{
    QInputMethodQueryEvent event(query);
    QCoreApplication::sendEvent(control.Widget(), &event);
    return event.value(query);
}

using InputMethod = EditorTest;

TEST_F(InputMethod, CommitGoesTheWayOfTypedCharacters)
{
    // Over a selection, through OnKeyPress, with Enter's auto-indent: the
    // text, caret, Changed calls and undo records (type, start, end, caret, value).
    int changes = 0;
    const auto run = [&](auto input) {
        Focus(*edit);  // before the selection: the focus coming collapses it
        Start(u"  begin end", Point(8, 0));
        edit->SetSelEnd(Point(6, 0));
        edit->OnKeyPress = [](TObject*, Char& key) { key = key == u'x' ? u'X' : key; };
        edit->SetOnChange([&](TObject*) { ++changes; });
        changes = 0;
        input();
        std::string records;
        for (Integer i = 0; i < edit->UndoList().Count(); ++i) {
            const TSxUndoItem& r = *edit->UndoList().Items(i);
            records += std::to_string(int(r.ChangeType())) + " " + At(r.StartPos()) + " " + At(r.EndPos()) + " " +
                       At(r.CaretPos()) + " [" + StrToUtf8(r.Value()) + "]\n";
        }
        return std::tuple(State(), records, changes, edit->Modified());
    };
    const QString wide = QString::fromUtf8("\xE6\x97\xA5\xE6\x9C\xAC\xF0\x9F\x99\x82");  // two CJK, one pair of halves
    const auto typed = run([&] { Type(*edit, QStringLiteral("x\nab") + wide); });
    edit = host.Add<TSxCodeEdit>(400, 300);
    const auto committed = run([&] {
        Commit(*edit, QStringLiteral("x"));
        Commit(*edit, QStringLiteral("\rab"));
        Commit(*edit, wide);
    });
    EXPECT_EQ(std::get<0>(committed), "  begiX|  ab日本\U0001F642end| @8,1");
    EXPECT_EQ(committed, typed);
    EXPECT_TRUE(std::get<3>(committed));
}

TEST_F(InputMethod, ADeadKeyShowsItsAccentAndCommitsOneCharacter)
{
    Start(u"");
    Compose(*edit, QStringLiteral(u"´"), 1);
    Commit(*edit, QStringLiteral(u"é"));
    EXPECT_EQ(State(), "é| @1,0");
    EXPECT_EQ(edit->UndoList().Count(), 1);
}

TEST_F(InputMethod, ReplacementGoesAsOneDeletionBeforeTheCommit)
{
    Start(u"int fo;", Point(6, 0));
    Commit(*edit, QStringLiteral("foo"), -2, 2);
    EXPECT_EQ(State(), "int foo;| @7,0");
    ASSERT_EQ(edit->UndoList().Count(), 4);  // the deletion, then one record a character
    for (int i = 0; i < 3; ++i)
        Undo();
    EXPECT_EQ(State(), "int ;| @4,0");
    Undo();
    EXPECT_EQ(Line(0), u"int fo;");

    // From virtual space the range counts from the line's end, where the
    // input method was told the caret stands; a range past the line is cut.
    Start(u"ab", Point(9, 0));
    Commit(*edit, QStringLiteral("X"), -1, 5);
    EXPECT_EQ(Line(0), u"aX");

    Start(u"abc", Point(3, 0));  // a read-only control drops commits silently
    edit->SetReadOnly(true);
    const Integer records = edit->UndoList().Count();
    Commit(*edit, QStringLiteral("x"));
    Commit(*edit, QStringLiteral("y"), -2, 2);
    EXPECT_EQ(edit->Text(), u"abc\r\n");
    EXPECT_EQ(edit->UndoList().Count(), records);
    EXPECT_FALSE(edit->Modified());
}

TEST_F(InputMethod, PreEditShowsUnderlinedAtTheCaretAndLeavesTheText)
{
    Start(u"ab", Point(4, 0));
    int changes = 0;
    edit->SetOnChange([&](TObject*) { ++changes; });
    const TPoint origin = CaretCell();
    const QRect plainCaret = Query(*edit, Qt::ImCursorRectangle).toRect();
    Compose(*edit, QStringLiteral("nih"), 1);
    // Shown, its underline as wide as its three letters, and nowhere in the text.
    const Integer width = 3 * edit->GetCharWidth(), underline = origin.Y + edit->GetLineWidth() - 1;
    const TRect row = Rect(origin.X, underline, origin.X + width, underline + 1);
    EXPECT_EQ(CountPixels(Render(*edit), row, Drawn(clWindowText)), width);
    EXPECT_EQ(edit->Text(), u"ab\r\n");
    EXPECT_EQ(edit->UndoList().Count(), 0);
    EXPECT_FALSE(edit->Modified());
    EXPECT_EQ(changes, 0);
    // The caret block stands at the composition's cursor, behind its first letter.
    EXPECT_EQ(GetCaretInfo().Pos, Point(origin.X + edit->GetCharWidth(), origin.Y));

    Cancel(*edit);
    EXPECT_EQ(GetCaretInfo().Pos, origin);
    // Losing the focus ends the composition too.
    Compose(*edit, QStringLiteral("nih"), 3);
    Focus(*host.Add<TSxCodeEdit>(100, 100));
    EXPECT_EQ(Query(*edit, Qt::ImCursorRectangle).toRect(), plainCaret);
    EXPECT_EQ(edit->Text(), u"ab\r\n");
}

TEST_F(InputMethod, AnswersPutTheCandidateWindowAtTheCaret)
{
    EXPECT_TRUE(edit->Widget()->testAttribute(Qt::WA_InputMethodEnabled));
    EXPECT_TRUE(Query(*edit, Qt::ImEnabled).toBool());
    EXPECT_EQ(Query(*edit, Qt::ImHints).toInt(),
              int(Qt::ImhMultiLine | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText));
    EXPECT_EQ(Query(*edit, Qt::ImFont).value<QFont>().family(), QStringLiteral("Courier new"));

    Start(u"one\r\nbegin x", Point(9, 1));  // in virtual space behind the line
    EXPECT_EQ(Query(*edit, Qt::ImSurroundingText).toString(), QStringLiteral("begin x"));
    EXPECT_EQ(Query(*edit, Qt::ImCursorPosition).toInt(), 7);
    EXPECT_EQ(Query(*edit, Qt::ImAnchorPosition).toInt(), 7);
    const TCaretInfo caret = GetCaretInfo();
    EXPECT_EQ(Query(*edit, Qt::ImCursorRectangle).toRect(), QRect(caret.Pos.X, caret.Pos.Y, caret.Width, caret.Height));

    Compose(*edit, QStringLiteral("ka"), 2);
    const QRect composing = Query(*edit, Qt::ImCursorRectangle).toRect();
    EXPECT_EQ(composing.topLeft(), QPoint(GetCaretInfo().Pos.X, GetCaretInfo().Pos.Y));
    EXPECT_NE(composing, QRect(caret.Pos.X, caret.Pos.Y, caret.Width, caret.Height));
    Cancel(*edit);

    Select(Point(1, 1), Point(4, 1));
    EXPECT_EQ(Query(*edit, Qt::ImCursorPosition).toInt(), 4);
    EXPECT_EQ(Query(*edit, Qt::ImAnchorPosition).toInt(), 1);
    EXPECT_EQ(Query(*edit, Qt::ImCurrentSelection).toString(), QStringLiteral("egi"));
    Select(Point(1, 0), Point(4, 1));  // the anchor lies on another line
    EXPECT_EQ(Query(*edit, Qt::ImAnchorPosition).toInt(), 4);

    edit->Widget()->setEnabled(false);
    EXPECT_FALSE(Query(*edit, Qt::ImEnabled).toBool());
}

/// The reports a screen reader got about the text, joined with "; ":
/// "inserted 1 'x'", "removed 11 'y'", "updated 4 '2'>'Q'", "caret 2",
/// "selection 1-2", "read-only"; other reports are left out.
std::string Heard;
QObject* Listened = nullptr;

std::string Quoted(const QString& text) { return "'" + text.toStdString() + "'"; }

void Listen(QAccessibleEvent* event)
{
    if (event->object() != Listened)
        return;
    const auto note = [](const std::string& report) { Heard += (Heard.empty() ? "" : "; ") + report; };
    const auto at = [](int position) { return std::to_string(position) + " "; };
    if (const auto* ins = dynamic_cast<QAccessibleTextInsertEvent*>(event))
        note("inserted " + at(ins->changePosition()) + Quoted(ins->textInserted()));
    else if (const auto* rem = dynamic_cast<QAccessibleTextRemoveEvent*>(event))
        note("removed " + at(rem->changePosition()) + Quoted(rem->textRemoved()));
    else if (const auto* upd = dynamic_cast<QAccessibleTextUpdateEvent*>(event))
        note("updated " + at(upd->changePosition()) + Quoted(upd->textRemoved()) + ">" + Quoted(upd->textInserted()));
    else if (const auto* sel = dynamic_cast<QAccessibleTextSelectionEvent*>(event))
        note("selection " + std::to_string(sel->selectionStart()) + "-" + std::to_string(sel->selectionEnd()));
    else if (const auto* cur = dynamic_cast<QAccessibleTextCursorEvent*>(event))
        note("caret " + std::to_string(cur->cursorPosition()));
    else if (const auto* st = dynamic_cast<QAccessibleStateChangeEvent*>(event); st && st->changedStates().readOnly)
        note("read-only");
}

class Accessibility : public EditorTest {
protected:
    QAccessibleInterface* Interface() { return QAccessible::queryAccessibleInterface(edit->Widget()); }
    QAccessibleTextInterface& TextOf() { return *Interface()->textInterface(); }
    enum Where { At, Before, After };
};

/// Listens as a screen reader does, from the start of a test to its end.
class AccessibilityEvents : public Accessibility {
protected:
    void SetUp() override
    {
        Accessibility::SetUp();
        Interface();
        Listened = edit->Widget();
        QAccessible::installUpdateHandler(Listen);
        QAccessible::setActive(true);
        Heard.clear();
    }
    void TearDown() override
    {
        QAccessible::setActive(false);
        QAccessible::installUpdateHandler(nullptr);
        Listened = nullptr;
        Heard.clear();
    }
    /// Lets the reports that wait for the end of the event loop's turn go out.
    static void Settle() { QCoreApplication::sendPostedEvents(); }
};

TEST_F(Accessibility, RoleAndStatesFollowTheControlAndItsDataAwareKind)
{
    auto* db = host.Add<TSxDbCodeEdit>(200, 100);
    for (QWidget* widget : {db->Widget(), edit->Widget()}) {
        QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(iface, nullptr);
        EXPECT_EQ(iface->role(), QAccessible::EditableText);
        ASSERT_NE(iface->textInterface(), nullptr);
        ASSERT_NE(iface->editableTextInterface(), nullptr);
    }
    const auto states = [this] {
        const QAccessible::State st = Interface()->state();
        return std::string(st.editable ? "editable " : "") + (st.readOnly ? "read-only " : "") +
               (st.multiLine ? "multi-line " : "") + (st.focusable ? "focusable " : "") + (st.focused ? "focused" : "");
    };
    EXPECT_EQ(states(), "editable multi-line focusable focused");
    edit->SetReadOnly(true);
    EXPECT_EQ(states(), "read-only multi-line focusable focused");
}

TEST_F(Accessibility, RangesOfTextSplitALineBreakAndStopAtTheEnd)
{
    Start(u"ab\r\ncd\r\nef");
    QAccessibleTextInterface& t = TextOf();
    EXPECT_EQ(t.text(3, 6), QStringLiteral("\ncd"));
    EXPECT_EQ(t.text(9, 100), QStringLiteral("f\r\n"));
    EXPECT_EQ(t.text(5, 5), QString());
    EXPECT_EQ(Interface()->text(QAccessible::Value), QStringLiteral("ab\r\ncd\r\nef\r\n"));
    edit->SetText(u"");
    EXPECT_EQ(t.characterCount(), 0);
    EXPECT_EQ(t.cursorPosition(), 0);
}

TEST_F(Accessibility, UnitsOfTextByCharacterWordAndLine)
{
    Start(u"int foo = bar;\r\nx\U0001F642");
    using QA = QAccessible;
    const std::string pair = QString::fromUtf16(u"\U0001F642").toStdString();
    const std::tuple<Where, int, QAccessible::TextBoundaryType, std::string> cases[] = {  // the unit and its range
        // Characters: a line break and a surrogate pair are one unit each.
        {At, 14, QA::CharBoundary, "'\r\n' 14-16"},
        {At, 18, QA::CharBoundary, "'" + pair + "' 17-19"},
        {Before, 4, QA::CharBoundary, "' ' 3-4"},
        {At, 21, QA::CharBoundary, "'' -1--1"},  // the end of the text
        // Words: runs of word characters or of blanks; punctuation alone.
        {At, 5, QA::WordBoundary, "'foo' 4-7"},
        {Before, 5, QA::WordBoundary, "' ' 3-4"},
        {After, 5, QA::WordBoundary, "' ' 7-8"},
        {At, 8, QA::WordBoundary, "'=' 8-9"},
        // Lines with their break; nothing before the first or after the last.
        {At, 15, QA::LineBoundary, "'int foo = bar;\r\n' 0-16"},
        {After, 3, QA::LineBoundary, "'x" + pair + "\r\n' 16-21"},
        {Before, 21, QA::LineBoundary, "'x" + pair + "\r\n' 16-21"},
        {Before, 16, QA::LineBoundary, "'int foo = bar;\r\n' 0-16"},
        {Before, 3, QA::LineBoundary, "'' -1--1"},
        {After, 17, QA::LineBoundary, "'' -1--1"},
        {At, 2, QA::ParagraphBoundary, "'int foo = bar;\r\n' 0-16"},
        {At, 2, QA::NoBoundary, "'int foo = bar;\r\nx" + pair + "\r\n' 0-21"},
    };
    QAccessibleTextInterface& t = TextOf();
    for (const auto& [where, offset, type, unit] : cases) {
        int start = 0, end = 0;
        const QString text = where == At       ? t.textAtOffset(offset, type, &start, &end)
                             : where == Before ? t.textBeforeOffset(offset, type, &start, &end)
                                               : t.textAfterOffset(offset, type, &start, &end);
        EXPECT_EQ(Quoted(text) + " " + std::to_string(start) + "-" + std::to_string(end), unit)
            << where << " " << offset << " " << type;
    }
}

// The caret's offset, virtual space included, is checked by the random edits below.
TEST_F(Accessibility, OffsetInsideALineBreakPutsTheCaretAtTheLineEnd)
{
    Start(u"abc\r\nde");
    QAccessibleTextInterface& t = TextOf();
    for (const auto& [offset, caret] : {std::pair{2, Point(2, 0)}, {4, Point(3, 0)}, {1000, Point(2, 1)}}) {
        t.setCursorPosition(offset);
        EXPECT_EQ(Caret(), caret) << offset;
    }
}

TEST_F(Accessibility, SelectionIsReportedInOrderWhicheverWayItWasMade)
{
    Start(u"abc\r\nde");
    QAccessibleTextInterface& t = TextOf();
    EXPECT_EQ(t.selectionCount(), 0);
    int start = -1, end = -1;
    for (const bool forwards : {true, false}) {
        forwards ? Select(Point(1, 0), Point(2, 1)) : Select(Point(2, 1), Point(1, 0));
        ASSERT_EQ(t.selectionCount(), 1);
        t.selection(0, &start, &end);
        EXPECT_EQ((std::pair{start, end}), (std::pair{1, 7}));
    }

    t.setSelection(0, 6, 1);  // the caret goes to the end offset
    EXPECT_EQ(Caret(), Point(1, 0));
    EXPECT_EQ(edit->SelEnd(), Point(1, 1));
    t.selection(0, &start, &end);
    EXPECT_EQ((std::pair{start, end}), (std::pair{1, 6}));
    t.removeSelection(0);
    EXPECT_EQ(t.selectionCount(), 0);

    Select(Point(5, 0), Point(9, 0));  // both ends beyond the line's end select nothing
    EXPECT_EQ(t.selectionCount(), 0);
}

TEST_F(Accessibility, CharacterRectStandsWhereTheCaretIs)
{
    Start(u"abc\r\ndefgh", Point(2, 1));
    QAccessibleTextInterface& t = TextOf();
    const QRect rect = t.characterRect(t.cursorPosition());
    const TCaretInfo caret = GetCaretInfo();
    ASSERT_TRUE(caret.Shown);
    EXPECT_EQ(edit->Widget()->mapFromGlobal(rect.topLeft()), QPoint(caret.Pos.X, caret.Pos.Y));
    EXPECT_EQ(rect.size(), QSize(edit->GetCharWidth(), edit->GetLineWidth()));
    EXPECT_EQ(t.offsetAtPoint(rect.center()), t.cursorPosition());
    EXPECT_EQ(t.offsetAtPoint(edit->Widget()->mapToGlobal(QPoint(-5, -5))), -1);
}

TEST_F(Accessibility, EditingGoesThroughTheControl)
{
    Start(u"abc\r\nde");
    QAccessibleEditableTextInterface& e = *Interface()->editableTextInterface();
    e.insertText(4, QStringLiteral("X\r\nY"));  // inside the first break: at the end of the line
    EXPECT_EQ(edit->Text(), u"abcX\r\nY\r\nde\r\n");
    EXPECT_TRUE(edit->CanUndo());
    e.deleteText(1, 5);
    EXPECT_EQ(edit->Text(), u"a\r\nY\r\nde\r\n");
    e.replaceText(3, 4, QStringLiteral("Z"));
    EXPECT_EQ(edit->Text(), u"a\r\nZ\r\nde\r\n");

    edit->SetReadOnly(true);
    const Integer records = edit->UndoList().Count();
    e.insertText(0, QStringLiteral("no"));
    e.deleteText(0, 3);
    EXPECT_EQ(edit->Text(), u"a\r\nZ\r\nde\r\n");
    EXPECT_EQ(edit->UndoList().Count(), records);
}

TEST_F(Accessibility, OffsetsStayRightThroughRandomEdits)
{
    // The interface keeps line starts and the count up to date with each
    // change of the store; the whole text is the oracle.
    std::mt19937 random(13);
    Start(u"one\r\ntwo\r\nthree\r\nfour");
    QAccessibleTextInterface& t = TextOf();
    TStrings& lines = edit->Lines();
    for (int step = 0; step < 150; ++step) {
        const auto pick = [&](Integer n) { return Integer(random() % std::uint32_t(std::max(n, 1))); };
        const auto count = Integer(lines.Count());
        const Integer line = pick(count + 1);
        switch (random() % 4) {
        case 0: lines.Insert(line, String(std::size_t(pick(6)), u'i')); break;
        case 1: if (count > 1 && line < count) lines.Delete(line); break;
        case 2: if (line < count) lines.Put(line, String(std::size_t(pick(9)), u'p')); break;
        default: edit->SetLinePos(line); edit->SetCharPos(pick(8)); break;
        }
        const String text = edit->Text();
        ASSERT_EQ(t.text(0, t.characterCount()), QString::fromStdU16String(text)) << "step " << step;
        // The caret's line may have gone with a deleted line: then it is the end.
        std::size_t offset = text.size();
        if (Caret().Y < lines.Count()) {
            offset = std::min<std::size_t>(std::size_t(Caret().X), lines.Get(Caret().Y).size());
            for (Integer i = 0; i < Caret().Y; ++i)
                offset += lines.Get(i).size() + 2;
        }
        ASSERT_EQ(t.cursorPosition(), Integer(offset)) << "step " << step;
    }
}

TEST_F(AccessibilityEvents, EachEditReportsOnlyWhatChangedInOneTextEvent)
{
    const struct { const char16_t* text; TPoint caret; void (*edit)(TSxCodeEdit&); const char* heard; } cases[] = {
        {u"abc", Point(1, 0), [](TSxCodeEdit& e) { Type(e, QStringLiteral("x")); }, "inserted 1 'x'; caret 2"},
        // the new line takes the indent of the one above
        {u"  abc\r\nyz", Point(4, 0), [](TSxCodeEdit& e) { Press(e, Qt::Key_Return); }, "inserted 4 '\r\n  '; caret 8"},
        {u"  ab\r\n  c\r\nyz", Point(1, 2), [](TSxCodeEdit& e) { Press(e, Qt::Key_Backspace); }, "removed 11 'y'; caret 11"},
        // many lines are one event, and so is a new text that differs in one place
        {u"a\r\nb", Point(0, 1), [](TSxCodeEdit& e) { e.InsertCode(0, 1, u"1\r\n2\r\n3"); }, "inserted 1 '1\r\n2\r\n3'; caret 8"},
        {u"a1\r\n2\r\n3\r\nb", Point(0, 3), [](TSxCodeEdit& e) { e.SetText(u"a1\r\nQ\r\n3\r\nb"); }, "updated 4 '2'>'Q'; caret 0"},
        {u"abc", Point(1, 0), [](TSxCodeEdit& e) { Press(e, Qt::Key_Right, Qt::ShiftModifier); }, "caret 2; selection 1-2"},
        // a read-only control reports its state and no text
        {u"abc", Point(1, 0), [](TSxCodeEdit& e) { e.SetReadOnly(true); Type(e, QStringLiteral("x")); }, "read-only"},
        // while no screen reader listens nothing is sent, though the text model keeps up
        {u"abc", Point(1, 0),
         [](TSxCodeEdit& e) {
             QAccessible::setActive(false);
             Type(e, QStringLiteral("xy"));
             e.SetReadOnly(true);
             EXPECT_EQ(QAccessible::queryAccessibleInterface(e.Widget())->textInterface()->characterCount(), 7);
         },
         ""},
    };
    for (const auto& c : cases) {
        QAccessible::setActive(true);
        edit->SetReadOnly(false);
        Start(c.text, c.caret);
        Settle();
        Heard.clear();
        c.edit(*edit);
        Settle();
        EXPECT_EQ(Heard, c.heard) << StrToUtf8(c.text);
    }
}

TEST_F(AccessibilityEvents, AControlFreedWithAReportPendingSendsNothing)
{
    auto* other = host.Add<TSxCodeEdit>(200, 100);
    ASSERT_NE(QAccessible::queryAccessibleInterface(other->Widget()), nullptr);
    Listened = other->Widget();
    other->SetText(u"abc");
    other->SetCharPos(2);
    delete other;
    Settle();
    EXPECT_EQ(Heard, "");
}

}  // namespace
