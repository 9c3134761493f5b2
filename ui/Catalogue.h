#pragma once

#include <QString>

class QTranslator;

/// Which language the interface speaks: the stored choice, the system's, and where the catalogue
/// of a language lies. It installs no translators.
namespace ui::catalogue {

/// The language whose catalogue is tried last.
QString fallbackTag();

/// Path of the compiled-in catalogue for `tag`, which is not checked.
QString path(const QString &tag);

/// Loads the catalogue of exactly this tag; "pt_BR" does not find "pt". False, and an empty
/// translator, if there is none.
bool load(QTranslator &translator, const QString &tag);

/// The language that the user chose on the settings page; empty if none was chosen.
QString storedTag();
void storeTag(const QString &tag);

/// The first two characters of the default locale's BCP 47 name, for example "de".
QString localeTag();

/// The stored tag if there is one, else the locale's. May name a language without a catalogue.
QString currentTag();

} // namespace ui::catalogue
