#pragma once

#include <QObject>
#include <QString>

class QSystemTrayIcon;
class QWidget;

namespace ui {

/// The client's icon in the system tray: a tool tip with the connection's status, a menu with Show
/// and Quit, and a click that shows the window.
///
/// If the desktop has no tray at construction, no call has an effect. The menu keeps the language
/// of its construction.
class TrayController : public QObject
{
    Q_OBJECT

public:
    /// `window` becomes the parent.
    explicit TrayController(QWidget *window);

    /// False if the tray came up after construction.
    bool hasIcon() const { return tray != nullptr; }

    /// Shows `text` after the product's name.
    void setStatusText(const QString &text);

Q_SIGNALS:
    /// The user chose Quit; the application quits right after.
    void quitRequested();

private:
    void showWindow();

    QWidget *window;
    QSystemTrayIcon *tray = nullptr;
};

} // namespace ui
