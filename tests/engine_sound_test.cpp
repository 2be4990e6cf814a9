#include "scripted_device.h"
#include "sound/convert_sound.h"
#include "sound/embed_sound.h"
#include "sound/note_player.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

const std::vector<std::uint16_t> kSamples = {1023, 0, 512, 7};

Bytes Note(std::uint32_t rate) {
  return EncodeIfSound(rate, kSamples);
}
Bytes Wave(std::uint32_t rate) {
  return EncodeWave(rate, ToWaveSamples(kSamples));
}

class Sound : public LoadTest {
 protected:
  void SetUp() override { view().Log.clear(); }
  ScriptedDevice& view() { return viewDevice_; }
  std::string TakeLog(ScriptedDevice& device) { return std::exchange(device.Log, {}); }
  Bytes TempWave() const { return ReadBytes(image_.SoundTempFile); }
  TileSound Tile(const QString& path) const {
    const SoundNote note = FindSoundNote(path, EmptySound::kRemove);
    return {path, note.Kind, note.Reference};
  }

  ScriptedDevice viewDevice_;
  ScriptedDevice mainDevice_;
  NotePlayer player_{session_, viewDevice_, mainDevice_};
  const SoundControls& controls_ = session_.View.Sound;
};

TEST_F(Sound, EachKindIsFoundConvertedAtItsRateAndShownWithItsButtons) {
  Write("snd1.aif", Note(8000));
  using Case = std::tuple<Bytes, SoundKind, std::uint32_t, bool>;
  const Bytes block = Joined(Bytes(8), Note(8000));
  Bytes silent = block;
  Put(silent, 8 + 38, std::string_view("\0\0\0\0", 4));
  for (const auto& [file, kind, rate, embed] :
       {Case{NoteSit("SIT V2.9A ", "SND1    ", "AIF"), SoundKind::kSideFile, 2850, true},
        Case{NoteSit("SIT V3.1H ", "SND1    ", "AIF", {1}), SoundKind::kSideFile, 8000, true},
        Case{NoteSit("SIT V3.1I ", "SND1    ", "AIF"), SoundKind::kSideFile, 8000, false},
        Case{NoteSit("SIT V3.1I ", "", "", block), SoundKind::kEmbeddedSound, 8000, false},
        Case{NoteSit("SIT V2.9A ", "", "WA\1", block), SoundKind::kEmbeddedSound, 8000, false},
        Case{NoteSit("SIT V3.5A ", "", "", silent), SoundKind::kEmbeddedSound, 0, false},
        Case{NoteSit("SIT V3.5A ", "", "", First(block, 55)), SoundKind::kEmbeddedSound, 0, false},
        Case{NoteSit("SIT V3.0A ", "156161  ", "WAV", Wave(4000)), SoundKind::kEmbeddedWave, 4000,
             false},
        Case{NoteSit("SIT V3.0A ", "156162  ", "WAV", Wave(4000)), SoundKind::kEmbeddedWave, 0,
             false},
        Case{NoteSit("SIT V3.0A ", "99999999", "WAV"), SoundKind::kEmbeddedWave, 0, false},
        Case{NoteSit("SIT V3.0A ", "OTHER   ", "AIF"), SoundKind::kNone, 0, false},
        // The open image still looks where the header says.
        Case{NoteSit("SIT V4.2A ", "SND1    ", "AIF"), SoundKind::kNone, 8000, false}}) {
    Open("note.sit", file);
    SCOPED_TRACE(image_.SitHeader.Signature + image_.SitHeader.SoundName);
    EXPECT_EQ(FindSoundNote(image_.CurrentFilePath, EmptySound::kLeave).Kind, kind);
    EXPECT_EQ(controls_.PlayVisible, rate != 0);
    EXPECT_EQ(controls_.EmbedVisible, embed);
    EXPECT_EQ(session_.Faults.empty(), rate != 0);
    Bytes expected = rate == 0 ? Bytes() : Wave(rate);
    if (kind == SoundKind::kEmbeddedWave && rate != 0) {
      expected = Joined(expected, Bytes(expected.end() - 2, expected.end()));
    }
    EXPECT_EQ(TempWave(), expected);
  }
  // Characters 5 to 10 say 3.5 and 6 to 8 say .50; the former choose the rate of a sound inside.
  const QString odd = Write("odd.sit", NoteSit("SIT 3.50  ", "", "", block));
  EXPECT_EQ(ReadNote(odd, FindSoundNote(odd, EmptySound::kLeave)).Rate, 8000u);
  // Gone with the image.
  Open("note.sit", NoteSit("SIT V2.9A ", "SND1    ", "AIF"));
  const QString wave = image_.SoundTempFile;
  EXPECT_TRUE(QFile::exists(wave) && wave.endsWith(Name("/NOTE.WAV")));
  CloseImage(session_, *progress_);
  EXPECT_FALSE(QFile::exists(wave) || controls_.PlayVisible);
  EXPECT_THAT(image_.SoundTempFile.toStdString() + image_.SoundFileTitle.toStdString(), IsEmpty());
}

