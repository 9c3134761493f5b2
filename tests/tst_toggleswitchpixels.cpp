#include "support/Pictures.h"
#include "ui/ToggleSwitch.h"

#include <QAbstractAnimation>
#include <QPainter>
#include <QRadialGradient>
#include <QTest>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

using ui::ToggleSwitch;
using State = ToggleSwitch::State;

namespace {

constexpr QSize windowExtent{220, 100};

/// Everything that the look of a switch depends on.
struct Look
{
    State state = State::Off;
    double thumbPos = 0.0;
    double trackMix = 0.0;
    double pulseScale = 1.0;
    bool hovered = false;
    QSize extent = windowExtent;
};

/// A switch that holds a look: nothing moves by itself.
class Posed : public ToggleSwitch
{
public:
    explicit Posed(const Look &look, QWidget *parent = nullptr)
        : ToggleSwitch(parent)
    {
        take(look);
    }

    /// Changes what differs, and nothing else.
    void take(const Look &look)
    {
        resize(look.extent);
        setState(look.state);
        for (QAbstractAnimation *const animation : findChildren<QAbstractAnimation *>()) {
            animation->stop();
        }
        if (look.thumbPos != thumbPos()) {
            setThumbPos(look.thumbPos);
        }
        if (look.trackMix != trackMix()) {
            setTrackMix(look.trackMix);
        }
        if (look.pulseScale != pulseScale()) {
            setPulseScale(look.pulseScale);
        }
        if (look.hovered != underPointer) {
            underPointer = look.hovered;
            QEvent crossing{underPointer ? QEvent::Enter : QEvent::Leave};
            QCoreApplication::sendEvent(this, &crossing);
        }
    }

private:
    bool underPointer = false;
};

QImage picture(const Look &look, double ratio = 1.0,
               QImage::Format format = QImage::Format_ARGB32_Premultiplied)
{
    Posed toggle{look};
    return support::drawn(toggle, ratio, Qt::transparent, format);
}

/// So far to the left that nothing of the thumb is left on the widget.
constexpr double thumbGone = -5.0;

/// A wide switch with the thumb left of the track and of the glow, where nothing lies below it.
Look thumbAside(State state)
{
    Look look;
    look.state = state;
    look.thumbPos = -1.5;
    look.extent = QSize{700, 120};
    return look;
}
/// 240 + 10 - 1.5 * 124 + 38, and the middle of the height.
constexpr QPointF asideCentre{102.0, 60.0};

/// Lengths are measured on a picture with this many pixels to one of the widget's.
constexpr int fineness = 8;
constexpr double fine = fineness;
/// What the edge of a shape may be off: little more than one of the fine pixels.
constexpr double edge = 0.15;

QRgb pixelAt(const QImage &image, const QPointF &place)
{
    const double ratio = image.devicePixelRatioF();
    return image.pixel(static_cast<int>(std::floor(place.x() * ratio)),
                       static_cast<int>(std::floor(place.y() * ratio)));
}

QRgba64 deepPixelAt(const QImage &image, int x, int y)
{
    Q_ASSERT(image.format() == QImage::Format_RGBA64_Premultiplied);
    return reinterpret_cast<const QRgba64 *>(image.constScanLine(y))[x];
}

struct Extent
{
    double from;
    double to;
};

/// The part of the way from `from` to `to`, measured from `from`, on which pixels pass `test`:
/// from the beginning of the first to the end of the last.
Extent passing(const QImage &image, const QPointF &from, const QPointF &to,
               const std::function<bool(QRgb)> &test)
{
    const QPointF way = to - from;
    const double length = std::hypot(way.x(), way.y());
    const int steps = static_cast<int>(length * fine);
    Extent result{-1.0, -1.0};
    for (int i = 0; i < steps; ++i) {
        if (test(pixelAt(image, from + way * ((i + 0.5) / steps)))) {
            if (result.from < 0.0) {
                result.from = i / fine;
            }
            result.to = (i + 1) / fine;
        }
    }
    return result;
}

bool near(const Extent &is, double from, double to, double tolerance = edge)
{
    if (std::abs(is.from - from) <= tolerance && std::abs(is.to - to) <= tolerance) {
        return true;
    }
    qWarning("from %g to %g and not from %g to %g", is.from, is.to, from, to);
    return false;
}

bool near(const QColor &is, double red, double green, double blue, double tolerance)
{
    if (std::abs(is.red() - red) <= tolerance && std::abs(is.green() - green) <= tolerance &&
        std::abs(is.blue() - blue) <= tolerance) {
        return true;
    }
    qWarning("%d, %d, %d and not %g, %g, %g", is.red(), is.green(), is.blue(), red, green, blue);
    return false;
}

bool solid(QRgb colour)
{
    return qAlpha(colour) == 255;
}

bool anything(QRgb colour)
{
    return qAlpha(colour) != 0;
}

std::function<bool(QRgb)> exactly(const QColor &colour)
{
    return [rgb = qPremultiply(colour.rgba())](QRgb pixel) { return pixel == rgb; };
}

QImage blank(const QSize &extent, double ratio, QImage::Format format)
{
    QImage image{(QSizeF{extent} * ratio).toSize(), format};
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    return image;
}

/// The colours of the body of a thumb in the middle of the widget, without an end.
void fillBody(QPainter &painter)
{
    QRadialGradient body{110.0 - 16.72, 50.0 - 16.72, 72.2};
    body.setColorAt(0.0, QColor{255, 255, 255});
    body.setColorAt(0.55, QColor{245, 246, 252});
    body.setColorAt(1.0, QColor{214, 216, 228});
    painter.fillRect(QRect{QPoint{0, 0}, windowExtent}, body);
}

/// A place within the thumb, measured from its centre.
struct OnThumb
{
    explicit OnThumb(const QPointF &place)
        : x(place.x())
        , y(place.y())
        , radius(std::hypot(x, y))
    {}

