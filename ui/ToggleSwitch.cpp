#include "ui/ToggleSwitch.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QRadialGradient>
#include <QSequentialAnimationGroup>

#include <algorithm>

namespace ui {

namespace {

constexpr double pulseMinimum = 1.0;
constexpr double pulseMaximum = 1.22;

constexpr QRgb offRgb = qRgb(60, 64, 92);
constexpr QRgb onRgb = qRgb(255, 99, 51);
constexpr QRgb errorRgb = qRgb(220, 64, 64);

constexpr double trackWidth = 220.0;
constexpr double trackHeight = 88.0;
// Most measures of the thumb are shares of its diameter.
constexpr double thumbDiameter = 76.0;
constexpr double thumbInset = 10.0;

double targetPosition(ToggleSwitch::State state)
{
    switch (state) {
    case ToggleSwitch::State::On:
    case ToggleSwitch::State::Disconnecting:
        return 1.0;
    case ToggleSwitch::State::Connecting:
        return 0.5;
    case ToggleSwitch::State::Off:
    case ToggleSwitch::State::Error:
        break;
    }
    return 0.0;
}

QColor white(int alpha)
{
    return {255, 255, 255, alpha};
}

QColor mix(QRgb from, QRgb to, double factor)
{
    const double t = std::clamp(factor, 0.0, 1.0);
    const auto channel = [t](int a, int b) { return static_cast<int>(a + (b - a) * t); };
    return {channel(qRed(from), qRed(to)), channel(qGreen(from), qGreen(to)),
            channel(qBlue(from), qBlue(to))};
}

void paintThumbShadow(QPainter &painter, const QRectF &thumb)
{
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 6; ++i) {
        const double spread = i * 1.4;
        painter.setBrush(QColor{0, 0, 0, 22 - 3 * i});
        painter.drawEllipse(thumb.adjusted(-spread, -spread, spread, spread).translated(0.0, 3.0));
    }
}

void paintThumbBody(QPainter &painter, const QRectF &thumb)
{
    constexpr double lightOffset = 0.22 * thumbDiameter;
    QRadialGradient body{thumb.center() - QPointF{lightOffset, lightOffset}, 0.95 * thumbDiameter};
    body.setColorAt(0.0, QColor{255, 255, 255});
    body.setColorAt(0.55, QColor{245, 246, 252});
    body.setColorAt(1.0, QColor{214, 216, 228});
    painter.setPen(Qt::NoPen);
    painter.setBrush(body);
    painter.drawEllipse(thumb);
}

void paintThumbHighlight(QPainter &painter, const QRectF &thumb)
{
    const QRectF spot = thumb.adjusted(0.12 * thumbDiameter, 0.08 * thumbDiameter,
                                       -0.55 * thumbDiameter, -0.62 * thumbDiameter);
    QRadialGradient highlight{spot.center(), spot.width() * 0.8};
    highlight.setColorAt(0.0, white(200));
    highlight.setColorAt(1.0, white(0));
    painter.setBrush(highlight);
    painter.drawEllipse(spot);
}

void paintThumbRim(QPainter &painter, const QRectF &thumb)
{
    painter.setPen(QPen{white(90), 1.0});
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(thumb.adjusted(0.5, 0.5, -0.5, -0.5));
}

void paintPowerSymbol(QPainter &painter, const QPointF &centre, const QColor &colour)
{
    constexpr int sixteenthsPerDegree = 16;
    constexpr double radius = 0.22 * thumbDiameter;
    painter.setPen(QPen{colour, 0.08 * thumbDiameter, Qt::SolidLine, Qt::RoundCap});
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(QRectF{centre - QPointF{radius, radius}, centre + QPointF{radius, radius}},
                    120 * sixteenthsPerDegree, 300 * sixteenthsPerDegree);
    painter.drawLine(centre - QPointF{0.0, 0.033 * thumbDiameter},
                     centre - QPointF{0.0, 0.231 * thumbDiameter});
}

} // namespace

ToggleSwitch::ToggleSwitch(QWidget *parent)
    : QWidget(parent)
{
    setCursor(Qt::PointingHandCursor);
    setMinimumSize(220, 100);
    setAttribute(Qt::WA_Hover);

    thumbAnim = new QPropertyAnimation{this, "thumbPos", this};
    thumbAnim->setDuration(280);
    thumbAnim->setEasingCurve(QEasingCurve::OutCubic);

    mixAnim = new QPropertyAnimation{this, "trackMix", this};
    mixAnim->setDuration(320);
    mixAnim->setEasingCurve(QEasingCurve::InOutQuad);

    pulseGroup = new QSequentialAnimationGroup{this};
    const auto addPulse = [this](double from, double to) {
        auto *const half = new QPropertyAnimation{this, "pulseScale", pulseGroup};
        half->setStartValue(from);
        half->setEndValue(to);
        half->setDuration(700);
        half->setEasingCurve(QEasingCurve::InOutSine);
        pulseGroup->addAnimation(half);
    };
    addPulse(pulseMinimum, pulseMaximum);
    addPulse(pulseMaximum, pulseMinimum);
    pulseGroup->setLoopCount(-1);
}

