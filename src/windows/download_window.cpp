#include "windows/download_window.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>

#include "camera/download_ini.h"
#include "core/path_bytes.h"
#include "widgets/plain_text.h"
#include "windows/ask_dialogs.h"
#include "windows/download_options_panel.h"
#include "windows/download_preview.h"
#include "windows/download_target.h"
#include "windows/overwrite_dialog.h"

namespace tessa {
namespace {

/// Shorter than anybody would notice; more often nothing is painted.
constexpr int kFrameMilliseconds = 30;
/// Until the window is on the screen with the words that the camera is looked for.
constexpr int kShownMilliseconds = 40;
constexpr int kPreviewMilliseconds = 30;
constexpr int kFirstHeight = 600;
/// What a window manager's frame takes, roughly.
const QSize kFrame(16, 48);

}  // namespace

/// Keeps the window alive while the engine works.
class DownloadWindow::Watcher : public Progress {
 public:
  explicit Watcher(DownloadWindow& window) : window_(window) { clock_.start(); }

  void Repaint() override {
    isDue_ = true;
    // Images go by faster than they can be read; what comes before a long call is seen at once.
    if (!window_.engine_->State.PercentVisible || clock_.elapsed() >= kFrameMilliseconds) {
      Paint();
    }
  }
  void Advance() override { Repaint(); }
  void LetEventsRun() override {
    if (isDue_ && clock_.elapsed() >= kFrameMilliseconds) {
      Paint();
    }
    QCoreApplication::processEvents();
  }

 private:
  void Paint() {
    window_.BringIntoLine();
    window_.status_->repaint();
    clock_.restart();
    isDue_ = false;
  }

  DownloadWindow& window_;
  QElapsedTimer clock_;
  bool isDue_ = false;
};

class DownloadWindow::Asker : public OverwriteQuestion {
 public:
  explicit Asker(DownloadWindow& window) : window_(window) {}

  int AskReplace(const QString& name) override {
    window_.BringIntoLine();
    OverwriteDialog dialog(name, window_.session_.Words, &window_);
    dialog.exec();
    return dialog.Reply();
  }

 private:
  DownloadWindow& window_;
};

DownloadWindow::DownloadWindow(Session& session, UserSettings& user, CardLink::Search search,
                               QWidget* parent)
    : QDialog(parent),
      session_(session),
      user_(user),
      card_(user.CardFolder(), std::move(search)),
      conversion_(session.Words, session.Palettes),
      watcher_(std::make_unique<Watcher>(*this)),
      asker_(std::make_unique<Asker>(*this)),
      dialogs_(std::make_unique<WindowDialogs>(this, session.Words)),
      engine_(std::make_unique<CameraDownload>(DownloadSurroundings{
          card_, session.Words, conversion_, session.Folder, *dialogs_, *asker_, *watcher_})) {
  setObjectName(QStringLiteral("frmDownLoad"));
  setWindowTitle(session_.Words.LangString(297, "Corvane T-40 Downloader"));
  previewTimer_.setSingleShot(true);
  previewTimer_.setInterval(kPreviewMilliseconds);
  connect(&previewTimer_, &QTimer::timeout, this, &DownloadWindow::ShowPreview);
  engine_->Options = dwnGetUserInfo(session_.Folder);
  engine_->Begin();
  MakeControls();
  UseTarget(engine_->Options.TargetPath);
  ShowFormats();
  ShowQualityColour();
  BringIntoLine();
  QCoreApplication::instance()->installEventFilter(this);
}

DownloadWindow::~DownloadWindow() {
  static_cast<void>(dwnSaveUserInfo(engine_->Options, session_.Folder));
  card_.CloseLink();
  if (showsBusyPointer_) {
    QGuiApplication::restoreOverrideCursor();
  }
}

bool DownloadWindow::CountedCard::DownloadImage(int folderIndex, int imageIndex,
                                                const QString& targetPath) {
  const bool isDone = CardLink::DownloadImage(folderIndex, imageIndex, targetPath);
  Brought += isDone ? 1 : 0;
  return isDone;
}

bool DownloadWindow::CountedCard::DeleteAllImages() {
  IsDeleteFailed = !CardLink::DeleteAllImages();
  return !IsDeleteFailed;
}

void DownloadWindow::Download(void (CameraDownload::*call)()) {
  if (isRunning_) {
    return;
  }
  account_.clear();
  target_->Settle();
  refusal_ = target_->Fault();
  if (!refusal_.isEmpty()) {
    BringIntoLine();
    return;
  }
  const DownloadState& state = engine_->State;
  const int images =
      call == &CameraDownload::cmdDownload ? state.SelectedCount.toInt() : state.ImageCount.toInt();
  card_.Brought = 0;
  Run(call);
  account_ = session_.Words.LangString(572, "Images: %1 brought, %2 left out")
                 .arg(card_.Brought)
                 .arg(images - card_.Brought);
  BringIntoLine();
}

void DownloadWindow::DeleteAll() {
  card_.IsDeleteFailed = false;
  account_.clear();
  refusal_.clear();
  Run(&CameraDownload::cmdDeleteAll);
}

/// What a delete that failed has left is counted; its words stay.
void DownloadWindow::ReadListAnew() {
  DownloadState& state = engine_->State;
  const DownloadState former = state;
  engine_->dwnInitCam();
  if (former.SelectedFolder < static_cast<int>(state.Folders.size())) {
    engine_->SelectFolder(former.SelectedFolder);
  }
  state.Status = former.Status;
  state.StatusColour = former.StatusColour;
  state.Fault = former.Fault;
}

void DownloadWindow::Run(void (CameraDownload::*call)()) {
  if (isRunning_) {
    return;
  }
  isRunning_ = true;
  (*engine_.*call)();
  if (card_.IsDeleteFailed) {
    card_.IsDeleteFailed = false;
    ReadListAnew();
  }
  isRunning_ = false;
  BringIntoLine();
  previewTimer_.start();
  close_->setFocus(Qt::TabFocusReason);
  if (isLeaving_) {
    reject();
  }
  if (isQuitting_) {
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  }
}

void DownloadWindow::done(int result) {
  if (isRunning_) {
    isLeaving_ = isLeaving_ || isQuitting_ || !engine_->State.AbortVisible;
    engine_->cmdAbort();
    return;
  }
  QDialog::done(result);
}

/// A program that is to end while the camera is at work ends after it.
bool DownloadWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Quit || !isRunning_) {
    return QDialog::eventFilter(watched, event);
  }
  isQuitting_ = true;
  reject();
  QWidget* const question = QApplication::activeModalWidget();
  if (question != nullptr && question != this) {
    question->close();
  }
  return true;
}

void DownloadWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  setAttribute(Qt::WA_KeyboardFocusChange);  // The focus is seen before the first key.
  if (firstActivate_ && !event->spontaneous()) {
    firstActivate_ = false;
    QTimer::singleShot(kShownMilliseconds, this, [this] {
      Run(&CameraDownload::dwnInitCam);
      target_->KeepFolder();  // The tree has been laid out and scrolls.
      cameraFolders_->setFocus(Qt::TabFocusReason);
    });
  }
}

/// Return presses the button with the focus, and no other.
void DownloadWindow::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isReturn) {
    QDialog::keyPressEvent(event);
  } else if (auto* const button = qobject_cast<QPushButton*>(focusWidget())) {
    if (!event->isAutoRepeat()) {
      button->click();
    }
  }
}

void DownloadWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && status_ != nullptr) {
    ShowStatus();
    ShowQualityColour();
  }
}

/// What an empty box counts as is no less in force than what is typed.
void DownloadWindow::ShowQualityColour() {
  QPalette colours = palette();
  colours.setColor(QPalette::PlaceholderText, colours.color(QPalette::Text));
  quality_->setPalette(colours);
}

void DownloadWindow::Reconnect() {
  if (isRunning_) {
    return;
  }
  account_.clear();
  refusal_.clear();
  engine_->Begin();
  BringIntoLine();
  Run(&CameraDownload::dwnInitCam);
  cameraFolders_->setFocus(Qt::TabFocusReason);
}

void DownloadWindow::UseCardFolder(const QString& folder) {
  card_.Choose(folder);
  user_.SetCardFolder(folder);
  Reconnect();
}

void DownloadWindow::UseTarget(const QString& folder) {
  target_->Use(folder);
}

void DownloadWindow::AskForCardFolder() {
  const QString chosen = QFileDialog::getExistingDirectory(
      this, session_.Words.LangString(562, "Card Folder...").remove(QLatin1Char('.')),
      card_.Folder().isEmpty() ? QDir::homePath() : card_.Folder());
  if (!chosen.isEmpty()) {
    UseCardFolder(chosen);
  }
}

void DownloadWindow::BringIntoLine() {
  const DownloadState& state = engine_->State;
  ShowStatus();
  ShowFolders();
  ShowEnabled();
  imageCount_->setText(state.ImageCount);
  selectedCount_->setText(state.SelectedCount);
  percent_->setValue(state.Percent);
  percent_->setVisible(state.PercentVisible);
  abort_->setVisible(state.AbortVisible);
  if (state.BusyPointer != showsBusyPointer_) {
    showsBusyPointer_ = state.BusyPointer;
    showsBusyPointer_ ? QGuiApplication::setOverrideCursor(Qt::WaitCursor)
                      : QGuiApplication::restoreOverrideCursor();
  }
}