    bool inBody() const { return radius < 36.3; }
    bool nearSymbol() const
    {
        const bool onArc = 12.8 < radius && radius < 20.7;
        const bool onLine = std::abs(x) < 4.0 && -21.5 < y && y < 1.5;
        return onArc || onLine;
    }
    bool nearHighlight() const { return -30.0 < x && x < -2.7 && -33.0 < y && y < -8.0; }

    double x;
    double y;
    double radius;
};

constexpr QPointF thumbInMiddle{110.0, 50.0};

Look restingInMiddle()
{
    Look look;
    look.thumbPos = 0.5;
    return look;
}

/// A thumb in the middle beside what `paint` makes of its place, in sixteen bits a channel.
struct DeepThumb
{
    DeepThumb(double pixelRatio, const std::function<void(QPainter &)> &paint)
        : ratio(pixelRatio)
        , image(picture(restingInMiddle(), ratio, QImage::Format_RGBA64_Premultiplied))
        , expected(blank(windowExtent, ratio, image.format()))
    {
        QPainter painter{&expected};
        painter.setRenderHint(QPainter::Antialiasing);
        paint(painter);
    }

    /// The largest difference of the two where `test` lets it look, or nothing if it does so at
    /// fewer than `least` pixels.
    std::optional<int> worst(int least, const std::function<bool(const OnThumb &)> &test) const
    {
        int result = 0;
        int compared = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (!test(OnThumb{QPointF{x + 0.5, y + 0.5} / ratio - thumbInMiddle})) {
                    continue;
                }
                const QRgba64 one = deepPixelAt(image, x, y);
                const QRgba64 other = deepPixelAt(expected, x, y);
                result = std::max({result, std::abs(one.red() - other.red()),
                                   std::abs(one.green() - other.green()),
                                   std::abs(one.blue() - other.blue())});
                ++compared;
            }
        }
        return compared < least ? std::nullopt : std::optional{result};
    }

    double ratio;
    QImage image;
    QImage expected;
};

/// A translucent colour of `alpha` over what has `below`, in eight bits.
int over(int below, int colour, int alpha)
{
    return static_cast<int>(std::lround(below + (colour - below) * alpha / 255.0));
}

void extentRows()
{
    QTest::addColumn<QSize>("extent");

    QTest::newRow("smallest") << windowExtent;
    QTest::newRow("larger") << QSize{300, 160};
    QTest::newRow("odd") << QSize{301, 161};
}

const Look pulsing{State::Connecting, 0.4, 0.3, 1.1, false, windowExtent};

/// What a channel of a pixel may be off, in shades, where pictures of translucent layers are laid
/// over each other: each of up to a dozen layers is rounded to eight bits on the way, in another
/// order than without pictures. Only few pixels on the edge of the thumb come near it.
constexpr int pictureTolerance = 3;

QPointF trackCorner(const QSize &extent)
{
    return {(extent.width() - 220) / 2.0, (extent.height() - 88) / 2.0};
}

} // namespace

Q_DECLARE_METATYPE(Look)

class tst_ToggleSwitchPixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void trackIsAPillInTheMiddle_data();
    void trackIsAPillInTheMiddle();
    void trackBorder_data();
    void trackBorder();
    void colours_data();
    void colours();
    void thumbPlace_data();
    void thumbPlace();
    void thumbShadow();
    void thumbBody_data();
    void thumbBody();
    void thumbHighlight_data();
    void thumbHighlight();
    void thumbRim();
    void powerSymbol();
    void pulseRing_data();
    void pulseRing();
    void pulseRingLiesBetweenTrackAndShadow();
    void noRingAtRest_data();
    void noRingAtRest();
    void glow_data();
    void glow();
    void noGlowAtRest_data();
    void noGlowAtRest();
    void picturesLookAsDrawnInPlace_data();
    void picturesLookAsDrawnInPlace();
    void picturesFollowEveryChange_data();
    void picturesFollowEveryChange();
    void references_data();
    void references();
};

