// A QScrollBar that keeps the picture of its last paint and shows it again
// while nothing it is drawn from has changed. A repaint of a control repaints
// the bars inside it, and a styled bar costs more to draw than a screen of
// text; a bar whose slider, size, state or palette moved draws anew.
#pragma once

#include <QImage>
#include <QScrollBar>

namespace sx {

class KeptScrollBar : public QScrollBar {
public:
    using QScrollBar::QScrollBar;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Everything the style draws the bar from, as bytes: the slider's place
    /// rather than the range and value it comes from.
    QByteArray PictureKey() const;
    /// Whether a kept picture shows what a paint would: not while the mouse
    /// is over the bar or holds it (the style lights the part under it), not
    /// for a style whose bars fade in and out, and only for an opaque picture.
    bool MayKeep() const;
    /// Draws the bar into a picture of its own as QScrollBar draws it when
    /// the mouse is away; answers whether it covers every pixel.
    bool DrawPicture();

    QImage FPicture;
    QByteArray FKey;
};

}  // namespace sx
