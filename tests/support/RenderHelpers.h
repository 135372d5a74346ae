// Helpers of the widget tests: host a control in a Qt window, render it into
// an image as the screen would show it, read its pixels as colours, find
// the pixels of a character cell of the code edit control, and make long texts.
#pragma once

#include "codeedit/uSxCodeEdit.h"
#include "platform/Controls.h"

#include <QImage>
#include <QWidget>

#include <memory>
#include <string>

namespace sx::test {

/// Renders the control's widget, children included, into an image of its size.
QImage Render(TWinControl& control);

/// The pixel as a plain colour (0x00BBGGRR).
TColor PixelAt(const QImage& image, int x, int y);

/// The plain colour a system or plain colour is drawn in.
inline TColor Drawn(TColor color) { return ColorToRGB(color); }

/// Counts the pixels of a colour inside a rectangle.
int CountPixels(const QImage& image, const TRect& area, TColor color);

/// The widget pixels of the character cell at (column, line) of the text, in
/// the view as it is scrolled: right of the gutter and its inner margin of 2.
TRect CellRect(TSxCodeEdit& edit, Integer column, Integer line);

/// A point as "x,y".
inline std::string At(TPoint p) { return std::to_string(p.X) + "," + std::to_string(p.Y); }

/// A text of `count` lines, line i being lineOf(i), each ended with CR LF.
template <class F>
String LinesOf(int count, F lineOf)
{
    String text;
    for (int i = 0; i < count; ++i)
        text += String(lineOf(i)) + u"\r\n";
    return text;
}

/// A Qt window that hosts controls, as an application's window does. A control
/// put into it is freed with it.
class Host {
public:
    Host() : FWindow(std::make_unique<QWidget>())
    {
        FWindow->resize(800, 600);
        FWindow->show();
    }
    /// Makes a control of type T, sized and placed into the window.
    template <class T>
    T* Add(int width, int height)
    {
        auto* control = new T(nullptr);
        Place(*control, width, height);
        return control;
    }
    void Place(TWinControl& control, int width, int height);
    QWidget& Window() { return *FWindow; }

private:
    std::unique_ptr<QWidget> FWindow;
};

}  // namespace sx::test
