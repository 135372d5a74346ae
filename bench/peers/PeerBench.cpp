// peer_bench: our control beside QScintilla and QPlainTextEdit, on the same
// generated Pascal texts, in one process and one run. Every operation goes
// through the control's public interface and is followed, inside the timing,
// by a render of the whole view into an image. The three controls take
// turns in every run, their order turned by one each time, so that the
// machine's noise falls on all of them alike; one untimed run goes first,
// but for replace-all.
//
//   peer_bench [--runs N] [--markdown FILE] [--dir DIR] [--seed N] [--texts-only]
//              [--only ours,QScintilla,QPlainTextEdit] [--parts load,big,small,replace,longline]
#include "PeerEditor.h"
#include "PeerReport.h"
#include "PeerText.h"

#include "codeedit/SxPackage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QLocale>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>

using namespace peers;

namespace {

struct Options {
    int Runs = 7;
    /// Runs of the rows that take seconds each: loads and replace-all.
    int LongRuns = 3;
    QString MarkdownFile;
    QString Dir;
    std::uint64_t Seed = 20240611;
    /// Writes the texts and stops, for a look at them.
    bool TextsOnly = false;
    /// Measures only the controls of these names, separated by commas (for a
    /// profiler), when set.
    QString Only;
    /// The groups of rows to measure: load, big, small, replace, longline.
    QStringList Parts = {"load", "big", "small", "replace", "longline"};
    qint64 ReplaceTimeoutMs = 60'000;
};

using Factory = std::unique_ptr<PeerEditor> (*)();
const Factory Factories[ControlCount] = {MakeSxEditor, MakeQsciEditor, MakePlainEditor};
using Editors = std::array<std::unique_ptr<PeerEditor>, ControlCount>;

constexpr int DeepLine = 900'000;
constexpr int MiddleLine = 500'000;
constexpr int SmallTextLine = 50;

double TimeMs(const std::function<void()>& work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return double(clock.nsecsElapsed()) / 1e6;
}

/// The controls measured: all three, or those that --only names.
bool Selected(Control c);

/// Runs measure for every control runs times, after one untimed run unless
/// told otherwise; the order of the controls turns by one each run.
void Interleave(int runs, const std::function<void(Control, bool counted)>& measure, bool warmUp = true)
{
    for (int run = warmUp ? 0 : 1; run <= runs; ++run)
        for (int k = 0; k < ControlCount; ++k)
            if (Selected(Control((run + k) % ControlCount)))
                measure(Control((run + k) % ControlCount), run > 0);
}

Editors LoadAll(const QString& path)
{
    Editors editors;
    for (int k = 0; k < ControlCount; ++k) {
        if (!Selected(Control(k)))
            continue;
        editors[std::size_t(k)] = Factories[k]();
        editors[std::size_t(k)]->Load(path);
        Settle();
    }
    return editors;
}

/// Load time and memory: one control at a time, each made and loaded after
/// the one before was freed, so that its growth is its own.
void MeasureLoad(Report& report, const PeerTexts& t, const Options& o)
{
    Interleave(o.LongRuns, [&](Control c, bool counted) {
        auto editor = Factories[c]();
        ResetPeak();
        const double before = ResidentBytes();
        const double ms = TimeMs([&] {
            editor->Load(t.BigPath);
            Settle();
        });
        const auto bytes = double(t.BigBytes);
        if (counted) {
            report[LoadTime].Cells[c].Figures.Add(ms);
            report[ResidentAfterLoad].Cells[c].Figures.Add((ResidentBytes() - before) / bytes);
            report[PeakDuringLoad].Cells[c].Figures.Add((PeakResidentBytes() - before) / bytes);
        }
        editor.reset();
        Settle();
    });
}

/// A paint of the view after its setup, which is untimed.
void MeasurePaint(Report& report, RowId row, Editors& editors, int runs,
                  const std::function<void(PeerEditor&)>& setup, const std::function<void(PeerEditor&)>& action)
{
    QImage image(ViewWidth, ViewHeight, QImage::Format_RGB32);
    Interleave(runs, [&](Control c, bool counted) {
        PeerEditor& e = *editors[c];
        setup(e);
        Settle();
        const double ms = TimeMs([&] {
            action(e);
            e.Pump();
            e.Render(image);
        });
        if (counted)
            report[row].Cells[c].Figures.Add(ms);
    });
}

void MeasurePaints(Report& report, Editors& editors, const Options& o)
{
    QImage image(ViewWidth, ViewHeight, QImage::Format_RGB32);
    const auto nothing = [](PeerEditor&) {};
    MeasurePaint(report, PaintTop, editors, o.Runs, [](PeerEditor& e) { e.ScrollTo(0); }, nothing);
    MeasurePaint(report, PaintDeep, editors, o.Runs, [](PeerEditor& e) { e.ScrollTo(DeepLine); }, nothing);
    MeasurePaint(
        report, JumpDeep, editors, o.Runs,
        [&](PeerEditor& e) {
            e.ScrollTo(0);
            e.Render(image);
        },
        [](PeerEditor& e) { e.ScrollTo(DeepLine); });
}

/// The first line from `from` on that has ASCII text with a column at 8 or
/// behind between two letters of a word, followed by a line with text: where
/// the edits go, the same for all three.
struct EditSite {
    int Line = 0;
    int Column = 0;
};

EditSite FindEditSite(const PeerEditor& e, int from)
{
    for (int line = from; line + 1 < e.LineCount(); ++line) {
        const QString text = e.LineText(line);
        bool ascii = true;
        for (const QChar c : text)
            ascii = ascii && c.unicode() < 128;
        if (!ascii || e.LineText(line + 1).trimmed().isEmpty())
            continue;
        for (int column = 8; column < text.size(); ++column)
            if (text[column - 1].isLetter() && text[column].isLetter())
                return EditSite{line, column};
    }
    return EditSite{from, 0};
}

/// One key at a place of the text, timed with its paint, then undone.
void MeasureKey(Report& report, RowId row, Editors& editors, int runs, EditSite site, Qt::Key key, const QString& text)
{
    QImage image(ViewWidth, ViewHeight, QImage::Format_RGB32);
    Interleave(runs, [&](Control c, bool counted) {
        PeerEditor& e = *editors[c];
        const QString before = e.LineText(site.Line) + "\n" + e.LineText(site.Line + 1);
        e.Focus();
        e.PutCaret(site.Line, site.Column);
        Settle();
        const double ms = TimeMs([&] {
            e.Key(key, text);
            e.Pump();
            e.Render(image);
        });
        e.Undo();
        Settle();
        if (e.LineText(site.Line) + "\n" + e.LineText(site.Line + 1) != before)
            std::fprintf(stderr, "warning: %s did not undo %s at line %d\n", e.Name(),
                         qPrintable(report[row].Name), site.Line);
        if (counted)
            report[row].Cells[c].Figures.Add(ms);
    });
}

void MeasureTyping(Report& report, Editors& editors, RowId typeRow, RowId enterRow, RowId backspaceRow, int line,
                   const Options& o)
{
    const auto any = std::find_if(editors.begin(), editors.end(), [](const auto& e) { return e != nullptr; });
    const EditSite site = FindEditSite(**any, line);
    MeasureKey(report, typeRow, editors, o.Runs, site, Qt::Key_X, "x");
    MeasureKey(report, enterRow, editors, o.Runs, site, Qt::Key_Return, "\r");
    MeasureKey(report, backspaceRow, editors, o.Runs, EditSite{site.Line + 1, 0}, Qt::Key_Backspace, "\b");
}

/// A character typed at the middle line; only the paint the event loop runs
/// for it afterwards is timed.
void MeasurePaintInLoop(Report& report, Editors& editors, const Options& o)
{
    const auto any = std::find_if(editors.begin(), editors.end(), [](const auto& e) { return e != nullptr; });
    const EditSite site = FindEditSite(**any, MiddleLine);
    const auto settle = [](PeerEditor& e) {
        e.Pump();
        Settle();
        Settle();
    };
    Interleave(o.Runs, [&](Control c, bool counted) {
        PeerEditor& e = *editors[c];
        e.SetPartialPaint(true);
        e.Focus();
        e.PutCaret(site.Line, site.Column);
        settle(e);
        e.Key(Qt::Key_X, "x");
        const double ms = TimeMs([&] { settle(e); });
        e.Undo();
        settle(e);
        e.SetPartialPaint(false);
        if (counted)
            report[TypePaintInLoop].Cells[c].Figures.Add(ms);
    });
}

void MeasureFind(Report& report, Editors& editors, const PeerTexts& t, const Options& o)
{
    struct FindCase {
        RowId Row;
        QString Word;
        bool MatchCase;
    };
    for (const FindCase& find : {FindCase{FindMatchCase, FindWord, true}, FindCase{FindAnyCase, FindWord.toLower(), false}}) {
        int foundAt = 0;
        MeasurePaint(
            report, find.Row, editors, o.Runs,
            [](PeerEditor& e) {
                e.PutCaret(0, 0);
                e.ScrollTo(0);
            },
            [&](PeerEditor& e) { foundAt = e.Find(find.Word, find.MatchCase); });
        if (foundAt != t.BigLines - 1)
            std::fprintf(stderr, "warning: the last find answered line %d\n", foundAt);
    }
}

void MeasureReplaceAll(Report& report, const PeerTexts& t, const Options& o)
{
    Editors editors = LoadAll(t.ReplacePath);
    QImage image(ViewWidth, ViewHeight, QImage::Format_RGB32);
    Interleave(o.LongRuns, [&](Control c, bool counted) {
        PeerEditor& e = *editors[c];
        e.Load(t.ReplacePath);
        e.Focus();
        e.PutCaret(0, 0);
        Settle();
        bool finished = false;
        const double ms = TimeMs([&] {
            finished = e.ReplaceAll(ReplaceWord, ReplaceBy, o.ReplaceTimeoutMs);
            e.Pump();
            e.Render(image);
        });
        const int replaced = e.CountLinesWith(ReplaceBy);
        if (!counted)
            return;
        Cell& cell = report[ReplaceAllRow].Cells[c];
        cell.Figures.Add(ms);
        cell.Finished = cell.Finished && finished;
        if (!finished)
            cell.Note = QString("stopped after %1 of %2 hits").arg(replaced).arg(t.ReplaceHits);
        else if (replaced != t.ReplaceHits)
            cell.Note = QString("replaced %1 of %2 hits").arg(replaced).arg(t.ReplaceHits);
    }, false);  // a replace-all leaves nothing to warm up, and a stopped one costs a minute
}

void MeasureLongLine(Report& report, const PeerTexts& t, const Options& o)
{
    Editors editors = LoadAll(t.LongLinePath);
    MeasurePaint(
        report, LongLinePaint, editors, o.Runs,
        [](PeerEditor& e) {
            e.PutCaret(0, 0);
            e.ScrollTo(0);
        },
        [](PeerEditor&) {});
    MeasureKey(report, LongLineType, editors, o.Runs, EditSite{t.LongLine, t.LongLineLength}, Qt::Key_X, "x");
}

Options ParseOptions(const QStringList& args)
{
    Options o;
    for (qsizetype i = 1; i < args.size(); ++i) {
        if (args[i] == "--texts-only")
            o.TextsOnly = true;
        else if (i + 1 == args.size())
            break;
        else if (args[i] == "--runs")
            o.Runs = std::max(1, args[++i].toInt());
        else if (args[i] == "--markdown")
            o.MarkdownFile = args[++i];
        else if (args[i] == "--dir")
            o.Dir = args[++i];
        else if (args[i] == "--parts")
            o.Parts = args[++i].split(',');
        else if (args[i] == "--only")
            o.Only = args[++i];
        else if (args[i] == "--seed")
            o.Seed = args[++i].toULongLong();
    }
    o.LongRuns = std::max(1, std::min(o.Runs, 3));
    return o;
}

QString OnlyControl;

bool Selected(Control c)
{
    static const char* const names[ControlCount] = {"ours", "QScintilla", "QPlainTextEdit"};
    return OnlyControl.isEmpty() || OnlyControl.split(',').contains(names[c], Qt::CaseInsensitive);
}

void Progress(const char* what) { std::fprintf(stderr, "peer_bench: %s\n", what); }

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    sx::Initialize();
    const Options o = ParseOptions(QApplication::arguments());
    OnlyControl = o.Only;
    QTemporaryDir temporary;
    const QString dir = o.Dir.isEmpty() ? temporary.path() : o.Dir;

