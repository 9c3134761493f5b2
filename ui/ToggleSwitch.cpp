#include "ui/ToggleSwitch.h"

#include "ui/Accessibility.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QRadialGradient>
#include <QSequentialAnimationGroup>

#include <algorithm>

namespace ui {

namespace {

constexpr QSize minimumExtent{220, 100};
constexpr QSize preferredExtent{200, 96};

constexpr int thumbGlideMs = 280;
constexpr int mixGlideMs = 320;
constexpr int pulseHalfMs = 700;
constexpr double pulseRest = 1.0;
constexpr double pulsePeak = 1.22;

constexpr QRgb offRgb = qRgb(60, 64, 92);
constexpr QRgb onRgb = qRgb(255, 99, 51);
constexpr QRgb errorRgb = qRgb(220, 64, 64);

constexpr double trackWidth = 220.0;
constexpr double trackHeight = 88.0;
constexpr double trackRadius = 44.0;
constexpr double trackBorderWidth = 1.5;
constexpr int trackBorderAlpha = 22;
constexpr int trackBorderHoverAlpha = 40;

constexpr double glowRadiusDivisor = 1.8;
constexpr double glowAlphaAtRest = 70.0;

constexpr double thumbDiameter = 76.0;
constexpr double thumbRadius = thumbDiameter / 2.0;
constexpr double thumbInset = 10.0;

constexpr double pulseRingWidth = 2.5;
constexpr int pulseRingAlpha = 90;

constexpr int shadowLayers = 6;
constexpr double shadowSpread = 1.4;
constexpr double shadowDrop = 3.0;
constexpr int shadowAlpha = 22;
constexpr int shadowAlphaStep = 3;

constexpr double bodyLightOffset = 0.22 * thumbDiameter;
constexpr double bodyLightRadius = 0.95 * thumbDiameter;
constexpr double bodyMiddleStop = 0.55;

constexpr double highlightLeft = 0.12 * thumbDiameter;
constexpr double highlightTop = 0.08 * thumbDiameter;
constexpr double highlightRight = 0.55 * thumbDiameter;
constexpr double highlightBottom = 0.62 * thumbDiameter;
constexpr double highlightReach = 0.8;
constexpr int highlightAlpha = 200;

constexpr double rimWidth = 1.0;
constexpr double rimInset = 0.5;
constexpr int rimAlpha = 90;

constexpr double powerPenWidth = 0.08 * thumbDiameter;
constexpr double powerRadius = 0.22 * thumbDiameter;
constexpr int sixteenthsPerDegree = 16;
constexpr int powerArcStart = 120 * sixteenthsPerDegree;
constexpr int powerArcSpan = 300 * sixteenthsPerDegree;
constexpr double powerLineBottom = 0.033 * thumbDiameter;
constexpr double powerLineTop = 0.231 * thumbDiameter;

double restingPlace(ToggleSwitch::State state)
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

int mixChannel(int from, int to, double factor)
{
    return static_cast<int>(from + (to - from) * factor);
}

QColor mix(QRgb from, QRgb to, double factor)
{
    const double t = std::clamp(factor, 0.0, 1.0);
    return {mixChannel(qRed(from), qRed(to), t), mixChannel(qGreen(from), qGreen(to), t),
            mixChannel(qBlue(from), qBlue(to), t)};
}

void paintTrackFill(QPainter &painter, const QPainterPath &outline, const QColor &colour)
{
    painter.fillPath(outline, colour);
}

void paintTrackBorder(QPainter &painter, const QPainterPath &outline, int alpha)
{
    painter.strokePath(outline, QPen{white(alpha), trackBorderWidth});
}

void paintThumbShadow(QPainter &painter, const QRectF &thumb)
{
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < shadowLayers; ++i) {
        const double s = i * shadowSpread;
        painter.setBrush(QColor{0, 0, 0, shadowAlpha - shadowAlphaStep * i});
        painter.drawEllipse(thumb.adjusted(-s, -s + shadowDrop, s, s + shadowDrop));
    }
}

void paintThumbBody(QPainter &painter, const QRectF &thumb)
{
    const QPointF light = thumb.center() - QPointF{bodyLightOffset, bodyLightOffset};
    QRadialGradient body{light, bodyLightRadius};
    body.setColorAt(0.0, QColor{255, 255, 255});
    body.setColorAt(bodyMiddleStop, QColor{245, 246, 252});
    body.setColorAt(1.0, QColor{214, 216, 228});
    painter.setPen(Qt::NoPen);
    painter.setBrush(body);
    painter.drawEllipse(thumb);
}

void paintHighlight(QPainter &painter, const QRectF &thumb)
{
    const QRectF spot =
        thumb.adjusted(highlightLeft, highlightTop, -highlightRight, -highlightBottom);
    QRadialGradient shine{spot.center(), spot.width() * highlightReach};
    shine.setColorAt(0.0, white(highlightAlpha));
    shine.setColorAt(1.0, white(0));
    painter.setBrush(shine);
    painter.drawEllipse(spot);
}

void paintRim(QPainter &painter, const QRectF &thumb)
{
    painter.setPen(QPen{white(rimAlpha), rimWidth});
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(thumb.adjusted(rimInset, rimInset, -rimInset, -rimInset));
}

void paintPowerSymbol(QPainter &painter, const QPointF &centre, const QColor &colour)
{
    QPen pen{colour, powerPenWidth};
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const QPointF reach{powerRadius, powerRadius};
    painter.drawArc(QRectF{centre - reach, centre + reach}, powerArcStart, powerArcSpan);
    painter.drawLine(centre - QPointF{0.0, powerLineBottom}, centre - QPointF{0.0, powerLineTop});
}

} // namespace