void tst_ToggleSwitchPixels::trackIsAPillInTheMiddle_data()
{
    extentRows();
}

void tst_ToggleSwitchPixels::trackIsAPillInTheMiddle()
{
    QFETCH(QSize, extent);

    Look look;
    look.thumbPos = thumbGone;
    look.extent = extent;
    const QImage image = picture(look, fine);
    const double width = extent.width();
    const double height = extent.height();
    const QPointF corner = trackCorner(extent);

    const auto row = [&](double y) {
        return passing(image, QPointF{0.0, y}, QPointF{width, y}, &solid);
    };
    const auto column = [&](double x) {
        return passing(image, QPointF{x, 0.0}, QPointF{x, height}, &solid);
    };
    const double left = corner.x();
    const double top = corner.y();
    QVERIFY(near(row(height / 2.0), left, left + 220.0));
    QVERIFY(near(column(width / 2.0), top, top + 88.0));
    // The whole of both ends is round.
    QVERIFY(near(column(left + 44.0), top, top + 88.0));
    QVERIFY(near(column(left + 176.0), top, top + 88.0));
    // At an eighth of the turn.
    const double sagitta = 44.0 * (1.0 - std::sqrt(0.5));
    QVERIFY(near(row(top + sagitta), left + sagitta, left + 220.0 - sagitta, 0.25));
    QVERIFY(near(row(top + 88.0 - sagitta), left + sagitta, left + 220.0 - sagitta, 0.25));
    QVERIFY(near(column(left + sagitta), top + sagitta, top + 88.0 - sagitta, 0.25));
}

void tst_ToggleSwitchPixels::trackBorder_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<int>("alpha");

    QTest::newRow("off") << State::Off << false << 22;
    QTest::newRow("off, hovered") << State::Off << true << 40;
    QTest::newRow("error") << State::Error << false << 22;
    QTest::newRow("error, hovered") << State::Error << true << 40;
    // Without the glow, whose strength is the scale of the pulse.
    QTest::newRow("connecting") << State::Connecting << false << 22;
    QTest::newRow("connecting, hovered") << State::Connecting << true << 40;
}

void tst_ToggleSwitchPixels::trackBorder()
{
    QFETCH(State, state);
    QFETCH(bool, hovered);
    QFETCH(int, alpha);

    Look look;
    look.state = state;
    look.thumbPos = thumbGone;
    look.pulseScale = 0.0;
    look.hovered = hovered;
    look.extent = QSize{300, 160};
    const QImage image = picture(look, fine);
    const QColor inside = image.pixelColor(image.rect().center());

    // Half of it lies outside of the track, half of it inside.
    const QPointF above{150.0, 0.0};
    const QPointF below{150.0, 160.0};
    QVERIFY(near(passing(image, above, below, &anything), 35.25, 124.75, 0.01));
    QVERIFY(near(passing(image, above, below, exactly(inside)), 36.75, 123.25, 0.01));
    const QPointF left{0.0, 80.0};
    const QPointF right{300.0, 80.0};
    QVERIFY(near(passing(image, left, right, &anything), 39.25, 260.75));
    QVERIFY(near(passing(image, left, right, exactly(inside)), 40.75, 259.25));

    QCOMPARE(pixelAt(image, QPointF{150.0, 35.6}), qRgba(alpha, alpha, alpha, alpha));
    QVERIFY(near(QColor{pixelAt(image, QPointF{150.0, 36.4})}, over(inside.red(), 255, alpha),
                 over(inside.green(), 255, alpha), over(inside.blue(), 255, alpha), 1.0));
}

void tst_ToggleSwitchPixels::colours_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<double>("mix");
    QTest::addColumn<QColor>("colour");

    const QColor off{60, 64, 92};
    const QColor half{157, 81, 71};
    const QColor on{255, 99, 51};
    const QColor error{220, 64, 64};
    QTest::newRow("off") << State::Off << 0.0 << off;
    QTest::newRow("below off") << State::Off << -0.5 << off;
    QTest::newRow("quarter") << State::Off << 0.25 << QColor{108, 72, 81};
    QTest::newRow("half") << State::Off << 0.5 << half;
    QTest::newRow("three quarters") << State::On << 0.75 << QColor{206, 90, 61};
    QTest::newRow("nearly on") << State::On << 0.999 << QColor{254, 98, 51};
    QTest::newRow("on") << State::On << 1.0 << on;
    QTest::newRow("above on") << State::On << 1.7 << on;
    QTest::newRow("connecting") << State::Connecting << 0.5 << half;
    QTest::newRow("connecting, barely begun") << State::Connecting << 0.0 << off;
    QTest::newRow("disconnecting") << State::Disconnecting << 1.0 << on;
    QTest::newRow("error") << State::Error << 0.0 << error;
    QTest::newRow("error, just after on") << State::Error << 1.0 << error;
}

