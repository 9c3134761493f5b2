#include "tests/support/WindowBench.h"

#include "ui/NoticeDialog.h"
#include "ui/PillLabel.h"
#include "ui/ReferralDialog.h"
#include "ui/SideMenu.h"
#include "ui/TrayController.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <limits>

using support::display;
using support::WindowBench;
using State = ui::ToggleSwitch::State;

namespace {

/// A user who reads each notice that appears and presses OK, or does something else first.
class NoticeReader : public QObject
{
public:
    NoticeReader() { qApp->installEventFilter(this); }

    /// What has been read so far, in this order, and how many notices were open at once at most.
    QStringList texts;
    int mostAtOnce = 0;
    int atOnce = 0;

    /// Called with each notice before OK is pressed.
    std::function<void(ui::NoticeDialog &)> meanwhile = [](ui::NoticeDialog &) {};
    /// Nobody presses OK.
    bool leavesOpen = false;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *const notice = qobject_cast<ui::NoticeDialog *>(object);
        if (notice != nullptr && event->type() == QEvent::Show) {
            ++atOnce;
            mostAtOnce = std::max(mostAtOnce, atOnce);
            const QString text = notice->findChild<QLabel *>()->text();
            texts.append(text.mid(text.indexOf(QLatin1String{"</style>"}) + 8));
            QMetaObject::invokeMethod(
                notice, [this, notice] { read(*notice); }, Qt::QueuedConnection);
        } else if (notice != nullptr && event->type() == QEvent::Hide) {
            --atOnce;
        }
        return false;
    }

private:
    void read(ui::NoticeDialog &notice)
    {
        meanwhile(notice);
        if (notice.isVisible() && !leavesOpen) {
            auto *const buttons = notice.findChild<QDialogButtonBox *>();
            buttons->button(QDialogButtonBox::Ok)->click();
        }
    }
};

QList<QByteArray> numberedNotices(int count)
{
    QList<QByteArray> lines;
    for (int i = 0; i < count; ++i) {
        lines.append("notice: number " + QByteArray::number(i));
    }
    return lines;
}

/// Sent behind a few notices, to tell that all of them have arrived.
const QByteArray marker = QByteArrayLiteral("config-bytes: 9");

bool markerArrived(const WindowBench &bench)
{
    return support::waitFor(
        [&bench] { return bench.pill()->text() == QStringLiteral("Config 9 bytes"); });
}

QStringList textsOf(const QList<QByteArray> &lines)
{
    QStringList texts;
    for (const QByteArray &line : lines) {
        texts.append(QString::fromUtf8(line.mid(8)));
    }
    return texts;
}

} // namespace

class tst_MainWindowNotices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void oneNotice();
    void textIsPassedOn_data();
    void textIsPassedOn();
    void oneAfterTheOther();
    void thirdWaits();
    void everyWayOfClosing();
    void doubleClickOnOk();
    void heldKey_data();
    void heldKey();
    void messagesGoOnBehindIt();
    void clicksGoOnBehindIt();
    void connectionLossBehindIt();
    void queuedNoticesOutliveTheConnection();
    void overTheReferralDialog();
    void manyInOneSegment();
    void quittingDropsTheQueue_data();
    void quittingDropsTheQueue();
    void noneAfterQuitting();
    void noneWhileTheTrayQuits();
    void endsNothingForAHiddenWindow();
};

void tst_MainWindowNotices::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindowNotices::oneNotice()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    const QStringList before = bench.shown();

    NoticeReader reader;
    bool modal = false;
    QWidget *parent = nullptr;
    reader.meanwhile = [&](ui::NoticeDialog &notice) {
        modal = QApplication::activeModalWidget() == &notice;
        parent = notice.parentWidget();
    };
    QVERIFY(bench.say("notice: Hello"));
    QCOMPARE(reader.texts, QStringList{QStringLiteral("Hello")});
    QVERIFY(modal);
    QCOMPARE(parent, bench.window.get());
    QCOMPARE(bench.shown(), before);
    QVERIFY(bench.sent().isEmpty());
    QVERIFY(bench.window->findChildren<ui::NoticeDialog *>().isEmpty());
}

