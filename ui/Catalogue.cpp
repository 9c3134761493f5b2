#include "ui/Catalogue.h"

#include <QLocale>
#include <QSettings>
#include <QTranslator>

namespace ui::catalogue {

namespace {

const QLatin1String languageKey{"language"};

} // namespace

QString fallbackTag()
{
    return QStringLiteral("en");
}

QString path(const QString &tag)
{
    return QStringLiteral(":/i18n/ixovpn_%1.qm").arg(tag);
}

bool load(QTranslator &translator, const QString &tag)
{
    // With null strings Qt would use its own delimiters and suffix, and would find the catalogue of
    // a shorter tag.
    const QString none = QStringLiteral("");
    return translator.load(path(tag), QString{}, none, none);
}

QString storedTag()
{
    return QSettings{}.value(languageKey).toString();
}

void storeTag(const QString &tag)
{
    QSettings{}.setValue(languageKey, tag);
}

QString localeTag()
{
    return QLocale{}.bcp47Name().left(2);
}

QString currentTag()
{
    const QString stored = storedTag();
    return stored.isEmpty() ? localeTag() : stored;
}

} // namespace ui::catalogue