void tst_ToggleSwitchPixels::colours()
{
    QFETCH(State, state);
    QFETCH(double, mix);
    QFETCH(QColor, colour);

    Look look;
    look.state = state;
    look.trackMix = mix;
    look.thumbPos = 0.5;
    for (const double ratio : {1.0, 2.0}) {
        const QImage image = picture(look, ratio);
        QCOMPARE(QColor{pixelAt(image, QPointF{20.0, 50.0})}, colour);
        QCOMPARE(QColor{pixelAt(image, QPointF{200.0, 50.0})}, colour);
        // The lowest point of the symbol's arc.
        QCOMPARE(QColor{pixelAt(image, QPointF{110.0, 66.72})}, colour);
        QCOMPARE(QColor{pixelAt(image, QPointF{110.0, 40.0})}, colour);
    }
}

void tst_ToggleSwitchPixels::thumbPlace_data()
{
    QTest::addColumn<QSize>("extent");
    QTest::addColumn<double>("thumbPos");
    QTest::addColumn<double>("left");

    QTest::newRow("left end") << windowExtent << 0.0 << 10.0;
    QTest::newRow("a quarter") << windowExtent << 0.25 << 41.0;
    QTest::newRow("middle") << windowExtent << 0.5 << 72.0;
    QTest::newRow("right end") << windowExtent << 1.0 << 134.0;
    QTest::newRow("left end, larger") << QSize{300, 160} << 0.0 << 50.0;
    QTest::newRow("right end, odd") << QSize{301, 161} << 1.0 << 174.5;
    QTest::newRow("beyond the left end") << QSize{300, 160} << -0.25 << 19.0;
    QTest::newRow("beyond the right end") << QSize{300, 160} << 1.25 << 205.0;
}

void tst_ToggleSwitchPixels::thumbPlace()
{
    QFETCH(QSize, extent);
    QFETCH(double, thumbPos);
    QFETCH(double, left);

    // The body is the only light thing.
    const auto light = [](QRgb colour) { return qAlpha(colour) > 200 && qBlue(colour) > 180; };
    for (const State state : {State::Off, State::Connecting}) {
        Look look;
        look.state = state;
        look.thumbPos = thumbPos;
        look.extent = extent;
        const QImage image = picture(look, fine);
        const double middle = extent.height() / 2.0;
        QVERIFY(near(passing(image, QPointF{0.0, middle}, QPointF(extent.width(), middle), light),
                     left, left + 76.0));
        QVERIFY(near(
            passing(image, QPointF{left + 38.0, 0.0}, QPointF(left + 38.0, extent.height()), light),
            middle - 38.0, middle + 38.0));
    }
}

void tst_ToggleSwitchPixels::thumbShadow()
{
    const QImage image = picture(thumbAside(State::Off), fine);
    const QPointF centre = asideCentre;

    // Six ellipses, each 1.4 further out than the one before, all 3 further down than the thumb.
    const auto onRow = [&](double y) {
        return passing(image, QPointF{0.0, y}, QPointF{200.0, y}, &anything);
    };
    QVERIFY(near(onRow(centre.y() + 3.0), centre.x() - 45.0, centre.x() + 45.0));
    QVERIFY(near(passing(image, QPointF{centre.x(), 0.0}, QPointF{centre.x(), 120.0}, &anything),
                 centre.y() - 42.0, centre.y() + 48.0));

    const int alphas[] = {22, 19, 16, 13, 10, 7};
    for (int outer = 0; outer < 6; ++outer) {
        double through = 1.0;
        for (int layer = outer; layer < 6; ++layer) {
            through *= 1.0 - alphas[layer] / 255.0;
        }
        // The middle of what this ellipse has beyond the one before.
        const double below = centre.y() + 41.0 + 1.4 * outer - 0.7;
        const QRgb pixel = pixelAt(image, QPointF{centre.x(), below});
        QVERIFY(std::abs(qAlpha(pixel) - 255.0 * (1.0 - through)) <= 1.5);
        QCOMPARE(QColor{pixel}, QColor(0, 0, 0));

        const auto darker = [limit = 255.0 * (1.0 - through) - 3.0](QRgb colour) {
            return qAlpha(colour) > limit;
        };
        const double reach = 1.4 * outer;
        QVERIFY(
            near(passing(image, centre, QPointF{centre.x(), 120.0}, darker), 0.0, 41.0 + reach));
    }
    // The outermost alone.
    QCOMPARE(qAlpha(pixelAt(image, QPointF{centre.x(), centre.y() + 47.3})), 7);
}

