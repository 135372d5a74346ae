// Tokenizing speed of every language parser, fed line by line as a paint feeds
// them, in characters per second; and the time MethodLineNr takes to find the
// last handler of a 100,000-line Visual Basic and JavaScript script.
#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

using namespace sx;

namespace {

/// Lines of the tokenized texts: large enough that the text is far beyond
/// the caches, as in a long file scrolled through.
constexpr int TokenizeLineCount = 200'000;
/// Lines of the scripts that MethodLineNr searches.
constexpr int ScriptLineCount = 100'000;

/// Lines that end in CR LF, handed out one at a time; starts again on reset.
struct LineSource {
    std::vector<String> lines;
    std::size_t next = 0;
    long long chars = 0;

    void Add(const String& line)
    {
        lines.push_back(line + u"\r\n");
        chars += Integer(line.size()) + 2;
    }
    bool operator()(bool reset, String& s)
    {
        if (reset) {
            next = 0;
            return true;
        }
        if (next >= lines.size())
            return false;
        s = lines[next++];
        return true;
    }
};

/// A text of TokenizeLineCount lines made from a few typical lines in turn.
LineSource Repeat(std::initializer_list<const char16_t*> sample)
{
    LineSource source;
    const std::vector<const char16_t*> lines(sample);
    for (int i = 0; i < TokenizeLineCount; ++i)
        source.Add(lines[std::size_t(i) % lines.size()]);
    return source;
}

LineSource PascalText()
{
    return Repeat({u"procedure TForm1.Button1Click(Sender: TObject);", u"var", u"  Total: Integer;",
                   u"begin", u"  { sum the items }", u"  Total := Compute(42, 'text') + $FF; // step",
                   u"  if Total >= 1.5 then ShowMessage(IntToStr(Total));", u"end;"});
}

LineSource XmlText()
{
    return Repeat({u"<?xml version=\"1.0\" encoding=\"utf-8\"?>", u"<order id=\"42\" customer=\"Smith &amp; Co\">",
                   u"  <!-- the lines of the order -->", u"  <line item=\"bolt\" quantity=\"12\">M6 x 20</line>",
                   u"  <note><![CDATA[fragile <handle> with care]]></note>", u"</order>"});
}

LineSource SqlText()
{
    return Repeat({u"-- orders of the last month", u"SELECT o.id, o.customer, SUM(l.quantity * l.price) AS total",
                   u"FROM orders o JOIN lines l ON l.order_id = o.id",
                   u"WHERE o.created >= :since AND o.state <> 'cancelled' /* open ones */",
                   u"GROUP BY o.id, o.customer ORDER BY total DESC;"});
}

LineSource VBText()
{
    return Repeat({u"Sub AddButton_OnClick(Sender)", u"  Dim amount ' the line's amount",
                   u"  amount = LineTotal(QuantityEdit.Value, PriceEdit.Value) * 1.25",
                   u"  If amount <= 0 Then Exit Sub",
                   u"  StatusLabel.Caption = lineCount & \" lines, total \" & FormatNumber(amount, 2)",
                   u"End Sub"});
}

LineSource JSText()
{
    return Repeat({u"function AddButton_OnClick(Sender)", u"{", u"  var amount = lineTotal(q.Value, p.Value) * 1.25;",
                   u"  /* a comment that", u"     runs over two lines */ if (amount <= 0) { return; }",
                   u"  StatusLabel.Caption = lineCount + \" lines, total \" + amount; // shown", u"}"});
}

/// Reads every token of the text, as painting does, and reports characters per second.
void Tokenize(benchmark::State& state, TSxLangParser& parser, LineSource& source)
{
    parser.SetOnGetNewBuffer(std::ref(source));
    parser.SetEndLines(true);
    String token;
    TColor back, fore;
    TFontStyles style;
    bool lineBreak;
    long long tokens = 0;
    for (auto _ : state) {
        parser.ResetBuffer();
        parser.SetLineKind(0);
        while (parser.GetNextToken(token, back, fore, style, lineBreak))
            ++tokens;
        benchmark::DoNotOptimize(tokens);
    }
    state.counters["chars/s"] =
        benchmark::Counter(double(source.chars) * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["tokens"] = double(tokens) / double(state.iterations());
}

/// A text built once, at the first run of the benchmark that needs it.
using LazySource = std::shared_ptr<std::optional<LineSource>>;

LineSource& Built(const LazySource& lazy, LineSource (*make)())
{
    if (!*lazy)
        *lazy = make();
    return **lazy;
}

template <class Parser>
void RegisterTokenize(const char* name, LineSource (*text)())
{
    benchmark::RegisterBenchmark(name, [lazy = std::make_shared<std::optional<LineSource>>(), text](
                                           benchmark::State& state) {
        Parser parser(nullptr);
        Tokenize(state, parser, Built(lazy, text));
    })->Unit(benchmark::kMillisecond);
}

/// A script of ScriptLineCount lines: handlers of five lines each, the last
/// one named LastHandler.
LineSource HandlerScript(const char16_t* header, const char16_t* body, const char16_t* footer)
{
    LineSource source;
    for (int n = 0; int(source.lines.size()) < ScriptLineCount; ++n) {
        const bool last = int(source.lines.size()) + 5 >= ScriptLineCount;
        const String name = last ? String(u"LastHandler") : u"Handler" + IntToStr(n);
        source.Add(String(header) + name + u"(Sender, Value)");
        source.Add(body);
        source.Add(u"  total = total + Value * 2 ' or // a note");
        source.Add(footer);
        source.Add(u"");
    }
    return source;
}

/// Finds the last handler of a script, from the top, on every run.
void FindLastHandler(benchmark::State& state, TSxLangParser& parser, LineSource& source)
{
    parser.SetOnGetNewBuffer(std::ref(source));
    Integer line = -1;
    for (auto _ : state) {
        line = parser.MethodLineNr(u"lasthandler");
        benchmark::DoNotOptimize(line);
    }
    if (line != ScriptLineCount - 4)
        state.SkipWithError("the last handler was not found on its line");
    state.counters["lines/s"] =
        benchmark::Counter(double(source.lines.size()) * double(state.iterations()), benchmark::Counter::kIsRate);
}

template <class Parser>
void RegisterMethodLineNr(const char* name, LineSource (*script)())
{
    benchmark::RegisterBenchmark(name, [lazy = std::make_shared<std::optional<LineSource>>(), script](
                                           benchmark::State& state) {
        Parser parser(nullptr);
        FindLastHandler(state, parser, Built(lazy, script));
    })->Unit(benchmark::kMillisecond);
}

LineSource VBScript() { return HandlerScript(u"Sub ", u"  If Value <= 0 Then Exit Sub", u"End Sub rem done"); }
LineSource JSScript() { return HandlerScript(u"function ", u"{ if (Value <= 0) { return; }", u"} // done"); }


}  // namespace

int main(int argc, char** argv)
{
    // The SQL parser reads its keywords from the table the unit's start fills.
    uSxCodeSqlParser::Initialization();
    RegisterTokenize<TSxCodePascalParser>("Tokenize/Pascal", &PascalText);
    RegisterTokenize<TSxCodeXMLParser>("Tokenize/XML", &XmlText);
    RegisterTokenize<TSxCodeSqlParser>("Tokenize/SQL", &SqlText);
    RegisterTokenize<TSxCodeVBParser>("Tokenize/VisualBasic", &VBText);
    RegisterTokenize<TSxCodeJSParser>("Tokenize/JavaScript", &JSText);
    RegisterMethodLineNr<TSxCodeVBParser>("MethodLineNr/VisualBasic", &VBScript);
    RegisterMethodLineNr<TSxCodeJSParser>("MethodLineNr/JavaScript", &JSScript);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    uSxCodeSqlParser::Finalization();
    return 0;
}
