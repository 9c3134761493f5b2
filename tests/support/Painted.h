#pragma once

#include <QImage>
#include <QWidget>

namespace support {

/// What a widget paints by itself, at its current size, on a transparent image.
inline QImage painted(QWidget &widget)
{
    QImage image{widget.size(), QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::RenderFlags{});
    return image;
}

} // namespace support
