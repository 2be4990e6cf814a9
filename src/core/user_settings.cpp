#include "core/user_settings.h"

#include <QLocale>

#include "core/path_bytes.h"

namespace tessa {
namespace {

const QString kLanguageKey = QStringLiteral("SOFTWARE/Language");
const QString kWindowPlaceKey = QStringLiteral("MainWindow/Place");
const QString kBrowserPlaceKey = QStringLiteral("Browser/Place");
const QString kCardFolderKey = QStringLiteral("Download/CardFolder");
const QString kRecentFilesKey = QStringLiteral("MainWindow/RecentFiles");
constexpr qsizetype kMostRecentFiles = 10;
constexpr int kUnset = -999;

}  // namespace

UserSettings::UserSettings()
    : store_(std::make_unique<QSettings>(QStringLiteral("TESSAN"), QStringLiteral("TESSAN"))) {}

UserSettings::UserSettings(const QString& iniFile)
    : store_(std::make_unique<QSettings>(iniFile, QSettings::IniFormat)) {}

int UserSettings::Language(int unset) const {
  bool isNumber = false;
  const int language = store_->value(kLanguageKey, unset).toInt(&isNumber);
  return isNumber ? language : unset;
}

void UserSettings::SetLanguage(int language) {
  store_->setValue(kLanguageKey, language);
}

QByteArray UserSettings::WindowPlace() const {
  return store_->value(kWindowPlaceKey).toByteArray();
}

void UserSettings::SetWindowPlace(const QByteArray& place) {
  store_->setValue(kWindowPlaceKey, place);
}

QByteArray UserSettings::BrowserPlace() const {
  return store_->value(kBrowserPlaceKey).toByteArray();
}

void UserSettings::SetBrowserPlace(const QByteArray& place) {
  store_->setValue(kBrowserPlaceKey, place);
}

QString UserSettings::CardFolder() const {
  return store_->value(kCardFolderKey).toString();
}

void UserSettings::SetCardFolder(const QString& folder) {
  if (ShownPath(folder) == folder) {  // As for files.
    store_->setValue(kCardFolderKey, folder);
  }
}

QStringList UserSettings::RecentFiles() const {
  return store_->value(kRecentFilesKey).toStringList().mid(0, kMostRecentFiles);
}

void UserSettings::AddRecentFile(const QString& path) {
  if (ShownPath(path) != path) {
    return;  // The store keeps texts only; what came back would be another name.
  }
  QStringList files = RecentFiles();
  files.removeAll(path);
  files.prepend(path);
  store_->setValue(kRecentFilesKey, files.mid(0, kMostRecentFiles));
}

int LanguageAtStart(const UserSettings& settings, const QString& localeName) {
  const int saved = settings.Language(kUnset);
  if (saved != kUnset) {
    return saved;
  }
  switch (QLocale(localeName).language()) {
    case QLocale::German:
      return 1;
    case QLocale::Spanish:
      return 2;
    default:
      return 0;
  }
}

}  // namespace tessa
