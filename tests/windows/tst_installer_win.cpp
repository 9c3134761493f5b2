#include "tests/support/ClientProcess_win.h"
#include "tests/support/Contents.h"
#include "tests/support/WindowBench.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSet>
#include <QSettings>
#include <QTest>

#include <memory>
#include <vector>

using support::ClientProcess;
using support::contents;
using support::waitFor;

namespace {

constexpr int success = 0;
constexpr int failure = 1603;
constexpr int restartNeeded = 3010;

const QString shipped = QStringLiteral(IXOVPN_INSTALLER);
const QString older = QStringLiteral(IXOVPN_PACKAGES "/older.msi");
const QString rebuilt = QStringLiteral(IXOVPN_PACKAGES "/rebuilt.msi");
const QString olderVersion = QStringLiteral("0.9.0");
const QString shippedVersion = QStringLiteral(IXOVPN_VERSION);

const QString folder = QStringLiteral("C:/Program Files/IXOVPN");
const QString program = folder + QStringLiteral("/ixovpn-client.exe");
const QString settingsKey = QStringLiteral("HKEY_CURRENT_USER\\Software\\IXOVPN\\IxoClient");

/// Without a question, as administrators do it on many machines; returns how it ended.
int install(const QString &how, const QString &what, const QStringList &properties = {})
{
    const QStringList arguments{how, QDir::toNativeSeparators(what), QStringLiteral("/qn"),
                                QStringLiteral("/norestart")};
    QProcess installer;
    installer.start(QStringLiteral("msiexec.exe"), arguments + properties);
    installer.waitForFinished(-1);
    return installer.exitStatus() == QProcess::NormalExit ? installer.exitCode() : -1;
}

struct Product
{
    QString code;
    QString version;
};

/// What the system's list of programs says about ours.
QList<Product> listed()
{
    QSettings list{QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\"
                                  "CurrentVersion\\Uninstall"),
                   QSettings::Registry64Format};
    QList<Product> found;
    const QStringList codes = list.childGroups();
    for (const QString &code : codes) {
        list.beginGroup(code);
        if (list.value(QStringLiteral("DisplayName")) == QStringLiteral("IXOVPN") &&
            list.value(QStringLiteral("Publisher")) == QStringLiteral("IXOVPN")) {
            found.append({code, list.value(QStringLiteral("DisplayVersion")).toString()});
        }
        list.endGroup();
    }
    return found;
}

QStringList listedVersions()
{
    QStringList versions;
    const QList<Product> products = listed();
    for (const Product &product : products) {
        versions.append(product.version);
    }
    return versions;
}

QMap<QString, QByteArray> allContents(const QString &place)
{
    QMap<QString, QByteArray> found;
    QDirIterator files{place, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories};
    while (files.hasNext()) {
        const QString path = files.next();
        found.insert(QDir{place}.relativeFilePath(path), contents(path));
    }
    return found;
}

/// The entries that users start programs by.
QStringList startMenuEntries()
{
    QStringList found;
    for (const char *variable : {"ProgramData", "AppData"}) {
        QDirIterator files{qEnvironmentVariable(variable) +
                               QStringLiteral("/Microsoft/Windows/Start Menu"),
                           {QStringLiteral("*.lnk")},
                           QDir::Files,
                           QDirIterator::Subdirectories};
        while (files.hasNext()) {
            found.append(files.next());
        }
    }
    return found;
}

