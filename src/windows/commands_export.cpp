// Commands that save and copy the open image, and those of its photograph.

#include <QApplication>
#include <QClipboard>

#include "export/save_image.h"
#include "widgets/icons.h"
#include "windows/main_window.h"

namespace tessa {

void MainWindow::AddSaveCommands() {
  const auto save = [this](void (*procedure)(Session&, Dialogs&)) {
    return [this, procedure] {
      procedure(session_, *dialogs_);
      BringIntoLine();
    };
  };
  const auto hasVisible = [this] { return session_.View.VisibleImageEntries; };
  Add({.Id = CommandId::kSaveBmp,
       .Caption = Word(224, "Save BMP"),
       .Icon = "save_image",
       .Shortcuts = {QKeySequence::Save},
       .Run = save(SaveBmp)});
  Add({.Id = CommandId::kSaveBmpButton,
       .Caption = Word(224, "Save BMP"),
       .Icon = "save_image",
       .Run = [this] {
         if (!session_.Image.UiLocked) {
           Action(CommandId::kSaveBmp)->trigger();
         }
       }});
  Add({.Id = CommandId::kSaveJpeg,
       .Caption = Word(228, "Save JPEG"),
       .Shortcuts = {Qt::CTRL | Qt::SHIFT | Qt::Key_S},
       .Run = save(SaveJpeg)});
  Add({.Id = CommandId::kSaveTxi, .Caption = Word(231, "Save TXI"), .Run = save(SaveTxi)});
  Add({.Id = CommandId::kSaveCompositeBmp,
       .Caption = [] { return QStringLiteral("BMP"); },
       .Run = save(SaveCompositeBmp),
       .Enabled = hasVisible});
  Add({.Id = CommandId::kSaveCompositeJpeg,
       .Caption = [] { return QStringLiteral("JPEG"); },
       .Run = save(SaveCompositeJpeg),
       .Enabled = hasVisible});
}

void MainWindow::AddCopyCommands() {
  // Without an image the program's own picture is what there is to copy.
  const auto copy = [this](void (*procedure)(Session&)) {
    return [this, procedure] {
      if (!session_.Image.CurrentFile.isEmpty()) {
        procedure(session_);
        BringIntoLine();
      } else {
        constexpr QSize kEmblem(96, 96);
        QApplication::clipboard()->setImage(ApplicationIcon().pixmap(kEmblem).toImage());
      }
    };
  };
  const auto hasVisible = [this] { return session_.View.VisibleImageEntries; };
  Add({.Id = CommandId::kCopyImage,
       .Caption = Word(125, "Copy Image"),
       .Icon = "copy",
       .Shortcuts = {QKeySequence::Copy},
       .Run = copy(CopyImage)});
  Add({.Id = CommandId::kCopyPaletteBar,
       .Caption = Word(128, "Copy Palette Bar"),
       .Run = copy(CopyPaletteBar)});
  Add({.Id = CommandId::kCopyImageWithPaletteBar,
       .Caption = Word(126, "Copy Image With Palette Bar"),
       .Shortcuts = {Qt::CTRL | Qt::SHIFT | Qt::Key_C},
       .Run = copy(CopyImageWithPaletteBar)});
  Add({.Id = CommandId::kCopyVisible,
       .Caption = Word(130, "Copy Visual Image"),
       .Run = copy(CopyVisible),
       .Enabled = hasVisible});
  Add({.Id = CommandId::kCopyComposite,
       .Caption = Word(127, "Copy IR && Visual Image"),
       .Run = copy(CopyComposite),
       .Enabled = hasVisible});
  Add({.Id = CommandId::kVisibleWindow,
       .Caption = Word(277, "Visible Light Image"),
       .Icon = "visible_image",
       .Shortcuts = {Qt::CTRL | Qt::Key_L},
       .Run = [this] { ShowVisible(); },
       .Enabled = hasVisible});
  Add({.Id = CommandId::kVisibleWindowButton,
       .Caption = Word(277, "Visible Light Image"),
       .Icon = "visible_image",
       .Run = [this] { ShowVisible(); },
       .Enabled = hasVisible});
}

}  // namespace tessa
