#include <limits>
#include <optional>

#include "formats/bin_raster.h"
#include "formats/bmp_trailer.h"
#include "formats/txi_words.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

constexpr std::size_t kTmpEnd = 1024 + 223 * 256 * 2;
constexpr std::size_t kLegacyEnd = 1024 + 207 * 256;
constexpr std::size_t kBinEnd = 320 * 240 * 2;

/// Of the stored columns the last is dropped.
std::size_t Shown(std::size_t stored) {
  return stored / 256 * 255 + std::min<std::size_t>(stored % 256, 255);
}

/// A 16-bit file byte by byte, the dropped column included.
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
  PutCounts(file, 256, 223);
  return file;
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
  EXPECT_EQ(image.Raster.Counts, CountsOfPlaces(255, 223));
}

TEST(Tmp, AFileCutAnywhereKeepsWhatIsBeforeTheCut) {
  const std::vector<std::int16_t> counts = CountsOfPlaces(255, 223);
  AtEveryCut(
      HandMadeTmp(),
      [&](Bytes cut) {
        const TmpImage image = Decode16(cut);
        const std::size_t length = cut.size();
        cut.resize(std::max<std::size_t>(length, 1002));
        EXPECT_EQ(image.Header.EmissivityX100, length < 78 ? 0 : 87);
        EXPECT_EQ(image.Header.ScaleStep, length < 74 ? 0.0 : length < 75 ? 2.0 : 2.5);
        EXPECT_EQ(image.Header.Memo, std::string(cut.begin() + 982, cut.begin() + 1002));
        const std::size_t stored = length < 1024 ? 0 : (length - 1024) / 2;
        EXPECT_EQ(image.Raster.Present, Shown(stored));
        EXPECT_EQ(image.Raster.Counts, KeepFirst(counts, Shown(stored)));
        // Between header and raster lie 22 bytes that nobody needs.
        const char* const field = length < 1002 ? "TmpHeader" : "Raster";
        EXPECT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(length, field, stored == 0)));
        if (stored > 0) {
          EXPECT_THAT(image.Faults[0].Text,
                      HasSubstr(": " + std::to_string(stored / 256) + " of 223 rows"));
        }
      },
      1600, 1009);
}

TEST(Tmp, ValuesThatNoCameraWritesAreReportedAndReadAllTheSame) {
  const TmpImage ones = Decode16(Bytes(kTmpEnd, 0xFF));
  EXPECT_EQ(ones.Raster.Counts, std::vector<std::int16_t>(std::size_t{255} * 223, -1));
  EXPECT_THAT(
      FactsOf(ones.Faults),
      ElementsAre(BadValue(26, "RangeLow"), BadValue(76, "EmissivityX100"),
                  BadValue(72, "ScaleStep"), BadValue(92, "DateText"), BadValue(98, "TimeText")));
}

/// An 8-bit file byte by byte; the value tells column and row apart.
int LegacyValue(int column, int row) {
  return (3 * column + 7 * row) % 256;
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
  const auto values = Raster<std::uint8_t>(256, 207, LegacyValue);
  std::copy(values.begin(), values.end(), file.begin() + 1024);
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
  EXPECT_EQ(image.Raster.Counts,
            Raster(255, 207, [](int column, int row) { return LegacyValue(column, row) - 128; }));
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
  AtEveryCut(
      whole,
      [&](const Bytes& cut) {
        const LegacyImage image = DecodeLegacyTmp(cut, cut.size());
        const std::size_t stored = cut.size() > 1024 ? cut.size() - 1024 : 0;
        EXPECT_EQ(image.Raster.Counts, KeepFirst(counts, Shown(stored)));
        EXPECT_EQ(image.Raster.Present, Shown(stored));
        std::string stamp = "950630235901";
        const std::size_t there = std::clamp<std::size_t>(cut.size(), 33, 45) - 33;
        EXPECT_EQ(image.Header.StampText, stamp.replace(there, 12 - there, 12 - there, '\0'));
        const char* const field = cut.size() < 980 ? "LegacyHeader" : "Raster";
        EXPECT_THAT(FactsOf(image.Faults), ElementsAre(Truncated(cut.size(), field, stored == 0)));
      },
      1300, 1009);
}

/// Position p holds p x 40503 modulo 65536: no two neighbours or rows are alike.
std::uint32_t BinCount(int column, int row) {
  return static_cast<std::uint32_t>(row * 320 + column) * 40503;
}

