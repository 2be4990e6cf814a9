#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <cmath>
#include <functional>
#include <map>

#include "core/units.h"
#include "formats/frame_array.h"
#include "formats/sequence.h"
#include "formats/sit.h"
#include "test_files.h"
#include "view/image_tools.h"
#include "view/range_entry.h"
#include "view/zoom.h"
#include "widgets/picbuf_widget.h"
#include "windows/main_window.h"
#include "windows/save_sequence_dialog.h"
#include "windows/view_pict.h"

namespace tessa::testing {
namespace {

constexpr int kLastColumn = kSitWidth - 1;
constexpr int kLastRow = kSitHeight - 1;

/// Column / 10 degrees plus the row in hundredths: every position has its own temperature.
float DegreesAt(int column, int row) {
  const auto count = static_cast<std::int16_t>(column * 20 + row);
  return LinearCalibration{static_cast<float>(655.0 / 65536.0), -5.0F}.Degrees(count);
}

Bytes EncodedScene() {
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
  return EncodeSit(fields);
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

TEST_F(MainWindowTest, StartsEmptyAndOffersToOpenAnImage) {
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Corvane T-40 Viewer"));
  EXPECT_TRUE(Find<QWidget>("SSPanel9").isVisible());
  EXPECT_FALSE(Picture().isVisible());
  EXPECT_FALSE(Find<QWidget>("SSPanel8").isVisible());
  EXPECT_FALSE(Find<QAction>("mnuClose").isEnabled());
}

TEST_F(MainWindowTest, ShowsAnOpenedImageUnderItsUpperCasedName) {
  window_->OpenFile(scene_);
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Corvane T-40 Viewer - ") + scene_.toUpper());
  EXPECT_EQ(Panel(4), QStringLiteral("Emissivity: 0.95"));
  EXPECT_EQ(Panel(5), QStringLiteral("Range: -40.0 to 120.0"));
  EXPECT_EQ(Panel(6), scene_.toUpper());
  EXPECT_FALSE(Find<QWidget>("SSPanel9").isVisible());
  EXPECT_EQ(Picture().size(), QSize(640, 480));
}

TEST_F(MainWindowTest, EveryScreenPixelIsTheBufferPixelThatTheReadoutNames) {
  window_->OpenFile(scene_);
  for (const int level : {1, 2, 3, 5, 9, 15}) {
    window_->View().SetZoom(level);
    auto& horizontal = Find<QScrollBar>("HScroll1");
    auto& vertical = Find<QScrollBar>("VScroll1");
    horizontal.setValue(horizontal.maximum() / 3);
    vertical.setValue(vertical.maximum());
    const QSize size = Picture().size();
    for (const QPoint at : {QPoint(0, 0), QPoint(size.width() / 3, size.height() / 2),
                            QPoint(size.width() - 1, size.height() - 1)}) {
      Hover(at.x(), at.y());
      const int column = session_.Cursor.LastX - 1;
      const int row = session_.Cursor.LastY - 1;
      ASSERT_EQ(column, horizontal.value() + at.x() / level) << "level " << level;
      ASSERT_EQ(row, vertical.value() + at.y() / level) << "level " << level;
      EXPECT_EQ(ShownAt(at.x(), at.y()), ColourOf(column, row)) << "level " << level;
      const QString text =
          FormatTenths(static_cast<double>(DegreesAt(column, row))) + QStringLiteral(" \u00B0C");
      EXPECT_EQ(Panel(3), QStringLiteral("Temp: ") + text);
      EXPECT_EQ(Panel(1), QStringLiteral("X:  ") + QString::number(column + 1));
      EXPECT_EQ(Panel(2), QStringLiteral("Y:  ") + QString::number(row + 1));
      EXPECT_EQ(QToolTip::text().trimmed(), text);
    }
    if (horizontal.isVisible()) {
      horizontal.setValue(horizontal.maximum());
      EXPECT_EQ(session_.Buffers.Picbuf1.ClientToImageX(Picture().width() - 1), kLastColumn);
    }
    if (vertical.isVisible()) {
      EXPECT_EQ(session_.Buffers.Picbuf1.ClientToImageY(Picture().height() - 1), kLastRow);
    }
  }
}

TEST_F(MainWindowTest, FahrenheitReachesReadoutScaleAndRange) {
  window_->OpenFile(scene_);
  Find<QRadioButton>("SSOption2").click();
  Hover(200, 100);
  const double celsius = static_cast<double>(DegreesAt(100, 50));
  EXPECT_EQ(Panel(3), QStringLiteral("Temp: ") + FormatTenths(celsius * 1.8 + 32.0) +
                          QStringLiteral(" \u00B0F"));
  EXPECT_EQ(Panel(5), QStringLiteral("Range: -40.0 to 248.0"));
  EXPECT_EQ(session_.View.ScaleLabel[0], QStringLiteral("23.0"));
  EXPECT_EQ(session_.View.ScaleLabel[2], QStringLiteral("131.0"));
  Find<QRadioButton>("SSOption1").click();
  Hover(202, 100);
  EXPECT_TRUE(Panel(3).endsWith(QStringLiteral(" \u00B0C"))) << Panel(3).toStdString();
  EXPECT_EQ(session_.View.ScaleLabel[2], QStringLiteral("55.0"));
}

TEST_F(MainWindowTest, LeavingThePictureEmptiesTheReadout) {
  window_->OpenFile(scene_);
  Hover(50, 60);
  ASSERT_FALSE(Panel(3).isEmpty());
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&Picture(), &leave);
  EXPECT_EQ(Panel(1) + Panel(2) + Panel(3), QString());
  Hover(50, 60);
  EXPECT_FALSE(Panel(3).isEmpty()) << "the same position must show again after a leave";
}

TEST_F(MainWindowTest, PalettesRecolourWithoutTouchingTheIndices) {
  window_->OpenFile(scene_);
  const auto before = session_.Buffers.Picbuf1.Pixels();
  const std::vector<std::uint8_t> indices(before.begin(), before.end());
  auto& list = Find<QComboBox>("Combo1");
  ASSERT_EQ(list.count(), 18);
  list.setCurrentIndex(0);
  Q_EMIT list.activated(0);
  const QRgb grey = ShownAt(400, 200);
  EXPECT_EQ(qRed(grey), qBlue(grey));
  Trigger("btnTrend");
  EXPECT_EQ(qRed(ShownAt(400, 200)), 255 - qRed(grey));
  EXPECT_EQ(Find<QAction>("btnTrend").toolTip(), QStringLiteral("White Hot"));
  Trigger("btnTrend");
  EXPECT_EQ(ShownAt(400, 200), grey);
  EXPECT_EQ(Find<QAction>("btnTrend").toolTip(), QStringLiteral("Black Hot"));
  const auto after = session_.Buffers.Picbuf1.Pixels();
  EXPECT_TRUE(std::equal(indices.begin(), indices.end(), after.begin(), after.end()));
}

TEST_F(MainWindowTest, TheFirstClickZoomsAtTheMiddleAndLaterOnesAtTheClick) {
  window_->OpenFile(scene_);
  const QPoint at(100, 80);
  QTest::mouseClick(&Picture(), Qt::LeftButton, {}, at);
  ASSERT_EQ(session_.View.Zoom.ZoomLevel, 3);
  EXPECT_EQ(session_.View.Zoom.ZoomCentreX, 160);
  EXPECT_EQ(session_.View.Zoom.ZoomCentreY, 120);
  auto& horizontal = Find<QScrollBar>("HScroll1");
  EXPECT_EQ(horizontal.value(), std::lround(horizontal.maximum() / 2.0));
  const int column = session_.Buffers.Picbuf1.ClientToImageX(at.x());
  QTest::mouseClick(&Picture(), Qt::LeftButton, {}, at);
  EXPECT_EQ(session_.View.Zoom.ZoomCentreX, column);
  EXPECT_EQ(horizontal.value(), std::lround(column / 320.0 * horizontal.maximum()));
  QTest::mouseClick(&Picture(), Qt::RightButton, {}, at);
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 3);
}

TEST_F(MainWindowTest, ZoomKeysStopAtTheLimits) {
  window_->OpenFile(scene_);
  for (int i = 0; i < 20; ++i) {
    Trigger("ZoomIn");
  }
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 15);
  EXPECT_EQ(Find<QLabel>("SSPanel26").text(), QStringLiteral("Zoom: 15"));
  for (int i = 0; i < 20; ++i) {
    Trigger("ZoomOut");
  }
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 1);
  Trigger("ZoomFit");
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 2);
  EXPECT_FALSE(Find<QScrollBar>("HScroll1").isVisible());
}

