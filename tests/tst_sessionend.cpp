#include "app/SessionEnd.h"

#include <QApplication>
#include <QCloseEvent>
#include <QTest>
#include <QTimer>
#include <QWidget>

namespace {

/// As the main window while its icon is in a tray.
class StubbornWindow : public QWidget
{
public:
    int asked = 0;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        ++asked;
        event->ignore();
    }
};

} // namespace

class tst_SessionEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsWhatWouldStay();
    void windowsAreNotAskedToSave();
    void leavesOtherEventsAlone();
};

void tst_SessionEnd::endsWhatWouldStay()
{
    const app::SessionEnd sessionEnd{*qApp};
    StubbornWindow window;
    window.show();
    bool givenUp = false;
    QTimer::singleShot(0, &window, [] {
        QEvent order{QEvent::Quit};
        QCoreApplication::sendEvent(qApp, &order);
    });
    // Comes in any case, but late.
    QTimer::singleShot(10000, &window, [&givenUp] {
        givenUp = true;
        QCoreApplication::exit(1);
    });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!givenUp);
    QCOMPARE(window.asked, 0);
}

void tst_SessionEnd::windowsAreNotAskedToSave()
{
    QGuiApplication::setFallbackSessionManagementEnabled(true);
    const app::SessionEnd sessionEnd{*qApp};
    QVERIFY(!QGuiApplication::isFallbackSessionManagementEnabled());
}

void tst_SessionEnd::leavesOtherEventsAlone()
{
    app::SessionEnd sessionEnd{*qApp};
    QEvent order{QEvent::Quit};
    QEvent other{QEvent::LanguageChange};
    QWidget window;
    QVERIFY(!sessionEnd.eventFilter(&window, &order));
    QVERIFY(!sessionEnd.eventFilter(qApp, &other));
}

QTEST_MAIN(tst_SessionEnd)

#include "tst_sessionend.moc"
