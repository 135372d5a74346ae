// Colours, fonts and the canvas, mapped one to one onto QPainter.
#include "platform/Graphics.h"

#include "platform/QtConvert.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QPalette>
#include <QTextLayout>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <tuple>
#include <unordered_map>

namespace sx {

namespace {

/// The desktop's colours when no application palette is there to ask.
constexpr std::array<TColor, 25> ClassicSystemColors = {
    0xC8C8C8, 0x000000, 0xD1B499, 0xDBCDBF, 0xF0F0F0, 0xFFFFFF, 0x646464, 0x000000, 0x000000,
    0x000000, 0xB4B4B4, 0xFCF7F4, 0xABABAB, 0xD77800, 0xFFFFFF, 0xF0F0F0, 0xA0A0A0, 0x6D6D6D,
    0x000000, 0x000000, 0xFFFFFF, 0x696969, 0xE3E3E3, 0x000000, 0xE1FFFF,
};

/// The palette role that stands for a system colour, where there is one.
std::optional<QPalette::ColorRole> PaletteRole(TColor color)
{
    switch (color) {
    case clWindow: return QPalette::Base;
    case clWindowText: return QPalette::Text;
    case clHighlight: return QPalette::Highlight;
    case clHighlightText: return QPalette::HighlightedText;
    case clBtnFace: return QPalette::Button;
    case clBtnShadow: return QPalette::Dark;
    case clBtnHighlight: return QPalette::Light;
    case clBtnText: return QPalette::ButtonText;
    case cl3DDkShadow: return QPalette::Shadow;
    case cl3DLight: return QPalette::Midlight;
    case clInfoBk: return QPalette::ToolTipBase;
    case clInfoText: return QPalette::ToolTipText;
    case clMenu: return QPalette::Window;
    case clMenuText: return QPalette::WindowText;
    default: return std::nullopt;
    }
}

TColor FromQColor(const QColor& c) { return RGB(Byte(c.red()), Byte(c.green()), Byte(c.blue())); }

}  // namespace

TColor ColorToRGB(TColor color)
{
    if (!IsSystemColor(color))
        return color & 0x00FFFFFF;
    const auto role = PaletteRole(color);
    if (role && qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return FromQColor(QGuiApplication::palette().color(QPalette::Active, *role));
    const std::size_t index = color & 0xFF;
    return index < ClassicSystemColors.size() ? ClassicSystemColors[index] : clBlack;
}

/// A text as Qt's shaping laid it out for one font: its width as the font's
/// metrics give it, and its glyphs with their positions.
struct TShapedText {
    Integer Width = 0;
    QList<QGlyphRun> Runs;
    /// From the layout's baseline to the one drawText uses (the metrics' whole-pixel ascent).
    qreal BaselineShift = 0;
};

namespace {

bool TextShortcutsEnabled = true;

/// Printable ASCII only: one font covers it, with no tab, mark or bidi, so
/// that the kept glyphs draw exactly as drawText draws the text.
bool KeepsShape(const String& text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](Char c) { return c >= 0x20 && c < 0x7F; });
}

/// The shaped texts of one font. A paint draws mostly the tokens of the paint
/// before it, so most of them are found here.
class ShapeTable {
public:
    const TShapedText& Get(const QFont& font, const QFontMetrics& metrics, const String& text)
    {
        if (const auto found = FEntries.find(text); found != FEntries.end())
            return found->second;
        if (FEntries.size() >= MaxEntries)
            FEntries.clear();  // a simple bound: start again
        return FEntries.emplace(text, Shape(font, metrics, text)).first->second;
    }

private:
    /// Enough for the tokens of several screens.
    static constexpr std::size_t MaxEntries = 4096;

    static TShapedText Shape(const QFont& font, const QFontMetrics& metrics, const String& text)
    {
        const QString qtext = ToQString(text);
        QTextLayout layout(qtext, font);
        layout.beginLayout();
        const QTextLine line = layout.createLine();
        layout.endLayout();
        TShapedText shaped;
        shaped.Width = metrics.horizontalAdvance(qtext);
        shaped.Runs = layout.glyphRuns();
        shaped.BaselineShift = metrics.ascent() - line.ascent();
        return shaped;
    }

