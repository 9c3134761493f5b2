#include "tests/support/ClientProcess_win.h"

#include "tests/support/WindowBench.h"

#include <QCoreApplication>
#include <QTest>

#include <array>
#include <utility>

namespace support {

namespace {

BOOL CALLBACK collect(HWND window, LPARAM context)
{
    auto &[process, found] = *reinterpret_cast<std::pair<DWORD, QList<HWND>> *>(context);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == process) {
        found.append(window);
    }
    return TRUE;
}

QString titleOf(HWND window)
{
    std::array<wchar_t, 64> title{};
    const int length = GetWindowTextW(window, title.data(), static_cast<int>(title.size()));
    return QString::fromWCharArray(title.data(), length);
}

void send(INPUT input)
{
    if (SendInput(1, &input, sizeof input) != 1) {
        qFatal("No input can be made");
    }
}

/// In the units of input: 65536 for the whole screen.
LONG inputUnits(LONG pixels, int extent)
{
    constexpr LONG whole = 65536;
    return (pixels * whole + extent - 1) / extent;
}

} // namespace

QString clientPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/ixovpn-client.exe");
}

QList<HWND> windowsOf(DWORD process)
{
    std::pair<DWORD, QList<HWND>> context{process, {}};
    EnumWindows(collect, reinterpret_cast<LPARAM>(&context));
    return context.second;
}

ClientProcess::ClientProcess(const QStringList &arguments, const QString &folder,
                             const QString &program)
{
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForStarted(-1)) {
        qFatal("The client does not start: %s", qPrintable(process.errorString()));
    }
}

ClientProcess::~ClientProcess()
{
    kill();
}

int ClientProcess::exitCode()
{
    if (!waitFor([this] { return !isRunning(); })) {
        qFatal("The client does not end");
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void ClientProcess::kill()
{
    if (isRunning()) {
        process.kill();
        process.waitForFinished(-1);
    }
}

HWND ClientProcess::window() const
{
    const QList<HWND> windows = windowsOf(id());
    for (HWND window : windows) {
        if (titleOf(window) == QLatin1String{"IXOVPN"}) {
            return window;
        }
    }
    return nullptr;
}

bool ClientProcess::comesUp() const
{
    DWORD_PTR ignored = 0;
    return waitFor([&] {
        return isShown() &&
               SendMessageTimeoutW(window(), WM_NULL, 0, 0, SMTO_NORMAL, 1000, &ignored) != 0;
    });
}

HWND ClientProcess::popup() const
{
    const QList<HWND> windows = windowsOf(id());
    for (HWND other : windows) {
        if (IsWindowVisible(other) != FALSE && other != window()) {
            return other;
        }
    }
    return nullptr;
}

QImage ClientProcess::picture() const
{
    RECT inner = {};
    GetClientRect(window(), &inner);
    POINT corner = {};
    ClientToScreen(window(), &corner);
    QImage image{inner.right, inner.bottom, QImage::Format_RGB32};

    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = image.width();
    // Upside down, as images are here.
    info.bmiHeader.biHeight = -image.height();
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(nullptr);
    const HDC copy = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, image.width(), image.height());
    const HGDIOBJ former = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, image.width(), image.height(), screen, corner.x, corner.y, SRCCOPY);
    SelectObject(copy, former);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(image.height()), image.bits(), &info,
              DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(copy);
    ReleaseDC(nullptr, screen);
    return image;
}

bool ClientProcess::comesToRest() const
{
    // Longer than a machine under load keeps an animation waiting for its next picture.
    constexpr int enough = 6;
    constexpr int pauseMs = 50;
    QImage last;
    int same = 0;
    return waitFor([&] {
        const QImage now = picture();
        same = now == last ? same + 1 : 0;
        last = now;
        QTest::qWait(pauseMs);
        return same >= enough && now != beforeClick && GetForegroundWindow() == window();
    });
}

bool ClientProcess::agreesToEnd(LPARAM reason) const
{
    const QList<HWND> windows = windowsOf(id());
    if (windows.isEmpty()) {
        qFatal("The client has no window to be asked");
    }
    bool agrees = true;
    for (HWND window : windows) {
        agrees = SendMessageW(window, WM_QUERYENDSESSION, 0, reason) != FALSE && agrees;
    }
    return agrees;
}

void ClientProcess::tellEnd(WPARAM end, LPARAM reason) const
{
    const QList<HWND> windows = windowsOf(id());
    for (HWND window : windows) {
        SendMessageW(window, WM_ENDSESSION, end, reason);
    }
}

bool ClientProcess::changesOn(const QPoint &position)
{
    if (!comesToRest()) {
        return false;
    }
    beforeClick = picture();
    click(position);
    return comesToRest();
}

void ClientProcess::click(const QPoint &position) const
{
    POINT point{position.x(), position.y()};
    ClientToScreen(window(), &point);
    // Each event says where it is: a pointer that was moved there before can have been taken back
    // by the display server, and the click would hit what is under its former place.
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = inputUnits(point.x, GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = inputUnits(point.y, GetSystemMetrics(SM_CYSCREEN));
    for (const auto button : {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
        input.mi.dwFlags = static_cast<DWORD>(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button);
        send(input);
    }
}

void pressKey(WORD key)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    send(input);
    input.ki.dwFlags = KEYEVENTF_KEYUP;
    send(input);
}

} // namespace support
