#include "camera/image_download.h"

#include <algorithm>

#include "core/plain_line.h"

namespace tessa {
namespace {

constexpr int kEndingSize = 4;

QString Upper(const char* ending) {
  return QString::fromLatin1(ending).toUpper();
}

}  // namespace

ImageDownload::ImageDownload(const DownloadSurroundings& surroundings,
                             const DownloadOptions& options, DownloadState& state)
    : Replies([this](const QString& name) { return Ask(name); }),
      with_(surroundings),
      options_(options),
      state_(state) {}

int ImageDownload::Ask(const QString& name) {
  const int reply = with_.Overwriting.AskReplace(PlainLine(name));
  with_.Watcher.Repaint();
  return reply;
}

bool ImageDownload::Bring(int folderIndex, int imageIndex, const ImageFolder& target) {
  Image image;
  image.FolderIndex = folderIndex;
  image.Index = imageIndex;
  image.Name = with_.Cam1.ImageFileName(image.FolderIndex, image.Index);
  ShowName(image.Name, target);
  try {
    if (target.Path.isEmpty()) {
      throw StepFailure("there is no folder for it");
    }
    image.Targets = TargetsOf(target.Path, image.Name);
  } catch (const StepFailure& reason) {
    state_.Fault = QString::fromStdString(reason.what());
    Replies.Fail();
    return false;
  }
  image.SitExists = IsTaken(image.Targets.Sit);
  if (image.SitExists) {
    Replies.AskForSit(image.Name);
  }
  if (Replies.IsCancelled()) {
    return false;
  }
  if (!Replies.IsSitToCome(image.SitExists)) {
    return true;  // Nor is a picture made of the file that is there.
  }
  const QString& place = image.Targets.Sit;
  if (options_.Sit != 0 && image.SitExists && with_.Cam1.KeepsImageAt(place) &&
      !with_.Cam1.IsPlaceOf(folderIndex, imageIndex, place)) {
    Faults.Try("place", [&] {
      throw StepFailure(PlainUtf8(place) + ": the camera keeps another image there");
    });
    return true;
  }
  QString sit;
  if (!Download(image, sit)) {
    Replies.Fail();
    return false;
  }
  bool isConverted = false;
  if (WantsPictures(options_)) {
    AskForPictures(image);
    if (writeBmp_ || writeJpeg_) {
      isConverted = Convert(sit, image);
    }
  }
  LetStageGo(sit, image, isConverted);
  return !Replies.EndsAfterImage();
}

void ImageDownload::ShowName(const QString& name, const ImageFolder& target) {
  QString ending;
  if ((options_.Sit == 1) + (options_.Bmp == 1) + (options_.Jpeg == 1) == 1) {
    ending = Upper(options_.Sit == 1 ? ".sit" : options_.Bmp == 1 ? ".bmp" : ".jpg");
  }
  state_.Status = with_.Words.LangString(320, "Downloading") + QLatin1String("  ") +
                  target.ShownPrefix +
                  PlainLine(name.chopped(std::min<qsizetype>(kEndingSize, name.size()))) + ending +
                  QLatin1String("....");
  with_.Watcher.Repaint();
}

bool ImageDownload::Download(const Image& image, QString& sit) {
  CameraLink& camera = with_.Cam1;
  const auto download = [&](const QString& path) {
    if (!camera.DownloadImage(image.FolderIndex, image.Index, path)) {
      const std::string reason = camera.Fault();
      throw StepFailure(reason.empty() ? "the camera did not deliver it" : reason);
    }
  };
  try {
    sit = image.Targets.Sit;
    if (options_.Sit != 0 && !image.SitExists) {
      download(sit);
      return true;
    }
    if (options_.Sit != 0 && camera.IsPlaceOf(image.FolderIndex, image.Index, sit)) {
      return true;
    }
    if (options_.Sit != 0) {
      CheckReplaceable(sit);
    }
    if (stage_.isEmpty()) {
      stage_ = with_.Folder.TemporaryFile(QStringLiteral("download.sit"));
    }
    RemoveFile(stage_);
    download(stage_);
    if (options_.Sit == 0) {
      sit = stage_;
    } else {
      ReplaceFile(stage_, sit);
      RemoveFile(stage_);
    }
    return true;
  } catch (const StepFailure& reason) {
    state_.Fault =
        PlainLine(image.Name) + QLatin1String(": ") + QString::fromStdString(reason.what());
    return false;
  }
}

void ImageDownload::AskForPictures(Image& image) {
  const QString stem = image.Name.chopped(kEndingSize - 1);
  const auto ask = [&](const QString& path, const char* ending, Overwrite& overwrite) {
    if (!IsTaken(path)) {
      return true;
    }
    overwrite = Overwrite::kReplace;
    return Replies.AskForPicture(stem + Upper(ending));
  };
  if (options_.Bmp == 1) {
    writeBmp_ = ask(image.Targets.Bmp, "bmp", image.Bmp);
  }
  if (options_.Jpeg == 1) {
    writeJpeg_ = ask(image.Targets.Jpeg, "jpg", image.Jpeg);
  }
}

bool ImageDownload::Convert(const QString& sit, const Image& image) {
  DownloadConversion& conversion = with_.Conversion;
  const auto named = [&](const auto& step) {
    try {
      step();
    } catch (const StepFailure& reason) {
      throw StepFailure(PlainUtf8(image.Name) + ": " + reason.what());
    }
  };
  const bool hasPicture =
      Faults.Try("picture", [&] { named([&] { MakePicture(sit, conversion); }); });
  // Of a file that is no image there is a flat picture, which is told.
  bool isDone =
      hasPicture && Faults.Try("picture", [&] { named([&] { CheckPicture(conversion); }); });
  // Both go by the formats alone: a BMP that was declined is written with an accepted JPEG.
  if (hasPicture && options_.Bmp == 1) {
    isDone =
        Faults.Try("BMP", [&] { SaveBmp(image.Targets.Bmp, conversion, image.Bmp); }) && isDone;
  }
  if (hasPicture && options_.Jpeg == 1) {
    isDone =
        Faults.Try("JPEG", [&] { SaveJpeg(image.Targets.Jpeg, conversion, image.Jpeg); }) && isDone;
  }
  with_.Watcher.LetEventsRun();
  return isDone;
}

void ImageDownload::LetStageGo(const QString& sit, const Image& image, bool isConverted) {
  if (options_.Sit != 0) {
    return;
  }
  Faults.Try("stage", [&] { RemoveFile(sit); });
  // A file that was there goes as well, since the user let it be replaced; not when nothing came in
  // its place, and never the camera's own.
  if (image.SitExists && isConverted && !with_.Cam1.KeepsImageAt(image.Targets.Sit)) {
    Faults.Try("stage", [&] { RemoveFile(image.Targets.Sit); });
  }
}

}  // namespace tessa
