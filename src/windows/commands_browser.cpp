// Commands that look at many images or at the facts of one.

#include "browser/save_info_note.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "core/tell.h"
#include "open/load_image.h"
#include "open/no_picture.h"
#include "view/palettes.h"
#include "windows/browser_window.h"
#include "windows/image_info_dialog.h"
#include "windows/main_window.h"
#include "windows/view_pict.h"
#include "windows/window_progress.h"

namespace tessa {

void MainWindow::AddBrowserCommands() {
  Add({.Id = CommandId::kThumbnails,
       .Caption = Word(261, "Thumbnails"),
       .Icon = "thumbnails",
       .Shortcuts = {Qt::CTRL | Qt::Key_T},
       .Run = [this] { BrowseImages(); }});
  Add({.Id = CommandId::kThumbnailsButton,
       .Caption = Word(275, "View Thumbnails / Download Images"),
       .Icon = "thumbnails",
       .Run = [this] { BrowseImages(); }});
  Add({.Id = CommandId::kImageInfo,
       .Caption = Word(174, "Image Info"),
       .Icon = "image_info",
       .Shortcuts = {Qt::ALT | Qt::Key_Return},
       .Run = [this] { ShowImageInfo(); },
       .Enabled = [this] { return HasPicture(session_); }});
}

/// Shows the browser and opens what was chosen in it. Without a choice everything is as before.
void MainWindow::BrowseImages() {
  OpenImage& image = session_.Image;
  if (image.UiLocked) {
    return;
  }
  constexpr int kBrowserUp = 99;
  image.UiLocked = true;
  image.ImageBusy = true;
  session_.View.SuppressEvents = true;
  image.ThumbBrowserActive = kBrowserUp;
  BrowserWindow browser(session_, browserMemory_, user_, player_, this);
  browser.exec();
  image.ThumbBrowserActive = 0;
  image.ImageBusy = false;
  session_.View.SuppressEvents = false;
  if (const auto& chosen = browser.Chosen()) {
    OpenChosen(*chosen, browser.Palette());
  }
  image.UiLocked = false;
  RememberOpened();
  BringIntoLine();
  view_->FocusPicture();
  view_->RefreshReadout();
}

void MainWindow::OpenChosen(const ChosenImage& chosen, int palette) {
  progress_->Start();
  session_.View.PaletteSelection = palette;
  SetCurrentFile(session_.Image, AbsolutePath(chosen.Path));
  // The tiles' menu may bring the name of another image along.
  session_.Image.CurrentFileName = chosen.Name;
  OpenCurrentImage(session_, *progress_);
}

void MainWindow::ShowImageInfo() {
  const ImageInfo info = InfoOfOpenImage(session_);
  ImageInfoDialog dialog(info, session_.Words, this);
  dialog.Save = [&](const ImageNote& texts) {
    try {
      SaveInfoNote(info, texts, session_, nullptr);
    } catch (const StepFailure& reason) {
      Tell(NoticeKind::kFailed,
           session_.Words.LangString(435, "Could not save %1: %2")
               .arg(ShownPath(info.FileName), QString::fromStdString(reason.what())),
           session_.View);
    }
    BringIntoLine();
  };
  dialog.exec();
}

}  // namespace tessa
