#pragma once

class QApplication;

namespace app {

/// Installs the catalogue of the stored language, else of the default locale, else English; none
/// if none loads, which leaves the English source texts. The translator belongs to the
/// application and stays installed below whatever the main window installs later.
void installStartupTranslator(QApplication &application);

} // namespace app
