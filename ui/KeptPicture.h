#pragma once

#include <QPixmap>
#include <QPointF>
#include <QSize>

#include <functional>

class QPainter;

namespace ui {

/// A drawing of a whole widget that is costly to make and seldom changes, kept as a picture.
///
/// The picture has the pixels of the device that it is shown on, down to the fraction of a pixel
/// at which the widget begins, so that it looks as if drawn in place. It is drawn again when it
/// was marked stale, and when the widget's size or the device's pixel ratio has changed.
class KeptPicture
{
public:
    /// What lies beneath the drawing. An opaque one must cover the whole widget itself.
    enum class Ground { Transparent, Opaque };
    using Draw = std::function<void(QPainter &)>;

    explicit KeptPicture(Ground beneath = Ground::Transparent);

    /// The drawing is no longer what `show` would make.
    void markStale() { stale = true; }
    /// Gives the memory back until the picture is shown again.
    void release();

    /// Shows the picture of a widget of `extent` at the origin of a painter that is only scaled
    /// and moved, as one on a widget is; makes it first with `draw` if need be.
    void show(QPainter &painter, const QSize &extent, const Draw &draw);

private:
    void make(const QPainter &painter, const Draw &draw);

    Ground ground;
    bool stale = true;
    QSize size;
    double ratio = 1.0;
    QPointF phase;
    QPixmap picture;
};

} // namespace ui
