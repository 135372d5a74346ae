// sxedit_shotcheck: judges a screenshot of the demo editor that was read back
// from the X server. It runs as a QApplication on the editor's display, so that
// system colours resolve through the same palette as in the editor.
//
//   sxedit_shotcheck selection SHOT
//       exit 0 when the selection colour shows in SHOT, 1 when it does not.
//   sxedit_shotcheck text SHOT FILE WIDTHxHEIGHT
//       SHOT has that size, and each colour the Pascal parser gives the tokens
//       of FILE shows on the lines whose tokens have it and on no other line.
//
// The lines are found without knowing the font: a token background that only
// one line of FILE has marks that line's rows, and its height is the height
// of every line.
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Graphics.h"

#include <QApplication>
#include <QFile>
#include <QImage>

#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <vector>

using namespace sx;

namespace {

/// Fewer pixels than this of the selection colour could be a stray one.
constexpr int MinSelectionPixels = 20;
/// Line heights outside this range mean the rows were misread, not a font.
constexpr int MinLineHeightPx = 8;
constexpr int MaxLineHeightPx = 64;
/// The token loop ends here even if a parser never reported its end.
constexpr std::size_t MaxTokensPerFile = 100000;

QRgb ToRgb(TColor color)
{
    const TColor rgb = ColorToRGB(color);
    return qRgb(GetRValue(rgb), GetGValue(rgb), GetBValue(rgb));
}

QString Hex(QRgb colour) { return QStringLiteral("#%1").arg(colour & 0xFFFFFFu, 6, 16, QLatin1Char('0')); }

/// Colours that the tokens of each line show. A glyph blends into its
/// background at its edges, and a lone small one (a period) may have no pixel
/// of its pure colour: a text colour is required where a token has two
/// visible characters or more, and allowed wherever a token has one.
struct ExpectedLines {
    std::vector<std::set<QRgb>> Required;
    std::vector<std::set<QRgb>> Allowed;
    std::vector<std::set<QRgb>> Backgrounds;
};

int VisibleChars(const String& token)
{
    int count = 0;
    for (const Char c : token)
        count += c > u' ' ? 1 : 0;
    return count;
}

std::vector<String> ReadLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();  // the break behind the last line starts no line of its own
    std::vector<String> result;
    for (QString& line : lines)
        result.push_back(line.remove(QLatin1Char('\r')).toStdU16String());
    return result;
}

ExpectedLines TokenColours(const std::vector<String>& lines)
{
    ExpectedLines expected;
    for (auto* perLine : {&expected.Required, &expected.Allowed, &expected.Backgrounds})
        perLine->resize(lines.size());
    TSxCodePascalParser parser(nullptr);
    std::size_t next = 0;
    parser.SetOnGetNewBuffer([&](bool reset, String& piece) {
        if (reset)
            next = 0;
        else if (next < lines.size())
            piece = lines[next++] + u"\r\n";
        else
            return false;
        return true;
    });
    String token;
    TColor back = 0, text = 0;
    TFontStyles style;
    bool lineBreak = false;
    std::size_t line = 0;
    for (std::size_t count = 0; count < MaxTokensPerFile && parser.GetNextToken(token, back, text, style, lineBreak);
         ++count) {
        if (line < lines.size() && !token.empty()) {
            const int visible = VisibleChars(token);
            for (auto* perLine : {&expected.Required, &expected.Allowed, &expected.Backgrounds})
                (*perLine)[line].insert(ToRgb(back));
            if (visible >= 2)
                expected.Required[line].insert(ToRgb(text));
            if (visible >= 1)
                expected.Allowed[line].insert(ToRgb(text));
        }
        if (lineBreak)
            ++line;
    }
    return expected;
}

/// The shot, with rows and bands of rows searched for one colour.
class Shot {
public:
    explicit Shot(QImage image) : FImage(std::move(image)) {}

    int Width() const { return FImage.width(); }
    int Height() const { return FImage.height(); }

    bool RowHas(int y, QRgb colour, const std::vector<bool>* skipColumns = nullptr) const
    {
        const auto* row = reinterpret_cast<const QRgb*>(FImage.constScanLine(y));
        for (int x = 0; x < FImage.width(); ++x)
            if ((row[x] | 0xFF000000u) == colour && !(skipColumns && (*skipColumns)[std::size_t(x)]))
                return true;
        return false;
    }

    bool BandHas(int top, int height, QRgb colour, const std::vector<bool>& skipColumns) const
    {
        for (int y = std::max(top, 0); y < std::min(top + height, FImage.height()); ++y)
            if (RowHas(y, colour, &skipColumns))
                return true;
        return false;
    }

    /// Columns where the colour shows in the band: frame and margin lines
    /// that stand in every line, text or none.
    std::vector<bool> ColumnsWith(int top, int height, QRgb colour) const
    {
        std::vector<bool> columns(std::size_t(FImage.width()), false);
        for (int y = std::max(top, 0); y < std::min(top + height, FImage.height()); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(FImage.constScanLine(y));
            for (int x = 0; x < FImage.width(); ++x)
                if ((row[x] | 0xFF000000u) == colour)
                    columns[std::size_t(x)] = true;
        }
        return columns;
    }

    int Count(QRgb colour) const
    {
        int count = 0;
        for (int y = 0; y < FImage.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(FImage.constScanLine(y));
            for (int x = 0; x < FImage.width(); ++x)
                count += (row[x] | 0xFF000000u) == colour ? 1 : 0;
        }
        return count;
    }

private:
    QImage FImage;
};

