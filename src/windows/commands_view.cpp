// Commands that change how the open image is shown, and the numbers entered for later work.

#include "view/image_tools.h"
#include "windows/main_window.h"
#include "windows/view_pict.h"

namespace tessa {

void MainWindow::AddViewCommands() {
  const auto hasImage = [this] { return session_.View.HasImage; };
  const auto zoomBy = [this](int steps) { return [this, steps] { view_->ZoomBy(steps); }; };
  Add({.Id = CommandId::kTrend,
       .Caption =
           [this] {
             return session_.View.TrendSaysWhiteHot ? session_.Words.LangString(278, "White Hot")
                                                    : session_.Words.LangString(108, "Black Hot");
           },
       .Shortcuts = {Qt::CTRL | Qt::Key_I},
       .Run = [this] { ReverseSelectedPalette(); },
       .Enabled = hasImage});
  // The key of the plus sign counts without its shift key too.
  Add({.Id = CommandId::kZoomIn,
       .Caption = Word(401, "Zoom In"),
       .Icon = "zoom_in",
       .Shortcuts = {Qt::Key_Plus, Qt::Key_Equal, Qt::Key_PageUp, QKeySequence::ZoomIn,
                     Qt::CTRL | Qt::Key_Equal},
       .Run = zoomBy(1),
       .Enabled = hasImage});
  Add({.Id = CommandId::kZoomOut,
       .Caption = Word(402, "Zoom Out"),
       .Icon = "zoom_out",
       .Shortcuts = {Qt::Key_Minus, Qt::Key_PageDown, QKeySequence::ZoomOut},
       .Run = zoomBy(-1),
       .Enabled = hasImage});
  Add({.Id = CommandId::kZoomFit,
       .Caption = Word(403, "Fit in Window"),
       .Icon = "zoom_fit",
       .Shortcuts = {Qt::CTRL | Qt::Key_0},
       .Run = [this] { view_->ZoomToFit(); },
       .Enabled = hasImage});
}

void MainWindow::AddToolCommands() {
  const auto withNumber = [this](int id, const char* text, const QString& number) {
    return [this, id, text, &number] {
      return session_.Words.LangString(id, text) + QStringLiteral(": ") + number;
    };
  };
  const auto ask = [this](void (*procedure)(ViewState&, Dialogs&, StepLog&)) {
    return [this, procedure] {
      procedure(session_.View, *dialogs_, session_.Steps);
      SetCaptions();
    };
  };
  Add({.Id = CommandId::kRotationAngle,
       .Caption = withNumber(220, "Rotate", session_.View.RotationCaption),
       .Run = ask(EnterRotationAngle)});
  Add({.Id = CommandId::kEdgeMagnitude,
       .Caption = withNumber(410, "Edge Magnitude", session_.View.EdgeCaption),
       .Run = ask(EnterEdgeMagnitude)});
}

}  // namespace tessa
