// Loading a million-line file of about 40 MB into the control, once as UTF-8
// without a mark and once as UTF-16 LE with one: the speed in MB of file per
// second, and how far the process's peak memory grows per byte of file. The
// stream alone (read and decode, no line store) is timed beside it.
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"
#include "platform/SxStringStream.h"

#include <QImage>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

using namespace sx;
namespace fs = std::filesystem;

namespace {

constexpr int LineCount = 1'000'000;
/// One line in sixteen carries letters outside ASCII, so the UTF-8 decoder
/// leaves its ASCII fast path now and then, as it does in real source.
constexpr int AccentedLineEvery = 16;

String LineText(int i)
{
    const String n = IntToStr(i);
    if (i % AccentedLineEvery == 0)
        return u"  { Größe " + n + u" – Maß ½ }";
    return u"  Value" + n + u" := Compute(" + n + u", 'x');";
}

void AppendUtf16LE(std::string& bytes, const String& text)
{
    for (const Char c : text) {
        bytes += char(c & 0xFF);
        bytes += char(c >> 8);
    }
}

/// The two files of the same text, written line by line so that no buffer of
/// the whole text inflates the process's peak before the loads are measured.
struct TestFiles {
    TestFiles()
    {
        dir = fs::temp_directory_path() / ("sx-loadbench-" + std::to_string(std::random_device{}()));
        fs::create_directories(dir);
        std::ofstream utf8(Utf8Path(), std::ios::binary);
        std::ofstream utf16(Utf16Path(), std::ios::binary);
        std::string bytes = "\xFF\xFE";
        for (int i = 0; i < LineCount; ++i) {
            const String line = LineText(i) + u"\r\n";
            utf8 << StrToUtf8(line);
            AppendUtf16LE(bytes, line);
            utf16 << bytes;
            bytes.clear();
        }
    }
    ~TestFiles() { fs::remove_all(dir); }
    fs::path Utf8Path() const { return dir / "million-utf8.pas"; }
    fs::path Utf16Path() const { return dir / "million-utf16le.pas"; }

    fs::path dir;
};

const TestFiles& Files()
{
    static const TestFiles files;
    return files;
}

String ToString(const fs::path& path) { return StrFromLatin1(path.string().c_str()); }

/// The process's peak resident memory so far, in bytes.
double PeakRssBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) * 1024.0;  // kilobytes on Linux
}

/// Lets the peak start again from the present (Linux; elsewhere it stays).
/// Memory that earlier runs freed goes back to the system first, or a load
/// would reuse it unseen and its growth would read too small.
void ResetPeakRss()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    std::ofstream("/proc/self/clear_refs") << "5";
}

void LoadIntoControl(benchmark::State& state, const fs::path& path)
{
    const String fileName = ToString(path);
    const auto fileBytes = double(fs::file_size(path));
    QWidget window;
    window.resize(800, 600);
    auto edit = std::make_unique<TSxCodeEdit>(nullptr);
    edit->Widget()->setParent(&window);
    edit->SetBounds(0, 0, 800, 600);
    window.show();

    // The first load, into an empty control, gives the peak.
    ResetPeakRss();
    const double before = PeakRssBytes();
    edit->LoadFromFile(fileName);
    const double after = PeakRssBytes();

    for (auto _ : state)
        edit->LoadFromFile(fileName);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(fileBytes));
    state.counters["file_MB"] = fileBytes / 1e6;
    state.counters["lines"] = edit->Lines().Count();
    state.counters["peak_rss_MB"] = after / 1e6;
    state.counters["rss_before_MB"] = before / 1e6;
    state.counters["peak_growth_per_file_byte"] = (after - before) / fileBytes;
}

void ReadWithStream(benchmark::State& state, const fs::path& path)
{
    const String fileName = ToString(path);
    for (auto _ : state) {
        TSxStringStream stream(CodePages::Utf16LE, 16);
        stream.LoadFromFile(fileName, CodePages::Detect);
        benchmark::DoNotOptimize(stream.GetWString());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(fs::file_size(path)));
}

/// SetText of the same text as a string, beside the load of its file.
void BM_SetTextOfFile(benchmark::State& state)
{
    TSxStringStream stream(CodePages::Utf16LE, 16);
    stream.LoadFromFile(ToString(Files().Utf8Path()), CodePages::Detect);
    const String text = stream.GetWString();
    stream.Clear();
    QWidget window;
    auto edit = std::make_unique<TSxCodeEdit>(nullptr);
    edit->Widget()->setParent(&window);
    ResetPeakRss();
    const double before = PeakRssBytes();
    edit->SetText(text);
    const double after = PeakRssBytes();
    for (auto _ : state)
        edit->SetText(text);
    const auto fileBytes = double(fs::file_size(Files().Utf8Path()));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(fileBytes));
    state.counters["peak_growth_per_file_byte"] = (after - before) / fileBytes;
}

/// A load and the first paint with a Pascal parser, with the extended options AOptions.
void LoadAndPaint(benchmark::State& state, TSxCodeExtOptions AOptions)
{
    const String fileName = ToString(Files().Utf8Path());
    QWidget window;
    window.resize(800, 600);
    auto edit = std::make_unique<TSxCodeEdit>(nullptr);
    edit->Widget()->setParent(&window);
    edit->SetBounds(0, 0, 800, 600);
    edit->SetParser(new TSxCodePascalParser(edit.get()));
    edit->SetExtOptions(AOptions);
    window.show();
    QImage screen(800, 600, QImage::Format_RGB32);
    for (auto _ : state) {
        edit->LoadFromFile(fileName);
        edit->Widget()->render(&screen);
    }
}

/// With folding the first paint finds the regions in view: a load costs about the same.
void BM_LoadAndPaint(benchmark::State& state) { LoadAndPaint(state, {}); }
void BM_LoadAndPaintFolding(benchmark::State& state) { LoadAndPaint(state, {TSxCodeExtOption::coFolding}); }

void BM_LoadUtf8(benchmark::State& state) { LoadIntoControl(state, Files().Utf8Path()); }
void BM_LoadUtf16LE(benchmark::State& state) { LoadIntoControl(state, Files().Utf16Path()); }
void BM_StreamOnlyUtf8(benchmark::State& state) { ReadWithStream(state, Files().Utf8Path()); }
void BM_StreamOnlyUtf16LE(benchmark::State& state) { ReadWithStream(state, Files().Utf16Path()); }

}  // namespace

// A load takes about a second; a few are enough, and the peak is taken before them.
BENCHMARK(BM_LoadUtf8)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SetTextOfFile)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadAndPaint)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadAndPaintFolding)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadUtf16LE)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_StreamOnlyUtf8)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_StreamOnlyUtf16LE)->Unit(benchmark::kMillisecond)->Iterations(3);