void DownloadWindow::ShowStatus() {
  const DownloadState& state = engine_->State;
  const bool isBad = state.StatusColour == DownloadState::kDarkRed || !refusal_.isEmpty();
  const QString status = refusal_.isEmpty() ? state.Status : refusal_;
  const bool isNew = status_->text() != status;
  status_->setText(status);
  const bool lacksCard = isBad && refusal_.isEmpty() && card_.Folder().isEmpty();
  QString fault =
      lacksCard ? session_.Words.LangString(
                      560, "No memory card was found. Choose the folder that holds its images.")
                : OneLine(state.Fault);
  if (!account_.isEmpty()) {
    fault = fault.isEmpty() ? account_ : account_ + QStringLiteral(". ") + fault;
  }
  fault_->setText(fault);
  fault_->setToolTip(PlainToolTip(fault));
  QPalette colours = palette();
  if (isBad) {
    colours.setColor(QPalette::WindowText, FaultColour(colours));
  }
  status_->setPalette(colours);
  if (isNew && !state.PercentVisible) {
    QAccessibleEvent alert(status_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }
}

void DownloadWindow::ShowFolders() {
  const DownloadState& state = engine_->State;
  const auto count = static_cast<int>(state.Folders.size());
  bool isSame = cameraFolders_->count() == count;
  for (int i = 0; i < count && isSame; ++i) {
    isSame = cameraFolders_->itemText(i) == state.Folders[static_cast<std::size_t>(i)].Text;
  }
  if (!isSame) {
    cameraFolders_->clear();
    for (const DownloadState::Folder& folder : state.Folders) {
      cameraFolders_->addItem(folder.Text, folder.Images);
    }
  }
  cameraFolders_->setCurrentIndex(state.SelectedFolder);
  const QString card = ShownPath(card_.Folder());
  cardPath_->setText(card.isEmpty() ? QStringLiteral("\u2013") : OneLine(card));
  cardPath_->setToolTip(PlainToolTip(card));
}

void DownloadWindow::ShowEnabled() {
  const DownloadState& state = engine_->State;
  const bool isFree = !state.Busy;
  choices_->setEnabled(isFree);
  download_->setEnabled(isFree && state.DownloadEnabled);
  downloadAll_->setEnabled(isFree && state.DownloadAllEnabled);
  deleteAll_->setEnabled(isFree && state.DeleteAllEnabled);
  abort_->setEnabled(!state.AbortRequested);
}

void DownloadWindow::ShowFormats() {
  const DownloadOptions& options = engine_->Options;
  sit_->setChecked(options.Sit == 1);
  bmp_->setChecked(options.Bmp == 1);
  jpeg_->setChecked(options.Jpeg == 1);
  if (quality_->text() != options.JpegQuality) {
    quality_->setText(options.JpegQuality);
  }
  qualityLabel_->setVisible(options.Jpeg == 1);
  quality_->setVisible(options.Jpeg == 1);
  dwnCheckOptions();
}

/// Pictures have options; without one the window is as narrow as it was.
void DownloadWindow::dwnCheckOptions() {
  const bool unfolded = WantsPictures(engine_->Options);
  if (isVisible() && unfolded == pictureSide_->isVisibleTo(this)) {
    return;
  }
  Unfold(unfolded);
}

void DownloadWindow::Unfold(bool unfolded) {
  const QSize room = screen()->availableSize() - kFrame;
  const int folded = layout()->sizeHint().width();
  QSize wanted = size();
  if (isVisible() && !unfolded) {
    wanted.rwidth() -= pictureSide_->width();
  }
  pictureSide_->setVisible(unfolded);
  // The smallest sizes of the window and of what is in it follow at once.
  choices_->layout()->invalidate();
  choices_->updateGeometry();
  choices_->layout()->activate();
  layout()->activate();
  if (!isVisible()) {
    wanted = QSize(layout()->sizeHint().width(), kFirstHeight);
  } else if (unfolded) {
    wanted.rwidth() += layout()->sizeHint().width() - folded;
  }
  if (!isMaximized() && !isFullScreen()) {
    resize(wanted.expandedTo(minimumSizeHint()).boundedTo(room));
  }
  if (isVisible()) {
    // What was unfolded is to be seen.
    const QRect screenArea = screen()->availableGeometry();
    const int beyond = frameGeometry().right() - screenArea.right();
    if (beyond > 0) {
      move(std::max(screenArea.left(), x() - beyond), y());
    }
  }
  QTimer::singleShot(0, target_, &DownloadTarget::ScrollToFolder);
  previewTimer_.start();
}

/// The first image of the folder on show, or of the first folder that has any.
QString DownloadWindow::PreviewPath() const {
  const QString selected = card_.ImagePath(engine_->State.SelectedFolder, 0);
  for (int i = 0; selected.isEmpty() && i < static_cast<int>(engine_->State.Folders.size()); ++i) {
    if (const QString path = card_.ImagePath(i, 0); !path.isEmpty()) {
      return path;
    }
  }
  return selected;
}

void DownloadWindow::ShowPreview() {
  if (isRunning_) {
    return;
  }
  if (pictureSide_->isVisibleTo(this)) {
    preview_->ShowFile(PreviewPath(), engine_->Options);
  }
}

}  // namespace tessa
