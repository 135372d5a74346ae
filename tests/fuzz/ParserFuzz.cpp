// Fuzz target for one language parser, chosen at build time by SX_FUZZ_PARSER
// (1 Pascal, 2 Visual Basic, 3 JavaScript, 4 XML, 5 SQL). The random text is
// fed as the control feeds a paint: one line at a time with CR LF behind it,
// EndLines True, the line kind noted as each line is handed over. Checked:
// every line ends within a bounded number of tokens, the token texts add up
// to the text (up to what the language does not draw), and a run restarted
// at any line with the state noted there gives the same tokens as the full run.
#include "FuzzSupport.h"

#include "codeedit/uSxCodeJSParser.h"
#include "codeedit/uSxCodePascalParser.h"
#include "codeedit/uSxCodeSqlParser.h"
#include "codeedit/uSxCodeVBParser.h"
#include "codeedit/uSxCodeXmlParser.h"

#include <type_traits>

using namespace sx;
using namespace sx::fuzz;

namespace {

#if SX_FUZZ_PARSER == 1
using TParser = TSxCodePascalParser;
#elif SX_FUZZ_PARSER == 2
using TParser = TSxCodeVBParser;
#elif SX_FUZZ_PARSER == 3
using TParser = TSxCodeJSParser;
#elif SX_FUZZ_PARSER == 4
using TParser = TSxCodeXMLParser;
#elif SX_FUZZ_PARSER == 5
using TParser = TSxCodeSqlParser;
#else
#error "SX_FUZZ_PARSER must name a parser from 1 to 5"
#endif

/// The parser with the state it carries from line to line besides LineKind
/// made visible: XML's machine state and SQL's open block comment.
template <class P>
class ProbeOf : public P {
public:
    using P::P;
    Integer HiddenState() const
    {
        if constexpr (std::is_same_v<P, TSxCodeXMLParser>)
            return Integer(this->FParseInfo);
        else if constexpr (std::is_same_v<P, TSxCodeSqlParser>)
            return this->FInComment ? 1 : 0;
        else
            return 0;
    }
};
using Probe = ProbeOf<TParser>;

struct Token {
    String Text;
    TColor Back = 0;
    TColor Fore = 0;
    TFontStyles Style;
    bool LineBreak = false;
    bool operator==(const Token&) const = default;
};

/// The state at a line start and where the run stood when the line was
/// handed over; a line never handed over has none.
struct LineStart {
    Integer Kind = 0;
    Integer Hidden = 0;
    std::size_t TokenIndex = 0;
    bool HandedOver = false;
};

struct Run {
    std::vector<Token> Tokens;
    std::vector<LineStart> Starts;  ///< by line
};

/// Characters the language takes no room for: a token leaves them out.
String Drawn(const String& text)
{
    String out;
    out.reserve(text.size());
    for (const Char c : text) {
        const bool control = c < 32 && c != 13 && c != 10;
        if constexpr (std::is_same_v<TParser, TSxCodeXMLParser> || std::is_same_v<TParser, TSxCodeSqlParser>) {
            if (control)
                continue;
        } else if constexpr (std::is_same_v<TParser, TSxCodePascalParser>) {
            if (c == 8) {
                out += u"    ";  // a backspace character is drawn as four blanks
                continue;
            }
        }
        out.push_back(c);
    }
    return out;
}

/// Runs the parser from line AFirst with line kind AKind, as a paint does,
/// until the end of input, or until AStop answers True at a line start.
template <class TStop>
Run Tokenize(Probe& parser, const std::vector<String>& lines, std::size_t AFirst, Integer AKind, TStop AStop)
{
    Run run;
    run.Starts.resize(lines.size());
    std::size_t next = AFirst;
    std::size_t sinceBreak = 0;
    bool stop = false;
    parser.ResetBuffer();
    parser.SetRemarkEnd(String());
    parser.SetEndLines(true);
    parser.SetLineKind(AKind);
    parser.SetOnGetNewBuffer([&](bool AReset, String& S) {
        if (AReset) {
            next = AFirst;
            return true;
        }
        if (next >= lines.size())
            return false;
        const LineStart start{parser.LineKind(), parser.HiddenState(), run.Tokens.size(), true};
        run.Starts[next] = start;
        sinceBreak = 0;  // a token may run over line ends (XML comments): the count is per line fed
        stop = next > AFirst && AStop(next, start);
        S = lines[next] + u"\r\n";
        ++next;
        return true;
    });
    std::size_t longest = 0;
    for (const String& line : lines)
        longest = std::max(longest, line.size());
    const std::size_t perLineLimit = 2 * longest + 16;
    Token t;
    while (!stop && parser.GetNextToken(t.Text, t.Back, t.Fore, t.Style, t.LineBreak)) {
        if (stop)
            break;  // the token read into the line where the runs meet
        run.Tokens.push_back(t);
        sinceBreak = t.LineBreak ? 0 : sinceBreak + 1;
        SX_FUZZ_CHECK(sinceBreak <= perLineLimit, "a line never ends");
    }
    parser.SetOnGetNewBuffer(nullptr);
    return run;
}

void CheckTextsAddUp(const std::vector<String>& lines, const Run& run)
{
    String expected, got;
    std::size_t breaks = 0;
    for (const String& line : lines)
        expected += line + u"\r\n";
    for (const Token& t : run.Tokens) {
        got += t.LineBreak ? String(u"\r\n") : t.Text;
        breaks += t.LineBreak ? 1 : 0;
    }
    SX_FUZZ_CHECK(Drawn(got) == Drawn(expected), Show(got) + " for " + Show(expected));
    // XML comments and processing instructions run over line ends in one token.
    if constexpr (!std::is_same_v<TParser, TSxCodeXMLParser>)
        SX_FUZZ_CHECK(breaks == lines.size(), std::to_string(breaks) + " line breaks");
}

/// A restart at line AFirst with the state the full run noted there gives the
/// full run's tokens, up to the line where both runs stand in the same state.
void CheckRestart(Probe& parser, const std::vector<String>& lines, const Run& full, std::size_t AFirst)
{
    const LineStart& at = full.Starts[AFirst];
    if (at.Hidden != 0)
        return;  // state that LineKind does not carry: a paint starting here differs, as it is meant to
    std::size_t metAt = 0;
    const Run restart = Tokenize(parser, lines, AFirst, at.Kind, [&](std::size_t line, const LineStart& s) {
        const LineStart& f = full.Starts[line];
        const bool met = f.HandedOver && s.Kind == f.Kind && s.Hidden == f.Hidden;
        if (met)
            metAt = line;
        return met;
    });
    const std::size_t count = metAt ? restart.Starts[metAt].TokenIndex : restart.Tokens.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t j = at.TokenIndex + i;
        SX_FUZZ_CHECK(j < full.Tokens.size() && restart.Tokens[i] == full.Tokens[j],
                      "restart at line " + std::to_string(AFirst) + ", token " + std::to_string(i) + ": " +
                          Show(restart.Tokens[i].Text));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Probe parser(nullptr);
    String text = TextOf(data, size);
    const auto never = [](std::size_t, const LineStart&) { return false; };
    // A character 0 ends the input where it stands; only the bounds hold there.
    if (text.find(Char(0)) != String::npos) {
        Tokenize(parser, SplitLines(text), 0, 0, never);
        std::replace(text.begin(), text.end(), Char(0), Char(1));
    }
    const std::vector<String> lines = SplitLines(text);
    const Run full = Tokenize(parser, lines, 0, 0, never);
    CheckTextsAddUp(lines, full);
    for (std::size_t first = 1; first < lines.size(); ++first)
        if (full.Starts[first].HandedOver)
            CheckRestart(parser, lines, full, first);
    return 0;
}