    std::unordered_map<String, TShapedText> FEntries;
};

/// One table per font description, shared by every TFont of that description:
/// a paint's canvas is new each time, the shapes outlive it.
std::shared_ptr<ShapeTable> SharedShapeTable(const String& name, Integer size, unsigned styleBits)
{
    static std::map<std::tuple<String, Integer, unsigned>, std::shared_ptr<ShapeTable>> tables;
    auto& table = tables[{name, size, styleBits}];
    if (!table)
        table = std::make_shared<ShapeTable>();
    return table;
}

}  // namespace

void SetTextShortcuts(bool enabled) { TextShortcutsEnabled = enabled; }

struct TFont::Cache {
    std::array<std::optional<QFont>, 16> fonts;
    std::array<std::optional<QFontMetrics>, 16> metrics;
    std::array<std::shared_ptr<ShapeTable>, 16> shapes;
};

TFont::TFont() : FCache(std::make_unique<Cache>()) {}

TFont::~TFont() = default;

void TFont::SetName(const String& value)
{
    if (value != FName) {
        FName = value;
        Changed(true);
    }
}

void TFont::SetSize(Integer value)
{
    if (value != FSize) {
        FSize = value;
        Changed(true);
    }
}

Integer TFont::Height() const { return -MulDiv(FSize, ScreenPixelsPerInch, 72); }

void TFont::SetHeight(Integer value) { SetSize(-MulDiv(value, 72, ScreenPixelsPerInch)); }

void TFont::SetStyle(TFontStyles value)
{
    if (!(value == FStyle)) {
        FStyle = value;
        Changed(false);
    }
}

void TFont::SetColor(TColor value)
{
    if (value != FColor) {
        FColor = value;
        Changed(false);
    }
}

void TFont::Assign(const TFont& source)
{
    if (&source == this)
        return;
    const bool shape = source.FName != FName || source.FSize != FSize;
    FName = source.FName;
    FSize = source.FSize;
    FStyle = source.FStyle;
    FColor = source.FColor;
    Changed(shape);
}

void TFont::Changed(bool shapeChanged)
{
    if (shapeChanged)
        *FCache = Cache{};
    if (OnChange)
        OnChange(this);
}

namespace {

/// The face a classic dialog face is drawn in where it is not installed: a
/// face of the same metrics, so that captions fit the stored control sizes.
QString AvailableFace(const String& name)
{
    static const char16_t* const DialogFaces[] = {u"MS Sans Serif", u"MS Shell Dlg", u"MS Shell Dlg 2", u"Tahoma"};
    for (const char16_t* face : DialogFaces)
        if (CompareText(name, face) == 0 && !QFontDatabase::hasFamily(ToQString(name)))
            return QStringLiteral("Liberation Sans");
    return ToQString(name);
}

}  // namespace

const QFont& TFont::QtFont() const
{
    auto& slot = FCache->fonts[FStyle.ToBits() & 15];
    if (!slot) {
        QFont font(AvailableFace(FName));
        font.setPixelSize(std::max(1, std::abs(Height())));
        font.setBold(FStyle.Contains(TFontStyle::fsBold));
        font.setItalic(FStyle.Contains(TFontStyle::fsItalic));
        font.setUnderline(FStyle.Contains(TFontStyle::fsUnderline));
        font.setStrikeOut(FStyle.Contains(TFontStyle::fsStrikeOut));
        // Whole-pixel advances and no kerning: every cell of a fixed-pitch
        // font is then exactly as wide as the caret and hit testing assume.
        font.setKerning(false);
        font.setHintingPreference(QFont::PreferFullHinting);
        slot = font;
    }
    return *slot;
}

const QFontMetrics& TFont::Metrics() const
{
    auto& slot = FCache->metrics[FStyle.ToBits() & 15];
    if (!slot)
        slot.emplace(QtFont());
    return *slot;
}

const TShapedText* TFont::Shaped(const String& text) const
{
    if (!TextShortcutsEnabled || !KeepsShape(text))
        return nullptr;
    const unsigned style = FStyle.ToBits() & 15;
    auto& table = FCache->shapes[style];
    if (!table)
        table = SharedShapeTable(FName, FSize, style);
    return &table->Get(QtFont(), Metrics(), text);
}