TEST_F(MainWindowTest, ABrokenFileIsShownBlankAndTheNextOneOpensNormally) {
  const Bytes whole = EncodedScene();
  const QString cut =
      folder_.Write(QStringLiteral("cut.sit"), std::span(whole).first(kSitHeaderSize + 6400));
  window_->OpenFile(cut);
  EXPECT_TRUE(Picture().isVisible());
  Hover(10, 470);
  EXPECT_EQ(Panel(3), QStringLiteral("Temp: 0.0 \u00B0C"));
  window_->OpenFile(scene_);
  Hover(10, 470);
  EXPECT_EQ(Panel(3), QStringLiteral("Temp: ") +
                          FormatTenths(static_cast<double>(DegreesAt(5, 235))) +
                          QStringLiteral(" \u00B0C"));
}

TEST_F(MainWindowTest, ClosingEmptiesTheWindow) {
  window_->OpenFile(scene_);
  Trigger("mnuClose");
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("TessaView"));
  EXPECT_TRUE(Find<QWidget>("SSPanel9").isVisible());
  EXPECT_FALSE(Picture().isVisible());
  for (int i = 1; i <= 6; ++i) {
    EXPECT_EQ(Panel(i), QString()) << i;
  }
  EXPECT_TRUE(session_.Image.CurrentFile.isEmpty());
}

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