ToggleSwitch::ToggleSwitch(QWidget *parent)
    : QWidget(parent)
{
    setCursor(Qt::PointingHandCursor);
    setMinimumSize(minimumExtent);
    setAttribute(Qt::WA_Hover);

    thumbAnim = new QPropertyAnimation{this, "thumbPos", this};
    thumbAnim->setDuration(thumbGlideMs);
    thumbAnim->setEasingCurve(QEasingCurve::OutCubic);

    mixAnim = new QPropertyAnimation{this, "trackMix", this};
    mixAnim->setDuration(mixGlideMs);
    mixAnim->setEasingCurve(QEasingCurve::InOutQuad);

    pulseGroup = new QSequentialAnimationGroup{this};
    const auto addPulse = [this](double from, double to) {
        auto *const half = new QPropertyAnimation{this, "pulseScale", pulseGroup};
        half->setStartValue(from);
        half->setEndValue(to);
        half->setDuration(pulseHalfMs);
        half->setEasingCurve(QEasingCurve::InOutSine);
        pulseGroup->addAnimation(half);
    };
    addPulse(pulseRest, pulsePeak);
    addPulse(pulsePeak, pulseRest);
    pulseGroup->setLoopCount(-1);
}

void ToggleSwitch::setState(State newState)
{
    if (newState == state_) {
        return;
    }
    const accessibility::StateReport report{this};
    state_ = newState;

    const double target = restingPlace(newState);
    glide(thumbAnim, thumbPos_, target);
    glide(mixAnim, trackMix_, target);

    const bool pulsing = pulseGroup->state() == QAbstractAnimation::Running;
    if (changing()) {
        if (!pulsing) {
            pulseGroup->start();
        }
    } else {
        if (pulsing) {
            pulseGroup->stop();
        }
        setPulseScale(pulseRest);
        glowPicture.release();
        trackPicture.release();
        thumbPicture.release();
    }
    update();
}

void ToggleSwitch::setThumbPos(double position)
{
    thumbPos_ = position;
    thumbPicture.markStale();
    update();
}

