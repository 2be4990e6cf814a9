#include <QSignalSpy>

#include "core/program_version.h"
#include "core/viewer_ini.h"
#include "test_main_window.h"
#include "windows/about_dialog.h"
#include "windows/preferences_dialog.h"
#include "windows/splash_window.h"

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
  void OpenScene() {
    Progress progress;
    OpenPath(folder_.Write(u"Scene.sit"_s, EncodedScene()), session_, progress);
    ASSERT_EQ(session_.Image.ImageKind, KindSit);
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

TEST_F(PreferencesTest, ShowsTheSettingsWithThePathsInCapitals) {
  EXPECT_EQ(Find<QLineEdit>("SSPanel10").text(), u"  /DATA/FOTOS/"_s);
  EXPECT_EQ(Find<QLineEdit>("SSPanel2").text(), u"  /DATA/ZIEL/"_s);
  EXPECT_EQ(Find<QLineEdit>("SSPanel2").toolTip(), u"/data/Ziel/"_s);
  ASSERT_EQ(List("Combo2").count(), 7);
  EXPECT_EQ(List("Combo2").itemText(0), u"BMP Images"_s);
  EXPECT_EQ(List("Combo2").itemText(6), u"RTI Snapshots"_s);
  EXPECT_EQ(List("Combo2").currentText(), u"TXI Images"_s);
  ASSERT_EQ(List("Combo1").count(), 11);
  EXPECT_EQ(List("Combo1").itemText(10), u"HOT IRON"_s);
  EXPECT_EQ(List("Combo1").currentText(), u"SHINE"_s);
  const QImage swatch = List("Combo1").itemIcon(10).pixmap(72, 14).toImage();
  EXPECT_NE(swatch.pixelColor(2, 7), swatch.pixelColor(69, 7)) << "no gradient";
  EXPECT_TRUE(Find<QRadioButton>("SSOption1").isChecked());
  EXPECT_EQ(List("cboLanguage").currentText(), u"English"_s);
}

TEST_F(PreferencesTest, SaveWritesTheFiveLinesInTheTrueCase) {
  QSignalSpy saved(dialog_.get(), &PreferencesDialog::Saved);
  List("Combo2").setCurrentIndex(6);
  List("Combo1").setCurrentIndex(10);
  Find<QRadioButton>("SSOption2").click();
  Press("Command1");
  EXPECT_EQ(ReadAll(IniPath()), QByteArray("/data/Fotos/\n/data/Ziel/\n 6 \n 10 \nF\n"));
  EXPECT_EQ(saved.count(), 1);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(session_.Image.ImageKind, KindRti);
  EXPECT_EQ(session_.Image.PreviousKindIndex, 7);
  EXPECT_EQ(LoadButtonTip(session_.Image, session_.Words), u"Load Image RTI Images"_s);
  EXPECT_EQ(session_.View.PaletteSelection, 10);
  EXPECT_FALSE(session_.View.CelsiusSelected);
  EXPECT_EQ(user_.Language(kNeverSaved), 0);

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
  EXPECT_EQ(WithoutMark(Find<QPushButton>("Command1").text()), u"Speichern"_s);
  EXPECT_EQ(List("Combo2").currentText(), u"TIFF Bilder"_s);
  EXPECT_EQ(List("cboLanguage").itemText(0), u"English"_s);
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(changed.count(), 2);
  EXPECT_EQ(session_.Words.Language(), 0);
  EXPECT_EQ(user_.Language(kNeverSaved), kNeverSaved);
  EXPECT_EQ(session_.Settings.DefaultKind, KindTxi);
  EXPECT_FALSE(QFile::exists(IniPath()));
}

TEST_F(PreferencesTest, ASavedLanguageStaysAndOneThatIsNotOfferedIsKept) {
  session_.Settings.TargetFolder.clear();
  Reopen();
  EXPECT_EQ(Find<QLineEdit>("SSPanel2").text(), QString()) << "an empty path stays empty";
  List("cboLanguage").setCurrentIndex(2);
  Press("Command1");
  EXPECT_TRUE(ReadAll(IniPath()).startsWith("/data/Fotos/\n\n 4 \n"));
  EXPECT_EQ(session_.Words.Language(), 2);
  EXPECT_EQ(user_.Language(kNeverSaved), 2);
  EXPECT_TRUE(LoadButtonTip(session_.Image, session_.Words).endsWith(u"TXI im\u00E1genes"_s));
  session_.Words.SetLanguage(3);
  Reopen();
  EXPECT_EQ(List("cboLanguage").currentIndex(), -1);
  Press("Command1");
  EXPECT_EQ(user_.Language(kNeverSaved), 3);
}

TEST_F(PreferencesTest, RestoreDefaultsChangesTheControlsAlone) {
  session_.Words.SetLanguage(1);
  Reopen();
  Press("Command2");
  const QString programFolder = folder_.Path(u"App/"_s);
  EXPECT_EQ(Find<QLineEdit>("SSPanel10").text(), u"  "_s + programFolder.toUpper());
  EXPECT_EQ(Find<QLineEdit>("SSPanel2").toolTip(), programFolder);
  EXPECT_EQ(List("Combo2").currentIndex(), 0);
  EXPECT_EQ(List("Combo1").currentIndex(), 2);
  EXPECT_TRUE(Find<QRadioButton>("SSOption2").isChecked());
  EXPECT_EQ(session_.Words.Language(), 0);
  Press("Command3");
  EXPECT_EQ(session_.Words.Language(), 1);
  EXPECT_EQ(ViewerIniText(session_.Settings), u"/data/Fotos/\n/data/Ziel\n 4 \n 2 \nC\n"_s);
  EXPECT_TRUE(session_.View.CelsiusSelected);
  EXPECT_FALSE(QFile::exists(IniPath()));
}

TEST_F(PreferencesTest, AFolderThatCannotBeWrittenIsPassedOver) {
  // The folder's name is taken by a file.
  const Bytes none;
  folder_.Write(u"App"_s, none);
  List("Combo2").setCurrentIndex(5);
  Press("Command1");
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(session_.Settings.DefaultKind, KindTmp);
  EXPECT_EQ(session_.Settings.TargetFolder, u"/data/Ziel/"_s);
  EXPECT_EQ(session_.Steps.Failures().size(), 1U);
}

TEST_F(PreferencesTest, AnOpenImageKeepsItsKindAndFollowsPaletteAndUnit) {
  OpenScene();
  const QString celsius = session_.Image.ScaleHighText;
  List("Combo2").setCurrentIndex(KindJpeg);
  List("Combo1").setCurrentIndex(9);
  Find<QRadioButton>("SSOption2").click();
  Press("Command1");
  EXPECT_EQ(session_.Image.ImageKind, KindSit);
  EXPECT_EQ(session_.Image.OfferedKind(), KindJpeg);
  EXPECT_EQ(LoadButtonTip(session_.Image, session_.Words), u"Load Image JPEG Images"_s);
  EXPECT_EQ(session_.Palettes.PaletteIndex, 9);
  EXPECT_EQ(session_.Palettes.CurrentPalette, session_.Palettes.PaletteTable[9]);
  EXPECT_EQ(session_.Image.DisplayUnits, 'F');
  EXPECT_NE(session_.Image.ScaleHighText, celsius);
}

TEST_F(PreferencesTest, NoSelectedPaletteLeavesThatOfTheOpenImage) {
  OpenScene();
  SelectPalette(7, session_.Image, session_.View, session_.Palettes, session_.Buffers);
  session_.Settings.DefaultPalette = -1;
  Reopen();
  EXPECT_EQ(List("Combo1").currentIndex(), -1);
  Press("Command1");
  EXPECT_EQ(session_.Palettes.PaletteIndex, 7);
  EXPECT_EQ(session_.View.PaletteSelection, 7);
  EXPECT_EQ(session_.Settings.DefaultPalette, 0);
}

TEST_F(PreferencesTest, EveryCaptionHasALetterOfItsOwn) {
  QStringList letters;
  for (const QAbstractButton* button : dialog_->findChildren<QAbstractButton*>()) {
    letters.append(LetterOf(button->text()));
  }
  for (const QLabel* label : dialog_->findChildren<QLabel*>()) {
    letters.append(LetterOf(label->text()));
  }
  letters.removeAll(QString());
  EXPECT_EQ(letters.size(), 10);
  EXPECT_EQ(letters.removeDuplicates(), 0);
}

TEST(About, NamesProgramAndVersionAndClosesWithEnter) {
  Strings words;
  AboutDialog about(words, nullptr);
  about.show();
  EXPECT_EQ(FindIn<QLabel>(about, "Label1").text(), u"Version "_s + ProgramVersion());
  EXPECT_EQ(ProgramVersion().split(QLatin1Char('.')).size(), 3);
  EXPECT_EQ(about.focusWidget(), &FindIn<QPushButton>(about, "Command1"));
  QTest::keyClick(about.focusWidget(), Qt::Key_Return);
  EXPECT_FALSE(about.isVisible());
}

TEST(Splash, FollowsTheLanguage) {
  Strings words;
  words.ReadTable("296\tVersion\tVersion\tVersi\u00F3n\n188\tMaker\tHersteller\tFabricante\n");
  SplashWindow splash(words);
  EXPECT_EQ(splash.windowTitle(), u"Maker"_s);
  words.SetLanguage(2);
  splash.SetWindowLanguage();
  EXPECT_EQ(splash.windowTitle(), u"Fabricante"_s);
  EXPECT_EQ(FindIn<QLabel>(splash, "Label1").text(), u"Versi\u00F3n "_s + ProgramVersion());
}

}  // namespace
}  // namespace tessa::testing
