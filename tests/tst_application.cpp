#include "app/Application.h"

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

class tst_Application : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsWhatWouldStay();
    void windowsAreNotAskedToSave();
};

void tst_Application::endsWhatWouldStay()
{
    StubbornWindow window;
    window.show();
    bool givenUp = false;
    QTimer::singleShot(0, &window, [] {
        QEvent order{QEvent::Quit};
        QCoreApplication::sendEvent(qApp, &order);
    });
    // Ends a test that fails.
    QTimer::singleShot(10000, &window, [&givenUp] {
        givenUp = true;
        QCoreApplication::exit(1);
    });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!givenUp);
    QCOMPARE(window.asked, 0);
}

void tst_Application::windowsAreNotAskedToSave()
{
    QVERIFY(!QGuiApplication::isFallbackSessionManagementEnabled());
}

int main(int argc, char *argv[])
{
    app::Application application{argc, argv};
    tst_Application test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
