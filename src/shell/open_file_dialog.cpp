#include "shell/open_file_dialog.h"

#include <QFileDialog>

namespace tessa {

std::optional<QString> WindowDialogs::AskOpenFile(const OpenFileQuestion& question) {
  QString selected = question.Filters.value(question.FilterIndex - 1);
  const QString path = QFileDialog::getOpenFileName(
      parent_, QString(), question.Folder, question.Filters.join(QStringLiteral(";;")), &selected);
  if (path.isEmpty()) {
    return std::nullopt;
  }
  return path;
}

}  // namespace tessa
