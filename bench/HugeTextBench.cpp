// Ten million lines: a generated Pascal text of about 400 MB, written line by
// line to a temporary file and deleted at the end. Its load, with the
// resident memory after it and the peak during it per byte of file; a paint
// at the top and at line 9,000,000; a typed character at line 5,000,000 with
// its paint; a find whose only hit is on the last line. Typing and paint must
// cost what they cost at a million lines (edit_bench, paint_bench), load and
// find at most ten times as much (load_bench, search_bench). The memory rows
// run at a million lines too, and SetText of the same text beside the load.
// Needs about a gigabyte and minutes: built on demand, not in CI.
#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Dialogs.h"
#include "platform/SxStringStream.h"

#include <QApplication>
#include <QImage>
#include <QWidget>

#include <benchmark/benchmark.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>

using namespace sx;
namespace fs = std::filesystem;

namespace {

constexpr int HugeLineCount = 10'000'000;
constexpr int MillionLines = 1'000'000;
/// As in load_bench: a line in sixteen has letters outside ASCII.
constexpr int AccentedLineEvery = 16;

String LineText(int i, int lineCount)
{
    const String n = IntToStr(i);
    if (i == lineCount - 1)
        return u"  Needle := Compute(" + n + u", 'x');";
    if (i % AccentedLineEvery == 0)
        return u"  { Größe " + n + u" – Maß ½ }";
    return u"  Value" + n + u" := Compute(" + n + u", 'x');";
}

/// The UTF-8 file of the text, written line by line so that no buffer of the
/// whole text inflates the process's memory before the loads are measured.
struct TextFile {
    explicit TextFile(int lineCount)
    {
        path = fs::temp_directory_path() /
               ("sx-hugebench-" + std::to_string(lineCount) + "-" + std::to_string(std::random_device{}()) + ".pas");
        std::ofstream out(path, std::ios::binary);
        for (int i = 0; i < lineCount; ++i)
            out << StrToUtf8(LineText(i, lineCount) + u"\r\n");
    }
    ~TextFile() { fs::remove(path); }
    String Name() const { return StrFromLatin1(path.string().c_str()); }
    double Bytes() const { return double(fs::file_size(path)); }

    fs::path path;
};

const TextFile& FileOf(int lineCount)
{
    static std::map<int, std::unique_ptr<TextFile>> files;
    auto& file = files[lineCount];
    if (!file)
        file = std::make_unique<TextFile>(lineCount);
    return *file;
}

/// A field of /proc/self/status in bytes (VmRSS: resident now, VmHWM: the peak).
double StatusBytes(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    std::string name;
    double kilobytes = 0;
    while (status >> name) {
        if (name == field + ":" && status >> kilobytes)
            return kilobytes * 1024.0;
        status.ignore(1 << 10, '\n');
    }
    return 0;
}

/// Memory that earlier rows freed goes back to the system, then the peak
/// starts again from the present.
void ResetPeak()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    std::ofstream("/proc/self/clear_refs") << "5";
}

/// A shown 800 by 600 control with the Pascal parser.
struct Editor {
    Editor()
    {
        window.resize(800, 600);
        edit = new TSxCodeEdit(nullptr);
        edit->Widget()->setParent(&window);
        edit->SetBounds(0, 0, 800, 600);
        edit->SetParser(new TSxCodePascalParser(edit));
        window.show();
        QApplication::setActiveWindow(&window);
        edit->SetFocus();
        QApplication::processEvents();
    }
    void Paint()
    {
        edit->Widget()->render(&screen);
        benchmark::DoNotOptimize(screen.constBits());
    }

    QWidget window;
    TSxCodeEdit* edit;
    QImage screen{800, 600, QImage::Format_RGB32};
};

/// Resident memory after AFill and its peak during it, per byte of file;
/// read right after, with nothing trimmed, so that a freed copy left in the
/// heap counts.
template <class Fill>
void CountMemory(benchmark::State& state, double fileBytes, Fill AFill)
{
    ResetPeak();
    const double before = StatusBytes("VmRSS");
    AFill();
    const double resident = StatusBytes("VmRSS");
    const double peak = StatusBytes("VmHWM");
    state.counters["file_MB"] = fileBytes / 1e6;
    state.counters["resident_per_file_byte"] = (resident - before) / fileBytes;
    state.counters["peak_per_file_byte"] = (peak - before) / fileBytes;
}

