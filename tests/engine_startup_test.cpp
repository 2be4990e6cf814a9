#include "core/language_strings.h"
#include "core/user_settings.h"
#include "core/viewer_ini.h"
#include "open/command_line.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

TEST(ViewerIni, LimitsMissingExtraAndAbsurdLines) {
  using Case = std::tuple<const char*, int, int, char>;
  for (const auto& [lines, kind, palette, unit] :
       {Case{"/A/;/B/; 3 ; 10 ;C", 3, 10, 'C'}, Case{"/A/;/B/;9;11;c", 6, 0, 'F'},
        Case{"/A/;/B/;-4;-1;F", 0, -1, 'F'}, Case{"/A/;/B/;2.5;9.5;K", 2, 10, 'F'},
        Case{"/A/;/B/;word;1e30;", 0, 0, 'F'}, Case{"/A/", 0, 0, 'F'}, Case{"", 0, 0, 'F'},
        Case{"/A/;/B/;1;2;C;more", 1, 2, 'C'}}) {
    const Settings settings =
        ParseViewerIni(QString::fromLatin1(lines).split(QLatin1Char(';'), Qt::KeepEmptyParts));
    EXPECT_EQ(settings.DefaultKind, kind) << lines;
    EXPECT_EQ(settings.DefaultPalette, palette) << lines;
    EXPECT_EQ(settings.DefaultUnits, unit) << lines;
    EXPECT_EQ(settings.LastFolder, *lines == '\0' ? QString() : u"/A/"_s) << lines;
  }
}

TEST(ViewerIni, WrittenLinesKeepTheCaseOfPathsAndReadBack) {
  const TestFolder folder;
  const QString path = folder.Path(kViewerIniName);
  const Settings written{u"/home/Ulla/Wärme/"_s, u"/tmp/X/"_s, 5, 7, 'C'};
  WriteViewerIni(path, written);
  EXPECT_EQ(ReadAll(path), u"/home/Ulla/Wärme/\n/tmp/X/\n 5 \n 7 \nC\n"_s.toUtf8());
  const Settings read = ReadViewerIni(path);
  EXPECT_EQ(read.LastFolder, written.LastFolder);
  EXPECT_EQ(read.DefaultPalette, 7);
  EXPECT_EQ(ReadViewerIni(folder.Path(u"none"_s)).DefaultUnits, 'F');
}

TEST(Language, ComesFromTheStoreAndOtherwiseFromTheLocale) {
  const TestFolder folder;
  UserSettings settings(folder.Path(u"store.ini"_s));
  EXPECT_EQ(LanguageAtStart(settings, u"de_AT"_s), 1);
  EXPECT_EQ(LanguageAtStart(settings, u"es_MX"_s), 2);
  EXPECT_EQ(LanguageAtStart(settings, u"fr_FR"_s), 0);
  settings.SetLanguage(2);
  EXPECT_EQ(LanguageAtStart(settings, u"de_DE"_s), 2);
}

TEST(Language, TheTableHasEveryTextInThreeLanguages) {
  Strings words;
  words.ReadTable(WordTable());
  for (int language = 0; language < 3; ++language) {
    words.SetLanguage(language);
    for (int id = 101; id <= 323; ++id) {
      if (id != 144 && id != 236) {  // There are no such texts.
        EXPECT_FALSE(words.LangString(id, "").isEmpty()) << id << " in language " << language;
      }
    }
  }
  words.SetLanguage(0);
  EXPECT_EQ(words.LangString(104, ""), u"Already Exisits"_s);
  words.SetLanguage(3);
  EXPECT_EQ(words.LangString(213, "Range"), u"Range"_s);
}

TEST(RecentFiles, AreTenWithTheNewestFirstAndNoneTwice) {
  const TestFolder folder;
  UserSettings settings(folder.Path(u"store.ini"_s));
  for (int i = 0; i < 12; ++i) {
    settings.AddRecentFile(u"/a/%1.sit"_s.arg(i));
  }
  settings.AddRecentFile(u"/a/7.sit"_s);
  const QStringList files = settings.RecentFiles();
  ASSERT_EQ(files.size(), 10);
  EXPECT_EQ(files[0], u"/a/7.sit"_s);
  EXPECT_EQ(files[1], u"/a/11.sit"_s);
  EXPECT_EQ(files.count(u"/a/7.sit"_s), 1);
}

TEST(CommandLine, NamesOneFileWithOrWithoutQuotes) {
  const auto pending = [](std::initializer_list<const char*> arguments) {
    return PendingFileFromArguments({arguments.begin(), arguments.size()}).toStdString();
  };
  EXPECT_EQ(pending({}), "");
  EXPECT_EQ(pending({"a b.sit"}), "a b.sit");
  EXPECT_EQ(pending({"\"a b.sit\""}), "a b.sit");
  EXPECT_EQ(pending({"a", "b.sit"}), "a b.sit");
  EXPECT_EQ(pending({"\""}), "");
}

}  // namespace
}  // namespace tessa::testing
