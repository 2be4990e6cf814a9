#include "view/range_actions.h"

#include <algorithm>

#include "core/units.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// The thumbs' temperatures as the renderer takes them.
TemperaturePair ThumbValues(const RangeSlider& slider) {
  return {static_cast<float>(slider.RangeMinValue()), static_cast<float>(slider.RangeMaxValue())};
}

void SetThumbs(const TemperaturePair& range, RangeSlider& slider) {
  slider.SetRangeValues(true, static_cast<double>(range.Maximum),
                        static_cast<double>(range.Minimum));
}

/// The same as far as the slider's limits, which may be narrower, allow it.
void SetThumbsWithinLimits(const TemperaturePair& range, RangeSlider& slider) {
  const auto kept = [&](float value) {
    return std::clamp(static_cast<double>(value), slider.ScaleMinLimit(), slider.ScaleMaxLimit());
  };
  slider.SetRangeValues(true, kept(range.Maximum), kept(range.Minimum));
}

/// `celsius`, or `shown` when both read the same in the unit of display: what a box shows, rounded,
/// may be entered again.
double AsShown(double celsius, double shown, char displayUnits) {
  return TemperatureText(celsius, displayUnits) == TemperatureText(shown, displayUnits) ? shown
                                                                                        : celsius;
}

/// A range chosen while the toggle is red becomes the stored scale of the image's kind.
void RememberWhileRed(const TemperaturePair& range, const RenderPieces& pieces) {
  if (pieces.View.Source != RangeSource::kStored) {
    return;
  }
  OpenImage& image = pieces.Image;
  if (RulesByImageKind(image).UsesSitPairs) {
    image.SitScaleMin = range.Minimum;
    image.SitScaleMax = range.Maximum;
  } else {
    image.ScaleMin = range.Minimum;
    image.ScaleMax = range.Maximum;
  }
}

void RenderForKind(TemperaturePair range, const RenderPieces& pieces) {
  if (RulesByImageKind(pieces.Image).UsesSitPairs) {
    RenderRowsSit(range.Minimum, range.Maximum, pieces);
  } else {
    RenderRows(range.Minimum, range.Maximum, pieces);
  }
}

bool TakesEnteredRange(const OpenImage& image) {
  return Holds(RulesByImageKind(image).TakesEnteredRange, image);
}

/// The pair that the button's new state stands for. Other kinds than those of the first group use
/// the fields of SIT images.
TemperaturePair PairForButton(const OpenImage& image, RangeSource source) {
  if (Holds(RulesByName(image).PlainPairAtClick, image)) {
    return source == RangeSource::kImage ? TemperaturePair{image.TempMin, image.TempMax}
                                         : TemperaturePair{image.ScaleMin, image.ScaleMax};
  }
  return source == RangeSource::kImage ? TemperaturePair{image.SitTempMin, image.SitTempMax}
                                       : TemperaturePair{image.SitScaleMin, image.SitScaleMax};
}

}  // namespace

void ThumbAtRest(const RenderPieces& pieces) {
  if (!CanMoveRange(pieces.Image)) {
    return;
  }
  TemperaturePair range = ThumbValues(pieces.Slider);
  if (range.Maximum == range.Minimum) {
    SpreadEqualEnds(range.Minimum, range.Maximum, pieces.Slider.ScaleMaxLimit());
    SetThumbs(range, pieces.Slider);
  }
  RememberWhileRed(range, pieces);
  RenderForKind(range, pieces);
}

void ThumbMoving(bool autoUpdate, const RenderPieces& pieces) {
  if (!CanMoveRange(pieces.Image)) {
    return;
  }
  TemperaturePair range = ThumbValues(pieces.Slider);
  SpreadEqualEnds(range.Minimum, range.Maximum, pieces.Slider.ScaleMaxLimit());
  if (autoUpdate) {
    RenderForKind(range, pieces);
    pieces.Watcher.LetEventsRun();
    return;
  }
  OpenImage& image = pieces.Image;
  SetRangeInForce(static_cast<double>(range.Minimum), static_cast<double>(range.Maximum), image);
  pieces.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, pieces.View, pieces.Words); });
}

