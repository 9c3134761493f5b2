#include "tests/support/WindowBench.h"

#include "app/Identity.h"
#include "ipc/ServiceClient.h"
#include "ui/PillLabel.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"

#include <QLabel>
#include <QLocale>
#include <QMetaEnum>
#include <QSettings>
#include <QSignalSpy>
#include <QToolButton>

namespace support {

namespace {

QByteArray lastOfGreeting()
{
    return QByteArrayLiteral(R"({"cmd":"status"})");
}

} // namespace

QStringList display(ui::ToggleSwitch::State state, const QString &status, const QString &pill)
{
    const auto states = QMetaEnum::fromType<ui::ToggleSwitch::State>();
    return {QString::fromLatin1(states.valueToKey(static_cast<int>(state))), status, pill};
}

void WindowBench::resetWorld()
{
    app::setIdentity();
    QSettings{}.clear();
    QLocale::setDefault(QLocale{QLocale::English, QLocale::UnitedStates});
}

WindowBench::WindowBench(Service atFirst)
{
    if (atFirst == Service::Listens) {
        service.listen();
    }
    window = std::make_unique<MainWindow>();
    window->show();
}

WindowBench::~WindowBench() = default;

ui::PillLabel *WindowBench::pill() const
{
    return window->findChild<ui::PillLabel *>(QStringLiteral("pill"));
}

QToolButton *WindowBench::menuButton() const
{
    return window->findChild<QToolButton *>(QStringLiteral("menu"));
}

ui::ToggleSwitch *WindowBench::toggle() const
{
    return window->findChild<ui::ToggleSwitch *>();
}

ipc::ServiceClient *WindowBench::client() const
{
    return window->findChild<ipc::ServiceClient *>();
}

ui::SideMenu *WindowBench::sideMenu() const
{
    return window->findChild<ui::SideMenu *>();
}

ui::SettingsDialog *WindowBench::settingsPage() const
{
    return window->findChild<ui::SettingsDialog *>();
}

QStringList WindowBench::shown() const
{
    return display(toggle()->state(), status()->text(), pill()->text());
}

bool WindowBench::greeted()
{
    const bool arrived = waitFor([this] { return service.lines().contains(lastOfGreeting()); });
    service.clear();
    return arrived;
}

bool WindowBench::loseLink()
{
    // With bytes left to read, the connection would end in a reset. Wine does not report a reset
    // that arrives while Qt writes.
    sent();
    const QSignalSpy changes{client(), &ipc::ServiceClient::connectionChanged};
    service.stop();
    return waitFor([&changes] { return !changes.isEmpty(); });
}

bool WindowBench::say(const QList<QByteArray> &lines)
{
    const QSignalSpy messages{client(), &ipc::ServiceClient::messageReceived};
    service.sendLine(lines.join('\n'));
    return waitFor([&] { return messages.size() == lines.size(); });
}

void WindowBench::click() const
{
    QTest::mouseClick(toggle(), Qt::LeftButton);
}

void WindowBench::chooseLanguage(const QString &tag) const
{
    Q_EMIT settingsPage()->languageChanged(tag);
}

QList<QByteArray> WindowBench::sent()
{
    client()->send(QStringLiteral("fence"));
    const QByteArray fence = QByteArrayLiteral(R"({"cmd":"fence"})");
    if (!waitFor([&] { return service.lines().contains(fence); })) {
        qFatal("Nothing comes through the connection");
    }
    QList<QByteArray> before = service.lines();
    before.removeLast();
    service.clear();
    return before;
}

QLabel *WindowBench::label(const char *name) const
{
    return window->centralWidget()->findChild<QLabel *>(QLatin1String{name},
                                                        Qt::FindDirectChildrenOnly);
}

} // namespace support
