// SxCodeEditor: the text, caret and selection in Qt's terms, the properties
// by name, and the signals once per action.
#include "codeedit/uSxCodeEdit.h"
#include "face/SxCodeEditor.h"
#include "support/Keyboard.h"

#include <QMetaProperty>

#include <gtest/gtest.h>

namespace sx::test {
namespace {

using namespace Qt::Literals::StringLiterals;

QString LoneSurrogateAndNul() { return u"x"_s + QChar(0xD800) + u"y"_s + QChar(0) + u"z"_s; }

struct TextCase {
    const char* name;
    QString set;
    QString text;  // what text() gives back
    int lines;
};

TEST(SxCodeEditor, TextRoundTripsLineByLine)
{
    const TextCase cases[] = {
        {"empty", u""_s, u""_s, 1},
        {"lf", u"a\nbc"_s, u"a\nbc"_s, 2},
        {"crlf and cr", u"a\r\nb\rc"_s, u"a\nb\nc"_s, 3},
        {"wide and narrow lines", u"\u00e9t\u00e9\n\u4e2d\u6587"_s, u"\u00e9t\u00e9\n\u4e2d\u6587"_s, 2},
        {"lone surrogate and nul", LoneSurrogateAndNul(), LoneSurrogateAndNul(), 1},
    };
    for (const TextCase& c : cases) {
        SCOPED_TRACE(c.name);
        SxCodeEditor editor;
        editor.setText(c.set);
        EXPECT_EQ(editor.text(), c.text);
        EXPECT_EQ(editor.lineCount(), c.lines);
        EXPECT_EQ(editor.lines(), c.text.split(u'\n'));
        EXPECT_EQ(editor.lineText(c.lines - 1), c.text.split(u'\n').last());
        EXPECT_EQ(editor.lineText(c.lines), QString());
        EXPECT_FALSE(editor.isModified());
    }
}

TEST(SxCodeEditor, InsertTextPadsAndSelectionReadsInOrder)
{
    SxCodeEditor editor;
    editor.setText(u"ab\ncd"_s);
    editor.insertText(0, 4, u"X\nY"_s);
    EXPECT_EQ(editor.text(), u"ab  X\nY\ncd"_s);

    editor.setSelection(2, 1, 0, 1);  // from behind to the front: the caret ends at the front
    EXPECT_EQ(editor.cursorPosition(), (SxTextPosition{0, 1}));
    EXPECT_EQ(editor.selection(), (SxTextRange{{0, 1}, {2, 1}}));
    EXPECT_EQ(editor.selectedText(), u"b  X\nY\nc"_s);

    editor.setCursorPosition(5, -3);  // clamped to the last line and column 0
    EXPECT_EQ(editor.cursorPosition(), (SxTextPosition{2, 0}));
    EXPECT_FALSE(editor.hasSelectedText());
    EXPECT_TRUE(editor.selection().isEmpty());
}

/// Whether the control colours no language: its parser is the plain base class.
bool IsPlain(TSxCodeEdit& edit) { return typeid(*edit.Parser()) == typeid(TSxLangParser); }

TEST(SxCodeEditor, LanguagesByNameAndSuffix)
{
    SxCodeEditor editor;
    EXPECT_EQ(SxCodeEditor::languages(), (QStringList{"pascal", "vb", "js", "xml", "sql"}));
    const struct {
        QString word;
        bool known;
        QString language;
    } cases[] = {{"SQL", true, "sql"}, {"pas", true, "pascal"}, {"vbs", true, "vb"},
                 {"cobol", false, "vb"}, {"", true, ""}};
    editor.setLanguage("pascal");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.word.toStdString());
        EXPECT_EQ(editor.setLanguage(c.word), c.known);
        EXPECT_EQ(editor.language(), c.language);
        EXPECT_EQ(IsPlain(*editor.control()), c.language.isEmpty());
    }
    EXPECT_TRUE(editor.setLanguageForFile("/tmp/page.XML"));
    EXPECT_EQ(editor.language(), "xml");
    EXPECT_FALSE(editor.setLanguageForFile("/tmp/notes.txt"));
    EXPECT_TRUE(IsPlain(*editor.control()));
}

