#pragma once

namespace tessa {

/// The model of the two-thumb range control: outer limits, marks for the image's extremes and the
/// positions of the thumbs, all in degrees Celsius. A pair set with redrawNow false is held back
/// until CommitRange, so that a load shows its three pairs together.
class RangeSlider {
 public:
  struct Pair {
    double Maximum = 0.0;
    double Minimum = 0.0;
    bool operator==(const Pair&) const = default;
  };

  /// Outer limits. Refused (false, nothing changes): a value that is not finite, or a maximum below
  /// the minimum. Thumbs outside new limits move to the nearer limit.
  bool SetScaleLimits(bool redrawNow, double maximum, double minimum);
  /// The marks may lie anywhere; refused like limits.
  bool SetImageMarks(bool redrawNow, double maximum, double minimum);
  /// Thumbs. Refused as well when a value lies outside the limits set last.
  bool SetRangeValues(bool redrawNow, double maximum, double minimum);
  /// Brings what was held back into force. True when anything was.
  bool CommitRange();

  double ScaleMaxLimit() const { return shown_.Limits.Maximum; }
  double ScaleMinLimit() const { return shown_.Limits.Minimum; }
  double RangeMaxValue() const { return shown_.Values.Maximum; }
  double RangeMinValue() const { return shown_.Values.Minimum; }
  double MarkMaximum() const { return shown_.Marks.Maximum; }
  double MarkMinimum() const { return shown_.Marks.Minimum; }

 private:
  struct Positions {
    Pair Limits{1.0, 0.0};
    Pair Marks{1.0, 0.0};
    Pair Values{1.0, 0.0};
    bool operator==(const Positions&) const = default;
  };

  void Show(bool redrawNow);

  Positions next_;   // Set so far.
  Positions shown_;  // In force.
};

}  // namespace tessa
