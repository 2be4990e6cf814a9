#pragma once

#include <QDateTime>
#include <QString>
#include <optional>
#include <string>

namespace tessa {

// A field of blanks or zero bytes gives an empty text.

/// "h:nn:ss AM/PM" from the digits HHMMSS. Digits that are no time stay as the joined text.
QString TimeFromDigits(const std::string& digits);

/// "m/dd/yyyy" from the digits YYMMDD; years below 80 are 20yy. Digits that are no date stay as the
/// joined text MM/DD/YY.
QString DateFromDigits(const std::string& digits);

/// The moment that a day count from 1899-12-30, with its fraction of the day, stands for; nothing
/// for what is no day before the year 10000.
std::optional<QDateTime> MomentOfDays(double days);

}  // namespace tessa
