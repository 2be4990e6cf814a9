#include "view/range_entry.h"

#include <algorithm>

#include "core/tell.h"
#include "core/units.h"
#include "view/range_actions.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// The number in a typed text as the boxes write numbers.
QString Written(const QString& typed) {
  return FormatTenths(ParseNumber(typed));
}

/// Tells of a text without a digit, which counts as 0.
void TellIfNoNumber(const QString& typed, const RenderPieces& pieces) {
  const QString text = typed.trimmed();
  if (!text.isEmpty() &&
      std::none_of(text.begin(), text.end(), [](QChar letter) { return letter.isDigit(); })) {
    Tell(NoticeKind::kFailed,
         pieces.Words.LangString(453, "\"%1\" is not a number and counts as 0.").arg(text),
         pieces.View);
  }
}

QString Unit(const RenderPieces& pieces) {
  return pieces.Image.DisplayUnits == 'F' ? QStringLiteral(" \u00B0F") : QStringLiteral(" \u00B0C");
}

}  // namespace

void EnterRangeTexts(const QString& low, const QString& high, ViewState& view) {
  view.RangeLowText = low;
  view.RangeHighText = high;
}

void EnterLimitTexts(const QString& minimum, const QString& maximum, ViewState& view) {
  view.LimitMinText = minimum;
  view.LimitMaxText = maximum;
}

void ShowLimitTexts(const RangeSlider& slider, char displayUnits, ViewState& view) {
  view.LimitMinText = TemperatureText(slider.ScaleMinLimit(), displayUnits);
  view.LimitMaxText = TemperatureText(slider.ScaleMaxLimit(), displayUnits);
}

void ApplyEnteredRange(const RenderPieces& pieces) {
  ViewState& view = pieces.View;
  const RangeSlider& slider = pieces.Slider;
  const char unit = pieces.Image.DisplayUnits;
  const QString low = view.RangeLowText;
  const QString high = view.RangeHighText;
  DismissFailure(view);
  RangeApply(low, high, pieces);
  // To the tenth that the boxes show: a limit entered as it is shown is a taken one.
  const bool taken = TemperatureText(slider.RangeMinValue(), unit) == Written(low) &&
                     TemperatureText(slider.RangeMaxValue(), unit) == Written(high);
  if (!taken && CanMoveRange(pieces.Image)) {
    Tell(NoticeKind::kFailed,
         pieces.Words
             .LangString(438,
                         "A range from %1 to %2 cannot be set between the limits %3 "
                         "and %4.")
             .arg(Written(low), Written(high) + Unit(pieces),
                  TemperatureText(slider.ScaleMinLimit(), unit),
                  TemperatureText(slider.ScaleMaxLimit(), unit) + Unit(pieces)),
         view);
  }
  TellIfNoNumber(low, pieces);
  TellIfNoNumber(high, pieces);
}

void ApplyEnteredLimits(const RenderPieces& pieces) {
  ViewState& view = pieces.View;
  const QString minimum = view.LimitMinText;
  const QString maximum = view.LimitMaxText;
  DismissFailure(view);
  ApplyLimitTexts(minimum, maximum, pieces);
  if (view.LimitMinText != Written(minimum) || view.LimitMaxText != Written(maximum)) {
    Tell(NoticeKind::kFailed,
         pieces.Words
             .LangString(439,
                         "Limits from %1 to %2 cannot be set: they leave no room for the "
                         "range.")
             .arg(Written(minimum), Written(maximum) + Unit(pieces)),
         view);
  }
  TellIfNoNumber(minimum, pieces);
  TellIfNoNumber(maximum, pieces);
}

}  // namespace tessa
