#include "tests/support/ClientProcess_win.h"
#include "tests/support/ScriptedService.h"
#include "tests/support/WindowBench.h"

#include <QScopeGuard>
#include <QTest>

#include <memory>
#include <vector>

using support::ClientProcess;
using support::waitFor;

namespace {

constexpr wchar_t mutexName[] = L"Global\\IxoVpnClient";

UINT showMessage()
{
    return RegisterWindowMessageW(L"IxoVpnShow_v1");
}

bool mutexExists()
{
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, mutexName);
    if (mutex == nullptr) {
        return false;
    }
    CloseHandle(mutex);
    return true;
}

/// Keeps every thread of a process from running.
class Standstill
{
public:
    explicit Standstill(DWORD id)
        : process(OpenProcess(PROCESS_SUSPEND_RESUME, FALSE, id))
    {
        call("NtSuspendProcess");
    }
    ~Standstill()
    {
        call("NtResumeProcess");
        CloseHandle(process);
    }
    Standstill(const Standstill &) = delete;
    Standstill &operator=(const Standstill &) = delete;

private:
    void call(const char *name) const
    {
        const auto function = reinterpret_cast<LONG(NTAPI *)(HANDLE)>(
            reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
        if (function(process) != 0) {
            qFatal("%s failed", name);
        }
    }

    HANDLE process;
};

/// A function that a program has entered, with the first two arguments.
struct Entry
{
    QByteArray function;
    DWORD64 first;
    DWORD64 second;
};

/// Runs the client to its end as a debugger does and tells in which order it enters functions of
/// the window system for the first time.
class Tracer
{
public:
    explicit Tracer(const QByteArrayList &functions)
    {
        const HMODULE library = GetModuleHandleW(L"user32.dll");
        for (const QByteArray &function : functions) {
            // The system's libraries lie at the same place in every process.
            stops.append({function,
                          reinterpret_cast<void *>(GetProcAddress(library, function.constData())),
                          0});
        }
    }

    QList<Entry> run()
    {
        std::wstring command = L'"' + support::clientPath().toStdWString() + L'"';
        STARTUPINFOW start = {};
        start.cb = sizeof start;
        PROCESS_INFORMATION made = {};
        if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE,
                           DEBUG_ONLY_THIS_PROCESS, nullptr, nullptr, &start, &made) == FALSE) {
            qFatal("The client does not start");
        }
        process = made.hProcess;
        DEBUG_EVENT event = {};
        do {
            if (WaitForDebugEvent(&event, INFINITE) == FALSE) {
                qFatal("No debug event");
            }
            ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answerTo(event));
        } while (event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT);
        code = event.u.ExitProcess.dwExitCode;
        CloseHandle(made.hThread);
        CloseHandle(made.hProcess);
        return entries;
    }

    DWORD exitCode() const { return code; }

private:
    struct Stop
    {
        QByteArray function;
        void *place;
        unsigned char covered;
    };

    DWORD answerTo(const DEBUG_EVENT &event)
    {
        if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT) {
            CloseHandle(event.u.CreateProcessInfo.hFile);
        }
        if (event.dwDebugEventCode != EXCEPTION_DEBUG_EVENT) {
            return DBG_CONTINUE;
        }
        const EXCEPTION_RECORD &exception = event.u.Exception.ExceptionRecord;
        if (exception.ExceptionCode != EXCEPTION_BREAKPOINT) {
            return DBG_EXCEPTION_NOT_HANDLED;
        }
        for (const Stop &stop : qAsConst(stops)) {
            if (stop.place == exception.ExceptionAddress) {
                enter(stop, event.dwThreadId);
                return DBG_CONTINUE;
            }
        }
        // Windows raises the first breakpoint itself, once the libraries are loaded.
        for (Stop &stop : stops) {
            ReadProcessMemory(process, stop.place, &stop.covered, 1, nullptr);
            put(stop.place, breakpoint);
        }
        return DBG_CONTINUE;
    }

    void enter(const Stop &stop, DWORD threadId)
    {
        put(stop.place, stop.covered);
        const HANDLE thread = OpenThread(THREAD_ALL_ACCESS, FALSE, threadId);
        CONTEXT context = {};
        context.ContextFlags = CONTEXT_CONTROL | CONTEXT_INTEGER;
        GetThreadContext(thread, &context);
        entries.append({stop.function, context.Rcx, context.Rdx});
        context.Rip = reinterpret_cast<DWORD64>(stop.place);
        SetThreadContext(thread, &context);
        CloseHandle(thread);
    }

    void put(void *place, unsigned char byte) const
    {
        if (WriteProcessMemory(process, place, &byte, 1, nullptr) == FALSE) {
            qFatal("No breakpoint can be set");
        }
        FlushInstructionCache(process, place, 1);
    }

    static constexpr unsigned char breakpoint = 0xcc;

    QList<Stop> stops;
    QList<Entry> entries;
    HANDLE process = nullptr;
    DWORD code = 0;
};

} // namespace

