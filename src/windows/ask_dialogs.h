#pragma once

#include "core/dialogs.h"

class QWidget;

namespace tessa {

/// Asks with the platform's own dialogs, modal to a window.
class WindowDialogs : public Dialogs {
 public:
  explicit WindowDialogs(QWidget* parent) : parent_(parent) {}
  std::optional<QString> AskOpenFile(const OpenFileQuestion& question) override;
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override;
  Answer AskYesNoCancel(const QString& text) override;
  std::optional<QString> AskText(const QString& prompt) override;

 private:
  QWidget* parent_;
};

}  // namespace tessa
