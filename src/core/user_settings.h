#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <memory>

namespace tessa {

/// The per-user settings of the platform: the language, and what the windows remember from one
/// start to the next. A store that cannot be written is passed over in silence.
class UserSettings {
 public:
  /// The user's own store.
  UserSettings();
  /// A store in a file of its own, for tests.
  explicit UserSettings(const QString& iniFile);

  /// Number of the language, or `unset` when none was ever saved.
  int Language(int unset) const;
  void SetLanguage(int language);

  QByteArray WindowPlace() const;
  void SetWindowPlace(const QByteArray& place);

  /// Where the browser's window was.
  QByteArray BrowserPlace() const;
  void SetBrowserPlace(const QByteArray& place);

  /// The folder that the user took as the camera's memory card; empty when none was chosen.
  QString CardFolder() const;
  void SetCardFolder(const QString& folder);

  /// Exact paths of the files opened last, newest first, at most ten.
  QStringList RecentFiles() const;
  void AddRecentFile(const QString& path);

 private:
  std::unique_ptr<QSettings> store_;
};

/// The language to start with: the saved one, else German (1) or Spanish (2) when the user's locale
/// is, else English (0).
int LanguageAtStart(const UserSettings& settings, const QString& localeName);

}  // namespace tessa
