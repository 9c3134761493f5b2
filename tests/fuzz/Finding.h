#pragma once

#include <QString>

#include <cstdlib>
#include <iostream>

namespace fuzz {

/// Ends the run as a crash would, so that the fuzzer keeps the input, unless `holds`.
inline void require(bool holds, const char *what, const QString &details = {})
{
    if (!holds) {
        std::cerr << "FINDING: " << what << ' ' << qPrintable(details) << std::endl;
        std::abort();
    }
}

inline void requireEqual(const QString &actual, const QString &expected, const char *what)
{
    require(actual == expected, what,
            QStringLiteral("is \"%1\", should be \"%2\"").arg(actual, expected));
}

} // namespace fuzz
