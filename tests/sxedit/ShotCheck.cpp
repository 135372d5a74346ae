// sxedit_shotcheck: judges a screenshot of the demo editor that was read back
// from the X server. It runs as a QApplication on the editor's display, so that
// system colours resolve through the same palette as in the editor.
//
//   sxedit_shotcheck selection SHOT
//       exit 0 when the selection colour shows in SHOT, 1 when it does not.
//   sxedit_shotcheck text SHOT FILE
//       each colour the Pascal parser gives the tokens of FILE shows on the
//       lines whose tokens have it and on no other line. (The caller checks
//       that SHOT has the window's size.)
//
// The lines are found without knowing the font: a token background that only
// one line of FILE has marks that line's rows, and its height is the height
// of every line.
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Graphics.h"
#include "platform/StringList.h"

#include <QApplication>
#include <QFile>
#include <QImage>

#include <algorithm>
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

/// Colours that the tokens of one line show. A glyph blends into its
/// background at its edges, and a lone small one (a period) may have no pixel
/// of its pure colour: a text colour is required where a token has two
/// visible characters or more, and allowed wherever a token has one.
struct LineColours {
    std::set<QRgb> Required, Allowed, Backgrounds;
};

std::vector<LineColours> TokenColours(const TStringList& lines)
{
    std::vector<LineColours> expected(std::size_t(lines.Count()));
    TSxCodePascalParser parser(nullptr);
    Integer next = 0;
    parser.SetOnGetNewBuffer([&](bool reset, String& piece) {
        next = reset ? 0 : next;
        if (reset || next >= lines.Count())
            return reset;  // a reset is answered, the end of the lines is reported
        piece = lines.Get(next++) + u"\r\n";
        return true;
    });
    String token;
    TColor back = 0, text = 0;
    TFontStyles style;
    bool lineBreak = false;
    std::size_t line = 0;
    for (std::size_t count = 0; count < MaxTokensPerFile && parser.GetNextToken(token, back, text, style, lineBreak);
         ++count) {
        if (line < expected.size() && !token.empty()) {
            LineColours& here = expected[line];
            for (std::set<QRgb>* colours : {&here.Required, &here.Allowed, &here.Backgrounds})
                colours->insert(ToRgb(back));
            const auto visible = std::count_if(token.begin(), token.end(), [](Char c) { return c > u' '; });
            if (visible >= 2)
                here.Required.insert(ToRgb(text));
            if (visible >= 1)
                here.Allowed.insert(ToRgb(text));
        }
        if (lineBreak)
            ++line;
    }
    return expected;
}

bool Is(const QImage& shot, int x, int y, QRgb colour) { return (shot.pixel(x, y) | 0xFF000000u) == colour; }

