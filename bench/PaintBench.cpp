// One paint of an 800 by 600 control over a million-line Pascal text, at the
// top and at line 900,000: a paint tokenizes only the visible lines, so the
// two must cost the same. The same paint with the line numbers, the current
// line and bracket matching on, with the caret at a bracket of a line
// whose partner is missing, so that the search runs to its bound. With
// folding, a text of ten-line blocks painted with every block open and with
// every block folded: a view of folded blocks costs no more.
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"

#include <QImage>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

using namespace sx;

namespace {

constexpr int LineCount = 1'000'000;
constexpr int LoneBracketLine = 900'005;

String StatementLine(int i)
{
    const String n = IntToStr(i);
    return u"  Value" + n + u" := Compute(" + n + u", 'text') + 1.5; // step";
}

/// Every tenth line a comment, and the lone bracket.
String CommentedLine(int i)
{
    if (i == LoneBracketLine)
        return u"  Pending := (";
    return i % 10 == 0 ? u"{ block " + IntToStr(i) + u" }" : StatementLine(i);
}

/// Blocks of ten lines: "begin", eight statements, "end;".
String BlockLine(int i)
{
    const int inBlock = i % 10;
    return inBlock == 0 ? String(u"begin") : inBlock == 9 ? String(u"end;") : StatementLine(i);
}

/// A window with one control over a million lines, built once for all runs.
struct Fixture {
    explicit Fixture(const std::function<String(int)>& lineOf, int count = LineCount)
    {
        window.resize(800, 600);
        edit = new TSxCodeEdit(nullptr);
        edit->Widget()->setParent(&window);
        edit->SetBounds(0, 0, 800, 600);
        edit->SetParser(new TSxCodePascalParser(edit));
        TStringList lines;
        lines.BeginUpdate();
        for (int i = 0; i < count; ++i)
            lines.Add(lineOf(i));
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
    static Fixture fixture(CommentedLine);
    return fixture;
}

Fixture& SharedBlocks()
{
    static Fixture fixture(BlockLine);
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

/// Line 900,000 at the top, with every block open or every block folded.
void PaintBlocks(benchmark::State& state, bool folded)
{
    Fixture& f = SharedBlocks();
    f.edit->SetExtOptions({TSxCodeExtOption::coFolding});
    if (folded)
        f.edit->FoldAll();
    f.edit->VScrollBar().SetPosition(folded ? 90'000 : 900'000);
    f.edit->Widget()->render(&f.screen);
    for (auto _ : state) {
        f.edit->Widget()->render(&f.screen);
        benchmark::DoNotOptimize(f.screen.constBits());
    }
    f.edit->UnfoldAll();
}

/// With exact colours, jumps between the top and line 900,000, each with its
/// paint, once the line states are scanned (as the control's posted slices
/// leave them).
void BM_JumpWithExactColours(benchmark::State& state)
{
    Fixture& f = Shared();
    f.edit->SetExtOptions({TSxCodeExtOption::coExactColors});
    f.edit->VScrollBar().SetPosition(LineCount - 1);
    f.edit->Widget()->render(&f.screen);  // catches up with every line state
    int top = 0;
    for (auto _ : state) {
        f.edit->VScrollBar().SetPosition(top);
        f.edit->Widget()->render(&f.screen);
        benchmark::DoNotOptimize(f.screen.constBits());
        top = top == 0 ? 900'000 : 0;
    }
    f.edit->SetExtOptions({});
}

/// With coLongLines, a view of a line of a million characters at column 0
/// and at column 999,000: what lies left of the view is skipped, not drawn.
void BM_PaintLongLineAtColumn(benchmark::State& state)
{
    static Fixture f(
        [](int) {
            String line;
            for (int n = 0; line.size() < 1'000'000; ++n)
                line += u"Value := Compute(" + IntToStr(n) + u", 'text') + 1.5; ";
            return line;
        },
        1);
    f.edit->SetExtOptions({TSxCodeExtOption::coLongLines});
    f.edit->HScrollBar().SetPosition(Integer(state.range(0)));
    for (auto _ : state) {
        f.edit->Widget()->render(&f.screen);
        benchmark::DoNotOptimize(f.screen.constBits());
    }
}

void BM_PaintBlocksOpen(benchmark::State& state) { PaintBlocks(state, false); }
void BM_PaintBlocksFolded(benchmark::State& state) { PaintBlocks(state, true); }

}  // namespace

BENCHMARK(BM_JumpWithExactColours)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLongLineAtColumn)->Arg(0)->Arg(999'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintBlocksOpen)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintBlocksFolded)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintTopOfMillionLines)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine900000OfMillionLines)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine900000AllOptions)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine900000LoneBracket)->Unit(benchmark::kMicrosecond);
