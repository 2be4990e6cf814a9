#include <optional>

#include "formats/fixed32.h"
#include "formats/foreign_content.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

constexpr std::size_t kRasterEnd = 1024 + 153600;

/// A file put together byte by byte, with no help from the encoder.
Bytes HandMadeSit() {
  Bytes file(156160);
  Put(file, 0, "SIT 3.5J  ");
  Put(file, 26, "\xFF\xD8\x80\x00"sv);  // -40.5
  Put(file, 30, "\x00\x78\x40\x00"sv);  // 120.25
  Put(file, 48, "\xFF\xFF\x80\x00"sv);  // -1.5
  Put(file, 52, "\x00\x00\x03\x00"sv);  // 3 / 256
  Put(file, 68, "\x00\x15\xC0\x00"sv);  // 21.75
  Put(file, 72, "\x00\x05\x20\x00"sv);  // 5.125
  Put(file, 76, "\x00\x5D"sv);          // 93
  Put(file, 92, "031129");
  Put(file, 98, "235958");
  Put(file, 108, "SOUND007");
  Put(file, 116, "VOC");
  Put(file, 214, "kitchen wall");
  Put(file, 214 + 635, "end");
  Put(file, 982, "19 characters long  ");
  PutCounts(file, 320, 240);
  return file;
}

SitImage Decode(const Bytes& file) {
  return DecodeSit(ByteSpan(file).first(std::min(file.size(), kSitDecodeSize)), file.size());
}

TEST(Fixed32, FractionMovesNegativeNumbersAwayFromZero) {
  EXPECT_EQ(DecodeFixed32(-1, 0x8000), -1.5);
  EXPECT_EQ(DecodeFixed32(-1, 0), -1.0);
  EXPECT_EQ(DecodeFixed32(32767, 0xFFFF), 32768.0 - 1.0 / 65536.0);
  EXPECT_EQ(DecodeFixed32(-32768, 0xFFFF), -32769.0 + 1.0 / 65536.0);
  // The encoder takes the nearest value; between -1 and 0 nothing can be written.
  for (const auto& [value, nearest] :
       {std::pair{0.01, 655.0 / 65536.0}, std::pair{1.9999999, 2.0}, std::pair{-1.9999999, -2.0},
        std::pair{-0.2, 0.0}, std::pair{-0.7, -1.0}, std::pair{1e9, 32768.0 - 1.0 / 65536.0},
        std::pair{-1e9, -32769.0 + 1.0 / 65536.0}}) {
    const Fixed32Parts parts = EncodeFixed32(value);
    EXPECT_EQ(DecodeFixed32(parts.Whole, parts.Fraction), nearest) << value;
  }
}

TEST(Fixed32, EveryWholePartSurvivesEncodingWithItsFraction) {
  std::uint16_t fraction = 0;
  for (int whole = -32768; whole <= 32767; ++whole, fraction += 40503) {
    const auto parts = EncodeFixed32(DecodeFixed32(static_cast<std::int16_t>(whole), fraction));
    ASSERT_EQ(parts.Whole, whole);
    ASSERT_EQ(parts.Fraction, fraction) << whole;
  }
}

TEST(SitHeader, FieldsAreReadFromTheirPlacesInTheFile) {
  Bytes file = HandMadeSit();
  file[400] = 0xE9;
  const SitImage image = Decode(file);
  const SitHeader& header = image.Header;
  EXPECT_THAT(image.Faults, IsEmpty());
  EXPECT_EQ(SharedFields(header),
            "SIT 3.5J  |-40.5|120.25|-1.5|0.01171875|21.75|5.125|93|031129|235958");
  EXPECT_EQ(header.SoundName + header.SoundExt, "SOUND007VOC");
  EXPECT_EQ(header.Comment,
            "kitchen wall" + std::string(174, '\0') + '\xE9' + std::string(448, '\0') + "end");
  EXPECT_EQ(header.Memo, "19 characters long  ");
  EXPECT_TRUE(std::equal(header.Record.begin(), header.Record.end(), file.begin()));
}

TEST(SitRaster, CountsAreSignedAndKeepTheirColumnAndRow) {
  const RawRaster raster = Decode(HandMadeSit()).Raster;
  EXPECT_EQ(raster.Width, 320);
  EXPECT_EQ(raster.Height, 240);
  EXPECT_EQ(raster.Present, 76800U);
  EXPECT_EQ(raster.Counts, CountsOfPlaces(320, 240));
  const CountExtremes extremes = FindExtremes(raster.Counts);
  EXPECT_EQ(extremes.Low, -32768);
  EXPECT_EQ(extremes.High, 32767);
}

