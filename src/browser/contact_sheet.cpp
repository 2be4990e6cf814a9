#include "browser/contact_sheet.h"

#include <QFontMetrics>
#include <QPageLayout>
#include <QPaintDevice>
#include <algorithm>
#include <cmath>

#include "core/plain_line.h"
#include "core/steps.h"

namespace tessa {
namespace {

constexpr int kColumns = 5;
constexpr int kDotsPerInch = 300;
constexpr double kMarginMillimetres = 10.0;
constexpr int kHeadingPoints = 16;
constexpr int kNamePoints = 12;

// Gaps, in 300ths of an inch.
constexpr int kAllGapsAcross = 300;
constexpr int kGapBetweenColumns = 50;
constexpr int kGapsDown = 45;
constexpr int kGapAtFoot = 10;
constexpr int kGapBelowHeading = 15;
constexpr int kGapAboveSecondRow = 30;
constexpr int kGapBelowNames = 5;

QFont SheetFont(int points) {
  QFont font;
  // The second has the same widths as the first.
  font.setFamilies(
      {QStringLiteral("Arial"), QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  font.setPointSize(points);
  return font;
}

/// A line of text whose top stands at `top`, with its middle at `middle`.
void DrawLine(const QString& text, int middle, int top, int mostWidth, QPainter& painter) {
  const QFontMetrics metrics = painter.fontMetrics();
  const QString line = metrics.elidedText(PlainLine(text), Qt::ElideMiddle, mostWidth);
  painter.drawText(middle - metrics.horizontalAdvance(line) / 2, top + metrics.ascent(), line);
}

}  // namespace

int SheetGeometry::Gap(int units) const {
  return static_cast<int>(std::lround(units * PerUnit));
}

int SheetGeometry::TileWidth() const {
  return (Width - Gap(kAllGapsAcross)) / kColumns;
}

int SheetGeometry::TileHeight() const {
  return (Height - Gap(kGapsDown) - 2 * HeadingLine - 2 * NameLine - Gap(kGapAtFoot)) / 2;
}

QPoint SheetGeometry::TileTop(int tile) const {
  const int column = tile % kColumns;
  const int top = tile < kColumns ? HeadingLine + Gap(kGapBelowHeading)
                                  : TileHeight() + Gap(kGapAboveSecondRow) + NameLine +
                                        Gap(kGapBelowNames) + HeadingLine;
  return {column * TileWidth() + (column + 1) * Gap(kGapBetweenColumns), top};
}

QRect SheetGeometry::PictureRect(int tile, QSize picture) const {
  // In the middle of the tile's height, so that as much stays free above as the name takes below.
  const int mostHeight = TileHeight() - 2 * NameLine;
  const double factor = std::min(static_cast<double>(TileWidth()) / picture.width(),
                                 static_cast<double>(mostHeight) / picture.height());
  const int width = std::max(1, static_cast<int>(std::lround(picture.width() * factor)));
  const int height = std::max(1, static_cast<int>(std::lround(picture.height() * factor)));
  const QPoint top = TileTop(tile);
  return {top.x() + (TileWidth() - width) / 2, top.y() + (TileHeight() - height) / 2, width,
          height};
}

int SheetGeometry::NameTop(int tile) const {
  return TileTop(tile).y() + TileHeight() - NameLine;
}

SheetGeometry GeometryOn(QPaintDevice& device) {
  SheetGeometry geometry;
  geometry.Width = device.width();
  geometry.Height = device.height();
  geometry.PerUnit = device.logicalDpiX() / static_cast<double>(kDotsPerInch);
  geometry.NameLine = QFontMetrics(SheetFont(kNamePoints), &device).height();
  geometry.HeadingLine = QFontMetrics(SheetFont(kHeadingPoints), &device).height();
  if (geometry.TileWidth() <= 0 || geometry.TileHeight() <= 2 * geometry.NameLine) {
    throw StepFailure("the page is too small for ten pictures");
  }
  return geometry;
}

void DrawSheet(const Sheet& sheet, QPainter& painter) {
  const SheetGeometry geometry = GeometryOn(*painter.device());
  painter.setFont(SheetFont(kHeadingPoints));
  painter.setPen(Qt::black);
  DrawLine(sheet.Heading, geometry.Width / 2, 0, geometry.Width, painter);
  painter.setFont(SheetFont(kNamePoints));
  // Pixels stay squares of one colour, and none is lost to compression.
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
  painter.setRenderHint(QPainter::LosslessImageRendering, true);
  const int count = std::min(kTilesOnSheet, static_cast<int>(sheet.Tiles.size()));
  for (int i = 0; i < count; ++i) {
    const SheetTile& tile = sheet.Tiles[static_cast<std::size_t>(i)];
    int middle = geometry.TileTop(i).x() + geometry.TileWidth() / 2;
    if (!tile.Picture.isNull()) {
      const QRect place = geometry.PictureRect(i, tile.Picture.size());
      painter.drawImage(place, tile.Picture);
      middle = place.left() + place.width() / 2;
    }
    DrawLine(tile.Name, middle, geometry.NameTop(i), geometry.TileWidth(), painter);
  }
}

void PrintSheet(const Sheet& sheet, QPaintDevice& device) {
  GeometryOn(device);
  QPainter painter;
  if (!painter.begin(&device)) {
    throw StepFailure("the document cannot be begun");
  }
  DrawSheet(sheet, painter);
  if (!painter.end()) {
    throw StepFailure("the document cannot be ended");
  }
}

SheetDocument::SheetDocument() {
  buffer_.open(QIODevice::WriteOnly);
  writer_.setResolution(kDotsPerInch);
  writer_.setPageLayout(QPageLayout(
      QPageSize(QPageSize::A4), QPageLayout::Landscape,
      QMarginsF(kMarginMillimetres, kMarginMillimetres, kMarginMillimetres, kMarginMillimetres),
      QPageLayout::Millimeter));
}

void SheetDocument::Add(const Sheet& sheet) {
  if (sheet.Tiles.empty()) {
    return;
  }
  if (!painter_) {
    painter_ = std::make_unique<QPainter>();
    if (!painter_->begin(&writer_)) {
      throw StepFailure("the document cannot be begun");
    }
  } else if (!writer_.newPage()) {
    throw StepFailure("the page cannot be begun");
  }
  DrawSheet(sheet, *painter_);
}

QByteArray SheetDocument::Finish() {
  if (painter_) {
    painter_->end();
  }
  buffer_.close();
  return bytes_;
}

}  // namespace tessa
