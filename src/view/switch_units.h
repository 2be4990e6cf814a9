#pragma once

#include "core/language_strings.h"
#include "core/open_image.h"
#include "core/view_state.h"
#include "view/range_slider.h"

namespace tessa {

/// The user chose a unit of display with one of the two option buttons. Rewrites every text that
/// holds a temperature; the slider and the image stay in Celsius.
void SwitchToFahrenheit(OpenImage& image, ViewState& view, const RangeSlider& slider,
                        const Strings& strings);
void SwitchToCelsius(OpenImage& image, ViewState& view, const RangeSlider& slider,
                     const Strings& strings);

}  // namespace tessa
