#pragma once

#include <QString>
#include <chrono>

#include "camera/camera_link.h"
#include "camera/conversion.h"
#include "camera/download_options.h"
#include "camera/download_state.h"
#include "core/application_folder.h"
#include "core/dialogs.h"
#include "core/language_strings.h"
#include "core/progress.h"

namespace tessa {

/// Asks what becomes of a file that is there already.
class OverwriteQuestion {
 public:
  OverwriteQuestion() = default;
  OverwriteQuestion(const OverwriteQuestion&) = delete;
  OverwriteQuestion& operator=(const OverwriteQuestion&) = delete;
  virtual ~OverwriteQuestion() = default;

  /// 1 Yes, 2 Yes to all, 3 No, 4 No to all, 5 Cancel, -1 when the dialog was closed without an
  /// answer. `name` is the file's name without its folder; plain text.
  virtual int AskReplace(const QString& name) = 0;
};

/// What a download works with. Everything has to stay for as long as the download.
struct DownloadSurroundings {
  CameraLink& Cam1;
  const Strings& Words;
  DownloadConversion& Conversion;
  ApplicationFolder& Folder;  // For files on their way.
  Dialogs& Questions;
  OverwriteQuestion& Overwriting;
  /// Repaint(): the state changed and should be on screen. Advance(): the percentage moved.
  /// LetEventsRun(): between images and while a finished bar stays in view; cmdAbort() may come.
  Progress& Watcher;
};

/// Everything that the download window does with the camera. The window fills Options from its
/// controls before each call and shows State after it.
class CameraDownload {
 public:
  explicit CameraDownload(const DownloadSurroundings& surroundings);

  DownloadOptions Options;
  DownloadState State;
  /// How long a finished bar stays in view.
  std::chrono::milliseconds BarPause{500};

  /// The state of a window that is coming up: no camera, and the words that one is looked for. Also
  /// before every further dwnInitCam(), so that nothing of the last camera stays.
  void Begin();
  /// Opens the link and lists the camera's folders.
  void dwnInitCam();
  /// A line of cboCamFolders was clicked; -1: none is selected.
  void SelectFolder(int index);
  /// A format was ticked or unticked: enables the buttons.
  void dwnCheckDownload();

  void cmdDownload();     // The images of the selected folder.
  void cmdDownloadAll();  // Those of all folders.
  void cmdDeleteAll();
  /// Ends a download after the image in hand.
  void cmdAbort();

 private:
  void ListFolders();
  /// What of the card could not be listed goes into State.Fault.
  void TellFolderFaults();
  void ShowStatus(int textId, const char* defaultText, const char* ending = "");
  void ShowError(int textId, const char* defaultText);

  DownloadSurroundings surroundings_;
};

}  // namespace tessa
