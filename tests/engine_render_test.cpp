#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "test_files.h"
#include "view/render.h"
#include "view/render_mapping.h"

namespace tessa::testing {
namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The rule told in the plainest way: extended precision, ties to even, a value that fits no 32-bit
/// integer keeps the one before it, then the clip.
int Expected(float degrees, const RenderLine& line, int before) {
  const long double sum = static_cast<long double>(line.Gain) * static_cast<long double>(degrees) +
                          static_cast<long double>(line.Offset);
  long double whole = std::floor(sum);
  const long double part = sum - whole;
  if (part > 0.5L || (part == 0.5L && std::fmod(whole, 2.0L) != 0.0L)) {
    whole += 1.0L;
  }
  if (!(whole >= -2147483648.0L && whole <= 2147483647.0L)) {
    return before;
  }
  return static_cast<int>(std::fmin(std::fmax(whole, 0.0L), 255.0L));
}

/// Maps a row and compares each pixel with the plain rule.
::testing::AssertionResult MapsAsExpected(const std::vector<float>& degrees, const RenderLine& line,
                                          std::int32_t& last) {
  std::vector<std::uint8_t> indices(degrees.size());
  std::int32_t expected = last;
  MapToIndices(degrees, line, last, indices);
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    expected = Expected(degrees[i], line, expected);
    if (indices[i] != expected) {
      return ::testing::AssertionFailure()
             << "pixel " << i << " of " << degrees.size() << ": " << std::hexfloat << degrees[i]
             << " by " << line.Gain << " plus " << line.Offset << std::dec << " gives "
             << int{indices[i]} << ", not " << expected;
    }
  }
  return last == expected ? ::testing::AssertionSuccess()
                          : ::testing::AssertionFailure() << "the value carried over is wrong";
}

RenderLine LineOf(float lo, float hi) {
  const auto gain = static_cast<float>(255.0 / (static_cast<double>(hi) - static_cast<double>(lo)));
  return {gain, static_cast<float>(0.0 - static_cast<double>(gain) * static_cast<double>(lo))};
}

std::vector<int> Map(const std::vector<float>& degrees, const RenderLine& line) {
  std::vector<std::uint8_t> indices(degrees.size());
  std::int32_t last = 0;
  MapToIndices(degrees, line, last, indices);
  return {indices.begin(), indices.end()};
}

TEST(RenderMapping, TwoMillionRandomTemperaturesMapAsInExtendedPrecision) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> ends(-50.0F, 200.0F);
  std::int32_t last = 0;
  for (int row = 0; row < 2000; ++row) {
    const RenderLine line = LineOf(ends(random), ends(random));
    std::uniform_real_distribution<float> spread(-60.0F, 250.0F);
    std::vector<float> degrees(1000 + static_cast<std::size_t>(row) % 97);
    std::generate(degrees.begin(), degrees.end(), [&] { return spread(random); });
    ASSERT_TRUE(MapsAsExpected(degrees, line, last));
  }
}

TEST(RenderMapping, TemperaturesNextToATieMapAsInExtendedPrecision) {
  std::mt19937 random(2);
  std::uniform_real_distribution<float> ends(-50.0F, 200.0F);
  std::int32_t last = 0;
  for (int row = 0; row < 500; ++row) {
    // Steps of 1/8 make exact ties; other ends make sums as near to a half as singles allow.
    float lo = ends(random);
    float hi = lo + 300.0F / static_cast<float>(1 + row % 300);
    if (row % 2 == 0) {
      lo = std::round(lo * 8.0F) / 8.0F;
      hi = lo + 255.0F / static_cast<float>(1 << row / 2 % 8);
    }
    const RenderLine line = LineOf(lo, hi);
    std::vector<float> degrees;
    for (int index = -2; index <= 257; ++index) {
      float degree = static_cast<float>((index + 0.5 - static_cast<double>(line.Offset)) /
                                        static_cast<double>(line.Gain));
      for (int i = 0; i < 3; ++i) {
        degree = std::nextafter(degree, -kInfinity);
      }
      for (int i = 0; i < 7; ++i) {
        degrees.push_back(degree);
        degree = std::nextafter(degree, kInfinity);
      }
    }
    ASSERT_TRUE(MapsAsExpected(degrees, line, last));
  }
  // Products far below the last place of a double, beside an offset on a half.
  for (int half = -3; half <= 520; ++half) {
    const RenderLine line{1.0F, static_cast<float>(half) / 2.0F};
    std::vector<float> degrees;
    for (int exponent = -45; exponent >= -80; --exponent) {
      degrees.push_back(std::ldexp(1.0F, exponent));
      degrees.push_back(-std::ldexp(1.0F, exponent));
    }
    ASSERT_TRUE(MapsAsExpected(degrees, line, last));
  }
}

