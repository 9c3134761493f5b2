#pragma once

#include <QObject>
#include <QString>

class QMenu;
class QSystemTrayIcon;
class QWidget;

namespace ui {

/// The client's icon in the system tray: a tooltip with the connection's status, a menu with Show
/// and Quit, and a click that brings the window back.
///
/// Where the desktop has no tray at construction there is no icon, and every call does nothing.
/// The menu's texts keep the language that was in force at construction.
class TrayController : public QObject
{
    Q_OBJECT

public:
    /// `window` is what Show brings back, and becomes the parent.
    explicit TrayController(QWidget *window);

    /// True if there is an icon through which the user can bring the window back. A tray that came
    /// up after construction has none.
    bool hasIcon() const { return tray != nullptr; }

    /// `text` is shown as it stands, after the product's name.
    void setStatusText(const QString &text);

Q_SIGNALS:
    /// The user chose Quit; the application quits right after.
    void quitRequested();

private:
    void showWindow();

    QWidget *window;
    QSystemTrayIcon *tray = nullptr;
    QMenu *menu = nullptr;
};

} // namespace ui