TEST_F(Sound, AnEmptySoundFileGoesOnlyWhereNotesArePlayed) {
  const QString image = Write("a.sit", NoteSit("SIT V2.9A ", "SND1    ", "AIF"));
  const QString sound = Write("SND1.AIF", Bytes());
  EXPECT_EQ(FindSoundNote(image, EmptySound::kLeave).Kind, SoundKind::kNone);
  EXPECT_THROW(WaveForImage(sound, HeaderOf(image)), StepFailure);
  EXPECT_TRUE(QFile::exists(sound));
  OpenAt(image);
  EXPECT_FALSE(QFile::exists(sound));
  Write("SND1.AIF", Bytes());
  EXPECT_FALSE(IsSoundFile(sound, EmptySound::kRemove));
  EXPECT_FALSE(QFile::exists(sound));
}

TEST_F(Sound, TheOpenImagesNotePlaysStopsAndRewinds) {
  Open("a.sit", NoteSit("SIT V3.0A ", "156161  ", "WAV", Wave(4000)));
  EXPECT_EQ(TakeLog(viewDevice_).substr(0, 3), "CCC");
  player_.PlayOrStop();
  EXPECT_TRUE(controls_.Playing);
  EXPECT_EQ(controls_.PlayHint.toStdString(), "Stop Playback");
  player_.PlayOrStop();
  EXPECT_FALSE(controls_.Playing);
  EXPECT_EQ(controls_.PlayHint.toStdString(), "Playback Sound File");
  player_.PlayOrStop();
  viewDevice_.Completed();
  EXPECT_FALSE(controls_.Playing);
  EXPECT_EQ(TakeLog(viewDevice_), "PSPSR");
  player_.PlayOrStop();
  Open("b.sit", NoteSit("SIT V3.0A ", "", ""));
  EXPECT_FALSE(controls_.Playing || controls_.PlayVisible);
  EXPECT_EQ(TakeLog(viewDevice_), "PSC");
  player_.PlayOrStop();
  EXPECT_EQ(TakeLog(viewDevice_), "") << "there is no note to play";

  viewDevice_.HasOutput = false;
  Open("a.sit", NoteSit("SIT V3.0A ", "156161  ", "WAV", Wave(4000)));
  EXPECT_TRUE(controls_.PlayVisible) << "buttons do not depend on the audio hardware";
  player_.PlayOrStop();
  EXPECT_FALSE(controls_.Playing);
  EXPECT_EQ(controls_.Message.toStdString(), "there is no sound output");
}

TEST_F(Sound, ASecondTileStopsTheFirstAndStartsNothing) {
  const QString first =
      folder_.Write(Name("1.sit"), NoteSit("SIT 3.50  ", "", "", Joined(Bytes(8), Note(8000))));
  const QString second = Write("2.sit", NoteSit("SIT V3.0A ", "156161  ", "WAV", Wave(4000)));
  Write("SND1.AIF", Note(8000));
  const QString third = Write("3.sit", NoteSit("SIT V2.9A ", "SND1    ", "AIF"));
  player_.PlayTile(Tile(first));
  EXPECT_TRUE(controls_.Playing && controls_.TileButtonVisible);
  EXPECT_EQ(controls_.TileMenuText.toStdString(), "Stop Playback");
  EXPECT_EQ(ReadBytes(EmbeddedTileWavePath(session_.Folder)), Wave(8000));
  player_.PlayTile(Tile(second));
  EXPECT_FALSE(controls_.Playing);
  EXPECT_EQ(controls_.TileMenuText.toStdString(), "Stop Playback") << "until its end is told";
  mainDevice_.Completed();
  EXPECT_EQ(controls_.TileMenuText.toStdString(), "Play Sound");
  EXPECT_EQ(TakeLog(mainDevice_), "CCOPSSRC");
  player_.PlayTile(Tile(second));
  EXPECT_EQ(ReadBytes(TileWavePath(session_.Folder)).size(), 44 + 8 + 2);
  mainDevice_.Completed();
  player_.PlayTile(Tile(third));
  EXPECT_EQ(ReadBytes(TileWavePath(session_.Folder)), Wave(2850));
  player_.CloseTileDevice();
  DeleteTempWave(session_.Folder);
  EXPECT_FALSE(QFile::exists(TileWavePath(session_.Folder)));

  // A note that went bad since its tile was made: nothing stays busy.
  const TileSound stale = Tile(third);
  Write("SND1.AIF", Bytes(50));
  player_.PlayTile(stale);
  EXPECT_FALSE(controls_.Playing);
  EXPECT_FALSE(controls_.Message.isEmpty());
  player_.CheckForSound(Tile(second));
  EXPECT_TRUE(controls_.TileButtonVisible);
  player_.TileButton();
  EXPECT_TRUE(controls_.Playing);
  player_.CheckForSound({});
  EXPECT_FALSE(controls_.TileButtonVisible);
}

