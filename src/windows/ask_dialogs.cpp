#include "windows/ask_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

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

std::optional<QString> WindowDialogs::AskSaveFile(const SaveFileQuestion& question) {
  if (!question.Refusal.isEmpty()) {
    QMessageBox refusal(QMessageBox::Warning, parent_->windowTitle(), question.Refusal,
                        QMessageBox::Ok, parent_);
    refusal.setTextFormat(Qt::PlainText);
    refusal.exec();
  }
  const QFileInfo suggestion(question.Suggestion);
  QFileDialog dialog(parent_, QString(), suggestion.absolutePath(),
                     question.Filters.join(QStringLiteral(";;")));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(question.DefaultEnding);
  dialog.selectFile(suggestion.fileName());
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
    return std::nullopt;
  }
  return dialog.selectedFiles().constFirst();
}

Answer WindowDialogs::AskYesNoCancel(const QString& text) {
  switch (QMessageBox::question(parent_, parent_->windowTitle(), text,
                                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    default:
      return Answer::kCancel;
  }
}

std::optional<QString> WindowDialogs::AskText(const QString& prompt) {
  bool accepted = false;
  const QString text = QInputDialog::getText(parent_, parent_->windowTitle(), prompt,
                                             QLineEdit::Normal, QString(), &accepted);
  return accepted ? std::optional(text) : std::nullopt;
}

}  // namespace tessa
