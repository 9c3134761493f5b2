#include "app/SelfTest.h"

#include "app/StartupTranslator.h"

#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QTextStream>

#include <cstring>

namespace app::selftest {

namespace {

constexpr char localeOption[] = "--test-i18n";
constexpr char outputOption[] = "--out";
constexpr char defaultOutput[] = "i18n-test.out";

constexpr int cannotWrite = 2;

// The argument after `option`; null without the option or the argument.
QString valueOf(const char *option, const QStringList &arguments)
{
    const int index = arguments.indexOf(QLatin1String{option});
    return index < 0 ? QString{} : arguments.value(index + 1);
}

// `argc` without the option.
int indexOfOption(int argc, const char *const *argv)
{
    int index = 1;
    while (index < argc && std::strcmp(argv[index], localeOption) != 0) {
        ++index;
    }
    return index;
}

} // namespace

bool isRequested(int argc, const char *const *argv)
{
    return indexOfOption(argc, argv) < argc;
}

bool needsNoWindow(int argc, const char *const *argv)
{
    return indexOfOption(argc, argv) + 1 < argc;
}

bool hasLocale(const QStringList &arguments)
{
    return !valueOf(localeOption, arguments).isNull();
}

int run(QApplication &application, const QStringList &arguments)
{
    QLocale::setDefault(QLocale{valueOf(localeOption, arguments)});
    installStartupTranslator(application);

    const QString named = valueOf(outputOption, arguments);
    QFile file{named.isNull() ? QString{QLatin1String{defaultOutput}} : named};
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        return cannotWrite;
    }
    const auto translated = [](const char *text) {
        return QCoreApplication::translate("MainWindow", text);
    };
    QTextStream stream{&file};
    stream << "locale=" << QLocale{}.name() << '\n'
           << "Connected=" << translated("Connected") << '\n'
           << "Disconnected=" << translated("Disconnected") << '\n';
    return 0;
}

} // namespace app::selftest
