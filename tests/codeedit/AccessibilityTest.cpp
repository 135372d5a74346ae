// Screen reader support: the accessible interface that Qt finds for the
// control's widget (role, states, text in CR LF offsets, units of text, caret,
// selection, geometry, editing), the events a listening screen reader gets, and
// the framework's interface for any control that offers a text.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxDbCodeEdit.h"
#include "platform/Accessibility.h"
#include "platform/Caret.h"

#include <QAccessible>
#include <QCoreApplication>

#include <algorithm>
#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;

namespace {

/// One event as a screen reader would take it in.
struct Heard {
    QAccessible::Event Type = QAccessible::InvalidEvent;
    int Position = -1;  ///< change position, caret, or selection start
    int End = -1;       ///< selection end
    QString Inserted;
    QString Removed;
    bool ReadOnlyChanged = false;
};

std::vector<Heard>& Events()
{
    static std::vector<Heard> events;
    return events;
}

QObject* Listened = nullptr;

void Listen(QAccessibleEvent* event)
{
    if (event->object() != Listened)
        return;
    Heard heard;
    heard.Type = event->type();
    switch (event->type()) {
    case QAccessible::TextInserted: {
        const auto* e = static_cast<QAccessibleTextInsertEvent*>(event);
        heard.Position = e->changePosition();
        heard.Inserted = e->textInserted();
        break;
    }
    case QAccessible::TextRemoved: {
        const auto* e = static_cast<QAccessibleTextRemoveEvent*>(event);
        heard.Position = e->changePosition();
        heard.Removed = e->textRemoved();
        break;
    }
    case QAccessible::TextUpdated: {
        const auto* e = static_cast<QAccessibleTextUpdateEvent*>(event);
        heard.Position = e->changePosition();
        heard.Inserted = e->textInserted();
        heard.Removed = e->textRemoved();
        break;
    }
    case QAccessible::TextCaretMoved:
        heard.Position = static_cast<QAccessibleTextCursorEvent*>(event)->cursorPosition();
        break;
    case QAccessible::TextSelectionChanged: {
        const auto* e = static_cast<QAccessibleTextSelectionEvent*>(event);
        heard.Position = e->selectionStart();
        heard.End = e->selectionEnd();
        break;
    }
    case QAccessible::StateChanged:
        heard.ReadOnlyChanged = static_cast<QAccessibleStateChangeEvent*>(event)->changedStates().readOnly;
        break;
    default:
        break;
    }
    Events().push_back(heard);
}

std::vector<Heard> Of(QAccessible::Event type)
{
    std::vector<Heard> found;
    for (const Heard& heard : Events())
        if (heard.Type == type)
            found.push_back(heard);
    return found;
}

bool IsTextEvent(const Heard& h)
{
    return h.Type == QAccessible::TextInserted || h.Type == QAccessible::TextRemoved ||
           h.Type == QAccessible::TextUpdated;
}

class Accessibility : public EditorTest {
protected:
    QAccessibleInterface* Interface() { return QAccessible::queryAccessibleInterface(edit->Widget()); }
    QAccessibleTextInterface& TextOf() { return *Interface()->textInterface(); }

    struct Unit {
        QString Text;
        int Start, End;
    };
    enum Where { At, Before, After };
    Unit UnitOf(Where where, int offset, QAccessible::TextBoundaryType type)
    {
        Unit u{{}, 0, 0};
        QAccessibleTextInterface& t = TextOf();
        u.Text = where == At       ? t.textAtOffset(offset, type, &u.Start, &u.End)
                 : where == Before ? t.textBeforeOffset(offset, type, &u.Start, &u.End)
                                   : t.textAfterOffset(offset, type, &u.Start, &u.End);
        return u;
    }
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
        Events().clear();
    }
    void TearDown() override
    {
        QAccessible::setActive(false);
        QAccessible::installUpdateHandler(nullptr);
        Listened = nullptr;
        Events().clear();
    }
    /// Lets the reports that wait for the end of the event loop's turn go out.
    static void Settle() { QCoreApplication::sendPostedEvents(); }
};

