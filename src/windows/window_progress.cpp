#include "windows/window_progress.h"

#include <QCoreApplication>

#include "windows/main_window.h"

namespace tessa {
namespace {

constexpr int kPatienceMilliseconds = 120;

}  // namespace

void WindowProgress::Start() {
  clock_.restart();
  painted_ = false;
}

void WindowProgress::Repaint() {
  if (!painted_ && window_.isVisible() && window_.IsLoadingLargeFile()) {
    Paint();
  } else {
    PaintWhenDue();
  }
}

void WindowProgress::LetEventsRun() {
  if (window_.isVisible()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
}

void WindowProgress::PaintWhenDue() {
  if (clock_.elapsed() >= kPatienceMilliseconds && window_.isVisible()) {
    Paint();
  }
}

void WindowProgress::Paint() {
  window_.BringIntoLine();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  clock_.restart();
  painted_ = true;
}

}  // namespace tessa
