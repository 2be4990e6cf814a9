#include "browser/thumbnail_pages.h"
#include "browser/tile.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

/// A SIT image whose column c has c degrees, shown from `center` - 4 to `center` + 4 steps of 8.
Bytes Sit(const char* signature = "SIT V3.0A ", const char* name = "", const char* extension = "",
          const Bytes& attachment = {}) {
  SitFields fields = SoundSit(signature, name, extension, attachment);
  fields.Offset = 0.0;
  fields.Gain = 1.0;
  fields.ScaleCenter = 100.0;
  fields.ScaleStep = 12.5;  // 50 to 150
  fields.Comment = "a comment";
  fields.Counts = Raster(kSitWidth, kSitHeight, [](int column, int) { return column; });
  return EncodeSit(fields);
}

Bytes Snapshot(float version, int width, int height, const char* comment = "") {
  std::vector<std::int16_t> tenths(static_cast<std::size_t>(width * height), 2732 + 100);
  tenths[1] = 2732;
  SnapshotFields fields = SnapshotOf(width, height, {tenths}, version);
  fields.Header.Taken = 44197.75;  // 2021-01-01 18:00
  fields.Header.ScaleMin = 0.0F;
  fields.Header.ScaleMax = 25.5F;
  fields.Header.Comment = comment;
  fields.Stamps = {"1234567890 12:34:56 AM"};
  return EncodeSnapshot(fields);
}

class BrowserTiles : public ::testing::Test {
 protected:
  QString Write(const char* name, const Bytes& bytes) const {
    return folder_.Write(QString::fromLatin1(name), bytes);
  }
  Tile Decode(const char* name, const Bytes& bytes) const {
    return DecodeTile(Write(name, bytes), EmptySound::kRemove);
  }
  static int At(const Tile& tile, int column, int row) {
    return tile.Picture.Pixels.at(static_cast<std::size_t>(row) * tile.Picture.Stride +
                                  static_cast<std::size_t>(column));
  }
  TestFolder folder_;
};

TEST_F(BrowserTiles, AStillIsShownOnTheScaleOfItsHeaderAlone) {
  const Tile sit = Decode("a.sit", Sit());
  ASSERT_EQ(sit.Picture.Width, 320);
  EXPECT_EQ(At(sit, 40, 0), 0);
  EXPECT_EQ(At(sit, 51, 239), 3);  // 2.55
  EXPECT_EQ(At(sit, 101, 5), 130);
  EXPECT_EQ(At(sit, 200, 5), 255);
  EXPECT_EQ(sit.Comment, u"a comment"_s);
  EXPECT_EQ(MemoTag(sit, Strings()), u"None"_s);

  LegacyFields old = PlainLegacy(128);
  old.OffsetText = "  20.0";
  old.GainCode = '6';
  const Tile legacy = Decode("old.tmp", EncodeLegacyTmp(old));
  EXPECT_EQ(legacy.Picture.Width, 255);
  EXPECT_EQ(legacy.Picture.Height, 207);
  EXPECT_EQ(At(legacy, 0, 0), 128);
  EXPECT_EQ(legacy.Date + legacy.Time, u"4/12/199610:15:30 AM"_s);
}

TEST_F(BrowserTiles, ATileTellsWhichNoteTheImageHas) {
  Write("SND1.AIF", {});
  const Tile gone = Decode("gone.sit", Sit("SIT V3.0A ", "NOSUCH  ", "AIF"));
  EXPECT_EQ(gone.Sound, SoundKind::kNone);
  EXPECT_EQ(Decode("empty.sit", Sit("SIT V2.9A ", "SND1    ", "AIF")).Sound, SoundKind::kNone);
  EXPECT_FALSE(folder_.Names().contains(u"SND1.AIF"_s));
  const Tile wave = Decode("wave.sit", Sit("SIT V3.0A ", "156161  ", "WAV", Bytes(100)));
  EXPECT_EQ(wave.Sound, SoundKind::kEmbeddedWave);
  EXPECT_EQ(wave.SoundReference.trimmed(), u"156161"_s);
  EXPECT_TRUE(wave.IsBlueCaption);
  const Tile photograph = Decode("p.sit", Sit("SIT V4.0A ", "", "  \x02", Bytes(50)));
  EXPECT_EQ(photograph.Sound, SoundKind::kNone);
  EXPECT_TRUE(photograph.IsBlueCaption);
  EXPECT_EQ(photograph.VisibleOffset, 156169u);
}

