#include "app/HarmfulSettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>

#include <cstdio>

namespace app {

namespace {

// The toolkit keeps the last 16 bits of a number, whatever its length.
QChar numbered(const QString &hexadecimal, const QString &octal)
{
    return QChar{static_cast<ushort>(octal.isEmpty() ? hexadecimal.right(4).toUInt(nullptr, 16)
                                                     : octal.right(6).toUInt(nullptr, 8))};
}

// What a file of settings can spell: escapes by number are their characters. All else that the
// toolkit passes over within a word is left out, even where it would end the word.
QString spelledOut(const QString &settings)
{
    static const QRegularExpression escape{QStringLiteral(R"(\\(?:x([0-9a-fA-F]++)|([0-7]++)|.?))"),
                                           QRegularExpression::DotMatchesEverythingOption};
    static const QRegularExpression passedOver{QStringLiteral(R"(["\s])")};
    QString result;
    int end = 0;
    for (auto escapes = escape.globalMatch(settings); escapes.hasNext();) {
        const QRegularExpressionMatch match = escapes.next();
        result += settings.midRef(end, match.capturedStart() - end);
        if (match.lastCapturedIndex() > 0) {
            result += numbered(match.captured(1), match.captured(2));
        }
        end = match.capturedEnd();
    }
    result += settings.midRef(end);
    return result.remove(passedOver);
}

bool isHarmful(const QString &path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray settings = file.readAll();
    return (settings.contains('@') || settings.contains('\\')) &&
           spelledOut(QString::fromLatin1(settings)).contains(QLatin1String{"@Variant("});
}

} // namespace

void setHarmfulSettingsAside()
{
    const QSettings ofAllPrograms{QSettings::UserScope, QCoreApplication::organizationName()};
    for (const QString &path : {QSettings{}.fileName(), ofAllPrograms.fileName()}) {
        QString aside = path;
        aside.insert(path.lastIndexOf(QLatin1Char{'.'}), QStringLiteral(".unreadable"));
        if (isHarmful(path) && std::rename(QFile::encodeName(path).constData(),
                                           QFile::encodeName(aside).constData()) != 0) {
            // No folder, so there is no file in it, and none can be made.
            QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                               QStringLiteral("/dev/null"));
        }
    }
}

} // namespace app
