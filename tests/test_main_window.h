#pragma once

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QFileInfo>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>

#include "formats/frame_array.h"
#include "formats/sequence.h"
#include "formats/sit.h"
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
  for (int row = 0; row < kSitHeight; ++row) {
    for (int column = 0; column < kSitWidth; ++column) {
      fields.Counts.push_back(static_cast<std::int16_t>(column * 20 + row));
    }
  }
  return fields;
}

inline Bytes EncodedScene() {
  return EncodeSit(SceneFields());
}

/// The scene with a photograph behind it.
inline Bytes EncodedSceneWithPhotograph() {
  SitFields fields = SceneFields();
  fields.SoundExt = std::string("   ").replace(2, 1, 1, '\x02');
  QImage photograph(64, 48, QImage::Format_RGB32);
  photograph.fill(Qt::blue);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  photograph.save(&buffer, "JPEG", 95);
  fields.Attachment.resize(8);
  fields.Attachment.insert(fields.Attachment.end(), bytes.begin(), bytes.end());
  return EncodeSit(fields);
}

/// Three frames of 10, 20 and 30 degrees, the first pixel at 0.
inline Bytes ThreeFrames() {
  SnapshotFields fields;
  fields.Header.Version = 1.0F;
  fields.Header.Frames = 3;
  fields.Header.Width = 8;
  fields.Header.Height = 8;
  fields.Header.ScaleMax = 50.0F;
  for (int frame = 1; frame <= 3; ++frame) {
    std::vector<std::int16_t> tenths(64, static_cast<std::int16_t>(2732 + 100 * frame));
    tenths[0] = 2732;
    fields.Frames.push_back(EncodeFrameArray(8, 8, tenths));
  }
  return EncodeSnapshot(fields);
}

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest()
      : session_(BuiltProgramFolder()), user_(folder_.Path(QStringLiteral("settings.ini"))) {
    session_.Settings.DefaultKind = KindSit;
    session_.Settings.DefaultUnits = 'C';
    session_.Settings.DefaultPalette = 10;
    PrepareSession(session_);
    ApplySettings(session_);
    window_ = std::make_unique<MainWindow>(session_, user_);
    window_->resize(1080, 720);  // Whatever the screen of the test is.
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    scene_ = folder_.Write(QStringLiteral("Scene.sit"), EncodedScene());
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    auto* const found = window_->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
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

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  Progress quiet_;
  std::unique_ptr<MainWindow> window_;
  QString scene_;
};

/// Answers every question for a file with one path and remembers what was asked.
class ScriptedDialogs : public Dialogs {
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
  QString Text = QStringLiteral("7");
  int AskedFilter = 0;
  QString AskedSave;

 private:
  QString answer_;
};

}  // namespace tessa::testing
