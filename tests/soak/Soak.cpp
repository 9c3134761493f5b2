#include "tests/soak/Soak.h"

#include "tests/support/Pictures.h"
#include "ui/Catalogue.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include <csignal>

namespace soak {

namespace {

using State = ui::ToggleSwitch::State;

constexpr int keptActions = 40;
constexpr int answerMs = 60'000;
constexpr int idleMs = 3'000;
constexpr int idleRounds = 5;
// Longer than the program waits before it reconnects.
constexpr int settlingMs = 2'000;
constexpr int memoryToleranceKiB = 1'024;
// Layers that are half transparent are rounded differently.
constexpr int pictureTolerance = 2;

constexpr QPoint menuButton{48, 34};
constexpr QPoint besideMenu{350, 300};
constexpr QPoint theSwitch{180, 200};
constexpr QPoint aside{1270, 1010};

template <typename Array> constexpr int sizeOf(const Array &all)
{
    return static_cast<int>(all.size());
}

template <typename Array> auto at(const Array &all, int index)
{
    return all.at(static_cast<std::size_t>(index));
}

QString clockFile()
{
    return QStringLiteral("/tmp/clock");
}

QString witnessPath()
{
    return QStringLiteral("/tmp/witness");
}

bool pulses(State state)
{
    return state == State::Connecting || state == State::Disconnecting;
}

} // namespace

Soak::Soak(const QString &program, quint32 seed, int rate_)
    : session(program)
    , rate(rate_)
    , random(seed)
{
    session.setVariable(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(IXOVPN_WITNESS_PLUGINS));
    session.setVariable(QStringLiteral("QT_QPA_GENERIC_PLUGINS"),
                        QStringLiteral("ixovpnwitness:") + witnessPath());
    session.setVariable(QStringLiteral("LD_PRELOAD"), QStringLiteral(IXOVPN_CLOCK));
    session.setVariable(QStringLiteral("FAKETIME_TIMESTAMP_FILE"), clockFile());
    session.setVariable(QStringLiteral("FAKETIME_NO_CACHE"), QStringLiteral("1"));
    // Setting the clock must not move the monotonic clock of the timers.
    if (rate == 1) {
        session.setVariable(QStringLiteral("DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
    }
    setClock(0);
    QCoreApplication::installTranslator(&translator);
    session.service.listen();
    start();
}

void Soak::runFor(int seconds)
{
    run([this, seconds] { return sinceWarm.hasExpired(seconds * 1'000LL); });
}

void Soak::runUntil(const Goals &goals)
{
    run([this, goals] {
        return counts.losses >= goals.losses && counts.changes >= goals.changes &&
               counts.languages >= goals.languages && counts.notices >= goals.notices;
    });
}

void Soak::run(const std::function<bool()> &enough)
{
    warmUp();
    const Holdings before = holdings();
    sinceWarm.start();
    while (!enough()) {
        anyStep();
    }
    agree("the last known state");
    compare(before, holdings());
    comparePictures();
}

void Soak::start()
{
    QFile::remove(witnessPath());
    if (!session.startClient()) {
        fail(QStringLiteral("The program does not start"));
    }
    origin = session.at({});
    witness.abort();
    witness.connectToServer(witnessPath());
    if (!witness.waitForConnected(answerMs)) {
        fail(QStringLiteral("The witness is not there: ") + witness.errorString());
    }
    session.moveMouse(aside);
    waitForConnection();
}

// Does everything once or more, so that Qt's caches are filled.
void Soak::warmUp()
{
    const Counts none = counts;
    languageTags = look().languages;
    for (int row = languageTags.size(); row > 0;) {
        switchTo(--row);
    }
    for (int round = 0; round < 2; ++round) {
        changeStates();
        changeStatesOneByOne();
        loseConnection();
        showNotices();
        openPages();
        openAndClose(support::ClientSession::settingsRow);
        openAndClose(support::ClientSession::supportRow);
        openAndClose(support::ClientSession::referralRow);
        click();
        stopAndContinue();
        jumpClock();
        staySilent();
        flood();
    }
    counts = none;
}

void Soak::anyStep()
{
    // A full run needs ten times as many losses as languages and notices; states come by the
    // hundred anyway.
    static constexpr std::array steps{
        Step{4, &Soak::changeStates},    Step{3, &Soak::changeStatesOneByOne},
        Step{24, &Soak::loseConnection}, Step{3, &Soak::chooseLanguage},
        Step{1, &Soak::showNotices},     Step{2, &Soak::openPages},
        Step{5, &Soak::click},           Step{2, &Soak::stopAndContinue},
        Step{1, &Soak::jumpClock},       Step{1, &Soak::staySilent},
        Step{1, &Soak::flood},
    };
    int all = 0;
    for (const Step &step : steps) {
        all += step.weight;
    }
    int left = pick(0, all - 1);
    for (const Step &step : steps) {
        left -= step.weight;
        if (left < 0) {
            (this->*step.act)();
            return;
        }
    }
}

Soak::Holdings Soak::holdings()
{
    note(QStringLiteral("look at what is held"));
    if (model.language != QLatin1String{"en"}) {
        switchTo(0);
    }
    write("status: running\n");
    agree("at rest");
    QTest::qWait(settlingMs);

    // Without the trim, chance decides how much freed memory malloc still keeps.
    const Testimony seen = look("trim\n");
    const qint64 process = session.client->processId();
    // A timer would wake the program in every period; a single wake-up comes from the desktop.
    Figures now = Figures::of(process);
    QStringList wakeUps;
    for (bool slept = false; !slept;) {
        if (wakeUps.size() == idleRounds) {
            fail(QStringLiteral("It does not sleep; wake-ups in %1 ms each: %2")
                     .arg(QString::number(idleMs), wakeUps.join(QStringLiteral(", "))));
        }
        QTest::qWait(idleMs);
        const Figures earlier = std::exchange(now, Figures::of(process));
        wakeUps += QString::number(now.wakeUps - earlier.wakeUps);
        // The counter of a thread that ends is gone.
        slept = now.wakeUps == earlier.wakeUps && now.threads == earlier.threads;
    }
    return {now, seen};
}

void Soak::compare(const Holdings &before, const Holdings &after) const
{
    struct Row
    {
        const char *what;
        qint64 before;
        qint64 after;
        qint64 tolerance;
    };
    const std::array rows{
        Row{"descriptors", before.process.descriptors, after.process.descriptors, 0},
        Row{"threads", before.process.threads, after.process.threads, 0},
        Row{"timers", before.inside.timers, after.inside.timers, 0},
        Row{"widgets", before.inside.widgets, after.inside.widgets, 0},
        Row{"windows", before.inside.windows, after.inside.windows, 0},
        Row{"objects", before.inside.objects, after.inside.objects, 0},
        Row{"memory of its own, KiB", before.process.written, after.process.written,
            memoryToleranceKiB},
    };
    // This one has no tolerance: it depends on how many processes share the memory at the moment.
    qInfo("%-28s %8d at the start %8d at the end", "proportional memory, KiB",
          before.process.proportional, after.process.proportional);
    QStringList grown;
    for (const Row &row : rows) {
        qInfo("%-28s %8lld at the start %8lld at the end", row.what, row.before, row.after);
        if (row.after > row.before + row.tolerance) {
            grown += QString::fromLatin1(row.what);
        }
    }
    if (grown.isEmpty()) {
        return;
    }
    for (auto it = after.inside.kinds.begin(); it != after.inside.kinds.end(); ++it) {
        const int more = it.value().toInt() - before.inside.kinds[it.key()].toInt();
        if (more > 0) {
            grown += QStringLiteral("%1 more of %2").arg(more).arg(it.key());
        }
    }
    fail(QStringLiteral("More than at the start: ") + grown.join(QStringLiteral(", ")));
}

// After all the faults the program must look like one that has just been started.
void Soak::comparePictures()
{
    note(QStringLiteral("compare with a fresh program"));
    switchTo(pick(1, languageTags.size() - 1));
    QList<QByteArray> lines{"status: running",
                            "status: stopping",
                            "status: stopped",
                            "status: fetching",
                            "status: subscription_expired",
                            "status: failed: no route",
                            "config-bytes: 4096",
                            "error: " + QByteArray(200, 'm')};
    std::shuffle(lines.begin(), lines.end(), random);
    // A line that only sets the pill leaves the rest of the display as it was.
    lines.prepend(QByteArrayLiteral("status: running"));
    const QList<QImage> is = pictures(lines);

    const QString language = model.language;
    session.killClient();
    session.service.listen();
    model = {};
    model.language = language;
    start();
    const QList<QImage> should = pictures(lines);
    for (int i = 0; i < is.size(); ++i) {
        const QString where = support::difference(is.at(i), should.at(i), pictureTolerance);
        if (!where.isEmpty()) {
            is.at(i).save(QStringLiteral("build/soak-is.png"));
            should.at(i).save(QStringLiteral("build/soak-should.png"));
            fail(QStringLiteral("After \"%1\" not the picture of a fresh program: %2; see "
                                "build/soak-is.png and build/soak-should.png")
                     .arg(QString::fromUtf8(lines.value(i, "the loss of the connection")), where));
        }
    }
    session.service.listen();
    waitForConnection();
}

QList<QImage> Soak::pictures(const QList<QByteArray> &lines)
{
    QList<QImage> taken;
    for (const QByteArray &line : lines) {
        write(line + '\n');
        agree("a picture's state");
        taken += picture(pulses(model.state));
    }
    breakConnection();
    agree("the last picture's state");
    taken += picture(false);
    return taken;
}

QImage Soak::picture(bool pulsing)
{
    if (!pulsing) {
        return session.still(session.window);
    }
    const Testimony seen = look();
    QImage last;
    const bool still = support::waitFor([&] {
        QImage now = session.screenshot(session.window);
        for (int y = seen.switchTop; y <= seen.switchBottom; ++y) {
            std::fill_n(now.scanLine(y), now.bytesPerLine(), 0);
        }
        const bool same = now == last;
        last = std::move(now);
        return same;
    });
    if (!still) {
        fail(QStringLiteral("The window does not come to rest"));
    }
    return last;
}

void Soak::changeStates()
{
    const int lines = pick(1, 1'000);
    note(QStringLiteral("%1 lines at once").arg(lines));
    write(randomLines(lines));
    settle("states in a burst");
}

void Soak::changeStatesOneByOne()
{
    const int lines = pick(1, 20);
    note(QStringLiteral("%1 lines, each shown").arg(lines));
    for (int i = 0; i < lines; ++i) {
        write(randomLines(1));
        agree("a single state");
    }
    settle("single states");
}

void Soak::loseConnection()
{
    note(QStringLiteral("lose the connection"));
    if (chance(30)) {
        write(randomLines(pick(1, 100)));
        settle("the lines before the loss");
    }
    if (chance(30)) {
        write(randomLine().chopped(1));
    }
    breakConnection();
    agree("the loss");
    if (chance(20)) {
        click();
    }
    if (chance(10)) {
        chooseLanguage();
    }
    if (chance(10)) {
        openPages();
    }
    if (chance(20)) {
        QTest::qWait(pick(1, 2'000 / rate));
        agree("no service for a while");
    }
    session.service.listen();
    waitForConnection();
}

void Soak::breakConnection()
{
    if (chance(50)) {
        session.service.reset();
    }
    // Without a service the program cannot reconnect before the loss has been checked.
    session.service.stop();
    model.connectionDown();
    ++counts.losses;
}

void Soak::waitForConnection()
{
    if (!support::waitFor([this] { return session.service.connected() == 1; })) {
        fail(QStringLiteral("The program does not come back"));
    }
    down = false;
    model.connectionUp();
    agree("the greeting");
}

void Soak::chooseLanguage()
{
    int row = pick(0, languageTags.size() - 2);
    if (model.language == languageTags.at(row)) {
        ++row;
    }
    switchTo(row);
}

void Soak::switchTo(int row)
{
    const QString tag = languageTags.at(row);
    note(QStringLiteral("choose ") + tag);
    openMenu();
    press(support::ClientSession::settingsRow);
    await("the settings page",
          [](const Testimony &seen) { return seen.settings && !seen.menuShows; });
    QStringList names{QStringLiteral("Tab"), QStringLiteral("Home")};
    for (int i = 0; i < row; ++i) {
        names += QStringLiteral("Down");
    }
    session.pressKeys(names << QStringLiteral("Tab") << QStringLiteral("Return"));
    await("the settings to be gone",
          [](const Testimony &seen) { return !seen.settings && !seen.menuShows; });
    if (!ui::catalogue::load(translator, tag)) {
        fail(QStringLiteral("No catalogue for ") + tag);
    }
    model.languageChosen(tag);
    ++counts.languages;
    agree("the language");
}

void Soak::showNotices()
{
    const int notices = pick(1, 10);
    note(QStringLiteral("%1 notices").arg(notices));
    const int first = noticeNumber + 1;
    QByteArray bytes;
    for (int i = 0; i < notices; ++i) {
        bytes += "notice: <b>Number " + QByteArray::number(++noticeNumber) + ".</b> " +
                 QByteArray{"You <i>may</i> <a href=\"https://ixovpn.example\">read</a> this. "}
                     .repeated(pick(0, 60)) +
                 '\n';
        if (chance(50)) {
            bytes += randomLines(pick(1, 5));
        }
    }
    write(bytes);
    for (int number = first; number <= noticeNumber; ++number) {
        const QString text = QStringLiteral("Number %1.").arg(number);
        await("the next notice", [text](const Testimony &seen) {
            return seen.dialog == QLatin1String{"ui::NoticeDialog"} && seen.notice.startsWith(text);
        });
        if (chance(20)) {
            write(randomLines(pick(1, 5)));
            settle("a state behind a notice");
        }
        if (chance(5)) {
            breakConnection();
            agree("a loss behind a notice");
            session.service.listen();
            waitForConnection();
        }
        closeDialog();
        ++counts.notices;
    }
    await("no further notice", [](const Testimony &seen) { return !seen.anyDialog; });
    settle("after the notices");
}

void Soak::openPages()
{
    static constexpr std::array rows{support::ClientSession::settingsRow,
                                     support::ClientSession::referralRow,
                                     support::ClientSession::supportRow};
    for (int pages = pick(1, 3); pages > 0; --pages) {
        const int which = pick(0, sizeOf(rows));
        if (which < sizeOf(rows)) {
            openAndClose(at(rows, which));
        } else {
            note(QStringLiteral("open the menu and close it"));
            openMenu();
            press(besideMenu);
            await("the menu to be gone", [](const Testimony &seen) { return !seen.menuShows; });
        }
    }
}

void Soak::openAndClose(const QPoint &row)
{
    note(QStringLiteral("open the page at %1").arg(row.y()));
    ++counts.pages;
    openMenu();
    press(row);
    if (row == support::ClientSession::referralRow) {
        await("the referral dialog", [](const Testimony &seen) {
            return seen.dialog == QLatin1String{"ui::ReferralDialog"};
        });
        closeDialog();
    } else {
        const bool settings = row == support::ClientSession::settingsRow;
        await("the page", [settings](const Testimony &seen) {
            return (settings ? seen.settings : seen.support) && !seen.menuShows;
        });
        press(support::ClientSession::backButton);
    }
    await("the page to be gone", [](const Testimony &seen) {
        return !seen.settings && !seen.support && !seen.menuShows && !seen.anyDialog;
    });
}

// Qt regards a dialog as active once it has asked for the focus. If the dialog is closed before the
// window manager has moved the focus, the main window has had the focus all the time, and no event
// makes it active again until somebody clicks into it.
void Soak::closeDialog()
{
    await("the dialog to be in front", [this](const Testimony &seen) {
        const support::Desktop::Window active = session.activeWindow();
        return active != 0 && active == seen.dialogWindow;
    });
    session.pressKey(QStringLiteral("Escape"));
}

void Soak::openMenu()
{
    press(menuButton);
    await("the menu", [](const Testimony &seen) { return seen.menu; });
}

void Soak::click()
{
    note(QStringLiteral("click the switch"));
    press(theSwitch);
    model.click();
    ++counts.clicks;
    agree("the click");
}

void Soak::stopAndContinue()
{
    const auto process = static_cast<pid_t>(session.client->processId());
    const bool connectionGoes = chance(30);
    note(connectionGoes ? QStringLiteral("suspend, and lose the connection meanwhile")
                        : QStringLiteral("suspend"));
    ::kill(process, SIGSTOP);
    if (chance(70)) {
        write(randomLines(pick(1, 100)));
    }
    QTest::qWait(pick(1, 300));
    if (connectionGoes) {
        // A reset would discard the lines that the program has not read yet.
        session.service.stop();
        model.connectionDown();
        ++counts.losses;
    }
    ::kill(process, SIGCONT);
    ++counts.stops;
    if (connectionGoes) {
        agree("a loss during the suspension");
        session.service.listen();
        waitForConnection();
    } else {
        settle("after the suspension");
    }
}

void Soak::jumpClock()
{
    constexpr int year = 365 * 24 * 3'600;
    if (rate != 1) {
        return;
    }
    const int seconds = chance(50) ? pick(-2 * 3'600, 2 * 3'600) : pick(-9 * year, 9 * year);
    note(QStringLiteral("set the clock to %1 s from now").arg(seconds));
    setClock(seconds);
    ++counts.clockJumps;
    write(randomLines(pick(1, 5)));
    settle("after the clock has been set");
}

void Soak::setClock(qint64 seconds)
{
    QFile file{clockFile()};
    const QByteArray text = QByteArray{seconds < 0 ? "-" : "+"} +
                            QByteArray::number(std::abs(seconds)) +
                            (rate == 1 ? QByteArray{} : " x" + QByteArray::number(rate));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        fail(QStringLiteral("The clock cannot be set: ") + file.errorString());
    }
}

void Soak::staySilent()
{
    note(QStringLiteral("a service that says nothing"));
    ++counts.silences;
    breakConnection();
    agree("the loss");
    session.service.listen();
    waitForConnection();
    click();
    QTest::qWait(pick(1, 1'500));
    agree("silence");
}

void Soak::flood()
{
    note(QStringLiteral("a flood from a service that does not read"));
    ++counts.floods;
    session.service.ignoreInput(true);
    write(randomLines(10'000) + "config-bytes: " + QByteArray::number(++marker) + '\n');
    agreeOnDisplay("a flood");
    press(theSwitch);
    model.click();
    agreeOnDisplay("a click at a service that does not read");
    session.service.ignoreInput(false);
    agree("after the flood");
}

void Soak::press(const QPoint &point)
{
    // Waits until the window has the focus, as a user would.
    await("the window to be active", [](const Testimony &seen) { return seen.active; });
    session.holdButton(origin + point);
    await("the button to be down", [](const Testimony &seen) { return seen.buttonDown; });
    session.releaseButton();
    await("the button to be up", [](const Testimony &seen) { return !seen.buttonDown; });
    session.moveMouse(aside);
}

QByteArray Soak::randomLine()
{
    static const std::array texts{"status: running",
                                  "status: fetching",
                                  "status: fetching config",
                                  "status: starting",
                                  "status: connecting",
                                  "status: stopping",
                                  "status: stopped",
                                  "status: disconnected",
                                  "status: subscription_expired",
                                  "status: failed",
                                  "status: failed: no answer",
                                  "error: no route",
                                  "error: subscription_expired",
                                  "config-bytes: 2048",
                                  "error: \u043d\u0435\u0442 <b>\u4e2d</b>",
                                  "status: Running",
                                  "status:running",
                                  "",
                                  "  ",
                                  "hello"};
    QByteArray line{at(texts, pick(0, sizeOf(texts) - 1))};
    if (line.startsWith("error: no") || line.startsWith("status: failed:")) {
        line += ' ' + QByteArray::number(pick(0, 1'000'000));
    }
    return line + (chance(20) ? "\r\n" : "\n");
}

QByteArray Soak::randomLines(int count)
{
    QByteArray lines;
    for (int i = 0; i < count; ++i) {
        const QByteArray line = randomLine();
        if (line.startsWith("status: ") || line.startsWith("error: ")) {
            ++counts.changes;
        }
        lines += line;
    }
    return lines;
}

void Soak::write(const QByteArray &bytes)
{
    for (int done = 0; done < bytes.size();) {
        const int next = chance(50) ? bytes.size() : pick(done + 1, bytes.size());
        session.service.write(bytes.mid(done, next - done));
        done = next;
    }
    // The model is slow with long texts.
    constexpr int piece = 512;
    for (int done = 0; done < bytes.size(); done += piece) {
        model.receive(bytes.mid(done, piece));
    }
}

Testimony Soak::look(const char *question)
{
    if (session.client->state() != QProcess::Running) {
        fail(QStringLiteral("The program has ended: ") +
             QString::fromUtf8(session.client->readAllStandardError()));
    }
    witness.write(question);
    witness.flush();
    while (!witness.canReadLine()) {
        if (!witness.waitForReadyRead(answerMs)) {
            fail(QStringLiteral("The window does not answer"));
        }
    }
    Testimony seen{QJsonDocument::fromJson(witness.readLine()).object()};
    if (down && seen.state == State::On) {
        fail(QStringLiteral("Connected without a connection"), &seen);
    }
    return seen;
}

void Soak::await(const char *what, const Condition &condition)
{
    const bool came = support::waitFor([&] { return condition(look()); });
    if (!came) {
        const Testimony seen = look();
        fail(QStringLiteral("Waited in vain for ") + QString::fromLatin1(what), &seen);
    }
}

// Ends with a line that no earlier one equals: the last display of a flood may have been there
// before.
void Soak::settle(const char *what)
{
    write("config-bytes: " + QByteArray::number(++marker) + '\n');
    agree(what);
}

void Soak::agreeOnDisplay(const char *what)
{
    await(what, [this](const Testimony &seen) {
        return seen.state == model.state && seen.status == model.status && seen.pill == model.pill;
    });
    down = !model.connected;
}

void Soak::agree(const char *what)
{
    agreeOnDisplay(what);
    if (!support::waitFor([this] { return session.service.lines() == model.sent; })) {
        fail(QStringLiteral("%1: the service has heard \"%2\", not \"%3\"")
                 .arg(QString::fromLatin1(what),
                      QString::fromUtf8(session.service.lines().join('|')),
                      QString::fromUtf8(model.sent.join('|'))));
    }
    session.service.clear();
    model.sent.clear();
    model.notices.clear();
}

void Soak::note(const QString &action)
{
    actions += action;
    while (actions.size() > keptActions) {
        actions.removeFirst();
    }
}

void Soak::fail(const QString &what, const Testimony *seen) const
{
    session.screenshot().save(QStringLiteral("build/soak-failure.png"));
    QString text = what + QStringLiteral(" (build/soak-failure.png)\n  in front: %1 of %2")
                              .arg(session.activeWindow())
                              .arg(session.window);
    if (seen != nullptr) {
        text += QStringLiteral("\n  shown:    %1, \"%2\", \"%3\"; open: %4%5%6%7%8")
                    .arg(QVariant::fromValue(seen->state).toString(), seen->status, seen->pill,
                         seen->menuShows ? QStringLiteral("menu ") : QString{},
                         seen->settings ? QStringLiteral("settings ") : QString{},
                         seen->support ? QStringLiteral("support ") : QString{}, seen->dialog,
                         seen->active ? QString{} : QStringLiteral(" (without the keyboard)")) +
                QStringLiteral("\n  expected: %1, \"%2\", \"%3\"")
                    .arg(QVariant::fromValue(model.state).toString(), model.status, model.pill);
    }
    throw std::runtime_error{text.toStdString()};
}

int Soak::pick(int least, int most)
{
    if (most < least) {
        throw std::logic_error{"Nothing to pick from"};
    }
    return least + static_cast<int>(random() % static_cast<quint32>(most - least + 1));
}

} // namespace soak
