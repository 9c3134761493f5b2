#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace support {

/// A StatusNotifierWatcher, with which programs register their icons (StatusNotifierItem). It shows
/// none of them, but can come and go at will.
class TrayHost : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isRegistered)
    Q_PROPERTY(int ProtocolVersion READ version)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    /// On the session bus that programs with this environment use. Ends the test run if the bus
    /// name is taken.
    explicit TrayHost(const QProcessEnvironment &environment);
    /// Leaves the bus as a panel that crashes does.
    ~TrayHost() override;

    /// The bus names of the icons that have been registered.
    QStringList items() const { return registered; }

    /// Does what a click of the left button on the icon does.
    void click(const QString &item) const;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service);

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierItemUnregistered(const QString &service);
    void StatusNotifierHostRegistered();

private:
    bool isRegistered() const { return true; }
    int version() const { return 0; }

    QDBusConnection connection;
    QStringList registered;
};

} // namespace support
