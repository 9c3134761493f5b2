#include "app/Application.h"
#include "app/QtEnvironment.h"
#include "app/SelfTest.h"
#include "app/SessionStart.h"
#include "app/SingleInstance.h"
#include "app/StartupTranslator.h"
#include "ui/MainWindow.h"

#include <QSettings>

#include <optional>

int main(int argc, char *argv[])
{
    using app::QtEnvironment;

    std::optional<QtEnvironment> environment{std::in_place, app::selftest::needsNoWindow(argc, argv)
                                                                ? QtEnvironment::Run::WithoutWindow
                                                                : QtEnvironment::Run::WithWindow};

    // 1. The option of the translation self-test.
    const bool selfTest = app::selftest::isRequested(argc, argv);

    // 2. The single instance: a later start shows the window of the first. The self-test may run
    //    beside it.
    app::SingleInstance instance;
    if (!selfTest && !instance.claim()) {
        return 0;
    }

    // 3. The application object, with its names and version.
    const bool autostarted = app::takeAutostartId();
    app::Application application{argc, argv};

    // 4. The self-test, if a locale was given; otherwise a normal run without a claim.
    const QStringList arguments = QCoreApplication::arguments();
    if (selfTest && app::selftest::hasLocale(arguments)) {
        return app::selftest::run(application, arguments);
    }

    // 5. The normal run, after a wait for the tray if the session started it. Where no file can be
    //    written, QSettings keeps a choice in memory while one of its objects exists.
    const QSettings settings;
    app::installStartupTranslator(application);
    if (!app::waitForTray(autostarted, instance)) {
        return 0;
    }
    MainWindow window;
    const app::SingleInstance::ShowRequests showRequests{instance, &window};
    window.show();
    environment.reset();
    return QApplication::exec();
}
