#include <QListWidget>
#include <QStatusBar>
#include <cmath>

#include "core/units.h"
#include "open/load_dialog.h"
#include "test_main_window.h"
#include "view/range_entry.h"
#include "view/zoom.h"
#include "windows/save_sequence_dialog.h"

namespace tessa::testing {
namespace {

TEST_F(MainWindowTest, IsEmptyUntilAnImageOpensAndAgainWhenItIsClosed) {
  const auto expectEmpty = [this](const QString& title) {
    EXPECT_EQ(window_->windowTitle(), title);
    EXPECT_TRUE(IsShown("SSPanel9"));
    EXPECT_FALSE(Picture().isVisible() || IsShown("SSPanel8"));
    EXPECT_FALSE(Find<QAction>("mnuClose").isEnabled());
    for (int i = 1; i <= 6; ++i) {
      EXPECT_EQ(Panel(i), QString()) << i;
    }
    EXPECT_TRUE(session_.Image.CurrentFile.isEmpty());
  };
  expectEmpty(u"Corvane T-40 Viewer"_s);
  window_->OpenFile(scene_);
  EXPECT_EQ(window_->windowTitle(), u"Corvane T-40 Viewer - "_s + scene_.toUpper());
  EXPECT_EQ(Panel(4), u"Emissivity: 0.95"_s);
  EXPECT_EQ(Panel(5), u"Range: -40.0 to 120.0"_s);
  EXPECT_EQ(Panel(6), scene_.toUpper());
  EXPECT_FALSE(IsShown("SSPanel9"));
  EXPECT_EQ(Picture().size(), QSize(640, 480));
  Trigger("mnuClose");
  expectEmpty(u"TessaView"_s);
}

TEST_F(MainWindowTest, EveryScreenPixelIsTheBufferPixelThatTheReadoutNames) {
  window_->OpenFile(scene_);
  for (const int level : {2, 3, 15}) {
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
          FormatTenths(static_cast<double>(DegreesAt(column, row))) + u" \u00B0C"_s;
      EXPECT_EQ(Panel(3), u"Temp: "_s + text);
      EXPECT_EQ(Panel(1), u"X:  "_s + QString::number(column + 1));
      EXPECT_EQ(Panel(2), u"Y:  "_s + QString::number(row + 1));
      EXPECT_EQ(QToolTip::text().trimmed(), text);
    }
    horizontal.setValue(horizontal.maximum());
    EXPECT_EQ(session_.Buffers.Picbuf1.ClientToImageX(Picture().width() - 1), kSitWidth - 1);
    EXPECT_EQ(session_.Buffers.Picbuf1.ClientToImageY(Picture().height() - 1), kSitHeight - 1);
  }
}

TEST_F(MainWindowTest, UnitAndPaletteReachTheWindow) {
  window_->OpenFile(scene_);
  Find<QRadioButton>("SSOption2").click();
  Hover(200, 100);
  EXPECT_TRUE(Panel(3).endsWith(u" \u00B0F"_s)) << Panel(3).toStdString();
  EXPECT_EQ(Panel(5), u"Range: -40.0 to 248.0"_s);
  auto& list = Find<QComboBox>("Combo1");
  ASSERT_EQ(list.count(), 18);
  list.setCurrentIndex(0);
  Q_EMIT list.activated(0);
  const QRgb grey = ShownAt(400, 200);
  EXPECT_EQ(qRed(grey), qBlue(grey));
  Trigger("btnTrend");
  EXPECT_EQ(qRed(ShownAt(400, 200)), 255 - qRed(grey));
  EXPECT_EQ(Find<QAction>("btnTrend").toolTip(), u"White Hot"_s);
}

TEST_F(MainWindowTest, TheFirstClickZoomsAtTheMiddleLaterOnesAtTheClickAndKeysToTheLimits) {
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
  for (const auto& [command, limit] : {std::pair{"ZoomIn", 15}, std::pair{"ZoomOut", 1}}) {
    for (int i = 0; i < 20; ++i) {
      Trigger(command);
    }
    EXPECT_EQ(session_.View.Zoom.ZoomLevel, limit);
    EXPECT_EQ(Find<QLabel>("SSPanel26").text(), u"Zoom: %1"_s.arg(limit));
  }
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

TEST_F(MainWindowTest, ASequenceIsSteppedByButtonsAndKeys) {
  window_->OpenFile(folder_.Write(u"steps.rti"_s, ThreeFrames()));
  EXPECT_TRUE(IsShown("Frame1"));
  auto& text = Find<QLabel>("Label7");
  EXPECT_EQ(text.text(), u"1 of 3"_s);
  EXPECT_FALSE(Find<QToolButton>("SSCommand6").isEnabled());
  Find<QToolButton>("SSCommand7").click();
  EXPECT_EQ(text.text(), u"2 of 3"_s);
  Trigger("FrameLast");
  EXPECT_EQ(text.text(), u"3 of 3"_s);
  EXPECT_FALSE(Find<QToolButton>("SSCommand7").isEnabled());
  EXPECT_FLOAT_EQ(session_.Image.TempGrid.At(5, 5), 30.0F);
  window_->OpenFile(scene_);
  EXPECT_FALSE(IsShown("Frame1"));
}

TEST_F(MainWindowTest, TheDialogListsFramesOfAPrefixMarksFilesThatAreThereAndConverts) {
  window_->OpenFile(folder_.Write(u"steps.rti"_s, ThreeFrames()));
  folder_.Write(u"Z002.BMP"_s, Bytes{1});
  SaveSequenceDialog dialog(session_, quiet_, window_.get());
  dialog.show();
  auto& prefix = FindIn<QLineEdit>(dialog, "Text1");
  auto& names = FindIn<QListWidget>(dialog, "List1");
  auto& convert = FindIn<QPushButton>(dialog, "SSCommand9");
  const auto& status = FindIn<QLabel>(dialog, "Label1");
  const auto list = [&](const QString& text) {
    prefix.clear();
    QTest::keyClicks(&prefix, text);
    QTest::keyClick(&prefix, Qt::Key_Return);
  };
  list(u"steps"_s);
  ASSERT_EQ(names.count(), 3);
  names.selectAll();
  QTest::keyClicks(&prefix, u"/"_s);
  EXPECT_EQ(status.text(), u"A prefix cannot contain / or \\."_s);
  EXPECT_EQ(names.count(), 0) << "a list is never that of another prefix";
  list(u"Z"_s);
  EXPECT_EQ(names.item(1)->text(), u"Z002.BMP   \u2013 will be replaced"_s);
  FindIn<QRadioButton>(dialog, "Option2").click();
  EXPECT_EQ(names.item(2)->text(), u"Z003.TXI"_s);
  FindIn<QPushButton>(dialog, "SSCommand2").click();
  convert.click();
  EXPECT_TRUE(QFile::exists(folder_.Path(u"Z003.TXI"_s)));
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(ReadAll(folder_.Path(u"Z002.BMP"_s)).size(), 1) << "was not in the list";
}

TEST_F(MainWindowTest, FitShowsAllOfAHugePictureUntilTheNextStepWhichIsTheLowestLevel) {
  QImage huge(3000, 2000, QImage::Format_RGB888);
  huge.fill(Qt::red);
  const QString path = folder_.Path(u"huge.jpeg"_s);
  ASSERT_TRUE(huge.save(path, "JPEG"));
  window_->OpenFile(path);
  ASSERT_EQ(session_.Image.ImageWidth, 3000) << "the long form of the ending counts";
  const auto scrollBars = [&] { return IsShown("HScroll1") || IsShown("VScroll1"); };
  EXPECT_TRUE(scrollBars());
  Trigger("ZoomFit");
  EXPECT_FALSE(scrollBars());
  const QSize canvas = Picture().parentWidget()->size();
  EXPECT_GE(Picture().width(), canvas.width() - 1);
  EXPECT_LE(Picture().height(), canvas.height());
  Hover(Picture().width() - 1, Picture().height() - 1);
  EXPECT_NEAR(session_.Cursor.LastX, 3000, 8);
  window_->resize(900, 640);
  QCoreApplication::processEvents();
  EXPECT_FALSE(scrollBars()) << "follows the window";
  Trigger("ZoomIn");
  EXPECT_EQ(session_.Buffers.Picbuf1.ZoomDenominator, 2.0);
}

TEST_F(MainWindowTest, ArrowKeysPanThePicture) {
  window_->OpenFile(scene_);
  EXPECT_EQ(window_->focusWidget(), &Picture());
  QTest::keyClick(&Picture(), Qt::Key_Equal);
  QTest::keyClick(&Picture(), Qt::Key_Equal);
  ASSERT_EQ(session_.View.Zoom.ZoomLevel, 4);
  auto& horizontal = Find<QScrollBar>("HScroll1");
  const int before = horizontal.value();
  QTest::keyClick(&Picture(), Qt::Key_Right);
  EXPECT_GT(horizontal.value(), before);
  QTest::keyClick(&Picture(), Qt::Key_Left);
  EXPECT_EQ(horizontal.value(), before);
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 4) << "arrows pan only";
}

TEST_F(MainWindowTest, TheReadoutFollowsAMovingPictureAndGoesWithTheCursor) {
  window_->OpenFile(scene_);
  window_->View().SetZoom(8);
  QCursor::setPos(Picture().mapToGlobal(QPoint(100, 100)));
  QTest::mouseMove(&Picture(), QPoint(100, 100));
  QTest::qWait(10);
  ASSERT_TRUE(Picture().underMouse());
  const QString before = Panel(2);
  auto& vertical = Find<QScrollBar>("VScroll1");
  vertical.setValue(vertical.value() + 10);
  EXPECT_NE(Panel(2), before);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&Picture(), &leave);
  EXPECT_EQ(Panel(1) + Panel(2) + Panel(3), QString());
  Hover(100, 100);
  EXPECT_FALSE(Panel(3).isEmpty()) << "the same position must show again after a leave";
}

