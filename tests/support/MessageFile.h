#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace support {

/// What stands in a released catalogue (.qm), read from its bytes without the toolkit's help: a
/// translator only answers questions and cannot say what else it holds.
struct MessageFile
{
    struct Message
    {
        QString context;
        QString source;
        QString comment;
        /// One for each plural form.
        QStringList translations;
    };

    QString language;
    bool hasDependencies = false;
    QList<Message> messages;

    /// Fails the test run if the bytes are no catalogue.
    static MessageFile parse(const QByteArray &bytes);
};

} // namespace support
