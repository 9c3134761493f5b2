#include "ui/ToggleSwitch.h"

#include <QAbstractAnimation>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QSequentialAnimationGroup>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <utility>

using ui::ToggleSwitch;
using State = ToggleSwitch::State;

Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

constexpr State allStates[] = {State::Off, State::Connecting, State::On, State::Disconnecting,
                               State::Error};

const char *nameOf(State state)
{
    return QMetaEnum::fromType<State>().valueToKey(static_cast<int>(state));
}

bool isChanging(State state)
{
    return state == State::Connecting || state == State::Disconnecting;
}

QPropertyAnimation *glideOf(const ToggleSwitch &toggle, const char *property)
{
    const auto glides =
        toggle.findChildren<QPropertyAnimation *>(QString{}, Qt::FindDirectChildrenOnly);
    for (QPropertyAnimation *const glide : glides) {
        if (glide->propertyName() == property) {
            return glide;
        }
    }
    return nullptr;
}

QPropertyAnimation *thumbGlide(const ToggleSwitch &toggle)
{
    return glideOf(toggle, "thumbPos");
}

QPropertyAnimation *mixGlide(const ToggleSwitch &toggle)
{
    return glideOf(toggle, "trackMix");
}

QSequentialAnimationGroup *pulse(const ToggleSwitch &toggle)
{
    return toggle.findChild<QSequentialAnimationGroup *>();
}

bool gliding(const ToggleSwitch &toggle)
{
    return thumbGlide(toggle)->state() != QAbstractAnimation::Stopped ||
           mixGlide(toggle)->state() != QAbstractAnimation::Stopped;
}

bool anythingRuns(const ToggleSwitch &toggle)
{
    const auto animations = toggle.findChildren<QAbstractAnimation *>();
    return std::any_of(animations.begin(), animations.end(), [](QAbstractAnimation *animation) {
        return animation->state() != QAbstractAnimation::Stopped;
    });
}

/// Moves a switch's animations to their ends at once.
void finishGlides(const ToggleSwitch &toggle)
{
    thumbGlide(toggle)->setCurrentTime(thumbGlide(toggle)->duration());
    mixGlide(toggle)->setCurrentTime(mixGlide(toggle)->duration());
}

/// Counts what wakes the program: every timer that fires, and every time the switch is painted.
class Watch : public QObject
{
public:
    explicit Watch(QObject *painted)
        : subject(painted)
    {
        qApp->installEventFilter(this);
    }

    /// Counts for as long as a timer of its own needs, which is not counted.
    void lookFor(int milliseconds)
    {
        timers = 0;
        paints = 0;
        QTimer end;
        own = &end;
        end.setSingleShot(true);
        QSignalSpy over{&end, &QTimer::timeout};
        end.start(milliseconds);
        while (over.isEmpty()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        own = nullptr;
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Timer && watched != own) {
            ++timers;
        } else if (event->type() == QEvent::Paint && watched == subject) {
            ++paints;
        }
        return false;
    }

    int timers = 0;
    int paints = 0;

private:
    QObject *subject;
    QObject *own = nullptr;
};

} // namespace

class tst_ToggleSwitch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPropertyRepaints();
    void startsOffAndStill();
    void everyStateFromEveryState_data();
    void everyStateFromEveryState();
    void glidesArriveByThemselves();
    void sameStateRestartsNothing_data();
    void sameStateRestartsNothing();
    void glidesStartWhereTheSwitchIs();
    void easing();
    void pulseGoesOnFromConnectingToDisconnecting();
    void pulseRunsInLoops();
    void pulseEndsAtOnce_data();
    void pulseEndsAtOnce();
    void pulseStartsAfreshAfterRest();
    void everyChangeRepaints();
    void hoverRepaints();
    void presses_data();
    void presses();
    void releasesSayNothing();
    void secondPressOfADoubleClickCounts();
    void keysSayNothing();
    void statesFasterThanTheGlide();
    void nothingRunsAtRest_data();
    void nothingRunsAtRest();
};

