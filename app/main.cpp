#include "app/Identity.h"
#include "app/LibrarySearch.h"
#include "app/OrderlyFailure.h"
#include "app/PlainDrawing.h"
#include "app/ScreenScale.h"
#include "app/SelfTest.h"
#include "app/SessionEnd.h"
#include "app/SingleInstance.h"
#include "app/StartupTranslator.h"
#include "app/Windowless.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QSettings>

#include <optional>

int main(int argc, char *argv[])
{
    app::keepLibrarySearchAtHome();
    const bool selfTest = app::selftest::isAskedFor(argc, argv);
    app::SingleInstance instance;
    if (!selfTest && !instance.claim()) {
        return 0;
    }
    if (app::selftest::promisesNoWindow(argc, argv)) {
        app::allowMissingDisplay();
    }

    std::optional<app::OrderlyFailure> orderlyFailure{std::in_place};
    std::optional<app::PlainDrawing> plainDrawing{std::in_place};
    std::optional<app::ScreenScale> screenScale{std::in_place};
    QApplication application{argc, argv};
    screenScale.reset();
    orderlyFailure.reset();
    const app::SessionEnd sessionEnd{application};
    app::setIdentity();
    const QStringList arguments = QCoreApplication::arguments();
    if (selfTest && app::selftest::hasLocale(arguments)) {
        return app::selftest::run(application, arguments);
    }

    // Where no file can be written, a choice is kept for as long as one of these lives.
    const QSettings settings;
    app::installStartupTranslator(application);
    MainWindow window;
    const app::SingleInstance::ShowRequests showRequests{instance, &window};
    window.show();
    plainDrawing.reset();
    return QApplication::exec();
}