void tst_MainWindowNotices::textIsPassedOn_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("text");

    QTest::newRow("markup") << QByteArray{"notice: <b>Hello</b> &amp; <a href='https://a'>x</a>"}
                            << QStringLiteral("<b>Hello</b> &amp; <a href='https://a'>x</a>");
    QTest::newRow("more blanks") << QByteArray{"notice:   far in"} << QStringLiteral("  far in");
    QTest::newRow("other prefix") << QByteArray{"notice: status: running"}
                                  << QStringLiteral("status: running");
    QTest::newRow("placeholder") << QByteArray{"notice: %1"} << QStringLiteral("%1");
    QTest::newRow("beyond ASCII") << QByteArray{"notice: Привет 日本"}
                                  << QStringLiteral("Привет 日本");
}

void tst_MainWindowNotices::textIsPassedOn()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, text);

    WindowBench bench;
    QVERIFY(bench.greeted());
    const NoticeReader reader;
    QVERIFY(bench.say(line));
    QCOMPARE(reader.texts, QStringList{text});
}

void tst_MainWindowNotices::oneAfterTheOther()
{
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    QList<int> shownSoFar;
    reader.meanwhile = [&](ui::NoticeDialog &) {
        // Both have arrived, yet the second is not shown before the first is closed.
        QVERIFY(markerArrived(bench));
        shownSoFar.append(reader.texts.size());
    };
    bench.service.write("notice: first\nnotice: second\n" + marker + '\n');
    QVERIFY(support::waitFor([&] { return reader.texts.size() == 2 && reader.atOnce == 0; }));
    QCOMPARE(reader.texts, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    QCOMPARE(shownSoFar, (QList<int>{1, 2}));
    QCOMPARE(reader.mostAtOnce, 1);
}

void tst_MainWindowNotices::thirdWaits()
{
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    QStringList seen;
    reader.meanwhile = [&](ui::NoticeDialog &) {
        // One more arrives behind each of the first two.
        if (reader.texts.size() < 3) {
            QVERIFY(bench.say("notice: number " + QByteArray::number(reader.texts.size())));
        }
        seen.append(reader.texts.constLast());
    };
    bench.service.sendLine("notice: number 0");
    QVERIFY(support::waitFor([&] { return reader.texts.size() == 3 && reader.atOnce == 0; }));
    QCOMPARE(seen, textsOf(numberedNotices(3)));
    QCOMPARE(reader.texts, seen);
    QCOMPARE(reader.mostAtOnce, 1);
}

void tst_MainWindowNotices::everyWayOfClosing()
{
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    reader.meanwhile = [&](ui::NoticeDialog &notice) {
        switch (reader.texts.size()) {
        case 1:
            QTest::keyClick(&notice, Qt::Key_Escape);
            break;
        case 2:
            notice.close();
            break;
        case 3:
            QTest::keyClick(&notice, Qt::Key_Return);
            break;
        default:
            break;
        }
    };
    QVERIFY(bench.say(numberedNotices(4)));
    QVERIFY(support::waitFor([&] { return reader.texts.size() == 4 && reader.atOnce == 0; }));
    QCOMPARE(reader.texts, textsOf(numberedNotices(4)));
}

// A second click at the place of the first one is the second half of a double click.
void tst_MainWindowNotices::doubleClickOnOk()
{
    QStyleHints *const hints = QGuiApplication::styleHints();
    const int interval = hints->mouseDoubleClickInterval();
    hints->setMouseDoubleClickInterval(std::numeric_limits<int>::max());
    const auto restored = qScopeGuard([=] { hints->setMouseDoubleClickInterval(interval); });

    WindowBench bench;
    QVERIFY(bench.greeted());
    NoticeReader reader;
    reader.leavesOpen = true;
    const auto click = [](const QWidget &window, const QPoint &place) {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, window.mapFromGlobal(place));
    };
    QPoint place;
    QList<bool> closed;
    reader.meanwhile = [&](ui::NoticeDialog &notice) {
        if (place.isNull()) {
            const auto *const ok =
                notice.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
            place = ok->mapToGlobal(ok->rect().center());
            click(notice, place);
            return;
        }
        for (int i = 0; i < 2; ++i) {
            click(notice, place);
            closed.append(!notice.isVisible());
        }
    };
    QVERIFY(bench.say({"status: running", "notice: one", "notice: two"}));
    QVERIFY(support::waitFor([&] { return closed.size() == 2; }));
    const QList<bool> expected{false, true};
    QCOMPARE(closed, expected);

    const QPoint onTheSwitch = bench.toggle()->mapToGlobal(bench.toggle()->rect().center());
    bench.window->move(bench.window->pos() + place - onTheSwitch);
    click(*bench.window, place);
    QVERIFY(bench.sent().isEmpty());
}

