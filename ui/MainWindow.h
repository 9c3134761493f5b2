#pragma once

#include "ui/Display.h"

#include <QMainWindow>
#include <QString>
#include <QStringList>

class QLabel;
class QTranslator;

namespace ipc {
class ServiceClient;
}

namespace ui {
class PillLabel;
class SettingsDialog;
class SideMenu;
class LiveLabel;
class SupportDialog;
class ToggleSwitch;
class ToolButton;
class TrayController;
} // namespace ui

/// The client's only window. It connects the service client with the switch, the labels, the tray,
/// the notices and the pages.
///
/// It keeps no model of the tunnel: it shows the last message, connection change or click. Only a
/// change of language shows the last status word again. The constructor starts the first attempt to
/// connect.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

protected:
    /// Hides to the tray if the desktop has one, unless the program is quitting. Otherwise the
    /// window closes, and Qt ends the program, because it was the last.
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void onToggleClicked();
    void onServiceMessage(const QString &text);
    void onServiceConnectionChanged(bool connected);
    void onMenuRequested();
    void onSettingsRequested();
    void onReferralRequested();
    void onSupportRequested();

private:
    void buildMainScreen();
    void buildPages();
    void buildServices();

    void onLanguageChanged(const QString &tag);
    void retranslateUi();

    void applyStatus(const QString &word);
    void apply(const ui::Display &display);
    void showPending();
    void setAccessibleNames();

    void showStatus(const QString &text);
    void showOffline();
    void showNextNotice();
    void sendLanguage(const QString &tag);
    void sendReferralCode(const QString &code);
    QString currentLanguage() const;

    ui::SettingsDialog *settingsPage = nullptr;
    ui::SupportDialog *supportPage = nullptr;
    ui::ToggleSwitch *toggle = nullptr;
    QLabel *titleLabel = nullptr;
    ui::LiveLabel *statusLabel = nullptr;
    QLabel *hintLabel = nullptr;
    ui::PillLabel *pillLabel = nullptr;
    ui::ToolButton *menuButton = nullptr;
    ui::SideMenu *sideMenu = nullptr;
    ipc::ServiceClient *client = nullptr;
    ui::TrayController *tray = nullptr;
    bool serviceConnected = false;
    bool quitting = false;
    bool noticeShowing = false;
    /// Not shown yet, because the next message follows at once.
    ui::Display pending;
    /// The last status word, known or not, which a change of language shows again.
    QString lastStatus;
    QStringList noticeQueue;
    QTranslator *translator = nullptr;
};
