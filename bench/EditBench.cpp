// Typing in the middle of a million-line text against typing in a 100-line
// text: a typed character (also with typing grouped for undo), an Enter and
// a Backspace that joins two lines, each with the repaint that follows. No step of typing may walk or move the
// whole text, so the two sizes must cost about the same.
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Keys.h"

#include <QApplication>
#include <QCoreApplication>
#include <QImage>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <memory>

using namespace sx;

namespace {

/// A focused control in a window over a generated Pascal text, with the
/// caret at column 10 of the middle line; built once per size.
struct Editor {
    explicit Editor(int lineCount)
    {
        window.resize(800, 600);
        edit = new TSxCodeEdit(nullptr);
        edit->Widget()->setParent(&window);
        edit->SetBounds(0, 0, 800, 600);
        edit->SetParser(new TSxCodePascalParser(edit));
        TStringList lines;
        lines.BeginUpdate();
        for (int i = 0; i < lineCount; ++i)
            lines.Add(u"  Value" + IntToStr(i) + u" := Compute(" + IntToStr(i) + u", 'text') + 1.5; // step");
        lines.EndUpdate();
        edit->SetLines(lines);
        window.show();
        QApplication::setActiveWindow(&window);
        edit->SetFocus();
        QApplication::processEvents();
        middle = lineCount / 2;
        Home();
        Paint();
    }
    void Home()
    {
        edit->SetLinePos(middle);
        edit->SetCharPos(10);
    }
    void Key(Char c) { SendMessage(edit, WM_CHAR, c); }
    void Paint()
    {
        edit->Widget()->render(&screen);
        benchmark::DoNotOptimize(screen.constBits());
    }

    QWidget window;
    TSxCodeEdit* edit;
    int middle = 0;
    QImage screen{800, 600, QImage::Format_RGB32};
};

Editor& Shared(int lineCount)
{
    static std::map<int, std::unique_ptr<Editor>> editors;
    auto& editor = editors[lineCount];
    if (!editor)
        editor = std::make_unique<Editor>(lineCount);
    return *editor;
}

/// A typed character and its paint, with the extended options AOptions on.
void TypeCharacterWith(benchmark::State& state, TSxCodeExtOptions AOptions)
{
    Editor& e = Shared(int(state.range(0)));
    e.edit->SetExtOptions(AOptions);
    e.Paint();  // folding scans the text down to the view once, before the timing
    for (auto _ : state) {
        e.Key(u'x');
        e.Paint();
        state.PauseTiming();
        e.Key(8);
        state.ResumeTiming();
    }
    e.edit->SetExtOptions({});
}

void BM_TypeCharacter(benchmark::State& state) { TypeCharacterWith(state, {}); }

/// With coGroupUndo each character asks whether it goes on the run: no dearer.
void BM_TypeCharacterGrouped(benchmark::State& state)
{
    TypeCharacterWith(state, {TSxCodeExtOption::coGroupUndo});
}

/// With coFolding each edit rescans its line and the paint asks for the
/// regions in view: typing stays flat in the text's size.
void BM_TypeCharacterFolding(benchmark::State& state) { TypeCharacterWith(state, {TSxCodeExtOption::coFolding}); }

/// With coExactColors the paint restarts from the scanned line states.
void BM_TypeCharacterExactColours(benchmark::State& state)
{
    TypeCharacterWith(state, {TSxCodeExtOption::coExactColors});
}

void BM_Enter(benchmark::State& state)
{
    Editor& e = Shared(int(state.range(0)));
    for (auto _ : state) {
        e.Key(13);
        e.Paint();
        state.PauseTiming();
        e.Home();
        e.edit->SetLinePos(e.middle + 1);
        e.edit->SetCharPos(0);
        e.Key(8);
        e.Home();
        state.ResumeTiming();
    }
}

void BM_BackspaceJoin(benchmark::State& state)
{
    Editor& e = Shared(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        e.Key(13);
        e.edit->SetCharPos(0);
        state.ResumeTiming();
        e.Key(8);
        e.Paint();
        state.PauseTiming();
        e.Home();
        state.ResumeTiming();
    }
}

enum class Step { Type, Enter, Backspace, Down, Scroll };

/// Runs what the event loop has waiting: posted messages, then the paints
/// they asked for.
void Settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

void Prepare(Editor& e, Step step)
{
    if (step == Step::Backspace)
        e.Key(u'x');
}

void Act(Editor& e, Step step)
{
    switch (step) {
    case Step::Type: e.Key(u'x'); break;
    case Step::Enter: e.Key(13); break;
    case Step::Backspace: e.Key(8); break;
    case Step::Down: SendMessage(e.edit, WM_KEYDOWN, VK_DOWN); break;
    case Step::Scroll: e.edit->VScrollBar().SetPosition(e.edit->VScrollBar().Position() + 1); break;
    }
}

void Reverse(Editor& e, Step step)
{
    switch (step) {
    case Step::Type:
    case Step::Enter: e.Key(8); break;
    case Step::Backspace: break;
    case Step::Down: SendMessage(e.edit, WM_KEYDOWN, VK_UP); break;
    case Step::Scroll: e.edit->VScrollBar().SetPosition(e.edit->VScrollBar().Position() - 1); break;
    }
}

/// One step at the middle line (a typed character, Enter, Backspace, Down,
/// a scroll by one line), then only the paint it leaves to the event loop
/// is timed; with coPartialPaint when the third argument is 1.
void BM_PaintAfterStep(benchmark::State& state)
{
    Editor& e = Shared(int(state.range(0)));
    const auto step = Step(state.range(1));
    e.edit->SetExtOptions(state.range(2) ? TSxCodeExtOptions{TSxCodeExtOption::coPartialPaint} : TSxCodeExtOptions{});
    e.Home();
    Settle();
    for (auto _ : state) {
        Prepare(e, step);
        Settle();
        Act(e, step);
        const auto start = std::chrono::steady_clock::now();
        Settle();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        Reverse(e, step);
        Settle();
    }
    e.Home();
    e.edit->SetExtOptions({});
}

}  // namespace

BENCHMARK(BM_PaintAfterStep)
    ->ArgsProduct({{100, 1'000'000}, {0, 1, 2, 3, 4}, {0, 1}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TypeCharacter)->Arg(100)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TypeCharacterGrouped)->Arg(100)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TypeCharacterFolding)->Arg(100)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TypeCharacterExactColours)->Arg(100)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Enter)->Arg(100)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BackspaceJoin)->Arg(100)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
