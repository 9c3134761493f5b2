#include "tests/soak/Testimony.h"

namespace soak {

namespace {

QString text(const QJsonObject &told, const char *key)
{
    return told[QLatin1String{key}].toString();
}

int number(const QJsonObject &told, const char *key)
{
    return told[QLatin1String{key}].toInt();
}

bool truth(const QJsonObject &told, const char *key)
{
    return told[QLatin1String{key}].toBool();
}

} // namespace

Testimony::Testimony(const QJsonObject &told)
    : state(static_cast<ui::ToggleSwitch::State>(number(told, "state")))
    , status(text(told, "status"))
    , pill(text(told, "pill"))
    , languages(text(told, "languages").split(QLatin1Char{' '}))
    , notice(text(told, "notice"))
    , dialog(truth(told, "dialogReady") ? text(told, "dialog") : QString{})
    , anyDialog(told.contains(QStringLiteral("dialog")))
    , dialogWindow(static_cast<qulonglong>(told[QStringLiteral("dialogWindow")].toDouble()))
    , active(truth(told, "active"))
    , buttonDown(truth(told, "buttonDown"))
    , menu(truth(told, "menu"))
    , menuShows(truth(told, "menuShows"))
    , settings(truth(told, "settings"))
    , support(truth(told, "support"))
    , switchTop(number(told, "switchTop"))
    , switchBottom(number(told, "switchBottom"))
    , objects(number(told, "objects"))
    , timers(number(told, "timers"))
    , widgets(number(told, "widgets"))
    , windows(number(told, "windows"))
    , kinds(told[QStringLiteral("kinds")].toObject())
{}

} // namespace soak
