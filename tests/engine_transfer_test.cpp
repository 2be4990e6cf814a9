#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QGuiApplication>
#include <csignal>
#include <map>

#include "browser/contact_sheet.h"
#include "browser/transfer.h"
#include "browser/transfer_images.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

const std::vector<std::uint16_t> kSamples(300, 700);

Bytes Note() {
  return EncodeIfSound(8000, kSamples);
}

Bytes Sit(const char* sound, const char* extension, const char* signature = "SIT V2.9A ") {
  return NoteSit(signature, (std::string(sound) + "        ").substr(0, 8).c_str(), extension);
}

Bytes WithWave(Bytes image) {
  image = Joined(image, EncodeWave(2850, ToWaveSamples(kSamples)));
  Put(image, 108, "156161  WAV");
  return image;
}

/// Names and bytes of all that lies in a folder; what is no plain file counts as "?".
using Tree = std::map<std::string, Bytes>;

class Folder {
 public:
  explicit Folder(const QString& parent = QDir::tempPath())
      : folder_(parent + u"/transfer-XXXXXX"_s) {}
  QString Path() const { return folder_.path(); }
  QString Path(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }
  void Write(const char* name, const Bytes& bytes) const {
    WriteWholeFile(Path(name), bytes, Overwrite::kReplace);
  }
  Tree Read() const {
    Tree tree;
    for (const QFileInfo& file : QDir(Path()).entryInfoList(QDir::AllEntries | QDir::Hidden |
                                                            QDir::System | QDir::NoDotAndDotDot)) {
      tree[file.fileName().toStdString()] = file.isFile() ? ReadBytes(file.filePath()) : Bytes{'?'};
    }
    return tree;
  }

 private:
  QTemporaryDir folder_;
};

/// Answers in turn: y, n or c; "OK" boxes take none.
class Script : public NoDialogs {
 public:
  std::string Answers;
  std::vector<Message> Told;

  Answer ShowMessage(const Message& message) override {
    Told.push_back(message);
    if (message.Buttons == MessageButtons::kOk) {
      return Answer::kYes;
    }
    EXPECT_FALSE(Answers.empty()) << message.Text.toStdString();
    const char answer = Answers.empty() ? 'c' : Answers.front();
    Answers.erase(0, 1);
    return answer == 'y' ? Answer::kYes : answer == 'n' ? Answer::kNo : Answer::kCancel;
  }
};

class Transfer : public ::testing::Test {
 protected:
  using Operation = int (*)(const TransferRequest&, const TransferSurroundings&);

  Transfer() { FillSource(); }
  void FillSource() {
    source_.Write("a.SIT", a_);
    source_.Write("b.sit", b_);
    source_.Write("c.tmp", {1, 2, 3});
    source_.Write("snd1.aif", Note());  // Of a and b, whose headers say SND1.AIF.
  }
  /// Runs on the named files; all answers have to be used up.
  int Run(Operation operation, const std::vector<const char*>& names, const char* answers = "",
          bool embeds = false) {
    script_.Answers = answers;
    script_.Told.clear();
    changed_ = 0;
    TransferRequest request{source_.Path(), {}, target_.Path(), embeds};
    for (const char* name : names) {
      request.FileNames += QString::fromLatin1(name);
    }
    const int done = operation(request, {script_, progress_, status_, [this] {
                                           ++changed_;
                                           EXPECT_TRUE(status_.Shown && status_.InHand.isEmpty());
                                         }});
    EXPECT_EQ(script_.Answers, "");
    EXPECT_FALSE(status_.Shown);
    return done;
  }
  /// Title and text of message `at`, with the folders as S and T.
  std::string Told(std::size_t at) const {
    const Message& message = script_.Told.at(at);
    return QString(message.Title + QLatin1Char('|') + message.Text)
        .replace(source_.Path().toUpper(), u"S"_s)
        .replace(target_.Path().toUpper(), u"T"_s)
        .toStdString();
  }

  const Bytes a_ = Sit("SND1", "AIF");
  const Bytes b_ = Sit("SND1", "AIF", "SIT V3.0B ");
  Folder source_;
  Folder target_;
  Script script_;
  Progress progress_;
  TransferStatus status_;
  int changed_ = 0;
};