void tst_ToggleSwitch::everyPropertyRepaints()
{
    ToggleSwitch toggle;
    toggle.show();
    QVERIFY(QTest::qWaitForWindowExposed(&toggle));
    const auto repaints = [&toggle](const char *name, double value) {
        Watch watch{&toggle};
        QCoreApplication::processEvents();
        watch.paints = 0;
        toggle.setProperty(name, value);
        return QTest::qWaitFor([&watch] { return watch.paints > 0; });
    };
    QVERIFY(repaints("thumbPos", 0.3));
    QVERIFY(repaints("pulseScale", 1.1));
    QVERIFY(repaints("trackMix", 0.3));
}

void tst_ToggleSwitch::startsOffAndStill()
{
    const ToggleSwitch toggle;
    QCOMPARE(toggle.state(), State::Off);
    QCOMPARE(toggle.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(toggle.thumbPos(), 0.0);
    QCOMPARE(toggle.pulseScale(), 1.0);
    QCOMPARE(toggle.trackMix(), 0.0);
    QVERIFY(!anythingRuns(toggle));
}

void tst_ToggleSwitch::everyStateFromEveryState_data()
{
    QTest::addColumn<State>("from");
    QTest::addColumn<State>("to");
    QTest::addColumn<double>("place");
    QTest::addColumn<bool>("pulses");

    const auto rows = [](State to, double place, bool pulses) {
        for (const State from : allStates) {
            if (from != to) {
                QTest::addRow("%s to %s", nameOf(from), nameOf(to))
                    << from << to << place << pulses;
            }
        }
    };
    rows(State::Off, 0.0, false);
    rows(State::Connecting, 0.5, true);
    rows(State::On, 1.0, false);
    rows(State::Disconnecting, 1.0, true);
    rows(State::Error, 0.0, false);
}

void tst_ToggleSwitch::everyStateFromEveryState()
{
    QFETCH(State, from);
    QFETCH(State, to);
    QFETCH(double, place);
    QFETCH(bool, pulses);

    ToggleSwitch toggle;
    toggle.setState(from);
    finishGlides(toggle);
    const double start = toggle.thumbPos();
    QSignalSpy toggled{&toggle, &ToggleSwitch::toggled};

    toggle.setState(to);
    QCOMPARE(toggle.state(), to);
    for (const QPropertyAnimation *const glide : {thumbGlide(toggle), mixGlide(toggle)}) {
        QCOMPARE(glide->state(), QAbstractAnimation::Running);
        QCOMPARE(glide->currentTime(), 0);
        QCOMPARE(glide->startValue().toDouble(), start);
        QCOMPARE(glide->endValue().toDouble(), place);
    }
    QCOMPARE(pulse(toggle)->state() == QAbstractAnimation::Running, pulses);
    finishGlides(toggle);
    QVERIFY(!gliding(toggle));
    QCOMPARE(toggle.thumbPos(), place);
    QCOMPARE(toggle.trackMix(), place);
    if (!pulses) {
        QCOMPARE(toggle.pulseScale(), 1.0);
        QVERIFY(!anythingRuns(toggle));
    }
    QVERIFY(toggled.isEmpty());
}

void tst_ToggleSwitch::glidesArriveByThemselves()
{
    ToggleSwitch toggle;
    toggle.setState(State::On);
    QTRY_VERIFY(!gliding(toggle));
    QCOMPARE(toggle.thumbPos(), 1.0);
    QCOMPARE(toggle.trackMix(), 1.0);
    // The animations are kept for the next change.
    QVERIFY(thumbGlide(toggle) != nullptr);
    QVERIFY(mixGlide(toggle) != nullptr);
    toggle.setState(State::Error);
    QTRY_VERIFY(!gliding(toggle));
    QCOMPARE(toggle.thumbPos(), 0.0);
    QCOMPARE(toggle.trackMix(), 0.0);
}

void tst_ToggleSwitch::sameStateRestartsNothing_data()
{
    QTest::addColumn<State>("state");

    for (const State state : allStates) {
        if (state != State::Off) {
            QTest::newRow(nameOf(state)) << state;
        }
    }
    QTest::newRow("Off") << State::Off;
}

void tst_ToggleSwitch::sameStateRestartsNothing()
{
    QFETCH(State, state);

    ToggleSwitch toggle;
    if (state == State::Off) {
        toggle.setState(State::On);
        finishGlides(toggle);
    }
    toggle.setState(state);
    thumbGlide(toggle)->setCurrentTime(100);
    mixGlide(toggle)->setCurrentTime(150);
    pulse(toggle)->setCurrentTime(1700);
    // A value set from outside stays too.
    toggle.setPulseScale(1.125);
    const double thumb = toggle.thumbPos();
    const QVariant start = thumbGlide(toggle)->startValue();

    toggle.setState(state);
    QCOMPARE(thumbGlide(toggle)->currentTime(), 100);
    QCOMPARE(mixGlide(toggle)->currentTime(), 150);
    QCOMPARE(pulse(toggle)->currentTime(), 1700);
    QCOMPARE(thumbGlide(toggle)->startValue(), start);
    QCOMPARE(toggle.thumbPos(), thumb);
    QCOMPARE(toggle.pulseScale(), 1.125);
    QCOMPARE(pulse(toggle)->state() == QAbstractAnimation::Running, isChanging(state));
}

void tst_ToggleSwitch::glidesStartWhereTheSwitchIs()
{
    ToggleSwitch toggle;
    toggle.setState(State::On);
    thumbGlide(toggle)->setCurrentTime(90);
    mixGlide(toggle)->setCurrentTime(90);
    const double thumb = toggle.thumbPos();
    const double mix = toggle.trackMix();
    QVERIFY(0.0 < thumb && thumb < 1.0);
    QVERIFY(0.0 < mix && mix < thumb);

    toggle.setState(State::Error);
    QCOMPARE(thumbGlide(toggle)->startValue().toDouble(), thumb);
    QCOMPARE(mixGlide(toggle)->startValue().toDouble(), mix);
    QCOMPARE(thumbGlide(toggle)->endValue().toDouble(), 0.0);
    QCOMPARE(mixGlide(toggle)->endValue().toDouble(), 0.0);
    QCOMPARE(toggle.thumbPos(), thumb);
    QCOMPARE(toggle.trackMix(), mix);
    finishGlides(toggle);

    // Also begins where no state has its thumb.
    toggle.setThumbPos(1.5);
    toggle.setTrackMix(-0.25);
    toggle.setState(State::Connecting);
    QCOMPARE(thumbGlide(toggle)->startValue().toDouble(), 1.5);
    QCOMPARE(mixGlide(toggle)->startValue().toDouble(), -0.25);
    finishGlides(toggle);
    QCOMPARE(toggle.thumbPos(), 0.5);
    QCOMPARE(toggle.trackMix(), 0.5);
}

void tst_ToggleSwitch::easing()
{
    ToggleSwitch toggle;
    toggle.setState(State::On);
    thumbGlide(toggle)->setCurrentTime(140);
    QCOMPARE(toggle.thumbPos(), 0.875);
    mixGlide(toggle)->setCurrentTime(80);
    QCOMPARE(toggle.trackMix(), 0.125);
    mixGlide(toggle)->setCurrentTime(240);
    QCOMPARE(toggle.trackMix(), 0.875);

    toggle.setState(State::Disconnecting);
    pulse(toggle)->setCurrentTime(350);
    QCOMPARE(toggle.pulseScale(), 1.11);
    pulse(toggle)->setCurrentTime(700);
    QCOMPARE(toggle.pulseScale(), 1.22);
    pulse(toggle)->setCurrentTime(1050);
    QCOMPARE(toggle.pulseScale(), 1.11);
    pulse(toggle)->setCurrentTime(175);
    // A quarter of the way of time is (1 - cos 45°) / 2 of the way of the pulse.
    QCOMPARE(toggle.pulseScale(), 1.0 + 0.22 * 0.14644660940672624);
}

void tst_ToggleSwitch::pulseGoesOnFromConnectingToDisconnecting()
{
    ToggleSwitch toggle;
    toggle.setState(State::Connecting);
    pulse(toggle)->setCurrentTime(3000);
    const double scale = toggle.pulseScale();
    QVERIFY(scale > 1.0);

    int restarts = 0;
    connect(pulse(toggle), &QAbstractAnimation::stateChanged, &toggle, [&restarts] { ++restarts; });
    for (const State next : {State::Disconnecting, State::Connecting}) {
        toggle.setState(next);
        QCOMPARE(pulse(toggle)->state(), QAbstractAnimation::Running);
        QCOMPARE(pulse(toggle)->currentTime(), 3000);
        QCOMPARE(pulse(toggle)->currentLoop(), 2);
        QCOMPARE(pulse(toggle)->currentLoopTime(), 200);
        QCOMPARE(toggle.pulseScale(), scale);
    }
    QCOMPARE(restarts, 0);
    QTRY_VERIFY(pulse(toggle)->currentTime() > 3000);
}

void tst_ToggleSwitch::pulseRunsInLoops()
{
    ToggleSwitch toggle;
    toggle.setState(State::Connecting);
    pulse(toggle)->setCurrentTime(1399);
    QTRY_VERIFY(pulse(toggle)->currentLoop() >= 1);
    QCOMPARE(pulse(toggle)->state(), QAbstractAnimation::Running);
    pulse(toggle)->setCurrentTime(1400 * 1000 + 700);
    QCOMPARE(toggle.pulseScale(), 1.22);
    QCOMPARE(pulse(toggle)->state(), QAbstractAnimation::Running);
}

void tst_ToggleSwitch::pulseEndsAtOnce_data()
{
    QTest::addColumn<State>("from");
    QTest::addColumn<State>("to");

    for (const State from : {State::Connecting, State::Disconnecting}) {
        for (const State to : {State::Off, State::On, State::Error}) {
            QTest::addRow("%s to %s", nameOf(from), nameOf(to)) << from << to;
        }
    }
}

void tst_ToggleSwitch::pulseEndsAtOnce()
{
    QFETCH(State, from);
    QFETCH(State, to);

    ToggleSwitch toggle;
    toggle.setState(from);
    pulse(toggle)->setCurrentTime(600);
    QVERIFY(toggle.pulseScale() > 1.1);
    toggle.setState(to);
    QCOMPARE(pulse(toggle)->state(), QAbstractAnimation::Stopped);
    QCOMPARE(toggle.pulseScale(), 1.0);
}

void tst_ToggleSwitch::pulseStartsAfreshAfterRest()
{
    ToggleSwitch toggle;
    toggle.setState(State::Connecting);
    pulse(toggle)->setCurrentTime(2000);
    toggle.setState(State::On);
    toggle.setState(State::Disconnecting);
    QCOMPARE(pulse(toggle)->state(), QAbstractAnimation::Running);
    QCOMPARE(pulse(toggle)->currentTime(), 0);
    QCOMPARE(toggle.pulseScale(), 1.0);

    // A scale from outside is put right by the next rest, although no pulse was running.
    toggle.setState(State::On);
    toggle.setPulseScale(1.2);
    toggle.setState(State::Off);
    QCOMPARE(toggle.pulseScale(), 1.0);
}

void tst_ToggleSwitch::everyChangeRepaints()
{
    ToggleSwitch toggle;
    toggle.show();
    QVERIFY(QTest::qWaitForWindowExposed(&toggle));
    Watch watch{&toggle};
    for (const State next : {State::Error, State::Off, State::On, State::Connecting}) {
        toggle.setState(next);
        // Stops all animations, so that only the change itself can repaint.
        for (QAbstractAnimation *const animation : toggle.findChildren<QAbstractAnimation *>()) {
            animation->stop();
        }
        watch.paints = 0;
        QTRY_VERIFY(watch.paints > 0);
    }
}

void tst_ToggleSwitch::hoverRepaints()
{
    ToggleSwitch toggle;
    toggle.show();
    QVERIFY(QTest::qWaitForWindowExposed(&toggle));
    Watch watch{&toggle};
    for (const QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
        QCoreApplication::processEvents();
        watch.paints = 0;
        // Sent alone, without the hover events that repaint every widget.
        QEvent crossing{type};
        QCoreApplication::sendEvent(&toggle, &crossing);
        QTRY_VERIFY(watch.paints > 0);
    }
}

void tst_ToggleSwitch::presses_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("toggles");

    const std::pair<const char *, Qt::MouseButton> buttons[] = {
        {"left", Qt::LeftButton},
        {"right", Qt::RightButton},
        {"middle", Qt::MiddleButton},
        {"back", Qt::BackButton},
    };
    for (const State state : allStates) {
        for (const auto &[name, button] : buttons) {
            QTest::addRow("%s in %s", name, nameOf(state))
                << state << button << (button == Qt::LeftButton && !isChanging(state) ? 1 : 0);
        }
    }
}