TEST(Bin, ARasterOfLittleEndianWordsIsAllThereIsAndMayBeCutAnywhere) {
  const std::vector<std::int16_t> counts = Raster(320, 240, BinCount);
  Bytes whole;
  for (const std::int16_t count : counts) {
    whole.push_back(static_cast<std::uint8_t>(count));
    whole.push_back(static_cast<std::uint8_t>(count >> 8));
  }
  const BinImage image = DecodeBin(whole, kBinEnd);
  EXPECT_THAT(image.Faults, IsEmpty());
  EXPECT_EQ(image.Raster.Width, 320);
  EXPECT_EQ(image.Raster.Height, 240);
  EXPECT_EQ(image.Raster.Counts, counts);
  EXPECT_EQ(EncodeBin(counts), whole);
  AtEveryCut(
      whole,
      [&](const Bytes& cut) {
        const BinImage part = DecodeBin(cut, cut.size());
        EXPECT_EQ(part.Raster.Present, cut.size() / 2);
        EXPECT_EQ(part.Raster.Counts, KeepFirst(counts, cut.size() / 2));
        EXPECT_THAT(FactsOf(part.Faults),
                    ElementsAre(Truncated(cut.size(), "Raster", cut.size() < 2)));
      },
      700, 2999);
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
  const auto tenths = Raster(320, 240, [](int column, int) { return 2600 + column % 200; });
  EXPECT_THAT(DecodeBin(EncodeBin(tenths), kBinEnd).Faults, IsEmpty());
}

TEST(StillKinds, AMisnamedFileIsToldFromAnImage) {
  Bytes file(kTmpEnd);
  Put(file, 0, "\xFF\xD8\xFF\xE0"sv);
  for (const auto& [faults, name] : {std::pair{Decode16(file).Faults, "TMP"},
                                     std::pair{DecodeLegacyTmp(file, file.size()).Faults, "TMP"},
                                     std::pair{DecodeBin(file, file.size()).Faults, "BIN"}}) {
    ASSERT_THAT(FactsOf(faults),
                ElementsAre(FaultFacts(ProblemKind::kWrongKind, 0, "Signature", true)));
    EXPECT_EQ(faults[0].Text, "the file is a JPEG picture, not a " + std::string(name) + " image");
  }
}

TEST(TxiWords, LowAndHighLimitUnfoldByTheirOwnRules) {
  using Case = std::tuple<int, int, double, double>;
  for (const auto& [lowWord, highWord, low, high] :
       {Case{0, 0, 0.0, 0.0}, Case{-200, 1000, -20.0, 100.0}, Case{200, -1, 20.0, 3276.8},
        Case{-200, -100, 3296.7, 3286.7}, Case{-100, -200, -10.0, 3296.7},
        Case{-100, -100, -10.0, 3286.7}, Case{-1, 0, -0.1, 0.0}, Case{-32768, -1, 6553.5, 3276.8},
        Case{-32768, 5, -3276.8, 0.5}, Case{32767, -32768, 3276.7, 6553.5},
        Case{28013, 18, 2801.3, 1.8}}) {
    const TxiScale scale =
        DecodeTxiWords(static_cast<std::int16_t>(lowWord), static_cast<std::int16_t>(highWord));
    EXPECT_DOUBLE_EQ(scale.Low, low) << lowWord << " " << highWord;
    EXPECT_DOUBLE_EQ(scale.High, high) << lowWord << " " << highWord;
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
  using Case = std::tuple<std::uint64_t, int, std::optional<std::uint64_t>>;
  for (const auto& [fileSize, distance, position] :
       {Case{1096, 18, 1078}, Case{1096, 100, 996}, Case{18, 18, 0}, Case{17, 18, std::nullopt},
        Case{1096, 17, std::nullopt}, Case{1096, 1097, std::nullopt}, Case{1096, 1096, 0},
        Case{1096, 0, std::nullopt}, Case{1096, -18, std::nullopt},
        Case{1096, -32768, std::nullopt}, Case{32767, 32767, 0}, Case{0, 18, std::nullopt},
        Case{0x140000000, 18, 0x13FFFFFEE}}) {
    EXPECT_EQ(BmpTrailerPosition(fileSize, static_cast<std::int16_t>(distance)), position)
        << fileSize << " " << distance;
  }
}

}  // namespace
}  // namespace tessa::testing
