#pragma once

#include <QElapsedTimer>

#include "core/progress.h"

namespace tessa {

class MainWindow;

/// Shows the progress of long work in the main window. Work that is over before anybody would
/// notice is not painted in between.
class WindowProgress : public Progress {
 public:
  explicit WindowProgress(MainWindow& window) : window_(window) { clock_.start(); }

  /// A new piece of work begins.
  void Start() { clock_.restart(); }
  void Repaint() override { PaintWhenDue(); }
  void Advance() override { PaintWhenDue(); }
  void LetEventsRun() override;

 private:
  void PaintWhenDue();

  MainWindow& window_;
  QElapsedTimer clock_;
};

}  // namespace tessa