void tst_ToggleSwitch::presses()
{
    QFETCH(State, state);
    QFETCH(Qt::MouseButton, button);

    ToggleSwitch toggle;
    toggle.setState(state);
    finishGlides(toggle);
    QSignalSpy toggled{&toggle, &ToggleSwitch::toggled};
    QTest::mousePress(&toggle, button);
    QTEST(static_cast<int>(toggled.count()), "toggles");
}

void tst_ToggleSwitch::releasesSayNothing()
{
    ToggleSwitch toggle;
    QSignalSpy toggled{&toggle, &ToggleSwitch::toggled};
    QTest::mouseRelease(&toggle, Qt::LeftButton);
    QCOMPARE(toggled.count(), 0);
    QTest::mousePress(&toggle, Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
    QTest::mouseRelease(&toggle, Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);

    // A release elsewhere does not take the press back.
    QTest::mousePress(&toggle, Qt::LeftButton, {}, QPoint{1, 1});
    QTest::mouseRelease(&toggle, Qt::LeftButton, {}, QPoint{-50, -50});
    QCOMPARE(toggled.count(), 2);
}

void tst_ToggleSwitch::secondPressOfADoubleClickCounts()
{
    ToggleSwitch toggle;
    QSignalSpy toggled{&toggle, &ToggleSwitch::toggled};
    QTest::mouseClick(&toggle, Qt::LeftButton);
    const QPointF middle = toggle.rect().center();
    QMouseEvent second{QEvent::MouseButtonDblClick, middle, Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier};
    QCoreApplication::sendEvent(&toggle, &second);
    QCOMPARE(toggled.count(), 2);
}

void tst_ToggleSwitch::keysSayNothing()
{
    ToggleSwitch toggle;
    QSignalSpy toggled{&toggle, &ToggleSwitch::toggled};
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&toggle, key);
    }
    QVERIFY(toggled.isEmpty());
    QCOMPARE(toggle.focusPolicy(), Qt::NoFocus);
}

