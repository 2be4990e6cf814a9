#include "view/range_control.h"

#include <algorithm>
#include <cmath>

#include "core/steps.h"
#include "core/units.h"

namespace tessa {
namespace {

// The vertical strip in twips: its foot stands for the low end of the range, its top for the high.
constexpr int kStripFoot = 4020;
constexpr int kStripTop = 195;
constexpr double kStripHeight = 3825.0;
constexpr int kStroke = 15;  // One pixel.

double OneDecimal(double value) {
  return ParseNumber(FormatTenths(value));
}

void HideMarkers(ViewState& view) {
  view.ExtremesLine.Visible = false;
  view.MaximumStroke.Visible = false;
  view.MinimumStroke.Visible = false;
}

/// The line beside the strip from the image's maximum to its minimum, with a stroke at each end
/// that lies inside the range. `low` and `high` are the range, degrees Celsius.
void PlaceMarkers(const OpenImage& image, double low, double high, ViewState& view) {
  const KindRules& kind = RulesByImageKind(image);
  if (!Holds(kind.HasMarkers, image)) {
    HideMarkers(view);
    return;
  }
  const TemperaturePair pair = kind.MarksStoredScale ? StoredScale(image) : ImageExtremes(image);
  const double minimum = OneDecimal(static_cast<double>(pair.Minimum));
  const double maximum = OneDecimal(static_cast<double>(pair.Maximum));
  if (minimum > high || maximum < low || high == low) {
    HideMarkers(view);
    return;
  }
  const auto position = [&](double celsius) {
    return RoundToInteger(kStripFoot - (celsius - low) / (high - low) * kStripHeight);
  };
  view.ExtremesLine.Visible = true;
  view.MinimumStroke.Visible = minimum >= low;
  if (minimum <= low) {
    view.ExtremesLine.Y2 = kStripFoot;
    view.MinimumStroke.Y1 = view.MinimumStroke.Y2 = kStripFoot;
  } else {
    view.ExtremesLine.Y2 = position(minimum);
    view.MinimumStroke.Y1 = view.MinimumStroke.Y2 = position(minimum) + kStroke;
  }
  view.MaximumStroke.Visible = maximum <= high;
  if (maximum >= high) {
    view.ExtremesLine.Y1 = kStripTop;
    view.MaximumStroke.Y1 = view.MaximumStroke.Y2 = kStripTop;
  } else {
    view.ExtremesLine.Y1 = position(maximum);
    view.MaximumStroke.Y1 = view.MaximumStroke.Y2 = position(maximum) - kStroke;
  }
}

/// Label 0 the minimum, 2 the maximum, 1 the middle, 3 to 6 and 7 to 10 fifths of each half.
/// Numbers are in the unit of display.
void FillScaleLabels(double minimum, double maximum, ViewState& view) {
  const double middle = (maximum - minimum) / 2 + minimum;
  view.ScaleLabel[0] = FormatTenths(minimum);
  view.ScaleLabel[1] = FormatTenths(middle);
  view.ScaleLabel[2] = FormatTenths(maximum);
  for (std::size_t i = 3; i <= 6; ++i) {
    const auto fifths = static_cast<double>(i - 2);
    view.ScaleLabel[i] = FormatTenths(middle + fifths * (maximum - middle) / 5);
  }
  for (std::size_t i = 7; i <= 10; ++i) {
    const auto fifths = static_cast<double>(i - 6);
    view.ScaleLabel[i] = FormatTenths(minimum + fifths * (middle - minimum) / 5);
  }
}

}  // namespace

TemperaturePair ImageExtremes(const OpenImage& image) {
  return RulesByImageKind(image).UsesSitPairs ? TemperaturePair{image.SitTempMin, image.SitTempMax}
                                              : TemperaturePair{image.TempMin, image.TempMax};
}

TemperaturePair StoredScale(const OpenImage& image) {
  return RulesByImageKind(image).UsesSitPairs
             ? TemperaturePair{image.SitScaleMin, image.SitScaleMax}
             : TemperaturePair{image.ScaleMin, image.ScaleMax};
}

void InitRangeControl(const TemperaturePair& extremes, const TemperaturePair& stored,
                      char displayUnits, RangeSlider& slider, ViewState& view) {
  // A file may have its palette run downwards; the slider never does.
  const TemperaturePair range{std::min(stored.Minimum, stored.Maximum),
                              std::max(stored.Minimum, stored.Maximum)};
  auto lo = static_cast<double>(std::min(extremes.Minimum, range.Minimum));
  auto hi = static_cast<double>(std::max(extremes.Maximum, range.Maximum));
  // A half span that fits no integer is a failed step and leaves no margin.
  constexpr double kLargestInteger = 2147483647.0;
  const double half = std::nearbyint((hi - lo) * 0.5);
  const double margin = std::fabs(half) <= kLargestInteger ? std::trunc(half / 2) : 0.0;
  lo -= margin;
  hi += margin;
  view.RangeSliderVisible = true;
  view.AutoUpdateVisible = true;
  view.LimitBoxesVisible = true;
  view.LimitMinText = TemperatureText(lo, displayUnits);
  view.LimitMaxText = TemperatureText(hi, displayUnits);
  slider.SetScaleLimits(false, hi, lo);
  slider.SetImageMarks(false, static_cast<double>(std::max(extremes.Minimum, extremes.Maximum)),
                       static_cast<double>(std::min(extremes.Minimum, extremes.Maximum)));
  slider.SetRangeValues(false, static_cast<double>(range.Maximum),
                        static_cast<double>(range.Minimum));
  slider.CommitRange();
}

QString CalibratedRangeText(const OpenImage& image, const Strings& strings) {
  return strings.LangString(213, "Range") + QStringLiteral(": ") +
         TemperatureText(static_cast<double>(image.CalRangeMin), image.DisplayUnits) +
         QLatin1Char(' ') + strings.LangString(265, "to") + QLatin1Char(' ') +
         TemperatureText(static_cast<double>(image.CalRangeMax), image.DisplayUnits);
}

void UpdateRangeDisplay(const OpenImage& image, ViewState& view, const Strings& strings) {
  const char unit = image.DisplayUnits;
  const double minimum = image.ShownLow;
  double maximum = image.ShownHigh;
  if (!view.StatusPanel[5].isEmpty()) {
    view.StatusPanel[5] = CalibratedRangeText(image, strings);
  }
  const double low = OneDecimal(FromDisplayUnits(minimum, unit));
  double high = OneDecimal(FromDisplayUnits(maximum, unit));
  if (image.ImageKind > KindJpeg && high == low) {
    high = low + 0.1;
    if (maximum == minimum) {
      maximum = InDisplayUnits(high, unit);
    }
  }
  view.RangeLowText = FormatTenths(image.ShownLow);
  view.RangeHighText = FormatTenths(image.ShownHigh);

  PlaceMarkers(image, low, high, view);
  view.ScaleStrokesVisible = high != low;
  if (high == low) {
    view.ScaleLabel.fill(QString());
  } else {
    FillScaleLabels(minimum, maximum, view);
  }
}

}  // namespace tessa
