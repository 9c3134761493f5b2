#include "ui/CachedPicture.h"

#include <QPainter>
#include <QTransform>

#include <cmath>

namespace ui {

namespace {

double fraction(double value)
{
    return value - std::floor(value);
}

} // namespace

CachedPicture::CachedPicture(Background background_)
    : background(background_)
{}

void CachedPicture::release()
{
    pixmap = {};
    valid = false;
}

void CachedPicture::draw(QPainter &painter, const QSize &size, const Paint &paint)
{
    const QTransform device = painter.deviceTransform();
    const QPointF offset{fraction(device.dx()), fraction(device.dy())};
    if (!valid || size != cachedSize || device.m11() != pixelRatio || offset != subpixelOffset) {
        cachedSize = size;
        pixelRatio = device.m11();
        subpixelOffset = offset;
        update(painter, paint);
        valid = true;
    }

    painter.save();
    painter.scale(1.0 / pixelRatio, 1.0 / pixelRatio);
    painter.drawPixmap(-subpixelOffset, pixmap);
    painter.restore();
}

void CachedPicture::update(const QPainter &painter, const Paint &paint)
{
    const QSizeF scaled = QSizeF{cachedSize} * pixelRatio;
    const QSize pixels{static_cast<int>(std::ceil(scaled.width() + subpixelOffset.x())),
                       static_cast<int>(std::ceil(scaled.height() + subpixelOffset.y()))};
    if (pixmap.size() != pixels) {
        pixmap = QPixmap{pixels};
    }
    if (background == Background::Transparent) {
        pixmap.fill(Qt::transparent);
    }
    QPainter inner{&pixmap};
    inner.setRenderHints(painter.renderHints());
    inner.translate(subpixelOffset);
    inner.scale(pixelRatio, pixelRatio);
    paint(inner);
}

} // namespace ui