TEST_F(Accessibility, RoleAndStatesFollowTheControl)
{
    QAccessibleInterface* iface = Interface();
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->role(), QAccessible::EditableText);
    ASSERT_NE(iface->textInterface(), nullptr);
    ASSERT_NE(iface->editableTextInterface(), nullptr);
    QAccessible::State state = iface->state();
    EXPECT_TRUE(state.editable);
    EXPECT_FALSE(state.readOnly);
    EXPECT_TRUE(state.multiLine);
    EXPECT_TRUE(state.focusable);
    EXPECT_TRUE(state.focused);

    edit->SetReadOnly(true);
    state = iface->state();
    EXPECT_TRUE(state.readOnly);
    EXPECT_FALSE(state.editable);
}

TEST_F(Accessibility, TheDataAwareControlHasTheSameInterface)
{
    auto* db = host.Add<TSxDbCodeEdit>(200, 100);
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(db->Widget());
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->role(), QAccessible::EditableText);
    ASSERT_NE(iface->textInterface(), nullptr);
}

TEST_F(Accessibility, TextCountsEveryLineBreakAsCrLf)
{
    Start(u"ab\r\ncd\r\nef");
    QAccessibleTextInterface& t = TextOf();
    EXPECT_EQ(t.characterCount(), 12);
    EXPECT_EQ(t.text(0, 12), QStringLiteral("ab\r\ncd\r\nef\r\n"));
    EXPECT_EQ(t.text(3, 6), QStringLiteral("\ncd"));
    EXPECT_EQ(t.text(2, 4), QStringLiteral("\r\n"));
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
    // Characters: a line break and a surrogate pair are one unit each.
    Unit u = UnitOf(At, 14, QA::CharBoundary);
    EXPECT_EQ(u.Text, QStringLiteral("\r\n"));
    EXPECT_EQ((std::pair{u.Start, u.End}), (std::pair{14, 16}));
    u = UnitOf(At, 18, QA::CharBoundary);
    EXPECT_EQ((std::pair{u.Start, u.End}), (std::pair{17, 19}));
    EXPECT_EQ(UnitOf(Before, 4, QA::CharBoundary).Text, QStringLiteral(" "));
    EXPECT_EQ(UnitOf(At, 21, QA::CharBoundary).Start, -1);  // the end of the text

    // Words: runs of word characters or of blanks; punctuation alone.
    u = UnitOf(At, 5, QA::WordBoundary);
    EXPECT_EQ(u.Text, QStringLiteral("foo"));
    EXPECT_EQ((std::pair{u.Start, u.End}), (std::pair{4, 7}));
    EXPECT_EQ(UnitOf(Before, 5, QA::WordBoundary).Text, QStringLiteral(" "));
    EXPECT_EQ(UnitOf(After, 5, QA::WordBoundary).Text, QStringLiteral(" "));
    EXPECT_EQ(UnitOf(At, 8, QA::WordBoundary).Text, QStringLiteral("="));
    EXPECT_EQ(UnitOf(At, 13, QA::WordBoundary).Text, QStringLiteral(";"));

    // Lines with their break; nothing before the first or after the last.
    u = UnitOf(At, 15, QA::LineBoundary);
    EXPECT_EQ(u.Text, QStringLiteral("int foo = bar;\r\n"));
    EXPECT_EQ((std::pair{u.Start, u.End}), (std::pair{0, 16}));
    u = UnitOf(After, 3, QA::LineBoundary);
    EXPECT_EQ(u.Text, QString::fromUtf16(u"x\U0001F642\r\n"));
    EXPECT_EQ((std::pair{u.Start, u.End}), (std::pair{16, 21}));
    EXPECT_EQ(UnitOf(Before, 21, QA::LineBoundary).Start, 16);
    EXPECT_EQ(UnitOf(Before, 16, QA::LineBoundary).Start, 0);
    EXPECT_EQ(UnitOf(Before, 3, QA::LineBoundary).Start, -1);
    EXPECT_EQ(UnitOf(After, 17, QA::LineBoundary).Start, -1);
    EXPECT_EQ(UnitOf(At, 2, QA::ParagraphBoundary).End, 16);
    EXPECT_EQ(UnitOf(At, 2, QA::NoBoundary).End, 21);
}

