#include "windows/ask_dialogs.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QSet>
#include <QStandardPaths>
#include <array>

#include "widgets/mnemonics.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

/// Where the user's pictures are, for a user who has not opened any yet.
QString FolderToStartIn(const QString& lastFolder) {
  if (!lastFolder.trimmed().isEmpty() && QDir(lastFolder).exists()) {
    return lastFolder;
  }
  const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  return QDir(pictures).exists() ? pictures : QDir::homePath();
}

}  // namespace

std::unique_ptr<QMessageBox> PlainMessageBox(QWidget* parent, const QString& text,
                                             QMessageBox::StandardButtons buttons,
                                             const Strings& words) {
  auto box = std::make_unique<QMessageBox>(parent);
  box->setTextFormat(Qt::PlainText);  // Before the text, which would be laid out otherwise.
  box->setWindowTitle(parent == nullptr ? QString() : parent->windowTitle());
  box->setText(QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
  box->setStandardButtons(buttons);
  struct Caption {
    QMessageBox::StandardButton Button;
    int TextId;
    const char* DefaultText;
  };
  static constexpr std::array<Caption, 4> kCaptions = {{{QMessageBox::Yes, 281, "Yes"},
                                                        {QMessageBox::No, 196, "No"},
                                                        {QMessageBox::Cancel, 110, "Cancel"},
                                                        {QMessageBox::Ok, 200, "OK"}}};
  QSet<QChar> used;
  for (const Caption& caption : kCaptions) {
    if (QAbstractButton* const button = box->button(caption.Button)) {
      button->setText(WithMnemonic(words.LangString(caption.TextId, caption.DefaultText), used));
    }
  }
  return box;
}

std::optional<QString> WindowDialogs::AskOpenFile(const OpenFileQuestion& question) {
  QString selected = question.Filters.value(question.FilterIndex);
  const QString path =
      QFileDialog::getOpenFileName(parent_, QString(), FolderToStartIn(question.Folder),
                                   question.Filters.join(QStringLiteral(";;")), &selected);
  if (path.isEmpty()) {
    return std::nullopt;
  }
  return path;
}

std::optional<QString> WindowDialogs::AskSaveFile(const SaveFileQuestion& question) {
  if (!question.Refusal.isEmpty()) {
    const auto refusal = PlainMessageBox(parent_, question.Refusal, QMessageBox::Ok, words_);
    refusal->setIcon(QMessageBox::Warning);
    refusal->exec();
  }
  const QFileInfo suggestion(question.Suggestion);
  QFileDialog dialog(parent_, QString(), suggestion.absolutePath(),
                     question.Filters.join(QStringLiteral(";;")));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(question.DefaultEnding);
  // The toolkit's own question would show a name that looks like markup as such.
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.selectFile(suggestion.fileName());
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const QString path = dialog.selectedFiles().constFirst();
    if (AgreesToReplace(path)) {
      return path;
    }
  }
  return std::nullopt;
}

bool WindowDialogs::AgreesToReplace(const QString& path) const {
  const QFileInfo target(path);
  if (!target.exists()) {
    return true;
  }
  const auto box = PlainMessageBox(
      parent_,
      words_.LangString(259, "This folder already contains a file named") + QStringLiteral("\n") +
          OneLine(target.fileName()) + QStringLiteral("\n\n") +
          words_.LangString(280, "Would You Like To Replace The Existing File?"),
      QMessageBox::Yes | QMessageBox::No, words_);
  box->setIcon(QMessageBox::Warning);
  box->setDefaultButton(QMessageBox::No);
  return box->exec() == QMessageBox::Yes;
}

Answer WindowDialogs::ShowMessage(const Message& message) {
  const QMessageBox::StandardButtons buttons =
      message.Buttons == MessageButtons::kOk         ? QMessageBox::Ok
      : message.Buttons == MessageButtons::kOkCancel ? QMessageBox::Ok | QMessageBox::Cancel
      : message.Buttons == MessageButtons::kYesNo
          ? QMessageBox::Yes | QMessageBox::No
          : QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
  const auto box = PlainMessageBox(parent_, message.Text, buttons, words_);
  box->setWindowTitle(OneLine(message.Title.simplified()));
  if (box->button(QMessageBox::No) != nullptr) {
    box->setDefaultButton(QMessageBox::No);  // A key pressed too often loses nothing.
  }
  box->setIcon(message.Icon == MessageIcon::kQuestion  ? QMessageBox::Question
               : message.Icon == MessageIcon::kStop    ? QMessageBox::Critical
               : message.Icon == MessageIcon::kWarning ? QMessageBox::Warning
                                                       : QMessageBox::Information);
  switch (box->exec()) {
    case QMessageBox::Ok:
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    default:
      return Answer::kCancel;
  }
}

Answer WindowDialogs::AskYesNoCancel(const QString& text) {
  const auto box = PlainMessageBox(
      parent_, text, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, words_);
  box->setIcon(QMessageBox::Question);
  switch (box->exec()) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    default:
      return Answer::kCancel;
  }
}

std::optional<QString> WindowDialogs::AskText(const QString& prompt) {
  return AskTitledText(parent_ == nullptr ? QString() : parent_->windowTitle(), prompt);
}

std::optional<QString> WindowDialogs::AskTitledText(const QString& title, const QString& prompt) {
  QInputDialog dialog(parent_);
  dialog.setInputMode(QInputDialog::TextInput);
  dialog.setWindowTitle(PlainTitle(title));
  dialog.setLabelText(QString());
  for (QLabel* const label : dialog.findChildren<QLabel*>()) {
    label->setTextFormat(Qt::PlainText);
  }
  dialog.setLabelText(prompt);
  dialog.setOkButtonText(words_.LangString(200, "OK"));
  dialog.setCancelButtonText(words_.LangString(110, "Cancel"));
  return dialog.exec() == QDialog::Accepted ? std::optional(dialog.textValue()) : std::nullopt;
}

}  // namespace tessa