/// Where the text lines stand in the shot.
struct LineRows {
    int Top = 0;  ///< first row of line 0
    int Height = 0;
    int TopOf(std::size_t line) const { return Top + int(line) * Height; }
};

/// The rows of a background that one line alone has give that line's place
/// and height; the colour must show as one unbroken stretch of rows.
std::optional<LineRows> FindLineRows(const Shot& shot, const ExpectedLines& expected, QRgb window)
{
    std::map<QRgb, std::vector<std::size_t>> linesOf;
    for (std::size_t line = 0; line < expected.Backgrounds.size(); ++line)
        for (const QRgb colour : expected.Backgrounds[line])
            if (colour != window)
                linesOf[colour].push_back(line);
    for (const auto& [colour, lines] : linesOf) {
        if (lines.size() != 1)
            continue;
        int first = -1, last = -1, stretches = 0;
        for (int y = 0; y < shot.Height(); ++y) {
            if (!shot.RowHas(y, colour))
                continue;
            stretches += (first < 0 || y != last + 1) ? 1 : 0;
            first = first < 0 ? y : first;
            last = y;
        }
        const int height = last - first + 1;
        if (stretches != 1 || height < MinLineHeightPx || height > MaxLineHeightPx) {
            std::fprintf(stderr, "FAIL: the background %s of line %zu shows in %d stretches of rows, %d rows in all\n",
                         qPrintable(Hex(colour)), lines.front() + 1, stretches, first < 0 ? 0 : height);
            return std::nullopt;
        }
        return LineRows{first - int(lines.front()) * height, height};
    }
    std::fprintf(stderr, "FAIL: no line of the text has a token background of its own to find the lines by\n");
    return std::nullopt;
}

/// Each colour of the text must show on the lines that require it and on no
/// line that does not allow it; the line below the text is the blank
/// reference for frame and margin lines.
int CheckLines(const Shot& shot, const ExpectedLines& expected, const LineRows& rows, QRgb window)
{
    const std::size_t lineCount = expected.Allowed.size();
    std::set<QRgb> colours;
    for (const auto& line : expected.Allowed)
        colours.insert(line.begin(), line.end());
    colours.erase(window);
    int failures = 0;
    for (const QRgb colour : colours) {
        const std::vector<bool> frame = shot.ColumnsWith(rows.TopOf(lineCount), rows.Height, colour);
        for (std::size_t line = 0; line < lineCount; ++line) {
            const bool shows = shot.BandHas(rows.TopOf(line), rows.Height, colour, frame);
            const bool required = expected.Required[line].count(colour) != 0;
            const bool allowed = expected.Allowed[line].count(colour) != 0;
            if (shows ? allowed : !required)
                continue;
            std::fprintf(stderr, "FAIL: line %zu (rows %d to %d) %s colour %s\n", line + 1, rows.TopOf(line),
                         rows.TopOf(line + 1) - 1, shows ? "shows" : "lacks", qPrintable(Hex(colour)));
            ++failures;
        }
    }
    return failures;
}

int CheckText(const QString& shotPath, const QString& textPath, const QString& size)
{
    const QImage image(shotPath);
    if (image.isNull()) {
        std::fprintf(stderr, "FAIL: cannot read the screenshot %s\n", qPrintable(shotPath));
        return 1;
    }
    const Shot shot(image.convertToFormat(QImage::Format_RGB32));
    const QString shotSize = QStringLiteral("%1x%2").arg(shot.Width()).arg(shot.Height());
    if (shotSize != size) {
        std::fprintf(stderr, "FAIL: the screenshot is %s, the window %s\n", qPrintable(shotSize), qPrintable(size));
        return 1;
    }
    const std::vector<String> lines = ReadLines(textPath);
    if (lines.empty()) {
        std::fprintf(stderr, "FAIL: no text in %s\n", qPrintable(textPath));
        return 1;
    }
    const ExpectedLines expected = TokenColours(lines);
    const QRgb window = ToRgb(clWindow);
    const std::optional<LineRows> rows = FindLineRows(shot, expected, window);
    if (!rows)
        return 1;
    if (rows->Top < 1 || rows->TopOf(lines.size() + 1) > shot.Height()) {
        std::fprintf(stderr, "FAIL: the text would stand at rows %d to %d, outside the window\n", rows->Top,
                     rows->TopOf(lines.size()) - 1);
        return 1;
    }
    const int failures = CheckLines(shot, expected, *rows, window);
    std::printf("%zu lines of %d rows from row %d: %s\n", lines.size(), rows->Height, rows->Top,
                failures == 0 ? "every colour where its tokens stand" : "colours out of place");
    return failures == 0 ? 0 : 1;
}

int CheckSelection(const QString& shotPath)
{
    const QImage image(shotPath);
    if (image.isNull())
        return 1;
    return Shot(image.convertToFormat(QImage::Format_RGB32)).Count(ToRgb(clHighlight)) >= MinSelectionPixels ? 0 : 1;
}

int Usage()
{
    std::fprintf(stderr, "usage: sxedit_shotcheck selection SHOT\n"
                         "       sxedit_shotcheck text SHOT FILE WIDTHxHEIGHT\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.size() == 2 && args[0] == QLatin1String("selection"))
        return CheckSelection(args[1]);
    if (args.size() == 4 && args[0] == QLatin1String("text"))
        return CheckText(args[1], args[2], args[3]);
    return Usage();
}
