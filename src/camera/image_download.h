#pragma once

#include <QString>
#include <string_view>
#include <utility>

#include "camera/camera_download.h"
#include "camera/download_files.h"
#include "camera/download_replies.h"
#include "core/plain_line.h"
#include "core/steps.h"

namespace tessa {

/// What was not done in a run and does not end it.
class DownloadFaults {
 public:
  /// True when the step came through.
  template <typename Step>
  bool Try(std::string_view name, Step&& step) {
    const bool isDone = steps_.Run(name, std::forward<Step>(step));
    count_ += isDone ? 0 : 1;
    return isDone;
  }
  int Count() const { return count_; }
  /// The first reason. Plain text.
  QString First() const {
    return steps_.Failures().empty()
               ? QString()
               : PlainLine(QString::fromStdString(steps_.Failures().front().Reason));
  }

 private:
  StepLog steps_;
  int count_ = 0;
};

/// Where the images of one of the camera's folders go.
struct ImageFolder {
  QString Path;         // Empty: there is no such place.
  QString ShownPrefix;  // In front of names in the status.
};

/// Brings one image of a camera after the other and makes its pictures, asking about files that are
/// there already. The replies concern what follows in the same run.
class ImageDownload {
 public:
  ImageDownload(const DownloadSurroundings& surroundings, const DownloadOptions& options,
                DownloadState& state);
  ImageDownload(const ImageDownload&) = delete;
  ImageDownload& operator=(const ImageDownload&) = delete;

  DownloadReplies Replies;
  DownloadFaults Faults;

  /// False when the folder is to end.
  bool Bring(int folderIndex, int imageIndex, const ImageFolder& target);

 private:
  /// The image in hand.
  struct Image {
    int FolderIndex = 0;
    int Index = 0;
    QString Name;
    ImageTargets Targets;
    bool SitExists = false;
    // What may become of pictures: those that were not there are not asked about.
    Overwrite Bmp = Overwrite::kRefuse;
    Overwrite Jpeg = Overwrite::kRefuse;
  };

  void ShowName(const QString& name, const ImageFolder& target);
  int Ask(const QString& name);
  /// Tells where the SIT file is now; false when the camera failed.
  bool Download(const Image& image, QString& sit);
  void AskForPictures(Image& image);
  /// False when not all was made and written.
  bool Convert(const QString& sit, const Image& image);
  void LetStageGo(const QString& sit, const Image& image, bool isConverted);

  const DownloadSurroundings& with_;
  const DownloadOptions& options_;
  DownloadState& state_;
  QString stage_;  // Where SIT files stand for a moment that are not wanted or replace others.
  bool writeBmp_ = false;
  bool writeJpeg_ = false;
};

}  // namespace tessa
