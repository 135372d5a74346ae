#include "platform/KeptScrollBar.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace sx {

namespace {

template <class T>
void Append(QByteArray& key, const T& value)
{
    key.append(reinterpret_cast<const char*>(&value), sizeof value);
}

bool Opaque(const QImage& picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(line[x]) != 255)
                return false;
    }
    return true;
}

}  // namespace

QByteArray KeptScrollBar::PictureKey() const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    // Where the style puts the slider, not the raw range and value: a line
    // more in a million moves no pixel of the bar.
    const QRect slider = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    QByteArray key;
    for (const int value : {option.rect.width(), option.rect.height(), int(option.state), int(option.direction),
                            slider.x(), slider.y(), slider.width(), slider.height(), int(option.orientation),
                            int(option.upsideDown), int(option.minimum == option.maximum),
                            int(option.sliderValue == option.minimum), int(option.sliderValue == option.maximum)})
        Append(key, value);
    Append(key, option.palette.cacheKey());
    Append(key, devicePixelRatioF());
    Append(key, static_cast<const void*>(style()));
    return key;
}

bool KeptScrollBar::MayKeep() const
{
    // At a fractional ratio the bar may stand between device pixels, where
    // a picture lands other than a paint.
    const qreal ratio = devicePixelRatioF();
    return ratio == qRound(ratio) && !underMouse() && !isSliderDown() && QApplication::mouseButtons() == Qt::NoButton &&
           !style()->styleHint(QStyle::SH_ScrollBar_Transient, nullptr, this);
}

bool KeptScrollBar::DrawPicture()
{
    // As QScrollBar paints itself when no part of it is hovered or held.
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.subControls = QStyle::SC_All;
    option.activeSubControls = QStyle::SC_None;
    const qreal ratio = devicePixelRatioF();
    FPicture = QImage(size() * ratio, QImage::Format_ARGB32_Premultiplied);
    FPicture.setDevicePixelRatio(ratio);
    FPicture.fill(Qt::transparent);
    QPainter painter(&FPicture);
    style()->drawComplexControl(QStyle::CC_ScrollBar, &option, &painter, this);
    painter.end();
    return Opaque(FPicture);
}

void KeptScrollBar::paintEvent(QPaintEvent* event)
{
    if (!MayKeep()) {
        FKey.clear();
        QScrollBar::paintEvent(event);
        return;
    }
    const QByteArray key = PictureKey();
    if (key != FKey) {
        if (!DrawPicture()) {
            FKey.clear();
            QScrollBar::paintEvent(event);
            return;
        }
        FKey = key;
    }
    QPainter(this).drawImage(0, 0, FPicture);
}

}  // namespace sx
