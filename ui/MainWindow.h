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

/// The client's one window. It wires the service link to what the user sees: the switch, the
/// labels, the tray, the notices and the pages.
///
/// It keeps no model of the tunnel: what it shows is always the last thing that the service or
/// the link said, or what the user has just asked for; only a change of language shows the last
/// status word again, whatever came after it. The first attempt to reach the service
/// begins with construction, shown or not.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

protected:
    /// Hides to the tray where there is one, unless the program is about to end.
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
    /// For those who cannot see the screen.
    void nameControls();

    void showStatus(const QString &text);
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
    /// What the service has said and the screen does not show yet, because more follows at once.
    ui::Display pending;
    /// The last status word, known or not, for the texts after a change of language.
    QString lastStatus;
    QStringList noticeQueue;
    QTranslator *translator = nullptr;
};
