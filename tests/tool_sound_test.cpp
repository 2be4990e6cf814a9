#include "test_files.h"

namespace tessa::testing {
namespace {

class ToolSound : public ToolTest {
 protected:
  ToolSound() {
    Write("SND1.AIF", EncodeIfSound(8000, samples_));
    Write("side.sit", NoteSit("SIT V2.9A ", "SND1    ", "AIF"));
    Write("wave.sit", NoteSit("SIT V3.0A ", "156161  ", "WAV", Wave(4000)));
    Write("late.sit", NoteSit("SIT V3.5A ", "", ""));
    Write("none.sit", NoteSit("SIT V3.0A ", "", ""));
  }
  Bytes Wave(std::uint32_t rate) const { return EncodeWave(rate, ToWaveSamples(samples_)); }
  Bytes Read(const char* name) const { return ReadBytes(Path(name)); }

  const std::vector<std::uint16_t> samples_ = std::vector<std::uint16_t>(6000, 700);
};

TEST_F(ToolSound, SoundWritesEachNoteAndInfoTellsOfIt) {
  EXPECT_EQ(Run({"sound", "@side.sit", "@wave.sit", "--folder", "@out"}).Status, 0);
  EXPECT_EQ(Read("out/side.wav"), Wave(2850));
  EXPECT_EQ(Read("out/wave.wav"), Wave(4000));
  EXPECT_THAT(Run({"info", "@side.sit"}).Out, HasSubstr("2.1 s at 2850 Hz, in the file"));
  const QJsonObject info =
      QJsonDocument::fromJson(QByteArray::fromStdString(Run({"info", "--json", "@wave.sit"}).Out))
          .object();
  ExpectFacts(info, R"({"SoundKind": 2, "SoundSeconds": 1.5, "SoundRate": 4000, "Problems": []})");
  Write("late.sit", NoteSit("SIT V3.5A ", "", "", Joined(Bytes(8), First(Read("SND1.AIF"), 45))));
  EXPECT_THAT(Run({"info", "@late.sit"}).Out, HasSubstr("the sound is cut: 1 of 6000 samples"));
  const Outcome cut = Run({"sound", "@late.sit", "-o", "@cut.wav"});
  EXPECT_THAT(cut.Error, HasSubstr("1 of 6000 samples are there; what is there was written"));
  EXPECT_EQ(Read("cut.wav").size(), 46u);
}

TEST_F(ToolSound, EmbedAppendsTheWaveAndLeavesTheRest) {
  EXPECT_EQ(Run({"embed", "@side.sit", "-o", "@new.sit"}).Error, "");
  Bytes expected = Joined(Read("side.sit"), Wave(2850));
  Put(expected, 108, "156161  WAV");
  EXPECT_EQ(Read("new.sit"), expected);
  EXPECT_EQ(Run({"embed", "@side.sit", "--in-place"}).Error, "");
  EXPECT_EQ(Read("side.sit"), expected);
  // Once more: the former wave stays as dead bytes. A wave goes in as it is.
  Write("own.wav", Wave(22050));
  EXPECT_EQ(Run({"embed", "@side.sit", "--sound", "@own.wav", "--in-place"}).Error, "");
  EXPECT_EQ(Run({"sound", "@side.sit", "-o", "@back.wav"}).Status, 0);
  EXPECT_EQ(Read("back.wav"), Wave(22050));
}

TEST_F(ToolSound, RefusalsSayWhyAndChangeNothing) {
  Write("silent.sit", NoteSit("SIT V3.0A ", "156161  ", "WAV", First(Wave(4000), 44)));
  Write("cut.aif", First(Read("SND1.AIF"), 100));
  using Case = std::tuple<std::vector<const char*>, int, const char*>;
  for (const auto& [words, status, reason] : std::initializer_list<Case>{
           {{"sound", "@none.sit", "-o", "@x.wav"}, 1, "no sound note"},
           {{"sound", "@silent.sit", "-o", "@x.wav"}, 1, "no data"},
           {{"sound", "@side.sit", "-o", "@side.sit", "--force"}, 1, "overwrite"},
           {{"sound", "@side.sit", "-o", "@SND1.AIF", "--force"}, 1, "overwrite"},
           {{"sound", "@side.sit", "-o", "@none.sit"}, 1, "exists"},
           {{"embed", "@side.sit"}, 2, "--in-place"},
           {{"embed", "@late.sit", "--sound", "@SND1.AIF", "--in-place"}, 1, "found again"},
           {{"embed", "@none.sit", "--sound", "@cut.aif", "--in-place"}, 1, "cut"},
           {{"embed", "@side.sit", "-o", "@side.sit", "--force"}, 1, "--in-place"},
           {{"embed", "@SND1.AIF", "--in-place"}, 1, "only SIT images"}}) {
    const Bytes before = Joined(Joined(Read("side.sit"), Read("none.sit")), Read("SND1.AIF"));
    const QStringList names = folder_.Names();
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, status) << reason;
    EXPECT_THAT(outcome.Error, HasSubstr(reason));
    EXPECT_EQ(Joined(Joined(Read("side.sit"), Read("none.sit")), Read("SND1.AIF")), before);
    EXPECT_EQ(folder_.Names(), names);
  }
}

}  // namespace
}  // namespace tessa::testing
