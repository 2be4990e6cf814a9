#include "windows/transfer_progress.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

namespace tessa {
namespace {

constexpr int kBetweenPaintsMilliseconds = 40;

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

TransferProgress::TransferProgress(QWidget& window, const QWidget& stop, Dialogs& dialogs,
                                   std::function<void()> show)
    : window_(window), stop_(stop), questions_(*this, dialogs), show_(std::move(show)) {
  clock_.start();
  QCoreApplication::instance()->installEventFilter(this);
}

TransferProgress::~TransferProgress() {
  if (quitAsked_) {
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
  }
}

void TransferProgress::Repaint() {
  show_();
  if (clock_.elapsed() >= kBetweenPaintsMilliseconds) {
    QCoreApplication::processEvents();
    clock_.restart();
  }
}

/// A question of the run stands above the window and takes its own answers.
bool TransferProgress::HasModalAbove() const {
  const QWidget* const modal = QApplication::activeModalWidget();
  return modal != nullptr && modal != &window_;
}

void TransferProgress::AskToQuit() {
  stopAsked_ = true;
  quitAsked_ = true;
  if (HasModalAbove()) {
    QApplication::activeModalWidget()->close();
  }
}

bool TransferProgress::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Quit) {
    AskToQuit();
    return true;
  }
  // A window of the platform hands its events on to the widgets, where they are met.
  if (!IsInput(event->type()) || !watched->isWidgetType() || HasModalAbove()) {
    return false;
  }
  const bool isEscape =
      event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
  const bool isStop = watched == &stop_ && event->type() == QEvent::MouseButtonRelease;
  stopAsked_ = stopAsked_ || isEscape || isStop || event->type() == QEvent::Close;
  event->setAccepted(event->type() != QEvent::Close);
  return true;
}

std::optional<QString> TransferProgress::UntilQuit::AskOpenFile(const OpenFileQuestion& question) {
  return owner_.quitAsked_ ? std::nullopt : dialogs_.AskOpenFile(question);
}

std::optional<QString> TransferProgress::UntilQuit::AskSaveFile(const SaveFileQuestion& question) {
  return owner_.quitAsked_ ? std::nullopt : dialogs_.AskSaveFile(question);
}

Answer TransferProgress::UntilQuit::AskYesNoCancel(const QString& text) {
  return owner_.quitAsked_ ? Answer::kCancel : dialogs_.AskYesNoCancel(text);
}

Answer TransferProgress::UntilQuit::ShowMessage(const Message& message) {
  return owner_.quitAsked_ ? Answer::kCancel : dialogs_.ShowMessage(message);
}

std::optional<QString> TransferProgress::UntilQuit::AskText(const QString& prompt) {
  return owner_.quitAsked_ ? std::nullopt : dialogs_.AskText(prompt);
}

}  // namespace tessa