TEST_F(MainWindowTest, EveryCommandOfTheTableDoesItsWork) {
  auto owned = std::make_unique<ScriptedDialogs>(scene_);
  ScriptedDialogs& dialogs = *owned;
  window_->SetDialogs(std::move(owned));
  // Closes the modal window that the command opens, and tells which one it was.
  QString modal;
  const auto closeModal = [&] {
    QTimer::singleShot(0, [&] {
      if (QWidget* const open = QApplication::activeModalWidget()) {
        modal = open->objectName();
        open->close();
      }
    });
  };
  const ZoomState& zoom = session_.View.Zoom;
  std::map<std::string, std::function<bool()>> effects = {
      {"mnuReload", [&] { return session_.Cursor.LastX == -1; }},
      {"mnuClose", [&] { return session_.Image.CurrentFile.isEmpty(); }},
      {"mnusetup", [&] { return modal == QStringLiteral("CaptureSetup"); }},
      {"SSCommand1", [&] { return modal == QStringLiteral("CaptureSetup"); }},
      {"ToolRotation", [&] { return session_.View.RotationCaption == QStringLiteral("7"); }},
      {"ToolEdge", [&] { return session_.View.EdgeCaption == QStringLiteral("7"); }},
      {"mnubout", [&] { return modal == QStringLiteral("About"); }},
      {"mnuExit", [&] { return !window_->isVisible(); }},
      {"mnuSave", [&] { return dialogs.AskedSave == QStringLiteral("Scene.BMP"); }},
      {"btnSaveBMP", [&] { return dialogs.AskedSave == QStringLiteral("Scene.BMP"); }},
      {"mnuSaveJPG", [&] { return dialogs.AskedSave == QStringLiteral("Scene.JPG"); }},
      {"mnuSaveTXI", [&] { return dialogs.AskedSave.isEmpty(); }},  // Not for SIT images.
      {"mnucopyclip", [&] { return QApplication::clipboard()->image().width() == kSitWidth; }},
      {"mnucopyclip2", [&] { return QApplication::clipboard()->image().width() < 80; }},
      {"mnucopyclip3", [&] { return QApplication::clipboard()->image().width() > kSitWidth; }},
      {"btnTrend", [&] { return session_.View.TrendSaysWhiteHot; }},
      {"ZoomIn", [&] { return zoom.ZoomLevel == 3; }},
      {"ZoomOut", [&] { return zoom.ZoomLevel == 1; }},
      {"ZoomFit", [&] { return zoom.ZoomLevel == 2; }},
  };
  int filter = 0;
  for (const char* id : {"mnuLoadBmp", "mnuLoadTIFF", "mnuLoadJPEG", "mnuLoadIMG", "mnuLoadTxi",
                         "mnuLoadTMP", "mnuLoadRTI", "mnuLoadSEQ"}) {
    effects[id] = [&, wanted = ++filter] { return dialogs.AskedFilter == wanted; };
  }
  for (const MainWindow::Command& command : window_->Commands()) {
    const auto* const action = window_->findChild<QAction*>(QString::fromLatin1(command.Id));
    ASSERT_NE(action, nullptr) << command.Id;
    EXPECT_FALSE(action->text().isEmpty()) << command.Id;
    if (!command.Run) {
      EXPECT_FALSE(action->isEnabled()) << command.Id << " is a dead click";
      continue;
    }
    window_->OpenFile(scene_);
    Hover(5, 5);
    if (!action->isEnabled()) {  // What needs a visible-light picture has a test of its own.
      EXPECT_FALSE(effects.contains(command.Id)) << command.Id;
      continue;
    }
    ASSERT_TRUE(effects.contains(command.Id)) << command.Id << " has no check here";
    dialogs.AskedSave.clear();
    QApplication::clipboard()->clear();
    const std::string_view id = command.Id;
    if (id == "mnusetup" || id == "SSCommand1" || id == "mnubout") {
      closeModal();
    }
    modal.clear();
    Trigger(command.Id);
    EXPECT_TRUE(effects.at(command.Id)()) << command.Id;
    window_->show();
  }
}

