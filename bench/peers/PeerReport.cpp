// The figures' arithmetic, the process's memory from /proc, and the table in
// plain text and in Markdown.
#include "PeerReport.h"

#include "PeerEditor.h"

#include <Qsci/qsciglobal.h>

#include <QDateTime>
#include <QFile>
#include <QFontInfo>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <fstream>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace peers {

namespace {

const char* const ControlNames[ControlCount] = {"ours", "QScintilla", "QPlainTextEdit"};

/// A field of /proc/self/status in bytes (the file gives kilobytes).
double StatusBytes(const char* field)
{
    std::ifstream status("/proc/self/status");
    std::string key;
    double kilobytes = 0;
    while (status >> key) {
        if (key == field) {
            status >> kilobytes;
            return kilobytes * 1024.0;
        }
        status.ignore(4096, '\n');
    }
    return 0;
}

QString Figure(double value, Unit unit)
{
    if (unit == Unit::BytesPerByte)
        return QString::number(value, 'f', 2);
    if (value >= 1000)
        return QString::number(value / 1000, 'f', 2) + " s";
    if (value >= 10)
        return QString::number(value, 'f', 1) + " ms";
    return QString::number(value, 'f', 2) + " ms";
}

QString CellText(const Cell& cell, Unit unit)
{
    if (cell.Figures.Empty())
        return "-";
    QString text = Figure(cell.Figures.Median(), unit);
    if (cell.Figures.Values.size() > 1)
        text += QString(" ±%1%").arg(cell.Figures.Spread() * 100, 0, 'f', 0);
    if (!cell.Note.isEmpty())
        text += " (" + cell.Note + ")";
    return text;
}

QString Ratio(const Row& row, Control peer)
{
    const Cell& ours = row.Cells[Ours];
    const Cell& other = row.Cells[peer];
    if (ours.Figures.Empty() || other.Figures.Empty() || other.Figures.Median() <= 0)
        return "-";
    if (!other.Finished)
        return "- (the peer was stopped)";
    return QString::number(ours.Figures.Median() / other.Figures.Median(), 'f', 2) + "×";
}

std::vector<QStringList> TableLines(const std::array<Row, RowCount>& rows)
{
    std::vector<QStringList> lines;
    lines.push_back({"operation", ControlNames[Ours], ControlNames[Qsci], ControlNames[Plain], "ours/QScintilla",
                     "ours/QPlainTextEdit"});
    for (const Row& row : rows)
        lines.push_back({row.Name, CellText(row.Cells[Ours], row.Kind), CellText(row.Cells[Qsci], row.Kind),
                         CellText(row.Cells[Plain], row.Kind), Ratio(row, Qsci), Ratio(row, Plain)});
    return lines;
}

QString CpuName()
{
    QFile file("/proc/cpuinfo");
    if (!file.open(QIODevice::ReadOnly))
        return "unknown";
    const QString text = QString::fromUtf8(file.readAll());
    const auto match = QRegularExpression("model name\\s*:\\s*(.*)").match(text);
    return match.hasMatch() ? match.captured(1).trimmed() : QString("unknown");
}

}  // namespace

double Samples::Median() const
{
    if (Values.empty())
        return 0;
    std::vector<double> sorted = Values;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t n = sorted.size();
    return n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
}

double Samples::Spread() const
{
    const double median = Median();
    if (Values.empty() || median <= 0)
        return 0;
    const auto [low, high] = std::minmax_element(Values.begin(), Values.end());
    return (*high - *low) / 2 / median;
}

double ResidentBytes() { return StatusBytes("VmRSS:"); }

double PeakResidentBytes() { return StatusBytes("VmHWM:"); }

void ResetPeak()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    std::ofstream("/proc/self/clear_refs") << "5";
}

Machine Machine::ThisOne()
{
    Machine m;
    m.Date = QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm");
    m.Cpu = CpuName();
    m.Cores = QThread::idealThreadCount();
    m.Qt = qVersion();
    m.QScintilla = QSCINTILLA_VERSION_STR;
    const QFontInfo font(MonospaceFont());
    m.Font = QString("%1, %2 px").arg(font.family()).arg(font.pixelSize());
    return m;
}

Report::Report()
{
    const char* names[RowCount] = {
        "load the big file",
        "resident memory after the load (bytes per byte of file)",
        "peak memory during the load (bytes per byte of file)",
        "paint at the top",
        "paint at line 900,000",
        "jump from the top to line 900,000 and paint",
        "type a character at line 500,000",
        "type a character at line 50 of 100",
        "Enter at line 500,000",
        "Enter at line 50 of 100",
        "Backspace joining line 500,001 to 500,000",
        "Backspace joining line 51 to 50 of 100",
        "find the last line's word, case-sensitive",
        "find the last line's word, any case",
        "replace-all of 10,000 hits in 100,000 lines",
        "paint a view on a line of 1,000,000 characters",
        "type a character at the end of that line",
        "the paint of a character typed at line 500,000, in the event loop (ours: coPartialPaint)",
    };
    for (std::size_t i = 0; i < FRows.size(); ++i)
        FRows[i].Name = names[i];
    FRows[ResidentAfterLoad].Kind = Unit::BytesPerByte;
    FRows[PeakDuringLoad].Kind = Unit::BytesPerByte;
}

