#include "tests/fuzz/DisplayModel.h"

#include <QCoreApplication>

namespace fuzz {

QString DisplayModel::shown(const char *text)
{
    return QCoreApplication::translate("MainWindow", text);
}

void DisplayModel::show(State newState, const char *newStatus, const QString &newPill)
{
    state = newState;
    status = shown(newStatus);
    if (!newPill.isNull()) {
        pill = newPill;
    }
}

void DisplayModel::connectionUp()
{
    connected = true;
    pill = shown("Service connected");
    sent << R"({"cmd":"set-lang","lang":")" + language.toUtf8() + "\"}"
         << R"({"cmd":"status"})";
}

void DisplayModel::connectionDown()
{
    connected = false;
    partial.clear();
    show(State::Off, "Disconnected", shown("Service is not running"));
}

void DisplayModel::receive(const QByteArray &bytes)
{
    partial += bytes;
    for (int end = partial.indexOf('\n'); end >= 0; end = partial.indexOf('\n')) {
        ++lines;
        line(QString::fromUtf8(partial.constData(), end + 1).trimmed());
        partial.remove(0, end + 1);
    }
}

void DisplayModel::line(const QString &text)
{
    const auto after = [&text](int length) { return text.right(text.size() - length); };
    kindBefore = lastKind;
    if (text.startsWith(QStringLiteral("status: "))) {
        lastKind = statusWord(after(8));
    } else if (text == QStringLiteral("error: subscription_expired")) {
        lastKind = statusWord(after(7));
    } else if (text.startsWith(QStringLiteral("error: "))) {
        show(State::Error, "Error", after(7));
        lastKind = 11;
    } else if (text.startsWith(QStringLiteral("config-bytes: "))) {
        pill = shown("Config %1 bytes").replace(QStringLiteral("%1"), after(14));
        lastKind = 12;
    } else if (text.startsWith(QStringLiteral("notice: "))) {
        notices << after(8);
        lastKind = 13;
    } else {
        lastKind = text.isEmpty() ? 14 : 15;
    }
}

int DisplayModel::statusWord(const QString &word)
{
    lastStatus = word;
    if (word == QStringLiteral("running")) {
        show(State::On, "Connected", shown("Tunnel up"));
        return 1;
    }
    if (word.startsWith(QStringLiteral("fetching"))) {
        show(State::Connecting, "Connecting…", shown("Fetching config…"));
        return 2;
    }
    if (word == QStringLiteral("starting") || word == QStringLiteral("connecting")) {
        show(State::Connecting, "Connecting…");
        return word == QStringLiteral("starting") ? 3 : 4;
    }
    if (word == QStringLiteral("stopping")) {
        show(State::Disconnecting, "Disconnecting…");
        return 5;
    }
    if (word == QStringLiteral("stopped") || word == QStringLiteral("disconnected")) {
        show(State::Off, "Disconnected", shown("Idle"));
        return word == QStringLiteral("stopped") ? 6 : 7;
    }
    if (word == QStringLiteral("subscription_expired")) {
        show(State::Error, "Error", shown("Subscription expired"));
        return 8;
    }
    if (word.startsWith(QStringLiteral("failed"))) {
        show(State::Error, "Failed", word);
        return 9;
    }
    return 10;
}

void DisplayModel::click()
{
    if (!connected) {
        pill = shown("Service is not running");
    } else if (state == State::Off || state == State::Error) {
        show(State::Connecting, "Connecting…");
        sent << R"({"cmd":"connect"})";
    } else if (state == State::On) {
        show(State::Disconnecting, "Disconnecting…");
        sent << R"({"cmd":"disconnect"})";
    }
}

void DisplayModel::languageChosen(const QString &tag)
{
    language = tag;
    if (!connected) {
        show(state, "Disconnected", shown("Service is not running"));
        return;
    }
    sent << R"({"cmd":"set-lang","lang":")" + tag.toUtf8() + "\"}";
    if (lastStatus.isEmpty()) {
        pill = shown("Service connected");
    } else {
        statusWord(lastStatus);
    }
}

} // namespace fuzz
