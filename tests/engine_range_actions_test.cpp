#include "core/units.h"
#include "test_files.h"
#include "view/range_actions.h"
#include "view/render.h"
#include "view/switch_units.h"

namespace tessa::testing {
namespace {

/// A SIT image from 10 to 41.9 degrees whose stored scale is 15 to 35, open in a session.
class RangeActionsTest : public LoadTest {
 protected:
  RangeActionsTest() {
    SitFields fields;
    fields.Offset = 10.0;
    fields.Gain = 0.1015625;  // 6656 / 65536: exact.
    fields.ScaleCenter = 25.0;
    fields.ScaleStep = 2.5;
    fields.Counts = Raster(kSitWidth, kSitHeight, [](int column, int) { return column; });
    Open("range.sit", EncodeSit(fields));
  }

  RenderPieces Pieces() { return PiecesForRendering(session_, plain_); }
  int IndexAt(std::size_t column) { return Row(100)[column]; }
  std::string Texts() const {
    return (session_.Image.ScaleLowText + QLatin1Char('|') + session_.Image.ScaleHighText)
        .toStdString();
  }
  void SetThumbs(double low, double high) {
    ASSERT_TRUE(session_.Range.SetRangeValues(true, high, low));
  }
};

TEST_F(RangeActionsTest, OpensInTheStoredScaleWithLimitsAQuarterBeyondTheData) {
  // Extremes without the border: columns 3 to 316, 10.3 to 42.1; half of 31.8 is 16, its half 8.
  EXPECT_EQ(Texts(), "15.0|35.0");
  EXPECT_NEAR(session_.Range.ScaleMinLimit(), 10.3046875 - 8.0, 1e-4);
  EXPECT_NEAR(session_.Range.ScaleMaxLimit(), 10.0 + 316 * 0.1015625 + 8.0, 1e-4);
  EXPECT_EQ(session_.Range.RangeMinValue(), 15.0);
  EXPECT_EQ(session_.View.Source, RangeSource::kStored);
}

TEST_F(RangeActionsTest, AThumbAtRestIsRememberedOnlyWhileTheToggleIsRed) {
  SetThumbs(20.0, 30.0);
  ThumbAtRest(Pieces());
  EXPECT_EQ(session_.Image.SitScaleMin, 20.0F);
  EXPECT_EQ(session_.Image.SitScaleMax, 30.0F);
  EXPECT_EQ(Texts(), "20.0|30.0");
  EXPECT_EQ(IndexAt(20), 0);     // 12.0 degrees
  EXPECT_EQ(IndexAt(148), 128);  // 25.03 degrees: 128.3 of 255
  ToggleRangeByButton(Pieces());
  ASSERT_EQ(session_.View.Source, RangeSource::kImage);
  SetThumbs(22.0, 24.0);
  ThumbAtRest(Pieces());
  EXPECT_EQ(session_.Image.SitScaleMin, 20.0F) << "a green move is not remembered";
  EXPECT_EQ(Texts(), "22.0|24.0");
  ToggleRangeByButton(Pieces());
  EXPECT_EQ(Texts(), "20.0|30.0") << "red brings the stored range back";
  EXPECT_EQ(session_.Range.RangeMaxValue(), 30.0);
}

TEST_F(RangeActionsTest, EqualThumbsAreSpreadUpwardsOrBelowTheTopOfTheScale) {
  SetThumbs(25.0, 25.0);
  ThumbAtRest(Pieces());
  EXPECT_EQ(Texts(), "25.0|25.1");
  EXPECT_NEAR(session_.Range.RangeMaxValue(), 25.1, 1e-5);
  const double top = session_.Range.ScaleMaxLimit();
  for (const double end : {top, top - 0.05}) {
    SetThumbs(end, end);
    ThumbAtRest(Pieces());
    EXPECT_NEAR(session_.Range.RangeMinValue(), top - 0.1, 1e-4);
    EXPECT_NEAR(session_.Range.RangeMaxValue(), top, 1e-4);
  }
}

TEST_F(RangeActionsTest, TheFlipAtALoadGoesToTheExtremesAndBackAndLeavesTheThumbs) {
  ToggleRangeSource(Pieces());
  EXPECT_EQ(session_.View.Source, RangeSource::kImage);
  EXPECT_EQ(Texts(), "10.3|42.1");
  EXPECT_EQ(session_.Range.RangeMinValue(), 15.0);
  ToggleRangeSource(Pieces());
  EXPECT_EQ(session_.View.Source, RangeSource::kStored);
  EXPECT_EQ(Texts(), "15.0|35.0");
  EXPECT_EQ(IndexAt(148), 128);  // 25.03 degrees: 127.9 of 255
}

TEST_F(RangeActionsTest, EachKindFlipsBetweenItsOwnPairs) {
  session_.Image.TempMin = 11.0F;
  session_.Image.TempMax = 30.0F;
  session_.Image.ScaleMin = 12.0F;
  session_.Image.ScaleMax = 29.0F;
  constexpr const char* kPlain = "11.0|30.0 12.0|29.0";
  constexpr const char* kOfSit = "10.3|42.1 15.0|35.0";
  using Kind = std::tuple<const char*, std::int16_t, bool, const char*, const char*>;
  // Sequences fall to the other pair at a load, not at a click.
  for (const auto& [file, kind, measured, atLoad, atClick] :
       {Kind{"/x.SIT", KindSit, true, kOfSit, kOfSit},
        Kind{"/x.TMP", KindTmp, true, kPlain, kPlain},
        Kind{"/x.RTI", KindRti, true, kOfSit, kPlain},
        Kind{"/x.BMP", KindBmp, true, kPlain, kPlain},
        Kind{"/x.TIF", KindTiff, true, kPlain, kPlain}}) {
    SCOPED_TRACE(file);
    SetCurrentFile(session_.Image, QString::fromLatin1(file));
    session_.Image.ImageKind = kind;
    session_.Image.HasTemperature = measured;
    for (const bool byClick : {false, true}) {
      std::string shown;
      for (const char* blank : {" ", ""}) {
        byClick ? ToggleRangeByButton(Pieces()) : ToggleRangeSource(Pieces());
        shown += Texts() + blank;
      }
      EXPECT_EQ(shown, byClick ? atClick : atLoad);
    }
  }
  SetCurrentFile(session_.Image, u"/x.TXI"_s);
  session_.Image.ImageKind = KindTxi;
  RangeApply(u"16"_s, u"20"_s, Pieces());
  EXPECT_EQ(Texts(), "16.0|20.0");
}

TEST_F(RangeActionsTest, AMovingThumbTouchesThePictureOnlyWithAutoUpdate) {
  SetThumbs(20.0, 30.0);
  const int before = IndexAt(100);
  ThumbMoving(false, Pieces());
  EXPECT_EQ(Texts(), "20.0|30.0");
  EXPECT_EQ(IndexAt(100), before);
  ThumbMoving(true, Pieces());
  EXPECT_EQ(IndexAt(100), 4);  // 20.156 degrees: 3.98
  EXPECT_EQ(session_.Image.SitScaleMin, 15.0F) << "nothing is remembered while moving";
}

TEST_F(RangeActionsTest, AnEnteredRangeIsInTheUnitOfDisplayAndFallsBackWhenRefused) {
  SwitchToFahrenheit(session_.Image, session_.View, session_.Range, session_.Words);
  EXPECT_EQ(Texts(), "59.0|95.0");
  RangeApply(u"68 \u00B0F"_s, u"86"_s, Pieces());
  EXPECT_NEAR(session_.Range.RangeMinValue(), 20.0, 1e-9);
  EXPECT_NEAR(session_.Image.SitScaleMax, 30.0F, 1e-5);
  EXPECT_EQ(Texts(), "68.0|86.0");
  RangeApply(u"500"_s, u"600"_s, Pieces());  // Beyond the limits.
  EXPECT_EQ(Texts(), "68.0|86.0");
  RangeApply(u"80"_s, u"70"_s, Pieces());  // Upside down.
  EXPECT_EQ(Texts(), "68.0|86.0");
}

TEST_F(RangeActionsTest, ResetShowsTheToggleRangeWithoutMovingThumbs) {
  ToggleRangeByButton(Pieces());
  const std::string green = Texts();
  EXPECT_EQ(green, "10.3|42.1");
  SetThumbs(20.0, 30.0);
  ThumbAtRest(Pieces());
  RangeReset(Pieces());
  EXPECT_EQ(Texts(), green);
  EXPECT_EQ(session_.Range.RangeMaxValue(), 30.0);
}

TEST_F(RangeActionsTest, LimitBoxesMoveTheScaleAndKeepTheOldOneWhenRefused) {
  ApplyLimitTexts(u"0"_s, u"50"_s, Pieces());
  EXPECT_EQ(session_.Range.ScaleMaxLimit(), 50.0);
  EXPECT_EQ(session_.View.LimitMinText, u"0.0"_s);
  ApplyLimitTexts(u"60"_s, u"50"_s, Pieces());
  EXPECT_EQ(session_.Range.ScaleMinLimit(), 0.0);
  EXPECT_EQ(session_.View.LimitMinText, u"0.0"_s);
  EXPECT_EQ(session_.View.LimitMaxText, u"50.0"_s);
  // A limit inside the thumbs pushes them along.
  ApplyLimitTexts(u"20"_s, u"30"_s, Pieces());
  EXPECT_EQ(session_.Range.RangeMinValue(), 20.0);
  EXPECT_EQ(Texts(), "20.0|30.0");
}

TEST_F(RangeActionsTest, BoxesTakeWhatTheyShow) {
  // 2.3047 and 50.0938 degrees: the texts are a little outside at both ends.
  ASSERT_EQ(
      (session_.View.LimitMinText + QLatin1Char('|') + session_.View.LimitMaxText).toStdString(),
      "2.3|50.1");
  const double low = session_.Range.ScaleMinLimit();
  const double high = session_.Range.ScaleMaxLimit();
  RangeApply(u"2,3"_s, u"50.1"_s, Pieces());
  EXPECT_EQ(Texts(), "2.3|50.1");
  EXPECT_EQ(session_.Range.RangeMinValue(), low);
  EXPECT_EQ(session_.Range.RangeMaxValue(), high);
  ApplyLimitTexts(u"2.3"_s, u"50.1"_s, Pieces());
  EXPECT_EQ(session_.Range.ScaleMinLimit(), low);
  EXPECT_EQ(session_.Range.RangeMaxValue(), high);
  RangeApply(u"2.2"_s, u"40"_s, Pieces());
  EXPECT_EQ(Texts(), "2.3|50.1") << "what is outside by more than the rounding is refused";
}

TEST_F(RangeActionsTest, TheToggleShowsWhatNarrowerLimitsLeaveOfTheExtremes) {
  ApplyLimitTexts(u"12"_s, u"50.1"_s, Pieces());
  ToggleRangeByButton(Pieces());
  EXPECT_EQ(session_.View.Source, RangeSource::kImage);
  EXPECT_EQ(Texts(), "12.0|42.1");
  ApplyLimitTexts(u"12"_s, u"40"_s, Pieces());
  EXPECT_EQ(Texts(), "12.0|40.0");
}

TEST_F(RangeActionsTest, ADoubleClickedThumbGoesToTheExtremeOnItsSide) {
  ResetThumb(true, Pieces());
  EXPECT_NEAR(session_.Range.RangeMaxValue(), 42.09375, 1e-4);
  EXPECT_EQ(session_.Range.RangeMinValue(), 15.0);
  ResetThumb(false, Pieces());
  EXPECT_NEAR(session_.Range.RangeMinValue(), 10.3046875, 1e-4);
}

}  // namespace
}  // namespace tessa::testing
