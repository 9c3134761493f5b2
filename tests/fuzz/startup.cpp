// What both fuzzers with a window do before the first input.

#include "app/Identity.h"

#include <QApplication>
#include <QLocale>
#include <QLoggingCategory>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    new QApplication{*argc, *argv};
    app::setIdentity();
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QLocale::setDefault(QLocale{QLocale::English, QLocale::UnitedStates});
    return 0;
}
