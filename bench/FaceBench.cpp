// The Qt face against the control's own calls, on a million-line text:
// setText and text() through SxCodeEditor beside SetText and Text() on the
// control (the face should cost at most a fifth more), and a caret move with
// and without a slot on cursorPositionChanged.
#include "codeedit/uSxCodeEdit.h"
#include "face/SxCodeEditor.h"
#include "platform/QtConvert.h"

#include <benchmark/benchmark.h>

using namespace sx;

namespace {

constexpr int LineCount = 1'000'000;

QString MillionLines()
{
    QString text;
    for (int i = 0; i < LineCount; ++i)
        text += QStringLiteral("  Value%1 := Compute(%1, 'x');\n").arg(i);
    return text;
}

const QString& Text()
{
    static const QString text = MillionLines();
    return text;
}

void BM_ControlSetText(benchmark::State& state)
{
    SxCodeEditor editor;
    const String text = FromQString(Text());
    for (auto _ : state)
        editor.control()->SetText(text);
}

void BM_FaceSetText(benchmark::State& state)
{
    SxCodeEditor editor;
    for (auto _ : state)
        editor.setText(Text());
}

void BM_ControlText(benchmark::State& state)
{
    SxCodeEditor editor;
    editor.setText(Text());
    for (auto _ : state)
        benchmark::DoNotOptimize(editor.control()->Text());
}

void BM_FaceText(benchmark::State& state)
{
    SxCodeEditor editor;
    editor.setText(Text());
    for (auto _ : state)
        benchmark::DoNotOptimize(editor.text());
}

/// A caret move down and back up through the face, with a slot on the
/// signal (range 1) or none (range 0).
void BM_FaceCaretMove(benchmark::State& state)
{
    SxCodeEditor editor;
    editor.setText(Text());
    int heard = 0;
    if (state.range(0) != 0)
        QObject::connect(&editor, &SxCodeEditor::cursorPositionChanged, [&](int, int) { ++heard; });
    for (auto _ : state) {
        editor.setCursorPosition(LineCount / 2, 3);
        editor.setCursorPosition(0, 0);
    }
    benchmark::DoNotOptimize(heard);
}

void BM_ControlCaretMove(benchmark::State& state)
{
    SxCodeEditor editor;
    editor.setText(Text());
    TSxCodeEdit& edit = *editor.control();
    for (auto _ : state) {
        edit.SetLinePos(LineCount / 2);
        edit.SetCharPos(3);
        edit.SetLinePos(0);
        edit.SetCharPos(0);
    }
}

}  // namespace

BENCHMARK(BM_ControlSetText)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_FaceSetText)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ControlText)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_FaceText)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ControlCaretMove)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FaceCaretMove)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
