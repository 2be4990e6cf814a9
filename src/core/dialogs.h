#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tessa {

struct OpenFileQuestion {
  QString Folder;       // Where the dialog starts; exact path.
  QStringList Filters;  // "Text (*.EXT)" each.
  int FilterIndex = 1;  // 1-based entry that is preselected.
};

/// What the engine asks the user. Windows answer with real dialogs, tests with a script.
class Dialogs {
 public:
  Dialogs() = default;
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;
  virtual ~Dialogs() = default;

  /// Path of an existing file as it is on disk, or nothing when the user cancelled.
  virtual std::optional<QString> AskOpenFile(const OpenFileQuestion& question) = 0;
};

}  // namespace tessa
