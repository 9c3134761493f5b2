#include "app/StartupTranslator.h"

#include "ui/Catalogue.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

namespace app {

void installStartupTranslator(QApplication &application)
{
    auto *const translator = new QTranslator{&application};
    QStringList candidates{QLocale{}.name(), ui::catalogue::localeTag(),
                           ui::catalogue::fallbackTag()};
    const QString stored = ui::catalogue::storedTag();
    if (!stored.isEmpty()) {
        candidates.prepend(stored);
    }
    for (const QString &tag : qAsConst(candidates)) {
        if (ui::catalogue::load(*translator, tag)) {
            QCoreApplication::installTranslator(translator);
            return;
        }
    }
}

} // namespace app