TEST_F(Accessibility, CaretOffsetMapsVirtualSpaceToTheLineEnd)
{
    Start(u"abc\r\nde", Point(1, 1));
    QAccessibleTextInterface& t = TextOf();
    EXPECT_EQ(t.cursorPosition(), 6);
    edit->SetCharPos(10);
    EXPECT_EQ(t.cursorPosition(), 7);

    t.setCursorPosition(2);
    EXPECT_EQ(Caret(), Point(2, 0));
    t.setCursorPosition(4);  // inside the line break: the end of the line
    EXPECT_EQ(Caret(), Point(3, 0));
    t.setCursorPosition(1000);
    EXPECT_EQ(Caret(), Point(2, 1));
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
    t.addSelection(0, 2);
    t.selection(0, &start, &end);
    EXPECT_EQ((std::pair{start, end}), (std::pair{0, 2}));

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
    for (int step = 0; step < 400; ++step) {
        const auto count = Integer(lines.Count());
        const auto pick = [&](Integer n) { return Integer(random() % std::uint32_t(std::max(n, 1))); };
        switch (random() % 5) {
        case 0: lines.Insert(pick(count + 1), String(std::size_t(pick(6)), u'i')); break;
        case 1: if (count > 1) lines.Delete(pick(count)); break;
        case 2: if (count > 0) lines.Put(pick(count), String(std::size_t(pick(9)), u'p')); break;
        case 3: edit->SetLinePos(pick(count)); edit->SetCharPos(pick(8)); break;
        default: t.text(pick(40), pick(40)); break;
        }
        const String text = edit->Text();
        ASSERT_EQ(t.characterCount(), Integer(text.size())) << "step " << step;
        // The caret's line may have gone with a deleted line: then it is the end.
        const TPoint caret = Caret();
        std::size_t offset = text.size();
        if (caret.Y < lines.Count()) {
            offset = std::min<std::size_t>(std::size_t(caret.X), lines.Get(caret.Y).size());
            for (Integer line = 0; line < caret.Y; ++line)
                offset += lines.Get(line).size() + 2;
        }
        ASSERT_EQ(t.cursorPosition(), Integer(offset)) << "step " << step;
    }
}

TEST_F(AccessibilityEvents, OneKeystrokeSendsOneTextEventAndOneCaretEvent)
{
    Start(u"abc", Point(1, 0));
    Settle();
    Events().clear();
    Type(*edit, QStringLiteral("x"));
    Settle();
    const auto inserted = Of(QAccessible::TextInserted);
    ASSERT_EQ(inserted.size(), 1u);
    EXPECT_EQ(inserted[0].Position, 1);
    EXPECT_EQ(inserted[0].Inserted, QStringLiteral("x"));
    const auto moved = Of(QAccessible::TextCaretMoved);
    ASSERT_EQ(moved.size(), 1u);
    EXPECT_EQ(moved[0].Position, 2);
    EXPECT_EQ(std::count_if(Events().begin(), Events().end(), IsTextEvent), 1);
    EXPECT_TRUE(Of(QAccessible::TextSelectionChanged).empty());
}

