// Drawing for the framework layer: colour resolution, fonts, brushes, pens, a
// canvas over a Qt paint device and an off-screen bitmap.
#pragma once

#include "platform/Classes.h"
#include "platform/Colors.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>

class QFont;
class QFontMetrics;
class QImage;
class QPainter;
class QPaintDevice;

namespace sx {

/// Logical pixels per inch used to turn point sizes into pixels.
constexpr Integer ScreenPixelsPerInch = 96;

/// Resolves a system colour to the desktop's current colour (the application
/// palette); a plain colour is answered as it is.
TColor ColorToRGB(TColor color);

/// Whether TextOut takes its shortcuts (on by default): a text of printable
/// ASCII is drawn from the shaping kept from the last time the same text was
/// drawn in the same font, and a text whose ink would all fall left of the
/// surface is only measured. The pixels are the same either way; tests turn
/// them off to compare.
void SetTextShortcuts(bool enabled);

struct TShapedText;

/// A font description: name, size in points, style and colour.
class TFont : public TPersistent {
public:
    TFont();
    ~TFont() override;

    const String& Name() const { return FName; }
    void SetName(const String& value);
    Integer Size() const { return FSize; }
    void SetSize(Integer value);
    /// Height in pixels, negative as in the classic framework (-Size * 96 / 72).
    Integer Height() const;
    void SetHeight(Integer value);
    TFontStyles Style() const { return FStyle; }
    void SetStyle(TFontStyles value);
    TColor Color() const { return FColor; }
    void SetColor(TColor value);
    void Assign(const TFont& source);

    /// The Qt font for the current description; cached per style.
    const QFont& QtFont() const;
    const QFontMetrics& Metrics() const;
    /// The text shaped in this font as it was when first drawn, or none for a
    /// text that is not kept (empty, or not printable ASCII throughout).
    const TShapedText* Shaped(const String& text) const;

    std::function<void(TObject*)> OnChange;

private:
    void Changed(bool shapeChanged);

    String FName = u"Tahoma";
    Integer FSize = 8;
    TFontStyles FStyle;
    TColor FColor = clWindowText;
    struct Cache;
    std::unique_ptr<Cache> FCache;
};

enum class TBrushStyle { bsSolid, bsClear };

class TBrush : public TPersistent {
public:
    TColor Color = clWhite;
    TBrushStyle Style = TBrushStyle::bsSolid;
};

class TPen : public TPersistent {
public:
    TColor Color = clBlack;
    Integer Width = 1;
};

class TBitmap;

/// A drawing surface. Coordinates are pixels; rectangles exclude their right
/// and bottom edges; lines exclude their end point; text is drawn opaque on
/// the brush colour unless the brush is clear.
class TCanvas : public TPersistent {
public:
    TCanvas();
    ~TCanvas() override;

    TFont& Font() { return FFont; }
    TBrush& Brush() { return FBrush; }
    TPen& Pen() { return FPen; }
    TPoint PenPos() const { return FPenPos; }

    void FillRect(const TRect& rect);
    void Rectangle(Integer x1, Integer y1, Integer x2, Integer y2);
    void Rectangle(const TRect& rect) { Rectangle(rect.Left, rect.Top, rect.Right, rect.Bottom); }
    void FrameRect(const TRect& rect);
    void MoveTo(Integer x, Integer y) { FPenPos = Point(x, y); }
    void LineTo(Integer x, Integer y);
    void TextOut(Integer x, Integer y, const String& text);
    Integer TextWidth(const String& text);
    Integer TextHeight(const String& text);
    void Draw(Integer x, Integer y, TBitmap& bitmap);
    /// Limits all drawing to the rectangle until ResetClip.
    void SetClipRect(const TRect& rect);
    void ResetClip();

    /// Device pixels per pixel of the surface drawn on: 2 on a screen of
    /// double density, 1 when there is no surface. Coordinates stay in pixels.
    double DevicePixelRatio();

    /// Draws through an outside painter (a widget's paint event) until Detach.
    void Attach(QPainter* painter);
    void Detach();
    bool HasPainter() const;

protected:
    /// The painter to draw with, or none when the canvas has no surface now.
    virtual QPainter* Painter();

private:
    void FillPixels(const TRect& rect, TColor color);
    void FrameRectIn(const TRect& rect, TColor color);

    TFont FFont;
    TBrush FBrush;
    TPen FPen;
    TPoint FPenPos;
    QPainter* FAttached = nullptr;
};

/// An off-screen picture with a canvas of its own.
class TBitmap : public TPersistent {
public:
    TBitmap();
    ~TBitmap() override;

    /// Width and height in pixels; the picture holds them times the ratio.
    Integer Width() const { return FWidth; }
    Integer Height() const { return FHeight; }
    void SetWidth(Integer value) { SetSize(value, Height()); }
    void SetHeight(Integer value) { SetSize(Width(), value); }
    void SetSize(Integer width, Integer height);
    /// Device pixels per pixel, so that a bitmap drawn on a screen of double
    /// density is as sharp as the screen. Set it before SetSize.
    double DevicePixelRatio() const { return FRatio; }
    void SetDevicePixelRatio(double value);
    TCanvas& Canvas();
    /// The picture; ends any drawing in progress first.
    const QImage& Image();
    /// Trades pictures, sizes and ratios with Other; each canvas keeps its
    /// own tools. A paint that keeps its picture for the next one takes it
    /// back this way onto a bitmap whose tools are fresh.
    void SwapPicture(TBitmap& Other);
    /// Moves ACount rows of device pixels from ASourceTop to ADestTop, as
    /// far as both lie in the picture; the rows they leave keep what they held.
    void MovePixelRows(Integer ASourceTop, Integer ADestTop, Integer ACount);

private:
    class BitmapCanvas;
    void MakeImage();

    Integer FWidth = 0;
    Integer FHeight = 0;
    double FRatio = 1.0;
    std::unique_ptr<QImage> FImage;
    std::unique_ptr<BitmapCanvas> FCanvas;
};

}  // namespace sx
