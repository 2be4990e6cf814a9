#pragma once

#include <QElapsedTimer>

#include "core/progress.h"

namespace tessa {

class MainWindow;

/// Shows the progress of long work in the main window. Work that is over before anybody would
/// notice is not painted in between; a large file is shown to be loading at once.
class WindowProgress : public Progress {
 public:
  explicit WindowProgress(MainWindow& window) : window_(window) { clock_.start(); }

  /// A new piece of work begins.
  void Start();
  void Repaint() override;
  void Advance() override { PaintWhenDue(); }
  void LetEventsRun() override;

 private:
  void PaintWhenDue();
  void Paint();

  MainWindow& window_;
  QElapsedTimer clock_;
  bool painted_ = false;  // Since the work began.
};

}  // namespace tessa
