#pragma once

#include <QDBusConnection>
#include <QList>
#include <QString>
#include <QVariant>

class QDBusMessage;

namespace support {

class Desktop;

/// A panel with a tray for StatusNotifierItem, and the properties of the one icon in it. Needs from
/// Debian: xfce4-panel.
class StatusPanel
{
public:
    struct MenuEntry
    {
        int id = 0;
        QString label;
        QString type;
    };

    /// Gives the desktop a session bus of its own and starts the panel, at the top left with
    /// nothing in it but the tray. The desktop ends it.
    explicit StatusPanel(Desktop &desktop);
    ~StatusPanel();
    StatusPanel(const StatusPanel &) = delete;
    StatusPanel &operator=(const StatusPanel &) = delete;

    /// Waits until the tray accepts icons; false if it never does.
    bool isUp() const;

    /// These functions return nothing unless there is exactly one icon.
    QString toolTip() const;
    QList<MenuEntry> menu() const;
    /// Does what a click on the entry with this text does.
    void choose(const QString &label) const;

private:
    QVariant property(const QString &service, const QString &path, const QString &interface,
                      const QString &property) const;
    QVariant watcher(const QString &name) const;
    QString item() const;
    QVariant itemProperty(const QString &name) const;
    QDBusMessage callMenu(const QString &method, const QVariantList &arguments) const;

    QDBusConnection connection;
};

} // namespace support
