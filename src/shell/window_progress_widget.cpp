#include "shell/window_progress_widget.h"

#include <QCoreApplication>

#include "shell/main_window.h"

namespace tessa {
namespace {

constexpr int kPatienceMilliseconds = 120;

}  // namespace

void WindowProgress::LetEventsRun() {
  if (window_.isVisible()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
}

void WindowProgress::PaintWhenDue() {
  if (clock_.elapsed() >= kPatienceMilliseconds && window_.isVisible()) {
    window_.BringIntoLine();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    clock_.restart();
  }
}

}  // namespace tessa