class tst_SecondStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void firstStartHoldsTheMutex();
    void mutexOfAnotherProgram();
    void mutexThatCannotBeMade();
    void nextStartAfterTheFirstWasKilled();
    void secondStartBringsBackAHiddenWindow();
    void secondStartHandsOverTheForeground();
    void showMessage_data();
    void showMessage();
    void otherMessagesDoNothing();
    void secondStartBeforeThereIsAWindow();
    void thirtyAtOnce();
    void similarWordsAreChecked_data();
    void similarWordsAreChecked();
    void lastWordStartsASecondClient();
};

void tst_SecondStart::init()
{
    QVERIFY(waitFor([] { return !mutexExists(); }));
}

void tst_SecondStart::firstStartHoldsTheMutex()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(mutexExists());
    client.kill();
    QVERIFY(waitFor([] { return !mutexExists(); }));
}

void tst_SecondStart::mutexOfAnotherProgram()
{
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, mutexName);
    const auto end = qScopeGuard([mutex] { CloseHandle(mutex); });
    support::ScriptedService service;
    service.listen();
    ClientProcess client;
    QCOMPARE(client.exitCode(), 0);
    QCOMPARE(service.accepted(), 0);
}

// CreateMutex fails without a handle if an object of another type has the name.
void tst_SecondStart::mutexThatCannotBeMade()
{
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, mutexName);
    const auto end = qScopeGuard([event] { CloseHandle(event); });
    support::ScriptedService service;
    service.listen();
    ClientProcess client;
    QCOMPARE(client.exitCode(), 0);
    QCOMPARE(service.accepted(), 0);
}

void tst_SecondStart::nextStartAfterTheFirstWasKilled()
{
    for (int i = 0; i < 3; ++i) {
        ClientProcess client;
        QVERIFY(client.comesUp());
    }
}

void tst_SecondStart::secondStartBringsBackAHiddenWindow()
{
    ClientProcess first;
    QVERIFY(first.comesUp());
    first.close();
    QVERIFY(waitFor([&] { return !first.isShown(); }));

    ClientProcess second;
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(waitFor([&] { return first.isShown(); }));
    QVERIFY(waitFor([&] { return GetForegroundWindow() == first.window(); }));
    QVERIFY(first.isRunning());
}

void tst_SecondStart::secondStartHandsOverTheForeground()
{
    ClientProcess first;
    QVERIFY(first.comesUp());
    const auto window = reinterpret_cast<DWORD64>(first.window());

    Tracer second{{"PostMessageA", "AllowSetForegroundWindow", "FindWindowW", "CreateWindowExW"}};
    const QList<Entry> entries = second.run();
    QCOMPARE(second.exitCode(), 0UL);
    QCOMPARE(entries.size(), 3);
    QCOMPARE(entries.at(0).function, QByteArray("FindWindowW"));
    QCOMPARE(entries.at(0).first, DWORD64{0});
    QCOMPARE(entries.at(1).function, QByteArray("AllowSetForegroundWindow"));
    QCOMPARE(entries.at(1).first, DWORD64{first.id()});
    QCOMPARE(entries.at(2).function, QByteArray("PostMessageA"));
    QCOMPARE(entries.at(2).first, window);
    QCOMPARE(entries.at(2).second, DWORD64{::showMessage()});
}

