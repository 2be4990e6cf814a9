#include <gmock/gmock.h>

#include <limits>
#include <optional>

#include "formats/bin_raster.h"
#include "formats/bmp_trailer.h"
#include "formats/tmp_image.h"
#include "formats/txi_words.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using std::string_view_literals::operator""sv;

constexpr std::size_t kTmpEnd = 1024 + 223 * 256 * 2;
constexpr std::size_t kLegacyEnd = 1024 + 207 * 256;
constexpr std::size_t kBinEnd = 320 * 240 * 2;

/// Of the stored columns the last is dropped.
std::size_t Shown(std::size_t stored) {
  return stored / 256 * 255 + std::min<std::size_t>(stored % 256, 255);
}

/// A 16-bit file byte by byte. Each stored value has its row in the high byte and its column in the
/// low one, the dropped column included, so that row 128 opens with 0x8000.
Bytes HandMadeTmp() {
  Bytes file(kTmpEnd);
  Put(file, 0, "6206 1.2  ");
  Put(file, 26, "\xFF\xEC\x40\x00"sv);  // -20.25
  Put(file, 30, "\x01\x5E\x80\x00"sv);  // 350.5
  Put(file, 48, "\xFF\xFB\xC0\x00"sv);  // -5.75
  Put(file, 52, "\x00\x00\x04\x00"sv);  // 1 / 64
  Put(file, 68, "\x00\x19\x20\x00"sv);  // 25.125
  Put(file, 72, "\x00\x02\x80\x00"sv);  // 2.5
  Put(file, 76, "\x00\x57"sv);          // 87
  Put(file, 92, "981207");
  Put(file, 98, "070809");
  Put(file, 104, "nobody reads these 26 byte");
  Put(file, 214, "pump house");
  Put(file, 214 + 765, "end");
  Put(file, 982, "twenty characters it");
  for (std::size_t row = 0; row < 223; ++row) {
    for (std::size_t column = 0; column < 256; ++column) {
      file[1024 + 2 * (row * 256 + column)] = static_cast<std::uint8_t>(row);
      file[1024 + 2 * (row * 256 + column) + 1] = static_cast<std::uint8_t>(column);
    }
  }
  return file;
}

/// The counts of that file: 255 columns.
std::vector<std::int16_t> HandMadeTmpCounts() {
  std::vector<std::int16_t> counts;
  for (int row = 0; row < 223; ++row) {
    for (int column = 0; column < 255; ++column) {
      counts.push_back(static_cast<std::int16_t>((row < 128 ? row : row - 256) * 256 + column));
    }
  }
  return counts;
}

TmpImage Decode16(const Bytes& file) {
  return DecodeTmp(ByteSpan(file).first(std::min(file.size(), kTmpEnd)), file.size());
}

TEST(Tmp, FieldsAndCountsAreReadFromTheirPlacesInTheFile) {
  const TmpImage image = Decode16(HandMadeTmp());
  EXPECT_THAT(image.Faults, IsEmpty());
  EXPECT_EQ(SharedFields(image.Header),
            "6206 1.2  |-20.25|350.5|-5.75|0.015625|25.125|2.5|87|981207|070809");
  EXPECT_EQ(image.Header.Comment, "pump house" + std::string(755, '\0') + "end");
  EXPECT_EQ(image.Header.Memo, "twenty characters it");
  EXPECT_EQ(image.Raster.Width, 255);
  EXPECT_EQ(image.Raster.Height, 223);
  EXPECT_EQ(image.Raster.Present, 255U * 223U);
  EXPECT_EQ(image.Raster.Counts, HandMadeTmpCounts());
}

TEST(Tmp, AFileCutAnywhereKeepsWhatIsBeforeTheCut) {
  const Bytes whole = HandMadeTmp();
  for (std::size_t length = 0; length < kTmpEnd; length += length < 1600 ? 1 : 1009) {
    const TmpImage image = Decode16(First(whole, length));
    Bytes filledUp = First(whole, length);
    filledUp.resize(std::max<std::size_t>(length, 1002));
    ASSERT_EQ(image.Header.EmissivityX100, length < 78 ? 0 : 87) << length;
    ASSERT_EQ(image.Header.ScaleStep, length < 74 ? 0.0 : length < 75 ? 2.0 : 2.5) << length;
    ASSERT_EQ(image.Header.Memo, std::string(filledUp.begin() + 982, filledUp.begin() + 1002));
    const std::size_t stored = length < 1024 ? 0 : (length - 1024) / 2;
    ASSERT_EQ(image.Raster.Present, Shown(stored)) << length;
    ASSERT_EQ(image.Raster.Counts, KeepFirst(HandMadeTmpCounts(), Shown(stored))) << length;
    // Between header and raster lie 22 bytes that nobody needs.
    ASSERT_THAT(
        FactsOf(image.Faults),
        ElementsAre(Truncated(length, length < 1002 ? "TmpHeader" : "Raster", stored == 0)));
    if (stored > 0) {
      ASSERT_THAT(image.Faults[0].Text,
                  HasSubstr(": " + std::to_string(stored / 256) + " of 223 rows"));
    }
  }
}