void tst_MainWindowNotices::heldKey_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Enter") << Qt::Key_Return;
    QTest::newRow("Enter among the digits") << Qt::Key_Enter;
    QTest::newRow("Escape") << Qt::Key_Escape;
}

void tst_MainWindowNotices::heldKey()
{
    QFETCH(Qt::Key, key);
    WindowBench bench;
    QVERIFY(bench.greeted());
    NoticeReader reader;
    reader.leavesOpen = true;
    QList<bool> closed;
    reader.meanwhile = [&](ui::NoticeDialog &notice) {
        QVERIFY(QTest::qWaitForWindowActive(&notice));
        const auto press = [&](bool repeated) {
            QTest::simulateEvent(notice.windowHandle(), true, key, Qt::NoModifier, {}, repeated);
            closed.append(!notice.isVisible());
        };
        press(!closed.isEmpty());
        if (notice.isVisible()) {
            press(false);
        }
    };
    QVERIFY(bench.say({"notice: one", "notice: two"}));
    QVERIFY(support::waitFor([&] { return closed.size() >= 2 && reader.atOnce == 0; }));
    const QList<bool> expected{true, false, true};
    QCOMPARE(closed, expected);
}

void tst_MainWindowNotices::messagesGoOnBehindIt()
{
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    QStringList behind;
    reader.meanwhile = [&](ui::NoticeDialog &notice) {
        QVERIFY(bench.say({"status: running", "config-bytes: 7"}));
        behind = bench.shown();
        QVERIFY(notice.isVisible());
    };
    bench.service.write("notice: first\n");
    QVERIFY(support::waitFor([&] { return reader.texts.size() == 1 && reader.atOnce == 0; }));
    QCOMPARE(behind,
             display(State::On, QStringLiteral("Connected"), QStringLiteral("Config 7 bytes")));
}

void tst_MainWindowNotices::clicksGoOnBehindIt()
{
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    QList<QByteArray> sent;
    reader.meanwhile = [&](ui::NoticeDialog &) {
        Q_EMIT bench.toggle()->toggled();
        sent = bench.sent();
    };
    QVERIFY(bench.say("notice: first"));
    QCOMPARE(sent, QList<QByteArray>{R"({"cmd":"connect"})"});
}

void tst_MainWindowNotices::connectionLossBehindIt()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));

    NoticeReader reader;
    QStringList lost;
    QByteArray greeting;
    reader.meanwhile = [&](ui::NoticeDialog &notice) {
        QVERIFY(bench.loseLink());
        lost = bench.shown();
        bench.service.listen();
        QVERIFY(support::waitFor([&] { return bench.service.lines().size() == 2; }));
        greeting = bench.service.received();
        QVERIFY(notice.isVisible());
    };
    bench.service.sendLine("notice: first");
    QVERIFY(support::waitFor([&] { return reader.texts.size() == 1 && reader.atOnce == 0; }));
    QCOMPARE(lost, display(State::Off, QStringLiteral("Disconnected"),
                           QStringLiteral("Service is not running")));
    QCOMPARE(greeting,
             QByteArrayLiteral("{\"cmd\":\"set-lang\",\"lang\":\"en\"}\n{\"cmd\":\"status\"}\n"));
    QCOMPARE(bench.pill()->text(), QStringLiteral("Service connected"));
}

void tst_MainWindowNotices::queuedNoticesOutliveTheConnection()
{
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    reader.meanwhile = [&](ui::NoticeDialog &) {
        if (reader.texts.size() == 1) {
            QVERIFY(markerArrived(bench));
            QVERIFY(bench.loseLink());
        }
    };
    bench.service.write((numberedNotices(3) << marker).join('\n') + '\n');
    QVERIFY(support::waitFor([&] { return reader.texts.size() == 3 && reader.atOnce == 0; }));
    QCOMPARE(reader.texts, textsOf(numberedNotices(3)));
    QCOMPARE(bench.pill()->text(), QStringLiteral("Service is not running"));
}

