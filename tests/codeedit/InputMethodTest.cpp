// Input methods: commits go the way of typed characters, the text being
// composed shows at the caret and nowhere in the text, and the control's
// answers put the candidate window at the caret.
#include "codeedit/EditorFixture.h"
#include "platform/Caret.h"

#include <QCoreApplication>
#include <QFont>
#include <QInputMethodEvent>
#include <QInputMethodQueryEvent>
#include <QTextCharFormat>

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
    EXPECT_EQ(composing.left(), caret.Pos.X + 2 * edit->GetCharWidth());
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

}  // namespace
