#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace support {

/// The content of a released catalogue (.qm), parsed without QTranslator, which only looks texts up
/// and cannot list them.
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

    /// Ends the test run if the bytes are no catalogue.
    static MessageFile parse(const QByteArray &bytes);
};

} // namespace support
