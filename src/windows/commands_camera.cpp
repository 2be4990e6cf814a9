// Commands for the camera's memory card.

#include "windows/download_window.h"
#include "windows/main_window.h"

namespace tessa {

void MainWindow::AddCameraCommands() {
  for (const CommandId id : {CommandId::kDownload, CommandId::kDownloadButton}) {
    Add({.Id = id,
         .Caption = Word(297, "Corvane T-40 Downloader"),
         .Icon = "download",
         .Run = [this] { DownloadImages(); }});
  }
}

/// The open image stays as it is.
void MainWindow::DownloadImages() {
  if (session_.Image.UiLocked) {
    return;
  }
  session_.Image.UiLocked = true;
  DownloadWindow(session_, user_, RemovableVolumes, this).exec();
  session_.Image.UiLocked = false;
}

}  // namespace tessa
