#include "app/StartupTranslator.h"

#include "ui/Catalogue.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

namespace app {

void installStartupTranslator(QApplication &application)
{
    auto *const translator = new QTranslator{&application};
    for (const QString &tag : {ui::catalogue::storedTag(), QLocale{}.name(),
                               ui::catalogue::localeTag(), ui::catalogue::fallbackTag()}) {
        if (ui::catalogue::load(*translator, tag)) {
            QCoreApplication::installTranslator(translator);
            return;
        }
    }
}

} // namespace app
