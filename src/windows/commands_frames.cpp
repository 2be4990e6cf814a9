// Commands that step through the frames of a sequence and turn them into files.

#include "sequence/playback.h"
#include "windows/main_window.h"

namespace tessa {

void MainWindow::AddFrameCommands() {
  const auto hasFrames = [this] { return session_.View.FrameRowVisible; };
  const auto step = [this](void (*procedure)(Session&, Progress&)) {
    return [this, procedure] { StepFrame(procedure); };
  };
  Add({.Id = CommandId::kFirstFrame,
       .Caption = Word(292, "First"),
       .Icon = "frame_first",
       .Shortcuts = {Qt::Key_Home},
       .Run = step(ShowFirstFrame),
       .Enabled = hasFrames});
  Add({.Id = CommandId::kPreviousFrame,
       .Caption = Word(293, "Previous"),
       .Icon = "frame_previous",
       .Shortcuts = {Qt::ALT | Qt::Key_Left},
       .Run = step(ShowPreviousFrame),
       .Enabled = hasFrames});
  Add({.Id = CommandId::kNextFrame,
       .Caption = Word(294, "Next"),
       .Icon = "frame_next",
       .Shortcuts = {Qt::ALT | Qt::Key_Right},
       .Run = step(ShowNextFrame),
       .Enabled = hasFrames});
  Add({.Id = CommandId::kLastFrame,
       .Caption = Word(295, "Last"),
       .Icon = "frame_last",
       .Shortcuts = {Qt::Key_End},
       .Run = step(ShowLastFrame),
       .Enabled = hasFrames});
  Add({.Id = CommandId::kSaveFrames,
       .Caption = Word(229, "Save Sequence Frames"),
       .Icon = "save_image",
       .Run = [this] { SaveFrames(); },
       .Enabled = hasFrames});
}

}  // namespace tessa
