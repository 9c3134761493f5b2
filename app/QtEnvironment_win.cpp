#include "app/QtEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QString>
#include <QStringList>

#include <vector>

#include <windows.h>

namespace app {

namespace {

constexpr DWORD ownFolderAndSystem = 0x00000200 | 0x00000800;

void keepSystemSearchAtHome()
{
    // Looked up, for a Windows 7 without updates lacks it.
    using SetDirectories = BOOL(WINAPI *)(DWORD);
    const FARPROC found =
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetDefaultDllDirectories");
    if (found != nullptr) {
        reinterpret_cast<SetDirectories>(reinterpret_cast<void (*)()>(found))(ownFolderAndSystem);
    }
}

QString ownFolder()
{
    // The longest path that the system knows.
    std::vector<wchar_t> path(32768);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    const QString file = QString::fromWCharArray(path.data(), static_cast<int>(length));
    return QDir::fromNativeSeparators(file).section(QLatin1Char('/'), 0, -2);
}

} // namespace

QtEnvironment::QtEnvironment(Run /*run*/)
{
    keepSystemSearchAtHome();
    qunsetenv("QT_QPA_PLATFORM_PLUGIN_PATH");
    QCoreApplication::setLibraryPaths({ownFolder()});

    setDefault("QT_ENABLE_HIGHDPI_SCALING", QByteArrayLiteral("1"));
    setDefault("QT_SCALE_FACTOR_ROUNDING_POLICY", QByteArrayLiteral("PassThrough"));
}

} // namespace app
