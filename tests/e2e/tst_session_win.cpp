#include "app/Identity.h"
#include "tests/support/ClientProcess_win.h"
#include "tests/support/ScriptedService.h"
#include "tests/support/WindowBench.h"
#include "ui/SettingsDialog.h"
#include "ui/SupportDialog.h"

#include <QComboBox>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include <memory>

using support::ClientProcess;
using support::waitFor;

namespace {

constexpr wchar_t clientKey[] = L"Software\\IXOVPN\\IxoClient";
constexpr wchar_t serviceKey[] = L"Software\\IXOVPN\\IxoService";

constexpr QSize windowExtent{360, 560};
constexpr QPoint menuButton{48, 34};
constexpr QPoint settingsRow{80, 42};
constexpr QPoint supportRow{80, 154};
constexpr QPoint theSwitch{180, 214};

const QByteArray statusRequest = R"({"cmd":"status"})";

void store(HKEY hive, const wchar_t *key, const wchar_t *name, const std::wstring &value)
{
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    if (RegSetKeyValueW(hive, key, name, REG_SZ, value.c_str(), size) != ERROR_SUCCESS) {
        qFatal("Nothing can be stored in the registry");
    }
}

QString stored(HKEY hive, const wchar_t *key, const wchar_t *name)
{
    std::array<wchar_t, 256> value{};
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueW(hive, key, name, RRF_RT_REG_SZ | RRF_SUBKEY_WOW6464KEY,
                                        nullptr, value.data(), &size);
    return status == ERROR_SUCCESS ? QString::fromWCharArray(value.data()) : QString{};
}

QString clipboardText()
{
    QString text;
    if (OpenClipboard(nullptr) != FALSE) {
        if (const HANDLE data = GetClipboardData(CF_UNICODETEXT); data != nullptr) {
            text = QString::fromWCharArray(static_cast<const wchar_t *>(GlobalLock(data)));
            GlobalUnlock(data);
        }
        CloseClipboard();
    }
    return text;
}

/// Where the middles of a page's widgets are, found on a page of the same make.
template <typename Page> class Model
{
public:
    Model()
    {
        surround.resize(windowExtent);
        surround.show();
    }
    Page *operator->() { return &page; }
    template <typename Widget> QList<QPoint> middles()
    {
        page.grab();
        QList<QPoint> found;
        const QList<Widget *> widgets = page.template findChildren<Widget *>();
        for (Widget *widget : widgets) {
            if (widget->isVisibleTo(&surround)) {
                found.append(widget->mapTo(&surround, widget->rect().center()));
            }
        }
        surround.hide();
        return found;
    }

private:
    QWidget surround;
    Page page{&surround};
};

} // namespace

/// A user's day with the program, as seen from outside it.
class tst_Session : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void windowIsOfItsSize();
    void greetsTheService();
    void comesBackToTheService();
    void switchTalksToTheService();
    void closingHidesToTheTray();
    void languageIsReadFromTheRegistry();
    void languageIsSwitchedAndStored();
    void copyButtonsFillTheClipboard();
    void exitInTheMenuEndsTheProgram();

private:
    [[nodiscard]] bool greeted();

    std::unique_ptr<support::ScriptedService> service;
};

void tst_Session::init()
{
    app::setIdentity();
    RegDeleteTreeW(HKEY_CURRENT_USER, clientKey);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, serviceKey);
    service = std::make_unique<support::ScriptedService>();
    service->listen();
}

bool tst_Session::greeted()
{
    const bool arrived = waitFor([this] { return service->lines().contains(statusRequest); });
    return arrived;
}

void tst_Session::windowIsOfItsSize()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    RECT inner = {};
    QVERIFY(GetClientRect(client.window(), &inner));
    QCOMPARE(QSize(inner.right, inner.bottom), windowExtent);
    QVERIFY((GetWindowLongPtrW(client.window(), GWL_STYLE) & WS_MAXIMIZEBOX) == 0);
    MINMAXINFO limits = {};
    SendMessageW(client.window(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    QVERIFY(limits.ptMinTrackSize.x >= windowExtent.width());
    QCOMPARE(limits.ptMaxTrackSize.x, limits.ptMinTrackSize.x);
    QCOMPARE(limits.ptMaxTrackSize.y, limits.ptMinTrackSize.y);
}

void tst_Session::greetsTheService()
{
    store(HKEY_CURRENT_USER, clientKey, L"referral_code", L"ABC123");
    ClientProcess client;
    QVERIFY(greeted());
    const QList<QByteArray> lines = service->lines();
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).contains(R"("cmd":"set-lang")"));
    QVERIFY(lines.at(1).contains(R"("cmd":"set-referral")"));
    QVERIFY(lines.at(1).contains("ABC123"));
    QCOMPARE(lines.at(2), statusRequest);
}

