#include "camera/camera_download.h"

#include <utility>

#include "camera/download_run.h"
#include "core/plain_line.h"
#include "core/units.h"

namespace tessa {
namespace {

constexpr const char* kGoingOn = "...";
const QString kIndent = QStringLiteral("     ");

/// Keeps further calls away for as long as one runs.
class BusyCall {
 public:
  explicit BusyCall(DownloadState& state) : state_(state) { state_.Busy = true; }
  BusyCall(const BusyCall&) = delete;
  BusyCall& operator=(const BusyCall&) = delete;
  ~BusyCall() { state_.Busy = false; }

 private:
  DownloadState& state_;
};

}  // namespace

CameraDownload::CameraDownload(const DownloadSurroundings& surroundings)
    : surroundings_(surroundings) {}

void CameraDownload::ShowStatus(int textId, const char* defaultText, const char* ending) {
  State.Status = surroundings_.Words.LangString(textId, defaultText) + QString::fromLatin1(ending);
}

void CameraDownload::ShowError(int textId, const char* defaultText) {
  State.StatusColour = DownloadState::kDarkRed;
  ShowStatus(textId, defaultText);
  State.Fault = PlainLine(QString::fromStdString(surroundings_.Cam1.Fault()));
}

void CameraDownload::Begin() {
  if (State.Busy) {
    return;
  }
  State = {};
  ShowStatus(314, "Initializing Camera", kGoingOn);
}

void CameraDownload::dwnInitCam() {
  if (State.Busy) {
    return;
  }
  bool isLinked = false;
  {
    const BusyCall busy(State);
    State.BusyPointer = true;
    surroundings_.Watcher.Repaint();
    isLinked = surroundings_.Cam1.OpenLink();
    if (!isLinked) {
      ShowError(315, "Error Initializing Camera");
    } else {
      ShowStatus(318, "Retrieving Camera Information", kGoingOn);
      surroundings_.Watcher.Repaint();
      State.CamImageTotal = 0;
      isLinked = surroundings_.Cam1.ReadCameraInfo();
      if (isLinked) {
        ListFolders();
        WantsAnyFormat(Options) ? ShowStatus(317, "Ready") : ShowStatus(316, "Select Image Format");
      } else {
        ShowError(319, "Failed to Read Camera Info");
      }
      State.ImageCount = QString::number(State.CamImageTotal);
    }
  }
  State.DeleteAllEnabled = isLinked;
  // Also without a format and without an image; selecting the first folder sets it right once there
  // are images.
  State.DownloadAllEnabled = isLinked;
  State.DownloadEnabled = false;
  if (!State.Folders.empty()) {
    SelectFolder(0);
  }
  State.BusyPointer = false;
  surroundings_.Watcher.Repaint();
}

void CameraDownload::ListFolders() {
  CameraLink& camera = surroundings_.Cam1;
  const int count = camera.FolderCount();
  State.Folders.clear();
  State.CamFolderNames.clear();
  State.SelectedFolder = -1;
  TellFolderFaults();
  for (int i = 0; i < count; ++i) {
    const QString name = camera.FolderName(i);
    const QString shown = name == kCameraRoot ? kCameraRootShown : name;
    const int images = camera.ImageCount(i);
    State.CamFolderNames += shown;
    State.CamImageTotal += images;
    State.Folders.push_back({(i == 0 ? QString() : kIndent) + PlainLine(shown) +
                                 QLatin1String("  - ") + QString::number(images) +
                                 QLatin1Char(' ') + surroundings_.Words.LangString(177, "Images"),
                             images});
  }
}

void CameraDownload::TellFolderFaults() {
  QStringList faults;
  for (int i = 0; i < surroundings_.Cam1.FolderCount(); ++i) {
    const std::string fault = surroundings_.Cam1.FolderFault(i);
    if (!fault.empty()) {
      faults += PlainLine(QString::fromStdString(fault));
    }
  }
  State.Fault = faults.join(QLatin1String("; "));
}

void CameraDownload::SelectFolder(int index) {
  const auto count = static_cast<int>(State.Folders.size());
  State.SelectedFolder = index >= 0 && index < count ? index : -1;
  const int images = State.SelectedFolder < 0
                         ? 0
                         : State.Folders[static_cast<std::size_t>(State.SelectedFolder)].Images;
  State.SelectedCount = QString::number(images > 0 ? images : 0);
  dwnCheckDownload();
}

void CameraDownload::dwnCheckDownload() {
  if (!(ParseNumber(State.ImageCount) > 0.0)) {
    return;
  }
  const bool hasFormat = WantsAnyFormat(Options);
  State.DownloadAllEnabled = hasFormat;
  State.DownloadEnabled = hasFormat && ParseNumber(State.SelectedCount) > 0.0;
  hasFormat ? ShowStatus(317, "Ready") : ShowStatus(316, "Select Image Format");
}

void CameraDownload::cmdDownload() {
  if (State.Busy || State.SelectedFolder < 0 || !WantsAnyFormat(Options) ||
      State.Folders[static_cast<std::size_t>(State.SelectedFolder)].Images == 0) {
    return;
  }
  {
    const BusyCall busy(State);
    DownloadRun(surroundings_, Options, State, BarPause).OneFolder(State.SelectedFolder);
  }
  surroundings_.Watcher.Repaint();
}

void CameraDownload::cmdDownloadAll() {
  // Without a format the files of the camera would be staged for nothing.
  if (State.Busy || !WantsAnyFormat(Options)) {
    return;
  }
  {
    const BusyCall busy(State);
    DownloadRun(surroundings_, Options, State, BarPause).AllFolders();
  }
  surroundings_.Watcher.Repaint();
}

void CameraDownload::cmdAbort() {
  if (!State.AbortVisible) {
    return;
  }
  ShowStatus(306, "Abort Pending", "....");
  State.AbortRequested = true;
  surroundings_.Watcher.Repaint();
}

void CameraDownload::cmdDeleteAll() {
  if (State.Busy) {
    return;
  }
  {
    const BusyCall busy(State);
    const Message question = {
        surroundings_.Words.LangString(297, "Corvane T-40 Downloader"),
        QStringLiteral("Click on OK to remove all images stored on the Q4400 Camera"),
        MessageButtons::kOkCancel, MessageIcon::kWarning};
    if (surroundings_.Questions.ShowMessage(question) != Answer::kYes) {
      return;
    }
    State.Fault.clear();
    State.StatusColour = DownloadState::kBlack;
    State.BusyPointer = true;
    State.Status = QStringLiteral("Deleting Images from camera...");
    surroundings_.Watcher.Repaint();
    const bool isDone = surroundings_.Cam1.DeleteAllImages();
    State.BusyPointer = false;
    if (isDone) {
      State.Status = QStringLiteral("Deleting Images Complete");
      State.Folders.clear();
      State.SelectedFolder = -1;
      State.CamFolderNames = State.CamFolderNames.mid(0, 1);
      State.DeleteAllEnabled = false;
      State.DownloadEnabled = false;
      State.ImageCount = QStringLiteral("0");
      TellFolderFaults();
    } else {
      State.StatusColour = DownloadState::kDarkRed;
      State.Status = QStringLiteral("Error Deleting Images");
      State.Fault = PlainLine(QString::fromStdString(surroundings_.Cam1.Fault()));
    }
  }
  surroundings_.Watcher.Repaint();
}

}  // namespace tessa
