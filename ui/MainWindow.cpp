#include "ui/MainWindow.h"

#include "ipc/Protocol.h"
#include "ipc/ServiceClient.h"
#include "ui/Accessibility.h"
#include "ui/CachedPicture.h"
#include "ui/Catalogue.h"
#include "ui/LiveLabel.h"
#include "ui/NoticeDialog.h"
#include "ui/PillLabel.h"
#include "ui/PressFilter.h"
#include "ui/ReferralCode.h"
#include "ui/ReferralDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"
#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"
#include "ui/ToolButton.h"
#include "ui/TrayController.h"
#include "ui/WindowManager.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTranslator>
#include <QVBoxLayout>

#include <memory>
#include <utility>

using ipc::protocol::Message;
using ipc::protocol::MessageKind;
using ui::ToggleSwitch;

namespace {

QString mainStyle()
{
    return QStringLiteral(
        "QLabel#title { color: #F2F2FA; font-size: 15px; font-weight: 600;"
        " letter-spacing: 0.5px; }"
        "QLabel#status { color: #F2F2FA; font-size: 22px; font-weight: 600; }"
        "QLabel#pill { background: rgba(255, 255, 255, 25); color: #C9CBE6;"
        " padding: 8px 18px; border-radius: 14px; font-size: 12px; }"
        "QLabel#hint { color: #8B8DA8; font-size: 11px; }"
        "QToolButton#menu { background: rgba(255, 255, 255, 25); color: #F2F2FA; border: none;"
        " border-radius: 12px; padding: 6px 10px; font-size: 16px; font-weight: 700; }"
        "QToolButton#menu::menu-indicator { image: none; }"
        "QToolButton#menu:hover { background: rgba(255, 255, 255, 50); }");
}

/// The dark gradient with the faint world map behind the main screen. It is repainted with every
/// frame of the switch, so it is cached.
class RootBackground : public QWidget
{
public:
    explicit RootBackground(QWidget *parent)
        : QWidget(parent)
        , map(QStringLiteral(":/assets/world-map.png"))
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter{this};
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        cache.draw(painter, size(), [this](QPainter &picture) { compose(picture); });
    }

private:
    void compose(QPainter &painter) const
    {
        ui::paintBackgroundGradient(painter, rect());
        if (!map.isNull()) {
            const double aspect = static_cast<double>(map.height()) / map.width();
            const int mapHeight = static_cast<int>(width() * aspect);
            painter.setOpacity(0.1);
            painter.drawPixmap(QRect{0, (height() - mapHeight) / 2, width(), mapHeight}, map);
            painter.setOpacity(1.0);
        }
    }

    QPixmap map;
    ui::CachedPicture cache{ui::CachedPicture::Background::Opaque};
};

template <typename Label> Label *makeLabel(Label *label, const char *name)
{
    label->setObjectName(QLatin1String{name});
    return label;
}

QHBoxLayout *centred(QWidget *widget)
{
    auto *const row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(widget);
    row->addStretch(1);
    return row;
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("IXOVPN"));
    setFixedSize(360, 560);
    setWindowIcon(QIcon{QStringLiteral(":/assets/tray_icon.ico")});

    ui::accessibility::install();
    new ui::PressFilter{this};
    buildMainScreen();
    buildPages();
    buildServices();
    setAccessibleNames();
    toggle->setAccessibleDescription(statusLabel->text());
    client->connectToService();
}

