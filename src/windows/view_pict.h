#pragma once

#include <QWidget>

#include "core/progress.h"
#include "open/session.h"
#include "windows/command.h"

class QLabel;
class QPushButton;
class QScrollArea;
class QScrollBar;

namespace tessa {

class BottomLine;
class FrameRow;
class NoPicturePanel;
class NoticeStrip;
class PicbufWidget;
class RangePanelWidget;

/// The view of the open image: the picture with its scroll bars, the palette strip with its scale,
/// and the zoom control. Shows the session's records; user actions go through the engine first.
class ViewPictWidget : public QWidget {
  Q_OBJECT

 public:
  ViewPictWidget(Session& session, Progress& progress, QWidget* parent);

  /// Brings every control into line with the records.
  void BringIntoLine();
  void SetWindowLanguage();
  /// Draws the icons anew in the colours of the desktop.
  void ShowIcons();
  /// Sets the level and shows the remembered centre in the middle.
  void SetZoom(int level);
  int ZoomLevel() const;
  /// The largest level at which the whole picture is in view; where even the lowest is too large,
  /// the scale that just fits, which then follows the size of the window.
  void ZoomToFit();
  /// Steps to another level; from a scale below the levels, up to the lowest of them.
  void ZoomBy(int steps);
  /// Keys go to the picture: arrows pan it.
  void FocusPicture();
  /// Reads again what lies under a resting cursor.
  void RefreshReadout();
  PicbufWidget& Picture() { return *picture_; }

 Q_SIGNALS:
  /// The cursor's readout in the status panels changed.
  void ReadoutChanged();
  void OpenRequested();
  /// The space bar was tapped over the picture.
  void SpaceTapped();
  /// The range on show changed.
  void RangeChanged();
  /// A button of the frame row, or that of the image's facts, was pressed.
  void FrameCommand(CommandId command);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* MakeCanvas();
  QWidget* MakeRangeFrame();
  void FitRangeFrame();
  QWidget* MakeBlankPanel();
  QWidget* MakeBottomLine();
  QWidget* MakeFrameRow();
  void ConnectPicture();
  void PlacePicture();
  void PlaceScrollBars(const QRect& area, int maxX, int maxY);
  QSize AreaFor(bool horizontalBar, bool verticalBar) const;
  void PointerMoved(QPoint position);
  void ForgetReadout();
  void PictureClicked(Qt::MouseButton button, QPoint position);
  void ZoomAround(int level, QPoint position);
  void ScrollToCentre();
  void RememberPan();
  void ColourScrollBars();
  void PanTo(int horizontal, int vertical);

  Session& session_;
  QWidget* canvas_ = nullptr;
  QWidget* blankPanel_ = nullptr;
  NoPicturePanel* noPicture_ = nullptr;
  NoticeStrip* notice_ = nullptr;
  PicbufWidget* picture_ = nullptr;
  RangePanelWidget* range_ = nullptr;
  QScrollArea* rangeFrame_ = nullptr;
  QScrollBar* horizontalScroll_ = nullptr;
  QScrollBar* verticalScroll_ = nullptr;
  QLabel* blankText_ = nullptr;
  QPushButton* blankOpen_ = nullptr;
  FrameRow* frameRow_ = nullptr;
  BottomLine* bottomLine_ = nullptr;
  QPointF dragRest_;  // Of a drag, image pixels.
};

}  // namespace tessa