TEST_F(AccessibilityEvents, EnterAndBackspaceReportOnlyWhatChanged)
{
    Start(u"  abc\r\nyz", Point(4, 0));
    Settle();
    Events().clear();
    Press(*edit, Qt::Key_Return);  // the new line takes the indent of the one above
    Settle();
    ASSERT_EQ(Of(QAccessible::TextInserted).size(), 1u);
    EXPECT_EQ(Of(QAccessible::TextInserted)[0].Position, 4);
    EXPECT_EQ(Of(QAccessible::TextInserted)[0].Inserted, QStringLiteral("\r\n  "));

    Events().clear();
    edit->SetLinePos(2);
    edit->SetCharPos(1);
    Press(*edit, Qt::Key_Backspace);
    Settle();
    const auto removed = Of(QAccessible::TextRemoved);
    ASSERT_EQ(removed.size(), 1u);
    EXPECT_EQ(removed[0].Position, 11);
    EXPECT_EQ(removed[0].Removed, QStringLiteral("y"));
}

TEST_F(AccessibilityEvents, InsertionsAndReplacementsOfManyLinesAreOneEvent)
{
    Start(u"a\r\nb", Point(0, 1));
    Settle();
    Events().clear();
    edit->InsertCode(0, 1, u"1\r\n2\r\n3");
    Settle();
    ASSERT_EQ(std::count_if(Events().begin(), Events().end(), IsTextEvent), 1);
    EXPECT_EQ(Of(QAccessible::TextInserted)[0].Position, 1);
    EXPECT_EQ(Of(QAccessible::TextInserted)[0].Inserted, QStringLiteral("1\r\n2\r\n3"));

    Events().clear();
    edit->SetText(u"a1\r\nQ\r\n3\r\nb");
    Settle();
    const auto updated = Of(QAccessible::TextUpdated);
    ASSERT_EQ(updated.size(), 1u);
    EXPECT_EQ(updated[0].Position, 4);
    EXPECT_EQ(updated[0].Removed, QStringLiteral("2"));
    EXPECT_EQ(updated[0].Inserted, QStringLiteral("Q"));
}

TEST_F(AccessibilityEvents, SelectionAndReadOnlyChangesAreReported)
{
    Start(u"abc", Point(1, 0));
    Settle();
    Events().clear();
    {
        ShiftHeld shift(*edit);
        Press(*edit, Qt::Key_Right, Qt::ShiftModifier);
    }
    Settle();
    const auto selected = Of(QAccessible::TextSelectionChanged);
    ASSERT_EQ(selected.size(), 1u);
    EXPECT_EQ((std::pair{selected[0].Position, selected[0].End}), (std::pair{1, 2}));
    EXPECT_EQ(Of(QAccessible::TextCaretMoved).size(), 1u);

    Events().clear();
    edit->SetReadOnly(true);
    Type(*edit, QStringLiteral("x"));
    Settle();
    const auto states = Of(QAccessible::StateChanged);
    ASSERT_EQ(states.size(), 1u);
    EXPECT_TRUE(states[0].ReadOnlyChanged);
    EXPECT_EQ(std::count_if(Events().begin(), Events().end(), IsTextEvent), 0);
}

TEST_F(AccessibilityEvents, NothingIsSentWhileNoScreenReaderListens)
{
    Start(u"abc", Point(1, 0));
    Settle();
    QAccessible::setActive(false);
    Events().clear();
    Type(*edit, QStringLiteral("xy"));
    edit->SetReadOnly(true);
    Settle();
    EXPECT_TRUE(Events().empty());
    EXPECT_EQ(TextOf().characterCount(), 7);
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
    EXPECT_TRUE(Events().empty());
}

