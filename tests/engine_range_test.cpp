#include <limits>

#include "core/units.h"
#include "test_files.h"
#include "view/range_control.h"

namespace tessa::testing {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(RangeControl, LimitsLieAWholeNumberOfDegreesBeyondTheData) {
  using Case = std::tuple<TemperaturePair, TemperaturePair, double, double>;
  for (const auto& [extremes, stored, low, high] : {
           Case{{20, 40}, {25, 30}, 15, 45}, Case{{25, 30}, {20, 40}, 15, 45},
           Case{{10, 30}, {20, 40}, 3, 47},        // 15, halved and truncated 7.
           Case{{20, 25}, {20, 25}, 19, 26},       // 2.5 rounds to 2.
           Case{{20, 27}, {20, 27}, 18, 29},       // 3.5 rounds to 4.
           Case{{20, 26}, {20, 26}, 19, 27},       // 3, halved and truncated 1.
           Case{{20, 23}, {20, 23}, 19, 24},       // 1.5 rounds to 2.
           Case{{20, 21}, {20, 21}, 20, 21},       // 0.5 rounds to 0.
           Case{{-5.5F, 5.5F}, {0, 0}, -8.5, 8.5}  // 5.5 rounds to 6.
       }) {
    RangeSlider slider;
    ViewState view;
    InitRangeControl(extremes, stored, 'C', slider, view);
    EXPECT_EQ(slider.ScaleMinLimit(), low) << extremes.Maximum;
    EXPECT_EQ(slider.ScaleMaxLimit(), high) << extremes.Maximum;
    EXPECT_EQ(slider.MarkMinimum(), extremes.Minimum);
    EXPECT_EQ(slider.MarkMaximum(), extremes.Maximum);
    EXPECT_EQ(slider.RangeMinValue(), stored.Minimum);
    EXPECT_EQ(slider.RangeMaxValue(), stored.Maximum);
    EXPECT_TRUE(view.RangeSliderVisible && view.AutoUpdateVisible && view.LimitBoxesVisible);
  }
  RangeSlider slider;
  ViewState view;
  InitRangeControl({20, 40}, {25, 30}, 'F', slider, view);
  EXPECT_EQ(view.LimitMinText.toStdString(), "59.0");
  EXPECT_EQ(view.LimitMaxText.toStdString(), "113.0");
  EXPECT_EQ(slider.ScaleMaxLimit(), 45.0);
  // An image without a pixel inside its calibrated range still gets the scale of its file.
  InitRangeControl({999, -999}, {20, 40}, 'C', slider, view);
  EXPECT_EQ(slider.ScaleMinLimit(), 15.0);
  EXPECT_EQ(slider.RangeMaxValue(), 40.0);
}

TEST(RangeSlider, HoldsValuesBackUntilTheyAreCommitted) {
  RangeSlider slider;
  EXPECT_TRUE(slider.SetScaleLimits(false, 50.0, 10.0));
  EXPECT_TRUE(slider.SetImageMarks(false, 60.0, 0.0));
  EXPECT_TRUE(slider.SetRangeValues(false, 40.0, 20.0));
  EXPECT_NE(slider.ScaleMaxLimit(), 50.0);
  EXPECT_NE(slider.RangeMaxValue(), 40.0);
  EXPECT_TRUE(slider.CommitRange());
  EXPECT_FALSE(slider.CommitRange());
  EXPECT_EQ(slider.ScaleMaxLimit(), 50.0);
  EXPECT_EQ(slider.MarkMinimum(), 0.0);
  // What it cannot show is refused and changes nothing.
  for (const auto& [maximum, minimum] :
       {std::pair{50.5, 20.0}, std::pair{40.0, 9.5}, std::pair{20.0, 40.0},
        std::pair{kNotANumber, 20.0}, std::pair{40.0, kNotANumber}, std::pair{kInfinity, 20.0}}) {
    EXPECT_FALSE(slider.SetRangeValues(true, maximum, minimum)) << maximum << ' ' << minimum;
  }
  EXPECT_FALSE(slider.SetScaleLimits(true, 10.0, 50.0));
  EXPECT_FALSE(slider.SetScaleLimits(true, kInfinity, 0.0));
  EXPECT_FALSE(slider.SetImageMarks(true, -999.0, 999.0));
  EXPECT_EQ(slider.RangeMaxValue(), 40.0);
  EXPECT_EQ(slider.RangeMinValue(), 20.0);
  EXPECT_EQ(slider.ScaleMaxLimit(), 50.0);
  EXPECT_TRUE(slider.SetRangeValues(true, 30.0, 30.0));
  EXPECT_EQ(slider.RangeMinValue(), 30.0);
}

class RangeDisplay : public ::testing::Test {
 protected:
  RangeDisplay() {
    image_.ImageKind = KindSit;
    image_.HasTemperature = true;
    SetRangeAsShown(20.0, 40.0, image_);
  }
  void Update() { UpdateRangeDisplay(image_, view_, strings_); }
  void UpdateFor(float minimum, float maximum) {
    image_.SitTempMin = minimum;
    image_.SitTempMax = maximum;
    Update();
  }
  std::string Labels() const {
    return QStringList(view_.ScaleLabel.begin(), view_.ScaleLabel.end())
        .join(QLatin1Char(' '))
        .toStdString();
  }