void RangeApply(const QString& lowText, const QString& highText, const RenderPieces& pieces) {
  ViewState& view = pieces.View;
  view.RenderProgress = 0.0;
  view.RenderProgressVisible = true;
  if (TakesEnteredRange(pieces.Image)) {
    const auto celsius = [&](const QString& text) {
      return FromDisplayUnits(ParseNumber(text), pieces.Image.DisplayUnits);
    };
    const auto inside = [&](double value) {
      const char unit = pieces.Image.DisplayUnits;
      return value < pieces.Slider.ScaleMinLimit()
                 ? AsShown(value, pieces.Slider.ScaleMinLimit(), unit)
                 : std::min(value, AsShown(value, pieces.Slider.ScaleMaxLimit(), unit));
    };
    double lo = inside(celsius(lowText));
    double hi = inside(celsius(highText));
    if (!pieces.Slider.SetRangeValues(true, hi, lo)) {
      hi = pieces.Slider.RangeMaxValue();
      lo = pieces.Slider.RangeMinValue();
    }
    const TemperaturePair range{static_cast<float>(lo), static_cast<float>(hi)};
    RememberWhileRed(range, pieces);
    RenderForKind(range, pieces);
  }
  view.RenderProgressVisible = false;
  view.RenderProgress = 0.0;
}

void RangeReset(const RenderPieces& pieces) {
  const OpenImage& image = pieces.Image;
  ViewState& view = pieces.View;
  view.RenderProgress = 0.0;
  view.RenderProgressVisible = true;
  const bool green = view.Source == RangeSource::kImage;
  if (RulesByImageKind(image).ResetsByToggle) {
    RenderForKind(green ? ImageExtremes(image) : StoredScale(image), pieces);
  } else if (TakesEnteredRange(image)) {
    RenderForKind(StoredScale(image), pieces);
  }
  view.RenderProgressVisible = false;
  view.RenderProgress = 0.0;
}

void ApplyLimitTexts(const QString& minText, const QString& maxText, const RenderPieces& pieces) {
  const char unit = pieces.Image.DisplayUnits;
  RangeSlider& slider = pieces.Slider;
  const auto limit = [&](const QString& text, double present) {
    return AsShown(FromDisplayUnits(ParseNumber(text), unit), present, unit);
  };
  double minimum = limit(minText, slider.ScaleMinLimit());
  double maximum = limit(maxText, slider.ScaleMaxLimit());
  // Limits that leave nothing of the range in view would squeeze the thumbs into one point.
  const bool leavesRange = maximum > slider.RangeMinValue() && minimum < slider.RangeMaxValue();
  if (!leavesRange || !slider.SetScaleLimits(true, maximum, minimum)) {
    maximum = slider.ScaleMaxLimit();
    minimum = slider.ScaleMinLimit();
  }
  pieces.View.LimitMaxText = TemperatureText(maximum, unit);
  pieces.View.LimitMinText = TemperatureText(minimum, unit);
  const TemperaturePair extremes = ImageExtremes(pieces.Image);
  slider.SetImageMarks(true, static_cast<double>(extremes.Maximum),
                       static_cast<double>(extremes.Minimum));
  if (pieces.View.Source == RangeSource::kImage) {
    SetThumbsWithinLimits(extremes, slider);
  }
  ThumbAtRest(pieces);
}

void ToggleRangeByButton(const RenderPieces& pieces) {
  ViewState& view = pieces.View;
  view.Source = view.Source == RangeSource::kStored ? RangeSource::kImage : RangeSource::kStored;
  SetThumbsWithinLimits(PairForButton(pieces.Image, view.Source), pieces.Slider);
  pieces.Watcher.LetEventsRun();
  ThumbAtRest(pieces);
}

void ResetThumb(bool upper, const RenderPieces& pieces) {
  const TemperaturePair extremes = ImageExtremes(pieces.Image);
  RangeSlider& slider = pieces.Slider;
  const double wanted = static_cast<double>(upper ? extremes.Maximum : extremes.Minimum);
  const double kept = std::clamp(wanted, slider.ScaleMinLimit(), slider.ScaleMaxLimit());
  if (upper) {
    slider.SetRangeValues(true, std::max(kept, slider.RangeMinValue()), slider.RangeMinValue());
  } else {
    slider.SetRangeValues(true, slider.RangeMaxValue(), std::min(kept, slider.RangeMaxValue()));
  }
  ThumbAtRest(pieces);
}

}  // namespace tessa