TEST_F(Sound, ANotePutIntoTheOpenImageIsFoundAgain) {
  Write("SND1.AIF", Note(8000));
  const Bytes before = NoteSit("SIT V2.9A ", "SND1    ", "AIF", {1, 2, 3});
  Open("a.sit", before);
  ASSERT_TRUE(controls_.EmbedVisible);
  player_.Embed();
  EXPECT_EQ(controls_.Message.toStdString(), "");
  EXPECT_FALSE(controls_.EmbedVisible || image_.CanEmbedSound);
  EXPECT_EQ(image_.SitHeader.SoundName + image_.SitHeader.SoundExt, "156164  WAV");
  EXPECT_EQ(image_.SoundFile, image_.SoundTempFile);
  Bytes expected = Joined(before, Wave(2850));
  Put(expected, 108, "156164  WAV");
  EXPECT_EQ(ReadBytes(image_.CurrentFilePath), expected);
  EXPECT_EQ(image_.SitFileLength, static_cast<std::int64_t>(expected.size()));
  EXPECT_TRUE(QFile::exists(Path("SND1.AIF")));
  OpenAt(image_.CurrentFilePath);
  EXPECT_TRUE(controls_.PlayVisible);
  EXPECT_EQ(First(TempWave(), 52), Wave(2850));

  // Changed behind the program's back.
  Open("b.sit", before);
  Write("b.sit", Joined(before, {4}));
  player_.Embed();
  EXPECT_THAT(controls_.Message.toStdString(), HasSubstr("changed"));
  EXPECT_EQ(ReadBytes(image_.CurrentFilePath), Joined(before, {4}));
  Bytes renamed = before;
  Put(renamed, 982, "NEW MEMO");
  Open("c.sit", before);
  Write("c.sit", renamed);
  player_.Embed();
  EXPECT_EQ(ReadBytes(image_.CurrentFilePath), renamed);
}

TEST_F(Sound, ACopyTakesItsSoundInOrStaysAsItWas) {
  const QString sound = Write("SND1.AIF", Note(8000));
  const QString good = Write("a.sit", NoteSit("SIT V2.9A ", "SND1    ", "AIF"));
  EXPECT_EQ(GetSoundName(good), sound);
  EmbedSound(good, sound, session_.Folder);
  EXPECT_EQ(FindSoundNote(good, EmptySound::kLeave).Kind, SoundKind::kEmbeddedWave);
  EXPECT_EQ(GetSoundName(good), QString());
  EXPECT_EQ(GetSoundName(Write("w.sit", NoteSit("SIT V2.9A ", "SND1    ", "wav"))), QString());
  const QString empty = Write("EMPTY.AIF", Bytes());
  const QString cut = Write("CUT.AIF", First(Note(8000), 48));
  const QString fast = Write("FAST.AIF", Note(192001));
  for (const auto& [file, source] :
       {std::pair{NoteSit("SIT V2.9A ", "", ""), empty},
        std::pair{NoteSit("SIT V2.9A ", "", ""), cut},
        std::pair{NoteSit("SIT V3.1A ", "", ""), fast},
        std::pair{NoteSit("SIT V3.1I ", "", ""), sound},
        std::pair{NoteSit("SIT V4.0  ", "", ""), sound},
        std::pair{NoteSit("SIT V2.9A ", "", "WA\2"), sound},
        std::pair{First(NoteSit("SIT V2.9A ", "", ""), 156159), sound}}) {
    const QString path = Write("c.sit", file);
    EXPECT_THROW(EmbedSound(path, source, session_.Folder), StepFailure);
    EXPECT_EQ(ReadBytes(path), file);
  }
  EXPECT_FALSE(QFile::exists(empty));
}

}  // namespace
}  // namespace tessa::testing
