#pragma once

#include "ui/ToggleSwitch.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace fuzz {

/// A model of what the main screen has to show and the connection to carry, which takes each line
/// at once and puts nothing off. Shares no code with the window but the catalogues.
class DisplayModel
{
public:
    using State = ui::ToggleSwitch::State;

    void connectionUp();
    void connectionDown();
    /// Bytes as the service writes them, in any portions.
    void receive(const QByteArray &bytes);
    void click();
    /// The catalogue of `tag` is installed already.
    void languageChosen(const QString &tag);

    State state = State::Off;
    QString status = shown("Disconnected");
    QString pill = shown("Waiting for service…");
    QString language = QStringLiteral("en");
    bool connected = false;

    /// How many whole lines have come, over all connections.
    qint64 lines = 0;
    /// Every notice since forgetNotices(), in order.
    QStringList notices;
    /// What the client has to have sent, over all connections, line by line.
    QList<QByteArray> sent;

    /// The kinds of the last line and of the one before, as numbers below lineKinds.
    static constexpr int lineKinds = 16;
    int lastKind = 0;
    int kindBefore = 0;

private:
    static QString shown(const char *text);
    void show(State newState, const char *newStatus, const QString &newPill = {});
    void line(const QString &text);
    int statusWord(const QString &word);

    QString lastStatus;
    QByteArray partial;
};

} // namespace fuzz
