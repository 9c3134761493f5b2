#include "tests/support/StyleRules.h"

#include <QStringList>

namespace support {

StyleRules styleRules(const QString &sheet)
{
    StyleRules rules;
    const QStringList blocks = sheet.split(QLatin1Char{'}'}, Qt::SkipEmptyParts);
    for (const QString &block : blocks) {
        const QString selector = block.section(QLatin1Char{'{'}, 0, 0).simplified();
        const QStringList declarations =
            block.section(QLatin1Char{'{'}, 1).split(QLatin1Char{';'}, Qt::SkipEmptyParts);
        for (const QString &declaration : declarations) {
            const QString property = declaration.section(QLatin1Char{':'}, 0, 0).simplified();
            if (!property.isEmpty()) {
                rules[selector][property] = declaration.section(QLatin1Char{':'}, 1).simplified();
            }
        }
    }
    return rules;
}

} // namespace support
