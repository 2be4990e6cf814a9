#include "view/switch_units.h"

#include "core/units.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// The common road of both switches: `convert` takes a number from the other unit into this one.
void SwitchUnit(OpenImage& image, ViewState& view, const RangeSlider& slider,
                const Strings& strings, char unit, double (*convert)(double)) {
  if (view.SuppressEvents) {
    return;
  }
  view.CelsiusSelected = unit == 'C';
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
    SetRangeAsShown(convert(image.ShownLow), convert(image.ShownHigh), image);
    UpdateRangeDisplay(image, view, strings);
  }
}

}  // namespace

void SwitchToFahrenheit(OpenImage& image, ViewState& view, const RangeSlider& slider,
                        const Strings& strings) {
  SwitchUnit(image, view, slider, strings, 'F', CelsiusToFahrenheit);
}

void SwitchToCelsius(OpenImage& image, ViewState& view, const RangeSlider& slider,
                     const Strings& strings) {
  SwitchUnit(image, view, slider, strings, 'C', FahrenheitToCelsius);
}

}  // namespace tessa
