#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <tuple>

#include "formats/fixed32.h"
#include "formats/foreign_content.h"
#include "formats/sit.h"

namespace tessa {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::size_t kRasterEnd = 1024 + 153600;

/// The high byte is the row and the low byte the column, so that 0x8000 opens row 128.
std::int16_t CountAt(std::size_t column, std::size_t row) {
  const auto high = static_cast<int>(row);
  return static_cast<std::int16_t>((high < 128 ? high : high - 256) * 256 +
                                   static_cast<int>(column % 256));
}

void Put(Bytes& file, std::size_t at, std::string_view text) {
  std::copy(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

void PutBytes(Bytes& file, std::size_t at, std::initializer_list<std::uint8_t> bytes) {
  std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

/// A file put together byte by byte, with no help from the encoder.
Bytes HandMadeSit() {
  Bytes file(156160);
  Put(file, 0, "SIT 3.5J  ");
  PutBytes(file, 26, {0xFF, 0xD8, 0x80, 0x00});  // -40.5
  PutBytes(file, 30, {0x00, 0x78, 0x40, 0x00});  // 120.25
  PutBytes(file, 48, {0xFF, 0xFF, 0x80, 0x00});  // -1.5
  PutBytes(file, 52, {0x00, 0x00, 0x03, 0x00});  // 3 / 256
  PutBytes(file, 68, {0x00, 0x15, 0xC0, 0x00});  // 21.75
  PutBytes(file, 72, {0x00, 0x05, 0x20, 0x00});  // 5.125
  PutBytes(file, 76, {0x00, 0x5D});              // 93
  Put(file, 92, "031129");
  Put(file, 98, "235958");
  Put(file, 108, "SOUND007");
  Put(file, 116, "VOC");
  Put(file, 214, "kitchen wall");
  Put(file, 214 + 635, "end");
  Put(file, 982, "19 characters long  ");
  for (std::size_t row = 0; row < 240; ++row) {
    for (std::size_t column = 0; column < 320; ++column) {
      file[1024 + 2 * (row * 320 + column)] = static_cast<std::uint8_t>(row);
      file[1024 + 2 * (row * 320 + column) + 1] = static_cast<std::uint8_t>(column);
    }
  }
  return file;
}

SitImage Decode(const Bytes& file) {
  return DecodeSit(ByteSpan(file).first(std::min(file.size(), kSitDecodeSize)), file.size());
}

/// Kind, offset, field and whether it costs the image: all of a fault but its words.
using FaultFacts = std::tuple<ProblemKind, std::uint64_t, std::string, bool>;
std::vector<FaultFacts> FactsOf(const Problems& faults) {
  std::vector<FaultFacts> facts;
  for (const Problem& fault : faults) {
    facts.emplace_back(fault.Kind, fault.Offset, fault.Field, fault.NoImage);
  }
  return facts;
}
FaultFacts BadValue(std::uint64_t offset, std::string field) {
  return {ProblemKind::kBadValue, offset, std::move(field), false};
}
FaultFacts Truncated(std::uint64_t offset, std::string field, bool noImage) {
  return {ProblemKind::kTruncated, offset, std::move(field), noImage};
}

TEST(Fixed32, FractionMovesNegativeNumbersAwayFromZero) {
  EXPECT_EQ(DecodeFixed32(-1, 0x8000), -1.5);
  EXPECT_EQ(DecodeFixed32(1, 0x8000), 1.5);
  EXPECT_EQ(DecodeFixed32(0, 0xFFFF), 65535.0 / 65536.0);
  EXPECT_EQ(DecodeFixed32(-1, 0), -1.0);
  EXPECT_EQ(DecodeFixed32(32767, 0xFFFF), 32768.0 - 1.0 / 65536.0);
  EXPECT_EQ(DecodeFixed32(-32768, 0xFFFF), -32769.0 + 1.0 / 65536.0);
}

TEST(Fixed32, EveryWholePartSurvivesEncodingWithItsFraction) {
  std::uint16_t fraction = 0;
  for (int whole = -32768; whole <= 32767; ++whole, fraction += 40503) {
    const auto parts = EncodeFixed32(DecodeFixed32(static_cast<std::int16_t>(whole), fraction));
    ASSERT_EQ(parts.Whole, whole);
    ASSERT_EQ(parts.Fraction, fraction) << whole;
  }
}

TEST(Fixed32, EncoderTakesTheNearestValueThatCanBeWritten) {
  const auto nearest = [](double value) {
    const Fixed32Parts parts = EncodeFixed32(value);
    return DecodeFixed32(parts.Whole, parts.Fraction);
  };
  EXPECT_EQ(nearest(0.01), 655.0 / 65536.0);
  EXPECT_EQ(nearest(1.9999999), 2.0);
  EXPECT_EQ(nearest(-1.9999999), -2.0);
  // Between -1 and 0 nothing can be written.
  EXPECT_EQ(nearest(-0.2), 0.0);
  EXPECT_EQ(nearest(-0.7), -1.0);
  EXPECT_EQ(nearest(1e9), 32768.0 - 1.0 / 65536.0);
  EXPECT_EQ(nearest(-1e9), -32769.0 + 1.0 / 65536.0);
}

TEST(SitHeader, FieldsAreReadFromTheirPlacesInTheFile) {
  Bytes file = HandMadeSit();
  file[400] = 0xE9;
  const SitImage image = Decode(file);
  const SitHeader& header = image.Header;
  EXPECT_THAT(image.Faults, IsEmpty());
  EXPECT_EQ(image.HeaderBytes, 1024U);
  EXPECT_EQ(header.Signature, "SIT 3.5J  ");
  EXPECT_EQ(header.RangeLow, -40.5);
  EXPECT_EQ(header.RangeHigh, 120.25);
  EXPECT_EQ(header.Offset, -1.5);
  EXPECT_EQ(header.Gain, 0.01171875);
  EXPECT_EQ(header.ScaleCenter, 21.75);
  EXPECT_EQ(header.ScaleStep, 5.125);
  EXPECT_EQ(header.EmissivityX100, 93);
  EXPECT_EQ(header.DateText, "031129");
  EXPECT_EQ(header.TimeText, "235958");
  EXPECT_EQ(header.SoundName, "SOUND007");
  EXPECT_EQ(header.SoundExt, "VOC");
  ASSERT_EQ(header.Comment.size(), 638U);
  EXPECT_EQ(header.Comment.substr(0, 13), std::string("kitchen wall\0", 13));
  EXPECT_EQ(header.Comment[400 - 214], '\xE9');
  EXPECT_EQ(header.Comment.substr(635), "end");
  EXPECT_EQ(header.Memo, "19 characters long  ");
  EXPECT_TRUE(std::equal(header.Record.begin(), header.Record.end(), file.begin()));
}

TEST(SitRaster, CountsAreSignedAndKeepTheirColumnAndRow) {
  const SitImage image = Decode(HandMadeSit());
  EXPECT_EQ(image.Raster.Width, 320);
  EXPECT_EQ(image.Raster.Height, 240);
  EXPECT_EQ(image.Raster.Present, 76800U);
  ASSERT_EQ(image.Raster.Counts.size(), 76800U);
  for (std::size_t row = 0; row < 240; ++row) {
    for (std::size_t column = 0; column < 320; ++column) {
      ASSERT_EQ(image.Raster.Counts[row * 320 + column], CountAt(column, row))
          << "column " << column << ", row " << row;
    }
  }
  EXPECT_EQ(image.Raster.Counts[std::size_t{128} * 320], -32768);
  const CountExtremes extremes = FindExtremes(image.Raster.Counts);
  EXPECT_EQ(extremes.Low, -32768);
  EXPECT_EQ(extremes.High, 127 * 256 + 255);
}

TEST(SitRaster, CalibrationIsEvaluatedInDoubleAndRoundedOnce) {
  const LinearCalibration line{0.1F, -1000.1F};
  const std::int16_t counts[] = {-32768, -1, 0, 1, 10001, 32767};
  float degrees[6] = {};
  Calibrate(counts, line, degrees);
  int roundedTwice = 0;
  for (std::size_t i = 0; i < 6; ++i) {
    // Exact in long double: 16 bits times 24 bits plus 24 bits.
    EXPECT_EQ(degrees[i], static_cast<float>(static_cast<long double>(counts[i]) *
                                                 static_cast<long double>(0.1F) +
                                             static_cast<long double>(-1000.1F)));
    roundedTwice += degrees[i] != static_cast<float>(counts[i]) * 0.1F + -1000.1F;
  }
  EXPECT_GT(roundedTwice, 0) << "the counts cannot tell the two ways apart";
}

TEST(SitCut, AFileThatEndsInsideItsHeaderKeepsWhatIsThere) {
  const Bytes whole = HandMadeSit();
  for (std::size_t length = 0; length < 1024; ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    Bytes filledUp = cut;
    filledUp.resize(1024);
    const SitImage image = Decode(cut);
    ASSERT_EQ(image.HeaderBytes, length);
    ASSERT_TRUE(std::equal(filledUp.begin(), filledUp.end(), image.Header.Record.begin()));
    ASSERT_EQ(image.Header.EmissivityX100, length < 78 ? 0 : 93) << length;
    ASSERT_EQ(image.Header.RangeHigh, length < 32 ? 0.0 : length < 33 ? 120.0 : 120.25) << length;
    ASSERT_EQ(image.Header.Memo, std::string(filledUp.begin() + 982, filledUp.begin() + 1002));
    ASSERT_EQ(image.Raster.Present, 0U);
    ASSERT_EQ(image.Raster.Counts, std::vector<std::int16_t>(76800));
    ASSERT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(length, "SitHeader", true)));
  }
}

TEST(SitCut, AFileThatEndsInsideItsRasterKeepsTheCountsBeforeTheCut) {
  const Bytes whole = HandMadeSit();
  const std::vector<std::int16_t> counts = Decode(whole).Raster.Counts;
  std::vector<std::size_t> lengths = {1024,       1025,           1026,          1024 + 639,
                                      1024 + 640, kRasterEnd - 2, kRasterEnd - 1};
  for (std::size_t length = 1027; length < kRasterEnd; length += 1009) {
    lengths.push_back(length);
  }
  for (const std::size_t length : lengths) {
    const SitImage image =
        Decode(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    const std::size_t present = (length - 1024) / 2;
    std::vector<std::int16_t> expected(counts.begin(),
                                       counts.begin() + static_cast<std::ptrdiff_t>(present));
    expected.resize(76800);
    ASSERT_EQ(image.Raster.Present, present);
    ASSERT_EQ(image.Raster.Counts, expected) << length;
    ASSERT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(length, "Raster", present == 0)));
    ASSERT_THAT(image.Faults[0].Text,
                HasSubstr(": " + std::to_string(present / 320) + " of 240 rows"));
  }
  const Bytes unpadded(whole.begin(), whole.begin() + kRasterEnd);
  EXPECT_THAT(Decode(unpadded).Faults, IsEmpty());
  EXPECT_EQ(Decode(unpadded).Raster.Counts, counts);
}

TEST(SitHeader, ValuesThatNoCameraWritesAreReportedAndReadAllTheSame) {
  struct Case {
    std::size_t At;
    std::initializer_list<std::uint8_t> Bytes;
    FaultFacts Fault;
  };
  const Case cases[] = {
      {52, {0, 0, 0, 0}, BadValue(52, "Gain")},
      {30, {0xFF, 0xD8, 0x80, 0x00}, BadValue(26, "RangeLow")},  // As low as the lower end.
      {26, {0x7F, 0xFF, 0, 0}, BadValue(26, "RangeLow")},
      {76, {0, 0}, BadValue(76, "EmissivityX100")},
      {76, {0, 101}, BadValue(76, "EmissivityX100")},
      {76, {0x80, 0}, BadValue(76, "EmissivityX100")},
      {72, {0, 0, 0, 0}, BadValue(72, "ScaleStep")},
      {72, {0xFF, 0xFF, 0, 0}, BadValue(72, "ScaleStep")},
      {95, {' '}, BadValue(92, "DateText")},
      {103, {0}, BadValue(98, "TimeText")},
  };
  for (const Case& test : cases) {
    Bytes file = HandMadeSit();
    PutBytes(file, test.At, test.Bytes);
    const SitImage image = Decode(file);
    EXPECT_THAT(FactsOf(image.Faults), ElementsAre(test.Fault)) << test.At;
    EXPECT_EQ(image.Raster.Present, 76800U);
  }
}

TEST(SitHeader, AllBitsSetIsReadAsItStands) {
  const SitImage image = Decode(Bytes(156160, 0xFF));
  EXPECT_EQ(image.Header.Gain, -1.0 - 65535.0 / 65536.0);
  EXPECT_EQ(image.Header.EmissivityX100, -1);
  EXPECT_EQ(image.Header.Comment, std::string(638, '\xFF'));
  EXPECT_EQ(AttachmentCode(image.Header), 0);
  EXPECT_EQ(SitVersionOf(image.Header), 0.0F);
  EXPECT_EQ(image.Raster.Counts, std::vector<std::int16_t>(76800, -1));
  EXPECT_THAT(
      FactsOf(image.Faults),
      ElementsAre(BadValue(26, "RangeLow"), BadValue(76, "EmissivityX100"),
                  BadValue(72, "ScaleStep"), BadValue(92, "DateText"), BadValue(98, "TimeText")));
}

TEST(SitVersion, ComesFromTheSignatureUnlessThereIsAnAttachmentCode) {
  SitHeader header;
  EXPECT_EQ(SitVersionOf(header), 0.0F);
  const std::pair<std::string_view, float> signatures[] = {
      {"SIT 3.00  ", 3.0F},  {"SIT 3.1 I ", 3.1F},  {"9999v3.5.7", 3.5F},
      {"99993    4", 34.0F}, {"9999  .75Z", 0.75F}, {"9999    -1", 1.0F}};
  for (const auto& [signature, version] : signatures) {
    header.Signature = signature;
    EXPECT_EQ(SitVersionOf(header), version) << signature;
  }
  for (const int code : {0, 1, 2, 3, 4, int{'1'}, 255}) {
    header.SoundExt[2] = static_cast<char>(code);
    const bool isCode = code >= 1 && code <= 3;
    EXPECT_EQ(AttachmentCode(header), isCode ? code : 0);
    EXPECT_EQ(SitVersionOf(header), isCode ? 4.0F : 1.0F);
  }
}

TEST(SitAttachment, LengthOfTheVisiblePictureIsReadForCode3Alone) {
  Bytes file = HandMadeSit();
  file.resize(156164);
  PutBytes(file, 156160, {0x01, 0x02, 0x03, 0x04});
  for (const int code : {0, 1, 2, 3}) {
    file[118] = static_cast<std::uint8_t>(code);
    const SitImage image = Decode(file);
    EXPECT_EQ(image.VisibleLength, code == 3 ? 0x01020304U : 0U);
    EXPECT_THAT(image.Faults, IsEmpty());
  }
  file.resize(156163);
  EXPECT_EQ(Decode(file).VisibleLength, 0U);
}

TEST(SitAttachment, APromiseThatTheFileDoesNotKeepIsReported) {
  Bytes file = HandMadeSit();
  EXPECT_THAT(Decode(file).Faults, IsEmpty()) << "an ordinary extension promises nothing";
  for (const int code : {1, 2, 3}) {
    file[118] = static_cast<std::uint8_t>(code);
    EXPECT_THAT(FactsOf(Decode(file).Faults), ElementsAre(Truncated(156160, "SoundExt", false)));
  }
  file.resize(2000);
  EXPECT_THAT(FactsOf(Decode(file).Faults),
              ElementsAre(Truncated(2000, "Raster", false), Truncated(2000, "SoundExt", false)));
}

TEST(SitEncoder, WhatItWritesIsWhatTheDecoderReads) {
  SitFields fields;
  fields.Signature = "SIT 3.5J  and too long";
  fields.RangeLow = -40.5;
  fields.RangeHigh = 120.25;
  fields.Offset = -1.5;
  fields.Gain = 3.0 / 256.0;
  fields.ScaleCenter = 21.75;
  fields.ScaleStep = 5.125;
  fields.EmissivityX100 = 93;
  fields.DateText = "031129";
  fields.TimeText = "235958";
  fields.SoundName = "SOUND007";
  fields.SoundExt = "VOC";
  fields.Comment = "kitchen wall" + std::string(623, '\0') + "end";
  fields.Memo = "19 characters long  ";
  fields.Counts = Decode(HandMadeSit()).Raster.Counts;
  EXPECT_EQ(EncodeSit(fields), HandMadeSit());
  fields.Attachment = {1, 2, 3};
  const Bytes longer = EncodeSit(fields);
  EXPECT_EQ(Bytes(longer.begin() + 156160, longer.end()), (Bytes{1, 2, 3}));
}

TEST(ForeignContent, AMisnamedFileIsToldFromARadiometricOne) {
  using std::string_view_literals::operator""sv;
  const std::pair<std::string_view, std::string_view> kinds[] = {
      {"\xFF\xD8\xFF\xE0"sv, "a JPEG picture"},
      {"\x89PNG\r\n\x1A\n\0"sv, "a PNG picture"},
      {"GIF89a"sv, "a GIF picture"},
      {"II*\0\x08"sv, "a TIFF picture"},
      {"MM\0*"sv, "a TIFF picture"},
      {"%PDF-1.4\n"sv, "a PDF document"},
      {"PK\x03\x04"sv, "a ZIP archive"},
      {"\x1F\x8B\x08"sv, "a compressed archive"},
      {"\x7F\x45LF\x02"sv, "a program"},
      {"\xEF\xBB\xBFhello"sv, "text"},
      {"first\tline\r\nsecond \xE4\n"sv, "text"}};
  for (const auto& [start, kind] : kinds) {
    Bytes file(156160);
    std::copy(start.begin(), start.end(), file.begin());
    if (kind == "text") {
      std::fill(file.begin() + static_cast<std::ptrdiff_t>(start.size()), file.end(), '.');
    }
    const SitImage image = Decode(file);
    ASSERT_EQ(FactsOf(image.Faults),
              (std::vector<FaultFacts>{{ProblemKind::kWrongKind, 0, "Signature", true}}))
        << kind;
    EXPECT_EQ(image.Faults[0].Text, "the file is " + std::string(kind) + ", not a SIT image");
    // Even a start too short for a header gives the kind away.
    EXPECT_EQ(FactsOf(Decode(Bytes(start.begin(), start.end())).Faults), FactsOf(image.Faults));
  }
  for (const std::string_view start :
       {""sv, "SIT 3.00  "sv, "\xFF\xD8"sv, "\x89PNG"sv, "MM*\0"sv, "one line without an end"sv,
        "a line\nand a zero\0"sv, "\x1B[0m\n"sv}) {
    EXPECT_EQ(RecogniseContent(Bytes(start.begin(), start.end())), std::nullopt) << start;
  }
}

}  // namespace
}  // namespace tessa
