#include "core/units.h"
#include "test_files.h"
#include "view/range_control.h"
#include "view/readout.h"
#include "view/switch_units.h"

namespace tessa::testing {
namespace {

TEST(Units, NumbersEndAtTheDegreeSign) {
  const std::pair<const char*, double> numbers[] = {
      {"36.5 \u00B0C", 36.5}, {"120.5\u00B0 99", 120.5}, {"-40", -40.0},
      {"20,5\u00B0", 20.5},   {"\u00B05", 0.0},          {"abc", 0.0}};
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(ParseNumber(QString::fromUtf8(text)), number) << text;
  }
}

TEST(Units, ConversionFormsItsQuotientFirst) {
  // 7 x 5 / 9 and 3.6 x 9 / 5 + 32 from left to right would end in other digits.
  for (const auto& [celsius, fahrenheit] :
       {std::pair{-40.0, -40.0}, std::pair{100.0, 212.0}, std::pair{3.6, 38.480000000000004}}) {
    EXPECT_EQ(CelsiusToFahrenheit(celsius), fahrenheit);
  }
  EXPECT_EQ(FahrenheitToCelsius(-40.0), -40.0);
  EXPECT_EQ(FahrenheitToCelsius(39.0), 3.8888888888888893);
  EXPECT_EQ(TemperatureText(-17.8, 'F').toStdString(), "0.0");
  EXPECT_EQ(TemperatureText(-0.04, 'C').toStdString(), "0.0");
}

class OpenSit : public LoadTest {
 protected:
  OpenSit() {
    SitFields fields = PlainSit();
    PutDegrees(fields, 5, 7, 36.625);
    PutDegrees(fields, 0, 0, -40.0);
    PutDegrees(fields, 319, 0, 100.0);
    PutDegrees(fields, 319, 239, 30.0);
    Open("u.sit", EncodeSit(fields));
  }
  void OpenBitmap() {
    const auto indices = Raster<std::uint8_t>(8, 8, [](int x, int y) { return 8 * y + x; });
    Open("u.bmp", EncodeBmp8(8, 8, indices, 8, GreyPalette()));
  }
  void ToFahrenheit() { SwitchToFahrenheit(image_, view_, session_.Range, session_.Words); }
  void ToCelsius() { SwitchToCelsius(image_, view_, session_.Range, session_.Words); }
  bool Move(int x, int y) {
    return UpdateReadout(x, y, image_, picture_, session_.Words, session_.Cursor, view_);
  }
  void SetZoomTo(double numerator, double denominator) {
    picture_.ZoomNumerator = numerator;
    picture_.ZoomDenominator = denominator;
  }
  /// The three panels after a move that has something to say.
  std::string At(int x, int y) {
    EXPECT_TRUE(Move(x, y));
    return (view_.StatusPanel[1] + QLatin1Char('|') + view_.StatusPanel[2] + QLatin1Char('|') +
            view_.StatusPanel[3])
        .toStdString();
  }

  OpenImage& image_ = session_.Image;
  ViewState& view_ = session_.View;
};

TEST_F(OpenSit, SwitchingTheUnitRewritesEveryTextAndNothingElse) {
  image_.SpotTemperatures[0] = {100.0F, 1};
  const double limit = session_.Range.ScaleMaxLimit();
  for (const char unit : {'F', 'F', 'C'}) {  // Twice makes no difference.
    const bool fahrenheit = unit == 'F';
    fahrenheit ? ToFahrenheit() : ToCelsius();
    EXPECT_EQ(image_.DisplayUnits, unit);
    EXPECT_EQ(image_.FileUnits, unit);
    EXPECT_EQ(view_.CelsiusSelected, !fahrenheit);
    // The limits are 15 and 45.
    fahrenheit ? ExpectScaleTexts("68.0", "104.0", "59.0", "113.0")
               : ExpectScaleTexts("20.0", "40.0", "15.0", "45.0");
    EXPECT_EQ(view_.ScaleLabel[1].toStdString(), fahrenheit ? "86.0" : "30.0");
    EXPECT_EQ(view_.StatusPanel[5].toStdString(),
              fahrenheit ? "Range: -40.0 to 248.0" : "Range: -40.0 to 120.0");
    EXPECT_EQ(image_.SpotTemperatures[0].Value, fahrenheit ? 212.0F : 100.0F);
    EXPECT_EQ(image_.SpotTemperatures[1].Value, 0.0F);
    EXPECT_EQ(session_.Range.ScaleMaxLimit(), limit);
    EXPECT_EQ(image_.SitScaleMax, 40.0F);
  }
}

TEST_F(OpenSit, RangeTextsAreCutToSixCharacters) {
  SetRangeAsShown(-900.0, 5555.5, image_);
  ToFahrenheit();
  EXPECT_EQ(image_.ScaleLowText.toStdString(), "-1588.");
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "10031.");  // 10031.9
  EXPECT_EQ(view_.RangeLowText.toStdString(), "-1588.0");
  SetNoRange(image_);
  ToCelsius();
  EXPECT_TRUE(image_.ScaleHighText.isEmpty());
  EXPECT_EQ(image_.DisplayUnits, 'C');
}

