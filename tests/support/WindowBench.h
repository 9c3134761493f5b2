#pragma once

#include "tests/support/ScriptedService.h"
#include "ui/MainWindow.h"
#include "ui/ToggleSwitch.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTest>

#include <memory>

class QLabel;
class QToolButton;

namespace ipc {
class ServiceClient;
}

namespace ui {
class PillLabel;
class SettingsDialog;
class SideMenu;
} // namespace ui

namespace support {

/// Waits for a condition, with patience for the slowest machine.
template <typename Condition> [[nodiscard]] bool waitFor(Condition condition)
{
    constexpr int patienceMs = 60'000;
    return QTest::qWaitFor(condition, patienceMs);
}

/// The state, the status and the pill of the main screen, in a form that QCOMPARE can print.
QStringList display(ui::ToggleSwitch::State state, const QString &status, const QString &pill);

/// The real main window, shown, with a service under the test's control at the other end of its
/// connection.
class WindowBench
{
public:
    enum class Service { Listens, IsAway };

    /// Gives the application its names, forgets every setting, and makes American English the
    /// default locale: how each test begins.
    static void resetWorld();

    explicit WindowBench(Service atFirst = Service::Listens);
    ~WindowBench();

    QLabel *title() const { return label("title"); }
    QLabel *status() const { return label("status"); }
    QLabel *hint() const { return label("hint"); }
    ui::PillLabel *pill() const;
    QToolButton *menuButton() const;
    ui::ToggleSwitch *toggle() const;
    ipc::ServiceClient *client() const;
    ui::SideMenu *sideMenu() const;
    ui::SettingsDialog *settingsPage() const;

    QStringList shown() const;

    /// Waits until the window has connected, again if need be, and its greeting has arrived;
    /// forgets the greeting.
    [[nodiscard]] bool greeted();
    /// Reads everything that the window has sent, ends the service, and waits until the window has
    /// noticed. Forgets what was sent.
    [[nodiscard]] bool loseLink();

    /// Sends lines at once and waits until the window has dealt with all of them.
    [[nodiscard]] bool say(const QList<QByteArray> &lines);
    [[nodiscard]] bool say(const QByteArray &line) { return say(QList<QByteArray>{line}); }

    /// Clicks the middle of the switch with the left button.
    void click() const;

    /// Emits the signal of the settings page.
    void chooseLanguage(const QString &tag) const;

    /// The lines that the window has sent up to now and since the last call, without line feeds.
    QList<QByteArray> sent();

    ScriptedService service;
    std::unique_ptr<MainWindow> window;

private:
    QLabel *label(const char *name) const;
};

} // namespace support