/// Whether the colour shows in the rows from top on, outside the skipped columns.
bool BandHas(const QImage& shot, int top, int height, QRgb colour, const std::vector<bool>& skip = {})
{
    for (int y = std::max(top, 0); y < std::min(top + height, shot.height()); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (Is(shot, x, y, colour) && (skip.empty() || !skip[std::size_t(x)]))
                return true;
    return false;
}

/// Columns where the colour shows in the band: frame and margin lines that
/// stand in every line, text or none.
std::vector<bool> ColumnsWith(const QImage& shot, int top, int height, QRgb colour)
{
    std::vector<bool> columns(std::size_t(shot.width()), false);
    for (int y = std::max(top, 0); y < std::min(top + height, shot.height()); ++y)
        for (int x = 0; x < shot.width(); ++x)
            columns[std::size_t(x)] = columns[std::size_t(x)] || Is(shot, x, y, colour);
    return columns;
}

/// Where the text lines stand in the shot.
struct LineRows {
    int Top = 0, Height = 0;  ///< the first row of line 0, and the rows of each line
    int TopOf(std::size_t line) const { return Top + int(line) * Height; }
};

/// The rows of a background that one line alone has give that line's place
/// and height; the colour must show as one unbroken stretch of rows.
std::optional<LineRows> FindLineRows(const QImage& shot, const std::vector<LineColours>& expected, QRgb window)
{
    std::map<QRgb, std::vector<std::size_t>> linesOf;
    for (std::size_t line = 0; line < expected.size(); ++line)
        for (const QRgb colour : expected[line].Backgrounds)
            if (colour != window)
                linesOf[colour].push_back(line);
    for (const auto& [colour, lines] : linesOf) {
        if (lines.size() != 1)
            continue;
        int first = -1, last = -1, stretches = 0;
        for (int y = 0; y < shot.height(); ++y) {
            if (!BandHas(shot, y, 1, colour))
                continue;
            stretches += (first < 0 || y != last + 1) ? 1 : 0;
            first = first < 0 ? y : first;
            last = y;
        }
        const int height = last - first + 1;
        if (stretches != 1 || height < MinLineHeightPx || height > MaxLineHeightPx) {
            std::fprintf(stderr, "FAIL: the background #%06x of line %zu shows in %d stretches of rows, %d rows in all\n",
                         colour & 0xFFFFFFu, lines.front() + 1, stretches, first < 0 ? 0 : height);
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
int CheckLines(const QImage& shot, const std::vector<LineColours>& expected, const LineRows& rows, QRgb window)
{
    std::set<QRgb> colours;
    for (const LineColours& line : expected)
        colours.insert(line.Allowed.begin(), line.Allowed.end());
    colours.erase(window);
    int failures = 0;
    for (const QRgb colour : colours) {
        const std::vector<bool> frame = ColumnsWith(shot, rows.TopOf(expected.size()), rows.Height, colour);
        for (std::size_t line = 0; line < expected.size(); ++line) {
            const bool shows = BandHas(shot, rows.TopOf(line), rows.Height, colour, frame);
            if (shows ? expected[line].Allowed.count(colour) != 0 : expected[line].Required.count(colour) == 0)
                continue;
            std::fprintf(stderr, "FAIL: line %zu (rows %d to %d) %s colour #%06x\n", line + 1, rows.TopOf(line),
                         rows.TopOf(line + 1) - 1, shows ? "shows" : "lacks", colour & 0xFFFFFFu);
            ++failures;
        }
    }
    return failures;
}

int CheckText(const QImage& shot, const QString& textPath)
{
    QFile file(textPath);
    TStringList lines;
    if (file.open(QIODevice::ReadOnly))
        lines.SetText(QString::fromUtf8(file.readAll()).toStdU16String());
    if (lines.Count() == 0) {
        std::fprintf(stderr, "FAIL: no text in %s\n", qPrintable(textPath));
        return 1;
    }
    const std::vector<LineColours> expected = TokenColours(lines);
    const QRgb window = ToRgb(clWindow);
    const std::optional<LineRows> rows = FindLineRows(shot, expected, window);
    if (!rows)
        return 1;
    if (rows->Top < 1 || rows->TopOf(expected.size() + 1) > shot.height()) {
        std::fprintf(stderr, "FAIL: the text would stand at rows %d to %d, outside the window\n", rows->Top,
                     rows->TopOf(expected.size()) - 1);
        return 1;
    }
    const int failures = CheckLines(shot, expected, *rows, window);
    std::printf("%zu lines of %d rows from row %d: %s\n", expected.size(), rows->Height, rows->Top,
                failures == 0 ? "every colour where its tokens stand" : "colours out of place");
    return failures == 0 ? 0 : 1;
}

int CheckSelection(const QImage& shot)
{
    const QRgb selection = ToRgb(clHighlight);
    int count = 0;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            count += Is(shot, x, y, selection) ? 1 : 0;
    return count >= MinSelectionPixels ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    const bool selection = args.size() == 2 && args[0] == QLatin1String("selection");
    if (!selection && !(args.size() == 3 && args[0] == QLatin1String("text"))) {
        std::fprintf(stderr, "usage: sxedit_shotcheck selection SHOT\n"
                             "       sxedit_shotcheck text SHOT FILE\n");
        return 2;
    }
    const QImage shot = QImage(args[1]).convertToFormat(QImage::Format_RGB32);
    if (shot.isNull()) {
        std::fprintf(stderr, "FAIL: cannot read the screenshot %s\n", qPrintable(args[1]));
        return 1;
    }
    return selection ? CheckSelection(shot) : CheckText(shot, args[2]);
}
