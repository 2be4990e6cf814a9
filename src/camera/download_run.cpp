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
constexpr std::chrono::milliseconds kBetweenEvents{5};

}  // namespace

DownloadRun::DownloadRun(const DownloadSurroundings& surroundings, const DownloadOptions& options,
                         DownloadState& state, std::chrono::milliseconds barPause)
    : with_(surroundings),
      options_(options),
      state_(state),
      barPause_(barPause),
      image_(with_, options_, state_) {
  with_.Conversion.Options = options_;
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
  for (int i = 0; i < count && !image_.Replies.IsCancelled(); ++i) {
    const ImageFolder target = MakeTarget(i);
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
  state_.Percent = 0;
  state_.PercentVisible = true;
  state_.AbortVisible = true;
  with_.Watcher.Repaint();
  with_.Watcher.LetEventsRun();
  if (HasSpace(firstFolder, folderCount)) {
    return true;
  }
  HideProgress();
  with_.Watcher.Repaint();
  return false;
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
          .arg(NeededMegabytes(needed), FreeMegabytes(*free));
  return false;
}

ImageFolder DownloadRun::MakeTarget(int folderIndex) {
  const QString& name = state_.CamFolderNames.at(folderIndex);
  if (name.toUpper() == kCameraRootShown) {
    return {options_.TargetPath, {}};
  }
  if (!IsPlainName(name)) {
    image_.Faults.Try("folder", [&] {
      throw StepFailure("the camera names a folder \"" + PlainUtf8(name) +
                        "\", which is no name of a folder");
    });
    return {};
  }
  const QString folder = JoinPath(options_.TargetPath, name);
  if (!IsTaken(folder)) {
    image_.Faults.Try("folder", [&] { MakeFolder(folder); });
  }
  return {folder, PlainLine(name) + QLatin1Char('/')};
}

void DownloadRun::RunFolder(int folderIndex, const ImageFolder& target,
                            const std::function<void()>& showPercent) {
  const std::string unlisted = with_.Cam1.FolderFault(folderIndex);
  if (!unlisted.empty()) {
    image_.Faults.Try("folder", [&] { throw StepFailure(unlisted); });
  }
  const int images = state_.Folders.at(static_cast<std::size_t>(folderIndex)).Images;
  for (int i = 0; i < images; ++i) {
    if (StopsForAbort() || !image_.Bring(folderIndex, i, target)) {
      return;
    }
    with_.Watcher.LetEventsRun();
    image_.Replies.Forget();
    if (state_.AbortRequested) {
      image_.Replies.Cancel();
      return;
    }
    showPercent();
  }
}

bool DownloadRun::StopsForAbort() {
  with_.Watcher.LetEventsRun();
  if (state_.AbortRequested) {
    image_.Replies.Cancel();
  }
  return state_.AbortRequested;
}

void DownloadRun::ShowPercent(double done, double all) {
  state_.Percent = RoundToInteger(Divide(done, all) * 100.0);
  with_.Watcher.Advance();
}

void DownloadRun::Pause() {
  const auto end = std::chrono::steady_clock::now() + barPause_;
  while (std::chrono::steady_clock::now() < end) {
    with_.Watcher.LetEventsRun();
    std::this_thread::sleep_for(kBetweenEvents);
  }
}

void DownloadRun::HideProgress() {
  state_.AbortRequested = false;
  state_.AbortVisible = false;
  state_.PercentVisible = false;
  state_.Percent = 0;
}

void DownloadRun::Finish() {
  HideProgress();
  with_.Conversion.dwnCleanUp();
  with_.Watcher.LetEventsRun();
  if (image_.Replies.HasFailed()) {
    state_.Status = with_.Words.LangString(321, "Error - Downloading Aborted");
  } else if (image_.Replies.IsCancelled()) {
    state_.Status = with_.Words.LangString(322, "Download Aborted");
  } else {
    state_.Status = with_.Words.LangString(323, "Download Complete");
  }
  state_.StatusColour = image_.Replies.HasFailed() || image_.Replies.IsCancelled()
                            ? DownloadState::kDarkRed
                            : DownloadState::kBlack;
  if (state_.Fault.isEmpty() && image_.Faults.Count() > 0) {
    state_.Fault = with_.Words.LangString(541, "Not done: %1. The first reason: %2")
                       .arg(QString::number(image_.Faults.Count()), image_.Faults.First());
  }
  with_.Watcher.Repaint();
}

}  // namespace tessa