    Progress("writing the texts");
    const PeerTexts t = WritePeerTexts(dir, o.Seed);
    std::fprintf(stderr, "peer_bench: %s: %d lines, %lld bytes\n", qPrintable(t.BigPath), t.BigLines,
                 static_cast<long long>(t.BigBytes));
    if (o.TextsOnly)
        return 0;
    Report report;
    report[LoadTime].Name = QString("load %1 lines, %2 MB of UTF-8")
                                .arg(QLocale(QLocale::English).toString(t.BigLines))
                                .arg(double(t.BigBytes) / 1e6, 0, 'f', 1);
    if (o.Parts.contains("load")) {
        Progress("load");
        MeasureLoad(report, t, o);
    }
    if (o.Parts.contains("big")) {
        Progress("paint, type, find on the big text");
        Editors big = LoadAll(t.BigPath);
        MeasurePaints(report, big, o);
        MeasureTyping(report, big, TypeBig, EnterBig, BackspaceBig, MiddleLine, o);
        MeasurePaintInLoop(report, big, o);
        MeasureFind(report, big, t, o);
    }
    if (o.Parts.contains("small")) {
        Progress("type on the small text");
        Editors small = LoadAll(t.SmallPath);
        MeasureTyping(report, small, TypeSmall, EnterSmall, BackspaceSmall, SmallTextLine, o);
    }
    if (o.Parts.contains("replace")) {
        Progress("replace-all");
        MeasureReplaceAll(report, t, o);
    }
    if (o.Parts.contains("longline")) {
        Progress("long line");
        MeasureLongLine(report, t, o);
    }

    const Machine machine = Machine::ThisOne();
    const QString command = QString("build/bench/peers/peer_bench --runs %1").arg(o.Runs);
    report.Print(stdout, machine, command);
    if (!o.MarkdownFile.isEmpty()) {
        QFile file(o.MarkdownFile);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(report.Markdown(machine, command).toUtf8());
    }
    sx::Finalize();
    return 0;
}