void MainWindow::buildMainScreen()
{
    auto *const background = new RootBackground{this};
    background->setStyleSheet(mainStyle() + ui::menuStyle());
    setCentralWidget(background);

    menuButton = new ui::ToolButton{background};
    menuButton->setObjectName(QStringLiteral("menu"));
    menuButton->setText(QStringLiteral("☰"));
    menuButton->setFixedWidth(40);
    connect(menuButton, &ui::ToolButton::clicked, this, &MainWindow::onMenuRequested);

    titleLabel = makeLabel(new QLabel{tr("IXOVPN"), background}, "title");
    auto *const counterweight = new QWidget{background};
    counterweight->setFixedWidth(menuButton->sizeHint().width());

    toggle = new ToggleSwitch{background};

    statusLabel = makeLabel(new ui::LiveLabel{tr("Disconnected"), background}, "status");
    statusLabel->setAlignment(Qt::AlignCenter);
    hintLabel = makeLabel(new QLabel{tr("Tap the switch to connect"), background}, "hint");
    hintLabel->setAlignment(Qt::AlignCenter);
    pillLabel = makeLabel(new ui::PillLabel{tr("Waiting for service…"), background}, "pill");
    pillLabel->setAlignment(Qt::AlignCenter);

    auto *const topRow = new QHBoxLayout;
    topRow->addWidget(menuButton);
    topRow->addStretch(1);
    topRow->addWidget(titleLabel);
    topRow->addStretch(1);
    topRow->addWidget(counterweight);

    auto *const root = new QVBoxLayout{background};
    root->setContentsMargins(28, 18, 28, 22);
    root->setSpacing(0);
    root->addLayout(topRow);
    root->addStretch(1);
    root->addLayout(centred(toggle));
    root->addSpacing(28);
    root->addWidget(statusLabel);
    root->addSpacing(8);
    root->addWidget(hintLabel);
    root->addStretch(2);
    root->addLayout(centred(pillLabel));
}

void MainWindow::buildPages()
{
    sideMenu = new ui::SideMenu{centralWidget()};
    connect(sideMenu, &ui::SideMenu::settingsRequested, this, &MainWindow::onSettingsRequested);
    connect(sideMenu, &ui::SideMenu::referralRequested, this, &MainWindow::onReferralRequested);
    connect(sideMenu, &ui::SideMenu::supportRequested, this, &MainWindow::onSupportRequested);
    connect(sideMenu, &ui::SideMenu::exitRequested, this, [this] {
        quitting = true;
        QCoreApplication::quit();
    });

    settingsPage = new ui::SettingsDialog{centralWidget()};
    connect(settingsPage, &ui::SettingsDialog::languageChanged, this,
            &MainWindow::onLanguageChanged);
    connect(settingsPage, &ui::SettingsDialog::closeRequested, settingsPage, &QWidget::hide);

    supportPage = new ui::SupportDialog{centralWidget()};
    connect(supportPage, &ui::SupportDialog::closeRequested, supportPage, &QWidget::hide);
}

void MainWindow::buildServices()
{
    client = new ipc::ServiceClient{this};

    tray = new ui::TrayController{this};
    connect(tray, &ui::TrayController::quitRequested, this, [this] { quitting = true; });

    connect(toggle, &ToggleSwitch::toggled, this, &MainWindow::onToggleClicked);
    connect(client, &ipc::ServiceClient::messageReceived, this, &MainWindow::onServiceMessage);
    connect(client, &ipc::ServiceClient::connectionChanged, this,
            &MainWindow::onServiceConnectionChanged);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!quitting && tray->hasIcon() && QSystemTrayIcon::isSystemTrayAvailable()) {
        ui::hideInPlace(this);
        event->ignore();
        return;
    }
    QMainWindow::closeEvent(event);
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslateUi();
    }
    QMainWindow::changeEvent(event);
}

void MainWindow::onToggleClicked()
{
    if (!serviceConnected) {
        pillLabel->announce(tr("Service is not running"));
        return;
    }
    switch (toggle->state()) {
    case ToggleSwitch::State::Off:
    case ToggleSwitch::State::Error:
        apply({ui::Display::State{ToggleSwitch::State::Connecting, QT_TR_NOOP("Connecting…")}, {}});
        client->send(ipc::protocol::connectCommand);
        break;
    case ToggleSwitch::State::On:
        apply({ui::Display::State{ToggleSwitch::State::Disconnecting, QT_TR_NOOP("Disconnecting…")},
               {}});
        client->send(ipc::protocol::disconnectCommand);
        break;
    case ToggleSwitch::State::Connecting:
    case ToggleSwitch::State::Disconnecting:
        break;
    }
}

void MainWindow::onServiceMessage(const QString &text)
{
    const Message message = ipc::protocol::parseMessage(text);
    if (message.kind == MessageKind::Status) {
        lastStatus = message.rest;
    }
    if (message.kind == MessageKind::Notice) {
        showPending();
        noticeQueue.append(message.rest);
        showNextNotice();
        return;
    }
    pending.add(ui::displayOf(message));
    if (!client->hasPendingLine()) {
        showPending();
    }
}

