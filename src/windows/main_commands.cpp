// The table of commands of the main window.

#include <QApplication>
#include <QClipboard>

#include "export/save_image.h"
#include "open/load_image.h"
#include "sequence/playback.h"
#include "view/image_tools.h"
#include "widgets/icons.h"
#include "windows/main_window.h"
#include "windows/view_pict.h"
#include "windows/window_progress.h"

namespace tessa {

std::vector<MainWindow::Command> MainWindow::MakeCommands() {
  std::vector<Command> commands = MakeFileCommands();
  for (Command& command : MakeExportCommands()) {
    commands.push_back(std::move(command));
  }
  for (Command& command : MakeViewCommands()) {
    commands.push_back(std::move(command));
  }
  return commands;
}

std::vector<MainWindow::Command> MainWindow::MakeFileCommands() {
  const auto word = [this](int id, const char* text) {
    return [this, id, text] { return session_.Words.LangString(id, text); };
  };
  const auto images = [this](const char* kind) {
    return [this, kind] {
      return QString::fromLatin1(kind) + session_.Words.LangString(177, "Images");
    };
  };
  const auto load = [this](int filterIndex) {
    return [this, filterIndex] { AskAndOpen(filterIndex); };
  };
  // A file that gave no picture can be tried again and closed too.
  const auto hasFile = [this] { return !session_.Image.CurrentFile.isEmpty(); };
  const auto close = [this] {
    CloseImage(session_, *progress_);
    BringIntoLine();
  };
  return {
      {"mnuLoadBmp", images("BMP "), "", {}, load(1), {}},
      {"mnuLoadTIFF", images("TIFF "), "", {}, load(2), {}},
      {"mnuLoadJPEG", images("JPEG "), "", {}, load(3), {}},
      {"mnuLoadIMG", images("SIT "), "open_image", {QKeySequence::Open}, load(4), {}},
      {"mnuLoadTxi", images("TXI "), "", {}, load(5), {}},
      {"mnuLoadTMP", images("TMP "), "", {}, load(6), {}},
      {"mnuLoadRTI", word(221, "RTI Snapshots"), "", {}, load(7), {}},
      {"mnuLoadSEQ", word(222, "RTV Sequence"), "", {}, load(8), {}},
      {"mnuLoadThumb", word(261, "Thumbnails"), "thumbnails", {}, {}, {}},
      {"mnuReload",
       word(404, "Reload"),
       "",
       {QKeySequence(Qt::Key_F5)},
       [this] { OpenFile(QString(session_.Image.CurrentFilePath)); },
       hasFile},
      {"mnuClose",
       word(114, "Close"),
       "close_image",
       {QKeySequence(Qt::CTRL | Qt::Key_W)},
       close,
       hasFile},
      {"mnusetup",
       word(210, "Preferences"),
       "preferences",
       {QKeySequence::Preferences, QKeySequence(Qt::CTRL | Qt::Key_Comma)},
       [this] { ShowPreferences(); },
       {}},
      {"mnu4400", word(297, "Corvane T-40 Downloader"), "download", {}, {}, {}},
      {"mnubout", word(103, "About"), "about", {}, [this] { ShowAbout(); }, {}},
      {"mnuExit",
       word(166, "Exit"),
       "exit",
       {QKeySequence(Qt::CTRL | Qt::Key_Q)},
       [this] { this->close(); },
       {}},
      {"SSCommand1",
       word(210, "Preferences"),
       "preferences",
       {},
       [this] { ShowPreferences(); },
       {}},
      {"btnPlaysound", word(209, "Playback Sound File"), "play_sound", {}, {}, {}},
      {"btnEmbedSound", word(230, "Save Sound Into Image"), "embed_sound", {}, {}, {}},
      {"btnthumb", word(275, "View Thumbnails / Download Images"), "thumbnails", {}, {}, {}},
      {"btnDWNLoad", word(297, "Corvane T-40 Downloader"), "download", {}, {}, {}},
  };
}

std::vector<MainWindow::Command> MainWindow::MakeExportCommands() {
  const auto word = [this](int id, const char* text) {
    return [this, id, text] { return session_.Words.LangString(id, text); };
  };
  const auto fixed = [](const char* text) { return [text] { return QString::fromLatin1(text); }; };
  const auto save = [this](void (*procedure)(Session&, Dialogs&)) {
    return [this, procedure] {
      procedure(session_, *dialogs_);
      BringIntoLine();
    };
  };
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
  const auto saveBmpByButton = [this] {
    if (!session_.Image.UiLocked) {
      Action("mnuSave")->trigger();
    }
  };
  const auto showVisible = [this] { ShowVisible(); };
  return {
      {"mnuSave", word(224, "Save BMP"), "save_image", {QKeySequence::Save}, save(SaveBmp), {}},
      {"mnuSaveJPG",
       word(228, "Save JPEG"),
       "",
       {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)},
       save(SaveJpeg),
       {}},
      {"mnuSaveTXI", word(231, "Save TXI"), "", {}, save(SaveTxi), {}},
      {"mnuSaveCompBMP", fixed("BMP"), "", {}, save(SaveCompositeBmp), hasVisible},
      {"mnuSaveCompJPG", fixed("JPEG"), "", {}, save(SaveCompositeJpeg), hasVisible},
      {"mnucopyclip", word(125, "Copy Image"), "copy", {QKeySequence::Copy}, copy(CopyImage), {}},
      {"mnucopyclip2", word(128, "Copy Palette Bar"), "", {}, copy(CopyPaletteBar), {}},
      {"mnucopyclip3",
       word(126, "Copy Image With Palette Bar"),
       "",
       {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C)},
       copy(CopyImageWithPaletteBar),
       {}},
      {"mnuCopyVis", word(130, "Copy Visual Image"), "", {}, copy(CopyVisible), hasVisible},
      {"mnuMerge", word(127, "Copy IR && Visual Image"), "", {}, copy(CopyComposite), hasVisible},
      {"mnuVisible",
       word(277, "Visible Light Image"),
       "visible_image",
       {QKeySequence(Qt::CTRL | Qt::Key_L)},
       showVisible,
       hasVisible},
      {"btnSaveBMP", word(224, "Save BMP"), "save_image", {}, saveBmpByButton, {}},
      {"btnViewVis",
       word(277, "Visible Light Image"),
       "visible_image",
       {},
       showVisible,
       hasVisible},
  };
}

