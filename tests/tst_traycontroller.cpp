#include "ui/TrayController.h"

#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>

#include <memory>

using ui::TrayController;

namespace {

int messages = 0;

void countMessage(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                  const QString & /*message*/)
{
    ++messages;
}

} // namespace

/// On a desktop without a tray; with one, the whole program is tested.
class tst_TrayController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void belongsToWindow();
    void inert();
    void leavesWindowAlone();
};

void tst_TrayController::initTestCase()
{
    QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
}

void tst_TrayController::belongsToWindow()
{
    auto window = std::make_unique<QWidget>();
    const QPointer<TrayController> controller{new TrayController{window.get()}};
    QCOMPARE(controller->parent(), window.get());
    window.reset();
    QVERIFY(controller.isNull());
}

void tst_TrayController::inert()
{
    messages = 0;
    const QtMessageHandler before = qInstallMessageHandler(countMessage);
    QWidget window;
    TrayController controller{&window};
    const QSignalSpy quits{&controller, &TrayController::quitRequested};
    controller.setStatusText(QStringLiteral("Connected"));
    controller.setStatusText({});
    controller.setStatusText(QStringLiteral("%1 %n"));
    QCoreApplication::processEvents();
    qInstallMessageHandler(before);

    QCOMPARE(messages, 0);
    QCOMPARE(quits.count(), 0);
    QCOMPARE(controller.children().size(), 0);
    QCOMPARE(window.findChildren<QMenu *>().size(), 0);
    QCOMPARE(window.children(), QObjectList{&controller});
}

void tst_TrayController::leavesWindowAlone()
{
    QWidget window;
    TrayController controller{&window};
    controller.setStatusText(QStringLiteral("Connected"));
    QVERIFY(window.isHidden());
    QVERIFY(!window.testAttribute(Qt::WA_WState_ExplicitShowHide));
    QCOMPARE(window.toolTip(), QString{});
}

QTEST_MAIN(tst_TrayController)

#include "tst_traycontroller.moc"