/// The first load into an empty control gives the memory; the timed loads follow.
void BM_LoadFile(benchmark::State& state)
{
    const TextFile& file = FileOf(int(state.range(0)));
    auto e = std::make_unique<Editor>();
    CountMemory(state, file.Bytes(), [&] { e->edit->LoadFromFile(file.Name()); });
    for (auto _ : state)
        e->edit->LoadFromFile(file.Name());
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(file.Bytes()));
    state.counters["lines"] = e->edit->Lines().Count();
}

/// SetText of the file's text held as one string, beside the load.
void BM_SetText(benchmark::State& state)
{
    const TextFile& file = FileOf(int(state.range(0)));
    String text;
    {
        TSxStringStream stream(CodePages::Utf16LE, 16);
        stream.LoadFromFile(file.Name(), CodePages::Detect);
        text = stream.GetWString();
    }
    auto e = std::make_unique<Editor>();
    CountMemory(state, file.Bytes(), [&] { e->edit->SetText(text); });
    for (auto _ : state)
        e->edit->SetText(text);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(file.Bytes()));
}

/// The control over the ten million lines, loaded once for the rows below.
Editor& Huge()
{
    static const auto editor = [] {
        auto e = std::make_unique<Editor>();
        e->edit->LoadFromFile(FileOf(HugeLineCount).Name());
        return e;
    }();
    return *editor;
}

void PaintAt(benchmark::State& state, int topLine)
{
    Editor& e = Huge();
    e.edit->VScrollBar().SetPosition(topLine);
    e.Paint();
    for (auto _ : state)
        e.Paint();
}

void BM_PaintTop(benchmark::State& state) { PaintAt(state, 0); }
void BM_PaintLine9000000(benchmark::State& state) { PaintAt(state, 9'000'000); }

/// As edit_bench types: a character at column 10 and the paint, the
/// Backspace that takes it back untimed.
void BM_TypeCharacterAtLine5000000(benchmark::State& state)
{
    Editor& e = Huge();
    e.edit->SetLinePos(5'000'000);
    e.edit->SetCharPos(10);
    e.Paint();
    for (auto _ : state) {
        SendMessage(e.edit, WM_CHAR, u'x');
        e.Paint();
        state.PauseTiming();
        SendMessage(e.edit, WM_CHAR, 8);
        state.ResumeTiming();
    }
}

/// As search_bench finds: the dialog filled in once through the modal-form
/// seam, then one posted pass from the top per run.
void BM_FindOnTheLastLine(benchmark::State& state)
{
    Editor& e = Huge();
    SetShowModalHook([](TForm& form) {
        auto& dialog = static_cast<TFrmCodeEditSearchReplaceDlg&>(form);
        dialog.edtTextToFind()->SetText(u"Needle");
        form.SetModalResult(mrOk);
    });
    SetMsgBoxHook([](TMsgBoxKind, const String&, const String&) { return idOk; });  // "not found"
    SendMessage(e.edit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, 0);
    SetShowModalHook(nullptr);
    QCoreApplication::removePostedEvents(e.edit->MessageTarget());
    for (auto _ : state) {
        state.PauseTiming();
        e.edit->SetLinePos(0);
        e.edit->SetCharPos(0);
        state.ResumeTiming();
        PostMessage(e.edit, uSxCodeEdit::WM_SX_SEARCHREPLACE);
        ProcessPostedMessages();
    }
    SetMsgBoxHook(nullptr);
    if (e.edit->LinePos() != HugeLineCount - 1)
        state.SkipWithError("the hit on the last line was not found");
}

}  // namespace

BENCHMARK(BM_LoadFile)->Arg(MillionLines)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SetText)->Arg(MillionLines)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadFile)->Arg(HugeLineCount)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_PaintTop)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PaintLine9000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TypeCharacterAtLine5000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FindOnTheLastLine)->Unit(benchmark::kMillisecond)->Iterations(3);
