#include "ui/ReferralCode.h"

#include <QRegularExpression>
#include <QSettings>

namespace {

const QLatin1String settingsKey{"referral_code"};

} // namespace

bool isValidReferralCode(const QString &code)
{
    static const QRegularExpression pattern{QStringLiteral("\\A[A-Za-z0-9]{6}\\z")};
    return pattern.match(code).hasMatch();
}

QString storedReferralCode()
{
    return QSettings{}.value(settingsKey).toString();
}

void storeReferralCode(const QString &code)
{
    QSettings{}.setValue(settingsKey, code);
}