void tst_ToggleSwitchPixels::thumbBody_data()
{
    QTest::addColumn<double>("ratio");

    QTest::newRow("100 %") << 1.0;
    QTest::newRow("200 %") << 2.0;
}

void tst_ToggleSwitchPixels::thumbBody()
{
    QFETCH(double, ratio);

    const DeepThumb thumb{ratio, &fillBody};
    const auto worst = thumb.worst(1500, [](const OnThumb &place) {
        return place.inBody() && !place.nearSymbol() && !place.nearHighlight();
    });
    QVERIFY(worst.has_value());
    QVERIFY2(*worst <= 1, qPrintable(QString::number(*worst)));
}

void tst_ToggleSwitchPixels::thumbHighlight_data()
{
    thumbBody_data();
}

void tst_ToggleSwitchPixels::thumbHighlight()
{
    QFETCH(double, ratio);

    // So near to white, it shows only in the depth of the colours.
    const DeepThumb thumb{ratio, [](QPainter &painter) {
                              fillBody(painter);
                              QRadialGradient shine{72.0 + 21.66, 12.0 + 17.48, 20.064};
                              shine.setColorAt(0.0, QColor{255, 255, 255, 200});
                              shine.setColorAt(1.0, QColor{255, 255, 255, 0});
                              painter.setPen(Qt::NoPen);
                              painter.setBrush(shine);
                              painter.drawEllipse(QRectF{72.0 + 9.12, 12.0 + 6.08, 25.08, 22.8});
                          }};
    const auto worst = thumb.worst(200, [](const OnThumb &place) {
        return place.inBody() && !place.nearSymbol() && place.nearHighlight();
    });
    QVERIFY(worst.has_value());
    QVERIFY2(*worst <= 1, qPrintable(QString::number(*worst)));
}

void tst_ToggleSwitchPixels::thumbRim()
{
    const DeepThumb thumb{fine, &fillBody};
    // Where the body is darkest.
    for (const double degrees : {25.0, 45.0, 65.0}) {
        const double angle = degrees * M_PI / 180.0;
        const auto lightening = [&](double radius) {
            const QPointF place =
                (thumbInMiddle + QPointF{std::cos(angle), std::sin(angle)} * radius) * fine;
            const int x = static_cast<int>(place.x());
            const int y = static_cast<int>(place.y());
            const double below = deepPixelAt(thumb.expected, x, y).green();
            return (deepPixelAt(thumb.image, x, y).green() - below) / (65535.0 - below);
        };
        for (const double radius : {37.2, 37.5, 37.8}) {
            QVERIFY(std::abs(lightening(radius) - 90.0 / 255.0) < 0.002);
        }
        QVERIFY(std::abs(lightening(36.8)) < 0.002);
        QVERIFY(lightening(38.2) < 0.0);
    }
}

void tst_ToggleSwitchPixels::powerSymbol()
{
    Look look;
    look.state = State::On;
    look.thumbPos = 0.5;
    look.trackMix = 1.0;
    constexpr QPointF centre = thumbInMiddle;
    const QImage image = picture(look, fine);
    const auto coloured = [](QRgb colour) { return qBlue(colour) < 150; };
    const auto outwards = [&](const QPointF &from, double x, double y) {
        return passing(image, from, from + QPointF{x, y}, coloured);
    };

    // The arc, 6.08 wide around a radius of 16.72.
    QVERIFY(near(outwards(centre + QPointF{4.0, 0.0}, 30.0, 0.0), 9.68, 15.76));
    QVERIFY(near(outwards(centre - QPointF{4.0, 0.0}, -30.0, 0.0), 9.68, 15.76));
    QVERIFY(near(outwards(centre + QPointF{0.0, 4.0}, 0.0, 30.0), 9.68, 15.76));
    const QPointF diagonal = QPointF{1.0, 1.0} * std::sqrt(0.5);
    // The toolkit strokes a thick arc somewhat thinner between its quarters.
    QVERIFY(near(outwards(centre + diagonal * 4.0, 21.0, 21.0), 9.68, 15.76, 0.4));

    // The line, up from the centre, with round ends.
    QVERIFY(near(outwards(centre + QPointF{0.0, 4.0}, 0.0, -34.0), 4.0 - 0.532, 4.0 + 20.596));
    QVERIFY(near(outwards(centre + QPointF{-6.0, -10.0}, 12.0, 0.0), 2.96, 9.04));
    const double roundEnd = std::sqrt(3.04 * 3.04 - 2.0 * 2.0);
    QVERIFY(near(outwards(centre + QPointF{2.0, 4.0}, 0.0, -30.0), 4.0 + 2.508 - roundEnd,
                 4.0 + 17.556 + roundEnd));

    // The gap of 60 degrees at the top, made narrower by the round ends.
    const double end = 2.0 * std::asin(3.04 / 2.0 / 16.72) * 180.0 / M_PI;
    const double half = std::asin(3.04 / 16.72) * 180.0 / M_PI;
    const double changes[] = {60.0 + end, 90.0 - half, 90.0 + half, 120.0 - end};
    constexpr int turnsPerDegree = 10;
    QVector<double> found;
    bool was = true;
    for (int turn = 45 * turnsPerDegree; turn < 405 * turnsPerDegree; ++turn) {
        const double degrees = static_cast<double>(turn) / turnsPerDegree;
        const double angle = degrees * M_PI / 180.0;
        const QPointF place = centre + QPointF{std::cos(angle), -std::sin(angle)} * 16.72;
        const bool is = coloured(pixelAt(image, place));
        if (is != was) {
            found.append(degrees);
        }
        was = is;
    }
    QCOMPARE(found.size(), 4);
    for (int i = 0; i < 4; ++i) {
        QVERIFY2(std::abs(found[i] - changes[i]) < 0.6, qPrintable(QString::number(found[i])));
    }
}