TCanvas::TCanvas() = default;

TCanvas::~TCanvas() = default;

void TCanvas::Attach(QPainter* painter) { FAttached = painter; }

void TCanvas::Detach() { FAttached = nullptr; }

bool TCanvas::HasPainter() const { return FAttached != nullptr; }

QPainter* TCanvas::Painter() { return FAttached; }

double TCanvas::DevicePixelRatio()
{
    const QPainter* p = Painter();
    return p && p->device() ? p->device()->devicePixelRatioF() : 1.0;
}

void TCanvas::FillPixels(const TRect& rect, TColor color)
{
    if (rect.IsEmpty())
        return;
    if (QPainter* p = Painter())
        p->fillRect(ToQRect(rect), ToQColor(color));
}

void TCanvas::FillRect(const TRect& rect)
{
    if (FBrush.Style == TBrushStyle::bsSolid)
        FillPixels(rect, FBrush.Color);
}

void TCanvas::Rectangle(Integer x1, Integer y1, Integer x2, Integer y2)
{
    const TRect outer = Rect(std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2));
    const TRect inner = Rect(outer.Left + 1, outer.Top + 1, outer.Right - 1, outer.Bottom - 1);
    if (FBrush.Style == TBrushStyle::bsSolid) {
        FillPixels(outer, FPen.Color);
        FillPixels(inner, FBrush.Color);
    } else {
        FrameRectIn(outer, FPen.Color);
    }
}

void TCanvas::FrameRectIn(const TRect& r, TColor color)
{
    FillPixels(Rect(r.Left, r.Top, r.Right, std::min(r.Top + 1, r.Bottom)), color);
    FillPixels(Rect(r.Left, std::max(r.Bottom - 1, r.Top), r.Right, r.Bottom), color);
    FillPixels(Rect(r.Left, r.Top, std::min(r.Left + 1, r.Right), r.Bottom), color);
    FillPixels(Rect(std::max(r.Right - 1, r.Left), r.Top, r.Right, r.Bottom), color);
}

void TCanvas::FrameRect(const TRect& rect) { FrameRectIn(rect, FBrush.Color); }

void TCanvas::LineTo(Integer x, Integer y)
{
    const TPoint from = FPenPos;
    FPenPos = Point(x, y);
    if (from.X == x) {
        FillPixels(Rect(x, std::min(from.Y, y + 1), x + 1, std::max(from.Y + 1, y)), FPen.Color);
    } else if (from.Y == y) {
        FillPixels(Rect(std::min(from.X, x + 1), y, std::max(from.X + 1, x), y + 1), FPen.Color);
    } else if (QPainter* p = Painter()) {
        p->setPen(QPen(ToQColor(FPen.Color), 0));
        p->drawLine(from.X, from.Y, x, y);
    }
}

void TCanvas::TextOut(Integer x, Integer y, const String& text)
{
    // Ink may reach right of a text's advance, by less than a line's height.
    if (TextShortcutsEnabled && x < 0) {
        const Integer width = TextWidth(text);
        if (x + width + FFont.Metrics().height() <= 0) {
            FPenPos = Point(x + width, y);
            return;
        }
    }
    if (const TShapedText* shaped = FFont.Shaped(text)) {
        if (FBrush.Style == TBrushStyle::bsSolid)
            FillPixels(Rect(x, y, x + shaped->Width, y + FFont.Metrics().height()), FBrush.Color);
        if (QPainter* p = Painter()) {
            p->setPen(ToQColor(FFont.Color()));
            for (const QGlyphRun& run : shaped->Runs)
                p->drawGlyphRun(QPointF(x, y + shaped->BaselineShift), run);
        }
        FPenPos = Point(x + shaped->Width, y);
        return;
    }
    const QFontMetrics& metrics = FFont.Metrics();
    const QString qtext = ToQString(text);
    const int width = metrics.horizontalAdvance(qtext);
    if (FBrush.Style == TBrushStyle::bsSolid)
        FillPixels(Rect(x, y, x + width, y + metrics.height()), FBrush.Color);
    if (QPainter* p = Painter()) {
        p->setFont(FFont.QtFont());
        p->setPen(ToQColor(FFont.Color()));
        p->drawText(x, y + metrics.ascent(), qtext);
    }
    FPenPos = Point(x + width, y);
}

