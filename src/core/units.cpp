#include "core/units.h"

#include "formats/number_text.h"

namespace tessa {
namespace {

constexpr QChar kDegreeSign(0xB0);

}  // namespace

double CelsiusToFahrenheit(double celsius) {
  return celsius * (9.0 / 5.0) + 32.0;
}

double FahrenheitToCelsius(double fahrenheit) {
  return (fahrenheit - 32.0) * (5.0 / 9.0);
}

double ParseNumber(const QString& text) {
  const qsizetype degree = text.indexOf(kDegreeSign);
  return ParseLeadingNumber((degree < 0 ? text : text.left(degree)).toStdString());
}

QString FormatTenths(double value) {
  return QString::fromStdString(FormatFixed(value, 1));
}

QString FormatHundredths(double value) {
  return QString::fromStdString(FormatFixed(value, 2));
}

double InDisplayUnits(double celsius, char displayUnits) {
  return displayUnits == 'F' ? CelsiusToFahrenheit(celsius) : celsius;
}

double FromDisplayUnits(double value, char displayUnits) {
  return displayUnits == 'F' ? FahrenheitToCelsius(value) : value;
}

QString TemperatureText(double celsius, char displayUnits) {
  return FormatTenths(InDisplayUnits(celsius, displayUnits));
}

}  // namespace tessa
