#include "ui/WindowManager.h"

#include "ui/X11Atom_linux.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

namespace ui {

namespace {

/// Whatever its attributes say, Qt asks the window manager to activate a modal window as soon as it
/// is mapped. Until then this one says that it takes no keyboard, so that the request comes to
/// nothing.
class QuietWindow : public QObject, public QAbstractNativeEventFilter
{
public:
    explicit QuietWindow(QWidget *widget_)
        : QObject(widget_)
        , widget(widget_)
        , id(static_cast<xcb_window_t>(widget->winId()))
        , activation(x11Atom("_NET_ACTIVE_WINDOW"))
    {
        QWindow *const window = widget->windowHandle();
        window->setFlag(Qt::WindowDoesNotAcceptFocus);
        // Some window managers would restore a minimised parent with it.
        window->setTransientParent(nullptr);
        window->installEventFilter(this);
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Expose && widget->windowHandle()->isExposed()) {
            watched->removeEventFilter(this);
            widget->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
            QApplication::alert(widget);
        }
        return false;
    }

    /// Qt sees its own request pass, and would take it for the keyboard.
    bool nativeEventFilter(const QByteArray & /*type*/, void *message, long * /*result*/) override
    {
        const auto *const event = static_cast<const xcb_client_message_event_t *>(message);
        return (event->response_type & ~0x80U) == XCB_CLIENT_MESSAGE && event->window == id &&
               event->type == activation;
    }

private:
    QWidget *widget;
    xcb_window_t id;
    xcb_atom_t activation;
};

} // namespace

void comeUpQuietly(QWidget *window)
{
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    if (QX11Info::isPlatformX11()) {
        new QuietWindow{window};
    }
}

void hideInPlace(QWidget *window)
{
    QWindow *const handle = window->windowHandle();
    const QPoint place = handle->framePosition();
    // A window manager chooses a place for a window that has no position of the program's own.
    handle->setFramePosition(place);
    window->hide();

    // Xfce's pulls what comes up wholly onto the screen, but lets it go back.
    auto *const once = new QObject{handle};
    QObject::connect(handle, &QWindow::visibleChanged, once, [once, handle, place] {
        once->deleteLater();
        QMetaObject::invokeMethod(
            handle, [handle, place] { handle->setFramePosition(place); }, Qt::QueuedConnection);
    });
}

} // namespace ui
