#pragma once

#include <QString>

/// The one rule for referral codes and the one place where the code is kept.
///
/// A code is exactly six ASCII letters or digits, in either case, and nothing else: no space, no
/// line feed at the end, no look-alike letter.
bool isValidReferralCode(const QString &code);

/// What is stored, valid or not; empty if nothing is.
QString storedReferralCode();
void storeReferralCode(const QString &code);