void tst_ToggleSwitchPixels::pulseRing_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<double>("pulseScale");
    QTest::addColumn<double>("radius");

    QTest::newRow("peak") << State::Connecting << 1.22 << 46.36;
    QTest::newRow("peak while disconnecting") << State::Disconnecting << 1.22 << 46.36;
    QTest::newRow("beyond the peak") << State::Connecting << 1.3 << 49.4;
    QTest::newRow("far beyond the peak") << State::Connecting << 1.5 << 57.0;
}

void tst_ToggleSwitchPixels::pulseRing()
{
    QFETCH(State, state);
    QFETCH(double, pulseScale);
    QFETCH(double, radius);

    Look look = thumbAside(state);
    look.pulseScale = pulseScale;
    const QImage image = picture(look, fine);
    const auto white = exactly(QColor{255, 255, 255, 90});
    const QPointF directions[] = {{-1.0, 0.0}, {1.0, 0.0}, {0.0, -1.0}};
    for (const QPointF &direction : directions) {
        QVERIFY(near(passing(image, asideCentre, asideCentre + direction * 59.9, white),
                     radius - 1.25, radius + 1.25));
    }
}

void tst_ToggleSwitchPixels::pulseRingLiesBetweenTrackAndShadow()
{
    Look look;
    look.state = State::Connecting;
    look.thumbPos = 0.5;
    look.trackMix = 0.5;
    look.pulseScale = 1.22;
    const QImage wide = picture(look, fine);
    const QColor onTrack{pixelAt(wide, QPointF{110.0 + 46.36, 50.0})};
    QVERIFY(near(onTrack, over(157, 255, 90), over(81, 255, 90), over(71, 255, 90), 1.0));

    look.pulseScale = 1.05;
    const QImage narrow = picture(look, fine);
    // Below the thumb, where all six layers of its shadow lie.
    double through = 1.0;
    for (const int alpha : {22, 19, 16, 13, 10, 7}) {
        through *= 1.0 - alpha / 255.0;
    }
    const QColor inShadow{pixelAt(narrow, QPointF{110.0, 50.0 + 39.9})};
    QVERIFY(near(inShadow, over(157, 255, 90) * through, over(81, 255, 90) * through,
                 over(71, 255, 90) * through, 2.0));

    // And none of it on the thumb.
    look.pulseScale = 0.9;
    Look still = look;
    still.state = State::Off;
    QCOMPARE(pixelAt(picture(look, fine), QPointF{110.0, 50.0 + 34.2}),
             pixelAt(picture(still, fine), QPointF{110.0, 50.0 + 34.2}));
}

void tst_ToggleSwitchPixels::noRingAtRest_data()
{
    QTest::addColumn<State>("state");

    QTest::newRow("Off") << State::Off;
    QTest::newRow("On") << State::On;
    QTest::newRow("Error") << State::Error;
}

void tst_ToggleSwitchPixels::noRingAtRest()
{
    QFETCH(State, state);

    Look look = thumbAside(state);
    look.pulseScale = 1.3;
    const QImage image = picture(look, fine);
    QCOMPARE(passing(image, asideCentre, asideCentre - QPointF{80.0, 0.0}, &anything).to,
             passing(picture(thumbAside(State::Off), fine), asideCentre,
                     asideCentre - QPointF{80.0, 0.0}, &anything)
                 .to);
    QVERIFY(!anything(pixelAt(image, asideCentre - QPointF{49.4, 0.0})));
}

