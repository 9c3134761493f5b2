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
/// is mapped. Until then the window says that it takes no keyboard, so that the request comes to
/// nothing.
class QuietStart : public QObject, public QAbstractNativeEventFilter
{
public:
    explicit QuietStart(QWidget *widget_)
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
            isOver = true;
            if (programHasFocus) {
                widget->activateWindow();
            } else {
                QApplication::alert(widget);
            }
        }
        return false;
    }

    bool nativeEventFilter(const QByteArray & /*type*/, void *message, long * /*result*/) override
    {
        const auto *const event = static_cast<const xcb_generic_event_t *>(message);
        const unsigned type = event->response_type & ~0x80U;
        switch (type) {
        case XCB_CLIENT_MESSAGE: {
            // Qt receives a copy of its own request, and would believe that the window is active.
            const auto *const request = static_cast<const xcb_client_message_event_t *>(message);
            return request->window == id && request->type == activation;
        }
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT: {
            const auto *const focus = static_cast<const xcb_focus_in_event_t *>(message);
            // Otherwise another program has the focus, and only the pointer is here.
            if (focus->detail != XCB_NOTIFY_DETAIL_POINTER) {
                programHasFocus = type == XCB_FOCUS_IN;
            }
            // Qt would pass the focus on to the modal window, which cannot take it yet.
            return programHasFocus && !isOver;
        }
        default:
            return false;
        }
    }

private:
    QWidget *widget;
    xcb_window_t id;
    xcb_atom_t activation;
    // The window manager may give it to the program while the window comes up.
    bool programHasFocus = false;
    bool isOver = false;
};

} // namespace

void comeUpQuietly(QWidget *window)
{
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    if (QX11Info::isPlatformX11()) {
        new QuietStart{window};
    }
}

} // namespace ui
