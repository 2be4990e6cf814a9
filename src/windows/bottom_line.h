#pragma once

#include <QWidget>

#include "open/session.h"

class QLabel;
class QSlider;
class QToolButton;

namespace tessa {

/// The line below the picture: comment, memo and time of the image, and the zoom control. Shows the
/// session's records.
class BottomLine : public QWidget {
  Q_OBJECT

 public:
  BottomLine(const Session& session, QWidget* parent);

  void BringIntoLine();
  /// Shows the level, or the percentage of the picture's size below the levels.
  void ShowZoom();
  /// The zoom slider gives way where the picture leaves little room. Logical pixels.
  void FitTo(int pictureWidth);
  void SetWindowLanguage();
  /// Draws the icons anew in the colours of the desktop.
  void ShowIcons();

 Q_SIGNALS:
  void LevelChosen(int level);
  void ZoomStepped(int steps);
  void FitRequested();
  void InfoRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QToolButton* MakeStepButton(int step);
  QString MemoText() const;

  const Session& session_;
  QLabel* comment_ = nullptr;
  QLabel* memo_ = nullptr;
  QLabel* taken_ = nullptr;
  QToolButton* info_ = nullptr;
  QLabel* zoomText_ = nullptr;
  QToolButton* zoomOut_ = nullptr;
  QSlider* zoom_ = nullptr;
  QToolButton* zoomIn_ = nullptr;
};

}  // namespace tessa
