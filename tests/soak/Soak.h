#pragma once

#include "tests/fuzz/DisplayModel.h"
#include "tests/soak/Figures.h"
#include "tests/soak/Testimony.h"
#include "tests/support/ClientSession.h"

#include <QElapsedTimer>
#include <QImage>
#include <QLocalSocket>
#include <QStringList>
#include <QTranslator>

#include <functional>
#include <random>

namespace soak {

/// What a run can be told to reach.
struct Goals
{
    int losses = 0;
    int changes = 0;
    int languages = 0;
    int notices = 0;
};

/// What a run has done.
struct Counts : Goals
{
    int pages = 0;
    int clicks = 0;
    int stops = 0;
    int clockJumps = 0;
    int silences = 0;
    int floods = 0;
};

/// Injects faults into the real program, in an order that a seed decides: after every step it must
/// show what a model says and have sent what the model says, and at the end hold no more resources
/// than at the start. The first failure throws std::runtime_error.
class Soak
{
public:
    /// From 100 on, Qt's clean-up of its font cache every five minutes would wake the program in
    /// each of the idle periods that are measured.
    static constexpr int fastestRate = 50;

    /// With the path of the program. Its clock runs `rate` times as fast as ours, 1 to
    /// `fastestRate`, so that it reconnects sooner; only at rate 1 does the clock also jump.
    Soak(const QString &program, quint32 seed, int rate);

    /// Goes on for so many seconds, one or more, after it has warmed up.
    void runFor(int seconds);
    /// Goes on until it has done all of `goals` as often or oftener.
    void runUntil(const Goals &goals);

    const Counts &done() const { return counts; }
    /// The last things that were done, oldest first.
    const QStringList &history() const { return actions; }

private:
    struct Holdings
    {
        Figures process;
        Testimony inside;
    };
    struct Step
    {
        int weight;
        void (Soak::*act)();
    };
    using Condition = std::function<bool(const Testimony &)>;

    void run(const std::function<bool()> &enough);
    void start();
    void warmUp();
    void anyStep();
    /// Returns once the program has slept through an idle period.
    Holdings holdings();
    void compare(const Holdings &before, const Holdings &after) const;
    void comparePictures();
    /// What the program shows after each of these lines, and without a service.
    QList<QImage> pictures(const QList<QByteArray> &lines);
    /// Waits until the painting has come to rest, but for the switch if that pulses.
    QImage picture(bool pulsing);

    // Each leaves the program connected, with nothing open.
    void changeStates();
    void changeStatesOneByOne();
    void loseConnection();
    void chooseLanguage();
    void showNotices();
    void openPages();
    void click();
    void stopAndContinue();
    void jumpClock();
    void staySilent();
    void flood();

    void breakConnection();
    void waitForConnection();
    void switchTo(int row);
    void openAndClose(const QPoint &row);
    /// Waits until the dialog has the focus, as a user would.
    void closeDialog();
    void openMenu();
    void press(const QPoint &point);
    void setClock(qint64 seconds);

    QByteArray randomLine();
    QByteArray randomLines(int count);
    void write(const QByteArray &bytes);

    /// See Witness.
    Testimony look(const char *question = "\n");
    void await(const char *what, const Condition &condition);
    /// Waits until the program shows what the model says, and has sent it.
    void agree(const char *what);
    /// agree(), once the program has handled all lines.
    void settle(const char *what);
    void agreeOnDisplay(const char *what);
    void note(const QString &action);
    [[noreturn]] void fail(const QString &what, const Testimony *seen = nullptr) const;
    /// From `least` to `most`, both included.
    int pick(int least, int most);
    bool chance(int percent) { return pick(1, 100) <= percent; }

    support::ClientSession session;
    int rate;
    std::mt19937 random;
    QElapsedTimer sinceWarm;
    QLocalSocket witness;
    QTranslator translator;
    fuzz::DisplayModel model;
    QStringList languageTags;
    QPoint origin;
    /// The program has shown the loss of the connection, and no line has been sent since.
    bool down = false;
    int noticeNumber = 0;
    int marker = 0;
    Counts counts;
    QStringList actions;
};

} // namespace soak
