// A seeded writer of Pascal source: classes with fields, methods and
// properties, method bodies with nested statements, comments of the three
// kinds, strings (now and then with letters outside ASCII) and numbers. The
// random numbers are our own SplitMix64, so the bytes are the same on every
// machine and standard library.
#include "PeerText.h"

#include <QDir>
#include <QFile>

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace peers {

namespace {

constexpr int BigLineCount = 1'000'000;
constexpr int SmallLineCount = 100;
constexpr int ReplaceLineCount = 100'000;
/// Every tenth line of the replace text carries the word once: 10,000 hits.
constexpr int ReplaceEvery = 10;
constexpr int LongLineLength = 1'000'000;
/// The long line stands among a few ordinary lines, as a generated table would.
constexpr int LinesAroundLongLine = 20;
constexpr int LongLineIndex = 10;

class Random {
public:
    explicit Random(std::uint64_t seed) : FState(seed) {}
    std::uint64_t Next()
    {
        std::uint64_t z = (FState += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    int Below(int n) { return int(Next() % std::uint64_t(n)); }
    bool Chance(int percent) { return Below(100) < percent; }
    template <std::size_t N>
    std::string Pick(const std::array<const char*, N>& words)
    {
        return words[std::size_t(Below(int(N)))];
    }

private:
    std::uint64_t FState;
};

const std::array<const char*, 24> Verbs = {"Get",   "Set",    "Load",  "Save",  "Update", "Compute", "Find",  "Parse",
                                            "Draw",  "Check",  "Build", "Clear", "Reset",  "Apply",   "Merge", "Sort",
                                            "Write", "Read",   "Open",  "Close", "Insert", "Remove",  "Post",  "Cancel"};
const std::array<const char*, 40> Nouns = {
    "Value",  "Item",     "Count",    "Name",      "Index",       "Buffer",     "Line",      "Token",
    "Record", "Field",    "Order",    "Customer",  "Invoice",     "Total",      "Amount",    "Price",
    "Stream", "Header",   "Footer",   "Column",    "Row",         "Cell",       "Style",     "Color",
    "Font",   "Margin",   "Report",   "Query",     "Table",       "Cursor",     "Period",    "Account",
    "Description", "Transaction", "Reference", "Attribute", "Collection", "Parameter", "Connection", "Settings"};
const std::array<const char*, 8> Types = {"Integer", "string", "Boolean", "Double",
                                          "TStrings", "Cardinal", "TDateTime", "Variant"};
const std::array<const char*, 6> Bases = {"TObject", "TComponent", "TPersistent", "TCustomControl", "TInterfacedObject",
                                          "TList"};
const std::array<const char*, 16> CommentWords = {"keep", "the", "total", "up", "to", "date", "before", "posting",
                                                  "callers", "expect", "this", "order", "of", "events", "here", "still"};
/// Now and then a string or a comment in German or French.
const std::array<const char*, 6> Accented = {"Größe", "Maß", "café", "naïve", "Straße", "coût €"};

/// One line of text with its indent.
std::string Indent(int depth) { return std::string(std::size_t(2 * depth), ' '); }

/// Writes Pascal lines into a sink, one class with its methods at a time.
class PascalWriter {
public:
    using Sink = std::function<void(const std::string&)>;

    PascalWriter(std::uint64_t seed, Sink sink) : R(seed), Out(std::move(sink)) {}

    void UnitHeader()
    {
        Out("unit GeneratedUnit;");
        Out("");
        Out("interface");
        Out("");
        Out("uses");
        Out("  SysUtils, Classes, Variants, DB;");
        Out("");
        Out("implementation");
        Out("");
    }

    void ClassWithMethods()
    {
        const std::string name = "T" + Word() + Word();
        const int methods = 4 + R.Below(7);
        std::vector<std::string> heads;
        for (int i = 0; i < methods; ++i)
            heads.push_back(MethodHead());
        Out("type");
        Out("  " + name + " = class(" + R.Pick(Bases) + ")");
        Out("  private");
        const int fields = 3 + R.Below(4);
        for (int i = 0; i < fields; ++i)
            Out("    F" + R.Pick(Nouns) + ": " + R.Pick(Types) + ";");
        Out("  public");
        for (const std::string& head : heads)
            Out("    " + head);
        Out("    property " + R.Pick(Nouns) + ": " + R.Pick(Types) + " read F" + R.Pick(Nouns) + ";");
        Out("  end;");
        Out("");
        Out("{ " + name + " }");
        Out("");
        for (const std::string& head : heads)
            MethodBody(name, head);
    }

private:
    std::string Word() { return R.Chance(80) ? R.Pick(Nouns) + R.Pick(Nouns) : R.Pick(Nouns); }
    std::string Ident() { return R.Pick(Verbs) + Word(); }
    std::string Number() { return std::to_string(R.Below(R.Chance(20) ? 100000 : 100)); }

    std::string StringLiteral()
    {
        if (R.Chance(8))
            return "'" + std::string(R.Pick(Accented)) + " " + Number() + "'";
        return "'" + std::string(R.Pick(CommentWords)) + " " + R.Pick(CommentWords) + " " + R.Pick(CommentWords) + "'";
    }

    std::string Operand()
    {
        switch (R.Below(5)) {
        case 0: return Number();
        case 1: return StringLiteral();
        case 2: return "F" + Word();
        case 3: return "A" + Word();
        default: return Ident() + "(A" + Word() + ", " + Number() + ")";
        }
    }

    std::string MethodHead()
    {
        const std::string params = "(const A" + Word() + ": string; A" + Word() + ": " + R.Pick(Types) + ")";
        if (R.Chance(40))
            return "function " + Ident() + params + ": " + R.Pick(Types) + ";";
        return "procedure " + Ident() + params + ";";
    }

    void MethodBody(const std::string& className, const std::string& head)
    {
        const std::size_t nameAt = head.find(' ') + 1;
        Out(head.substr(0, nameAt) + className + "." + head.substr(nameAt));
        Out("var");
        Out("  I: Integer;");
        Out("  " + Word() + ": " + R.Pick(Types) + ";");
        Out("begin");
        const int statements = 3 + R.Below(12);
        for (int i = 0; i < statements; ++i)
            Statement(1, 0);
        Out("end;");
        Out("");
    }

    void Comment(int depth)
    {
        std::string words;
        const int count = 6 + R.Below(8);
        for (int i = 0; i < count; ++i)
            words += std::string(i ? " " : "") + (R.Chance(3) ? R.Pick(Accented) : R.Pick(CommentWords));
        switch (R.Below(3)) {
        case 0: Out(Indent(depth) + "// " + words); break;
        case 1: Out(Indent(depth) + "{ " + words + " }"); break;
        default:
            Out(Indent(depth) + "(* " + words);
            Out(Indent(depth) + "   " + R.Pick(CommentWords) + " " + R.Pick(CommentWords) + " *)");
        }
    }

    void Block(int depth, int nesting)
    {
        Out(Indent(depth) + "begin");
        const int statements = 2 + R.Below(4);
        for (int i = 0; i < statements; ++i)
            Statement(depth + 1, nesting + 1);
        Out(Indent(depth) + "end;");
    }

    /// An assignment or a call: most lines of a method are one of these.
    void SimpleStatement(const std::string& in)
    {
        switch (R.Below(5)) {
        case 0: Out(in + "F" + Word() + " := " + Operand() + " + " + Operand() + ";"); break;
        case 4:
            Out(in + "F" + Word() + ".Items[I] := " + Ident() + "(A" + Word() + ", F" + Word() + ", " +
                StringLiteral() + ");");
            break;
        case 1: Out(in + Ident() + "(" + Operand() + ", " + Operand() + ", A" + Word() + ");"); break;
        case 2: Out(in + "Result := Format('%s: %d', [A" + Word() + ", F" + Word() + "]);"); break;
        default: Out(in + "F" + Word() + "." + Ident() + "(" + Operand() + ");"); break;
        }
    }

    void Statement(int depth, int nesting)
    {
        const int kind = nesting >= 3 ? R.Below(10) : R.Below(16);
        const std::string in = Indent(depth);
        switch (kind) {
        case 0: case 1: case 2: case 3: case 4: case 5: case 6: case 7: case 15: SimpleStatement(in); break;
        case 8: Comment(depth); break;
        case 9: Out(in + "Result := " + Operand() + " + " + Operand() + ";"); break;
        case 10:
            Out(in + "if (A" + Word() + " > " + Number() + ") and Assigned(F" + Word() + ") then");
            Block(depth, nesting);
            if (R.Chance(40)) {
                Out(in + "else");
                Statement(depth + 1, nesting + 1);
            }
            break;
        case 11:
            Out(in + "for I := 0 to F" + Word() + ".Count - 1 do");
            Block(depth, nesting);
            break;
        case 12:
            Out(in + "while not " + Ident() + "(A" + Word() + ") do");
            Statement(depth + 1, nesting + 1);
            break;
        case 13:
            Out(in + "case A" + Word() + " of");
            for (int i = 0; i < 2 + R.Below(3); ++i)
                Out(in + "  " + std::to_string(i) + ": F" + Word() + " := " + Operand() + ";");
            Out(in + "end;");
            break;
        case 14:
            Out(in + "try");
            Statement(depth + 1, nesting + 1);
            Out(in + "finally");
            Out(in + "  F" + Word() + ".Free;");
            Out(in + "end;");
            break;
        }
    }

    Random R;
    Sink Out;
};

/// Writes lines with CR LF to a file, counting lines and bytes.
class TextFile {
public:
    explicit TextFile(const QString& path) : FFile(path)
    {
        if (!FFile.open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw std::runtime_error("cannot write " + path.toStdString());
    }
    void Line(const std::string& text)
    {
        FBuffer += text;
        FBuffer += "\r\n";
        ++FLines;
        if (FBuffer.size() > (1u << 20))
            Flush();
    }
    int Lines() const { return FLines; }
    qint64 Close()
    {
        Flush();
        const qint64 size = FFile.size();
        FFile.close();
        return size;
    }

private:
    void Flush()
    {
        FFile.write(FBuffer.data(), qint64(FBuffer.size()));
        FBuffer.clear();
    }
    QFile FFile;
    std::string FBuffer;
    int FLines = 0;
};

/// Runs the writer until lineCount lines have come out, handing each to
/// sink; the last class is cut where the count is reached.
void GenerateLines(std::uint64_t seed, int lineCount, const std::function<void(const std::string&)>& sink)
{
    int written = 0;
    PascalWriter writer(seed, [&](const std::string& line) {
        if (written < lineCount) {
            sink(line);
            ++written;
        }
    });
    writer.UnitHeader();
    while (written < lineCount)
        writer.ClassWithMethods();
}

void CheckFree(const std::string& line, const QString& word)
{
    if (QString::fromUtf8(line).contains(word, Qt::CaseInsensitive))
        throw std::runtime_error("generated text holds the reserved word " + word.toStdString());
}

void WriteBig(PeerTexts& t, const QString& dir, std::uint64_t seed)
{
    t.BigPath = dir + "/big.pas";
    t.SmallPath = dir + "/small.pas";
    TextFile big(t.BigPath);
    TextFile small(t.SmallPath);
    GenerateLines(seed, BigLineCount - 2, [&](const std::string& line) {
        CheckFree(line, FindWord);
        big.Line(line);
        if (small.Lines() < SmallLineCount)
            small.Line(line);
    });
    big.Line("end.");
    big.Line("{ " + FindWord.toStdString() + ": the end of the generated text }");
    t.BigLines = big.Lines();
    t.BigBytes = big.Close();
    t.SmallLines = small.Lines();
    small.Close();
}

void WriteReplace(PeerTexts& t, const QString& dir, std::uint64_t seed)
{
    t.ReplacePath = dir + "/replace.pas";
    TextFile file(t.ReplacePath);
    GenerateLines(seed + 1, ReplaceLineCount - ReplaceLineCount / ReplaceEvery, [&](const std::string& line) {
        CheckFree(line, ReplaceWord);
        if (file.Lines() % ReplaceEvery == ReplaceEvery / 2) {
            file.Line("  " + ReplaceWord.toStdString() + ".Refresh(" + std::to_string(t.ReplaceHits) + ");");
            ++t.ReplaceHits;
        }
        file.Line(line);
    });
    t.ReplaceLines = file.Lines();
    file.Close();
}

/// A constant table on one line: identifiers, numbers and strings, as a
/// generated source might hold.
std::string LongTableLine(std::uint64_t seed)
{
    Random r(seed);
    std::string line = "  Table := [";
    while (line.size() < std::size_t(LongLineLength)) {
        switch (r.Below(3)) {
        case 0: line += "F" + std::string(r.Pick(Nouns)) + ", "; break;
        case 1: line += std::to_string(r.Below(100000)) + ", "; break;
        default: line += "'" + std::string(r.Pick(CommentWords)) + "', "; break;
        }
    }
    line.resize(std::size_t(LongLineLength) - 2);
    return line + "];";
}

void WriteLongLine(PeerTexts& t, const QString& dir, std::uint64_t seed)
{
    t.LongLinePath = dir + "/longline.pas";
    TextFile file(t.LongLinePath);
    GenerateLines(seed + 2, LinesAroundLongLine, [&](const std::string& line) {
        if (file.Lines() == LongLineIndex)
            file.Line(LongTableLine(seed));
        file.Line(line);
    });
    t.LongLine = LongLineIndex;
    t.LongLineLength = LongLineLength;
    file.Close();
}

}  // namespace

PeerTexts WritePeerTexts(const QString& dir, std::uint64_t seed)
{
    QDir().mkpath(dir);
    PeerTexts t;
    WriteBig(t, dir, seed);
    WriteReplace(t, dir, seed);
    WriteLongLine(t, dir, seed);
    return t;
}

}  // namespace peers
