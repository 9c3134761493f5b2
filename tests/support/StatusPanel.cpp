#include "tests/support/StatusPanel.h"

#include "tests/support/Desktop.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QFile>

namespace support {

namespace {

QString connectionName()
{
    return QStringLiteral("status panel");
}

void configurePanel()
{
    const QDir folder{QDir::homePath() +
                      QStringLiteral("/.config/xfce4/xfconf/xfce-perchannel-xml")};
    QDir::root().mkpath(folder.path());
    QFile file{folder.filePath(QStringLiteral("xfce4-panel.xml"))};
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("The panel's settings cannot be written");
    }
    file.write(R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="25"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)");
}

QDBusConnection connectTo(Desktop &desktop)
{
    configurePanel();
    desktop.startSessionBus();
    return QDBusConnection::connectToBus(
        desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), connectionName());
}

} // namespace

StatusPanel::StatusPanel(Desktop &desktop)
    : connection(connectTo(desktop))
{
    desktop.start(QStringLiteral("xfce4-panel"), {QStringLiteral("--disable-wm-check")});
}

StatusPanel::~StatusPanel()
{
    QDBusConnection::disconnectFromBus(connectionName());
}

bool StatusPanel::isUp() const
{
    return waitFor(
        [this] { return watcher(QStringLiteral("IsStatusNotifierHostRegistered")).toBool(); });
}

QString StatusPanel::toolTip() const
{
    const QVariant value = itemProperty(QStringLiteral("ToolTip"));
    if (value.userType() != qMetaTypeId<QDBusArgument>()) {
        return {};
    }
    const auto argument = value.value<QDBusArgument>();
    QString icon;
    QString text;
    QString description;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray();
    while (!argument.atEnd()) {
        argument.beginStructure();
        argument.endStructure();
    }
    argument.endArray();
    argument >> text >> description;
    argument.endStructure();
    return text;
}

QList<StatusPanel::MenuEntry> StatusPanel::menu() const
{
    QList<MenuEntry> entries;
    const QDBusMessage reply = callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList{}});
    if (reply.arguments().size() < 2) {
        return entries;
    }
    const auto root = reply.arguments().at(1).value<QDBusArgument>();
    int id = 0;
    QVariantMap properties;
    root.beginStructure();
    root >> id >> properties;
    root.beginArray();
    while (!root.atEnd()) {
        QDBusVariant child;
        root >> child;
        const auto entry = child.variant().value<QDBusArgument>();
        MenuEntry found;
        QVariantMap details;
        QVariantList children;
        entry.beginStructure();
        entry >> found.id >> details >> children;
        entry.endStructure();
        found.label = details.value(QStringLiteral("label")).toString();
        found.type = details.value(QStringLiteral("type")).toString();
        entries.append(found);
    }
    root.endArray();
    root.endStructure();
    return entries;
}

void StatusPanel::choose(const QString &label) const
{
    for (const MenuEntry &entry : menu()) {
        if (entry.label == label) {
            callMenu(QStringLiteral("Event"), {entry.id, QStringLiteral("clicked"),
                                               QVariant::fromValue(QDBusVariant{QString{}}), 0U});
        }
    }
}

QVariant StatusPanel::property(const QString &service, const QString &path,
                               const QString &interface, const QString &property) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << interface << property;
    const QDBusReply<QDBusVariant> reply = connection.call(call);
    return reply.isValid() ? reply.value().variant() : QVariant{};
}

QVariant StatusPanel::watcher(const QString &name) const
{
    return property(QStringLiteral("org.kde.StatusNotifierWatcher"),
                    QStringLiteral("/StatusNotifierWatcher"),
                    QStringLiteral("org.kde.StatusNotifierWatcher"), name);
}

QString StatusPanel::item() const
{
    const QStringList items =
        watcher(QStringLiteral("RegisteredStatusNotifierItems")).toStringList();
    return items.size() == 1 ? items.first().section(QLatin1Char{'/'}, 0, 0) : QString{};
}

QVariant StatusPanel::itemProperty(const QString &name) const
{
    return property(item(), QStringLiteral("/StatusNotifierItem"),
                    QStringLiteral("org.kde.StatusNotifierItem"), name);
}

QDBusMessage StatusPanel::callMenu(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        item(), itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path(),
        QStringLiteral("com.canonical.dbusmenu"), method);
    call.setArguments(arguments);
    return connection.call(call);
}

} // namespace support