  OpenImage image_;
  ViewState view_;
  Strings strings_;
};

TEST_F(RangeDisplay, MarkersStandAtTheImagesExtremes) {
  using Case = std::tuple<float, float, int, int, int, int>;
  for (const auto& [lowest, highest, top, foot, maximumStroke, minimumStroke] : {
           Case{25, 35, 1151, 3064, 1136, 3079},  // 1151.25 and 3063.75
           Case{20, 40, 195, 4020, 195, 4020},    // At the very ends.
           Case{15, 45, 195, 4020, 0, 0},         // Beyond both.
           Case{19.9F, 35, 1151, 4020, 1136, 0},
           Case{20.04F, 39.96F, 195, 4020, 195, 4020},  // One decimal decides.
           Case{40, 50, 195, 195, 0, 210},              // Touches the range from above.
           Case{10, 20, 4020, 4020, 4005, 0},           // And from below.
       }) {
    SCOPED_TRACE(lowest);
    UpdateFor(lowest, highest);
    EXPECT_TRUE(view_.ExtremesLine.Visible);
    EXPECT_EQ(view_.ExtremesLine.Y1, top);
    EXPECT_EQ(view_.ExtremesLine.Y2, foot);
    for (const auto& [stroke, y] : {std::pair{&view_.MaximumStroke, maximumStroke},
                                    std::pair{&view_.MinimumStroke, minimumStroke}}) {
      EXPECT_EQ(stroke->Visible, y != 0);
      if (y != 0) {
        EXPECT_EQ(stroke->Y1, y);
        EXPECT_EQ(stroke->Y2, y);
      }
    }
  }
  for (const auto& [minimum, maximum] : {std::pair{40.1F, 50.0F}, std::pair{10.0F, 19.9F}}) {
    UpdateFor(25, 35);
    UpdateFor(minimum, maximum);
    EXPECT_FALSE(view_.ExtremesLine.Visible || view_.MaximumStroke.Visible ||
                 view_.MinimumStroke.Visible);
  }
}

TEST_F(RangeDisplay, EachKindHasItsOwnPairOfExtremes) {
  image_.SitTempMin = 21;
  image_.SitTempMax = 21;
  image_.TempMin = 24;
  image_.TempMax = 24;
  image_.ScaleMin = 28;
  image_.ScaleMax = 28;
  using Case = std::tuple<std::int16_t, bool, int>;
  for (const auto& [kind, hasTemperature, position] :
       {Case{KindSit, true, 3829}, Case{KindTmp, true, 3255}, Case{KindRti, true, 3255},
        Case{KindBmp, true, 3255}, Case{KindTxi, true, 2490}, Case{KindBmp, false, 0},
        Case{KindTiff, false, 0}, Case{KindJpeg, false, 0}}) {
    image_.ImageKind = kind;
    image_.HasTemperature = hasTemperature;
    Update();
    EXPECT_EQ(view_.ExtremesLine.Visible, position != 0) << kind;
    if (position != 0) {
      EXPECT_EQ(view_.ExtremesLine.Y1, position) << kind;
    }
  }
}

TEST_F(RangeDisplay, LabelsDivideTheScaleInTheDisplayUnit) {
  UpdateFor(25, 35);
  EXPECT_EQ(Labels(), "20.0 30.0 40.0 32.0 34.0 36.0 38.0 22.0 24.0 26.0 28.0");
  EXPECT_TRUE(view_.ScaleStrokesVisible);
  EXPECT_EQ(view_.RangeLowText.toStdString(), "20.0");
  EXPECT_EQ(view_.RangeHighText.toStdString(), "40.0");
  EXPECT_TRUE(view_.StatusPanel[5].isEmpty());
  image_.DisplayUnits = 'F';
  SetRangeAsShown(68.0, 104.0, image_);
  image_.CalRangeMin = -40;
  image_.CalRangeMax = 120;
  view_.StatusPanel[5] = u"x"_s;
  Update();
  EXPECT_EQ(Labels(), "68.0 86.0 104.0 89.6 93.2 96.8 100.4 71.6 75.2 78.8 82.4");
  EXPECT_EQ(view_.ExtremesLine.Y1, 1151);
  EXPECT_EQ(view_.StatusPanel[5].toStdString(), "Range: -40.0 to 248.0");
  // Upside down is shown as it is.
  image_.DisplayUnits = 'C';
  SetRangeAsShown(10.0, -10.0, image_);
  Update();
  EXPECT_EQ(Labels(), "10.0 0.0 -10.0 -2.0 -4.0 -6.0 -8.0 8.0 6.0 4.0 2.0");
}

TEST_F(RangeDisplay, EqualEndsKeepAScaleForTemperaturesOnly) {
  SetRangeAsShown(36.6, 36.6, image_);
  UpdateFor(36.6F, 36.6F);
  EXPECT_TRUE(view_.ScaleStrokesVisible);
  EXPECT_EQ(view_.ScaleLabel[0].toStdString(), "36.6");
  EXPECT_EQ(view_.ScaleLabel[2].toStdString(), "36.7");
  EXPECT_EQ(view_.ExtremesLine.Y1, 4020);
  EXPECT_EQ(view_.ExtremesLine.Y2, 4020);
  image_.ImageKind = KindJpeg;
  image_.HasTemperature = false;
  Update();
  EXPECT_FALSE(view_.ScaleStrokesVisible);
  EXPECT_EQ(Labels(), std::string(10, ' '));
}

}  // namespace
}  // namespace tessa::testing