TEST_F(BrowserTiles, SnapshotsShowTheirFirstFrameAndSequencesNone) {
  for (const float version : {1.0F, kStampedVersion}) {
    const Tile tile = Decode("a.rti", Snapshot(version, 8, 6, "  hot spot "));
    ASSERT_EQ(tile.Picture.Height, 6);
    EXPECT_EQ(At(tile, 1, 0), 0);
    EXPECT_EQ(At(tile, 7, 5), 100);
    EXPECT_EQ(tile.Comment, u"hot spot"_s);
    EXPECT_EQ(tile.Date + tile.Time, u"01/01/2106:00:00 PM"_s);
  }
  EXPECT_EQ(Decode("big.rti", Snapshot(1.0F, 801, 601)).Picture.Width, 0);
  ContainerHeader header;
  header.Version = kContainerVersion;
  header.Frames = 37;
  const Tile sequence = Decode("s.rti", EncodeContainerHeader(header));
  EXPECT_EQ(sequence.SequenceFrames, 37);
  EXPECT_EQ(sequence.Picture.Width + static_cast<int>(sequence.Faults.size()), 0);
}

TEST_F(BrowserTiles, PicturesTurnToOneOrientationOfPalette) {
  const std::vector<std::uint8_t> indices(16, 10);
  for (const bool reversed : {false, true}) {
    const Tile tile = Decode("a.txi", EncodeBmp8(4, 4, indices, 4, Ramp(reversed)));
    EXPECT_EQ(At(tile, 3, 3), reversed ? 245 : 10);
    EXPECT_TRUE(CommentTag(tile, Strings()).isEmpty());
  }
}

TEST_F(BrowserTiles, ABrokenFileHasAReasonAndACutOneWhatIsThere) {
  const Bytes whole = Sit();
  const Tile cut = Decode("cut.sit", First(whole, 1024 + 640 * 100));
  EXPECT_EQ(At(cut, 200, 99), 255);
  EXPECT_EQ(At(cut, 200, 100), 0);
  for (const char* name : {"head.sit", "none.jpg", "none.bmp", "none.rti"}) {
    const Tile tile = Decode(name, First(whole, 300));
    EXPECT_EQ(tile.Picture.Width, 0) << name;
    EXPECT_NE(FindNoImage(tile.Faults), nullptr) << name;
  }
}

/// Every character is as wide as any other.
double Characters(const QString& text) {
  return static_cast<double>(text.size());
}

class BrowserPages : public BrowserTiles {
 protected:
  /// `count` images in a folder of the name; their files hold nothing.
  QString Folder(const char* name, int count, const char* ending = ".sit") {
    const QString path = folder_.Path(QString::fromLatin1(name));
    QDir().mkpath(path);
    for (int i = 1; i <= count; ++i) {
      folder_.Write(
          u"%1/f%2%3"_s.arg(QString::fromLatin1(name)).arg(i).arg(QString::fromLatin1(ending)), {});
    }
    return path;
  }
  int VisibleTiles() const {
    return static_cast<int>(std::count_if(pages_.Places.begin(), pages_.Places.end(),
                                          [](const auto& place) { return place.Visible; }));
  }
  QString Buttons() const { return u"%1%2"_s.arg(pages_.BackEnabled).arg(pages_.ForwardEnabled); }
  BrowserMemory memory_;
  ThumbnailPages pages_{memory_, Characters};
};