std::vector<MainWindow::Command> MainWindow::MakeViewCommands() {
  const auto word = [this](int id, const char* text) {
    return [this, id, text] { return session_.Words.LangString(id, text); };
  };
  const auto hasImage = [this] { return session_.View.HasImage; };
  const auto zoomBy = [this](int levels) {
    return [this, levels] { view_->SetZoom(view_->ZoomLevel() + levels); };
  };
  const auto hasFrames = [this] { return session_.View.FrameRowVisible; };
  const auto step = [this](void (*procedure)(Session&, Progress&)) {
    return [this, procedure] { StepFrame(procedure); };
  };
  return {
      {"btnTrend",
       [this] {
         return session_.View.TrendSaysWhiteHot ? session_.Words.LangString(278, "White Hot")
                                                : session_.Words.LangString(108, "Black Hot");
       },
       "",
       {QKeySequence(Qt::CTRL | Qt::Key_I)},
       [this] { ReverseSelectedPalette(); },
       hasImage},
      {"ZoomIn",
       word(401, "Zoom In"),
       "zoom_in",
       {QKeySequence(Qt::Key_Plus), QKeySequence(Qt::Key_PageUp), QKeySequence::ZoomIn},
       zoomBy(1),
       hasImage},
      {"ZoomOut",
       word(402, "Zoom Out"),
       "zoom_out",
       {QKeySequence(Qt::Key_Minus), QKeySequence(Qt::Key_PageDown), QKeySequence::ZoomOut},
       zoomBy(-1),
       hasImage},
      {"FrameFirst",
       word(292, "First"),
       "frame_first",
       {QKeySequence(Qt::Key_Home)},
       step(ShowFirstFrame),
       hasFrames},
      {"FramePrevious",
       word(293, "Previous"),
       "frame_previous",
       {QKeySequence(Qt::ALT | Qt::Key_Left)},
       step(ShowPreviousFrame),
       hasFrames},
      {"FrameNext",
       word(294, "Next"),
       "frame_next",
       {QKeySequence(Qt::ALT | Qt::Key_Right)},
       step(ShowNextFrame),
       hasFrames},
      {"FrameLast",
       word(295, "Last"),
       "frame_last",
       {QKeySequence(Qt::Key_End)},
       step(ShowLastFrame),
       hasFrames},
      {"FrameSave",
       word(229, "Save Sequence Frames"),
       "save_image",
       {},
       [this] { SaveFrames(); },
       hasFrames},
      {"ToolRotation",
       [this] {
         return session_.Words.LangString(220, "Rotate") + QStringLiteral(": ") +
                session_.View.RotationCaption;
       },
       "",
       {},
       [this] { AskForTool(EnterRotationAngle); },
       {}},
      {"ToolEdge",
       [this] {
         return session_.Words.LangString(410, "Edge Magnitude") + QStringLiteral(": ") +
                session_.View.EdgeCaption;
       },
       "",
       {},
       [this] { AskForTool(EnterEdgeMagnitude); },
       {}},
      {"ZoomFit",
       word(403, "Fit in Window"),
       "zoom_fit",
       {QKeySequence(Qt::CTRL | Qt::Key_0)},
       [this] { view_->ZoomToFit(); },
       hasImage},
  };
}

void MainWindow::AskForTool(void (*procedure)(ViewState&, Dialogs&, StepLog&)) {
  procedure(session_.View, *dialogs_, session_.Steps);
  for (const char* id : {"ToolRotation", "ToolEdge"}) {
    for (const Command& command : commands_) {
      if (QLatin1String(command.Id) == QLatin1String(id)) {
        Action(id)->setText(command.Caption());
      }
    }
  }
}

}  // namespace tessa
