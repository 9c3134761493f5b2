#pragma once

#include <QMap>
#include <QString>

namespace support {

/// The declarations of a style sheet: selector, then property, then value. Of a selector or
/// property that comes twice, the later counts.
using StyleRules = QMap<QString, QMap<QString, QString>>;

StyleRules styleRules(const QString &sheet);

} // namespace support
