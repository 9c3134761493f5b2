#include "ui/KeptPicture.h"

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

KeptPicture::KeptPicture(Ground beneath)
    : ground(beneath)
{}

void KeptPicture::release()
{
    picture = {};
    stale = true;
}

void KeptPicture::show(QPainter &painter, const QSize &extent, const Draw &draw)
{
    const QTransform device = painter.deviceTransform();
    const QPointF start{fraction(device.dx()), fraction(device.dy())};
    if (stale || extent != size || device.m11() != ratio || start != phase) {
        size = extent;
        ratio = device.m11();
        phase = start;
        make(painter, draw);
        stale = false;
    }

    painter.save();
    painter.scale(1.0 / ratio, 1.0 / ratio);
    painter.drawPixmap(-phase, picture);
    painter.restore();
}

void KeptPicture::make(const QPainter &painter, const Draw &draw)
{
    const QSizeF covered = QSizeF{size} * ratio;
    const QSize pixels{static_cast<int>(std::ceil(covered.width() + phase.x())),
                       static_cast<int>(std::ceil(covered.height() + phase.y()))};
    if (picture.size() != pixels) {
        picture = QPixmap{pixels};
    }
    if (ground == Ground::Transparent) {
        picture.fill(Qt::transparent);
    }
    QPainter inner{&picture};
    inner.setRenderHints(painter.renderHints());
    inner.translate(phase);
    inner.scale(ratio, ratio);
    draw(inner);
}

} // namespace ui