TEST_F(Transfer, CopiesTakeTheirSoundsAlongAndLeaveTheSourcesAsTheyWere) {
  const Tree before = source_.Read();
  ::chmod(source_.Path("a.SIT").toUtf8().constData(), 0444);
  EXPECT_EQ(Run(CopyImages, {"a.SIT", "b.sit", "c.tmp"}), 3);
  EXPECT_EQ(target_.Read(), before);
  EXPECT_EQ(source_.Read(), before);
  EXPECT_EQ(Told(0), "Copy Results|3 Files Copied to T");
  EXPECT_EQ(changed_, 0);
  struct stat status {};
  ::stat(target_.Path("a.SIT").toUtf8().constData(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0644u);
}

TEST_F(Transfer, EmbeddingPutsTheSoundInsideWhereItCanBeFoundAgain) {
  source_.Write("late.sit", Sit("SND1", "AIF", "SIT V3.5A "));
  source_.Write("cut.sit", Sit("CUT", "AIF"));
  source_.Write("cut.aif", First(Note(), 60));
  source_.Write("none.sit", Sit("NONE", "AIF"));
  source_.Write("none.aif", {});
  target_.Write("none.aif", {9});  // With embedding it is in nobody's way.
  EXPECT_EQ(Run(CopyImages, {"a.SIT", "cut.sit", "none.sit"}, "", true), 3);
  EXPECT_EQ(target_.Read(), (Tree{{"a.SIT", WithWave(a_)},
                                  {"cut.sit", Sit("CUT", "AIF")},
                                  {"cut.aif", First(Note(), 60)},
                                  {"none.aif", {9}},
                                  {"none.sit", Sit("NONE", "AIF")}}));
  EXPECT_EQ(source_.Read().count("none.aif"), 0u);
  // The sound goes with the last image of the folder that names it.
  EXPECT_EQ(Run(TransferImages, {"b.sit", "late.sit"}, "", true), 2);
  EXPECT_EQ(target_.Read()["late.sit"], Sit("SND1", "AIF", "SIT V3.5A "));
  EXPECT_EQ(target_.Read()["snd1.aif"], Note());
  EXPECT_EQ(source_.Read()["snd1.aif"], Note());
  EXPECT_EQ(Run(TransferImages, {"a.SIT"}, "y", true), 1);
  EXPECT_EQ(source_.Read().count("snd1.aif"), 0u);
}

TEST_F(Transfer, MovesOnOneFileSystemAndBetweenTwoGiveTheSame) {
  const Tree before = source_.Read();
  const Folder other(u"/dev/shm"_s);
  for (const QString& folder : {target_.Path(), other.Path()}) {
    FillSource();
    ::chmod(source_.Path("a.SIT").toUtf8().constData(), 0444);
    TransferRequest request{source_.Path(), {u"a.SIT"_s}, folder, false};
    const TransferSurroundings surroundings{script_, progress_, status_, [this] { ++changed_; }};
    EXPECT_EQ(TransferImages(request, surroundings), 1);
    EXPECT_EQ(source_.Read()["snd1.aif"], Note()) << "b.sit names it, too";
    EXPECT_NE(::access((folder + u"/a.SIT"_s).toUtf8().constData(), W_OK), -1);
    request.FileNames = QStringList{u"b.sit"_s, u"c.tmp"_s};
    EXPECT_EQ(TransferImages(request, surroundings), 2);
    EXPECT_EQ(source_.Read(), Tree());
  }
  EXPECT_EQ(target_.Read(), before);
  EXPECT_EQ(other.Read(), before);
  EXPECT_EQ(changed_, 4);
  struct stat first {};
  ::stat(target_.Path("snd1.aif").toUtf8().constData(), &first);
  EXPECT_EQ(first.st_nlink, 1u);
}

TEST_F(Transfer, EachAnswerToTheQuestionWhetherToReplace) {
  target_.Write("a.SIT", {1});
  target_.Write("b.sit", {2});
  for (const Operation operation : {CopyImages, TransferImages}) {
    const Tree sourceBefore = source_.Read();
    const Tree before = target_.Read();
    EXPECT_EQ(Run(operation, {"a.SIT", "b.sit"}, "nn"), 0);
    EXPECT_EQ(script_.Told.size(), 2u);
    EXPECT_EQ(Run(operation, {"a.SIT", "b.sit"}, "c"), 0);
    EXPECT_EQ(target_.Read(), before);
    EXPECT_EQ(source_.Read(), sourceBefore);
    EXPECT_THAT(Told(0), HasSubstr("Target File: T/a.SIT Already Exists."));
    EXPECT_EQ(Run(operation, {"a.SIT", "b.sit"}, "yc"), 1);
    EXPECT_EQ(target_.Read()["a.SIT"], a_);
    EXPECT_EQ(target_.Read()["b.sit"], Bytes{2});
    EXPECT_EQ(source_.Read().count("a.SIT"), operation == &CopyImages ? 1u : 0u);
    target_.Write("a.SIT", {1});
  }
  // Somebody else's sound is asked for like an image, and left together with it.
  FillSource();
  target_.Write("snd1.aif", {7});
  EXPECT_EQ(Run(CopyImages, {"a.SIT"}, "yn"), 0);
  EXPECT_THAT(Told(1), HasSubstr("T/snd1.aif Already Exists"));
  EXPECT_EQ(target_.Read()["a.SIT"], Bytes{1});
  EXPECT_EQ(Run(TransferImages, {"a.SIT"}, "yy"), 1);
  EXPECT_EQ(target_.Read()["snd1.aif"], Note());
  EXPECT_EQ(target_.Read()["a.SIT"], a_);
}

TEST_F(Transfer, AFailureThatIsPassedOverIsToldOfEveryFurtherFileAndCostsNothing) {
  QDir(source_.Path()).mkdir(u"folder.tmp"_s);
  target_.Write("b.sit", {2});
  const Tree sourceBefore = source_.Read();
  for (const Operation operation : {CopyImages, TransferImages}) {
    // Folder: continue; b: replace, continue; c: stop.
    EXPECT_EQ(Run(operation, {"folder.tmp", "b.sit", "c.tmp", "a.SIT"}, "yyyn"), 0);
    const bool copies = operation == &CopyImages;
    EXPECT_THAT(Told(0), HasSubstr("\n\nSource: S/folder.tmp\nTarget: T/folder.tmp\n"
                                   "Error: it is a folder, not a file\n\nDo you wish"));
    EXPECT_THAT(Told(3), HasSubstr("S/c.tmp\nTarget: T/c.tmp\nError: it is a folder"));
    EXPECT_EQ(script_.Told.size(), 4u);
    EXPECT_EQ(target_.Read(), (Tree{{"b.sit", {2}}}));
    EXPECT_EQ(source_.Read(), sourceBefore);
    // What was done before counts.
    EXPECT_EQ(Run(operation, {"c.tmp", "folder.tmp"}, "n"), 1);
    EXPECT_THAT(Told(1), HasSubstr(copies ? "|1 Files Copied to T" : "|1 Files Transferred to T"));
    ::unlink(target_.Path("c.tmp").toUtf8().constData());
  }
}

TEST_F(Transfer, TheSameFolderIsKnownThroughLinks) {
  const QString link = target_.Path("link");
  ASSERT_EQ(::symlink(source_.Path().toUtf8().constData(), link.toUtf8().constData()), 0);
  const Tree before = source_.Read();
  EXPECT_EQ(TransferImages({source_.Path(), {u"a.SIT"_s}, link, false},
                           {script_, progress_, status_, [] {}}),
            0);
  EXPECT_EQ(script_.Told.size(), 1u);
  EXPECT_EQ(Told(0), "Abort Transfer|Abort Transfer\n\nSource Directory = Target Directory");
  EXPECT_EQ(source_.Read(), before);
  EXPECT_FALSE(CheckTransfer(true, source_.Path(), link).CopyAndTransfer);
  EXPECT_TRUE(CheckTransfer(true, source_.Path(), link).Delete);
  EXPECT_TRUE(CheckTransfer(true, source_.Path(), target_.Path()).CopyAndTransfer);
}

TEST_F(Transfer, DeletingAsksFirstAndTakesTheSoundWithTheLastImageThatNamesIt) {
  const Tree before = source_.Read();
  EXPECT_EQ(Run(DeleteImages, {"a.SIT"}, "n"), 0);
  EXPECT_EQ(Told(0), "Delete Images|Are you sure you wish to delete\nthe selected images from S/");
  EXPECT_EQ(source_.Read(), before);
  EXPECT_EQ(Run(DeleteImages, {"a.SIT"}, "y"), 1);
  EXPECT_EQ(Told(1), "Delete Results|1 Files Deleted From S/");
  EXPECT_EQ(source_.Read()["snd1.aif"], Note());
  // The failure stands, but the next file went all the same.
  EXPECT_EQ(Run(DeleteImages, {"gone.sit", "b.sit"}, "yyy"), 0);
  EXPECT_THAT(Told(2), HasSubstr("Source: S/b.sit\nError: No such file or directory"));
  EXPECT_EQ(source_.Read(), (Tree{{"c.tmp", {1, 2, 3}}}));
  EXPECT_EQ(changed_, 1);
  // A header that names something else does not take it away.
  source_.Write("bad.sit", Sit("THESIS", "DOC"));
  source_.Write("thesis.doc", {1});
  EXPECT_EQ(Run(DeleteImages, {"bad.sit"}, "y"), 1);
  EXPECT_EQ(source_.Read()["thesis.doc"], Bytes{1});
}

TEST_F(Transfer, WhatIsNoPlainFileIsRefusedAndLinksAreNeverWrittenThrough) {
  const auto path = [&](const char* name) { return target_.Path(name).toUtf8(); };
  QDir(target_.Path()).mkdir(u"a.SIT"_s);
  ASSERT_EQ(::mkfifo(path("b.sit").constData(), 0600), 0);
  ASSERT_EQ(::symlink("/dev/null", path("c.tmp").constData()), 0);
  const Tree before = source_.Read();
  EXPECT_EQ(Run(TransferImages, {"a.SIT"}, "yn"), 0);
  EXPECT_EQ(Run(TransferImages, {"b.sit"}, "yn"), 0);
  EXPECT_EQ(Run(CopyImages, {"c.tmp"}, "yn"), 0);
  EXPECT_EQ(source_.Read(), before);
  EXPECT_EQ(target_.Read().size(), 3u);
  // A link to the source and the source under a second name.
  for (const char* name : {"b.sit", "c.tmp"}) {
    ::unlink(path(name).constData());
  }
  ASSERT_EQ(::symlink(source_.Path("b.sit").toUtf8().constData(), path("b.sit").constData()), 0);
  ASSERT_EQ(::link(source_.Path("c.tmp").toUtf8().constData(), path("c.tmp").constData()), 0);
  EXPECT_EQ(Run(CopyImages, {"b.sit"}, "y"), 1);
  EXPECT_EQ(Run(TransferImages, {"b.sit", "c.tmp"}, "yy"), 2);
  EXPECT_EQ(target_.Read()["b.sit"], b_);
  EXPECT_EQ(target_.Read()["c.tmp"], (Bytes{1, 2, 3}));
  EXPECT_EQ(source_.Read(), (Tree{{"a.SIT", a_}, {"snd1.aif", Note()}}));
  // A moved link leaves what it leads to; case twins are other files.
  ASSERT_EQ(::symlink(path("c.tmp").constData(), source_.Path("B.SIT").toUtf8().constData()), 0);
  EXPECT_EQ(Run(TransferImages, {"B.SIT"}), 1);
  EXPECT_EQ(target_.Read()["B.SIT"], (Bytes{1, 2, 3}));
  EXPECT_EQ(target_.Read()["c.tmp"], (Bytes{1, 2, 3}));
  EXPECT_EQ(target_.Read()["b.sit"], b_);
}

TEST_F(Transfer, AFullTargetLeavesTheOldFileAndTheSourceAlsoWhenOnlyTheSoundFindsNoRoom) {
  target_.Write("a.SIT", {1});
  const Tree before = source_.Read();
  {
    const FileSizeLimit limit(100'000);
    EXPECT_EQ(Run(CopyImages, {"a.SIT"}, "yn"), 0);
    EXPECT_THAT(Told(1), HasSubstr("Error: File too large"));
    EXPECT_EQ(Run(CopyImages, {"b.sit"}, "n"), 0);
  }
  EXPECT_EQ(target_.Read(), (Tree{{"a.SIT", {1}}}));
  EXPECT_EQ(source_.Read(), before);
  const Folder other(u"/dev/shm"_s);
  const TransferRequest request{source_.Path(), {u"a.SIT"_s}, other.Path(), false};
  const TransferSurroundings surroundings{script_, progress_, status_, [] {}};
  source_.Write("snd1.aif", EncodeIfSound(8000, std::vector<std::uint16_t>(90'000)));
  script_.Answers = "n";
  script_.Told.clear();
  const FileSizeLimit limit(160'000);
  EXPECT_EQ(TransferImages(request, surroundings), 0);
  EXPECT_THAT(Told(0), HasSubstr("its sound file snd1.aif: File too large"));
  EXPECT_EQ(other.Read(), Tree());
  // A copy comes without its sound then, and nobody is told.
  EXPECT_EQ(CopyImages(request, surroundings), 1);
  EXPECT_EQ(other.Read(), (Tree{{"a.SIT", a_}}));
  EXPECT_EQ(source_.Read().size(), before.size());
}

/// Moves the images from one folder to the other in a process that is killed after `microseconds`,
/// or left to end by itself at 0.
void MoveInProcess(const Folder& from, const Folder& to, bool embeds, useconds_t microseconds) {
  const pid_t child = ::fork();
  if (child == 0) {
    try {
      ImageTransfer transfer(to.Path(), {true, embeds, true});
      for (const QString& name : QDir(from.Path()).entryList({u"*.sit"_s})) {
        transfer.Bring(transfer.Plan(JoinPath(from.Path(), name)), Overwrite::kReplace);
        if (transfer.IsBatchFull()) {
          transfer.Finish();
        }
      }
      transfer.Finish();
    } catch (const StepFailure&) {
      ::_exit(1);
    }
    ::_exit(0);
  }
  if (microseconds > 0) {
    ::usleep(microseconds);
    ::kill(child, SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
}

TEST(TransferKilled, EachImageStandsWholeWithItsSoundInOneOfTheFolders) {
  const std::array images = {Sit("SND0", "AIF"), Sit("SND1", "AIF"), Sit("SND2", "AIF")};
  std::srand(7);
  int unfinished = 0;
  for (int round = 0; round < 15; ++round) {
    const bool embeds = round % 3 == 2;
    const Folder from;
    const Folder to(round % 3 == 1 ? u"/dev/shm"_s : QDir::tempPath());
    for (std::size_t i = 0; i < 90; ++i) {
      from.Write(("image" + std::to_string(i) + ".sit").c_str(), images[i / 30]);
    }
    for (const char* sound : {"SND0.AIF", "SND1.AIF", "SND2.AIF"}) {
      from.Write(sound, Note());
    }
    const auto check = [&] {
      const Tree left = from.Read();
      const Tree right = to.Read();
      const auto isWhole = [&](const Tree& tree, std::size_t i) {
        const auto image = tree.find("image" + std::to_string(i) + ".sit");
        const auto sound = tree.find("SND" + std::to_string(i / 30) + ".AIF");
        return image != tree.end() && (image->second == WithWave(images[i / 30]) ||
                                       (image->second == images[i / 30] && sound != tree.end() &&
                                        sound->second == Note()));
      };
      for (std::size_t i = 0; i < 90; ++i) {
        EXPECT_TRUE(isWhole(left, i) || isWhole(right, i)) << "image " << i << " round " << round;
      }
      return left.size();
    };
    MoveInProcess(from, to, embeds, static_cast<useconds_t>(500 + std::rand() % 25'000));
    unfinished += check() > 0 ? 1 : 0;
    MoveInProcess(from, to, embeds, 0);
    EXPECT_LE(check(), 3u) << "a second run finishes it but for sounds that were left";
    EXPECT_EQ(from.Read().count("image0.sit") + from.Read().count("image89.sit"), 0u);
  }
  EXPECT_GT(unfinished, 4) << "no kill came in time to tell anything";
}

TEST(ContactSheet, PlacesFollowThePageAndTheResolution) {
  // A page of 3300 x 2399 at 300 dots an inch.
  const SheetGeometry page{3300, 2399, 70, 50, 1.0};
  EXPECT_EQ(page.TileWidth(), 600);
  EXPECT_EQ(page.TileHeight(), 1052);
  EXPECT_EQ(page.PictureRect(9, {320, 240}),
            QRect(4 * 600 + 5 * 50, 1052 + 30 + 50 + 5 + 70 + (1052 - 450) / 2, 600, 450));
  EXPECT_EQ(page.NameTop(3), 85 + 1052 - 50);
  // Too high for the width rule: between the names above and below.
  const QRect high = page.PictureRect(6, {100, 800});
  EXPECT_EQ(high.height(), 1052 - 100);
  EXPECT_EQ(high.width(), 119);
  EXPECT_LE(high.bottom(), page.NameTop(6));
}

TEST(ContactSheet, DrawsPicturesPixelForPixelAndNothingWithoutThem) {
  int count = 1;
  std::array<char, 2> name = {"t"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  const QGuiApplication application(count, arguments.data());
  QImage page(1650, 1200, QImage::Format_RGB32);
  page.setDotsPerMeterX(5906);
  page.setDotsPerMeterY(5906);
  page.fill(Qt::white);
  QImage picture(2, 1, QImage::Format_RGB32);
  picture.setPixel(0, 0, 0xFFFF0000);
  picture.setPixel(1, 0, 0xFF0000FF);
  {
    QPainter painter(&page);
    DrawSheet({u"H"_s, {{u"n"_s, picture}, {{}, picture}}}, painter);
  }
  // Two tiles, each one half red and one half blue with no colour between; the rest is text.
  std::map<QRgb, int> colours;
  for (int x = 0; x < page.width(); ++x) {
    for (int y = 300; y < 340; ++y) {
      ++colours[page.pixel(x, y)];
    }
  }
  EXPECT_EQ(colours.size(), 3u);
  EXPECT_EQ(colours[0xFFFF0000], 2 * 150 * 40);
  EXPECT_EQ(colours[0xFF0000FF], 2 * 150 * 40);
}

}  // namespace
}  // namespace tessa::testing
