#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tessa {

struct OpenFileQuestion {
  QString Folder;       // Where the dialog starts; exact path.
  QStringList Filters;  // "Text (*.EXT)" each.
  int FilterIndex = 0;  // Entry of `Filters` that is preselected.
};

struct SaveFileQuestion {
  QString Suggestion;     // Full path; exact folder and stem.
  QStringList Filters;    // "Text (*.EXT)" each.
  QString DefaultEnding;  // Added to a name without one, before anything is overwritten.
  QString Refusal;        // Why the last answer would not do; plain, empty the first time.
};

enum class Answer { kYes, kNo, kCancel };

/// What the engine asks the user. Windows answer with real dialogs, tests with a script.
class Dialogs {
 public:
  Dialogs() = default;
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;
  virtual ~Dialogs() = default;

  /// Path of an existing file as it is on disk, or nothing when the user cancelled.
  virtual std::optional<QString> AskOpenFile(const OpenFileQuestion& question) = 0;
  /// Path to write to, overwriting already agreed to, or nothing when the user cancelled.
  virtual std::optional<QString> AskSaveFile(const SaveFileQuestion& question) = 0;
  virtual Answer AskYesNoCancel(const QString& text) = 0;
  /// A line of text, or nothing when the user cancelled.
  virtual std::optional<QString> AskText(const QString& prompt) = 0;
};

}  // namespace tessa
