#include "core/date_time_text.h"

#include <QDate>
#include <QTime>
#include <cmath>
#include <string_view>

#include "core/units.h"
#include "formats/ansi_text.h"

namespace tessa {
namespace {

constexpr int kFirstYearOf1900 = 80;

/// Two digits of the field, whatever they are.
QString Pair(const std::string& digits, std::size_t index) {
  const std::string padded = digits + std::string(6, ' ');
  return QString::fromStdString(AnsiToUtf8(WithoutZeroBytes(padded.substr(2 * index, 2))));
}

/// The pair as a number, or -1 when it is not two digits.
int PairNumber(const std::string& digits, std::size_t index) {
  bool isNumber = false;
  const QString pair = Pair(digits, index);
  const int value = pair.toInt(&isNumber);
  return isNumber && pair.size() == 2 && pair[0].isDigit() ? value : -1;
}

/// True for a field that nothing was written to.
bool IsEmptyField(const std::string& digits) {
  return digits.find_first_not_of(std::string_view(" \0", 2)) == std::string::npos;
}

}  // namespace

QString TimeFromDigits(const std::string& digits) {
  if (IsEmptyField(digits)) {
    return {};
  }
  const QTime time(PairNumber(digits, 0), PairNumber(digits, 1), PairNumber(digits, 2));
  if (!time.isValid()) {
    return QString::number(static_cast<int>(ParseNumber(Pair(digits, 0)))) + QLatin1Char(':') +
           Pair(digits, 1) + QLatin1Char(':') + Pair(digits, 2);
  }
  const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
  return QStringLiteral("%1:%2:%3 %4")
      .arg(hour)
      .arg(time.minute(), 2, 10, QLatin1Char('0'))
      .arg(time.second(), 2, 10, QLatin1Char('0'))
      .arg(time.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
}

QString DateFromDigits(const std::string& digits) {
  if (IsEmptyField(digits)) {
    return {};
  }
  const int year = PairNumber(digits, 0);
  const QDate date(year < kFirstYearOf1900 ? 2000 + year : 1900 + year, PairNumber(digits, 1),
                   PairNumber(digits, 2));
  if (year < 0 || !date.isValid()) {
    return Pair(digits, 1) + QLatin1Char('/') + Pair(digits, 2) + QLatin1Char('/') +
           Pair(digits, 0);
  }
  return QStringLiteral("%1/%2/%3")
      .arg(date.month())
      .arg(date.day(), 2, 10, QLatin1Char('0'))
      .arg(date.year());
}

std::optional<QDateTime> MomentOfDays(double days) {
  constexpr double kLastDay = 2958465.999999;  // The end of the year 9999.
  constexpr double kSecondsPerDay = 86400.0;
  if (!(days >= 0.0 && days <= kLastDay)) {
    return std::nullopt;
  }
  const double wholeDays = std::floor(days);
  const auto seconds = static_cast<qint64>(std::nearbyint((days - wholeDays) * kSecondsPerDay));
  const QDateTime start(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
  return start.addDays(static_cast<qint64>(wholeDays)).addSecs(seconds);
}

}  // namespace tessa