TEST(RenderMapping, TiesGoToTheEvenIndex) {
  EXPECT_THAT(Map({0.5F, 1.5F, 2.5F, 3.5F, 253.5F, 254.5F, 255.5F, -0.5F}, {1.0F, 0.0F}),
              ElementsAre(0, 2, 2, 4, 254, 254, 255, 0));
  // A double would take these for ties; extended precision still sees the difference.
  const float tiny = std::ldexp(1.0F, -60);
  EXPECT_THAT(Map({tiny, -tiny, 0.0F}, {1.0F, 0.5F}), ElementsAre(1, 0, 0));
  EXPECT_THAT(Map({tiny, -tiny, 0.0F}, {1.0F, 1.5F}), ElementsAre(2, 1, 2));
  const float tinier = std::ldexp(1.0F, -80);
  EXPECT_THAT(Map({tinier, -tinier}, {1.0F, 0.5F}), ElementsAre(0, 0));
}

TEST(RenderMapping, WhatFitsNoIntegerKeepsTheValueBefore) {
  const RenderLine line{1.0F, 0.0F};
  EXPECT_THAT(
      Map({kNotANumber, 7.0F, kNotANumber, kInfinity, -kInfinity, 1e30F, -1e30F, 9.0F}, line),
      ElementsAre(0, 7, 7, 7, 7, 7, 7, 9));
  EXPECT_THAT(
      Map({9.0F, 2147483520.0F, 9.0F, 2147483648.0F, -2147483648.0F, 9.0F, -2147483904.0F}, line),
      ElementsAre(9, 255, 9, 9, 0, 9, 9));
  // 2147483647.25 still fits; 2147483647.5 rounds to the even integer that does not.
  EXPECT_THAT(Map({-2147483520.0F, 2147483520.0F}, {1.0F, 127.25F}), ElementsAre(0, 255));
  EXPECT_THAT(Map({-2147483520.0F, 2147483520.0F}, {1.0F, 127.5F}), ElementsAre(0, 0));
  EXPECT_THAT(Map({300.0F, kNotANumber, -9999.0F, kNotANumber, 9999.0F}, line),
              ElementsAre(255, 255, 0, 0, 255));

  // Lines whose sums leave the integers at quite other temperatures.
  std::int32_t carried = 5;
  for (const RenderLine& extreme :
       {RenderLine{0.0F, 3e9F}, RenderLine{0.0F, 100.0F}, RenderLine{1e30F, 50.0F},
        RenderLine{1e-30F, 2147483520.0F}, RenderLine{3e38F, -3e38F}, RenderLine{-2e7F, 1e9F}}) {
    for (const float scale : {1e-30F, 1.0F, 1e5F, 1e38F}) {
      std::vector<float> degrees(200);
      for (std::size_t i = 0; i < degrees.size(); ++i) {
        degrees[i] = scale * (static_cast<float>(i) - 100.0F) / 33.0F;
      }
      ASSERT_TRUE(MapsAsExpected(degrees, extreme, carried));
    }
  }

  // At every place of rows of every length round the size of a block, and from row to row.
  std::int32_t last = 33;
  for (std::size_t length = 0; length <= 140; ++length) {
    for (std::size_t bad = 0; bad < length; bad += 5) {
      std::vector<float> degrees(length, 100.0F);
      for (std::size_t i = 0; i < length; ++i) {
        degrees[i] += static_cast<float>(i) / 4.0F;
      }
      degrees[bad] = bad % 2 == 0 ? kNotANumber : 3e9F;
      ASSERT_TRUE(MapsAsExpected(degrees, line, last)) << length << ' ' << bad;
    }
  }
}

class Repaints : public Progress {
 public:
  void Advance() override { ++Calls; }
  int Calls = 0;
};

