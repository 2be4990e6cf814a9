#include "formats/sit_sound.h"
#include "test_images.h"

namespace tessa::testing {
namespace {

/// 8000 Hz, three samples, written out by hand.
Bytes HandMadeSound() {
  Bytes sound(42);
  Put(sound, 0, "/IF");
  Put(sound, 8, "\0\0\x1F\x40"sv);
  Put(sound, 38, "\0\0\0\3"sv);
  return Joined(sound, {0xFF, 0xC0, 0x00, 0x3F, 0x80, 0x00});
}

TEST(Sound, TenBitsBecomeSixteenWithoutASign) {
  Problems faults;
  const auto sound = DecodeIfSound(Joined(HandMadeSound(), {9, 9}), 0, faults);
  ASSERT_TRUE(sound);
  EXPECT_THAT(FactsOf(faults), IsEmpty());
  EXPECT_EQ(sound->Rate, 8000u);
  EXPECT_THAT(sound->Samples, ElementsAre(1023, 0, 512));
  EXPECT_THAT(ToWaveSamples(sound->Samples), ElementsAre(32736, 0, 16384));
  EXPECT_EQ(EncodeIfSound(8000, std::vector<std::uint16_t>{1023, 0, 512}),
            Joined(First(HandMadeSound(), 42), {0xFF, 0xC0, 0, 0, 0x80, 0}));
}

TEST(Sound, ACutSoundGivesWhatIsWholeAndAReason) {
  const Bytes whole = HandMadeSound();
  AtEveryCut(whole, [](const Bytes& cut) {
    Problems faults;
    const auto sound = DecodeIfSound(cut, 100, faults);
    EXPECT_EQ(sound.has_value(), cut.size() >= 42);
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].Kind, cut.size() < 3 ? ProblemKind::kWrongKind : ProblemKind::kTruncated);
    if (sound) {
      EXPECT_EQ(sound->Samples.size(), (cut.size() - 42) / 2);
      EXPECT_EQ(faults[0].Offset, 100 + cut.size());
    }
  });
  Bytes huge = whole;
  Put(huge, 38, "\xFF\xFF\xFF\xFF");
  Problems faults;
  EXPECT_EQ(DecodeIfSound(huge, 0, faults)->Samples.size(), 3u);
  Bytes empty = whole;
  Put(empty, 38, "\0\0\0\0"sv);
  DecodeIfSound(empty, 0, faults);
  EXPECT_THAT(FactsOf(faults),
              ElementsAre(Truncated(48, "Samples", false), BadValue(38, "SampleCount")));
}

/// The header of a wave of two samples, written out by hand.
Bytes HandMadeWave() {
  return ToBytes(
      "RIFF\x28\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x22\x0B\0\0\x44\x16\0\0\2\0\x10\0"
      "data\4\0\0\0\xE0\x7F\0\x40"sv);
}

TEST(Sound, AWaveHasItsFortyFourBytesOfHeader) {
  EXPECT_EQ(EncodeWave(2850, std::vector<std::int16_t>{32736, 16384}), HandMadeWave());
}

