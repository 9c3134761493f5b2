#include "tests/support/TrayHost.h"

#include <QDBusMessage>

namespace support {

namespace {

QString connectionName()
{
    return QStringLiteral("tray host");
}

} // namespace

TrayHost::TrayHost(const QProcessEnvironment &environment)
    : connection(QDBusConnection::connectToBus(
          environment.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), connectionName()))
{
    const bool there = connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                                 QDBusConnection::ExportAllContents) &&
                       connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    if (!there) {
        qFatal("No place for a tray host on %s", qPrintable(connection.name()));
    }
    Q_EMIT StatusNotifierHostRegistered();
}

TrayHost::~TrayHost()
{
    QDBusConnection::disconnectFromBus(connectionName());
}

void TrayHost::click(const QString &item) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(item, QStringLiteral("/StatusNotifierItem"),
                                                       QStringLiteral("org.kde.StatusNotifierItem"),
                                                       QStringLiteral("Activate"));
    call << 0 << 0;
    connection.call(call, QDBus::BlockWithGui);
}

void TrayHost::RegisterStatusNotifierItem(const QString &service)
{
    registered += service;
    Q_EMIT StatusNotifierItemRegistered(service);
}

} // namespace support