TEST_F(BrowserPages, TenFilesAreOnePageAndElevenAreTwo) {
  struct Case {
    int Files, Pages, Last;
    const char* Buttons;
  };
  for (const Case& c : {Case{0, 0, 0, "00"}, Case{10, 1, 10, "00"}, Case{11, 2, 1, "01"}}) {
    EXPECT_TRUE(pages_.ChangeFolder(Folder(std::to_string(c.Files).c_str(), c.Files)));
    EXPECT_EQ(pages_.PageCount, c.Pages);
    EXPECT_EQ(pages_.LastPageCount, c.Last);
    EXPECT_EQ(Buttons().toStdString(), c.Buttons);
    EXPECT_EQ(VisibleTiles(), std::min(c.Files, 10));
  }
  pages_.ShowLast();
  EXPECT_EQ(Buttons(), u"10"_s);
  EXPECT_EQ(VisibleTiles(), 1);
  EXPECT_EQ(pages_.Places[0].Caption, u"F11.SIT"_s);  // Numbers by their value.
  EXPECT_FALSE(pages_.ChangeFolder(folder_.Path(u"gone"_s)));
  EXPECT_EQ(pages_.Files.Count(), 11);
}

TEST_F(BrowserPages, AFilterLeavesItsKindInAnyLetterCase) {
  Folder("mixed", 3, ".SiT");
  Folder("mixed", 2, ".jpg");
  Folder("mixed", 1, ".text");
  Folder("mixed/folder.sit", 0);
  folder_.Write(u"mixed/.hidden.sit"_s, {});
  folder_.Write(u"mixed/F1.SIT"_s, {});
  memory_.DefaultImageTypeIndex = 8;
  ThumbnailPages pages(memory_, Characters);
  EXPECT_EQ(memory_.DefaultImageTypeIndex, 0);
  pages.ChangeFolder(folder_.Path(u"mixed"_s));
  EXPECT_EQ(pages.Files.Count(), 6);
  pages.ChangeFilter(4);
  ASSERT_EQ(pages.Files.Count(), 4);  // Names that differ in case alone are two images.
}

TEST_F(BrowserPages, TheSelectionReachesOverPagesAndEndsWithTheFolder) {
  const QString folder = Folder("a", 25);
  pages_.ChangeFolder(folder);
  pages_.TargetFolder = folder + u"/"_s;
  pages_.Pick(3);
  EXPECT_TRUE(pages_.Places[3].Marked && pages_.DeleteEnabled && !pages_.TransferEnabled);
  pages_.ShowNext();
  EXPECT_FALSE(pages_.Places[3].Marked);
  pages_.TargetFolder = folder_.Path(QString());
  pages_.Pick(0);
  EXPECT_TRUE(pages_.TransferEnabled);
  EXPECT_EQ(pages_.Files.SelectedCount(), 2);
  pages_.Pick(0);
  pages_.ShowFirst();
  EXPECT_TRUE(pages_.Places[3].Marked);
  // Unselecting leaves what was picked last.
  EXPECT_EQ(memory_.SelectedPath, folder + u"/f11.sit"_s);
  QFile::remove(folder + u"/f1.sit"_s);
  pages_.ReadAgain();
  EXPECT_TRUE(pages_.Places[2].Marked);
  pages_.ChangeFolder(folder);
  EXPECT_FALSE(pages_.DeleteEnabled);
  pages_.SelectAll(true);
  EXPECT_EQ(pages_.Files.SelectedCount(), 24);
}

TEST_F(BrowserPages, OnlyANarrowedFilterComesBackToItsPage) {
  const QString folder = Folder("a", 25);
  for (const auto& [filter, page] : std::vector<std::pair<int, int>>{{0, 1}, {4, 3}}) {
    pages_.ChangeFolder(folder);
    pages_.ChangeFilter(filter);
    pages_.ShowPage(3);
    pages_.ChooseTile(0);
    ThumbnailPages next(memory_, Characters);
    next.ChangeFolder(folder);
    EXPECT_EQ(next.CurrentPage, page) << filter;
  }
}

}  // namespace
}  // namespace tessa::testing
