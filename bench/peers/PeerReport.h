// Figures of the peer benchmark: samples per control and operation, the
// process's memory, the table with our ratio to each peer, and the goals.
#pragma once

#include <QString>

#include <array>
#include <cstdio>
#include <vector>

namespace peers {

/// The controls, in the columns of the table.
enum Control { Ours, Qsci, Plain, ControlCount };

enum class Unit { Milliseconds, BytesPerByte };

struct Samples {
    std::vector<double> Values;
    void Add(double v) { Values.push_back(v); }
    bool Empty() const { return Values.empty(); }
    double Median() const;
    /// Half the range between the smallest and the largest, relative to the median.
    double Spread() const;
};

struct Cell {
    Samples Figures;
    /// What the figure alone does not tell (a replace-all that was stopped).
    QString Note;
    bool Finished = true;
};

struct Row {
    QString Name;
    Unit Kind = Unit::Milliseconds;
    std::array<Cell, ControlCount> Cells;
};

/// The rows, in the order of the table.
enum RowId {
    LoadTime, ResidentAfterLoad, PeakDuringLoad, PaintTop, PaintDeep, JumpDeep,
    TypeBig, TypeSmall, EnterBig, EnterSmall, BackspaceBig, BackspaceSmall,
    FindMatchCase, FindAnyCase, ReplaceAllRow, LongLinePaint, LongLineType, TypePaintInLoop, RowCount
};

/// The process's resident memory now and at its peak since the last reset, in bytes.
double ResidentBytes();
double PeakResidentBytes();
/// Gives freed memory back to the system and starts the peak again from now.
void ResetPeak();

struct Machine {
    QString Date, Cpu, Qt, QScintilla, Font;
    int Cores = 0;
    static Machine ThisOne();
};

class Report {
public:
    Report();
    Row& operator[](RowId id) { return FRows[std::size_t(id)]; }
    const Row& operator[](RowId id) const { return FRows[std::size_t(id)]; }

    void Print(std::FILE* out, const Machine& machine, const QString& command) const;
    QString Markdown(const Machine& machine, const QString& command) const;

private:
    /// One line per goal: whether it holds in this run, with the figures.
    std::vector<QString> Goals() const;
    std::array<Row, RowCount> FRows;
};

}  // namespace peers
