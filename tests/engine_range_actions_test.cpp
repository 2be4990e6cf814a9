#include <gtest/gtest.h>

#include "core/units.h"
#include "open/load_image.h"
#include "test_files.h"
#include "view/range_actions.h"
#include "view/switch_units.h"

namespace tessa::testing {
namespace {

/// A SIT image from 10 to 41.9 degrees whose stored scale is 15 to 35, open in a session.
class RangeActionsTest : public ::testing::Test {
 protected:
  RangeActionsTest() : session_(BuiltProgramFolder()) {
    SitFields fields;
    fields.Offset = 10.0;
    fields.Gain = 0.1015625;  // 6656 / 65536: exact.
    fields.ScaleCenter = 25.0;
    fields.ScaleStep = 2.5;
    for (int i = 0; i < kSitWidth * kSitHeight; ++i) {
      fields.Counts.push_back(static_cast<std::int16_t>(i % kSitWidth));
    }
    session_.View.PaletteSelection = 0;
    FillPaletteList(session_.View);
    OpenPath(folder_.Write(QStringLiteral("range.sit"), EncodeSit(fields)), session_, progress_);
  }

  RenderPieces Pieces() { return PiecesForRendering(session_, progress_); }
  int IndexAt(int column) {
    return session_.Buffers.Picbuf1.Pixels()[static_cast<std::size_t>(100 * kSitWidth + column)];
  }
  std::string Texts() const {
    return (session_.Image.ScaleLowText + QLatin1Char('|') + session_.Image.ScaleHighText)
        .toStdString();
  }
  void SetThumbs(double low, double high) {
    ASSERT_TRUE(session_.Range.SetRangeValues(true, high, low));
  }

  TestFolder folder_;
  Session session_;
  Progress progress_;
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
  SetThumbs(top, top);
  ThumbAtRest(Pieces());
  EXPECT_NEAR(session_.Range.RangeMinValue(), top - 0.1, 1e-4);
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
  RangeApply(QStringLiteral("68 \u00B0F"), QStringLiteral("86"), Pieces());
  EXPECT_NEAR(session_.Range.RangeMinValue(), 20.0, 1e-9);
  EXPECT_NEAR(session_.Image.SitScaleMax, 30.0F, 1e-5);
  EXPECT_EQ(Texts(), "68.0|86.0");
  RangeApply(QStringLiteral("500"), QStringLiteral("600"), Pieces());  // Beyond the limits.
  EXPECT_EQ(Texts(), "68.0|86.0");
  RangeApply(QStringLiteral("80"), QStringLiteral("70"), Pieces());  // Upside down.
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
  ApplyLimitTexts(QStringLiteral("0"), QStringLiteral("50"), Pieces());
  EXPECT_EQ(session_.Range.ScaleMaxLimit(), 50.0);
  EXPECT_EQ(session_.View.LimitMinText, QStringLiteral("0.0"));
  ApplyLimitTexts(QStringLiteral("60"), QStringLiteral("50"), Pieces());
  EXPECT_EQ(session_.Range.ScaleMinLimit(), 0.0);
  EXPECT_EQ(session_.View.LimitMinText, QStringLiteral("0.0"));
  EXPECT_EQ(session_.View.LimitMaxText, QStringLiteral("50.0"));
  // A limit inside the thumbs pushes them along.
  ApplyLimitTexts(QStringLiteral("20"), QStringLiteral("30"), Pieces());
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
  RangeApply(QStringLiteral("2,3"), QStringLiteral("50.1"), Pieces());
  EXPECT_EQ(Texts(), "2.3|50.1");
  EXPECT_EQ(session_.Range.RangeMinValue(), low);
  EXPECT_EQ(session_.Range.RangeMaxValue(), high);
  ApplyLimitTexts(QStringLiteral("2.3"), QStringLiteral("50.1"), Pieces());
  EXPECT_EQ(session_.Range.ScaleMinLimit(), low);
  EXPECT_EQ(session_.Range.RangeMaxValue(), high);
  RangeApply(QStringLiteral("2.2"), QStringLiteral("40"), Pieces());
  EXPECT_EQ(Texts(), "2.3|50.1") << "what is outside by more than the rounding is refused";
}

TEST_F(RangeActionsTest, TheToggleShowsWhatNarrowerLimitsLeaveOfTheExtremes) {
  ApplyLimitTexts(QStringLiteral("12"), QStringLiteral("50.1"), Pieces());
  ToggleRangeByButton(Pieces());
  EXPECT_EQ(session_.View.Source, RangeSource::kImage);
  EXPECT_EQ(Texts(), "12.0|42.1");
  ApplyLimitTexts(QStringLiteral("12"), QStringLiteral("40"), Pieces());
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
