// Commands that open and close images, and those of the program itself.

#include "open/load_dialog.h"
#include "open/load_image.h"
#include "windows/main_window.h"
#include "windows/window_progress.h"

namespace tessa {

void MainWindow::AddLoadCommands() {
  const auto images = [this](const char* kind) {
    return [this, kind] {
      return QString::fromLatin1(kind) + session_.Words.LangString(177, "Images");
    };
  };
  const auto load = [this](int filterIndex) {
    return [this, filterIndex] { AskAndOpen(filterIndex); };
  };
  Add({.Id = CommandId::kLoadAllImages,
       .Caption = Word(291, "All Images"),
       .Run = load(kAllImagesFilter)});
  Add({.Id = CommandId::kLoadBmp, .Caption = images("BMP "), .Run = load(1)});
  Add({.Id = CommandId::kLoadTiff, .Caption = images("TIFF "), .Run = load(2)});
  Add({.Id = CommandId::kLoadJpeg, .Caption = images("JPEG "), .Run = load(3)});
  Add({.Id = CommandId::kLoadSit,
       .Caption = images("SIT "),
       .Icon = "open_image",
       .Shortcuts = {QKeySequence::Open},
       .Run = load(4)});
  Add({.Id = CommandId::kLoadTxi, .Caption = images("TXI "), .Run = load(5)});
  Add({.Id = CommandId::kLoadTmp, .Caption = images("TMP "), .Run = load(6)});
  Add({.Id = CommandId::kLoadRti, .Caption = Word(221, "RTI Snapshots"), .Run = load(7)});
  Add({.Id = CommandId::kLoadSequence, .Caption = Word(222, "RTV Sequence"), .Run = load(8)});
}

void MainWindow::AddFileCommands() {
  AddLoadCommands();
  // A file that gave no picture can be tried again and closed too.
  const auto hasFile = [this] { return !session_.Image.CurrentFile.isEmpty(); };
  Add({.Id = CommandId::kReload,
       .Caption = Word(404, "Reload"),
       .Shortcuts = {Qt::Key_F5},
       .Run = [this] { OpenFile(QString(session_.Image.CurrentFilePath)); },
       .Enabled = hasFile});
  Add({.Id = CommandId::kClose,
       .Caption = Word(114, "Close"),
       .Icon = "close_image",
       .Shortcuts = {Qt::CTRL | Qt::Key_W},
       .Run =
           [this] {
             CloseImage(session_, *progress_);
             BringIntoLine();
           },
       .Enabled = hasFile});
  Add({.Id = CommandId::kPreferences,
       .Caption = Word(210, "Preferences"),
       .Icon = "preferences",
       .Shortcuts = {QKeySequence::Preferences, Qt::CTRL | Qt::Key_Comma},
       .Run = [this] { ShowPreferences(); }});
  Add({.Id = CommandId::kPreferencesButton,
       .Caption = Word(210, "Preferences"),
       .Icon = "preferences",
       .Run = [this] { ShowPreferences(); }});
  Add({.Id = CommandId::kAbout, .Caption = Word(103, "About"), .Icon = "about", .Run = [this] {
         ShowAbout();
       }});
  Add({.Id = CommandId::kExit,
       .Caption = Word(166, "Exit"),
       .Icon = "exit",
       .Shortcuts = {Qt::CTRL | Qt::Key_Q},
       .Run = [this] { close(); }});
}

/// Commands whose subsystems are still to come stand in their places, disabled.

}  // namespace tessa
