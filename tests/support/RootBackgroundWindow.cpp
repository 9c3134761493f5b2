#include "RootBackgroundWindow.h"

#include "Pictures.h"

#include <QLayout>
#include <QLinearGradient>
#include <QPainter>

namespace support {

RootBackgroundWindow::RootBackgroundWindow()
{
    const auto children =
        centralWidget()->findChildren<QWidget *>(QString{}, Qt::FindDirectChildrenOnly);
    for (QWidget *const child : children) {
        child->hide();
    }
}

QImage RootBackgroundWindow::drawnBackground(const QSize &extent, double ratio)
{
    // Rendering settles the layouts first; without one the size stays as it is set here.
    layout()->setEnabled(false);
    centralWidget()->resize(extent);
    return drawn(*centralWidget(), ratio, Qt::magenta, QImage::Format_RGB32);
}

QImage rootGradient(const QSize &extent, double ratio)
{
    QImage image{(QSizeF{extent} * ratio).toSize(), QImage::Format_RGB32};
    image.setDevicePixelRatio(ratio);
    QLinearGradient gradient{0.0, 0.0, 0.0, static_cast<double>(extent.height())};
    gradient.setColorAt(0.0, QColor{0x1b, 0x1d, 0x3d});
    gradient.setColorAt(1.0, QColor{0x0f, 0x10, 0x24});
    QPainter painter{&image};
    painter.fillRect(QRect{QPoint{0, 0}, extent}, gradient);
    return image;
}

} // namespace support
