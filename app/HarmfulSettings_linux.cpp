#include "app/HarmfulSettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>

namespace app {

namespace {

constexpr int octal = 8;
constexpr int hexadecimal = 16;

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Larger than those of any base for what is no digit.
int digitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    return isLetter(c) ? (c | ' ') - 'a' + 10 : hexadecimal;
}

// What the rest of an escape stands for; zero if that can be no part of a word. The toolkit keeps
// the last 16 bits of a number, whatever its length.
char passEscape(const char *&place, const char *end)
{
    const char *const start = place;
    const bool isHexadecimal = place != end && *place == 'x';
    const int base = isHexadecimal ? hexadecimal : octal;
    place += isHexadecimal ? 1 : 0;
    quint16 character = 0;
    while (place != end && digitValue(*place) < base) {
        character = static_cast<quint16>(character * base + digitValue(*place++));
    }
    if (place == start && place != end) {
        ++place;
    }
    return character < 0x80 ? static_cast<char>(character) : '\0';
}

// What a file of settings can spell. The toolkit passes over quotes, broken lines and more within a
// word; whatever is no part of one is left out here, even where it would end the word.
QByteArray spelledOut(const QByteArray &settings)
{
    QByteArray result;
    result.reserve(settings.size());
    const char *place = settings.cbegin();
    while (place != settings.cend()) {
        char c = *place++;
        if (c == '\\') {
            c = passEscape(place, settings.cend());
        }
        if (isLetter(c) || c == '@' || c == '(') {
            result += c;
        }
    }
    return result;
}

bool isHarmful(const QString &path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = spelledOut(file.readAll());
    return text.contains("@Variant(") || text.contains("@DateTime(");
}

bool setAside(const QString &path)
{
    QString aside = path;
    aside.insert(path.lastIndexOf(QLatin1Char{'.'}), QStringLiteral(".unreadable"));
    return std::rename(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) ==
           0;
}

// No folder, so there is no file in it, and none can be made.
void leaveUnread(QSettings::Scope scope)
{
    QSettings::setPath(QSettings::NativeFormat, scope, QStringLiteral("/dev/null"));
}

// One of the files that the client reads there.
bool holdsHarmfulFile(const QString &folder)
{
    const auto names = {"/IXOVPN.conf", "/IXOVPN/IxoClient.conf", "/IXOVPN/IxoService.conf"};
    return std::any_of(names.begin(), names.end(), [&folder](const char *name) {
        return isHarmful(folder + QLatin1String{name});
    });
}

} // namespace

void setHarmfulSettingsAside()
{
    const QSettings ofAllPrograms{QSettings::UserScope, QCoreApplication::organizationName()};
    for (const QString &path : {QSettings{}.fileName(), ofAllPrograms.fileName()}) {
        if (isHarmful(path) && !setAside(path)) {
            leaveUnread(QSettings::UserScope);
        }
    }
    // The first is the user's.
    const QStringList folders =
        QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation).mid(1);
    if (std::any_of(folders.cbegin(), folders.cend(), holdsHarmfulFile)) {
        leaveUnread(QSettings::SystemScope);
    }
}

} // namespace app
