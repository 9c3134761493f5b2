#include "ui/MenuItem.h"

#include <QFontMetrics>
#include <QPainter>
#include <QtMath>

#include <cmath>

namespace ui {

namespace {

constexpr int rowHeight = 56;
constexpr int labelMargins = 90;

QPointF onCircle(const QPointF &centre, double radius, double angle)
{
    return centre + radius * QPointF{std::cos(angle), std::sin(angle)};
}

void drawGear(QPainter &painter, const QPointF &c)
{
    constexpr int teeth = 8;
    constexpr double tipRadius = 10.5;
    constexpr double rootRadius = 7.5;
    constexpr double halfEdge = M_PI / 32.0;
    QPolygonF outline;
    for (int i = 0; i < teeth; ++i) {
        const double tip = 2.0 * M_PI * i / teeth;
        const double root = 2.0 * M_PI * (i + 0.5) / teeth;
        outline << onCircle(c, tipRadius, tip - halfEdge) << onCircle(c, tipRadius, tip + halfEdge)
                << onCircle(c, rootRadius, root - halfEdge)
                << onCircle(c, rootRadius, root + halfEdge);
    }
    painter.drawPolygon(outline);
    painter.drawEllipse(c, 3.2, 3.2);
}

void drawKey(QPainter &painter, const QPointF &c)
{
    constexpr double bowRadius = 4.5;
    painter.drawEllipse(c - QPointF{bowRadius, 0.0}, bowRadius, bowRadius);
    painter.drawLine(c, c + QPointF{10.0, 0.0});
    painter.drawLine(c + QPointF{5.5, 0.0}, c + QPointF{5.5, 3.5});
    painter.drawLine(c + QPointF{8.5, 0.0}, c + QPointF{8.5, 2.5});
}

void drawEnvelope(QPainter &painter, const QPointF &c)
{
    const QRectF body{c.x() - 10.5, c.y() - 7.5, 21.0, 15.0};
    const QPointF fold = c + QPointF{0.0, 0.5};
    painter.drawRect(body);
    painter.drawLine(body.topLeft(), fold);
    painter.drawLine(body.topRight(), fold);
}

void drawDoor(QPainter &painter, const QPointF &c)
{
    const QRectF frame{c.x() - 9.0, c.y() - 9.0, 8.0, 18.0};
    const QPointF tip = c + QPointF{9.5, 0.0};
    painter.drawPolyline(
        QPolygonF{{frame.topRight(), frame.topLeft(), frame.bottomLeft(), frame.bottomRight()}});
    painter.drawLine(c - QPointF{2.0, 0.0}, tip);
    painter.drawPolyline(QPolygonF{{tip + QPointF{-4.0, -4.0}, tip, tip + QPointF{-4.0, 4.0}}});
}

void drawIcon(QPainter &painter, qint32 kind, const QPointF &centre)
{
    painter.setPen(QPen{QColor{201, 203, 230}, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(Qt::NoBrush);
    switch (kind) {
    case MenuItem::Gear:
        drawGear(painter, centre);
        break;
    case MenuItem::Key:
        drawKey(painter, centre);
        break;
    case MenuItem::Envelope:
        drawEnvelope(painter, centre);
        break;
    case MenuItem::Door:
        drawDoor(painter, centre);
        break;
    default:
        break;
    }
}

QFont labelFont(const QWidget *row)
{
    QFont font = row->font();
    font.setPixelSize(17);
    return font;
}

} // namespace

MenuItem::MenuItem(qint32 kind_, const QString &text, QWidget *parent)
    : QAbstractButton(parent)
    , kind(kind_)
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMinimumHeight(rowHeight);
    // Not every style repaints a button when the mouse enters or leaves.
    setAttribute(Qt::WA_Hover);
}

void MenuItem::setLabel(const QString &label)
{
    setText(label);
    updateGeometry();
    update();
}

QSize MenuItem::sizeHint() const
{
    const QFontMetrics metrics{labelFont(this)};
    return {metrics.horizontalAdvance(text()) + labelMargins, rowHeight};
}

void MenuItem::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);

    if (isDown()) {
        painter.fillRect(rect(), QColor{255, 255, 255, 40});
    } else if (underMouse()) {
        painter.fillRect(rect(), QColor{255, 255, 255, 22});
    }

    drawIcon(painter, kind, {36.0, height() / 2.0});

    painter.setFont(labelFont(this));
    painter.setPen(QColor{242, 242, 250});
    painter.drawText(QRect{66, 0, width() - labelMargins, height()},
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

} // namespace ui
