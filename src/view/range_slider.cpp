#include "view/range_slider.h"

#include <algorithm>
#include <cmath>

namespace tessa {
namespace {

bool Acceptable(double maximum, double minimum) {
  return std::isfinite(maximum) && std::isfinite(minimum) && maximum >= minimum;
}

}  // namespace

bool RangeSlider::SetScaleLimits(bool redrawNow, double maximum, double minimum) {
  if (!Acceptable(maximum, minimum)) {
    return false;
  }
  next_.Limits = {maximum, minimum};
  next_.Values.Maximum = std::clamp(next_.Values.Maximum, minimum, maximum);
  next_.Values.Minimum = std::clamp(next_.Values.Minimum, minimum, maximum);
  Show(redrawNow);
  return true;
}

bool RangeSlider::SetImageMarks(bool redrawNow, double maximum, double minimum) {
  if (!Acceptable(maximum, minimum)) {
    return false;
  }
  next_.Marks = {maximum, minimum};
  Show(redrawNow);
  return true;
}

bool RangeSlider::SetRangeValues(bool redrawNow, double maximum, double minimum) {
  if (!Acceptable(maximum, minimum) || maximum > next_.Limits.Maximum ||
      minimum < next_.Limits.Minimum) {
    return false;
  }
  next_.Values = {maximum, minimum};
  Show(redrawNow);
  return true;
}

bool RangeSlider::CommitRange() {
  const bool changed = !(shown_ == next_);
  shown_ = next_;
  return changed;
}

void RangeSlider::Show(bool redrawNow) {
  if (redrawNow) {
    CommitRange();
  }
}

}  // namespace tessa
