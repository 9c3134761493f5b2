#pragma once

#include "ui/MainWindow.h"

#include <QImage>

namespace support {

/// The main window with nothing on its background, so that the background alone is drawn.
class RootBackgroundWindow : public MainWindow
{
public:
    RootBackgroundWindow();

    /// The background, drawn at a size of its own.
    QImage drawnBackground(const QSize &extent, double ratio);
};

/// The gradient that such a background must have.
QImage rootGradient(const QSize &extent, double ratio);

} // namespace support
