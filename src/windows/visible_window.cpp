#include "windows/visible_window.h"

#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>

#include "export/save_image.h"
#include "widgets/language_box.h"
#include "widgets/mnemonics.h"
#include "widgets/picbuf_widget.h"

namespace tessa {

VisibleWindow::VisibleWindow(Session& session, Dialogs& dialogs, QWidget* parent)
    : QMainWindow(parent), session_(session), dialogs_(dialogs) {
  setObjectName(QStringLiteral("frmVisible"));
  session_.Steps.Run("copy visible picture",
                     [&] { buffer_.CopyFrom(false, session_.Visible.Picbuf3, false); });
  buffer_.FileType = Picbuf::kJpeg;
  buffer_.JpegQuality = buffer_.JpegQuality2 = 95;
  picture_ = new PicbufWidget(buffer_, this);
  picture_->setObjectName(QStringLiteral("Picbuf1"));
  picture_->setCursor(Qt::ArrowCursor);
  setCentralWidget(picture_);
  MakeMenus();
  AddLanguageBox(*this, [this] { SetWindowLanguage(); });
  SetWindowLanguage();
  Zoom(1);
  session_.Image.VisibleWindowOpen = true;
}

VisibleWindow::~VisibleWindow() = default;

QMenu* VisibleWindow::AddMenu(QMenu* parent, const char* name, int textId,
                              const char* defaultText) {
  QMenu* const menu =
      parent == nullptr ? menuBar()->addMenu(QString()) : parent->addMenu(QString());
  menu->setObjectName(QString::fromLatin1(name));
  entries_.push_back({menu->menuAction(), textId, defaultText, ""});
  return menu;
}

QAction* VisibleWindow::AddEntry(QMenu* menu, const char* name, int textId, const char* defaultText,
                                 const char* suffix, std::function<void()> run) {
  QAction* const action = menu->addAction(QString());
  action->setObjectName(QString::fromLatin1(name));
  connect(action, &QAction::triggered, this, std::move(run));
  entries_.push_back({action, textId, defaultText, suffix});
  return action;
}

void VisibleWindow::MakeMenus() {
  QMenu* const file = AddMenu(nullptr, "mnuFile", 173, "Image");
  AddEntry(file, "mnuSaveBMP", 224, "Save BMP", "",
           [this] { SaveVisible(QStringLiteral("BMP"), buffer_, session_, dialogs_); });
  AddEntry(file, "mnuSaveJPG", 228, "Save JPEG", "",
           [this] { SaveVisible(QStringLiteral("JPG"), buffer_, session_, dialogs_); });
  QMenu* const composite = AddMenu(file, "mnuSaveComp", 226, "Save Composite");
  // These have no words: they read the same in every language.
  AddEntry(composite, "mnuSaveCompBMP", 0, "BMP", "",
           [this] { SaveCompositeBmp(session_, dialogs_); });
  AddEntry(composite, "mnuSaveCompJPG", 0, "JPEG", "",
           [this] { SaveCompositeJpeg(session_, dialogs_); });
  file->addSeparator();
  AddEntry(file, "mnuClose", 114, "Close", "", [this] {
    close();
  })->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::Key_Escape)});
  QMenu* const edit = AddMenu(nullptr, "mnuedit", 156, "Edit");
  AddEntry(edit, "mnucopy", 130, "Copy Visual Image", "", [this] {
    session_.Steps.Run("copy to clipboard", [this] { buffer_.CopyToClipboard(true); });
  })->setShortcut(QKeySequence::Copy);
  AddEntry(edit, "mnuMerge", 127, "Copy IR && Visual Image", "", [this] {
    if (!session_.Image.CurrentFile.isEmpty()) {
      CopyComposite(session_);
    }
  });
  QMenu* const view = AddMenu(nullptr, "mnuView", 285, "View");
  zoomActions_ = {AddEntry(view, "mnuzoom0", 284, "Zoom", " 1X", [this] { Zoom(1); }),
                  AddEntry(view, "mnuzoom1", 284, "Zoom", " 2X", [this] { Zoom(2); })};
  zoomActions_[0]->setShortcut(QKeySequence(Qt::Key_1));
  zoomActions_[1]->setShortcut(QKeySequence(Qt::Key_2));
  for (QAction* const action : zoomActions_) {
    action->setCheckable(true);
  }
}

void VisibleWindow::SetWindowLanguage() {
  setWindowTitle(session_.Words.LangString(276, "Visible Image"));
  picture_->setAccessibleName(windowTitle());
  for (const Entry& entry : entries_) {
    entry.Action->setText(session_.Words.LangString(entry.TextId, entry.DefaultText) +
                          QString::fromLatin1(entry.Suffix));
  }
  AssignMnemonics(*menuBar());
}

void VisibleWindow::Zoom(int factor) {
  zoomActions_[0]->setChecked(factor == 1);
  zoomActions_[1]->setChecked(factor == 2);
  buffer_.ZoomDenominator = 1.0;
  buffer_.ZoomNumerator = factor;
  picture_->setFixedSize(buffer_.BufWidth() * factor, buffer_.BufHeight() * factor);
  // The window wraps the picture; the layout has to know its new size first.
  layout()->activate();
  setFixedSize(sizeHint());
  const QRect desktop = screen()->availableGeometry();
  if (frameGeometry().right() > desktop.right() || frameGeometry().bottom() > desktop.bottom()) {
    move(desktop.center() - QPoint(width() / 2, height() / 2));
  }
  picture_->update();
}

void VisibleWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  // Where the window manager put it is known a moment later.
  QTimer::singleShot(0, this, [this] { Zoom(zoomActions_[1]->isChecked() ? 2 : 1); });
}

void VisibleWindow::closeEvent(QCloseEvent* event) {
  session_.Image.VisibleWindowOpen = false;
  event->accept();
}

}  // namespace tessa
