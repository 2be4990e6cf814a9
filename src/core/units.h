#pragma once

#include <QString>

namespace tessa {

/// Degrees Fahrenheit for degrees Celsius, and back, in double precision. The quotients 9 / 5 and
/// 5 / 9 are formed first, so the last digits are those of this order of evaluation.
double CelsiusToFahrenheit(double celsius);
double FahrenheitToCelsius(double fahrenheit);

/// The number at the start of `text` as ParseLeadingNumber reads it, 0 when there is none. A degree
/// sign ends the number.
double ParseNumber(const QString& text);

/// "0.0" and "0.00": one and two decimals, half away from zero, a point in every locale.
QString FormatTenths(double value);
QString FormatHundredths(double value);

/// `celsius` in the unit `displayUnits` ('C' or 'F').
double InDisplayUnits(double celsius, char displayUnits);
double FromDisplayUnits(double value, char displayUnits);
/// The same as text in "0.0".
QString TemperatureText(double celsius, char displayUnits);

}  // namespace tessa