void MainWindow::showPending()
{
    apply(std::exchange(pending, {}));
}

void MainWindow::apply(const ui::Display &display)
{
    if (display.state) {
        const QString status = tr(display.state->status);
        toggle->setState(display.state->toggle);
        showStatus(status);
        tray->setStatusText(status);
    }
    if (display.pill) {
        const auto &[text, value] = *display.pill;
        if (text == nullptr) {
            pillLabel->announceChange(value);
        } else {
            pillLabel->announceChange(tr(text).replace(QLatin1String{"%1"}, value));
        }
    }
}

void MainWindow::onServiceConnectionChanged(bool connected)
{
    serviceConnected = connected;
    if (connected) {
        pillLabel->announceChange(tr("Service connected"));
        sendLanguage(currentLanguage());
        const QString code = storedReferralCode();
        if (isValidReferralCode(code)) {
            sendReferralCode(code);
        }
        client->send(ipc::protocol::statusCommand);
    } else {
        toggle->setState(ToggleSwitch::State::Off);
        showOffline();
        tray->setStatusText(tr("Service is not running"));
    }
}

void MainWindow::onMenuRequested()
{
    sideMenu->openMenu();
}

void MainWindow::onSettingsRequested()
{
    settingsPage->openPage(currentLanguage());
}

void MainWindow::onReferralRequested()
{
    ui::ReferralDialog dialog{this};
    connect(&dialog, &ui::ReferralDialog::referralSaved, this, [this](const QString &code) {
        if (serviceConnected) {
            sendReferralCode(code);
        }
    });
    dialog.exec();
}

void MainWindow::onSupportRequested()
{
    supportPage->openPage();
}

void MainWindow::onLanguageChanged(const QString &tag)
{
    ui::catalogue::storeTag(tag);
    sendLanguage(tag);

    // Its destructor also removes it from the application.
    delete translator;
    translator = nullptr;
    auto fresh = std::make_unique<QTranslator>(this);
    if (ui::catalogue::load(*fresh, tag) ||
        ui::catalogue::load(*fresh, ui::catalogue::fallbackTag())) {
        translator = fresh.release();
        QCoreApplication::installTranslator(translator);
    }
    retranslateUi();
}

void MainWindow::retranslateUi()
{
    setWindowTitle(tr("IXOVPN"));
    titleLabel->setText(tr("IXOVPN"));
    hintLabel->setText(tr("Tap the switch to connect"));
    sideMenu->retranslate();
    setAccessibleNames();
    if (!serviceConnected) {
        showOffline();
    } else if (lastStatus.isEmpty()) {
        pillLabel->announceChange(tr("Service connected"));
    } else {
        applyStatus(lastStatus);
    }
}

void MainWindow::showOffline()
{
    pillLabel->announceChange(tr("Service is not running"));
    showStatus(tr("Disconnected"));
}

void MainWindow::applyStatus(const QString &word)
{
    apply(ui::displayOf({MessageKind::Status, word}));
}

void MainWindow::setAccessibleNames()
{
    toggle->setAccessibleName(tr("IXOVPN"));
    // A screen reader cannot read out the button's symbol.
    menuButton->setAccessibleName(sideMenu->accessibleName());
}

void MainWindow::showStatus(const QString &text)
{
    statusLabel->announceChange(text);
    if (toggle->accessibleDescription() != text) {
        toggle->setAccessibleDescription(text);
    }
}

void MainWindow::showNextNotice()
{
    if (noticeShowing || quitting || noticeQueue.isEmpty()) {
        return;
    }
    noticeShowing = true;
    ui::NoticeDialog dialog{noticeQueue.takeFirst(), this};
    dialog.exec();
    noticeShowing = false;
    // A user closes the dialog: one that is still visible was ended by the end of the program.
    quitting = quitting || dialog.isVisible();
    showNextNotice();
}

void MainWindow::sendLanguage(const QString &tag)
{
    client->send(ipc::protocol::setLanguageCommand, {{ipc::protocol::languageKey, tag}});
}

void MainWindow::sendReferralCode(const QString &code)
{
    client->send(ipc::protocol::setReferralCommand, {{ipc::protocol::referralCodeKey, code}});
}

QString MainWindow::currentLanguage() const
{
    return ui::catalogue::currentTag();
}
