#pragma once

#include <QString>

#include "core/language_strings.h"
#include "core/open_image.h"
#include "core/view_state.h"
#include "view/range_slider.h"

namespace tessa {

/// Extremes and stored scale of the open image, from the fields of its kind.
TemperaturePair ImageExtremes(const OpenImage& image);
TemperaturePair StoredScale(const OpenImage& image);

/// Sets up the range control for a loaded image: limits about a quarter of the span beyond the data
/// on each side, marks at the extremes, thumbs at the stored range, each pair in order.
void InitRangeControl(const TemperaturePair& extremes, const TemperaturePair& stored,
                      char displayUnits, RangeSlider& slider, ViewState& view);

/// Brings the texts, labels and markers of the scale into line with the range in force.
void UpdateRangeDisplay(const OpenImage& image, ViewState& view, const Strings& strings);

/// "Range: -40.0 to 120.0": the camera's calibrated range in the unit of display.
QString CalibratedRangeText(const OpenImage& image, const Strings& strings);

/// Equal ends of a range are spread by 0.1 upwards, or downwards where the slider ends.
template <typename Number>
void SpreadEqualEnds(Number& lo, Number& hi, double scaleMaxLimit) {
  constexpr double kSpread = 0.1;
  if (hi != lo) {
    return;
  }
  hi = static_cast<Number>(static_cast<double>(lo) + kSpread);
  if (scaleMaxLimit < static_cast<double>(hi)) {
    hi = static_cast<Number>(scaleMaxLimit);
    lo = static_cast<Number>(static_cast<double>(hi) - kSpread);
  }
}

}  // namespace tessa