/// A text of eight characters whose units have a width of their own per
/// kind (a character 1, a word 2, a line 3, a sentence 4, a paragraph 5), so
/// that an answer shows which unit was asked for.
class FixedUnitText final : public TAccessibleText {
public:
    TTextOffset CharacterCount() override { return 8; }
    String TextBetween(TTextOffset from, TTextOffset to) override
    {
        from = std::clamp<TTextOffset>(from, 0, 8);
        return Text.substr(std::size_t(from), std::size_t(std::clamp<TTextOffset>(to, from, 8) - from));
    }
    TTextOffset CaretOffset() override { return Caret; }
    TTextRange Selection() override { return {}; }
    bool UnitAt(TTextOffset offset, TTextUnit unit, TTextRange& range) override
    {
        if (offset < 0 || offset >= 8)
            return false;
        const TTextOffset width = TTextOffset(unit) + 1;
        range = {offset / width * width, std::min<TTextOffset>(offset / width * width + width, 8)};
        return true;
    }
    TRect CharacterRect(TTextOffset offset) override
    {
        const auto left = Integer(offset) * 10;
        return Rect(left, 0, left + 10, 20);
    }
    TTextOffset OffsetAtPoint(TPoint point) override { return point.X / 10; }
    bool ReadOnly() override { return true; }
    bool MultiLine() override { return false; }
    void SetCaretOffset(TTextOffset offset) override { Caret = offset; }
    void SetSelection(TTextOffset, TTextOffset caretOffset) override { Caret = caretOffset; }
    void RemoveSelection() override {}
    void InsertText(TTextOffset, const String&) override {}
    void DeleteText(TTextOffset, TTextOffset) override {}
    void ScrollToRange(TTextOffset, TTextOffset) override {}

    String Text = u"abcdefgh";
    TTextOffset Caret = 0;
};

/// A plain framework control that offers the text above.
class TextControl : public TCustomControl {
public:
    using TCustomControl::TCustomControl;
    TAccessibleText* AccessibleText() override { return &Text; }
    FixedUnitText Text;
};

TEST(FrameworkAccessibility, AnyControlThatOffersATextGetsTheInterface)
{
    Host host;
    auto* control = host.Add<TextControl>(100, 40);
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(control->Widget());
    ASSERT_NE(iface, nullptr);
    ASSERT_NE(iface->textInterface(), nullptr);
    EXPECT_TRUE(iface->state().readOnly);
    EXPECT_FALSE(iface->state().multiLine);
    QAccessibleTextInterface& t = *iface->textInterface();

    // Each of Qt's boundaries asks for the unit of its own kind.
    const std::pair<QAccessible::TextBoundaryType, QString> units[] = {
        {QAccessible::CharBoundary, QStringLiteral("f")},     {QAccessible::WordBoundary, QStringLiteral("ef")},
        {QAccessible::LineBoundary, QStringLiteral("def")},   {QAccessible::SentenceBoundary, QStringLiteral("efgh")},
        {QAccessible::ParagraphBoundary, QStringLiteral("fgh")}, {QAccessible::NoBoundary, QStringLiteral("abcdefgh")},
    };
    int start = 0, end = 0;
    for (const auto& [type, expected] : units)
        EXPECT_EQ(t.textAtOffset(5, type, &start, &end), expected) << int(type);

    // The units before and after come from the same questions.
    EXPECT_EQ(t.textBeforeOffset(5, QAccessible::WordBoundary, &start, &end), QStringLiteral("cd"));
    EXPECT_EQ(t.textAfterOffset(5, QAccessible::WordBoundary, &start, &end), QStringLiteral("gh"));
    EXPECT_EQ((std::pair{start, end}), (std::pair{6, 8}));
    EXPECT_EQ(t.textAfterOffset(6, QAccessible::WordBoundary, &start, &end), QString());
    EXPECT_EQ(t.textBeforeOffset(-1, QAccessible::CharBoundary, &start, &end), QStringLiteral("h"));

    // Client pixels become screen pixels and back.
    const QRect cell = t.characterRect(3);
    EXPECT_EQ(control->Widget()->mapFromGlobal(cell.topLeft()), QPoint(30, 0));
    EXPECT_EQ(t.offsetAtPoint(cell.center()), 3);
    t.setCursorPosition(4);
    EXPECT_EQ(t.cursorPosition(), 4);
}

}  // namespace