void tst_SecondStart::showMessage_data()
{
    QTest::addColumn<bool>("toAnotherWindow");
    QTest::newRow("to the main window") << false;
    QTest::newRow("to another window of the program") << true;
}

void tst_SecondStart::showMessage()
{
    QFETCH(bool, toAnotherWindow);
    ClientProcess client;
    QVERIFY(client.comesUp());
    client.close();
    QVERIFY(waitFor([&] { return !client.isShown(); }));

    HWND target = client.window();
    if (toAnotherWindow) {
        QList<HWND> others = support::windowsOf(client.id());
        others.removeAll(target);
        QVERIFY(!others.isEmpty());
        target = others.constFirst();
    }
    QVERIFY(PostMessageA(target, ::showMessage(), 0, 0));
    QVERIFY(waitFor([&] { return client.isShown(); }));
    QVERIFY(waitFor([&] { return GetForegroundWindow() == client.window(); }));
}

void tst_SecondStart::otherMessagesDoNothing()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    client.close();
    QVERIFY(waitFor([&] { return !client.isShown(); }));

    for (const UINT message :
         {RegisterWindowMessageW(L"IxoVpnShow_v2"), RegisterWindowMessageW(L"IxoVpnShow"),
          static_cast<UINT>(WM_USER), static_cast<UINT>(WM_NULL)}) {
        QVERIFY(PostMessageA(client.window(), message, 0, 0));
    }
    // WM_NULL is answered only after the messages that were posted before it.
    DWORD_PTR ignored = 0;
    for (int i = 0; i < 10; ++i) {
        QVERIFY(SendMessageTimeoutW(client.window(), WM_NULL, 0, 0, SMTO_NORMAL, 60000, &ignored));
        QTest::qWait(10);
    }
    QVERIFY(!client.isShown());
}

void tst_SecondStart::secondStartBeforeThereIsAWindow()
{
    ClientProcess first;
    while (!mutexExists()) {
        Sleep(0);
    }
    {
        const Standstill standstill{first.id()};
        QCOMPARE(first.window(), HWND{nullptr});
        ClientProcess second;
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(first.window(), HWND{nullptr});
    }
    QVERIFY(first.comesUp());
}

void tst_SecondStart::thirtyAtOnce()
{
    constexpr int count = 30;
    support::ScriptedService service;
    service.listen();
    std::vector<std::unique_ptr<ClientProcess>> clients;
    for (int i = 0; i < count; ++i) {
        clients.push_back(std::make_unique<ClientProcess>());
    }
    const auto running = [&clients] {
        return std::count_if(clients.begin(), clients.end(),
                             [](const auto &client) { return client->isRunning(); });
    };
    QVERIFY(waitFor([&] { return running() == 1; }));
    QVERIFY(waitFor([&] { return service.accepted() == 1; }));
    QCOMPARE(running(), 1);
    for (const auto &client : clients) {
        if (client->isRunning()) {
            QVERIFY(client->comesUp());
        } else {
            QCOMPARE(client->exitCode(), 0);
        }
    }
    QCOMPARE(service.accepted(), 1);
}

void tst_SecondStart::similarWordsAreChecked_data()
{
    QTest::addColumn<QString>("word");
    for (const char *word : {"--TEST-I18N", "--test-i18n=de_DE", "-test-i18n", "--test-i18nn"}) {
        QTest::newRow(word) << QString{QLatin1String{word}};
    }
}

void tst_SecondStart::similarWordsAreChecked()
{
    QFETCH(QString, word);
    ClientProcess first;
    QVERIFY(first.comesUp());
    ClientProcess second{{word, QStringLiteral("de_DE")}};
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(first.isRunning());
}

void tst_SecondStart::lastWordStartsASecondClient()
{
    ClientProcess first;
    QVERIFY(first.comesUp());
    ClientProcess second{{QStringLiteral("de_DE"), QStringLiteral("--test-i18n")}};
    QVERIFY(second.comesUp());
    QVERIFY(first.isRunning());
    QVERIFY(second.window() != first.window());
}

QTEST_GUILESS_MAIN(tst_SecondStart)

#include "tst_secondstart_win.moc"
