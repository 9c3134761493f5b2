#include "support/Pictures.h"
#include "ui/ToggleSwitch.h"

#include <QAbstractAnimation>
#include <QTest>

#include <functional>

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

QImage picture(const Look &look, double ratio = 1.0)
{
    Posed toggle{look};
    return support::drawn(toggle, ratio);
}

const Look pulsing{State::Connecting, 0.4, 0.3, 1.1, false, windowExtent};

/// What a channel of a pixel may be off, in shades, where pictures of translucent layers are laid
/// over each other: each of up to a dozen layers is rounded to eight bits on the way, in another
/// order than without pictures. Only few pixels on the edge of the thumb come near it.
constexpr int pictureTolerance = 3;

/// What it may be off from a picture in the tree: more would hide a layer that is a little fainter.
constexpr int referenceTolerance = 1;

} // namespace

Q_DECLARE_METATYPE(Look)

class tst_ToggleSwitchPixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesLookAsDrawnInPlace_data();
    void picturesLookAsDrawnInPlace();
    void picturesFollowEveryChange_data();
    void picturesFollowEveryChange();
    void references_data();
    void references();
};

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
    QCOMPARE(support::difference(image, reference, referenceTolerance), QString{});
}

QTEST_MAIN(tst_ToggleSwitchPixels)

#include "tst_toggleswitchpixels.moc"