std::vector<QString> Report::Goals() const
{
    const auto median = [this](RowId row, Control c) { return FRows[row].Cells[c].Figures.Median(); };
    const auto fasterPeer = [&](RowId row) {
        double best = -1;
        for (const Control c : {Qsci, Plain})
            if (FRows[row].Cells[c].Finished && !FRows[row].Cells[c].Figures.Empty())
                best = best < 0 ? median(row, c) : std::min(best, median(row, c));
        return best;
    };
    std::vector<QString> goals;
    const auto check = [&](bool holds, const QString& text) { goals.push_back((holds ? "holds: " : "MISSED: ") + text); };
    const auto atMost = [&](RowId row, double limit, const QString& what) {
        check(median(row, Ours) <= limit,
              QString("%1: %2 against at most %3").arg(what, Figure(median(row, Ours), FRows[row].Kind),
                                                        Figure(limit, FRows[row].Kind)));
    };
    atMost(LoadTime, median(LoadTime, Qsci) / 2, "load, at most half of QScintilla's");
    atMost(ResidentAfterLoad, 2.5, "resident memory after the load");
    atMost(PeakDuringLoad, 4.0, "peak memory during the load");
    for (const RowId row : {PaintTop, PaintDeep})
        atMost(row, fasterPeer(row), FRows[row].Name + ", no slower than the faster peer");
    atMost(JumpDeep, 2 * median(PaintDeep, Ours), "jump with its paint, at most twice a steady paint");
    for (const auto& [big, small] : {std::pair{TypeBig, TypeSmall}, {EnterBig, EnterSmall}, {BackspaceBig, BackspaceSmall}}) {
        atMost(big, 1.2 * median(small, Ours), FRows[big].Name + ", at most 1.2 times the small text's");
        atMost(big, fasterPeer(big), FRows[big].Name + ", no slower than the faster peer");
    }
    atMost(TypePaintInLoop, 0.3, FRows[TypePaintInLoop].Name + ", at most 0.3 ms");
    atMost(TypePaintInLoop, fasterPeer(TypePaintInLoop), FRows[TypePaintInLoop].Name + ", no slower than the faster peer");
    for (const RowId row : {FindMatchCase, FindAnyCase})
        atMost(row, median(row, Qsci) / 2, FRows[row].Name + ", at most half of QScintilla's");
    check(FRows[ReplaceAllRow].Cells[Ours].Finished && median(ReplaceAllRow, Ours) <= fasterPeer(ReplaceAllRow),
          QString("replace-all finishes, no slower than the faster peer that finishes: %1 against %2")
              .arg(Figure(median(ReplaceAllRow, Ours), Unit::Milliseconds),
                   Figure(fasterPeer(ReplaceAllRow), Unit::Milliseconds)));
    check(median(LongLinePaint, Ours) < fasterPeer(LongLinePaint),
          QString("long-line paint faster than both peers: %1 against %2")
              .arg(Figure(median(LongLinePaint, Ours), Unit::Milliseconds),
                   Figure(fasterPeer(LongLinePaint), Unit::Milliseconds)));
    return goals;
}

void Report::Print(std::FILE* out, const Machine& machine, const QString& command) const
{
    const std::vector<QStringList> lines = TableLines(FRows);
    std::vector<qsizetype> widths(std::size_t(lines[0].size()), 0);
    for (const QStringList& line : lines)
        for (qsizetype i = 0; i < line.size(); ++i)
            widths[std::size_t(i)] = std::max(widths[std::size_t(i)], line[i].size());
    std::fprintf(out, "%s, %d cores (%s), Qt %s, QScintilla %s, font %s\n%s\n\n", qPrintable(machine.Date),
                 machine.Cores, qPrintable(machine.Cpu), qPrintable(machine.Qt), qPrintable(machine.QScintilla),
                 qPrintable(machine.Font), qPrintable(command));
    for (const QStringList& line : lines) {
        for (qsizetype i = 0; i < line.size(); ++i)
            std::fprintf(out, "%s  ", qPrintable(line[i].leftJustified(widths[std::size_t(i)])));
        std::fprintf(out, "\n");
    }
    std::fprintf(out, "\n");
    for (const QString& goal : Goals())
        std::fprintf(out, "%s\n", qPrintable(goal));
}

QString Report::Markdown(const Machine& machine, const QString& command) const
{
    QString md;
    md += QString("Measured %1 on %2 cores (%3), Qt %4, QScintilla %5, font %6, with `%7`. "
                  "Each figure is the median of the runs, ± half their range; "
                  "the three controls take turns in every run.\n\n")
              .arg(machine.Date)
              .arg(machine.Cores)
              .arg(machine.Cpu, machine.Qt, machine.QScintilla, machine.Font, command);
    const std::vector<QStringList> lines = TableLines(FRows);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        md += "| " + lines[i].join(" | ") + " |\n";
        if (i == 0)
            md += "|---|---:|---:|---:|---:|---:|\n";
    }
    md += "\n";
    for (const QString& goal : Goals())
        md += "- " + goal + "\n";
    return md;
}

}  // namespace peers
