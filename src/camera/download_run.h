#pragma once

#include <chrono>
#include <functional>

#include "camera/image_download.h"

namespace tessa {

/// One run over the images of a camera.
class DownloadRun {
 public:
  DownloadRun(const DownloadSurroundings& surroundings, const DownloadOptions& options,
              DownloadState& state, std::chrono::milliseconds barPause);

  void OneFolder(int index);
  void AllFolders();

 private:
  bool Begin(int firstFolder, int folderCount);
  bool HasSpace(int firstFolder, int folderCount);
  ImageFolder MakeTarget(int folderIndex);
  /// `showPercent` is called after each image.
  void RunFolder(int folderIndex, const ImageFolder& target,
                 const std::function<void()>& showPercent);
  bool StopsForAbort();
  void ShowPercent(double done, double all);
  void Pause();
  void HideProgress();
  void Finish();

  const DownloadSurroundings& with_;
  const DownloadOptions options_;
  DownloadState& state_;
  std::chrono::milliseconds barPause_;
  ImageDownload image_;
};

}  // namespace tessa