TEST_F(OpenSit, WithoutTemperaturesOnlyTheLetterChanges) {
  OpenBitmap();
  const auto labels = view_.ScaleLabel;
  ToFahrenheit();
  EXPECT_EQ(image_.DisplayUnits, 'F');
  EXPECT_EQ(image_.FileUnits, 'C');
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "255");
  EXPECT_EQ(view_.ScaleLabel, labels);
  view_.SuppressEvents = true;  // Settings are being loaded.
  ToCelsius();
  EXPECT_EQ(image_.DisplayUnits, 'F');
}

TEST_F(OpenSit, TheReadoutFollowsZoomAndPan) {
  EXPECT_EQ(At(10, 14), "X:  6|Y:  8|Temp: 36.6 \u00B0C");  // Twice its size.
  EXPECT_EQ(view_.PictureTip.toStdString(), " 36.6 \u00B0C ");
  EXPECT_EQ(session_.Cursor.ReadoutIndex, 212);  // 12.75 x 36.625 - 255 = 211.97
  EXPECT_EQ(At(0, 0), "X:  1|Y:  1|Temp: -40.0 \u00B0C");
  EXPECT_EQ(At(639, 1), "X:  320|Y:  1|Temp: 100.0 \u00B0C");
  EXPECT_EQ(At(639, 479), "X:  320|Y:  240|Temp: 30.0 \u00B0C");
  SetZoomTo(3.0, 1.0);
  EXPECT_EQ(At(17, 23), "X:  6|Y:  8|Temp: 36.6 \u00B0C");
  picture_.ScrollView(6, 4);
  EXPECT_EQ(At(0, 0), "X:  5|Y:  7|Temp: 20.0 \u00B0C");
  EXPECT_EQ(At(5, 3), "X:  6|Y:  8|Temp: 36.6 \u00B0C");
  SetZoomTo(1.5, 1.0);
  EXPECT_EQ(At(4, 4), "X:  7|Y:  9|Temp: 20.0 \u00B0C");
  // At half size neighbouring points lie two columns apart.
  SetZoomTo(1.0, 2.0);
  picture_.ScrollView(0, 0);
  EXPECT_EQ(At(3, 3), "X:  7|Y:  7|Temp: 20.0 \u00B0C");
  EXPECT_EQ(At(4, 3), "X:  9|Y:  7|Temp: 20.0 \u00B0C");
}

TEST_F(OpenSit, APositionThatDidNotChangeReportsNothing) {
  EXPECT_TRUE(Move(10, 14));
  view_.StatusPanel[1] = u"untouched"_s;
  EXPECT_FALSE(Move(11, 15));
  EXPECT_FALSE(Move(10, 14));
  EXPECT_EQ(view_.StatusPanel[1].toStdString(), "untouched");
  EXPECT_TRUE(Move(12, 14));
  EXPECT_TRUE(Move(12, 16));
  ClearReadout(session_.Cursor, view_);
  EXPECT_TRUE(view_.StatusPanel[1].isEmpty() && view_.StatusPanel[2].isEmpty() &&
              view_.StatusPanel[3].isEmpty() && view_.PictureTip.isEmpty());
  EXPECT_TRUE(Move(12, 16));
  OpenBitmap();
  EXPECT_TRUE(Move(12, 16));  // The same position of another image.
}

TEST_F(OpenSit, OutsideTheImageTheNearestTemperatureAndIndexZeroAreRead) {
  EXPECT_EQ(At(640, 480), "X:  321|Y:  241|Temp: 30.0 \u00B0C");
  EXPECT_EQ(session_.Cursor.ReadoutIndex, 0);
  EXPECT_EQ(At(-1, 0), "X:  0|Y:  1|Temp: -40.0 \u00B0C");
  EXPECT_EQ(At(-7, -1), "X: -3|Y:  0|Temp: -40.0 \u00B0C");
  EXPECT_EQ(At(30000, -30000), "X:  15001|Y: -14999|Temp: 100.0 \u00B0C");
}

TEST_F(OpenSit, TheUnitMarkFollowsTheOptionButtonAndTheNumberTheUnit) {
  ToFahrenheit();
  EXPECT_EQ(At(639, 1), "X:  320|Y:  1|Temp: 212.0 \u00B0F");
  image_.DisplayUnits = 'C';
  EXPECT_EQ(At(639, 3), "X:  320|Y:  2|Temp: 20.0 \u00B0F");
}

TEST_F(OpenSit, WithoutTemperaturesThePaletteEntryIsRead) {
  OpenBitmap();
  EXPECT_EQ(At(10, 8), "X:  6|Y:  5|Palette Entry:  37");
  EXPECT_TRUE(view_.PictureTip.isEmpty());
  EXPECT_EQ(At(16, 8), "X:  9|Y:  5|Palette Entry:  0");
}

TEST_F(OpenSit, AKindWithoutAGridReadsTheScaleOfItsTexts) {
  SetCurrentFile(image_, u"/x/y.jpg"_s);
  SetRangeAsShown(20.0, 71.0, image_);
  image_.RowBuffers.Row(0)[4] = 100;
  EXPECT_EQ(At(8, 0), "X:  5|Y:  1|Temp: 40.0 \u00B0C");  // 51 x 100 / 255 above 20.
  image_.DisplayUnits = 'F';                              // The texts are in its unit already.
  image_.RowBuffers.Row(0)[5] = 255;
  EXPECT_EQ(At(10, 0), "X:  6|Y:  1|Temp: 71.0 \u00B0C");
  EXPECT_EQ(session_.Cursor.ReadoutIndex, 255);
}

}  // namespace
}  // namespace tessa::testing
