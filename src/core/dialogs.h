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

enum class MessageButtons { kOk, kOkCancel, kYesNo, kYesNoCancel };
enum class MessageIcon { kQuestion, kStop, kWarning, kInformation };

/// A message box. Plain text; title and text may hold line breaks.
struct Message {
  QString Title;
  QString Text;
  MessageButtons Buttons = MessageButtons::kOk;
  MessageIcon Icon = MessageIcon::kInformation;
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
  /// Path to write to, overwriting already agreed to, or nothing when the user cancelled.
  virtual std::optional<QString> AskSaveFile(const SaveFileQuestion& question) = 0;
  virtual Answer AskYesNoCancel(const QString& text) = 0;
  /// Shows the message until one of its buttons is chosen; "OK" counts as yes, closing the box as
  /// its last button.
  virtual Answer ShowMessage(const Message& message) { return AskYesNoCancel(message.Text); }
  /// A line of text, or nothing when the user cancelled.
  virtual std::optional<QString> AskText(const QString& prompt) = 0;
  /// The same under a title of its own.
  virtual std::optional<QString> AskTitledText(const QString& title, const QString& prompt) {
    return AskText(title + QStringLiteral("\n\n") + prompt);
  }
};

}  // namespace tessa