void tst_MainWindowNotices::overTheReferralDialog()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    const NoticeReader reader;
    bool stillOpen = false;
    QTimer::singleShot(0, bench.window.get(), [&] {
        auto *const dialog = qobject_cast<ui::ReferralDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        QVERIFY(bench.say("notice: Hello"));
        stillOpen = QApplication::activeModalWidget() == dialog;
        dialog->reject();
    });
    Q_EMIT bench.sideMenu()->referralRequested();
    QCOMPARE(reader.texts, QStringList{QStringLiteral("Hello")});
    QVERIFY(stillOpen);
}

void tst_MainWindowNotices::manyInOneSegment()
{
    // The platform offscreen warns about each window with a maximum size.
    QLoggingCategory *const talk = QLoggingCategory::defaultCategory();
    talk->setEnabled(QtWarningMsg, false);
    const auto talkAgain = qScopeGuard([talk] { talk->setEnabled(QtWarningMsg, true); });

    const QList<QByteArray> lines = numberedNotices(100);
    WindowBench bench;
    QVERIFY(bench.greeted());
    const NoticeReader reader;
    bench.service.write(lines.join('\n') + "\nstatus: running\n");
    QVERIFY(support::waitFor(
        [&] { return reader.texts.size() >= lines.size() && reader.atOnce == 0; }));
    QCOMPARE(reader.texts, textsOf(lines));
    QCOMPARE(reader.mostAtOnce, 1);
    QVERIFY(
        support::waitFor([&] { return bench.status()->text() == QStringLiteral("Connected"); }));
    QVERIFY(bench.window->findChildren<ui::NoticeDialog *>().isEmpty());
}

void tst_MainWindowNotices::quittingDropsTheQueue_data()
{
    QTest::addColumn<bool>("fromOutside");
    QTest::newRow("by the menu") << false;
    QTest::newRow("with the desktop's session") << true;
}

void tst_MainWindowNotices::quittingDropsTheQueue()
{
    QFETCH(bool, fromOutside);
    WindowBench bench;
    QVERIFY(bench.greeted());

    NoticeReader reader;
    reader.leavesOpen = fromOutside;
    reader.meanwhile = [&](ui::NoticeDialog &) {
        QVERIFY(markerArrived(bench));
        if (fromOutside) {
            QCoreApplication::exit();
        } else {
            Q_EMIT bench.sideMenu()->exitRequested();
        }
    };
    QTimer::singleShot(0, bench.window.get(), [&bench] {
        bench.service.write((numberedNotices(11) << marker).join('\n') + '\n');
    });
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(reader.texts, QStringList{QStringLiteral("number 0")});
    QVERIFY(bench.window->findChildren<ui::NoticeDialog *>().isEmpty());
}

void tst_MainWindowNotices::noneAfterQuitting()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QTimer::singleShot(0, bench.window.get(),
                       [&bench] { Q_EMIT bench.sideMenu()->exitRequested(); });
    QCOMPARE(QCoreApplication::exec(), 0);
    const NoticeReader reader;
    QVERIFY(bench.say("notice: too late"));
    QVERIFY(reader.texts.isEmpty());
}

void tst_MainWindowNotices::noneWhileTheTrayQuits()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    const NoticeReader reader;
    // TrayController ends the program itself, right after this signal.
    Q_EMIT bench.window->findChild<ui::TrayController *>()->quitRequested();
    QVERIFY(bench.say("notice: too late"));
    QVERIFY(reader.texts.isEmpty());
    QVERIFY(bench.window->isVisible());
}

void tst_MainWindowNotices::endsNothingForAHiddenWindow()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    bench.window->hide();

    const NoticeReader reader;
    const QSignalSpy lastWindow{qApp, &QGuiApplication::lastWindowClosed};
    constexpr int endOfTest = 7;
    QTimer::singleShot(0, bench.window.get(), [&bench] {
        QVERIFY(bench.say("notice: Hello"));
        QTimer::singleShot(0, bench.window.get(), [] { QCoreApplication::exit(endOfTest); });
    });
    QCOMPARE(QCoreApplication::exec(), endOfTest);
    QCOMPARE(reader.texts, QStringList{QStringLiteral("Hello")});
    QVERIFY(!bench.window->isVisible());
    QVERIFY(lastWindow.isEmpty());
}

QTEST_MAIN(tst_MainWindowNotices)

#include "tst_mainwindownotices.moc"
