#include "tests/support/ClientProcess_win.h"
#include "tests/support/WindowBench.h"

#include <QDir>
#include <QTest>

using support::ClientProcess;
using support::waitFor;

namespace {

constexpr wchar_t desktopKey[] = L"Control Panel\\Desktop";
constexpr wchar_t dotsName[] = L"LogPixels";
constexpr DWORD usualDots = 96;
constexpr QSize usualExtent{360, 560};
constexpr QPoint knobEdge{150, 195};

} // namespace

/// What a user sees who has told the system to show everything larger.
class tst_ScreenScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void windowGrowsWithTheScreen_data();
    void windowGrowsWithTheScreen();
    void usersChoiceStands();

private:
    static void setDots(DWORD dots);
};

void tst_ScreenScale::setDots(DWORD dots)
{
    if (RegSetKeyValueW(HKEY_CURRENT_USER, desktopKey, dotsName, REG_DWORD, &dots, sizeof dots) !=
        ERROR_SUCCESS) {
        qFatal("Nothing can be stored in the registry");
    }
}

void tst_ScreenScale::cleanup()
{
    qunsetenv("QT_ENABLE_HIGHDPI_SCALING");
    RegDeleteKeyValueW(HKEY_CURRENT_USER, desktopKey, dotsName);
}

void tst_ScreenScale::windowGrowsWithTheScreen_data()
{
    QTest::addColumn<int>("percent");
    for (int percent : {100, 125, 150, 200}) {
        QTest::addRow("%d", percent) << percent;
    }
}

void tst_ScreenScale::windowGrowsWithTheScreen()
{
    QFETCH(const int, percent);
    setDots(usualDots * static_cast<DWORD>(percent) / 100);
    ClientProcess client;
    QVERIFY(client.comesUp());
    QCOMPARE(client.picture().size(), usualExtent * percent / 100);
    // What it shows is as large as the window.
    QVERIFY(waitFor(
        [&] { return client.picture().pixelColor(knobEdge * percent / 100).value() > 200; }));
    QVERIFY(client.comesToRest());
    // For the documentation and for looking at.
    const QDir place{QString::fromLocal8Bit(IXOVPN_PICTURES)};
    QVERIFY(place.mkpath(QStringLiteral(".")));
    QVERIFY(client.picture().save(place.filePath(QStringLiteral("scale-%1.png").arg(percent))));
}

void tst_ScreenScale::usersChoiceStands()
{
    setDots(2 * usualDots);
    qputenv("QT_ENABLE_HIGHDPI_SCALING", QByteArrayLiteral("0"));
    ClientProcess client;
    QVERIFY(client.comesUp());
    QCOMPARE(client.picture().size(), usualExtent);
}

QTEST_MAIN(tst_ScreenScale)

#include "tst_screenscale_win.moc"