void tst_ToggleSwitchPixels::glow_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<double>("pulseScale");
    QTest::addColumn<int>("alpha");
    QTest::addColumn<QSize>("extent");
    QTest::addColumn<double>("ratio");

    const QSize large{340, 236};
    QTest::newRow("rest") << State::Connecting << 1.0 << 70 << large << 1.0;
    QTest::newRow("cut off") << State::Connecting << 1.05 << 73 << large << 1.0;
    QTest::newRow("on the way") << State::Connecting << 1.1 << 77 << large << 1.0;
    QTest::newRow("peak") << State::Connecting << 1.22 << 85 << large << 1.0;
    QTest::newRow("disconnecting") << State::Disconnecting << 1.22 << 85 << large << 1.0;
    QTest::newRow("odd") << State::Connecting << 1.22 << 85 << QSize{301, 161} << 1.0;
    QTest::newRow("smallest") << State::Connecting << 1.22 << 85 << windowExtent << 1.0;
    QTest::newRow("peak, 200 %") << State::Connecting << 1.22 << 85 << large << 2.0;
    QTest::newRow("peak, 150 %") << State::Connecting << 1.22 << 85 << large << 1.5;
}

void tst_ToggleSwitchPixels::glow()
{
    QFETCH(State, state);
    QFETCH(double, pulseScale);
    QFETCH(int, alpha);
    QFETCH(QSize, extent);
    QFETCH(double, ratio);

    Look look;
    look.state = state;
    look.thumbPos = thumbGone;
    look.pulseScale = pulseScale;
    look.extent = extent;
    QImage image = picture(look, ratio);

    QImage expected = blank(extent, ratio, image.format());
    const QPointF centre{extent.width() / 2.0, extent.height() / 2.0};
    QRadialGradient colours{centre, 1100.0 / 9.0};
    colours.setColorAt(0.0, QColor{255, 99, 51, alpha});
    colours.setColorAt(1.0, QColor{255, 99, 51, 0});
    QPainter onExpected{&expected};
    onExpected.fillRect(QRect{QPoint{0, 0}, extent}, colours);
    onExpected.end();
    if (extent.height() == 236) {
        QVERIFY(anything(pixelAt(image, centre + QPointF{0.0, 115.5})));
        QVERIFY(anything(pixelAt(image, centre - QPointF{0.0, 115.5})));
    }

    // Track and border lie over it.
    const QRectF track{trackCorner(extent), QSizeF{220.0, 88.0}};
    for (QImage *const either : {&image, &expected}) {
        QPainter painter{either};
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(track.adjusted(-2.0, -2.0, 2.0, 2.0), Qt::transparent);
    }
    QVERIFY(image != blank(extent, ratio, image.format()));
    QCOMPARE(support::difference(image, expected, 0), QString{});
}

void tst_ToggleSwitchPixels::noGlowAtRest_data()
{
    noRingAtRest_data();
}

void tst_ToggleSwitchPixels::noGlowAtRest()
{
    QFETCH(State, state);

    Look look;
    look.state = state;
    look.thumbPos = thumbGone;
    look.pulseScale = 1.22;
    look.extent = QSize{340, 236};
    const QImage image = picture(look);
    const QRect withBorder{59, 73, 222, 90};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QVERIFY(withBorder.contains(x, y) || !anything(image.pixel(x, y)));
        }
    }
}

void tst_ToggleSwitchPixels::picturesLookAsDrawnInPlace_data()
{
    QTest::addColumn<double>("ratio");

    QTest::newRow("100 %") << 1.0;
    QTest::newRow("125 %") << 1.25;
    QTest::newRow("150 %") << 1.5;
    QTest::newRow("175 %") << 1.75;
    QTest::newRow("200 %") << 2.0;
}

void tst_ToggleSwitchPixels::picturesLookAsDrawnInPlace()
{
    QFETCH(double, ratio);

    // With a pulse of nothing, what is drawn in place while at rest must look like the pictures
    // that are kept during a change.
    for (const bool hovered : {false, true}) {
        QImage images[2];
        for (const State state : {State::Off, State::Connecting}) {
            QWidget window;
            window.resize(260, 120);
            Look look;
            look.state = state;
            look.thumbPos = 0.3;
            look.trackMix = 0.6;
            look.pulseScale = 0.0;
            look.hovered = hovered;
            Posed toggle{look, &window};
            // A part of a pixel away from its grid, where the ratio is no whole number.
            toggle.move(7, 5);
            toggle.show();
            images[state == State::Off ? 0 : 1] = support::drawn(window, ratio, QColor{27, 29, 61});
        }
        QCOMPARE(support::difference(images[1], images[0], pictureTolerance), QString{});
    }
}