TEST_F(MainWindowTest, EnteredToolNumbersStayInTheirRanges) {
  ScriptedDialogs dialogs{QString()};
  for (const char* answer : {"400", "-361", "text", "359.6"}) {
    dialogs.Text = QString::fromLatin1(answer);
    EnterRotationAngle(session_.View, dialogs, session_.Steps);
  }
  EXPECT_EQ(session_.View.RotationCaption, QStringLiteral("360"));
  dialogs.Text = QStringLiteral("11");
  EnterEdgeMagnitude(session_.View, dialogs, session_.Steps);
  EXPECT_EQ(session_.View.EdgeCaption, QStringLiteral("0"));
}

TEST_F(MainWindowTest, SlowDragsAddUpAtHighZoom) {
  window_->OpenFile(scene_);
  window_->View().SetZoom(15);
  auto& horizontal = Find<QScrollBar>("HScroll1");
  const int before = horizontal.value();
  for (int i = 0; i < 150; ++i) {
    Q_EMIT Picture().Dragged(QPoint(-1, 0));
  }
  EXPECT_EQ(horizontal.value(), before + 10);
}

TEST_F(MainWindowTest, ADragWithoutAFileIsPassedOver) {
  QMimeData data;
  data.setData(QStringLiteral("text/uri-list"), QByteArray());
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QObject& receiver = *window_;
  receiver.event(&enter);
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  receiver.event(&drop);
  EXPECT_TRUE(session_.Image.CurrentFile.isEmpty());
  data.setUrls({QUrl::fromLocalFile(scene_)});
  receiver.event(&drop);
  EXPECT_EQ(session_.Image.CurrentFilePath, scene_);
}

TEST_F(MainWindowTest, TypedTextStaysWhileOneLooksAroundAndGoesWithTheNextLoad) {
  window_->OpenFile(scene_);
  auto& maximum = Find<QLineEdit>("Text2");
  maximum.selectAll();
  QTest::keyClicks(&maximum, QStringLiteral("12.3"));
  window_->View().SetZoom(3);
  EXPECT_EQ(maximum.text(), QStringLiteral("12.3"));
  EXPECT_EQ(session_.View.RangeHighText, QStringLiteral("12.3"));
  window_->OpenFile(scene_);
  EXPECT_EQ(maximum.text(), QStringLiteral("55.0")) << "the record's text is the same as before";
}

