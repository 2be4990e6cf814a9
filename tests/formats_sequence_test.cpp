#include <limits>
#include <optional>

#include "test_images.h"

namespace tessa::testing {
namespace {

using State = FrameArrayHeader::State;

/// Two columns of three rows: 0x0100 to 0x0102 down the left one, 0xFF00 to 0xFF02 down the right.
const Bytes kTwoByThree = ToBytes(
    "\x02\x20\x02\x00"
    "\x03\x00\x00\x00\x00\x00\x00\x00"
    "\x02\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x01\x01\x01\x02\x01"
    "\x00\xFF\x01\xFF\x02\xFF"sv);

const auto kTwoByThreePixels = ElementsAre(256, -256, 257, -255, 258, -254);

/// The array with a field replaced.
Bytes With(std::size_t at, std::string_view text) {
  Bytes bytes = kTwoByThree;
  Put(bytes, at, text);
  return bytes;
}

TEST(FrameArray, TheRowRunsFastest) {
  EXPECT_THAT(DecodeFrameArray(kTwoByThree, 2, 3)->Pixels, kTwoByThreePixels);
  const std::int16_t pixels[] = {256, -256, 257, -255, 258, -254};
  EXPECT_EQ(EncodeFrameArray(2, 3, pixels), kTwoByThree);
  // Either count may be the rows, and lower bounds do not matter.
  const Bytes swapped = With(4, "\x02\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0"sv);
  const Bytes bounds = With(4, "\x03\0\0\0\x01\0\0\0\x02\0\0\0\xFF\xFF\xFF\xFF"sv);
  for (const Bytes& array : {swapped, bounds}) {
    const auto frame = DecodeFrameArray(array, 2, 3);
    ASSERT_TRUE(frame.has_value());
    EXPECT_EQ(frame->Width * 10 + frame->Height, 23);
    EXPECT_THAT(frame->Pixels, kTwoByThreePixels);
  }
  // As three columns of two rows the same elements stand elsewhere.
  EXPECT_THAT(DecodeFrameArray(swapped, 3, 2)->Pixels,
              ElementsAre(256, 258, -255, 257, -256, -254));
}

TEST(FrameArray, BytesAreUnsignedPixels) {
  const Bytes array = ToBytes(
      "\x11\x20\x02\x00"
      "\x02\x00\x00\x00\x00\x00\x00\x00"
      "\x03\x00\x00\x00\x00\x00\x00\x00"
      "\x00\xFF\x7F\x80\x05\x06"sv);
  const auto frame = DecodeFrameArray(array, 3, 2);
  ASSERT_TRUE(frame.has_value());
  EXPECT_THAT(frame->Pixels, ElementsAre(0, 127, 5, 255, 128, 6));
  EXPECT_EQ(EncodeFrameArray(3, 2, frame->Pixels, 1), array);
  EXPECT_EQ(ReadFrameArrayHeader(array).ByteSize(), 26U);
}

TEST(FrameArray, FramesOfManySizesComeBackPixelForPixel) {
  for (const auto& [width, height] :
       {std::pair{1, 1}, std::pair{1, 300}, std::pair{300, 1}, std::pair{32, 32}, std::pair{33, 31},
        std::pair{127, 65}, std::pair{64, 64}}) {
    const auto pixels =
        Raster(width, height, [](int column, int row) { return column * 251 + row - 9000; });
    const auto frame = DecodeFrameArray(EncodeFrameArray(width, height, pixels), width, height);
    ASSERT_TRUE(frame.has_value()) << width << " x " << height;
    ASSERT_EQ(frame->Pixels, pixels) << width << " x " << height;
  }
}

TEST(FrameArray, TheTypeWordTellsEmptyAndForeignArraysApart) {
  const std::tuple<std::string_view, State, int> cases[] = {
      {"\x02\x20"sv, State::kPixels, 2},          {"\x02\x00"sv, State::kPixels, 2},
      {"\x11\xE0"sv, State::kPixels, 1},          {"\x00\x00"sv, State::kEmpty, 0},
      {"\x00\x20"sv, State::kForeign, 0},         {"\x03\x20"sv, State::kForeign, 0},
      {"\x20\x02"sv, State::kForeign, 0},         {"\xFF\xFF"sv, State::kForeign, 0},
      {"\x02\x20\x01\x00"sv, State::kForeign, 0}, {"\x02\x20\x03\x00"sv, State::kForeign, 0},
      {"\x02\x20\x02\x01"sv, State::kForeign, 0}};
  for (const auto& [start, what, bytesPerElement] : cases) {
    const Bytes array = With(0, start);
    const FrameArrayHeader header = ReadFrameArrayHeader(array);
    EXPECT_EQ(header.What, what) << ::testing::PrintToString(start);
    EXPECT_EQ(header.BytesPerElement, bytesPerElement);
    EXPECT_EQ(header.Describes(2, 3), what == State::kPixels);
    EXPECT_EQ(DecodeFrameArray(array, 2, 3).has_value(), what == State::kPixels);
  }
  EXPECT_EQ(ReadFrameArrayHeader(With(0, "\0\0"sv)).ByteSize(), 2U);
  EXPECT_EQ(ReadFrameArrayHeader(With(0, "\3\0"sv)).ByteSize(), 0U);
  EXPECT_EQ(EncodeEmptyFrameArray(), (Bytes{0, 0}));
}

TEST(FrameArray, ACutArrayIsNoFrame) {
  AtEveryCut(kTwoByThree, [](const Bytes& cut) {
    EXPECT_EQ(DecodeFrameArray(cut, 2, 3), std::nullopt);
    EXPECT_EQ(ReadFrameArrayHeader(cut).What, cut.size() < 20 ? State::kForeign : State::kPixels);
  });
  EXPECT_EQ(ReadFrameArrayHeader(Bytes(2)).What, State::kEmpty);
}

TEST(FrameArray, CountsThatLieGiveNoFrameAndNoSmallSize) {
  using Case = std::tuple<std::uint32_t, std::uint32_t, std::uint64_t>;
  for (const auto& [first, second, atLeast] :
       {Case{3, 3, 38}, Case{2, 2, 28}, Case{3, 1, 26}, Case{6, 1, 32}, Case{0, 2, 20},
        Case{3, 0, 20}, Case{0x10003, 2, 262176}, Case{0x10000, 0x10000, 0x200000014},
        Case{0x80000000, 2, 0x200000014}, Case{0x80000000, 0x80000000, std::uint64_t{1} << 60},
        Case{0xFFFFFFFF, 0xFFFFFFFF, std::uint64_t{1} << 60}}) {
    ByteWriter writer;
    writer.Append(First(kTwoByThree, 4));
    for (const std::uint32_t number : {first, 0U, second, 0U}) {
      writer.U32Le(number);
    }
    writer.PadTo(100);
    const Bytes array = writer.Take();
    EXPECT_GE(ReadFrameArrayHeader(array).ByteSize(), atLeast) << first << " x " << second;
    EXPECT_EQ(DecodeFrameArray(array, 2, 3), std::nullopt) << first << " x " << second;
  }
  for (const auto& [width, height] : {std::pair{0, 0}, std::pair{-2, -3}, std::pair{3, -2},
                                      std::pair{0, 3}, std::pair{2, 0}, std::pair{2, 4}}) {
    EXPECT_EQ(DecodeFrameArray(kTwoByThree, width, height), std::nullopt) << width;
  }
}

/// The 810 bytes at the end of a snapshot, byte by byte.
Bytes HandMadeTrailer() {
  Bytes trailer(810, 0xEE);
  Put(trailer, 0, "\x66\x66\x06\x40"sv);                  // 2.1
  Put(trailer, 4, "\x00\x00\x00\x00\x50\x88\xE2\x40"sv);  // 37954.5
  Put(trailer, 14, "\x03\x00"sv);
  Put(trailer, 16, "\x40\x01"sv);          // 320
  Put(trailer, 18, "\xF0\x00"sv);          // 240
  Put(trailer, 20, "\x00\x00\x20\xC1"sv);  // -10
  Put(trailer, 24, "\x00\x00\xA0\x43"sv);  // 320
  Put(trailer, 28, "\x00\x00\xA4\x41"sv);  // 20.5
  Put(trailer, 32, "\x00\x00\x22\x42"sv);  // 40.5
  Put(trailer, 36, "\x00\x00\x60\x3F"sv);  // 0.875
  std::fill(trailer.begin() + 40, trailer.begin() + 800, std::uint8_t{' '});
  Put(trailer, 40, " boiler room");
  Put(trailer, 799, "z");
  return trailer;
}

TEST(Snapshot, TrailerFieldsAreReadFromTheirPlaces) {
  const SeqHeader header = DecodeSeqTrailer(HandMadeTrailer());
  EXPECT_EQ(header.Version, 2.1F);
  EXPECT_EQ(header.Version, kStampedVersion);
  EXPECT_EQ(header.Taken, 37954.5);
  EXPECT_THAT((std::vector{header.Frames, header.Width, header.Height}), ElementsAre(3, 320, 240));
  EXPECT_THAT((std::vector{header.RangeMin, header.RangeMax, header.ScaleMin, header.ScaleMax,
                           header.Emissivity}),
              ElementsAre(-10.0F, 320.0F, 20.5F, 40.5F, 0.875F));
  ASSERT_EQ(header.Comment.size(), 760U);
  EXPECT_EQ(SeqComment(header), "boiler room" + std::string(747, ' ') + "z");
  Bytes negative = HandMadeTrailer();
  Put(negative, 14, "\xFF\xFF\xFE\xFF\x00\x80"sv);
  const SeqHeader below = DecodeSeqTrailer(negative);
  EXPECT_THAT((std::vector{below.Frames, below.Width, below.Height}), ElementsAre(-1, -2, -32768));
}

TEST(Snapshot, AMarkAtCharacter701EndsTheComment) {
  for (const int at : {699, 700, 701, 759, -1}) {
    SeqHeader header;
    header.Comment = "  " + std::string(697, 'c') + std::string(61, ' ');
    header.Comment.replace(740, 5, "after");
    if (at >= 0) {
      header.Comment[static_cast<std::size_t>(at)] = '\xA4';
    }
    const std::string before(697, 'c');
    if (at == 700) {
      EXPECT_EQ(SeqComment(header), before);
    } else {
      EXPECT_NE(SeqComment(header).find("after"), std::string::npos) << at;
    }
  }
  SeqHeader header;
  EXPECT_EQ(SeqComment(header), "");
  header.Comment = std::string(760, ' ');
  EXPECT_EQ(SeqComment(header), "");
}

TEST(Snapshot, ATrailerThatCannotBeTrueIsRefusedWithItsReason) {
  constexpr std::uint64_t kFileSize = 5000 + 810;
  Bytes sound = HandMadeTrailer();
  Put(sound, 16, "\x0A\x00\x14\x00"sv);  // 10 x 20.
  Problems none;
  EXPECT_TRUE(CheckSeqTrailer(DecodeSeqTrailer(sound), kFileSize, none));
  using Kind = ProblemKind;
  const std::tuple<std::size_t, std::string_view, FaultFacts> cases[] = {
      {0, "\x00\x00\xA0\x40"sv, {Kind::kUnsupported, 5000, "Version", true}},
      {14, "\x00\x00"sv, {Kind::kBadValue, 5014, "Frames", true}},
      {14, "\xFF\xFF"sv, {Kind::kBadValue, 5014, "Frames", true}},
      {16, "\x00\x00"sv, {Kind::kBadValue, 5016, "Width", true}},
      {16, "\xFF\xFF\xFF\xFF"sv, {Kind::kBadValue, 5016, "Width", true}},
      {18, "\x00\x80"sv, {Kind::kBadValue, 5018, "Height", true}},
      {16, "\xFF\x7F\xFF\x7F"sv, {Kind::kBadValue, 5014, "Frames", true}},
      {14, "\xFF\x7F"sv, {Kind::kBadValue, 5014, "Frames", true}}};
  for (const auto& [at, text, fault] : cases) {
    Bytes trailer = sound;
    Put(trailer, at, text);
    Problems faults;
    EXPECT_FALSE(CheckSeqTrailer(DecodeSeqTrailer(trailer), kFileSize, faults)) << at;
    EXPECT_THAT(FactsOf(faults), ElementsAre(fault));
  }
  for (const float other :
       {4.9999995F, 5.0000005F, 0.0F, -5.0F, std::numeric_limits<float>::quiet_NaN()}) {
    SeqHeader header = DecodeSeqTrailer(sound);
    header.Version = other;
    EXPECT_TRUE(CheckSeqTrailer(header, kFileSize, none)) << other;
  }
  EXPECT_THAT(none, IsEmpty());
}

TEST(Snapshot, EncoderPutsFramesFirstAndStampsInVersion21Alone) {
  SnapshotFields fields;
  fields.Header = DecodeSeqTrailer(HandMadeTrailer());
  fields.Frames = {kTwoByThree, EncodeEmptyFrameArray()};
  fields.Stamps = {"01/02/2003 4:05:06 PM", "11/12/2013 10:15:16 AM"};
  Bytes trailer = HandMadeTrailer();
  Put(trailer, 12, "\0\0"sv);
  Put(trailer, 800, std::string(10, '\0'));
  Bytes expected = Joined(ToBytes("01/02/2003 4:05:06 PM "), kTwoByThree);
  expected = Joined(std::move(expected), ToBytes("11/12/2013 10:15:16 AM\0\0"sv));
  EXPECT_EQ(EncodeSnapshot(fields), Joined(std::move(expected), trailer));

  fields.Header.Version = 2.0F;
  const Bytes plain = EncodeSnapshot(fields);
  EXPECT_EQ(plain.size(), kTwoByThree.size() + 2 + 810);
  EXPECT_EQ(First(plain, kTwoByThree.size()), kTwoByThree);
}

TEST(Container, HeaderAndFramesAreReadFromTheirPlaces) {
  Bytes start(800);
  Put(start, 0, "\x00\x00\x40\x40"sv);
  Put(start, 14, "\xFF\x7F\x08\x00\x40\x01\xF0\x00"sv);
  Put(start, 22, "\x00\x00\x40\x3F"sv);  // 0.75
  const ContainerHeader header = DecodeContainerHeader(start);
  EXPECT_EQ(header.Version, kContainerVersion);
  EXPECT_THAT((std::vector{header.Frames, header.Depth, header.Width, header.Height}),
              ElementsAre(32767, 8, 320, 240));
  EXPECT_EQ(header.Emissivity, 0.75F);
  EXPECT_EQ(EncodeContainerHeader(header), start);

  const Bytes frame = ToBytes(
      "11/12/2013 10:15:16 AM\x00\x80\x74\x43\x00\x80\xC4\x43\x00\x00\x92\x43\x00\x00\x9C\x43"sv);
  const ContainerFrameHeader facts = DecodeContainerFrameHeader(frame);
  EXPECT_THAT((std::vector{facts.RangeLow, facts.RangeHigh, facts.ScaleLow, facts.ScaleHigh}),
              ElementsAre(244.5F, 393.0F, 292.0F, 312.0F));
  EXPECT_EQ(StampDate(facts.Stamp), "11/12/2013");
  EXPECT_EQ(StampTime(facts.Stamp), "10:15:16 AM");
  EXPECT_EQ(EncodeContainerFrame(facts, kTwoByThree), Joined(frame, kTwoByThree));
  EXPECT_EQ(LeadingVersion(First(start, 4)), 3.0F);
  EXPECT_EQ(LeadingVersion(First(start, 3)), 0.0F) << "a version needs four bytes";
  EXPECT_EQ(StampTime("short"), "short");
}

}  // namespace
}  // namespace tessa::testing
