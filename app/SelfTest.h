#pragma once

#include <QStringList>

class QApplication;

namespace app {

/// The translation self-test: loads a catalogue as a normal start would, writes three lines to a
/// file, and ends without a window. Its only failure is the output file.
namespace selftest {

/// True if the word that asks for the self-test is among the arguments, byte for byte.
bool isAskedFor(int argc, const char *const *argv);

/// True if another argument follows the first such word, so that the run will in all likelihood be
/// one without a window. Only the application object knows for certain: it takes out the toolkit's
/// own options.
bool promisesNoWindow(int argc, const char *const *argv);

/// True if that word is followed by the name of a locale. Without one the program starts
/// normally.
bool hasLocale(const QStringList &arguments);

/// Exit code of the self-test: 0, or 2 if the output file could not be opened.
int run(QApplication &application, const QStringList &arguments);

} // namespace selftest

} // namespace app
