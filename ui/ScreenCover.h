#pragma once

#include <QList>
#include <QObject>

class QWidget;

namespace ui {

/// Knows whether a screen is covered by one of the overlays that are its children, so that
/// assistive technology does not read out what nobody can see or click. It changes nothing that
/// can be seen.
class ScreenCover : public QObject
{
    Q_OBJECT

public:
    /// `screen` becomes the parent. To be made before the screen's parts.
    explicit ScreenCover(QWidget *screen);

    /// `overlay` is a child of the screen.
    void addOverlay(QWidget *overlay);

    /// The cover of the screen that `part` lies on; null for an overlay, and for what is no child
    /// of a screen.
    static ScreenCover *over(const QWidget *part);
    bool isClosed() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *screen;
    QList<const QWidget *> overlays;
};

} // namespace ui
