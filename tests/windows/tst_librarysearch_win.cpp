#include "tests/support/ClientProcess_win.h"
#include "tests/support/WindowBench.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <vector>

#include <psapi.h>

using support::ClientProcess;

namespace {

QString plain(const QString &path)
{
    return QDir::cleanPath(QDir::fromNativeSeparators(path)).toLower();
}

/// The files of all libraries and plugins that a process has loaded.
QStringList loadedBy(DWORD id)
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id);
    std::vector<HMODULE> modules(1024);
    DWORD size = 0;
    EnumProcessModules(process, modules.data(),
                       static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &size);
    modules.resize(size / sizeof(HMODULE));
    QStringList found;
    for (HMODULE module : modules) {
        std::array<wchar_t, 1024> path{};
        GetModuleFileNameExW(process, module, path.data(), static_cast<DWORD>(path.size()));
        found.append(plain(QString::fromWCharArray(path.data())));
    }
    CloseHandle(process);
    return found;
}

QString systemFolder()
{
    std::array<wchar_t, MAX_PATH> path{};
    GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
    return plain(QString::fromWCharArray(path.data()));
}

QString windowsFolder()
{
    return plain(qEnvironmentVariable("SystemRoot"));
}

} // namespace

/// Where the code comes from that the program runs, when there is more of the same name about.
class tst_LibrarySearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void planted_data();
    void planted();

private:
    QTemporaryDir elsewhere;
};

void tst_LibrarySearch::initTestCase()
{
    // Everything that the program finds at home lies here too, and would load.
    const QDir home{QCoreApplication::applicationDirPath()};
    QDirIterator libraries{
        home.path(), {QStringLiteral("*.dll")}, QDir::Files, QDirIterator::Subdirectories};
    int copied = 0;
    while (libraries.hasNext()) {
        const QString path = elsewhere.filePath(home.relativeFilePath(libraries.next()));
        QVERIFY(QDir{}.mkpath(QFileInfo{path}.path()));
        QVERIFY(QFile::copy(libraries.filePath(), path));
        ++copied;
    }
    QVERIFY(copied > 5);
}

void tst_LibrarySearch::planted_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("folder");
    QTest::newRow("nothing") << QByteArray{} << QString{};
    QTest::newRow("plugins") << QByteArrayLiteral("QT_PLUGIN_PATH") << QString{};
    QTest::newRow("platform") << QByteArrayLiteral("QT_QPA_PLATFORM_PLUGIN_PATH")
                              << QStringLiteral("platforms");
    QTest::newRow("search path") << QByteArrayLiteral("PATH") << QString{};
}

void tst_LibrarySearch::planted()
{
    QFETCH(const QByteArray, variable);
    QFETCH(const QString, folder);
    const QByteArray planted = QDir::toNativeSeparators(elsewhere.filePath(folder)).toLocal8Bit();
    const char *name = variable.constData();
    const QByteArray before = qgetenv(name);
    const auto restore = qScopeGuard([&] { qputenv(name, before); });
    if (!variable.isEmpty()) {
        qputenv(name, before.isEmpty() ? planted : planted + ';' + before);
    }

    // It is the working folder too.
    ClientProcess client{{}, elsewhere.path()};
    QVERIFY(client.comesUp());

    const QString home = plain(QCoreApplication::applicationDirPath());
    const QStringList loaded = loadedBy(client.id());
    QVERIFY(loaded.contains(home + QStringLiteral("/platforms/qwindows.dll")));
    for (const QString &path : loaded) {
        const QString place = QFileInfo{path}.path();
        const bool ours = place == home || place.startsWith(home + QLatin1Char('/'));
        // The window controls are a part of the system that lies beside its folder.
        const bool ofSystem = place == systemFolder() ||
                              place.startsWith(windowsFolder() + QStringLiteral("/winsxs/"));
        QVERIFY2(ours || ofSystem, qPrintable(path));
    }
}

QTEST_MAIN(tst_LibrarySearch)

#include "tst_librarysearch_win.moc"