TEST(Tmp, ValuesThatNoCameraWritesAreReportedAndReadAllTheSame) {
  const TmpImage ones = Decode16(Bytes(kTmpEnd, 0xFF));
  EXPECT_EQ(ones.Raster.Counts, std::vector<std::int16_t>(std::size_t{255} * 223, -1));
  EXPECT_THAT(
      FactsOf(ones.Faults),
      ElementsAre(BadValue(26, "RangeLow"), BadValue(76, "EmissivityX100"),
                  BadValue(72, "ScaleStep"), BadValue(92, "DateText"), BadValue(98, "TimeText")));
}

TEST(Tmp, EncoderWritesWhatTheDecoderReads) {
  const CameraFields shared{"6206 1.2  ", -20.25, 350.5, -5.75,    0.015625,
                            25.125,       2.5,    87,    "981207", "070809"};
  TmpFields fields{shared, "pump house" + std::string(755, '\0') + "end",
                   "twenty characters it and more", HandMadeTmpCounts()};
  Bytes expected = HandMadeTmp();
  Put(expected, 104, std::string(26, '\0'));
  for (std::size_t row = 0; row < 223; ++row) {
    expected[1024 + 2 * (row * 256 + 255) + 1] = 254;  // The dropped column repeats its neighbour.
  }
  EXPECT_EQ(EncodeTmp(fields), expected);
  fields.Counts.clear();
  EXPECT_EQ(EncodeTmp(fields).size(), 100000U) << "a shorter file would be of the 8-bit kind";
}

/// An 8-bit file byte by byte; the value tells column and row apart.
std::uint8_t LegacyValue(std::size_t column, std::size_t row) {
  return static_cast<std::uint8_t>(3 * column + 7 * row);
}

Bytes HandMadeLegacy() {
  Bytes file(kLegacyEnd);
  Put(file, 0, "3303-A   ");
  Put(file, 12, "-12.75");
  Put(file, 18, "9");
  Put(file, 19, "0.83");
  Put(file, 33, "950630235901");
  Put(file, 128, "first line");
  Put(file, 128 + 829, "end");
  Put(file, 960, "memo");
  Put(file, 979, "!");
  for (std::size_t row = 0; row < 207; ++row) {
    for (std::size_t column = 0; column < 256; ++column) {
      file[1024 + row * 256 + column] = LegacyValue(column, row);
    }
  }
  return file;
}

TEST(LegacyTmp, FieldsAndPixelsAreReadFromTheirPlaces) {
  const LegacyImage image = DecodeLegacyTmp(HandMadeLegacy(), kLegacyEnd);
  const LegacyHeader& header = image.Header;
  EXPECT_THAT(image.Faults, IsEmpty());
  EXPECT_EQ(header.OffsetText + header.GainCode + header.EmissivityText + header.StampText,
            "-12.7590.83950630235901");
  EXPECT_EQ(header.Comment, "first line" + std::string(819, '\0') + "end");
  EXPECT_EQ(header.Memo, "memo" + std::string(15, '\0') + "!");
  EXPECT_EQ(image.Raster.Width, 255);
  EXPECT_EQ(image.Raster.Height, 207);
  for (std::size_t i = 0; i < std::size_t{255} * 207; ++i) {
    ASSERT_EQ(image.Raster.Counts[i], LegacyValue(i % 255, i / 255) - 128)
        << "column " << i % 255 << ", row " << i / 255;
  }
}

TEST(LegacyTmp, EveryGainCodeHasItsGain) {
  const std::pair<char, double> gains[] = {
      {'1', 0.1}, {'2', 0.2}, {'3', 0.3}, {'4', 0.5},  {'5', 0.7},  {'6', 1.0},
      {'7', 2.0}, {'8', 3.0}, {'9', 5.0}, {':', 7.0},  {';', 10.0}, {'<', 20.0},
      {'=', 30.}, {'>', 50.}, {'?', 70.}, {'@', 100.}, {'A', 200.}};
  for (const auto& [code, gain] : gains) {
    EXPECT_EQ(LegacyGain(code), gain) << code;
  }
  for (const int other : {0, int{'0'}, int{'B'}, int{' '}, int{'a'}, 128, 255}) {
    EXPECT_EQ(LegacyGain(static_cast<char>(other)), 1.0) << other;
  }
}