TEST(Sound, AWaveIsReadStrictlyAndExtraChunksArePassedOver) {
  Problems faults;
  const Bytes plain = HandMadeWave();
  Bytes listed = First(plain, 36);
  listed = Joined(Joined(listed, ToBytes("LIST\3\0\0\0abc\0"sv)),
                  Bytes(plain.begin() + 36, plain.end()));
  listed = Joined(listed, {1, 2, 3});
  const auto facts = ReadWave(listed, 0, faults);
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->Rate, 2850u);
  EXPECT_EQ(facts->Frames(), 2u);
  EXPECT_THAT(WaveSamples(listed, *facts), ElementsAre(32736, 16384));
  Bytes eightBits = plain;
  Put(eightBits, 32, "\1\0\x08\0"sv);
  EXPECT_THAT(WaveSamples(eightBits, *ReadWave(eightBits, 0, faults)),
              ElementsAre(0x6000, -256, -32768, -16384));

  using Case = std::tuple<std::size_t, std::string_view, ProblemKind, std::uint64_t>;
  for (const auto& [at, bytes, kind, offset] :
       {Case{0, "RIFX", ProblemKind::kWrongKind, 0}, Case{8, "AVI ", ProblemKind::kWrongKind, 0},
        Case{12, "fact", ProblemKind::kBadValue, 36},  // data before its format
        Case{16, "\2\0\0\0"sv, ProblemKind::kBadValue, 12},
        Case{16, "\xFF\xFF\xFF\xFF", ProblemKind::kTruncated, 12},
        Case{20, "\3\0"sv, ProblemKind::kUnsupported, 12},
        Case{22, "\0\0"sv, ProblemKind::kBadValue, 12},
        Case{24, "\0\0\0\0"sv, ProblemKind::kBadValue, 24},
        Case{24, "\1\xEE\2\0"sv, ProblemKind::kBadValue, 24},  // 192,001
        Case{34, "\x0C\0"sv, ProblemKind::kUnsupported, 12},
        Case{40, "\0\0\0\0"sv, ProblemKind::kBadValue, 40},
        Case{40, "\5\0\0\0"sv, ProblemKind::kTruncated, 48}}) {
    Bytes broken = plain;
    Put(broken, at, bytes);
    Problems reasons;
    EXPECT_FALSE(ReadWave(broken, 0, reasons)) << at;
    ASSERT_EQ(reasons.size(), 1u) << at;
    EXPECT_EQ(reasons[0].Kind, kind) << at << reasons[0].Text;
    EXPECT_EQ(reasons[0].Offset, offset) << at;
  }
  AtEveryCut(plain, [](const Bytes& cut) {
    Problems reasons;
    EXPECT_FALSE(ReadWave(cut, 0, reasons));
    EXPECT_EQ(reasons.size(), 1u);
  });
}

SitHeader Header(const char* signature, const char* name = "", const char* extension = "") {
  Problems unused;
  return ReadSitHeader(NoteSit(signature, name, extension), unused);
}

TEST(Sound, TheHeaderHasTwoReadingsOfItsVersion) {
  EXPECT_EQ(VersionInTail(Header("T2 V2.95A ")), 2.95F);
  EXPECT_EQ(VersionInMiddle(Header("SIT V2.9A ")), 2.9F);
  EXPECT_EQ(VersionInMiddle(Header("SIT 3.5   ")), 0.5F);
  EXPECT_EQ(FixedSoundRate(3.0F), 2850u);
  EXPECT_FALSE(FixedSoundRate(3.1F));
  EXPECT_TRUE(StaysFindable(Header("SIT V3.1H ")));
  for (const char* late : {"SIT V3.1I ", "SIT V3.2A ", "SIT V4.2  "}) {
    EXPECT_FALSE(StaysFindable(Header(late))) << late;
  }
  EXPECT_FALSE(StaysFindable(Header("SIT V2.9  ", "", "WA\2")));
}

TEST(Sound, APositionIsAWholeNumberThatFitsItsField) {
  for (const auto& [text, position] :
       {std::pair{"156161  ", 156161}, std::pair{"99999999", 99999999}, std::pair{"0       ", 0},
        std::pair{"-5      ", 0}, std::pair{"1e9     ", 0}, std::pair{"1.5     ", 0}}) {
    EXPECT_EQ(WavePosition(Header("SIT V2.9  ", text, "WAV")).value_or(0),
              static_cast<std::uint64_t>(position));
  }
  const SitHeader old = Header("SIT V2.9  ", "SND00001", "AIF");
  SitHeader expected = old;
  std::copy_n("156161  WAV", 11, expected.Record.begin() + 108);
  EXPECT_EQ(RecordWithWave(old, 156161), expected.Record);
}

}  // namespace
}  // namespace tessa::testing
