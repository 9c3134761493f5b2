#include "ui/ReferralCode.h"

#include <QRegularExpression>
#include <QSettings>

bool isValidReferralCode(const QString &code)
{
    static const QRegularExpression pattern{QStringLiteral("^[A-Za-z0-9]{6}$")};
    // The pattern's end also stands before a line feed that ends the text.
    return pattern.match(code).capturedLength() == code.size() && !code.isEmpty();
}

namespace ui::referralcode {

namespace {

QString settingsKey()
{
    return QStringLiteral("referral_code");
}

} // namespace

QString stored()
{
    return QSettings{}.value(settingsKey()).toString();
}

void store(const QString &code)
{
    QSettings{}.setValue(settingsKey(), code);
}

} // namespace ui::referralcode