void ToggleSwitch::setPulseScale(double scale)
{
    const int glowBefore = glowAlpha();
    pulseScale_ = scale;
    if (glowAlpha() != glowBefore) {
        glowPicture.markStale();
    }
    update();
}

void ToggleSwitch::setTrackMix(double mix)
{
    trackMix_ = mix;
    trackPicture.markStale();
    thumbPicture.markStale();
    update();
}

QSize ToggleSwitch::sizeHint() const
{
    return preferredExtent;
}

void ToggleSwitch::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !changing()) {
        Q_EMIT toggled();
    }
}

void ToggleSwitch::enterEvent(QEvent * /*event*/)
{
    hovered = true;
    trackPicture.markStale();
    update();
}

void ToggleSwitch::leaveEvent(QEvent * /*event*/)
{
    hovered = false;
    trackPicture.markStale();
    update();
}

void ToggleSwitch::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF track = trackRect();
    const QRectF thumb = thumbRect(track);
    if (!changing()) {
        paintTrack(painter, track);
        paintThumb(painter, thumb);
        return;
    }
    glowPicture.show(painter, size(), [&](QPainter &picture) { paintGlow(picture, track); });
    trackPicture.show(painter, size(), [&](QPainter &picture) { paintTrack(picture, track); });
    paintPulseRing(painter, thumb);
    thumbPicture.show(painter, size(), [&](QPainter &picture) { paintThumb(picture, thumb); });
}

bool ToggleSwitch::changing() const
{
    return state_ == State::Connecting || state_ == State::Disconnecting;
}

void ToggleSwitch::glide(QPropertyAnimation *animation, double from, double to)
{
    animation->stop();
    animation->setStartValue(from);
    animation->setEndValue(to);
    animation->start();
}

QColor ToggleSwitch::stateColour() const
{
    return state_ == State::Error ? QColor{errorRgb} : mix(offRgb, onRgb, trackMix_);
}

int ToggleSwitch::glowAlpha() const
{
    return static_cast<int>(glowAlphaAtRest * pulseScale_);
}

QRectF ToggleSwitch::trackRect() const
{
    return {(width() - trackWidth) / 2.0, (height() - trackHeight) / 2.0, trackWidth, trackHeight};
}

QRectF ToggleSwitch::thumbRect(const QRectF &track) const
{
    const double travel = track.width() - 2.0 * thumbInset - thumbDiameter;
    return {track.left() + thumbInset + travel * thumbPos_, track.center().y() - thumbRadius,
            thumbDiameter, thumbDiameter};
}

void ToggleSwitch::paintGlow(QPainter &painter, const QRectF &track) const
{
    QColor inner{onRgb};
    inner.setAlpha(glowAlpha());
    QColor outer{onRgb};
    outer.setAlpha(0);
    QRadialGradient glow{track.center(), track.width() / glowRadiusDivisor};
    glow.setColorAt(0.0, inner);
    glow.setColorAt(1.0, outer);
    painter.fillRect(rect(), glow);
}

void ToggleSwitch::paintTrack(QPainter &painter, const QRectF &track) const
{
    QPainterPath outline;
    outline.addRoundedRect(track, trackRadius, trackRadius);
    paintTrackFill(painter, outline, stateColour());
    paintTrackBorder(painter, outline, hovered ? trackBorderHoverAlpha : trackBorderAlpha);
}

void ToggleSwitch::paintPulseRing(QPainter &painter, const QRectF &thumb) const
{
    const double radius = thumbRadius * pulseScale_;
    painter.setPen(QPen{white(pulseRingAlpha), pulseRingWidth});
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(thumb.center(), radius, radius);
}

void ToggleSwitch::paintThumb(QPainter &painter, const QRectF &thumb) const
{
    paintThumbShadow(painter, thumb);
    paintThumbBody(painter, thumb);
    paintHighlight(painter, thumb);
    paintRim(painter, thumb);
    paintPowerSymbol(painter, thumb.center(), stateColour());
}

} // namespace ui
