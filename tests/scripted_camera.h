#pragma once

#include <QStringList>
#include <functional>
#include <map>
#include <vector>

#include "camera/camera_download.h"
#include "camera/camera_link.h"
#include "formats/sit.h"
#include "test_files.h"

namespace tessa::testing {

/// Any camera image: 320 x 240 pixels.
inline Bytes CameraImage() {
  SitFields fields;
  for (std::size_t i = 0; i < std::size_t{320} * 240; ++i) {
    fields.Counts.push_back(static_cast<std::int16_t>(i % 400));
  }
  return EncodeSit(fields);
}

/// A camera that holds what a test says and writes down what it was asked.
class ScriptedCamera : public CameraLink {
 public:
  struct Folder {
    QString Name;
    QStringList Images;
  };
  std::vector<Folder> Folders;
  bool Opens = true;
  bool Reads = true;
  bool Deletes = true;
  QStringList Broken;            // Images whose transfer fails.
  QStringList Calls;             // In turn.
  std::uint64_t SizeOfEach = 0;  // Told, whatever the true one is.

  bool OpenLink() override { return Note("OpenLink", Opens); }
  void CloseLink() override { Note("CloseLink", true); }
  bool ReadCameraInfo() override { return Note("ReadCameraInfo", Reads); }
  int FolderCount() override { return static_cast<int>(Folders.size()); }
  int ImageCount(int folderIndex) override {
    return static_cast<int>(At(folderIndex).Images.size());
  }
  QString FolderName(int folderIndex) override { return At(folderIndex).Name; }
  QString ImageFileName(int folderIndex, int imageIndex) override {
    return At(folderIndex).Images.value(imageIndex);
  }
  bool DownloadImage(int folderIndex, int imageIndex, const QString& targetPath) override {
    const QString name = ImageFileName(folderIndex, imageIndex);
    EXPECT_FALSE(QFileInfo::exists(targetPath)) << "the target must not exist";
    Calls += name;
    if (Broken.contains(name)) {
      return false;
    }
    QFile file(targetPath);
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char*>(image_.data()),
                      static_cast<qint64>(image_.size())) > 0;
  }
  bool DeleteAllImages() override { return Note("DeleteAllImages", Deletes); }
  std::uint64_t ImageSize(int /*folderIndex*/, int /*imageIndex*/) override { return SizeOfEach; }
  std::string Fault() const override { return "the cable is loose"; }

 private:
  const Folder& At(int index) const { return Folders.at(static_cast<std::size_t>(index)); }
  bool Note(const char* call, bool result) {
    Calls += QString::fromLatin1(call);
    return result;
  }

  Bytes image_ = CameraImage();
};

/// Gives the replies in turn and keeps for which files; none too many and none left over.
class ScriptedReplies : public OverwriteQuestion {
 public:
  std::vector<int> Replies;
  QStringList Asked;

  int AskReplace(const QString& name) override {
    Asked += name;
    EXPECT_FALSE(Replies.empty()) << "not to be asked: " << name.toStdString();
    if (Replies.empty()) {
      return 5;
    }
    const int reply = Replies.front();
    Replies.erase(Replies.begin());
    return reply;
  }
};

/// Does something when events may run.
class ScriptedEvents : public Progress {
 public:
  std::function<void()> OnEvents = [] {};
  std::function<void()> OnAdvance = [] {};

  void LetEventsRun() override { OnEvents(); }
  void Advance() override { OnAdvance(); }
};

/// Answers every message in the same way.
class OneAnswer : public NoDialogs {
 public:
  Answer Given = Answer::kYes;

  Answer ShowMessage(const Message& /*message*/) override { return Given; }
};

}  // namespace tessa::testing
