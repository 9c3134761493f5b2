#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

namespace servicesim {

/// The lines of standard input as they come, without holding anything up. The end of the input
/// is the end of the lines and of nothing else.
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
