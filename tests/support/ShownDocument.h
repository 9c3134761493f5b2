#pragma once

#include <QLabel>
#include <QTextDocument>

namespace support {

/// What a notice's label lays out and paints. The label also holds an empty document, which refuses
/// whatever this one asks for.
inline QTextDocument *shownDocument(const QLabel *label)
{
    return label->findChildren<QTextDocument *>().constLast();
}

} // namespace support