TEST(SitCut, AFileThatEndsInsideItsHeaderKeepsWhatIsThere) {
  AtEveryCut(First(HandMadeSit(), 1024), [](Bytes cut) {
    const SitImage image = Decode(cut);
    const std::size_t length = cut.size();
    cut.resize(1024);
    EXPECT_EQ(image.HeaderBytes, length);
    EXPECT_TRUE(std::equal(cut.begin(), cut.end(), image.Header.Record.begin()));
    EXPECT_EQ(image.Header.EmissivityX100, length < 78 ? 0 : 93);
    EXPECT_EQ(image.Header.RangeHigh, length < 32 ? 0.0 : length < 33 ? 120.0 : 120.25);
    EXPECT_EQ(image.Header.Memo, std::string(cut.begin() + 982, cut.begin() + 1002));
    EXPECT_EQ(image.Raster.Counts, std::vector<std::int16_t>(76800));
    EXPECT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(length, "SitHeader", true)));
  });
}

TEST(SitCut, AFileThatEndsInsideItsRasterKeepsTheCountsBeforeTheCut) {
  const Bytes whole = HandMadeSit();
  const std::vector<std::int16_t> counts = Decode(whole).Raster.Counts;
  for (std::size_t length = 1024; length < kRasterEnd; length += length < 1030 ? 1 : 1009) {
    const SitImage image = Decode(First(whole, length));
    const std::size_t present = (length - 1024) / 2;
    ASSERT_EQ(image.Raster.Present, present);
    ASSERT_EQ(image.Raster.Counts, KeepFirst(counts, present)) << length;
    ASSERT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(length, "Raster", present == 0)));
    ASSERT_THAT(image.Faults[0].Text,
                HasSubstr(": " + std::to_string(present / 320) + " of 240 rows"));
  }
  EXPECT_THAT(FactsOf(Decode(First(whole, kRasterEnd - 1)).Faults),
              ElementsAre(Truncated(kRasterEnd - 1, "Raster", false)));
  EXPECT_THAT(Decode(First(whole, kRasterEnd)).Faults, IsEmpty());
}

TEST(SitHeader, ValuesThatNoCameraWritesAreReportedAndReadAllTheSame) {
  const std::tuple<std::size_t, std::string_view, FaultFacts> cases[] = {
      {52, "\0\0\0\0"sv, BadValue(52, "Gain")},
      {30, "\xFF\xD8\x80\0"sv, BadValue(26, "RangeLow")},  // As low as the lower end.
      {26, "\x7F\xFF\0\0"sv, BadValue(26, "RangeLow")},
      {76, "\0\0"sv, BadValue(76, "EmissivityX100")},
      {76, "\0\x65"sv, BadValue(76, "EmissivityX100")},
      {76, "\x80\0"sv, BadValue(76, "EmissivityX100")},
      {72, "\0\0\0\0"sv, BadValue(72, "ScaleStep")},
      {72, "\xFF\xFF\0\0"sv, BadValue(72, "ScaleStep")},
      {95, " "sv, BadValue(92, "DateText")},
      {103, "\0"sv, BadValue(98, "TimeText")}};
  for (const auto& [at, bytes, fault] : cases) {
    Bytes file = HandMadeSit();
    Put(file, at, bytes);
    const SitImage image = Decode(file);
    EXPECT_THAT(FactsOf(image.Faults), ElementsAre(fault)) << at;
    EXPECT_EQ(image.Raster.Present, 76800U);
  }
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

TEST(SitAttachment, ThePromiseOfACodeIsHeldToTheFile) {
  const Bytes plain = HandMadeSit();
  const Bytes longer = Joined(plain, {0x01, 0x02, 0x03, 0x04});
  EXPECT_THAT(Decode(plain).Faults, IsEmpty()) << "an ordinary extension promises nothing";
  for (const char code : {'\0', '\1', '\2', '\3'}) {
    Bytes file = longer;
    file[118] = static_cast<std::uint8_t>(code);
    EXPECT_EQ(Decode(file).VisibleLength, code == 3 ? 0x01020304U : 0U);
    EXPECT_THAT(Decode(file).Faults, IsEmpty());
    EXPECT_EQ(Decode(First(file, 156163)).VisibleLength, 0U);
    if (code > 0) {
      EXPECT_THAT(FactsOf(Decode(First(file, 156160)).Faults),
                  ElementsAre(Truncated(156160, "SoundExt", false)));
      EXPECT_THAT(
          FactsOf(Decode(First(file, 2000)).Faults),
          ElementsAre(Truncated(2000, "Raster", false), Truncated(2000, "SoundExt", false)));
    }
  }
}

TEST(SitEncoder, WhatItWritesIsWhatTheDecoderReads) {
  const CameraFields shared{"SIT 3.5J  and too long",
                            -40.5,
                            120.25,
                            -1.5,
                            3.0 / 256.0,
                            21.75,
                            5.125,
                            93,
                            "031129",
                            "235958"};
  const std::string comment = "kitchen wall" + std::string(623, '\0') + "end";
  SitFields fields{
      shared, "SOUND007", "VOC", comment, "19 characters long  ", CountsOfPlaces(320, 240), {}};
  EXPECT_EQ(EncodeSit(fields), HandMadeSit());
  fields.Attachment = {1, 2, 3};
  EXPECT_EQ(EncodeSit(fields), Joined(HandMadeSit(), {1, 2, 3}));
}

TEST(ForeignContent, AMisnamedFileIsToldFromARadiometricOne) {
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
}  // namespace tessa::testing
