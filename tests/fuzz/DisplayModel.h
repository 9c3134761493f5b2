#pragma once

#include "ui/ToggleSwitch.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace fuzz {

/// What the main screen has to show, and the link to carry, worked out anew and plainly: line by
/// line, with nothing put off. Shares no code with the window but the catalogues.
class DisplayModel
{
public:
    using State = ui::ToggleSwitch::State;

    void linkUp();
    void linkDown();
    /// Bytes as the service writes them, in any portions.
    void receive(const QByteArray &bytes);
    void click();
    /// The catalogue of `tag` is installed already.
    void languageChosen(const QString &tag);

    State state = State::Off;
    QString status = shown("Disconnected");
    QString pill = shown("Waiting for service…");
    QString language = QStringLiteral("en");
    bool linked = false;

    /// How many whole lines have come, over all links.
    qint64 lines = 0;
    /// Every notice since forgetNotices(), in order.
    QStringList notices;
    /// What the client has to have sent, over all links, line by line.
    QList<QByteArray> sent;

    /// What kind of line was the last one, and the one before: numbers below lineKinds.
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
