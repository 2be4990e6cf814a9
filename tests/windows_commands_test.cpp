#include <QPointer>
#include <map>
#include <set>

#include "formats/if_sound.h"
#include "scripted_device.h"
#include "sound/note_player.h"
#include "test_main_window.h"
#include "windows/visible_window.h"

namespace tessa::testing {
namespace {

using enum CommandId;

class CommandsTest : public MainWindowTest {
 protected:
  ~CommandsTest() override { window_->SetPlayer(nullptr); }
  CommandsTest() {
    // The download's choices are kept there.
    session_.Folder = {folder_.Path(Name("App")), Name(TESSA_BINARY_FOLDER)};
    dialogs_ = &UseDialogs();
    window_->SetPlayer(&player_);
    // An early camera's image with its note beside it.
    SitFields fields = SceneFields();
    fields.SoundName = "NOTE    ";
    fields.SoundExt = "SND";
    folder_.Write(Name("Scene.sit"), EncodeSit(fields));
    folder_.Write(Name("NOTE.SND"), EncodeIfSound(2850, std::array<std::uint16_t, 2>{1023, 512}));
    MakeEffects();
  }

  /// Opens `file` and brings what the commands change away from where they lead.
  void Prepare(const QString& file, CommandId id) {
    window_->OpenFile(file);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    window_->View().SetZoom(4);
    const bool back = id == kFirstFrame || id == kPreviousFrame;
    session_.Image.CurrentFrame = back ? session_.Image.FrameCount : 1;
    session_.View.RotationCaption = session_.View.EdgeCaption = u"0"_s;
    wasWhiteHot_ = session_.View.TrendSaysWhiteHot;
    dialogs_->AskedSave.clear();
    dialogs_->AskedFilter = -1;
    modal_.clear();
    QApplication::clipboard()->clear();
    QTimer::singleShot(0, window_.get(), [this] {
      if (QWidget* const open = QApplication::activeModalWidget()) {
        modal_ = open->objectName();
        open->close();
      }
    });
  }

  bool AskedToSave(const char* ending) const {
    return dialogs_->AskedSave ==
           QFileInfo(session_.Image.CurrentFilePath).completeBaseName() + Name(ending);
  }
  bool Copied(const Picbuf& buffer) const {
    return QApplication::clipboard()->image().size() ==
           QSize(buffer.BufWidth(), buffer.BufHeight());
  }
  bool Shows(const char* window) const { return modal_ == Name(window); }
  bool ShowsFrame(int frame) const {
    return session_.Image.CurrentFrame == frame &&
           std::abs(session_.Image.TempGrid.At(5, 5) - 10.0F * static_cast<float>(frame)) < 0.01F;
  }
  static QString Name(const char* name) { return QString::fromLatin1(name); }

  void MakeEffects() {
    int filter = 0;
    for (const CommandId id : {kLoadAllImages, kLoadBmp, kLoadTiff, kLoadJpeg, kLoadSit, kLoadTxi,
                               kLoadTmp, kLoadRti, kLoadSequence}) {
      effects_[id] = [this, wanted = filter++] { return dialogs_->AskedFilter == wanted; };
    }
    const ZoomState& zoom = session_.View.Zoom;
    const Picbuf& drawn = session_.Buffers.Picbuf3;
    const auto preferences = [this] { return Shows("CaptureSetup"); };
    const auto saveBmp = [this] { return AskedToSave(".BMP"); };
    const auto visible = [this] { return session_.Image.VisibleWindowOpen; };
    effects_.insert({
        {kReload, [this, &zoom] { return zoom.ZoomLevel == 2 && session_.View.HasImage; }},
        {kClose, [this] { return session_.Image.CurrentFile.isEmpty(); }},
        {kPreferences, preferences},
        {kPreferencesButton, preferences},
        {kAbout, [this] { return Shows("About"); }},
        {kExit, [this] { return !window_->isVisible(); }},
        {kSaveBmp, saveBmp},
        {kSaveBmpButton, saveBmp},
        {kSaveJpeg, [this] { return AskedToSave(".JPG"); }},
        // Only sequences and bitmaps can become TXI images.
        {kSaveTxi,
         [this] {
           return dialogs_->AskedSave ==
                  (session_.Image.FrameCount > 1 ? Name("Frame1.TXI") : QString());
         }},
        {kSaveCompositeBmp, [this] { return AskedToSave("-COMP.BMP"); }},
        {kSaveCompositeJpeg, [this] { return AskedToSave("-COMP.JPG"); }},
        {kCopyImage, [this] { return Copied(session_.Buffers.Picbuf1); }},
        {kCopyPaletteBar, [this] { return Copied(session_.Buffers.PicBuf6); }},
        {kCopyImageWithPaletteBar,
         [this, &drawn] {
           return Copied(drawn) && drawn.BufWidth() < session_.Image.ImageWidth + 200;
         }},
        {kCopyVisible, [this] { return Copied(session_.Visible.Picbuf3); }},
        {kCopyComposite, [this, &drawn] { return Copied(drawn) && drawn.BufWidth() > 640; }},
        {kVisibleWindow, visible},
        {kVisibleWindowButton, visible},
        {kTrend, [this] { return session_.View.TrendSaysWhiteHot != wasWhiteHot_; }},
        {kZoomIn, [&zoom] { return zoom.ZoomLevel == 5; }},
        {kZoomOut, [&zoom] { return zoom.ZoomLevel == 3; }},
        {kZoomFit,
         [this, &zoom] { return zoom.ZoomLevel == (session_.Image.ImageWidth == 8 ? 15 : 2); }},
        {kRotationAngle, [this] { return session_.View.RotationCaption == Name("7"); }},
        {kEdgeMagnitude, [this] { return session_.View.EdgeCaption == Name("7"); }},
        {kFirstFrame, [this] { return ShowsFrame(1); }},
        {kPreviousFrame, [this] { return ShowsFrame(2); }},
        {kNextFrame, [this] { return ShowsFrame(2); }},
        {kLastFrame, [this] { return ShowsFrame(3); }},
        {kSaveFrames, [this] { return Shows("frmSaveSeq"); }},
        {kThumbnails, [this] { return Shows("LoadIMG"); }},
        {kThumbnailsButton, [this] { return Shows("LoadIMG"); }},
        {kImageInfo, [this] { return Shows("frmImageInfo"); }},
        {kDownload, [this] { return Shows("frmDownLoad"); }},
        {kDownloadButton, [this] { return Shows("frmDownLoad"); }},
        {kPlaySound, [this] { return session_.View.Sound.Playing; }},
        {kEmbedSound,
         [this] { return QFileInfo(scene_).size() > 156160 && !session_.View.Sound.EmbedVisible; }},
    });
  }

