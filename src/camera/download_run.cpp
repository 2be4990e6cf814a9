#include "camera/download_run.h"

#include <algorithm>
#include <thread>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/units.h"

namespace tessa {
namespace {

constexpr int kImagesBetweenEvents = 64;
constexpr int kEndingSize = 4;
constexpr std::chrono::milliseconds kBetweenEvents{5};

QString Upper(const char* ending) {
  return QString::fromLatin1(ending).toUpper();
}

}  // namespace

DownloadRun::DownloadRun(const DownloadSurroundings& surroundings, const DownloadOptions& options,
                         DownloadState& state, std::chrono::milliseconds barPause)
    : with_(surroundings),
      options_(options),
      state_(state),
      barPause_(barPause),
      replies_([this](const QString& name) { return Ask(name); }) {
  with_.Conversion.Options = options_;
}

template <typename Step>
bool DownloadRun::Try(const char* name, Step&& step) {
  const bool isDone = steps_.Run(name, std::forward<Step>(step));
  failed_ += isDone ? 0 : 1;
  return isDone;
}

void DownloadRun::OneFolder(int index) {
  if (!Begin(index, 1)) {
    return;
  }
  state_.CamImageTotal = state_.Folders.at(static_cast<std::size_t>(index)).Images;
  int done = 0;
  RunFolder(index, MakeTarget(index), [&] {
    ShowPercent(++done, state_.CamImageTotal);
    if (done == state_.CamImageTotal) {
      Pause();
    }
  });
  Finish();
}

void DownloadRun::AllFolders() {
  const int count = static_cast<int>(state_.Folders.size());
  if (!Begin(0, count)) {
    return;
  }
  const double all = ParseNumber(state_.ImageCount);
  int done = 0;
  for (int i = 0; i < count && !replies_.IsCancelled(); ++i) {
    const Target target = MakeTarget(i);
    // A failure of the camera does not end this loop. No image is transferred after it, unless the
    // user is asked about a file and the reply takes the failure's place.
    RunFolder(i, target, [&] { ShowPercent(++done, all); });
  }
  if (done > 0) {
    Pause();
  }
  Finish();
}

bool DownloadRun::Begin(int firstFolder, int folderCount) {
  state_.Fault.clear();
  state_.StatusColour = DownloadState::kBlack;
  if (!HasSpace(firstFolder, folderCount)) {
    with_.Watcher.Repaint();
    return false;
  }
  state_.Percent = 0;
  state_.PercentVisible = true;
  state_.AbortVisible = true;
  with_.Watcher.Repaint();
  with_.Watcher.LetEventsRun();
  return true;
}

bool DownloadRun::HasSpace(int firstFolder, int folderCount) {
  const auto free = FreeSpace(options_.TargetPath);
  std::uint64_t needed = 0;
  for (int folder = firstFolder; folder < firstFolder + folderCount; ++folder) {
    const QString& name = state_.CamFolderNames.at(folder);
    const bool isRoot = name.toUpper() == kCameraRootShown;
    const QString path = isRoot
                             ? options_.TargetPath
                             : JoinPath(options_.TargetPath, IsPlainName(name) ? name : QString());
    const int images = state_.Folders.at(static_cast<std::size_t>(folder)).Images;
    for (int image = 0; image < images; ++image) {
      if (image % kImagesBetweenEvents == 0) {
        with_.Watcher.LetEventsRun();
      }
      try {
        needed += SpaceNeeded(TargetsOf(path, with_.Cam1.ImageFileName(folder, image)),
                              with_.Cam1.ImageSize(folder, image), options_);
      } catch (const StepFailure&) {
        continue;  // Told when it is its turn.
      }
    }
  }
  if (!free || needed <= *free) {
    return true;
  }
  state_.StatusColour = DownloadState::kDarkRed;
  state_.Status =
      with_.Words.LangString(540, "Not enough space in the target folder: %1 MB needed, %2 MB free")
          .arg(Megabytes(needed), Megabytes(*free));
  return false;
}

DownloadRun::Target DownloadRun::MakeTarget(int folderIndex) {
  const QString& name = state_.CamFolderNames.at(folderIndex);
  if (name.toUpper() == kCameraRootShown) {
    return {options_.TargetPath, {}};
  }
  if (!IsPlainName(name)) {
    Try("folder", [&] {
      throw StepFailure("the camera names a folder \"" + PlainUtf8(name) +
                        "\", which is no name of a folder");
    });
    return {};
  }
  const QString folder = JoinPath(options_.TargetPath, name);
  if (!IsTaken(folder)) {
    Try("folder", [&] { MakeFolder(folder); });
  }
  return {folder, PlainLine(name) + QLatin1Char('/')};
}

void DownloadRun::RunFolder(int folderIndex, const Target& target,
                            const std::function<void()>& showPercent) {
  const int images = state_.Folders.at(static_cast<std::size_t>(folderIndex)).Images;
  for (int i = 0; i < images; ++i) {
    Image image;
    image.FolderIndex = folderIndex;
    image.Index = i;
    if (StopsForAbort() || !RunImage(image, target)) {
      return;
    }
    with_.Watcher.LetEventsRun();
    replies_.Forget();
    if (state_.AbortRequested) {
      replies_.Cancel();
      return;
    }
    showPercent();
  }
}

bool DownloadRun::StopsForAbort() {
  with_.Watcher.LetEventsRun();
  if (state_.AbortRequested) {
    replies_.Cancel();
  }
  return state_.AbortRequested;
}

bool DownloadRun::RunImage(Image& image, const Target& target) {
  image.Name = with_.Cam1.ImageFileName(image.FolderIndex, image.Index);
  ShowName(image.Name, target);
  try {
    if (target.Folder.isEmpty()) {
      throw StepFailure("there is no folder for it");
    }
    image.Targets = TargetsOf(target.Folder, image.Name);
  } catch (const StepFailure& reason) {
    state_.Fault = QString::fromStdString(reason.what());
    replies_.Fail();
    return false;
  }
  image.SitExists = IsTaken(image.Targets.Sit);
  if (image.SitExists) {
    replies_.AskForSit(image.Name);
  }
  if (replies_.IsCancelled()) {
    return false;
  }
  if (!replies_.IsSitToCome(image.SitExists)) {
    return true;  // Nor is a picture made of the file that is there.
  }
  QString sit;
  if (!Download(image, sit)) {
    replies_.Fail();
    return false;
  }
  bool isConverted = true;
  if (WantsPictures(options_)) {
    AskForPictures(image);
    if (writeBmp_ || writeJpeg_) {
      isConverted = Convert(sit, image);
    }
  }
  LetStageGo(sit, image, isConverted);
  return !replies_.EndsAfterImage();
}

void DownloadRun::ShowName(const QString& name, const Target& target) {
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

int DownloadRun::Ask(const QString& name) {
  const int reply = with_.Overwriting.AskReplace(PlainLine(name));
  with_.Watcher.Repaint();
  return reply;
}

bool DownloadRun::Download(const Image& image, QString& sit) {
  CameraLink& camera = with_.Cam1;
  const auto download = [&](const QString& path) {
    if (!camera.DownloadImage(image.FolderIndex, image.Index, path)) {
      const std::string reason = camera.Fault();
      throw StepFailure(reason.empty() ? "the camera did not deliver it" : reason);
    }
  };
  try {
    if (options_.Sit == 0) {
      if (stage_.isEmpty()) {
        stage_ = with_.Folder.TemporaryFile(QStringLiteral("download.sit"));
      }
      sit = stage_;
      RemoveFile(sit);
      download(sit);
    } else {
      sit = image.Targets.Sit;
      if (!camera.IsPlaceOf(image.FolderIndex, image.Index, sit)) {
        BringSit(sit, download);
      }
    }
    return true;
  } catch (const StepFailure& reason) {
    state_.Fault =
        PlainLine(image.Name) + QLatin1String(": ") + QString::fromStdString(reason.what());
    return false;
  }
}

void DownloadRun::AskForPictures(const Image& image) {
  const QString stem = image.Name.chopped(kEndingSize - 1);
  if (options_.Bmp == 1) {
    writeBmp_ = !IsTaken(image.Targets.Bmp) || replies_.AskForPicture(stem + Upper("bmp"));
  }
  if (options_.Jpeg == 1) {
    writeJpeg_ = !IsTaken(image.Targets.Jpeg) || replies_.AskForPicture(stem + Upper("jpg"));
  }
}

bool DownloadRun::Convert(const QString& sit, const Image& image) {
  DownloadConversion& conversion = with_.Conversion;
  const auto named = [&](const auto& step) {
    try {
      step();
    } catch (const StepFailure& reason) {
      throw StepFailure(PlainUtf8(image.Name) + ": " + reason.what());
    }
  };
  const bool hasPicture = Try("picture", [&] { named([&] { MakePicture(sit, conversion); }); });
  // Of a file that is no image there is a flat picture, which is told.
  bool isDone = hasPicture && Try("picture", [&] { named([&] { CheckPicture(conversion); }); });
  // Both go by the formats alone: a BMP that was declined is written with an accepted JPEG.
  if (hasPicture && options_.Bmp == 1) {
    isDone = Try("BMP", [&] { SaveBmp(image.Targets.Bmp, conversion); }) && isDone;
  }
  if (hasPicture && options_.Jpeg == 1) {
    isDone = Try("JPEG", [&] { SaveJpeg(image.Targets.Jpeg, conversion); }) && isDone;
  }
  with_.Watcher.LetEventsRun();
  conversion.PicBuf2.FileName.clear();
  conversion.PicBuf2.JpegQuality = 0;
  conversion.PicBuf2.FileType = Picbuf::kBmp;
  return isDone;
}

void DownloadRun::LetStageGo(const QString& sit, const Image& image, bool isConverted) {
  if (options_.Sit != 0) {
    return;
  }
  Try("stage", [&] { RemoveFile(sit); });
  // A file that was there goes as well, since the user let it be replaced; not when nothing came in
  // its place, and never the camera's own.
  if (image.SitExists && isConverted &&
      !with_.Cam1.IsPlaceOf(image.FolderIndex, image.Index, image.Targets.Sit)) {
    Try("stage", [&] { RemoveFile(image.Targets.Sit); });
  }
}

void DownloadRun::ShowPercent(double done, double all) {
  Try("percent", [&] { state_.Percent = RoundToInteger(Divide(done, all) * 100.0); });
  with_.Watcher.Advance();
}

void DownloadRun::Pause() {
  const auto end = std::chrono::steady_clock::now() + barPause_;
  while (std::chrono::steady_clock::now() < end) {
    with_.Watcher.LetEventsRun();
    std::this_thread::sleep_for(kBetweenEvents);
  }
}

void DownloadRun::Finish() {
  state_.AbortRequested = false;
  state_.AbortVisible = false;
  state_.PercentVisible = false;
  state_.Percent = 0;
  with_.Conversion.dwnCleanUp();
  with_.Watcher.LetEventsRun();
  if (replies_.HasFailed()) {
    state_.Status = with_.Words.LangString(321, "Error - Downloading Aborted");
  } else if (replies_.IsCancelled()) {
    state_.Status = with_.Words.LangString(322, "Download Aborted");
  } else {
    state_.Status = with_.Words.LangString(323, "Download Complete");
  }
  state_.StatusColour = replies_.HasFailed() || replies_.IsCancelled() ? DownloadState::kDarkRed
                                                                       : DownloadState::kBlack;
  if (state_.Fault.isEmpty() && failed_ > 0) {
    state_.Fault = with_.Words.LangString(541, "Not done: %1. The first reason: %2")
                       .arg(QString::number(failed_),
                            PlainLine(QString::fromStdString(steps_.Failures().front().Reason)));
  }
  with_.Watcher.Repaint();
}

}  // namespace tessa
