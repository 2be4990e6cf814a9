#pragma once

#include <chrono>
#include <functional>

#include "camera/camera_download.h"
#include "camera/download_files.h"
#include "camera/download_replies.h"
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
  bool Download(const Image& image, QString& sit);
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

  DownloadReplies replies_;
  bool writeBmp_ = false;
  bool writeJpeg_ = false;
};

}  // namespace tessa
