#include "tests/support/Client.h"
#include "tests/support/Contents.h"
#include "tests/support/Desktop.h"

#include <QTest>

using support::clientProgram;
using support::Desktop;
using support::waitFor;

/// Which libraries the program loads to show its window.
class tst_OpenGl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void driverIsNotLoaded();
    void usersChoiceStands();

private:
    static QByteArray loadedBy(Desktop &desktop);
};

QByteArray tst_OpenGl::loadedBy(Desktop &desktop)
{
    const QProcess *const client = desktop.start(clientProgram());
    if (!waitFor([&] { return !desktop.visibleWindows(QStringLiteral("IXOVPN")).isEmpty(); })) {
        return {};
    }
    return support::contents(QStringLiteral("/proc/%1/maps").arg(client->processId()));
}

void tst_OpenGl::driverIsNotLoaded()
{
    Desktop desktop;
    const QByteArray loaded = loadedBy(desktop);
    QVERIFY(loaded.contains("libqxcb.so"));
    QVERIFY(!loaded.contains("xcbglintegrations"));
}

void tst_OpenGl::usersChoiceStands()
{
    Desktop desktop;
    desktop.setVariable(QStringLiteral("QT_XCB_GL_INTEGRATION"), QStringLiteral("xcb_glx"));
    QVERIFY(loadedBy(desktop).contains("xcbglintegrations"));
}

QTEST_GUILESS_MAIN(tst_OpenGl)
#include "tst_opengl.moc"