TEST_F(MainWindowTest, ASequenceIsSteppedByButtonsKeysAndTheDialogConvertsIt) {
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
  window_->OpenFile(folder_.Write(QStringLiteral("steps.rti"), EncodeSnapshot(fields)));
  EXPECT_TRUE(Find<QWidget>("Frame1").isVisible());
  auto& text = Find<QLabel>("Label7");
  EXPECT_EQ(text.text(), QStringLiteral("1 of 3"));
  EXPECT_FALSE(Find<QToolButton>("SSCommand6").isEnabled());
  Find<QToolButton>("SSCommand7").click();
  EXPECT_EQ(text.text(), QStringLiteral("2 of 3"));
  Trigger("FrameLast");
  EXPECT_EQ(text.text(), QStringLiteral("3 of 3"));
  EXPECT_FALSE(Find<QToolButton>("SSCommand7").isEnabled());
  EXPECT_FLOAT_EQ(session_.Image.TempGrid.At(5, 5), 30.0F);

  SaveSequenceDialog dialog(session_, quiet_, window_.get());
  dialog.show();
  auto* const prefix = dialog.findChild<QLineEdit*>(QStringLiteral("Text1"));
  auto* const names = dialog.findChild<QListWidget*>(QStringLiteral("List1"));
  auto* const convert = dialog.findChild<QPushButton*>(QStringLiteral("SSCommand9"));
  EXPECT_FALSE(names->isEnabled());
  const auto* const status = dialog.findChild<QLabel*>(QStringLiteral("Label1"));
  EXPECT_EQ(status->text(), QStringLiteral("Type a prefix and press Enter to list the files."));
  QTest::keyClicks(prefix, QStringLiteral("steps"));
  QTest::keyClick(prefix, Qt::Key_Return);
  ASSERT_EQ(names->count(), 3);
  names->selectAll();
  QTest::keyClicks(prefix, QStringLiteral("/"));
  EXPECT_EQ(status->text(), QStringLiteral("A prefix cannot contain / or \\."));
  EXPECT_EQ(names->count(), 0);
  EXPECT_FALSE(convert->isVisible());
  folder_.Write(QStringLiteral("Z002.BMP"), Bytes{1});
  prefix->clear();
  QTest::keyClicks(prefix, QStringLiteral("Y"));
  QTest::keyClick(prefix, Qt::Key_Return);
  EXPECT_EQ(names->item(1)->text(), QStringLiteral("Y002.BMP"));
  QTest::keyClick(prefix, Qt::Key_Backspace);
  EXPECT_EQ(names->count(), 0) << "a list is never that of another prefix";
  QTest::keyClicks(prefix, QStringLiteral("Z"));
  QTest::keyClick(prefix, Qt::Key_Return);
  EXPECT_EQ(names->item(1)->text(), QStringLiteral("Z002.BMP   \u2013 will be replaced"));
  EXPECT_FALSE(convert->isVisible());
  dialog.findChild<QRadioButton*>(QStringLiteral("Option2"))->click();
  EXPECT_EQ(names->item(2)->text(), QStringLiteral("Z003.TXI"));
  dialog.findChild<QPushButton*>(QStringLiteral("SSCommand2"))->click();
  EXPECT_TRUE(convert->isVisible());
  convert->click();
  EXPECT_TRUE(QFile::exists(folder_.Path(QStringLiteral("Z003.TXI"))));
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(ReadAll(folder_.Path(QStringLiteral("Z002.BMP"))).size(), 1) << "was not in the list";
  window_->OpenFile(scene_);
  EXPECT_FALSE(Find<QWidget>("Frame1").isVisible());
}

TEST_F(MainWindowTest, TheLoadButtonOffersTheKindOfTheOpenImage) {
  auto owned = std::make_unique<ScriptedDialogs>(scene_);
  ScriptedDialogs& dialogs = *owned;
  window_->SetDialogs(std::move(owned));
  auto& button = Find<QToolButton>("btnOpenImage");
  EXPECT_EQ(button.toolTip(), QStringLiteral("Load Image SIT Images"));
  button.click();
  EXPECT_EQ(dialogs.AskedFilter, 4);
  session_.Image.UiLocked = true;
  dialogs.AskedFilter = 0;
  button.click();
  EXPECT_EQ(dialogs.AskedFilter, 0) << "locked";
}

TEST_F(MainWindowTest, ALanguageReachesEveryOpenWindow) {
  session_.Words.ReadTable(ReadAll(QStringLiteral(TESSA_SOURCE_FOLDER "/resources/strings.tsv")));
  window_->OpenFile(scene_);
  session_.Words.SetLanguage(1);
  Find<QCheckBox>("chkLang").setChecked(true);
  EXPECT_FALSE(Find<QCheckBox>("chkLang").isChecked());
  EXPECT_TRUE(Find<QMenu>("mnuFile").title().remove(QLatin1Char('&')) == QStringLiteral("Datei"));
  EXPECT_TRUE(Panel(4).startsWith(QStringLiteral("Emissionsgrad: 0.95")));
  EXPECT_EQ(Find<QPushButton>("Command2").text(), session_.Words.LangString(216, ""));
  // Each entry of a menu has a letter of its own.
  QSet<QString> letters;
  for (const QAction* action : Find<QMenu>("mnuFile").actions()) {
    const qsizetype mark = action->text().indexOf(QLatin1Char('&'));
    if (!action->isSeparator() && mark >= 0) {
      const QString letter = action->text().mid(mark + 1, 1).toUpper();
      EXPECT_FALSE(letters.contains(letter)) << action->text().toStdString();
      letters.insert(letter);
    }
  }
  EXPECT_GE(letters.size(), 5);
}

