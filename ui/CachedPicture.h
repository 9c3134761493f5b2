#pragma once

#include <QPixmap>
#include <QPointF>
#include <QSize>

#include <functional>

class QPainter;

namespace ui {

/// A cache for the costly painting of a whole widget that seldom changes.
///
/// The pixmap has the device's resolution and the subpixel offset at which the widget begins, so
/// that it looks as if painted in place. It is painted again after invalidate(), and when the
/// widget's size, the device's pixel ratio or the offset has changed.
class CachedPicture
{
public:
    /// An opaque painting must cover the whole widget itself.
    enum class Background { Transparent, Opaque };
    using Paint = std::function<void(QPainter &)>;

    explicit CachedPicture(Background background = Background::Transparent);

    void invalidate() { valid = false; }
    /// Frees the memory until the next draw().
    void release();

    /// Draws a widget of this size at the origin of a painter that is only scaled and translated;
    /// calls `paint` first if the cache is invalid.
    void draw(QPainter &painter, const QSize &size, const Paint &paint);

private:
    void update(const QPainter &painter, const Paint &paint);

    Background background;
    bool valid = false;
    QSize cachedSize;
    double pixelRatio = 1.0;
    QPointF subpixelOffset;
    QPixmap pixmap;
};

} // namespace ui