TEST_F(MainWindowTest, ADropOpensAFileAloneAndTheButtonsOfferTheirKinds) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(folder_.Path(QString()))});
  Drop(data);
  EXPECT_TRUE(session_.Image.CurrentFile.isEmpty());
  EXPECT_EQ(session_.View.Notice.Kind, NoticeKind::kFailed);
  ScriptedDialogs& dialogs = UseDialogs();
  dialogs.AskedFilter = -1;
  Find<QPushButton>("BlankOpenButton").click();
  EXPECT_EQ(dialogs.AskedFilter, kAllImagesFilter);
  EXPECT_EQ(session_.Image.CurrentFilePath, scene_);
  Find<QToolButton>("btnOpenImage").click();
  EXPECT_EQ(dialogs.AskedFilter, 4) << "of the image that is open";
  Trigger("mnuClose");
  data.setUrls({QUrl::fromLocalFile(scene_)});
  Drop(data);
  EXPECT_EQ(session_.Image.CurrentFilePath, scene_);
}

TEST_F(MainWindowTest, ALanguageReachesEveryOpenWindow) {
  session_.Words.ReadTable(WordTable());
  window_->OpenFile(scene_);
  session_.Words.SetLanguage(1);
  Find<QCheckBox>("chkLang").setChecked(true);
  EXPECT_FALSE(Find<QCheckBox>("chkLang").isChecked());
  EXPECT_TRUE(Find<QMenu>("mnuFile").title().remove(QLatin1Char('&')) == u"Datei"_s);
  EXPECT_TRUE(Panel(4).startsWith(u"Emissionsgrad: 0.95"_s));
  // The toolkit's own words follow as well.
  EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Abbrechen"_s);
  window_->OpenFile(folder_.Write(u"steps.rti"_s, ThreeFrames()));
  EXPECT_EQ(Find<QLabel>("ssMemo").text(), u"Bildanzahl: 3"_s);
  session_.Words.SetLanguage(0);
  Find<QCheckBox>("chkLang").setChecked(true);
  EXPECT_EQ(Find<QLabel>("Label7").text(), u"1 of 3"_s);
  EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Cancel"_s);
}

