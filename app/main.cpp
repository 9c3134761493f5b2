#include "app/Application.h"
#include "app/QtEnvironment.h"
#include "app/SelfTest.h"
#include "app/SingleInstance.h"
#include "app/StartupTranslator.h"
#include "ui/MainWindow.h"

#include <QSettings>

#include <optional>

int main(int argc, char *argv[])
{
    using app::QtEnvironment;

    std::optional<QtEnvironment> environment{std::in_place,
                                             app::selftest::promisesNoWindow(argc, argv)
                                                 ? QtEnvironment::Run::WithoutWindow
                                                 : QtEnvironment::Run::WithWindow};

    // 1. Whether the arguments ask for the translation self-test.
    const bool selfTest = app::selftest::isAskedFor(argc, argv);

    // 2. The one instance: a later start has the first one's window shown. The self-test may run
    //    beside it.
    app::SingleInstance instance;
    if (!selfTest && !instance.claim()) {
        return 0;
    }

    // 3. The application object, with its names and version.
    app::Application application{argc, argv};

    // 4. The self-test, if it has been given a locale; otherwise a normal run without a claim.
    const QStringList arguments = QCoreApplication::arguments();
    if (selfTest && app::selftest::hasLocale(arguments)) {
        return app::selftest::run(application, arguments);
    }

    // 5. The normal run. Where no file can be written, QSettings keeps a choice for as long as an
    //    object of it lives.
    const QSettings settings;
    app::installStartupTranslator(application);
    MainWindow window;
    const app::SingleInstance::ShowRequests showRequests{instance, &window};
    window.show();
    environment.reset();
    return QApplication::exec();
}
