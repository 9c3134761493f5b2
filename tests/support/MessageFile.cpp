#include "tests/support/MessageFile.h"

#include <QDataStream>
#include <QStringList>

#include <set>

namespace support {

namespace {

constexpr char magic[] = "\x3c\xb8\x64\x18\xca\xef\x9c\x95\xcd\x21\x1c\xbf\x60\xa1\xbd\xdd";
constexpr int magicLength = 16;

enum Section : quint8 {
    Hashes = 0x42,
    Messages = 0x69,
    PluralRules = 0x88,
    Dependencies = 0x96,
    Language = 0xa7,
};

enum Field : quint8 {
    End = 1,
    Translation = 3,
    SourceText = 6,
    Context = 7,
    Comment = 8,
};

void require(bool condition, const char *what)
{
    if (!condition) {
        qFatal("Not a catalogue: %s", what);
    }
}

// Up to the length of a byte array of that kind, which a null string has as well.
QByteArray readBlock(QDataStream &stream)
{
    quint32 length = 0;
    stream >> length;
    if (length == 0xffffffff) {
        return {};
    }
    QByteArray block{static_cast<int>(length), '\0'};
    const int got = stream.readRawData(block.data(), block.size());
    require(got == block.size() && stream.status() == QDataStream::Ok, "cut short");
    return block;
}

QString fromBigEndian(const QByteArray &block)
{
    QString text;
    QDataStream stream{block};
    while (!stream.atEnd()) {
        ushort unit = 0;
        stream >> unit;
        text += QChar{unit};
    }
    return text;
}

MessageFile::Message readMessage(QDataStream &stream)
{
    MessageFile::Message message;
    for (;;) {
        quint8 field = 0;
        stream >> field;
        require(stream.status() == QDataStream::Ok, "a message without an end");
        switch (field) {
        case End:
            return message;
        case Translation:
            message.translations += fromBigEndian(readBlock(stream));
            break;
        case SourceText:
            message.source = QString::fromUtf8(readBlock(stream));
            break;
        case Context:
            message.context = QString::fromUtf8(readBlock(stream));
            break;
        case Comment:
            message.comment = QString::fromUtf8(readBlock(stream));
            break;
        default:
            require(false, "an unknown field");
        }
    }
}

} // namespace

MessageFile MessageFile::parse(const QByteArray &bytes)
{
    require(bytes.startsWith(QByteArray::fromRawData(magic, magicLength)), "magic number");
    MessageFile file;
    QByteArray hashes;
    QByteArray texts;
    QDataStream stream{bytes};
    stream.skipRawData(magicLength);
    while (!stream.atEnd()) {
        quint8 section = 0;
        stream >> section;
        const QByteArray block = readBlock(stream);
        switch (section) {
        case Hashes:
            hashes = block;
            break;
        case Messages:
            texts = block;
            break;
        case PluralRules:
            break;
        case Dependencies:
            file.hasDependencies = true;
            break;
        case Language:
            file.language = QString::fromUtf8(block);
            break;
        default:
            require(false, "an unknown section");
        }
    }

    QDataStream index{hashes};
    std::set<quint32> offsets;
    while (!index.atEnd()) {
        quint32 hash = 0;
        quint32 offset = 0;
        index >> hash >> offset;
        offsets.insert(offset);
    }
    for (const quint32 offset : offsets) {
        QDataStream at{texts};
        at.skipRawData(static_cast<int>(offset));
        file.messages += readMessage(at);
    }
    return file;
}

} // namespace support
