// Search and replace on long texts: one find pass whose only hit lies on the
// last of a million lines, and a replace-all without prompt of 10,000 hits in
// 100,000 lines, run as the control runs it: one posted pass per hit, pumped
// until the chain ends with its not-found message. The replace-all runs twice:
// in a hidden window with only the passes pumped (the engine's own cost), and
// in a shown window under the event loop, which repaints between two passes
// as an application does. The regular-expression rows run the same with a
// pattern (coRegExpSearch) beside the plain rows.
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "codeedit/uSxCodeEdit.h"
#include "platform/Dialogs.h"

#include <QApplication>
#include <QWidget>

#include <benchmark/benchmark.h>

using namespace sx;

namespace {

enum class Pump { PostedPasses, EventLoop };

/// The text to find, and whether it is a regular expression.
struct Find {
    String Text;
    bool RegExp = false;
};
const Find Plain{u"Needle"};
const Find Pattern{u"Need(le)\\b", true};

/// A control over the lines whose dialog was filled in once, through the
/// modal-form seam, with the text to find and what to do with it.
struct SearchSetup {
    SearchSetup(const TStringList& lines, const Find& find, const String& replaceWith, TModalResult result,
                Pump pumping)
        : pump(pumping)
    {
        window.resize(800, 600);
        edit = new TSxCodeEdit(nullptr);
        edit->Widget()->setParent(&window);
        edit->SetBounds(0, 0, 800, 600);
        edit->SetLines(lines);
        if (find.RegExp)
            edit->SetExtOptions({TSxCodeExtOption::coRegExpSearch});
        if (pump == Pump::EventLoop) {
            window.show();
            QApplication::processEvents();
        }
        SetMsgBoxHook([this](TMsgBoxKind, const String&, const String&) {
            chainEnded = true;
            return idOk;
        });
        SetShowModalHook([&](TForm& form) {
            auto& dialog = static_cast<TFrmCodeEditSearchReplaceDlg&>(form);
            dialog.edtTextToFind()->SetText(find.Text);
            dialog.GetChkBxRegExp()->SetChecked(find.RegExp);
            dialog.edtReplaceWith->SetText(replaceWith);
            form.SetModalResult(result);
        });
        SendMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, replaceWith.empty() ? 0 : 1);
        SetShowModalHook(nullptr);
        QCoreApplication::removePostedEvents(edit->MessageTarget());  // the first pass is the benchmark's
    }
    ~SearchSetup()
    {
        SetMsgBoxHook(nullptr);
        delete edit;
        // What the control left in Qt's queues goes now, not into the next row's time.
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void CaretToTop()
    {
        edit->SetLinePos(0);
        edit->SetCharPos(0);
    }
    /// Posts a pass and pumps until the chain that follows it has ended.
    void Run()
    {
        chainEnded = false;
        PostMessage(edit, uSxCodeEdit::WM_SX_SEARCHREPLACE);
        while (!chainEnded) {
            if (pump == Pump::EventLoop)
                QCoreApplication::processEvents();
            else
                ProcessPostedMessages();
        }
    }

    Pump pump;
    QWidget window;
    TSxCodeEdit* edit;
    bool chainEnded = false;
};

/// A Pascal-like text with "Needle" on every hitEvery-th line, or on the
/// last line alone when hitEvery is 0.
void FillText(TStringList& lines, int lineCount, int hitEvery)
{
    lines.BeginUpdate();
    for (int i = 0; i < lineCount; ++i) {
        const bool hit = hitEvery > 0 ? i % hitEvery == 0 : i == lineCount - 1;
        lines.Add(u"  Value" + IntToStr(i) + u" := Compute(" + IntToStr(i) + (hit ? u", Needle);" : u", 'text');"));
    }
    lines.EndUpdate();
}

void FindOnTheLastLine(benchmark::State& state, const Find& find)
{
    TStringList lines;
    FillText(lines, int(state.range(0)), 0);
    SearchSetup setup(lines, find, String(), mrOk, Pump::PostedPasses);
    for (auto _ : state) {
        state.PauseTiming();
        setup.CaretToTop();
        state.ResumeTiming();
        PostMessage(setup.edit, uSxCodeEdit::WM_SX_SEARCHREPLACE);
        ProcessPostedMessages();
    }
    if (setup.edit->LinePos() != state.range(0) - 1)
        state.SkipWithError("the hit on the last line was not found");
}

void ReplaceAll(benchmark::State& state, const Find& find, Pump pump)
{
    TStringList lines;
    FillText(lines, int(state.range(0)), 10);
    SearchSetup setup(lines, find, u"Pin", mrYesToAll, pump);
    for (auto _ : state) {
        state.PauseTiming();
        setup.edit->SetLines(lines);
        setup.CaretToTop();
        state.ResumeTiming();
        setup.Run();
    }
    if (setup.edit->Lines().Get(Integer(state.range(0)) - 10).find(u"Pin") == String::npos)
        state.SkipWithError("the replace-all did not reach the end");
    state.counters["hits"] = double(state.range(0) / 10);
}

void BM_FindOnTheLastLine(benchmark::State& state) { FindOnTheLastLine(state, Plain); }

void BM_FindOnTheLastLineRegExp(benchmark::State& state) { FindOnTheLastLine(state, Pattern); }

void BM_ReplaceAllWithoutPrompt(benchmark::State& state) { ReplaceAll(state, Plain, Pump::PostedPasses); }

void BM_ReplaceAllWithoutPromptRegExp(benchmark::State& state) { ReplaceAll(state, Pattern, Pump::PostedPasses); }

void BM_ReplaceAllWithoutPromptPainted(benchmark::State& state) { ReplaceAll(state, Plain, Pump::EventLoop); }

}  // namespace

// Goals: each regular-expression row within twice its plain row.
BENCHMARK(BM_FindOnTheLastLine)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindOnTheLastLineRegExp)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReplaceAllWithoutPrompt)->Arg(100'000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReplaceAllWithoutPromptRegExp)->Arg(100'000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReplaceAllWithoutPromptPainted)->Arg(100'000)->Unit(benchmark::kMillisecond)->Iterations(1);