TEST(SxCodeEditor, PropertiesByNameReachTheControl)
{
    SxCodeEditor editor;
    TSxCodeEdit& edit = *editor.control();
    const struct {
        const char* name;
        QVariant value;
        std::function<bool()> reached;
    } cases[] = {
        {"tabWidth", 4, [&] { return edit.TabIndentSize() == 4; }},
        {"rightMargin", 100, [&] { return edit.RightMargin() == 100; }},
        {"rightMarginVisible", false, [&] { return !edit.ShowRightMargin(); }},
        {"gutterVisible", false, [&] { return !edit.ShowGuttor(); }},
        {"gutterWidth", 30, [&] { return edit.GuttorWidth() == 30; }},
        {"lineNumbersVisible", true, [&] { return edit.HasExtOption(TSxCodeExtOption::coLineNumbers); }},
        {"currentLineHighlighted", true, [&] { return edit.HasExtOption(TSxCodeExtOption::coCurrentLine); }},
        {"bracketMatching", true, [&] { return edit.HasExtOption(TSxCodeExtOption::coBracketMatch); }},
        {"redoEnabled", true, [&] { return edit.HasExtOption(TSxCodeExtOption::coRedo); }},
        {"undoGrouped", true, [&] { return edit.HasExtOption(TSxCodeExtOption::coGroupUndo); }},
        {"undoLimit", 7, [&] { return edit.UndoLimit() == 7; }},
        {"readOnly", true, [&] { return edit.ReadOnly(); }},
        {"language", "js", [&] { return !IsPlain(edit); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(editor.setProperty(c.name, c.value));
        EXPECT_EQ(editor.property(c.name), c.value);
        EXPECT_TRUE(c.reached());
    }
    EXPECT_TRUE(editor.metaObject()->userProperty().name() == QByteArray("text"));
}

/// Counts of the signals text, modification, cursor, selection and
/// read-only, since the counts were last reset.
using SignalCounts = std::array<int, 5>;

void CountSignals(SxCodeEditor& editor, SignalCounts& counts)
{
    QObject::connect(&editor, &SxCodeEditor::textChanged, [&] { ++counts[0]; });
    QObject::connect(&editor, &SxCodeEditor::modificationChanged, [&] { ++counts[1]; });
    QObject::connect(&editor, &SxCodeEditor::cursorPositionChanged, [&] { ++counts[2]; });
    QObject::connect(&editor, &SxCodeEditor::selectionChanged, [&] { ++counts[3]; });
    QObject::connect(&editor, &SxCodeEditor::readOnlyChanged, [&] { ++counts[4]; });
}

TEST(SxCodeEditor, EachActionSignalsOnce)
{
    SxCodeEditor editor;
    editor.show();
    editor.setRedoEnabled(true);
    editor.setText(u"one two\ntwo three"_s);
    Focus(*editor.control());
    // Counts: text, modification, cursor, selection, read-only.
    const struct {
        const char* name;
        std::function<void()> act;
        SignalCounts counts;
    } cases[] = {
        {"typing a key", [&] { Type(*editor.control(), "x"); }, {1, 1, 1, 0, 0}},
        {"a replace of two hits", [&] { editor.replaceAll("two", "2"); }, {1, 0, 1, 0, 0}},
        {"select all", [&] { editor.selectAll(); }, {0, 0, 1, 1, 0}},
        {"cut", [&] { editor.cut(); }, {1, 0, 1, 1, 0}},
        {"marked saved", [&] { editor.setModified(false); }, {0, 1, 0, 0, 0}},
        {"read-only", [&] { editor.setReadOnly(true); }, {0, 0, 0, 0, 1}},
        {"a caret key going nowhere", [&] { Press(*editor.control(), Qt::Key_Home); }, {0, 0, 0, 0, 0}},
    };
    SignalCounts counts{};
    CountSignals(editor, counts);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        counts = {};
        c.act();
        EXPECT_EQ(counts, c.counts);
    }
}

TEST(SxCodeEditor, FoldingThroughTheWidgetSignalsEachChangeOnce)
{
    SxCodeEditor editor;
    editor.setLanguage(u"js"_s);
    editor.setFoldingEnabled(true);
    editor.setText(u"f() {\n  a();\n}\ng() {\n}"_s);
    int changes = 0;
    QObject::connect(&editor, &SxCodeEditor::foldingChanged, [&] { ++changes; });
    EXPECT_EQ(editor.foldRegionStarts(), (QList<int>{0, 3}));
    EXPECT_EQ(editor.foldRegionEnd(0), 2);
    editor.fold(1);
    EXPECT_TRUE(editor.isFolded(0));
    EXPECT_FALSE(editor.isLineVisible(2));
    editor.gotoLine(2);  // reaching a hidden line unfolds it: one more change
    EXPECT_TRUE(editor.isLineVisible(2));
    EXPECT_EQ(changes, 2);
}

TEST(SxCodeEditor, ChangesThroughTheControlAreReportedOutsideThePaint)
{
    SxCodeEditor editor;
    editor.show();
    QWidget* painted = editor.control()->Widget();
    int reports = 0;
    QObject::connect(&editor, &SxCodeEditor::textChanged, [&] {
        ++reports;
        EXPECT_FALSE(painted->paintingActive());
    });
    editor.control()->SetText(u"changed behind the widget's back");
    EXPECT_EQ(reports, 0);
    editor.grab();  // the next event the control handles reports it
    EXPECT_EQ(reports, 1);
    EXPECT_TRUE(editor.isModified());
}

TEST(SxCodeEditor, FindMovesTheSelectionFromHitToHit)
{
    SxCodeEditor editor;
    editor.setText(u"Alpha beta\nalphabet ALPHA"_s);
    using F = SxCodeEditor::FindFlag;
    const struct {
        const char* name;
        QString text;
        SxCodeEditor::FindFlags flags;
        std::vector<SxTextPosition> hits;  // the starts of the hits from the top, then none
    } cases[] = {
        {"any case", "alpha", {}, {{0, 0}, {1, 0}, {1, 9}}},
        {"case sensitive", "alpha", F::FindCaseSensitively, {{1, 0}}},
        {"whole words", "alpha", F::FindWholeWords, {{0, 0}, {1, 9}}},
        {"backward from the end", "alpha", F::FindBackward, {{1, 9}, {1, 0}, {0, 0}}},
        {"a regular expression", "[a]lpha\\b", F::FindRegularExpression, {{0, 0}, {1, 9}}},
        {"one over a line break", "beta\\s+a", F::FindRegularExpression, {{0, 6}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.flags.testFlag(F::FindBackward))
            editor.setCursorPosition(1, 14);
        else
            editor.setCursorPosition(0, 0);
        ASSERT_TRUE(editor.find(c.text, c.flags));
        for (std::size_t i = 0; i < c.hits.size(); ++i) {
            EXPECT_EQ(editor.selection().start, c.hits[i]) << "hit " << i;
            EXPECT_EQ(editor.findNext(), i + 1 < c.hits.size());
        }
    }
    editor.setCursorPosition(1, 14);
    EXPECT_TRUE(editor.find("alpha", F::FindWrapAround));
    EXPECT_EQ(editor.selection(), (SxTextRange{{0, 0}, {0, 5}}));
    EXPECT_FALSE(editor.find(""));
    EXPECT_FALSE(editor.find("(", F::FindRegularExpression));
    EXPECT_TRUE(editor.errorString().contains("missing closing parenthesis")) << editor.errorString().toStdString();
}

TEST(SxCodeEditor, ReplaceAllCountsAndUndoesAsOneStepWhenGrouped)
{
    SxCodeEditor editor;
    editor.setUndoGrouped(true);
    editor.setText(u"aXa\nXXa\nb"_s);
    EXPECT_EQ(editor.replaceAll("x", "x\nx"), 3);  // the replacement holds the text and a line break
    EXPECT_EQ(editor.text(), u"ax\nxa\nx\nxx\nxa\nb"_s);
    editor.undo();
    EXPECT_EQ(editor.text(), u"aXa\nXXa\nb"_s);
    EXPECT_EQ(editor.replaceAll("(\\w)a\\n", "$1\\t", SxCodeEditor::FindRegularExpression), 2);
    EXPECT_EQ(editor.text(), u"aX\tXX\tb"_s);
    editor.undo();

    editor.setReadOnly(true);
    EXPECT_EQ(editor.replaceAll("a", "b"), 0);
    EXPECT_EQ(editor.text(), u"aXa\nXXa\nb"_s);
}

TEST(SxCodeEditor, LargeTextThroughTheWidget)
{
    const QString line(99, u'x');
    QString text;
    for (int i = 0; i < 1'000'000; ++i)
        text += line + u'\n';  // 100 MB of text in UTF-16 units
    SxCodeEditor editor;
    editor.setText(text);
    EXPECT_EQ(editor.lineCount(), 1'000'001);
    EXPECT_EQ(editor.text(), text);
}

}  // namespace
}  // namespace sx::test
