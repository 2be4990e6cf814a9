#include <QSignalSpy>

#include "core/viewer_ini.h"
#include "test_main_window.h"
#include "windows/preferences_dialog.h"

namespace tessa::testing {
namespace {

constexpr int kNeverSaved = -7;

class PreferencesTest : public ::testing::Test {
 protected:
  PreferencesTest()
      : session_({folder_.Path(u"App"_s), QStringLiteral(TESSA_BINARY_FOLDER)}),
        user_(folder_.Path(u"user.ini"_s)) {
    PrepareSession(session_);
    session_.Words.ReadTable(
        "id\tEnglish\tGerman\tSpanish\n"
        "177\tImages\tBilder\tim\u00E1genes\n"
        "225\tSave Changes\tSpeichern\tGuardar cambios\n");
    session_.Settings = {u"/data/Fotos/"_s, u"/data/Ziel"_s, 4, 2, 'C'};
    ApplySettings(session_);
    Reopen();
  }

  void Reopen() {
    dialog_ = std::make_unique<PreferencesDialog>(session_, user_, nullptr);
    dialog_->show();
  }
  template <typename Widget>
  Widget& Find(const char* name) {
    return FindIn<Widget>(*dialog_, name);
  }
  void Press(const char* button) { Find<QPushButton>(button).click(); }
  QComboBox& List(const char* name) { return Find<QComboBox>(name); }
  QString IniPath() const { return folder_.Path(u"App/Viewer2.ini"_s); }

  TestFolder folder_;
  Session session_;
  UserSettings user_;
  std::unique_ptr<PreferencesDialog> dialog_;
};

TEST_F(PreferencesTest, SaveWritesTheFiveLinesInTheTrueCase) {
  EXPECT_EQ(Find<QLineEdit>("SSPanel2").text(), u"  /DATA/ZIEL/"_s);
  ASSERT_EQ(List("Combo2").count(), 7);
  EXPECT_EQ(List("Combo2").currentText(), u"TXI Images"_s);
  EXPECT_EQ(List("Combo1").currentText(), u"SHINE"_s);
  EXPECT_TRUE(Find<QRadioButton>("SSOption1").isChecked());
  QSignalSpy saved(dialog_.get(), &PreferencesDialog::Saved);
  List("Combo2").setCurrentIndex(6);
  List("Combo1").setCurrentIndex(10);
  Find<QRadioButton>("SSOption2").click();
  List("cboLanguage").setCurrentIndex(2);
  Press("Command1");
  EXPECT_EQ(ReadAll(IniPath()), QByteArray("/data/Fotos/\n/data/Ziel/\n 6 \n 10 \nF\n"));
  EXPECT_EQ(saved.count(), 1);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(session_.Image.ImageKind, KindRti);
  EXPECT_EQ(session_.View.PaletteSelection, 10);
  EXPECT_FALSE(session_.View.CelsiusSelected);
  EXPECT_EQ(user_.Language(kNeverSaved), 2);

  session_.Settings = ReadViewerIni(IniPath());
  Reopen();
  EXPECT_EQ(Find<QLineEdit>("SSPanel10").text(), u"  /DATA/FOTOS/"_s);
  EXPECT_EQ(List("Combo2").currentIndex(), 6);
}

TEST_F(PreferencesTest, AChosenFolderKeepsItsCaseAndItsFinalBlank) {
  const QString folder = folder_.Path(u"Urlaub 2026 "_s);
  ASSERT_TRUE(QDir().mkpath(folder));
  // The chooser runs an event loop of its own.
  QTimer::singleShot(0, dialog_.get(), [&folder] {
    auto* const chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(chooser, nullptr);
    chooser->selectFile(folder);
    static_cast<QDialog*>(chooser)->accept();
  });
  Press("Dir1");
  EXPECT_EQ(Find<QLineEdit>("SSPanel10").text(), u"  "_s + folder.toUpper() + QLatin1Char('/'));
  EXPECT_EQ(session_.Settings.LastFolder, u"/data/Fotos/"_s) << "not saved yet";
  Press("Command1");
  EXPECT_EQ(ReadViewerIni(IniPath()).LastFolder, folder + QLatin1Char('/'));
}

TEST_F(PreferencesTest, APickedLanguageShowsAtOnceAndReturnRestoresIt) {
  QSignalSpy changed(dialog_.get(), &PreferencesDialog::LanguageChanged);
  List("Combo2").setCurrentIndex(1);
  List("cboLanguage").setCurrentIndex(1);
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(session_.Words.Language(), 1);
  EXPECT_EQ(Find<QPushButton>("Command1").text().remove(QLatin1Char('&')), u"Speichern"_s);
  EXPECT_EQ(List("Combo2").currentText(), u"TIFF Bilder"_s);
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(changed.count(), 2);
  EXPECT_EQ(session_.Words.Language(), 0);
  EXPECT_EQ(user_.Language(kNeverSaved), kNeverSaved);
  EXPECT_EQ(session_.Settings.DefaultKind, KindTxi);
  EXPECT_FALSE(QFile::exists(IniPath()));
}

TEST_F(PreferencesTest, RestoreDefaultsChangesTheControlsAlone) {
  session_.Words.SetLanguage(1);
  Reopen();
  Press("Command2");
  EXPECT_EQ(Find<QLineEdit>("SSPanel2").toolTip(), folder_.Path(u"App/"_s));
  EXPECT_EQ(List("Combo2").currentIndex(), 0);
  EXPECT_EQ(List("Combo1").currentIndex(), 2);
  EXPECT_TRUE(Find<QRadioButton>("SSOption2").isChecked());
  EXPECT_EQ(session_.Words.Language(), 0);
  Press("Command3");
  EXPECT_EQ(session_.Words.Language(), 1);
  EXPECT_EQ(ViewerIniText(session_.Settings), u"/data/Fotos/\n/data/Ziel\n 4 \n 2 \nC\n"_s);
  EXPECT_FALSE(QFile::exists(IniPath()));
}

TEST_F(PreferencesTest, AnOpenImageKeepsItsKindAndFollowsPaletteAndUnit) {
  Progress progress;
  OpenPath(folder_.Write(u"Scene.sit"_s, EncodedScene()), session_, progress);
  const QString celsius = session_.Image.ScaleHighText;
  List("Combo2").setCurrentIndex(KindJpeg);
  List("Combo1").setCurrentIndex(9);
  Find<QRadioButton>("SSOption2").click();
  Press("Command1");
  EXPECT_EQ(session_.Image.ImageKind, KindSit);
  EXPECT_EQ(session_.Image.OfferedKind(), KindJpeg);
  EXPECT_EQ(session_.Palettes.CurrentPalette, session_.Palettes.PaletteTable[9]);
  EXPECT_NE(session_.Image.ScaleHighText, celsius);
}

}  // namespace
}  // namespace tessa::testing
