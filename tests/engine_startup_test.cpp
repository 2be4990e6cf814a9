#include <gtest/gtest.h>

#include "core/language_strings.h"
#include "core/user_settings.h"
#include "core/viewer_ini.h"
#include "open/command_line.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

struct IniCase {
  QStringList Lines;
  int Kind;
  int Palette;
  char Units;
};

TEST(ViewerIni, LimitsMissingExtraAndAbsurdLines) {
  const QString folder = QStringLiteral("/Pictures/Heat/");
  const std::vector<IniCase> cases = {
      {{folder, folder, QStringLiteral(" 3 "), QStringLiteral(" 10 "), QStringLiteral("C")},
       3,
       10,
       'C'},
      {{folder, folder, QStringLiteral("9"), QStringLiteral("11"), QStringLiteral("c")}, 6, 0, 'F'},
      {{folder, folder, QStringLiteral("-4"), QStringLiteral("-1"), QStringLiteral("F")},
       0,
       -1,
       'F'},
      {{folder, folder, QStringLiteral("2.5"), QStringLiteral("9.5"), QStringLiteral("K")},
       2,
       10,
       'F'},
      {{folder, folder, QStringLiteral("word"), QStringLiteral("1e30"), QString()}, 0, 0, 'F'},
      {{folder}, 0, 0, 'F'},
      {{}, 0, 0, 'F'},
      {{folder, folder, QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("C"),
        QStringLiteral("more")},
       1,
       2,
       'C'},
  };
  for (const IniCase& test : cases) {
    const Settings settings = ParseViewerIni(test.Lines);
    const std::string name = test.Lines.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(settings.DefaultKind, test.Kind) << name;
    EXPECT_EQ(settings.DefaultPalette, test.Palette) << name;
    EXPECT_EQ(settings.DefaultUnits, test.Units) << name;
    EXPECT_EQ(settings.LastFolder, test.Lines.value(0)) << name;
  }
}

TEST(ViewerIni, WrittenLinesKeepTheCaseOfPathsAndReadBack) {
  const TestFolder folder;
  const QString path = folder.Path(kViewerIniName);
  const Settings written{QStringLiteral("/home/Ulla/Wärme/"), QStringLiteral("/tmp/X/"), 5, 7, 'C'};
  WriteViewerIni(path, written);
  EXPECT_EQ(ReadAll(path), QStringLiteral("/home/Ulla/Wärme/\n/tmp/X/\n 5 \n 7 \nC\n").toUtf8());
  const Settings read = ReadViewerIni(path);
  EXPECT_EQ(read.LastFolder, written.LastFolder);
  EXPECT_EQ(read.DefaultPalette, 7);
  EXPECT_EQ(ReadViewerIni(folder.Path(QStringLiteral("none"))).DefaultUnits, 'F');
}

TEST(Language, ComesFromTheStoreAndOtherwiseFromTheLocale) {
  const TestFolder folder;
  UserSettings settings(folder.Path(QStringLiteral("store.ini")));
  EXPECT_EQ(LanguageAtStart(settings, QStringLiteral("de_AT")), 1);
  EXPECT_EQ(LanguageAtStart(settings, QStringLiteral("es_MX")), 2);
  EXPECT_EQ(LanguageAtStart(settings, QStringLiteral("fr_FR")), 0);
  settings.SetLanguage(2);
  EXPECT_EQ(LanguageAtStart(settings, QStringLiteral("de_DE")), 2);
}

TEST(Language, TheTableHasEveryTextInThreeLanguages) {
  Strings words;
  words.ReadTable(ReadAll(QStringLiteral(TESSA_SOURCE_FOLDER "/resources/strings.tsv")));
  for (int language = 0; language < 3; ++language) {
    words.SetLanguage(language);
    for (int id = 101; id <= 323; ++id) {
      if (id != 144 && id != 236) {  // There are no such texts.
        EXPECT_FALSE(words.LangString(id, "").isEmpty()) << id << " in language " << language;
      }
    }
  }
  words.SetLanguage(0);
  EXPECT_EQ(words.LangString(104, ""), QStringLiteral("Already Exisits"));
  words.SetLanguage(3);
  EXPECT_EQ(words.LangString(213, "Range"), QStringLiteral("Range"));
}

TEST(RecentFiles, AreTenWithTheNewestFirstAndNoneTwice) {
  const TestFolder folder;
  UserSettings settings(folder.Path(QStringLiteral("store.ini")));
  for (int i = 0; i < 12; ++i) {
    settings.AddRecentFile(QStringLiteral("/a/%1.sit").arg(i));
  }
  settings.AddRecentFile(QStringLiteral("/a/7.sit"));
  const QStringList files = settings.RecentFiles();
  ASSERT_EQ(files.size(), 10);
  EXPECT_EQ(files[0], QStringLiteral("/a/7.sit"));
  EXPECT_EQ(files[1], QStringLiteral("/a/11.sit"));
  EXPECT_EQ(files.count(QStringLiteral("/a/7.sit")), 1);
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
