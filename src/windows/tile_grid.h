#pragma once

#include <QPixmap>
#include <QWidget>
#include <array>
#include <functional>

#include "browser/thumbnail_pages.h"
#include "formats/bmp.h"

namespace tessa {

/// A part of a tile that has a name of its own. Painted by the tile; lets the mouse through.
class TilePart : public QWidget {
 public:
  TilePart(const QString& name, std::function<void(QPainter&)> paint, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::function<void(QPainter&)> paint_;
};

/// One tile of the browser: picture, fitted name and sound mark; yellow when selected. Shows what
/// it is given and keeps no facts of its own.
class TileWidget : public QWidget {
  Q_OBJECT

 public:
  TileWidget(int number, QWidget* parent);

  /// Takes over the picture, names and marks of `place`, in the colours of `palette`.
  void Show(const ThumbnailPages::Place& place, const ColourTable& palette, const QString& tip,
            const QString& missing);
  /// The mark alone.
  void SetMarked(bool marked);

 Q_SIGNALS:
  void Picked();
  void DoubleClicked();
  void MenuAsked(bool onPicture, QPoint globalPosition);
  void Focused();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QRect CaptionLine() const;
  QRect PictureRoom() const;
  QRect PictureArea() const;
  void PaintPicture(QPainter& painter);
  void PaintCaption(QPainter& painter);
  void PaintMark(QPainter& painter);
  QColor Ink() const;

  QString caption_;
  QString missing_;  // Stands in the place of a picture that there is none of.
  LoadedPicture picture_;
  ColourTable palette_{};
  QPixmap scaled_;  // The picture in the screen's pixels; null: to be made.
  bool marked_ = false;
  bool isBlue_ = false;
  bool hasSound_ = false;
  bool isBroken_ = false;
  TilePart* picturePart_;  // Picbuf3
  TilePart* mark_;         // Image1: there is a sound note.
};

/// The ten tiles of a page in as many columns as give them the most room, and the keys that move
/// among them.
class TileGrid : public QWidget {
  Q_OBJECT

 public:
  explicit TileGrid(QWidget* parent);

  TileWidget& Tile(int number) { return *tiles_.at(static_cast<std::size_t>(number)); }
  /// The tile that the keys are at.
  int Current() const { return current_; }
  void SetCurrent(int tile);
  /// How many of them are on show, and the words for when none is.
  void SetShown(int count, const QString& emptyWords);

 Q_SIGNALS:
  void Picked(int tile);
  void DoubleClicked(int tile);
  void MenuAsked(int tile, bool onPicture, QPoint globalPosition);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Arrange();

  std::array<TileWidget*, ThumbnailPages::kTiles> tiles_{};
  QString emptyWords_;
  int shown_ = 0;
  int columns_ = 5;
  int current_ = 0;
};

}  // namespace tessa
