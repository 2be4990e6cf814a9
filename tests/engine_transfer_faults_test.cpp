#include <fcntl.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <thread>

#include "browser/transfer.h"
#include "browser/transfer_images.h"
#include "core/steps.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

class Asked : public NoDialogs {
 public:
  std::function<Answer(const Message&)> Reply;
  Answer ShowMessage(const Message& message) override { return Reply(message); }
};

/// A folder with images a, b and c of one sound, a target beside it and one on another file system.
class TransferFaults : public ::testing::Test {
 protected:
  TransferFaults() {
    for (const char* name : {"a.sit", "b.sit", "c.sit"}) {
      Write(from_, name, image_);
    }
    Write(from_, "SND1.AIF", Note(1));
  }
  static Bytes Note(std::uint16_t value) {
    return EncodeIfSound(8000, std::vector<std::uint16_t>(300, value));
  }
  static QString In(const QTemporaryDir& folder, const char* name) {
    return folder.filePath(QString::fromLatin1(name));
  }
  static QByteArray PathOf(const QTemporaryDir& folder, const char* name) {
    return In(folder, name).toUtf8();
  }
  static void Write(const QTemporaryDir& folder, const char* name, const Bytes& bytes) {
    std::ofstream(PathOf(folder, name).constData(), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
  }
  static std::string Names(const QTemporaryDir& folder) {
    return QDir(folder.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name)
        .join(QLatin1Char(' '))
        .toStdString();
  }
  void Bring(ImageTransfer& transfer, const char* name) const {
    transfer.Bring(transfer.Plan(In(from_, name)), Overwrite::kReplace);
  }

  const Bytes image_ = NoteSit("SIT V2.9A ", "SND1    ", "AIF");
  const QTemporaryDir from_;
  const QTemporaryDir near_;
  const QTemporaryDir far_{u"/dev/shm/faults-XXXXXX"_s};
};

TEST_F(TransferFaults, ASourceGoesOnlyWhileItsCopyStandsAndItWasNotWrittenTo) {
  ImageTransfer transfer(far_.path(), {true, false, true});
  for (const char* name : {"a.sit", "b.sit", "c.sit"}) {
    Bring(transfer, name);
  }
  // Longer than a tick of the file system's clock, by which what is written later is told.
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  ::unlink(PathOf(far_, "a.sit"));
  Write(far_, "b.sit", Bytes(image_.size(), 7));
  struct stat before {};
  ::stat(PathOf(from_, "c.sit"), &before);
  Write(from_, "c.sit", Bytes(image_.size(), 9));
  const std::array times = {before.st_atim, before.st_mtim};
  ::utimensat(AT_FDCWD, PathOf(from_, "c.sit"), times.data(), 0);
  EXPECT_EQ(transfer.Finish().size(), 3u);
  EXPECT_EQ(Names(from_), "SND1.AIF a.sit b.sit c.sit");
  Bring(transfer, "a.sit");
  ::unlink(PathOf(far_, "SND1.AIF"));
  EXPECT_EQ(transfer.Finish().size(), 1u);
  Bring(transfer, "a.sit");
  QDir(far_.path()).removeRecursively();
  ASSERT_EQ(transfer.Finish().size(), 1u);
  EXPECT_EQ(Names(from_), "SND1.AIF a.sit b.sit c.sit");
}

TEST_F(TransferFaults, NoSourceWaitsForAnAnswerAndAStandingFailureIsToldAfterANo) {
  Write(far_, "c.sit", {1});
  std::vector<std::string> told;
  Asked asked;
  asked.Reply = [&](const Message& message) {
    told.push_back(message.Title.toStdString());
    if (message.Title.startsWith(u"Target File")) {
      EXPECT_EQ(Names(from_), "SND1.AIF c.sit");
      return Answer::kNo;
    }
    return Answer::kYes;
  };
  Progress progress;
  TransferStatus status;
  const TransferSurroundings surroundings{asked, progress, status, [] {}};
  TransferRequest request{from_.path(), {u"a.sit"_s, u"b.sit"_s, u"c.sit"_s}, far_.path(), false};
  EXPECT_EQ(TransferImages(request, surroundings), 2);
  told.clear();
  request.FileNames = QStringList{u"gone.sit"_s, u"c.sit"_s};
  EXPECT_EQ(TransferImages(request, surroundings), 0);
  EXPECT_EQ(told.size(), 3u);
  EXPECT_EQ(told.back(), "Transfer File Error");
}

TEST_F(TransferFaults, ASoundStaysWhileAnImageMayNameIt) {
  FolderSounds sounds(from_.path());
  EXPECT_EQ(DeleteImage(In(from_, "a.sit"), sounds), u""_s);
  EXPECT_EQ(DeleteImage(In(from_, "c.sit"), sounds), u""_s);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  Write(from_, "late.sit", image_);
  EXPECT_EQ(DeleteImage(In(from_, "b.sit"), sounds), u""_s);
  // Nobody can read it, not even the system's master.
  ASSERT_EQ(::symlink("loop.sit", PathOf(from_, "loop.sit")), 0);
  for (const QTemporaryDir* to : {&near_, &far_}) {
    Write(from_, "late.sit", image_);
    ImageTransfer transfer(to->path(), {true, false, true});
    Bring(transfer, "late.sit");
    EXPECT_EQ(transfer.Finish().size(), 0u);
    EXPECT_EQ(Names(from_), "SND1.AIF loop.sit");
  }
}

TEST_F(TransferFaults, WhatTheImageWouldFindInTheTargetDecidesAboutTheSound) {
  for (const bool moves : {false, true}) {
    Write(near_, "snd1.aif", Note(2));
    ImageTransfer transfer(near_.path(), {moves, false, true});
    const TransferPlan plan = transfer.Plan(In(from_, "a.sit"));
    EXPECT_TRUE(plan.SoundIsThere);
    EXPECT_THROW(transfer.Bring(plan, Overwrite::kRefuse), StepFailure);
    EXPECT_EQ(Names(near_), "snd1.aif");
    transfer.Bring(plan, Overwrite::kReplace);
    Bring(transfer, "b.sit");
    EXPECT_EQ(Names(near_), "a.sit b.sit snd1.aif");
    EXPECT_EQ(ReadBytes(In(near_, "snd1.aif")), Note(1));
    Write(near_, "Snd1.aif", Note(2));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_THROW(Bring(transfer, "c.sit"), StepFailure);
    EXPECT_EQ(ReadBytes(In(near_, "snd1.aif")), Note(1));
    ::unlink(PathOf(near_, "Snd1.aif"));
    ::unlink(PathOf(near_, "a.sit"));
    ::unlink(PathOf(near_, "b.sit"));
  }
}

TEST_F(TransferFaults, AnImageThatDoesNotComeLeavesTheOldSound) {
  for (const QTemporaryDir* to : {&near_, &far_}) {
    Write(*to, "SND1.AIF", Note(2));
    ImageTransfer transfer(to->path(), {true, false, true});
    const TransferPlan plan = transfer.Plan(In(from_, "a.sit"));
    Write(*to, "a.sit", {1});  // After the question.
    EXPECT_THROW(transfer.Bring(plan, Overwrite::kReplace), StepFailure);
    EXPECT_EQ(Names(*to), "SND1.AIF a.sit");
    EXPECT_EQ(ReadBytes(In(*to, "SND1.AIF")), Note(2));
  }
}

TEST_F(TransferFaults, TheTargetIsToBlameForWhatStandsThere) {
  ImageTransfer transfer(near_.path(), {false, false, true});
  Bring(transfer, "a.sit");
  // As a file system without capital letters would find it.
  EXPECT_EQ(::link(PathOf(near_, "a.sit"), PathOf(near_, "A.SIT")), 0);
  EXPECT_TRUE(transfer.Plan(In(from_, "A.SIT")).ImageIsOurs);
  const auto bring = [&] { Bring(transfer, "b.sit"); };
  QDir(near_.path()).mkdir(u"b.sit"_s);
  EXPECT_THAT(bring, ::testing::ThrowsMessage<StepFailure>(
                         "a folder of that name is in the target folder"));
  ::chmod(near_.path().toUtf8(), 0555);
  ::chmod(from_.path().toUtf8(), 0755);
  const OrdinaryUser user;
  EXPECT_THAT(bring, ::testing::ThrowsMessage<StepFailure>(
                         HasSubstr("the target folder cannot be written")));
}

}  // namespace
}  // namespace tessa::testing