void addKeys(HKEY parent, const QString &path, QSet<QString> *found)
{
    std::vector<wchar_t> name(16384);
    for (DWORD i = 0;; ++i) {
        auto length = static_cast<DWORD>(name.size());
        if (RegEnumValueW(parent, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        found->insert(path + QStringLiteral(" : ") +
                      QString::fromWCharArray(name.data(), static_cast<int>(length)));
    }
    for (DWORD i = 0;; ++i) {
        auto length = static_cast<DWORD>(name.size());
        if (RegEnumKeyExW(parent, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        const QString child = path + QLatin1Char('\\') +
                              QString::fromWCharArray(name.data(), static_cast<int>(length));
        found->insert(child);
        HKEY key = nullptr;
        // A link to another place of the registry would lead in circles.
        if (RegOpenKeyExW(parent, name.data(), REG_OPTION_OPEN_LINK, KEY_READ, &key) ==
            ERROR_SUCCESS) {
            addKeys(key, child, found);
            RegCloseKey(key);
        }
    }
}

/// Every file and folder on the disk, and every key and value of the registry.
QSet<QString> everything()
{
    QSet<QString> found;
    QDirIterator files{QStringLiteral("C:/"),
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories};
    while (files.hasNext()) {
        found.insert(files.next());
    }
    addKeys(HKEY_LOCAL_MACHINE, QStringLiteral("HKLM"), &found);
    addKeys(HKEY_CURRENT_USER, QStringLiteral("HKCU"), &found);
    return found;
}

/// The folders of the registry in which the system keeps what it has installed, whatever it is.
/// This system makes them with the first package and keeps them empty; on Windows they are always
/// there.
const QSet<QString> ofTheSystem{
    QStringLiteral("HKLM\\Software\\Classes\\Installer"),
    QStringLiteral("HKLM\\Software\\Classes\\Installer\\Features"),
    QStringLiteral("HKLM\\Software\\Classes\\Installer\\Products"),
    QStringLiteral("HKLM\\Software\\Classes\\Installer\\UpgradeCodes"),
    QStringLiteral("HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UpgradeCodes"),
    QStringLiteral("HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData"),
    QStringLiteral("HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\"
                   "S-1-5-18"),
    QStringLiteral("HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\"
                   "S-1-5-18\\Components"),
    QStringLiteral("HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\"
                   "S-1-5-18\\Products"),
};

} // namespace

/// The installer, run by the system's own means, and the program that it has installed.
class tst_Installer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    // First, while nothing of other installations is there.
    void removalLeavesNothingButSettings();
    void installsTheProgram();
    void installedProgramRuns();
    void installsAnewWhatIsMissing();
    void replacesAnOlderVersion();
    void replacesAnotherBuildOfItsVersion();
    void replacesAnOlderVersionThatRuns_data();
    void replacesAnOlderVersionThatRuns();
    void leavesANewerVersionAlone();
};

void tst_Installer::cleanup()
{
    const QList<Product> products = listed();
    for (const Product &product : products) {
        QCOMPARE(install(QStringLiteral("/x"), product.code), success);
    }
    QVERIFY(!QFileInfo::exists(folder));
}

void tst_Installer::removalLeavesNothingButSettings()
{
    QSettings settings{settingsKey, QSettings::NativeFormat};
    settings.setValue(QStringLiteral("language"), QStringLiteral("de"));
    settings.sync();
    {
        // What a first start leaves behind belongs to the user and to the system.
        ClientProcess client;
        QVERIFY(client.comesUp());
    }
    const QSet<QString> before = everything();
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    QVERIFY(everything().size() > before.size());
    {
        ClientProcess client{{}, {}, program};
        QVERIFY(client.comesUp());
    }
    QCOMPARE(install(QStringLiteral("/x"), shipped), success);
    QStringList left = (everything() - before - ofTheSystem).values();
    left.sort();
    QCOMPARE(left.join(QLatin1Char('\n')), QString{});
    QCOMPARE(settings.value(QStringLiteral("language")).toString(), QStringLiteral("de"));
}

void tst_Installer::installsTheProgram()
{
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    const QMap<QString, QByteArray> expected = allContents(QStringLiteral(IXOVPN_SHIPPED));
    QVERIFY(expected.contains(QStringLiteral("ixovpn-client.exe")));
    const QMap<QString, QByteArray> installed = allContents(folder);
    QCOMPARE(installed.keys(), expected.keys());
    QVERIFY(installed == expected);
    QCOMPARE(listedVersions(), QStringList{shippedVersion});
    const QStringList entries = startMenuEntries();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(QFileInfo{entries.constFirst()}.completeBaseName(), QStringLiteral("IXOVPN"));
    QCOMPARE(QFileInfo{entries.constFirst()}.symLinkTarget(), program);
}

void tst_Installer::installedProgramRuns()
{
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    ClientProcess client{{}, {}, program};
    QVERIFY(client.comesUp());
    QVERIFY(client.agreesToEnd(0));
    client.tellToEnd(0);
    QCOMPARE(client.exitCode(), 0);
}

void tst_Installer::installsAnewWhatIsMissing()
{
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    const QByteArray before = contents(program);
    QVERIFY(QFile::remove(program));
    QCOMPARE(install(QStringLiteral("/i"), shipped, {QStringLiteral("REINSTALL=ALL")}), success);
    QVERIFY(contents(program) == before);
}

void tst_Installer::replacesAnOlderVersion()
{
    QCOMPARE(install(QStringLiteral("/i"), older), success);
    QCOMPARE(listedVersions(), QStringList{olderVersion});
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    QCOMPARE(listedVersions(), QStringList{shippedVersion});
    QVERIFY(allContents(folder) == allContents(QStringLiteral(IXOVPN_SHIPPED)));
    QCOMPARE(startMenuEntries().size(), 1);
}

void tst_Installer::replacesAnotherBuildOfItsVersion()
{
    QCOMPARE(install(QStringLiteral("/i"), rebuilt), success);
    QCOMPARE(listedVersions(), QStringList{shippedVersion});
    QVERIFY(allContents(folder) != allContents(QStringLiteral(IXOVPN_SHIPPED)));
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    QCOMPARE(listedVersions(), QStringList{shippedVersion});
    QVERIFY(allContents(folder) == allContents(QStringLiteral(IXOVPN_SHIPPED)));
}

void tst_Installer::replacesAnOlderVersionThatRuns_data()
{
    QTest::addColumn<bool>("asked");
    // On Windows the installer asks programs to end whose files it is about to replace.
    QTest::newRow("asked to end") << true;
    QTest::newRow("not asked") << false;
}

void tst_Installer::replacesAnOlderVersionThatRuns()
{
    QFETCH(const bool, asked);
    QCOMPARE(install(QStringLiteral("/i"), older), success);
    ClientProcess client{{}, {}, program};
    QVERIFY(client.comesUp());
    if (asked) {
        QVERIFY(client.agreesToEnd(ENDSESSION_CLOSEAPP));
        client.tellToEnd(ENDSESSION_CLOSEAPP);
        QCOMPARE(client.exitCode(), 0);
        QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    } else {
        QCOMPARE(install(QStringLiteral("/i"), shipped), restartNeeded);
        QVERIFY(client.comesUp());
        client.kill();
        // What the system does with its next start.
        QCOMPARE(QProcess::execute(QStringLiteral("wineboot.exe"), {}), 0);
    }
    QCOMPARE(listedVersions(), QStringList{shippedVersion});
    QVERIFY(allContents(folder) == allContents(QStringLiteral(IXOVPN_SHIPPED)));
    ClientProcess newer{{}, {}, program};
    QVERIFY(newer.comesUp());
    newer.kill();
}

void tst_Installer::leavesANewerVersionAlone()
{
    QCOMPARE(install(QStringLiteral("/i"), shipped), success);
    QCOMPARE(install(QStringLiteral("/i"), older), failure);
    QCOMPARE(listedVersions(), QStringList{shippedVersion});
    QVERIFY(allContents(folder) == allContents(QStringLiteral(IXOVPN_SHIPPED)));
}

QTEST_MAIN(tst_Installer)

#include "tst_installer_win.moc"
