#pragma once

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>

#include "test_files.h"
#include "widgets/picbuf_widget.h"
#include "windows/main_window.h"
#include "windows/view_pict.h"

namespace tessa::testing {

/// Column / 10 degrees plus the row in hundredths: every position has its own temperature.
inline float DegreesAt(int column, int row) {
  const auto count = static_cast<std::int16_t>(column * 20 + row);
  return LinearCalibration{static_cast<float>(655.0 / 65536.0), -5.0F}.Degrees(count);
}

inline SitFields SceneFields() {
  SitFields fields;
  fields.Offset = -5.0;
  fields.Gain = 655.0 / 65536.0;
  fields.ScaleCenter = 25.0;
  fields.ScaleStep = 7.5;  // -5 to 55
  fields.Counts =
      Raster(kSitWidth, kSitHeight, [](int column, int row) { return column * 20 + row; });
  return fields;
}

inline Bytes EncodedScene() {
  return EncodeSit(SceneFields());
}

/// The scene with a photograph behind it.
inline Bytes EncodedSceneWithPhotograph() {
  SitFields fields = SceneFields();
  fields.SoundExt = std::string("   ").replace(2, 1, 1, '\x02');
  fields.Attachment = Joined(Bytes(8), VisibleJpeg());
  return EncodeSit(fields);
}

/// Three frames of 10, 20 and 30 degrees, the first pixel at 0.
inline Bytes ThreeFrames() {
  std::vector<std::vector<std::int16_t>> frames;
  for (const int tenths : {2832, 2932, 3032}) {
    frames.emplace_back(64, static_cast<std::int16_t>(tenths))[0] = 2732;
  }
  SnapshotFields fields = SnapshotOf(8, 8, frames);
  fields.Header.ScaleMax = 50.0F;
  return EncodeSnapshot(fields);
}

template <typename Widget>
Widget& FindIn(const QWidget& window, const char* name) {
  auto* const found = window.findChild<Widget*>(QString::fromLatin1(name));
  EXPECT_NE(found, nullptr) << name;
  return *found;
}

/// Answers every question for a file with one path and remembers what was asked.
class ScriptedDialogs : public NoDialogs {
 public:
  explicit ScriptedDialogs(QString answer) : answer_(std::move(answer)) {}
  std::optional<QString> AskOpenFile(const OpenFileQuestion& question) override {
    AskedFilter = question.FilterIndex;
    return answer_;
  }
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override {
    AskedSave = QFileInfo(question.Suggestion).fileName();
    return std::nullopt;
  }
  Answer AskYesNoCancel(const QString& /*text*/) override { return Answer::kNo; }
  std::optional<QString> AskText(const QString& /*prompt*/) override { return Text; }
  QString Text = u"7"_s;
  int AskedFilter = 0;
  QString AskedSave;

 private:
  QString answer_;
};

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() : session_(BuiltProgramFolder()), user_(folder_.Path(u"settings.ini"_s)) {
    session_.Settings.DefaultKind = KindSit;
    session_.Settings.DefaultUnits = 'C';
    session_.Settings.DefaultPalette = 10;
    PrepareSession(session_);
    ApplySettings(session_);
    window_ = std::make_unique<MainWindow>(session_, user_);
    window_->resize(1080, 720);  // Whatever the screen of the test is.
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    scene_ = folder_.Write(u"Scene.sit"_s, EncodedScene());
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return FindIn<Widget>(*window_, name);
  }
  QString Panel(int number) {
    return Find<QLabel>(("StatusBar1Panel" + std::to_string(number)).c_str()).text();
  }
  PicbufWidget& Picture() { return window_->View().Picture(); }
  void Hover(int x, int y) {
    const QPointF at(x, y);
    QMouseEvent move(QEvent::MouseMove, at, Picture().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&Picture(), &move);
  }
  QRgb ShownAt(int x, int y) { return Picture().grab(QRect(x, y, 1, 1)).toImage().pixel(0, 0); }
  QRgb ColourOf(int column, int row) {
    const std::uint8_t index =
        session_.Buffers.Picbuf1
            .Pixels()[static_cast<std::size_t>(row) * kSitWidth + static_cast<std::size_t>(column)];
    const Colour colour = session_.Palettes.CurrentPalette[index];
    return qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour));
  }
  void Trigger(const char* action) { Find<QAction>(action).trigger(); }
  bool IsShown(const char* name) { return Find<QWidget>(name).isVisible(); }
  ScriptedDialogs& UseDialogs() {
    auto dialogs = std::make_unique<ScriptedDialogs>(scene_);
    ScriptedDialogs& used = *dialogs;
    window_->SetDialogs(std::move(dialogs));
    return used;
  }
  void Drop(const QMimeData& data) {
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    static_cast<QObject&>(*window_).event(&drop);
  }

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  Progress quiet_;
  std::unique_ptr<MainWindow> window_;
  QString scene_;
};

}  // namespace tessa::testing