TEST_F(MainWindowTest, TheRangePanelWorksByKeyboard) {
  window_->OpenFile(scene_);
  auto& maximum = Find<QLineEdit>("Text2");
  maximum.setFocus();
  maximum.selectAll();
  QTest::keyClicks(&maximum, QStringLiteral("40"));
  QTest::keyClick(&maximum, Qt::Key_Return);
  EXPECT_EQ(session_.Range.RangeMaxValue(), 40.0);
  EXPECT_EQ(maximum.text(), QStringLiteral("40.0"));
  EXPECT_EQ(maximum.selectedText(), maximum.text());
  auto& slider = Find<QWidget>("RangeV");
  QWidget* const upper = slider.childAt(slider.width() / 2, 0) != nullptr
                             ? slider.childAt(slider.width() / 2, 0)
                             : slider.findChildren<QWidget*>().constLast();
  upper->setFocus();
  const double before = session_.Range.RangeMaxValue();
  QTest::keyClick(upper, Qt::Key_Up);
  EXPECT_GT(session_.Range.RangeMaxValue(), before);
  EXPECT_EQ(session_.Image.SitScaleMax, static_cast<float>(session_.Range.RangeMaxValue()));
  QTest::keyClick(upper, Qt::Key_PageDown);
  EXPECT_LT(session_.Range.RangeMaxValue(), before);
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 2) << "the thumb keeps its keys to itself";
}

TEST_F(MainWindowTest, ThumbsFollowTheMouseButNeverPassEachOther) {
  window_->OpenFile(scene_);
  auto& slider = Find<QWidget>("RangeV");
  QWidget* const lower = slider.findChildren<QWidget*>().constFirst();
  QTest::mousePress(lower, Qt::LeftButton);
  QMouseEvent move(QEvent::MouseMove, QPointF(10, -2000), lower->mapToGlobal(QPointF(10, -2000)),
                   Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(lower, &move);
  EXPECT_EQ(session_.Range.RangeMinValue(), session_.Range.RangeMaxValue());
  QTest::mouseRelease(lower, Qt::LeftButton);
  EXPECT_LT(session_.Range.RangeMinValue(), session_.Range.RangeMaxValue()) << "spread at rest";
  EXPECT_FLOAT_EQ(session_.Image.SitScaleMax, static_cast<float>(session_.Range.RangeMaxValue()));
}

TEST_F(MainWindowTest, TheDirectionOfADragChoosesBetweenThumbsThatLieOverEachOther) {
  window_->OpenFile(scene_);
  auto& slider = Find<QWidget>("RangeV");
  for (const int direction : {1, -1}) {
    EnterRangeTexts(QStringLiteral("25"), QStringLiteral("25"), session_.View);
    Find<QPushButton>("Command1").click();
    QWidget* const top = slider.childAt(
        slider.width() / 2, slider.findChildren<QWidget*>().constFirst()->geometry().center().y());
    ASSERT_NE(top, nullptr);
    const QPoint middle = top->rect().center();
    QTest::mousePress(top, Qt::LeftButton, Qt::NoModifier, middle);
    const QPointF to = middle + QPoint(0, 40 * direction);
    QMouseEvent move(QEvent::MouseMove, to, top->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(top, &move);
    QTest::mouseRelease(top, Qt::LeftButton);
    EXPECT_EQ(session_.Range.RangeMaxValue() > 25.5, direction < 0);
    EXPECT_EQ(session_.Range.RangeMinValue() < 24.5, direction > 0);
  }
}

TEST_F(MainWindowTest, TheSmallestSizeIsRestoredAfterAResize) {
  window_->resize(300, 200);
  QTest::qWait(400);
  EXPECT_GE(window_->width(), 670);
  EXPECT_GE(window_->height(), 572);
}

}  // namespace
}  // namespace tessa::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
