// The target folder of the browser: making and renaming one.

#include <sys/stat.h>

#include <QMenu>
#include <cerrno>
#include <cstdio>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "widgets/plain_text.h"
#include "windows/browser_window.h"
#include "windows/folder_panel.h"

namespace tessa {
namespace {

/// A name that stays in its folder.
bool IsPlainName(const QString& name) {
  return !name.contains(QLatin1Char('/')) && name != QLatin1String(".") &&
         name != QLatin1String("..");
}

}  // namespace

void BrowserWindow::ShowFolderMenu(QPoint at) {
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("mnuCreateDir"));
  QAction* const create = menu.addAction(session_.Words.LangString(135, "Create Folder"));
  create->setObjectName(QStringLiteral("mnuCreateFolder"));
  QAction* const rename = menu.addAction(session_.Words.LangString(215, "Rename Folder"));
  rename->setObjectName(QStringLiteral("mnuRename"));
  const QAction* const chosen = menu.exec(at);
  if (chosen == create) {
    CreateTargetFolder();
  } else if (chosen == rename) {
    RenameTargetFolder();
  }
}

void BrowserWindow::CreateTargetFolder() {
  const Strings& words = session_.Words;
  const auto name = dialogs_->AskTitledText(words.LangString(195, "New Folder"),
                                            words.LangString(161, "Enter New Folder Name"));
  if (!name || name->isEmpty()) {
    return;
  }
  const QString path = JoinPath(target_->Folder(), *name);
  errno = EINVAL;
  if (!IsPlainName(*name) || ::mkdir(PathToBytes(path).constData(), 0777) != 0) {
    Say(words.LangString(480, "Could not create the folder: %1")
            .arg(QString::fromStdString(SystemErrorText(errno))));
    return;
  }
  target_->SetFolder(path);
  pages_.TargetFolder = path;
  pages_.CheckTransfer();
  ShowTransferButtons();
}

void BrowserWindow::Inform(int textId, const char* defaultText) {
  dialogs_->ShowMessage({windowTitle(), session_.Words.LangString(textId, defaultText),
                         MessageButtons::kOk, MessageIcon::kInformation});
}

void BrowserWindow::RenameTargetFolder() {
  const Strings& words = session_.Words;
  const QString former = target_->Folder();
  if (former.lastIndexOf(QLatin1Char('/')) < 0 || former == QLatin1String("/")) {
    Inform(112, "Cannot Rename Root Folder");
    return;
  }
  const bool isSource = former == pages_.SourceFolder;
  const auto name = dialogs_->AskTitledText(
      words.LangString(214, "Rename") + QLatin1Char(' ') + OneLine(ShownPath(former)),
      words.LangString(161, "Enter New Folder Name"));
  if (!name || name->isEmpty()) {
    return;
  }
  const QString path = JoinPath(FolderOfPath(former), *name);
  // The system would replace an empty folder of that name.
  const bool isRenamed =
      IsPlainName(*name) && !PathExists(path) &&
      std::rename(PathToBytes(former).constData(), PathToBytes(path).constData()) == 0;
  if (!isRenamed) {
    target_->SetFolder(former);
    Inform(111, "Cannot Rename Folder");
    return;
  }
  target_->SetFolder(path);
  pages_.TargetFolder = path;
  if (isSource) {
    ChangeFolder(path);
  } else if (pages_.SourceFolder.startsWith(former + QLatin1Char('/'))) {
    ChangeFolder(path + pages_.SourceFolder.mid(former.size()));
  }
  pages_.CheckTransfer();
  ShowTransferButtons();
}

}  // namespace tessa