void ToggleSwitch::setState(State newState)
{
    if (newState == state_) {
        return;
    }
    const bool wasOn = isOn();
    const bool wasChanging = isChanging();
    state_ = newState;

    const double target = targetPosition(newState);
    for (QPropertyAnimation *animation : {thumbAnim, mixAnim}) {
        animation->stop();
        animation->setStartValue(property(animation->propertyName().constData()));
        animation->setEndValue(target);
        animation->start();
    }

    if (isChanging()) {
        // Does nothing while the group runs.
        pulseGroup->start();
    } else {
        pulseGroup->stop();
        setPulseScale(pulseMinimum);
        glowPicture.release();
        trackPicture.release();
        thumbPicture.release();
    }
    update();

    QAccessible::State checked;
    checked.checked = wasOn != isOn();
    QAccessible::State busy;
    busy.busy = wasChanging != isChanging();
    QAccessible::State disabled;
    disabled.disabled = busy.busy;
    // One event for each flag: some listeners pass on only the first flag of an event.
    for (const QAccessible::State &changed : {checked, busy, disabled}) {
        if (!(changed == QAccessible::State{})) {
            QAccessibleStateChangeEvent event{this, changed};
            QAccessible::updateAccessibility(&event);
        }
    }
}

void ToggleSwitch::setThumbPos(double position)
{
    thumbPos_ = position;
    thumbPicture.invalidate();
    update();
}

void ToggleSwitch::setPulseScale(double scale)
{
    const int glowBefore = glowAlpha();
    pulseScale_ = scale;
    if (glowAlpha() != glowBefore) {
        glowPicture.invalidate();
    }
    update();
}

void ToggleSwitch::setTrackMix(double mix)
{
    trackMix_ = mix;
    trackPicture.invalidate();
    thumbPicture.invalidate();
    update();
}

QSize ToggleSwitch::sizeHint() const
{
    return {200, 96};
}

void ToggleSwitch::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !isChanging()) {
        Q_EMIT toggled();
    }
}

void ToggleSwitch::enterEvent(QEvent * /*event*/)
{
    hovered = true;
    trackPicture.invalidate();
    update();
}

void ToggleSwitch::leaveEvent(QEvent * /*event*/)
{
    hovered = false;
    trackPicture.invalidate();
    update();
}

void ToggleSwitch::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF track = trackRect();
    const QRectF thumb = thumbRect(track);
    if (!isChanging()) {
        paintTrack(painter, track);
        paintThumb(painter, thumb);
        return;
    }
    glowPicture.draw(painter, size(), [&](QPainter &picture) { paintGlow(picture, track); });
    trackPicture.draw(painter, size(), [&](QPainter &picture) { paintTrack(picture, track); });
    paintPulseRing(painter, thumb);
    thumbPicture.draw(painter, size(), [&](QPainter &picture) { paintThumb(picture, thumb); });
}

bool ToggleSwitch::isOn() const
{
    return targetPosition(state_) == 1.0;
}

bool ToggleSwitch::isChanging() const
{
    return state_ == State::Connecting || state_ == State::Disconnecting;
}

QColor ToggleSwitch::stateColour() const
{
    return state_ == State::Error ? QColor{errorRgb} : mix(offRgb, onRgb, trackMix_);
}

int ToggleSwitch::glowAlpha() const
{
    return static_cast<int>(70.0 * pulseScale_);
}

QRectF ToggleSwitch::trackRect() const
{
    return {(width() - trackWidth) / 2.0, (height() - trackHeight) / 2.0, trackWidth, trackHeight};
}

QRectF ToggleSwitch::thumbRect(const QRectF &track) const
{
    const double travel = trackWidth - 2.0 * thumbInset - thumbDiameter;
    return {track.left() + thumbInset + travel * thumbPos_,
            track.center().y() - thumbDiameter / 2.0, thumbDiameter, thumbDiameter};
}

void ToggleSwitch::paintGlow(QPainter &painter, const QRectF &track) const
{
    QColor inner{onRgb};
    inner.setAlpha(glowAlpha());
    QColor outer{onRgb};
    outer.setAlpha(0);
    QRadialGradient glow{track.center(), trackWidth / 1.8};
    glow.setColorAt(0.0, inner);
    glow.setColorAt(1.0, outer);
    painter.fillRect(rect(), glow);
}

void ToggleSwitch::paintTrack(QPainter &painter, const QRectF &track) const
{
    QPainterPath outline;
    outline.addRoundedRect(track, trackHeight / 2.0, trackHeight / 2.0);
    painter.fillPath(outline, stateColour());
    painter.strokePath(outline, QPen{white(hovered ? 40 : 22), 1.5});
}

void ToggleSwitch::paintPulseRing(QPainter &painter, const QRectF &thumb) const
{
    const double radius = thumbDiameter / 2.0 * pulseScale_;
    painter.setPen(QPen{white(90), 2.5});
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(thumb.center(), radius, radius);
}

void ToggleSwitch::paintThumb(QPainter &painter, const QRectF &thumb) const
{
    paintThumbShadow(painter, thumb);
    paintThumbBody(painter, thumb);
    paintThumbHighlight(painter, thumb);
    paintThumbRim(painter, thumb);
    paintPowerSymbol(painter, thumb.center(), stateColour());
}

} // namespace ui