TEST_F(MainWindowTest, TheRangePanelWorksByKeyboard) {
  window_->OpenFile(scene_);
  auto& maximum = Find<QLineEdit>("Text2");
  maximum.setFocus();
  maximum.selectAll();
  QTest::keyClicks(&maximum, u"40"_s);
  QTest::keyClick(&maximum, Qt::Key_Return);
  EXPECT_EQ(session_.Range.RangeMaxValue(), 40.0);
  EXPECT_EQ(maximum.text(), u"40.0"_s);
  auto& slider = Find<QWidget>("RangeV");
  QWidget* const upper = slider.childAt(slider.width() / 2, 0) != nullptr
                             ? slider.childAt(slider.width() / 2, 0)
                             : slider.findChildren<QWidget*>().constLast();
  upper->setFocus();
  const double before = session_.Range.RangeMaxValue();
  QTest::keyClick(upper, Qt::Key_Up);
  EXPECT_GT(session_.Range.RangeMaxValue(), before);
  EXPECT_EQ(session_.Image.SitScaleMax, static_cast<float>(session_.Range.RangeMaxValue()));
  EXPECT_EQ(session_.View.Zoom.ZoomLevel, 2) << "the thumb keeps its keys to itself";
}

TEST_F(MainWindowTest, ThumbsFollowTheMouseAndItsDirectionChoosesBetweenTwoThatLieOverEachOther) {
  window_->OpenFile(scene_);
  auto& slider = Find<QWidget>("RangeV");
  const auto drag = [](QWidget* thumb, int distance) {
    const QPoint middle = thumb->rect().center();
    QTest::mousePress(thumb, Qt::LeftButton, Qt::NoModifier, middle);
    const QPointF to = middle + QPoint(0, distance);
    QMouseEvent move(QEvent::MouseMove, to, thumb->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(thumb, &move);
    QTest::mouseRelease(thumb, Qt::LeftButton);
  };
  QWidget* const lower = slider.findChildren<QWidget*>().constFirst();
  drag(lower, -2000);
  EXPECT_LT(session_.Range.RangeMinValue(), session_.Range.RangeMaxValue()) << "never past it";
  for (const int direction : {1, -1}) {
    EnterRangeTexts(u"25"_s, u"25"_s, session_.View);
    Find<QPushButton>("Command1").click();
    QWidget* const top = slider.childAt(slider.width() / 2, lower->geometry().center().y());
    ASSERT_NE(top, nullptr);
    drag(top, 40 * direction);
    EXPECT_EQ(session_.Range.RangeMaxValue() > 25.5, direction < 0);
    EXPECT_EQ(session_.Range.RangeMinValue() < 24.5, direction > 0);
  }
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
