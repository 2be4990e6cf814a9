#pragma once

#include <chrono>
#include <functional>

#include "camera/camera_download.h"
#include "camera/download_files.h"
#include "core/steps.h"

namespace tessa {

/// One run over the images of a camera, with the user's replies on files that are there already.
/// The replies concern what follows in the same run only.
class DownloadRun {
 public:
  DownloadRun(const DownloadSurroundings& surroundings, const DownloadOptions& options,
              DownloadState& state, std::chrono::milliseconds barPause);

  void OneFolder(int index);
  void AllFolders();

 private:
  // Replies, as the dialog gives them.
  static constexpr int kClosed = -1;
  static constexpr int kNone = 0;
  static constexpr int kYes = 1;
  static constexpr int kYesToAll = 2;
  static constexpr int kNo = 3;
  static constexpr int kNoToAll = 4;
  static constexpr int kCancel = 5;
  static constexpr int kFailure = 6;  // The camera's, in place of a reply.

  /// The image in hand.
  struct Image {
    int FolderIndex = 0;
    int Index = 0;
    QString Name;
    ImageTargets Targets;
    bool SitExists = false;
  };
  struct Target {
    QString Folder;
    QString ShownPrefix;  // In front of names in the status.
  };

  bool Begin(int firstFolder, int folderCount);
  bool HasSpace(int firstFolder, int folderCount);
  void Finish();
  Target MakeTarget(int folderIndex);
  /// Runs over a folder's images; `showPercent` is called after each.
  void RunFolder(int folderIndex, const Target& target, const std::function<void()>& showPercent);
  /// False when the folder is to end.
  bool RunImage(Image& image, const Target& target);
  void ShowName(const QString& name, const Target& target);
  void AskForSit(Image& image);
  bool IsSitToCome(const Image& image) const;
  bool Download(const Image& image, QString& sit);
  void AskForPicture(const QString& path, const QString& name, bool& write);
  void AskForPictures(const Image& image);
  bool Convert(const QString& sit, const Image& image);
  void LetStageGo(const QString& sit, const Image& image, bool isConverted);
  void ShowPercent(double done, double all);
  void Pause();
  int Ask(const QString& name);
  bool StopsForAbort();
  /// Runs a step whose failure is told at the end; true when it came through.
  template <typename Step>
  bool Try(const char* name, Step&& step);

  const DownloadSurroundings& with_;
  const DownloadOptions options_;
  DownloadState& state_;
  std::chrono::milliseconds barPause_;
  StepLog steps_;
  int failed_ = 0;  // Steps.
  QString stage_;   // Where SIT files that are not wanted stand for a moment.

  int sitReply_ = kNone;
  int outReply_ = kNone;  // For BMP and JPEG alike.
  bool writeBmp_ = false;
  bool writeJpeg_ = false;
};

}  // namespace tessa
