#pragma once

#include <QMessageBox>
#include <memory>

#include "core/dialogs.h"
#include "core/language_strings.h"

class QWidget;

namespace tessa {

/// Asks with the platform's own dialogs, modal to a window. Texts are shown letter for letter,
/// whatever they look like.
class WindowDialogs : public Dialogs {
 public:
  /// Both have to live longer.
  WindowDialogs(QWidget* parent, const Strings& words) : parent_(parent), words_(words) {}
  std::optional<QString> AskOpenFile(const OpenFileQuestion& question) override;
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override;
  Answer AskYesNoCancel(const QString& text) override;
  Answer ShowMessage(const Message& message) override;
  std::optional<QString> AskText(const QString& prompt) override;
  std::optional<QString> AskTitledText(const QString& title, const QString& prompt) override;

 private:
  bool AgreesToReplace(const QString& path) const;

  QWidget* parent_;
  const Strings& words_;
};

/// A message box with plain text and buttons in the present language, not yet shown.
std::unique_ptr<QMessageBox> PlainMessageBox(QWidget* parent, const QString& text,
                                             QMessageBox::StandardButtons buttons,
                                             const Strings& words);

}  // namespace tessa