class Rendering : public ::testing::Test {
 protected:
  /// An image of `width` x 2 whose grid counts columns from 0; the buffers hold 77.
  void Make(const char* file, int width) {
    SetCurrentFile(image_, QString::fromLatin1(file));
    image_.HasTemperature = true;
    image_.ImageWidth = width;
    image_.ImageHeight = 2;
    image_.TempGrid.Allocate(width, 2);
    image_.RowBuffers.Allocate(2, width);
    picture_.CreateBuffer(77, 2, width, 8);
    for (int row = 0; row < 2; ++row) {
      std::fill(image_.RowBuffers.Row(row).begin(), image_.RowBuffers.Row(row).end(), 77);
      for (int column = 0; column < width; ++column) {
        image_.TempGrid.At(column, row) = static_cast<float>(column);
      }
    }
    slider_.SetScaleLimits(true, 1e9, -1e9);
  }
  RenderPieces Pieces() { return {image_, view_, picture_, slider_, strings_, steps_, progress_}; }

  OpenImage image_;
  ViewState view_;
  Picbuf picture_;
  RangeSlider slider_;
  Strings strings_;
  StepLog steps_;
  Repaints progress_;
};

TEST_F(Rendering, ARangeOf0To255GivesBackTheIndicesAndItsReverseRunsDownwards) {
  Make("A.TXI", 256);
  float lo = 0.0F;
  float hi = 255.0F;
  RenderRows(lo, hi, Pieces());
  std::vector<int> ramp(256);
  std::iota(ramp.begin(), ramp.end(), 0);
  EXPECT_THAT(picture_.IndexRow(1), ElementsAreArray(ramp));
  EXPECT_THAT(image_.RowBuffers.Row(1), ElementsAreArray(ramp));
  std::swap(lo, hi);
  RenderRows(lo, hi, Pieces());
  std::reverse(ramp.begin(), ramp.end());
  EXPECT_THAT(picture_.IndexRow(0), ElementsAreArray(ramp));
  EXPECT_EQ(lo, 255.0F);
  EXPECT_EQ(image_.TempGrid.At(200, 1), 200.0F);
  EXPECT_EQ(progress_.Calls, 0);
  view_.RenderProgressVisible = true;
  RenderRows(lo, hi, Pieces());
  EXPECT_EQ(progress_.Calls, 2);
  EXPECT_EQ(view_.RenderProgress, 100.0);
}

TEST_F(Rendering, SomeEndingsAreDrawnInTheirFirst255ColumnsOnly) {
  for (const auto& [file, width] :
       {std::pair{"A.TMP", 255}, std::pair{"A.JPG", 255}, std::pair{"A.SIT", 255},
        std::pair{"A.TXI", 300}, std::pair{"A.SEQ", 300}, std::pair{"A.BMP", 300},
        std::pair{"A.RTI", 300}}) {
    Make(file, 300);
    float lo = 1000.0F;
    float hi = 2000.0F;
    RenderRows(lo, hi, Pieces());
    const auto columns = static_cast<std::size_t>(width);
    EXPECT_THAT(picture_.IndexRow(1).first(columns), Each(0)) << file;
    EXPECT_THAT(picture_.IndexRow(1).subspan(columns), Each(77)) << file;
    EXPECT_THAT(image_.RowBuffers.Row(0).subspan(columns), Each(77)) << file;
  }
  Make("A.SIT", 300);
  float lo = 1000.0F;
  float hi = 2000.0F;
  RenderRowsSit(lo, hi, Pieces());
  EXPECT_THAT(picture_.IndexRow(1), Each(0));
  Make("A.TMP", 100);
  RenderRows(lo, hi, Pieces());
  EXPECT_THAT(picture_.IndexRow(1), Each(0));
}

TEST_F(Rendering, ADivisionByZeroIsAFailedStepAndNotInfinity) {
  Make("A.SIT", 64);
  float lo = 5e8F;  // A tenth more is the same single.
  float hi = 5e8F;
  RenderRowsSit(lo, hi, Pieces());
  ASSERT_EQ(steps_.Failures().size(), 1U);
  EXPECT_EQ(steps_.Failures()[0].Reason, "division by zero");
  EXPECT_THAT(picture_.IndexRow(0), Each(0));
  EXPECT_EQ(image_.ScaleHighText.toStdString(), "500000");  // Six characters.
}

}  // namespace
}  // namespace tessa::testing