Integer TCanvas::TextWidth(const String& text)
{
    if (const TShapedText* shaped = FFont.Shaped(text))
        return shaped->Width;
    return FFont.Metrics().horizontalAdvance(ToQString(text));
}

Integer TCanvas::TextHeight(const String&) { return FFont.Metrics().height(); }

void TCanvas::Draw(Integer x, Integer y, TBitmap& bitmap)
{
    const QImage& image = bitmap.Image();
    if (QPainter* p = Painter())
        p->drawImage(x, y, image);
}

void TCanvas::SetClipRect(const TRect& rect)
{
    if (QPainter* p = Painter())
        p->setClipRect(ToQRect(rect));
}

void TCanvas::ResetClip()
{
    if (QPainter* p = Painter())
        p->setClipping(false);
}

/// The canvas of a bitmap: opens a painter on the picture when first drawn on.
class TBitmap::BitmapCanvas : public TCanvas {
public:
    explicit BitmapCanvas(QImage& image) : FImage(image) {}
    ~BitmapCanvas() override { End(); }
    void End() { FPainter.reset(); }

protected:
    QPainter* Painter() override
    {
        if (FImage.isNull())
            return nullptr;
        if (!FPainter)
            FPainter = std::make_unique<QPainter>(&FImage);
        return FPainter.get();
    }

private:
    QImage& FImage;
    std::unique_ptr<QPainter> FPainter;
};

TBitmap::TBitmap() : FImage(std::make_unique<QImage>()), FCanvas(std::make_unique<BitmapCanvas>(*FImage)) {}

TBitmap::~TBitmap()
{
    FCanvas.reset();
}

void TBitmap::SetSize(Integer width, Integer height)
{
    if (width == FWidth && height == FHeight)
        return;
    FWidth = width;
    FHeight = height;
    MakeImage();
}

void TBitmap::SetDevicePixelRatio(double value)
{
    if (!(value > 0) || value == FRatio)
        return;
    FRatio = value;
    MakeImage();
}

void TBitmap::MakeImage()
{
    FCanvas->End();
    if (FWidth <= 0 || FHeight <= 0) {
        *FImage = QImage();
        return;
    }
    // Device pixels cover the whole logical area, also at a fractional ratio.
    const auto device = [this](Integer pixels) { return int(std::ceil(pixels * FRatio)); };
    *FImage = QImage(device(FWidth), device(FHeight), QImage::Format_RGB32);
    FImage->setDevicePixelRatio(FRatio);
    FImage->fill(Qt::white);
}

TCanvas& TBitmap::Canvas() { return *FCanvas; }

void TBitmap::SwapPicture(TBitmap& Other)
{
    FCanvas->End();
    Other.FCanvas->End();
    FImage->swap(*Other.FImage);
    std::swap(FWidth, Other.FWidth);
    std::swap(FHeight, Other.FHeight);
    std::swap(FRatio, Other.FRatio);
}

void TBitmap::MovePixelRows(Integer ASourceTop, Integer ADestTop, Integer ACount)
{
    FCanvas->End();
    const int rows = FImage->height();
    const int count = std::min({ACount, rows - ASourceTop, rows - ADestTop});
    if (ASourceTop < 0 || ADestTop < 0 || count <= 0 || ASourceTop == ADestTop)
        return;
    const auto stride = std::size_t(FImage->bytesPerLine());
    uchar* bits = FImage->bits();
    const auto copyRow = [&](int row) {
        std::memmove(bits + std::size_t(ADestTop + row) * stride, bits + std::size_t(ASourceTop + row) * stride, stride);
    };
    // Row by row, in the order that reads each row before it is written:
    // one backward move of the whole block runs far slower than forward.
    if (ADestTop < ASourceTop)
        for (int row = 0; row < count; ++row)
            copyRow(row);
    else
        for (int row = count - 1; row >= 0; --row)
            copyRow(row);
}

const QImage& TBitmap::Image()
{
    FCanvas->End();
    return *FImage;
}

}  // namespace sx
