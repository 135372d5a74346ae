// One paint of an 800 by 600 control over a million-line Pascal text, at the
// top and at line 900,000: a paint tokenizes only the visible lines, so the
// two must cost the same. The same paint with the line numbers, the current
// line and bracket matching on, with the caret at a bracket of a line
// whose partner is missing, so that the search runs to its bound.
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"

#include <QImage>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <memory>

using namespace sx;

namespace {

constexpr int LineCount = 1'000'000;
constexpr int LoneBracketLine = 900'005;

/// A window with one control over a million lines, built once for all runs.
struct Fixture {
    Fixture()
    {
        window.resize(800, 600);
        edit = new TSxCodeEdit(nullptr);
        edit->Widget()->setParent(&window);
        edit->SetBounds(0, 0, 800, 600);
        edit->SetParser(new TSxCodePascalParser(edit));
        TStringList lines;
        lines.BeginUpdate();
        for (int i = 0; i < LineCount; ++i) {
            const String n = IntToStr(i);
            if (i == LoneBracketLine)
                lines.Add(u"  Pending := (");
            else if (i % 10 == 0)
                lines.Add(u"{ block " + n + u" }");
            else
                lines.Add(u"  Value" + n + u" := Compute(" + n + u", 'text') + 1.5; // step");
        }
        lines.EndUpdate();
        edit->SetLines(lines);
        window.show();
    }
    QWidget window;
    TSxCodeEdit* edit;
    QImage screen{800, 600, QImage::Format_RGB32};
};

Fixture& Shared()
{
    static Fixture fixture;
    return fixture;
}

void PaintAt(benchmark::State& state, int topLine, TSxCodeExtOptions options = {}, TPoint caret = Point(0, 0))
{
    Fixture& f = Shared();
    f.edit->SetExtOptions(options);
    f.edit->SetLinePos(caret.Y);
    f.edit->SetCharPos(caret.X);
    f.edit->VScrollBar().SetPosition(topLine);
    f.edit->Widget()->render(&f.screen);  // the first paint stores the line states
    for (auto _ : state) {
        f.edit->Widget()->render(&f.screen);
        benchmark::DoNotOptimize(f.screen.constBits());
    }
    state.counters["top_line"] = topLine;
}

void BM_PaintTopOfMillionLines(benchmark::State& state) { PaintAt(state, 0); }
void BM_PaintLine900000OfMillionLines(benchmark::State& state) { PaintAt(state, 900'000); }

const TSxCodeExtOptions PaintOptions{TSxCodeExtOption::coLineNumbers, TSxCodeExtOption::coCurrentLine,
                                     TSxCodeExtOption::coBracketMatch};

/// The caret behind a matched bracket of a line near the top of the view.
void BM_PaintLine900000AllOptions(benchmark::State& state)
{
    PaintAt(state, 900'000, PaintOptions, Point(23, 900'001));
}

/// The caret behind a bracket whose partner is missing.
void BM_PaintLine900000LoneBracket(benchmark::State& state)
{
    PaintAt(state, 900'000, PaintOptions, Point(14, LoneBracketLine));
}

}  // namespace

BENCHMARK(BM_PaintTopOfMillionLines)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine900000OfMillionLines)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine900000AllOptions)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine900000LoneBracket)->Unit(benchmark::kMicrosecond);