void tst_Session::comesBackToTheService()
{
    ClientProcess client;
    QVERIFY(greeted());
    service->stop();
    service->clear();
    service->listen();
    QVERIFY(greeted());
    service->clear();
    service->reset();
    QVERIFY(greeted());
    QCOMPARE(service->accepted(), 3);
}

void tst_Session::switchTalksToTheService()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(greeted());
    service->clear();
    QVERIFY(client.comesToRest());
    // The switch ignores clicks during its animation.
    const auto pressedUntil = [&](const QByteArray &line) {
        return waitFor([&] {
            client.click(theSwitch);
            QTest::qWait(100);
            return service->lines().contains(line);
        });
    };
    QVERIFY(pressedUntil(R"({"cmd":"connect"})"));
    service->sendLine("status: running");
    QVERIFY(pressedUntil(R"({"cmd":"disconnect"})"));
}

void tst_Session::closingHidesToTheTray()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(greeted());
    client.close();
    QVERIFY(waitFor([&] { return !client.isShown(); }));
    QVERIFY(client.isRunning());
    // The client reconnects although its window is hidden.
    service->clear();
    service->reset();
    QVERIFY(greeted());
    QVERIFY(!client.isShown());
}

void tst_Session::languageIsReadFromTheRegistry()
{
    store(HKEY_CURRENT_USER, clientKey, L"language", L"ja");
    ClientProcess client;
    QVERIFY(greeted());
    QVERIFY(service->lines().constFirst().contains(R"("lang":"ja")"));
}

void tst_Session::languageIsSwitchedAndStored()
{
    store(HKEY_CURRENT_USER, clientKey, L"language", L"en");
    Model<ui::SettingsDialog> model;
    model->openPage(QStringLiteral("en"));
    const QPoint combo = model.middles<QComboBox>().constFirst();
    const QPoint save = model.middles<QPushButton>().constFirst();

    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(greeted());
    service->clear();
    QVERIFY(client.changesOn(menuButton));
    QVERIFY(client.changesOn(settingsRow));
    client.click(combo);
    QVERIFY(waitFor([&] { return client.popup() != nullptr; }));
    support::pressKey(VK_DOWN);
    support::pressKey(VK_DOWN);
    support::pressKey(VK_RETURN);
    QVERIFY(waitFor([&] { return client.popup() == nullptr; }));
    client.click(save);
    QVERIFY(waitFor([this] { return !service->lines().isEmpty(); }));
    QVERIFY(service->lines().constFirst().contains(R"("lang":"de")"));
    QCOMPARE(stored(HKEY_CURRENT_USER, clientKey, L"language"), QStringLiteral("de"));
}

void tst_Session::copyButtonsFillTheClipboard()
{
    const QString id = QStringLiteral("7c1e90b2-55d4-4f0a");
    store(HKEY_LOCAL_MACHINE, serviceKey, L"client_id", id.toStdWString());
    store(HKEY_CURRENT_USER, clientKey, L"referral_code", L"ABC123");
    Model<ui::SupportDialog> model;
    model->openPage();
    const QList<QPoint> buttons = model.middles<QPushButton>();
    QCOMPARE(buttons.size(), 3);

    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(client.changesOn(menuButton));
    QVERIFY(client.changesOn(supportRow));
    const QStringList values{QStringLiteral(IXOVPN_VERSION), id, QStringLiteral("ABC123")};
    for (int i = 0; i < values.size(); ++i) {
        client.click(buttons.at(i));
        QVERIFY(waitFor([&] { return clipboardText() == values.at(i); }));
    }
}

void tst_Session::exitInTheMenuEndsTheProgram()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(client.changesOn(menuButton));
    client.click({80, windowExtent.height() - 42});
    QCOMPARE(client.exitCode(), 0);
}

QTEST_MAIN(tst_Session)

#include "tst_session_win.moc"