TEST(LegacyTmp, AFileCutAnywhereKeepsWhatIsBeforeTheCut) {
  const Bytes whole = HandMadeLegacy();
  const std::vector<std::int16_t> counts = DecodeLegacyTmp(whole, kLegacyEnd).Raster.Counts;
  for (std::size_t length = 0; length < kLegacyEnd; length += length < 1300 ? 1 : 1009) {
    const LegacyImage image = DecodeLegacyTmp(First(whole, length), length);
    const std::size_t stored = length > 1024 ? length - 1024 : 0;
    ASSERT_EQ(image.Raster.Counts, KeepFirst(counts, Shown(stored))) << length;
    ASSERT_EQ(image.Raster.Present, Shown(stored)) << length;
    std::string stamp = "950630235901";
    const std::size_t there = std::clamp<std::size_t>(length, 33, 45) - 33;
    ASSERT_EQ(image.Header.StampText, stamp.replace(there, 12 - there, 12 - there, '\0'));
    const char* const field = length < 980 ? "LegacyHeader" : "Raster";
    ASSERT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(length, field, stored == 0)));
  }
}

TEST(LegacyTmp, EncoderWritesWhatTheDecoderReads) {
  LegacyFields fields{"-12.75",
                      '9',
                      "0.83",
                      "950630235901",
                      "first line" + std::string(819, '\0') + "end",
                      "memo" + std::string(15, '\0') + "!",
                      {}};
  for (std::size_t i = 0; i < std::size_t{255} * 207; ++i) {
    fields.Values.push_back(LegacyValue(i % 255, i / 255));
  }
  Bytes expected = HandMadeLegacy();
  Put(expected, 0, std::string(9, '\0'));
  for (std::size_t row = 0; row < 207; ++row) {
    expected[1024 + row * 256 + 255] = LegacyValue(254, row);
  }
  EXPECT_EQ(EncodeLegacyTmp(fields), expected);
}

/// Position p of the raster holds p x 40503 modulo 65536: no two neighbours or rows are alike.
Bytes HandMadeBin() {
  Bytes file;
  for (std::uint32_t i = 0; i < kBinEnd / 2; ++i) {
    file.push_back(static_cast<std::uint8_t>(i * 40503));
    file.push_back(static_cast<std::uint8_t>(i * 40503 >> 8));
  }
  return file;
}

TEST(Bin, ARasterOfLittleEndianWordsIsAllThereIsAndMayBeCutAnywhere) {
  const Bytes whole = HandMadeBin();
  std::vector<std::int16_t> counts;
  for (std::uint32_t i = 0; i < 76800; ++i) {
    counts.push_back(static_cast<std::int16_t>(i * 40503));
  }
  const BinImage image = DecodeBin(whole, kBinEnd);
  EXPECT_THAT(image.Faults, IsEmpty());
  EXPECT_EQ(image.Raster.Width, 320);
  EXPECT_EQ(image.Raster.Height, 240);
  EXPECT_EQ(image.Raster.Present, 76800U);
  EXPECT_EQ(image.Raster.Counts, counts);
  EXPECT_EQ(EncodeBin(counts), whole);
  for (std::size_t length = 0; length < kBinEnd; length += length < 700 ? 1 : 2999) {
    const BinImage cut = DecodeBin(First(whole, length), length);
    ASSERT_EQ(cut.Raster.Present, length / 2);
    ASSERT_EQ(cut.Raster.Counts, KeepFirst(counts, length / 2)) << length;
    ASSERT_THAT(FactsOf(cut.Faults), ElementsAre(Truncated(length, "Raster", length < 2)));
  }
  EXPECT_THAT(DecodeBin(whole, kBinEnd + 10).Faults, IsEmpty());
}

TEST(StillKinds, LineEndsInPixelsAndCommentsMakeNoTextFile) {
  Bytes legacy = HandMadeLegacy();
  std::fill(legacy.begin(), legacy.begin() + 128, std::uint8_t{' '});
  Put(legacy, 12, "  21.5");
  Put(legacy, 33, "950630235901");
  for (std::size_t i = 128; i < 128 + 832; ++i) {
    legacy[i] = i % 40 == 0 ? '\n' : 'x';
  }
  EXPECT_THAT(DecodeLegacyTmp(legacy, legacy.size()).Faults, IsEmpty());
  // From -14 to 8.3 degrees the high byte of the tenths of a kelvin is a line feed.
  std::vector<std::int16_t> tenths;
  for (int i = 0; i < 76800; ++i) {
    tenths.push_back(static_cast<std::int16_t>(2600 + i % 200));
  }
  EXPECT_THAT(DecodeBin(EncodeBin(tenths), kBinEnd).Faults, IsEmpty());
}

