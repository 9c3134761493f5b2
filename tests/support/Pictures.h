#pragma once

#include <QColor>
#include <QImage>
#include <QString>

class QWidget;

namespace support {

/// A widget, drawn with its children into a picture of its own size at a device's pixel ratio.
/// Nothing of a parent shows through; what the widget leaves out has the colour of `ground`.
QImage drawn(QWidget &widget, double ratio, const QColor &ground = Qt::transparent,
             QImage::Format format = QImage::Format_ARGB32_Premultiplied);

/// Says where two pictures differ most, in shades of a channel of eight bits, or nothing if they
/// differ nowhere by more than `tolerance`.
QString difference(const QImage &is, const QImage &should, int tolerance);

} // namespace support
