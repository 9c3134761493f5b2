#pragma once

class QApplication;

namespace app {

/// Installs the catalogue of the stored language, else of the default locale, else English. If none
/// loads, the English source texts are shown. The translator belongs to the application and stays
/// installed below the main window's.
void installStartupTranslator(QApplication &application);

} // namespace app
