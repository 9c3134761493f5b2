#pragma once

#include "ui/CachedPicture.h"

#include <QColor>
#include <QRectF>
#include <QWidget>

class QPainter;
class QPropertyAnimation;
class QSequentialAnimationGroup;

namespace ui {

/// The large animated switch: a pill-shaped track, a round thumb with a power symbol, and a pulse
/// while a change is under way.
///
/// It shows a state and emits toggled(), but never changes its state by itself. It paints at one
/// fixed size, centred. During a change, glow, track and thumb are cached and only the pulse ring
/// is painted in every frame.
class ToggleSwitch : public QWidget
{
    Q_OBJECT

    /// Position of the thumb, 0.0 at the left end of the track, 1.0 at the right; not clamped.
    Q_PROPERTY(double thumbPos READ thumbPos WRITE setThumbPos)
    /// Scale of the pulse ring and strength of the glow, 1.0 at rest, 1.22 at the peak.
    Q_PROPERTY(double pulseScale READ pulseScale WRITE setPulseScale)
    /// Mix of the track's colour, 0.0 off, 1.0 on; clamped where it is used.
    Q_PROPERTY(double trackMix READ trackMix WRITE setTrackMix)

public:
    enum class State { Off, Connecting, On, Disconnecting, Error };
    Q_ENUM(State)

    explicit ToggleSwitch(QWidget *parent = nullptr);

    /// Animates thumb and colour from their present values. The present state restarts nothing.
    void setState(State newState);
    State state() const { return state_; }
    /// The tunnel is up, or going down.
    bool isOn() const;
    bool isChanging() const;

    double thumbPos() const { return thumbPos_; }
    void setThumbPos(double position);
    double pulseScale() const { return pulseScale_; }
    void setPulseScale(double scale);
    double trackMix() const { return trackMix_; }
    void setTrackMix(double mix);

    /// Smaller than the minimum size, so that layouts use the minimum.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// A left press, unless the state is changing.
    void toggled();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor stateColour() const;
    int glowAlpha() const;
    QRectF trackRect() const;
    QRectF thumbRect(const QRectF &track) const;

    void paintGlow(QPainter &painter, const QRectF &track) const;
    void paintTrack(QPainter &painter, const QRectF &track) const;
    void paintPulseRing(QPainter &painter, const QRectF &thumb) const;
    void paintThumb(QPainter &painter, const QRectF &thumb) const;

    State state_ = State::Off;
    double thumbPos_ = 0.0;
    double pulseScale_ = 1.0;
    double trackMix_ = 0.0;
    bool hovered = false;
    QPropertyAnimation *thumbAnim;
    QPropertyAnimation *mixAnim;
    QSequentialAnimationGroup *pulseGroup;
    CachedPicture glowPicture;
    CachedPicture trackPicture;
    CachedPicture thumbPicture;
};

} // namespace ui