TEST(StillKinds, AMisnamedFileIsToldFromAnImage) {
  for (const std::string_view start : {"\xFF\xD8\xFF\xE0"sv, "some lines\r\nof text\n"sv}) {
    const bool isText = start[0] == 's';
    Bytes file(kTmpEnd, isText ? '.' : 0);
    Put(file, 0, start);
    const std::string is = isText ? "the file is text, not " : "the file is a JPEG picture, not ";
    for (const auto& [faults, name] :
         {std::pair{Decode16(file).Faults, "a TMP image"},
          std::pair{DecodeLegacyTmp(file, file.size()).Faults, "a TMP image"},
          std::pair{DecodeBin(file, file.size()).Faults, "a BIN image"}}) {
      ASSERT_THAT(FactsOf(faults),
                  ElementsAre(FaultFacts(ProblemKind::kWrongKind, 0, "Signature", true)));
      EXPECT_EQ(faults[0].Text, is + name);
    }
  }
}

TEST(TxiWords, LowAndHighLimitUnfoldByTheirOwnRules) {
  struct Case {
    int LowWord, HighWord;
    double Low, High;
  };
  for (const Case& c :
       {Case{0, 0, 0.0, 0.0}, Case{-200, 1000, -20.0, 100.0}, Case{200, -1, 20.0, 3276.8},
        Case{-200, -100, 3296.7, 3286.7}, Case{-100, -200, -10.0, 3296.7},
        Case{-100, -100, -10.0, 3286.7}, Case{-1, 0, -0.1, 0.0}, Case{-32768, -1, 6553.5, 3276.8},
        Case{-32768, 5, -3276.8, 0.5}, Case{32767, -32768, 3276.7, 6553.5},
        Case{28013, 18, 2801.3, 1.8}}) {
    const TxiScale scale =
        DecodeTxiWords(static_cast<std::int16_t>(c.LowWord), static_cast<std::int16_t>(c.HighWord));
    EXPECT_DOUBLE_EQ(scale.Low, c.Low) << c.LowWord << " " << c.HighWord;
    EXPECT_DOUBLE_EQ(scale.High, c.High) << c.LowWord << " " << c.HighWord;
  }
}

TEST(TxiWords, LimitsAbove3276FoldIntoNegativeWords) {
  const std::pair<double, int> words[] = {{0.0, 0},         {100.0, 1000},    {-20.0, -200},
                                          {0.25, 2},        {0.75, 8},        {-0.25, -2},
                                          {3276.7, 32767},  {3276.8, -1},     {3276.75, 0},
                                          {6553.5, -32768}, {-3276.8, -32768}};
  for (const auto& [celsius, word] : words) {
    EXPECT_EQ(EncodeTxiWord(celsius), static_cast<std::int16_t>(word)) << celsius;
  }
  for (const double celsius : {6553.7, -3276.9, 1e300, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(EncodeTxiWord(celsius), std::nullopt) << celsius;
  }
  for (int tenths = 0; tenths <= 65535; ++tenths) {
    const auto word = EncodeTxiWord(tenths / 10.0);
    ASSERT_TRUE(word.has_value()) << tenths;
    ASSERT_NEAR(DecodeTxiWords(0, *word).High, tenths / 10.0, 1e-9) << tenths;
  }
}

TEST(BmpTrailer, WordsAreBigEndianAndUnsigned) {
  const Bytes bytes = {9, 9,    9,    9,    9,    9,    9,    9,    9,
                       9, 0x01, 0x02, 0x80, 0x04, 0xFF, 0xFF, 0x0A, 0xB0};
  const BmpTrailer trailer = DecodeBmpTrailer(bytes);
  EXPECT_EQ(trailer.IndexHigh, 258);
  EXPECT_EQ(trailer.IndexLow, 32772);
  EXPECT_EQ(trailer.KelvinHigh, 65535);
  EXPECT_EQ(trailer.KelvinLow, 2736);
  Bytes expected = bytes;
  std::fill_n(expected.begin(), 10, std::uint8_t{0});
  EXPECT_EQ(EncodeBmpTrailer(trailer), expected);
}

TEST(BmpTrailer, ItLiesWhereTheDistanceFromTheFilesEndSays) {
  struct Case {
    std::uint64_t FileSize;
    int Distance;
    std::optional<std::uint64_t> Position;
  };
  for (const Case& c :
       {Case{1096, 18, 1078}, Case{1096, 100, 996}, Case{18, 18, 0}, Case{17, 18, std::nullopt},
        Case{1096, 17, std::nullopt}, Case{1096, 1097, std::nullopt}, Case{1096, 1096, 0},
        Case{1096, 0, std::nullopt}, Case{1096, -18, std::nullopt},
        Case{1096, -32768, std::nullopt}, Case{32767, 32767, 0}, Case{0, 18, std::nullopt},
        Case{0x140000000, 18, 0x13FFFFFEE}}) {
    EXPECT_EQ(BmpTrailerPosition(c.FileSize, static_cast<std::int16_t>(c.Distance)), c.Position)
        << c.FileSize << " " << c.Distance;
  }
}

}  // namespace
}  // namespace tessa::testing
