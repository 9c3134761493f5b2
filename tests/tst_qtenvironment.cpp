#include "app/QtEnvironment.h"

#include <QTest>

using app::QtEnvironment;
using Run = QtEnvironment::Run;

Q_DECLARE_METATYPE(Run)

/// For Linux; on Windows the test screenscale runs the whole program at several scales.
class tst_QtEnvironment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void platform_data();
    void platform();
    void noOpenGl_data();
    void noOpenGl();
};

void tst_QtEnvironment::platform_data()
{
    QTest::addColumn<Run>("run");
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<QByteArray>("waylandDisplay");
    QTest::addColumn<QByteArray>("platform");
    QTest::addColumn<QByteArray>("chosen");

    const auto row = [](const char *name, Run run, const char *display, const char *waylandDisplay,
                        const char *platform, const char *chosen) {
        QTest::newRow(name) << run << QByteArray{display} << QByteArray{waylandDisplay}
                            << QByteArray{platform} << QByteArray{chosen};
    };
    row("nothing there", Run::WithoutWindow, "", "", "", "offscreen");
    row("a window wanted", Run::WithWindow, "", "", "", "");
    row("X11", Run::WithoutWindow, ":0", "", "", "");
    row("Wayland", Run::WithoutWindow, "", "wayland-0", "", "");
    row("named", Run::WithoutWindow, "", "", "minimal", "minimal");
    row("named beside X11", Run::WithoutWindow, ":0", "", "vnc", "vnc");
}

void tst_QtEnvironment::platform()
{
    QFETCH(Run, run);
    QFETCH(QByteArray, display);
    QFETCH(QByteArray, waylandDisplay);
    QFETCH(QByteArray, platform);
    qputenv("DISPLAY", display);
    qputenv("WAYLAND_DISPLAY", waylandDisplay);
    qputenv("QT_QPA_PLATFORM", platform);
    const QtEnvironment environment{run};
    QTEST(qgetenv("QT_QPA_PLATFORM"), "chosen");
}

void tst_QtEnvironment::noOpenGl_data()
{
    QTest::addColumn<QByteArray>("users");
    QTest::addColumn<QByteArray>("during");
    QTest::newRow("no choice") << QByteArray{} << QByteArrayLiteral("none");
    QTest::newRow("a driver") << QByteArrayLiteral("xcb_egl") << QByteArrayLiteral("xcb_egl");
}

void tst_QtEnvironment::noOpenGl()
{
    constexpr char variable[] = "QT_XCB_GL_INTEGRATION";
    QFETCH(QByteArray, users);
    qputenv(variable, users);
    {
        const QtEnvironment environment{Run::WithWindow};
        QTEST(qgetenv(variable), "during");
    }
    // Programs that are started later inherit none of our variables.
    QCOMPARE(qgetenv(variable), users);
}

QTEST_GUILESS_MAIN(tst_QtEnvironment)

#include "tst_qtenvironment.moc"
