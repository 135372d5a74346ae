// Values an application may give the control that no user could, selection
// ends outside the text among them, and what the randomized editing found:
// each case as a plain test, so that it stays fixed in the ordinary suite.
// Then randomized editing itself: sessions of operations drawn from seeded
// generators, with the control's invariants checked after every step and the
// undo round trip at the end, and the sequences the fuzzer found replayed
// byte for byte. A failure prints the seed and the steps.
#include "codeedit/EditorFixture.h"
#include "platform/Clipboard.h"
#include "support/EditingSession.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>

#include <optional>
#include <random>
#include <vector>

using namespace sx;
using namespace sx::test;
using namespace sx::uSxCodeEdit;

namespace {

class Hardening : public EditorTest {
protected:
    ReportedErrors reported;
};

TEST_F(Hardening, TypingAtAColumnNoLineCanReachRaisesAndChangesNothing)
{
    Start(u"ab\r\ncd");
    edit->SetCharPos(MaxInt);
    EXPECT_EQ(edit->CharPos(), MaxInt);
    Render(*edit);  // the caret lies far outside the view

    Type(*edit, QStringLiteral("x"));  // through the event boundary, which reports it
    ASSERT_EQ(reported.Messages.size(), 1u);
    EXPECT_TRUE(reported.OutOfMemory);
    EXPECT_THROW(SendMessage(edit, WM_CHAR, u'\t'), EOutOfMemory);
    EXPECT_THROW(edit->InsertCode(0, MaxInt - 2, u"y"), EOutOfMemory);
    EXPECT_EQ(edit->Text(), u"ab\r\ncd\r\n");
    EXPECT_FALSE(edit->CanUndo());
    EXPECT_FALSE(edit->Modified());
}

TEST_F(Hardening, EndsOutsideTheTextReadDeleteAndUndoOnlyWhatLiesInside)
{
    // length: SelLength where the row looks at it, an end behind its line's end counting negatively;
    // after: the text once the selection is deleted, nullptr for no deletion; undone: whether the undo gives the text back
    const struct {
        const char16_t* text; TPoint start, end; const char16_t* selected; std::optional<Integer> length; const char16_t* after; bool undone;
    } cases[] = {
        {u"abc\r\nde\r\nfgh", Point(1, 1), Point(5, 0), u"\r\nd", 3 - 5 + 1, u"abce\r\nfgh\r\n", false},  // no spaces added
        {u"abc\r\ndef", Point(-3, 0), Point(MaxInt - 1, 0), u"abc", MaxInt, u"\r\ndef\r\n", true},  // the count saturates
        {u"abc\r\ndef", Point(-3, 0), Point(MaxInt - 1, 1), u"abc\r\ndef", MaxInt, nullptr, false},
        // Found by fuzzing: an end in front of column 0 read and recorded the
        // text from column 0 but deleted nothing, so its undo doubled the line.
        {u"abc\r\ndef", Point(1, 0), Point(-3, 0), u"a", {}, u"bc\r\ndef\r\n", true},
        // an end on a line before the first reads as no selection
        {u"abc\r\ndef", Point(2, 1), Point(0, -1), u"", 0, u"abc\r\ndef\r\n", false},
        {u"abc\r\ndef", Point(-7, -2), Point(2, 1), u"", 0, u"abc\r\ndef\r\n", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(StrToUtf8(c.text) + " " + At(c.start) + "-" + At(c.end));
        Start(c.text);
        edit->SetSelStart(c.start);
        edit->SetSelEnd(c.end);
        EXPECT_EQ(Selected(), c.selected);
        if (c.length) {
            EXPECT_EQ(edit->SelLength(), *c.length);
        }
        EXPECT_EQ(edit->SelEnd(), c.end);  // reading moves nothing
        EXPECT_FALSE(edit->Modified());
        PostMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG);  // the dialog takes its text from the selection
        ProcessPostedMessages();
        Render(*edit);
        if (!c.after)
            continue;
        String deleted;
        if (*c.selected)
            edit->DeleteSelected(ctDelete, deleted);
        else  // the key sees an anchor, the deletion no selection
            Press(*edit, Qt::Key_Delete);
        EXPECT_EQ(deleted, c.selected);
        EXPECT_EQ(edit->Text(), c.after);
        EXPECT_EQ(edit->UndoList().Count(), *c.selected ? 1 : 0);
        Undo();
        if (c.undone) {
            EXPECT_EQ(edit->Text(), String(c.text) + u"\r\n");
        }
    }
    edit->ClearSelection();
    String none = u"?";
    edit->GetSelected(none);
    EXPECT_EQ(none, u"");
    EXPECT_EQ(edit->SelLength(), 0);
    EXPECT_EQ(edit->Lines().Count(), 2);  // reading no selection adds no line
    EXPECT_TRUE(reported.Messages.empty());
}

TEST_F(Hardening, EndBeyondTheLastLineIsRepairedOnceAndThenReadsEmpty)
{
    Start(u"abc\r\ndef\r\nghi");
    edit->SetSelEnd(Point(1, 0));
    edit->SetSelStart(Point(2, 2));
    edit->Lines().Clear();
    edit->Lines().Add(u"xyz");
    EXPECT_EQ(Selected(), u"yz\r\n");
    EXPECT_EQ(edit->Lines().Count(), 2);
    EXPECT_EQ(edit->SelStart().X, MaxInt);
    EXPECT_EQ(Selected(), u"");
    EXPECT_EQ(edit->SelLength(), 0);
}

TEST_F(Hardening, BothEndsBehindTheLastLineSelectNothing)
{
    // Found by the seeded editing test: an undo record of a paste made on a
    // longer text deleted a range wholly behind the last line.
    Start(u"one\r\ntwo\r\nthree", Point(1, 2));
    Type(*edit, QStringLiteral("xy"));
    edit->Lines().Delete(2);
    edit->Lines().Delete(1);
    Undo();
    Undo();
    EXPECT_TRUE(reported.Messages.empty());
    EXPECT_EQ(edit->Text(), u"one\r\n\r\n\r\n");  // each repair step's empty line stays

    edit->SetSelStart(Point(0, 7));
    edit->SetSelEnd(Point(2, 5));
    EXPECT_EQ(Selected(), u"");
    EXPECT_EQ(edit->SelLength(), 0);
    String deleted = u"?";
    edit->DeleteSelected(ctDelete, deleted);
    EXPECT_EQ(deleted, u"");
    EXPECT_EQ(Line(0), u"one");
    EXPECT_EQ(edit->UndoList().Count(), 0);
}

TEST_F(Hardening, ARecordBehindTheLastLineRaisesTheIndexErrorAndGoes)
{
    Start(u"one\r\ntwo\r\nthree", Point(0, 2));
    Press(*edit, Qt::Key_Delete);
    edit->SetText(u"x");
    EXPECT_THROW(Undo(), EListError);
    EXPECT_FALSE(edit->CanUndo());
    EXPECT_EQ(edit->Text(), u"x\r\n");
}

TEST_F(Hardening, PasteWithAnEmptyOrNonTextClipboardInsertsNothing)
{
    Start(u"abc", Point(1, 0));
    Clipboard().Clear();
    EXPECT_FALSE(edit->CanPaste());
    SendMessage(edit, WM_PASTE);
    auto* data = new QMimeData;
    data->setData(QStringLiteral("application/x-binary"), QByteArray("\x01\x02", 2));
    QApplication::clipboard()->setMimeData(data);
    EXPECT_FALSE(edit->CanPaste());
    EXPECT_EQ(Clipboard().AsText(), u"");
    SendMessage(edit, WM_PASTE);
    QApplication::clipboard()->setImage(QImage(2, 2, QImage::Format_RGB32));
    SendMessage(edit, WM_PASTE);
    EXPECT_EQ(State(), "abc| @1,0");
    EXPECT_TRUE(reported.Messages.empty());
}

/// Runs one session over the bytes; answers whether it ended with the round trip.
bool RunSession(Host& host, const std::vector<std::uint8_t>& bytes, const std::string& name,
                TSxCodeExtOptions options = {})
{
    ByteReader in(bytes.data(), bytes.size());
    return RunEditingSession(host, in, 100, [&](const std::string& what) { ADD_FAILURE() << name << ": " << what; },
                             options);
}

/// Every extended option on, from seed 101.
const TSxCodeExtOptions AllOptions{TSxCodeExtOption::coLineNumbers, TSxCodeExtOption::coCurrentLine,
                                   TSxCodeExtOption::coBracketMatch, TSxCodeExtOption::coRedo,
                                   TSxCodeExtOption::coGroupUndo, TSxCodeExtOption::coFolding};

TEST(RandomEditing, SeededSessionsKeepTheInvariantsAndUndoToTheStart)
{
    Host host;
    int roundTrips = 0;
    for (unsigned seed = 1; seed <= 130; ++seed) {
        std::mt19937 random(seed);
        // Short sessions reach the round trip more often; long ones reach more states.
        std::vector<std::uint8_t> bytes(seed % 3 == 0 ? 600 : 120);
        for (std::uint8_t& b : bytes)
            b = std::uint8_t(random());
        roundTrips += RunSession(host, bytes, "seed " + std::to_string(seed), seed > 100 ? AllOptions : TSxCodeExtOptions{})
                          ? 1
                          : 0;
    }
    EXPECT_GT(roundTrips, 10);  // the round trip is not excluded away
}

/// Inputs the editing fuzzer found: faults fixed since, and a replay that
/// the round trip has to leave out.
TEST(RandomEditing, SequencesTheFuzzerFoundStayFixed)
{
    const std::vector<std::vector<std::uint8_t>> found = {
        // A selection from column -3 to the largest column: its length overflowed.
        {0x00, 0x63, 0xee, 0xff, 0xff, 0x62, 0x61, 0x66, 0x0d, 0x14, 0x21, 0x64, 0x02, 0x00, 0x00, 0x00, 0x69, 0x64,
         0x67},
        // Select word, Ctrl+Shift+Page Down, then a typed character.
        {0x0a, 0x20, 0x20, 0xaf, 0xaf, 0xaf, 0x4a, 0x0d, 0x2e, 0x20, 0x21, 0x69, 0x33, 0x76, 0x06, 0xeb, 0x64, 0x20,
         0x02},
        // Enter over a selection that starts behind its line's end (Shift held):
        // a replay the round trip must leave out, since the record puts the
        // text back at the line's end, in front of the tail that moved up.
        {0x02, 0xff, 0x11, 0x11, 0x11, 0x11, 0x11, 0xee, 0x00, 0x00, 0x00, 0x00, 0x21, 0xee, 0xff, 0xff, 0xff, 0xff,
         0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x00, 0x90, 0x73},
    };
    Host host;
    for (std::size_t i = 0; i < found.size(); ++i)
        RunSession(host, found[i], "found input " + std::to_string(i));
}

}  // namespace
