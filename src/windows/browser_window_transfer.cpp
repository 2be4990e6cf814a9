// Copying, moving and deleting the files that are selected in the browser.

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "widgets/plain_text.h"
#include "windows/browser_window.h"
#include "windows/folder_panel.h"
#include "windows/transfer_progress.h"

namespace tessa {

void BrowserWindow::CopySelected() {
  Run(CopyImages);
}

void BrowserWindow::TransferSelected() {
  Run(TransferImages);
}

void BrowserWindow::DeleteSelected() {
  Run(DeleteImages);
}

void BrowserWindow::Run(Operation operation) {
  source_->Settle();
  target_->Settle();
  const TransferRequest request{pages_.SourceFolder, pages_.Files.SelectedNames(),
                                pages_.TargetFolder, embed_->isChecked()};
  const int page = pages_.CurrentPage;
  TransferStatus status;
  TransferProgress progress(*this, *close_, *dialogs_, [&] { ShowRun(status); });
  running_ = true;
  operation(request, {progress.Questions(), progress, status,
                      [&] {
                        if (operation == TransferImages) {
                          ResetAll();
                        }
                        SourceChanged(page);
                      },
                      [&] { return progress.StopAsked(); }});
  running_ = false;
  ShowTransferButtons();
}

void BrowserWindow::SourceChanged(int page) {
  loadingClock_.start();
  const bool isRead = pages_.ReadAfterTransfer(page);
  BringIntoLine();
  if (!isRead) {
    SayUnreadable(pages_.SourceFolder);
  }
  close_->setFocus();
}

void BrowserWindow::ShowRun(const TransferStatus& status) {
  status_->setText(status.Title);
  gauge_->setValue(status.Percent);
  QString inHand = status.InHand;
  fileText_->setText(OneLine(inHand.replace(QLatin1String("\n\n"), QLatin1String(" "))));
  for (QWidget* const part : std::initializer_list<QWidget*>{status_, gauge_, fileText_}) {
    part->setVisible(status.Shown);
  }
  counts_->setVisible(!status.Shown);
}

void BrowserWindow::ShowTransferButtons() {
  copy_->setEnabled(pages_.TransferEnabled);
  transfer_->setEnabled(pages_.TransferEnabled);
  delete_->setEnabled(pages_.DeleteEnabled);
}

}  // namespace tessa
