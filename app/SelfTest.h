#pragma once

#include <QStringList>

class QApplication;

namespace app {

/// The translation self-test: loads a catalogue as a normal start does, writes three lines to a
/// file and ends without a window. It fails only if it cannot open the file.
namespace selftest {

/// True if the option of the self-test is among the arguments.
bool isRequested(int argc, const char *const *argv);

/// True if an argument follows the option: then most likely no window will be shown. Only the
/// application object knows for certain, because it removes Qt's own options.
bool needsNoWindow(int argc, const char *const *argv);

/// True if a locale follows the option. Otherwise the program starts normally.
bool hasLocale(const QStringList &arguments);

/// Returns the exit code: 0, or 2 if the output file could not be opened.
int run(QApplication &application, const QStringList &arguments);

} // namespace selftest

} // namespace app
