#include "view/units.h"

#include "core/view_state.h"
#include "formats/number_text.h"
#include "view/range_control.h"
#include "view/range_slider.h"

namespace tessa {
namespace {

constexpr QChar kDegreeSign(0xB0);

/// The common road of both switches: `convert` takes a number from the other unit into this one.
void SwitchUnit(OpenImage& image, ViewState& view, const RangeSlider& slider,
                const Strings& strings, char unit, double (*convert)(double)) {
  if (view.SuppressEvents) {
    return;
  }
  view.CelsiusSelected = unit == 'C';
  view.FahrenheitSelected = unit == 'F';
  if (!image.HasTemperature) {
    image.DisplayUnits = unit;
    return;
  }
  if (image.DisplayUnits == unit) {
    return;
  }
  view.LimitMaxText = TemperatureText(slider.ScaleMaxLimit(), unit);
  view.LimitMinText = TemperatureText(slider.ScaleMinLimit(), unit);
  for (OptionalTemperature& spot : image.SpotTemperatures) {
    if (spot.Mark != OptionalTemperature::kUnset) {
      spot.Value = static_cast<float>(convert(static_cast<double>(spot.Value)));
    }
  }
  image.FileUnits = unit;
  image.DisplayUnits = unit;
  if (!image.ScaleLowText.trimmed().isEmpty()) {
    for (QString* text : {&image.ScaleLowText, &image.ScaleHighText}) {
      *text = SixCharacters(FormatTenths(convert(ParseNumber(*text))));
    }
    UpdateRangeDisplay(image, view, strings);
  }
}

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

void SwitchToFahrenheit(OpenImage& image, ViewState& view, const RangeSlider& slider,
                        const Strings& strings) {
  SwitchUnit(image, view, slider, strings, 'F', CelsiusToFahrenheit);
}

void SwitchToCelsius(OpenImage& image, ViewState& view, const RangeSlider& slider,
                     const Strings& strings) {
  SwitchUnit(image, view, slider, strings, 'C', FahrenheitToCelsius);
}

}  // namespace tessa