void tst_ToggleSwitch::statesFasterThanTheGlide()
{
    ToggleSwitch toggle;
    int jumps = 0;
    double last = 0.0;
    for (int round = 0; round < 40; ++round) {
        toggle.setState(allStates[(round * 3 + 1) % 5]);
        // The change of state itself moves nothing.
        jumps += qFuzzyCompare(1.0 + toggle.thumbPos(), 1.0 + last) ? 0 : 1;
        thumbGlide(toggle)->setCurrentTime(60);
        mixGlide(toggle)->setCurrentTime(60);
        last = toggle.thumbPos();
        QVERIFY(0.0 <= last && last <= 1.0);
        QVERIFY(0.0 <= toggle.trackMix() && toggle.trackMix() <= 1.0);
    }
    QCOMPARE(jumps, 0);
    QCOMPARE(toggle.findChildren<QAbstractAnimation *>().size(), 5);

    toggle.setState(State::Connecting);
    toggle.setState(State::Off);
    toggle.setState(State::On);
    QTRY_VERIFY(!anythingRuns(toggle));
    QCOMPARE(toggle.thumbPos(), 1.0);
    QCOMPARE(toggle.trackMix(), 1.0);
    QCOMPARE(toggle.pulseScale(), 1.0);
}

void tst_ToggleSwitch::nothingRunsAtRest_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<bool>("moves");

    for (const State state : allStates) {
        QTest::newRow(nameOf(state)) << state << isChanging(state);
    }
}

void tst_ToggleSwitch::nothingRunsAtRest()
{
    QFETCH(State, state);
    QFETCH(bool, moves);

    ToggleSwitch toggle;
    toggle.show();
    QVERIFY(QTest::qWaitForWindowExposed(&toggle));
    toggle.setState(state == State::On ? State::Connecting : State::Disconnecting);
    toggle.setState(state);
    QTRY_VERIFY(!gliding(toggle));
    QCOMPARE(anythingRuns(toggle), moves);
    // Handles the last frame of the animation, and the stop of the timer that all animations share.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();

    Watch watch{&toggle};
    watch.lookFor(150);
    QCOMPARE(watch.timers > 0, moves);
    QCOMPARE(watch.paints > 0, moves);
}

QTEST_MAIN(tst_ToggleSwitch)

#include "tst_toggleswitch.moc"
