// Stress runs of the control at sizes no test goes to: 100,000 seeded random
// edits with undo on a text of a million lines, and the search and replace
// engine on one line of a million characters, stepping hit by hit and
// replacing all. Each reports its time per step and the peak memory of the
// process, so that a cost that grows with the text shows in the figures.
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "codeedit/uSxCodeEdit.h"
#include "platform/Dialogs.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <fstream>
#include <random>
#include <string>

using namespace sx;

namespace {

/// The peak resident memory of the process so far, in MiB.
double PeakMemoryMiB()
{
    std::ifstream status("/proc/self/status");
    std::string key;
    while (status >> key) {
        if (key == "VmHWM:") {
            double kib = 0;
            status >> kib;
            return kib / 1024.0;
        }
        status.ignore(1 << 20, '\n');
    }
    return 0;
}

void FillLines(TStrings& lines, int count)
{
    lines.BeginUpdate();
    for (int i = 0; i < count; ++i)
        lines.Add(u"  Value" + IntToStr(i) + u" := Compute(" + IntToStr(i) + u", 'text');");
    lines.EndUpdate();
}

void BM_RandomEditsWithUndo(benchmark::State& state)
{
    const auto lineCount = Integer(state.range(0));
    const auto edits = int(state.range(1));
    int staleRecords = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto* edit = new TSxCodeEdit(nullptr);
        edit->SetBounds(0, 0, 800, 600);
        FillLines(edit->Lines(), lineCount);
        std::mt19937 random(42);
        state.ResumeTiming();
        for (int i = 0; i < edits; ++i) {
            switch (random() % 8) {
            case 0:
                edit->SetLinePos(Integer(random() % unsigned(lineCount)));
                edit->SetCharPos(Integer(random() % 40));
                break;
            case 1: SendMessage(edit, WM_CHAR, 13); break;
            case 2: SendMessage(edit, WM_CHAR, 8); break;
            case 3:
                try {
                    SendMessage(edit, WM_UNDO);
                } catch (const EListError&) {
                    ++staleRecords;  // a record for a line that an edit since has taken away
                }
                break;
            case 4:
                edit->SetSelEnd(Point(Integer(random() % 40), edit->LinePos() + Integer(random() % 3)));
                SendMessage(edit, WM_CHAR, u'x');
                break;
            default: SendMessage(edit, WM_CHAR, Char(u'a' + random() % 26)); break;
            }
        }
        benchmark::DoNotOptimize(edit->Lines().Count());
        state.PauseTiming();
        delete edit;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(std::int64_t(edits) * state.iterations());
    state.counters["peak_MiB"] = PeakMemoryMiB();
    state.counters["stale_undo_records"] = staleRecords;
}

/// A control holding one line of lineLength characters with `hits`
/// occurrences of "Needle" spread evenly, its dialog filled in once.
struct LongLine {
    LongLine(Integer lineLength, Integer hits, const String& replaceWith, TModalResult result)
    {
        String line(std::size_t(lineLength), u'.');
        const Integer step = lineLength / (hits + 1);
        for (Integer h = 1; h <= hits; ++h)
            line.replace(std::size_t(h * step), 6, u"Needle");
        edit = new TSxCodeEdit(nullptr);
        edit->SetBounds(0, 0, 800, 600);
        edit->Lines().Add(line);
        SetMsgBoxHook([this](TMsgBoxKind, const String&, const String&) {
            chainEnded = true;
            return idOk;
        });
        SetShowModalHook([&](TForm& form) {
            auto& dialog = static_cast<TFrmCodeEditSearchReplaceDlg&>(form);
            dialog.edtTextToFind()->SetText(u"Needle");
            dialog.edtReplaceWith->SetText(replaceWith);
            dialog.rgOrigin()->SetItemIndex(0);
            form.SetModalResult(result);
        });
        SendMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, replaceWith.empty() ? 0 : 1);
        SetShowModalHook(nullptr);
        QCoreApplication::removePostedEvents(edit->MessageTarget());
        edit->SetLinePos(0);
        edit->SetCharPos(0);
    }
    ~LongLine()
    {
        SetMsgBoxHook(nullptr);
        delete edit;
    }
    TSxCodeEdit* edit;
    bool chainEnded = false;
};

/// Find again from hit to hit along the line: linear when each pass starts
/// at the caret, quadratic if a pass rescanned the line from its start.
void BM_FindEachHitOnALongLine(benchmark::State& state)
{
    const auto hits = Integer(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        LongLine setup(Integer(state.range(0)), hits, String(), mrOk);
        state.ResumeTiming();
        for (Integer h = 0; h < hits; ++h) {
            PostMessage(setup.edit, uSxCodeEdit::WM_SX_SEARCHREPLACE);
            ProcessPostedMessages();
        }
        if (setup.edit->CharPos() < Integer(state.range(0)) / 2)
            state.SkipWithError("the passes did not walk the line");
    }
    state.SetItemsProcessed(std::int64_t(hits) * state.iterations());
    state.counters["peak_MiB"] = PeakMemoryMiB();
}

/// Replace-all along the line: each replacement rewrites the line once, so
/// the cost per hit follows the line's length and not the number of hits.
void BM_ReplaceAllOnALongLine(benchmark::State& state)
{
    const auto hits = Integer(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        LongLine setup(Integer(state.range(0)), hits, u"Pin", mrYesToAll);
        state.ResumeTiming();
        PostMessage(setup.edit, uSxCodeEdit::WM_SX_SEARCHREPLACE);
        while (!setup.chainEnded)
            ProcessPostedMessages();
        if (setup.edit->Lines().Get(0).find(u"Needle") != String::npos)
            state.SkipWithError("a hit was left");
    }
    state.SetItemsProcessed(std::int64_t(hits) * state.iterations());
    state.counters["peak_MiB"] = PeakMemoryMiB();
}

}  // namespace

BENCHMARK(BM_RandomEditsWithUndo)->Args({1'000'000, 100'000})->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_FindEachHitOnALongLine)
    ->Args({1'000'000, 1'000})
    ->Args({1'000'000, 10'000})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(BM_ReplaceAllOnALongLine)
    ->Args({1'000'000, 1'000})
    ->Args({1'000'000, 4'000})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