  ScriptedDialogs* dialogs_ = nullptr;
  ScriptedDevice viewDevice_;
  ScriptedDevice tileDevice_;
  NotePlayer player_{session_, viewDevice_, tileDevice_};
  std::map<CommandId, std::function<bool()>> effects_;
  QString modal_;
  bool wasWhiteHot_ = false;
};

TEST_F(CommandsTest, EveryCommandOfTheTableDoesItsWorkOnEveryImageThatItIsEnabledFor) {
  std::set<CommandId> tried;
  for (const QString& file :
       {scene_, folder_.Write(Name("Photo.sit"), EncodedSceneWithPhotograph()),
        folder_.Write(Name("Steps.rti"), ThreeFrames())}) {
    for (const Command& command : window_->Commands()) {
      const char* const name = NameOf(command.Id);
      Prepare(file, command.Id);
      ASSERT_EQ(session_.Image.CurrentFilePath, file);
      auto& action = Find<QAction>(name);
      EXPECT_FALSE(action.text().isEmpty()) << name;
      if (!command.Run) {
        EXPECT_FALSE(action.isEnabled()) << name << " is a dead click";
      } else if (action.isEnabled()) {
        ASSERT_TRUE(effects_.contains(command.Id)) << name << " has no check here";
        action.trigger();
        EXPECT_TRUE(effects_.at(command.Id)()) << name << " on " << file.toStdString();
        tried.insert(command.Id);
        window_->show();
      }
      QCoreApplication::processEvents();
    }
  }
  EXPECT_EQ(window_->Commands().size(), static_cast<std::size_t>(kCount));
  EXPECT_EQ(tried.size(), effects_.size()) << "commands that no image enables";
}

TEST_F(CommandsTest, TheSpaceBarPlaysAndStopsTheNoteAndAMissingOutputIsTold) {
  window_->OpenFile(scene_);
  EXPECT_TRUE(Find<QLabel>("SoundLength").isVisible());
  // By the native window, as the platform sends keys, and with the cursor over the picture.
  Picture().setFocus();
  QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
  QApplication::sendEvent(&Picture(), &enter);
  QTest::keyClick(window_->windowHandle(), Qt::Key_Space);
  EXPECT_TRUE(session_.View.Sound.Playing);
  EXPECT_EQ(Find<QAction>("btnPlaysound").toolTip(), Name("Stop Playback"));
  QTest::keyClick(&Picture(), Qt::Key_Space);
  EXPECT_FALSE(session_.View.Sound.Playing);
  viewDevice_.HasOutput = false;
  Trigger("btnPlaysound");
  EXPECT_FALSE(session_.View.Sound.Playing);
  EXPECT_EQ(session_.View.Notice.Text, Name("there is no sound output"));
  QTest::keyClick(window_->windowHandle(), Qt::Key_Escape);
  EXPECT_FALSE(Find<QWidget>("NoticeStrip").isVisible()) << "wherever the focus is";
  window_->OpenFile(folder_.Write(Name("Photo.sit"), EncodedSceneWithPhotograph()));
  EXPECT_FALSE(Find<QAction>("btnPlaysound").isVisible());
  EXPECT_FALSE(Find<QLabel>("SoundLength").isVisible());
}

}  // namespace
}  // namespace tessa::testing
