#include "windows/tile_grid.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>

namespace tessa {
namespace {

constexpr int kGap = 6;
constexpr QSize kSmallestTile(160, 150);
/// Where the screen is too low for that, as a much enlarged one is.
constexpr QSize kSmallestTileOnLowScreen(120, 96);
constexpr int kLowScreen = 650;
constexpr int kSmallestColumns = 4;

}  // namespace

TileGrid::TileGrid(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("TileGrid"));
  constexpr int kSmallestRows = (ThumbnailPages::kTiles + kSmallestColumns - 1) / kSmallestColumns;
  const QSize tile =
      screen()->availableSize().height() < kLowScreen ? kSmallestTileOnLowScreen : kSmallestTile;
  setMinimumSize(kSmallestColumns * (tile.width() + kGap) - kGap,
                 kSmallestRows * (tile.height() + kGap) - kGap);
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    auto* const made = new TileWidget(i, this);
    tiles_[static_cast<std::size_t>(i)] = made;
    made->hide();
    connect(made, &TileWidget::Focused, this, [this, i] { SetCurrent(i); });
    connect(made, &TileWidget::Picked, this, [this, i] { Q_EMIT Picked(i); });
    connect(made, &TileWidget::DoubleClicked, this, [this, i] { Q_EMIT DoubleClicked(i); });
    connect(made, &TileWidget::MenuAsked, this,
            [this, i](bool onPicture, QPoint at) { Q_EMIT MenuAsked(i, onPicture, at); });
  }
  SetCurrent(0);
}

/// The Tab key stops at the current tile alone; arrows go on from there.
void TileGrid::SetCurrent(int tile) {
  current_ = std::clamp(tile, 0, std::max(shown_ - 1, 0));
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    Tile(i).setFocusPolicy(i == current_ ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

void TileGrid::SetShown(int count, const QString& emptyWords) {
  const bool hadFocus = isAncestorOf(QApplication::focusWidget());
  shown_ = count;
  emptyWords_ = emptyWords;
  SetCurrent(current_);
  if (hadFocus && count > 0) {
    Tile(current_).show();
    Tile(current_).setFocus();
  }
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    Tile(i).setVisible(i < count);
  }
  update();
}

void TileGrid::keyPressEvent(QKeyEvent* event) {
  int to = current_;
  switch (event->key()) {
    case Qt::Key_Left:
      --to;
      break;
    case Qt::Key_Right:
      ++to;
      break;
    case Qt::Key_Up:
      to -= columns_;
      break;
    case Qt::Key_Down:
      to += columns_;
      break;
    case Qt::Key_Home:
      to = 0;
      break;
    case Qt::Key_End:
      to = shown_ - 1;
      break;
    case Qt::Key_Space:
      Q_EMIT Picked(current_);
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (event->modifiers().testFlag(Qt::AltModifier)) {
        QWidget::keyPressEvent(event);
        return;
      }
      Q_EMIT DoubleClicked(current_);
      return;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  if (to >= 0 && to < shown_) {
    SetCurrent(to);
    Tile(current_).setFocus(Qt::OtherFocusReason);
  }
}

void TileGrid::paintEvent(QPaintEvent* /*event*/) {
  if (shown_ == 0) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect().adjusted(kGap, kGap, -kGap, -kGap), Qt::AlignCenter | Qt::TextWordWrap,
                     emptyWords_);
  }
}

void TileGrid::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Arrange();
}

/// The number of columns that leaves the largest picture.
void TileGrid::Arrange() {
  double best = 0.0;
  QSize tileSize;
  for (int columns = 2; columns <= 5; ++columns) {
    const int rows = (ThumbnailPages::kTiles + columns - 1) / columns;
    const QSize size((width() - (columns - 1) * kGap) / columns,
                     (height() - (rows - 1) * kGap) / rows);
    const double scale = std::min(static_cast<double>(size.width()) / kSmallestTile.width(),
                                  static_cast<double>(size.height()) / kSmallestTile.height());
    if (scale >= best) {
      best = scale;
      columns_ = columns;
      tileSize = size;
    }
  }
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    const QPoint at(i % columns_ * (tileSize.width() + kGap),
                    i / columns_ * (tileSize.height() + kGap));
    Tile(i).setGeometry({at, tileSize});
  }
}

}  // namespace tessa
