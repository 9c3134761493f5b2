#pragma once

#include <QString>

class QTranslator;

/// The language of the interface and the catalogues that are compiled in. Installs no translators.
namespace ui::catalogue {

/// The language whose catalogue is loaded last.
QString fallbackTag();

/// The resource path of the catalogue of `tag`, which is not checked.
QString path(const QString &tag);

/// Loads the catalogue of exactly this tag: "pt_BR" does not find "pt".
bool load(QTranslator &translator, const QString &tag);

/// The language that the user chose on the settings page; empty if none was chosen.
QString storedTag();
void storeTag(const QString &tag);

/// The first two characters of the default locale's BCP 47 name, for example "de".
QString localeTag();

/// What the service is told: the stored tag if there is one, else the locale's. May name a language
/// without a catalogue, while the start-up translator falls back to one that exists.
QString currentTag();

} // namespace ui::catalogue
