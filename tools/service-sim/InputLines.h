#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

namespace servicesim {

/// The lines of standard input as they come, read without blocking. The end of the input ends only
/// the lines.
class InputLines : public QObject
{
    Q_OBJECT

public:
    InputLines();

Q_SIGNALS:
    /// Without its line feed. What follows the last line feed is a line too.
    void lineRead(const QByteArray &line);

private:
    void onReadable();

    QSocketNotifier notifier;
    QByteArray unfinished;
};

} // namespace servicesim
