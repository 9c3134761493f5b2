#include "Pictures.h"

#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace support {

namespace {

int distance(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other)), std::abs(qAlpha(one) - qAlpha(other))});
}

QString described(QRgb colour)
{
    return QStringLiteral("(%1, %2, %3, %4)")
        .arg(qRed(colour))
        .arg(qGreen(colour))
        .arg(qBlue(colour))
        .arg(qAlpha(colour));
}

} // namespace

QImage drawn(QWidget &widget, double ratio, const QColor &ground, QImage::Format format)
{
    QImage image{(QSizeF{widget.size()} * ratio).toSize(), format};
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

QString difference(const QImage &is, const QImage &should, int tolerance)
{
    if (is.size() != should.size()) {
        return QStringLiteral("%1 x %2 pixels and not %3 x %4")
            .arg(is.width())
            .arg(is.height())
            .arg(should.width())
            .arg(should.height());
    }
    // Premultiplied, as it is what is seen: the colour of a nearly transparent pixel is not.
    const QImage one = is.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage other = should.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (one == other) {
        return {};
    }
    int worst = tolerance;
    int count = 0;
    QString text;
    for (int y = 0; y < one.height(); ++y) {
        const auto *const oneLine = reinterpret_cast<const QRgb *>(one.constScanLine(y));
        const auto *const otherLine = reinterpret_cast<const QRgb *>(other.constScanLine(y));
        for (int x = 0; x < one.width(); ++x) {
            const int far = distance(oneLine[x], otherLine[x]);
            count += far > tolerance ? 1 : 0;
            if (far > worst) {
                worst = far;
                text = QStringLiteral("pixel (%1, %2) is %3 and not %4")
                           .arg(x)
                           .arg(y)
                           .arg(described(oneLine[x]), described(otherLine[x]));
            }
        }
    }
    return text.isEmpty() ? text : QStringLiteral("%1; %2 pixels differ").arg(text).arg(count);
}

} // namespace support
