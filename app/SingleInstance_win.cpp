#include "app/SingleInstance.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QWidget>

#include <windows.h>

namespace app {

namespace {

UINT showMessageId()
{
    static const UINT id = RegisterWindowMessageW(L"IxoVpnShow_v1");
    return id;
}

class ShowEventFilter : public QAbstractNativeEventFilter
{
public:
    explicit ShowEventFilter(QWidget *shown)
        : window(shown)
    {}

    bool nativeEventFilter(const QByteArray & /*eventType*/, void *message,
                           long * /*result*/) override
    {
        if (static_cast<const MSG *>(message)->message == showMessageId()) {
            window->show();
            window->raise();
            window->activateWindow();
        }
        return false;
    }

private:
    QWidget *window;
};

void askForWindow()
{
    const HWND window = FindWindowW(nullptr, L"IXOVPN");
    if (window == nullptr) {
        return;
    }
    // The process that the user has just started may pass the foreground on.
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    AllowSetForegroundWindow(process);
    PostMessageA(window, showMessageId(), 0, 0);
}

} // namespace

/// The mutex is never closed: the system does that when the process ends, which is what lets a
/// later start succeed.
class SingleInstance::Private
{
public:
    HANDLE mutex = nullptr;
};

SingleInstance::SingleInstance()
    : d(std::make_unique<Private>())
{}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim()
{
    d->mutex = CreateMutexW(nullptr, FALSE, L"Global\\IxoVpnClient");
    if (d->mutex == nullptr || GetLastError() == ERROR_ALREADY_EXISTS) {
        askForWindow();
        return false;
    }
    return true;
}

void SingleInstance::queueRequests() {}

class SingleInstance::ShowRequests::Private
{
public:
    explicit Private(QWidget *window)
        : filter(window)
    {
        QCoreApplication::instance()->installNativeEventFilter(&filter);
    }

    ShowEventFilter filter;
};

SingleInstance::ShowRequests::ShowRequests(SingleInstance & /*instance*/, QWidget *window)
    : d(std::make_unique<Private>(window))
{}

SingleInstance::ShowRequests::~ShowRequests() = default;

} // namespace app