void tst_ToggleSwitchPixels::picturesFollowEveryChange_data()
{
    QTest::addColumn<Look>("then");

    const auto row = [](const char *name, const std::function<void(Look &)> &change) {
        Look then = pulsing;
        change(then);
        QTest::newRow(name) << then;
    };
    row("nothing", [](Look & /*then*/) {});
    row("thumb", [](Look &then) { then.thumbPos = 0.6; });
    row("mix", [](Look &then) { then.trackMix = 0.5; });
    row("pulse", [](Look &then) { then.pulseScale = 1.2; });
    row("hover", [](Look &then) { then.hovered = true; });
    row("thumb and mix", [](Look &then) {
        then.thumbPos = 0.6;
        then.trackMix = 0.5;
    });
    row("size", [](Look &then) { then.extent = QSize{260, 130}; });
    row("direction", [](Look &then) { then.state = State::Disconnecting; });
    row("end", [](Look &then) { then.state = State::Error; });
}

void tst_ToggleSwitchPixels::picturesFollowEveryChange()
{
    QFETCH(Look, then);

    Posed toggle{pulsing};
    const QImage before = support::drawn(toggle, 1.0);
    toggle.take(then);
    const QImage after = support::drawn(toggle, 1.0);
    QCOMPARE(support::difference(after, picture(then), 0), QString{});
    toggle.take(pulsing);
    QCOMPARE(support::difference(support::drawn(toggle, 1.0), before, 0), QString{});
    toggle.take(then);
    QCOMPARE(support::difference(support::drawn(toggle, 1.5), picture(then, 1.5), 0), QString{});
}

void tst_ToggleSwitchPixels::references_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<Look>("look");
    QTest::addColumn<double>("ratio");

    const auto row = [](const char *name, const Look &look, double ratio = 1.0) {
        QTest::newRow(name) << QString::fromLatin1(name) + QLatin1String{".png"} << look << ratio;
    };
    const Look off{State::Off, 0.0, 0.0, 1.0, false, windowExtent};
    const Look connecting{State::Connecting, 0.5, 0.5, 1.22, false, windowExtent};
    const Look on{State::On, 1.0, 1.0, 1.0, false, windowExtent};
    const Look disconnecting{State::Disconnecting, 1.0, 1.0, 1.11, false, windowExtent};
    const Look error{State::Error, 0.0, 0.0, 1.0, false, windowExtent};
    row("off", off);
    row("off-200", off, 2.0);
    row("connecting", connecting);
    row("connecting-200", connecting, 2.0);
    row("on", on);
    row("on-200", on, 2.0);
    row("disconnecting", disconnecting);
    row("disconnecting-200", disconnecting, 2.0);
    row("error", error);
    row("error-200", error, 2.0);

    const auto changed = [](Look look, const std::function<void(Look &)> &change) {
        change(look);
        return look;
    };
    const auto hovered = [](Look &look) { look.hovered = true; };
    row("off-hovered", changed(off, hovered));
    row("connecting-hovered", changed(connecting, hovered));
    row("on-hovered", changed(on, hovered));
    row("connecting-begun", {State::Connecting, 0.1, 0.05, 1.02, false, windowExtent});
    row("on-gliding", {State::On, 0.73, 0.62, 1.0, false, windowExtent});
    row("error-after-on", {State::Error, 1.0, 1.0, 1.0, false, windowExtent});
    row("off-larger", changed(off, [](Look &look) { look.extent = QSize{261, 131}; }));
    row("connecting-larger", changed(connecting, [](Look &look) { look.extent = {261, 131}; }));
}

void tst_ToggleSwitchPixels::references()
{
    QFETCH(QString, file);
    QFETCH(Look, look);
    QFETCH(double, ratio);

    Posed toggle{look};
    QImage image = support::drawn(toggle, ratio, QColor{27, 29, 61}, QImage::Format_RGB32);
    const QString path = QStringLiteral(IXOVPN_TESTS "/references/toggleswitch/") + file;
    // After a change of the look: set this, run, and look at every picture before it is kept.
    if (qEnvironmentVariableIsSet("IXOVPN_UPDATE_REFERENCES")) {
        image.setDevicePixelRatio(1.0);
        QVERIFY(image.save(path));
        QSKIP("The reference is written and not compared");
    }
    const QImage reference{path};
    QVERIFY2(!reference.isNull(), qPrintable(path));
    QCOMPARE(support::difference(image, reference, pictureTolerance), QString{});
}

QTEST_MAIN(tst_ToggleSwitchPixels)

#include "tst_toggleswitchpixels.moc"
