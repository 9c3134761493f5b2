#include "ui/TrayController.h"

#include <QCoreApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QWidget>

namespace ui {

TrayController::TrayController(QWidget *window_)
    : QObject(window_)
    , window(window_)
{
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        return;
    }
    tray = new QSystemTrayIcon{QIcon{QStringLiteral(":/assets/tray_icon.ico")}, this};
    tray->setToolTip(tr("IXOVPN — disconnected"));

    auto *const menu = new QMenu{window};
    const QAction *const showAction = menu->addAction(tr("Show"));
    menu->addSeparator();
    const QAction *const quitAction = menu->addAction(tr("Quit"));
    tray->setContextMenu(menu);

    connect(showAction, &QAction::triggered, this, &TrayController::showWindow);
    connect(quitAction, &QAction::triggered, this, [this] {
        Q_EMIT quitRequested();
        QCoreApplication::quit();
    });
    connect(tray, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
                    showWindow();
                }
            });

    tray->show();
}

void TrayController::setStatusText(const QString &text)
{
    if (tray == nullptr) {
        return;
    }
    // Not the dash of the first tool tip: these three characters are intended.
    tray->setToolTip(QStringLiteral(u"IXOVPN \u00e2\u20ac\u201d %1").arg(text));
}

void TrayController::showWindow()
{
    window->showNormal();
    window->raise();
    window->activateWindow();
}

} // namespace ui
