#pragma once

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QRect>
#include <QString>
#include <memory>
#include <vector>

namespace tessa {

inline constexpr int kTilesOnSheet = 10;

struct SheetTile {
  QString Name;    // Below the picture.
  QImage Picture;  // Null: the name alone.
};

/// One landscape page: a heading and up to ten pictures in two rows of five.
struct Sheet {
  QString Heading;
  std::vector<SheetTile> Tiles;
};

/// Where everything stands on a sheet. All in device pixels.
struct SheetGeometry {
  int Width = 0;        // Of the printable area.
  int Height = 0;       // Likewise.
  int HeadingLine = 0;  // Height of a line of 16 points.
  int NameLine = 0;     // Height of a line of 12 points.
  double PerUnit = 1;   // Device pixels in a 300th of an inch, the unit of all gaps.

  int TileWidth() const;
  int TileHeight() const;
  /// Left and top of tile `tile`, counted from 0, row by row.
  QPoint TileTop(int tile) const;
  /// A picture of that size as wide as its tile and in the middle of its height; one that would
  /// then lie over names is smaller.
  QRect PictureRect(int tile, QSize picture) const;
  /// Top of the line with the name.
  int NameTop(int tile) const;

 private:
  int Gap(int units) const;
};

/// The geometry of sheets on a device. Throws StepFailure where its page has no room for one.
SheetGeometry GeometryOn(QPaintDevice& device);

/// Draws a sheet on the present page of the painter's device, whose whole printable area it takes.
/// Needs a QGuiApplication for its fonts. Throws StepFailure where the page has no room.
void DrawSheet(const Sheet& sheet, QPainter& painter);

/// Prints a sheet as the one page of a document of `device`, which is not begun before the sheet is
/// known to fit. Throws StepFailure.
void PrintSheet(const Sheet& sheet, QPaintDevice& device);

/// Sheets as the pages of a PDF document: A4, landscape, 300 dots an inch. Needs a QGuiApplication.
class SheetDocument {
 public:
  SheetDocument();
  SheetDocument(const SheetDocument&) = delete;
  SheetDocument& operator=(const SheetDocument&) = delete;

  /// Adds a page; a sheet without tiles adds none.
  void Add(const Sheet& sheet);
  /// The whole file; empty when no page was added. Nothing can be added afterwards.
  QByteArray Finish();

 private:
  QByteArray bytes_;
  QBuffer buffer_{&bytes_};
  QPdfWriter writer_{&buffer_};
  std::unique_ptr<QPainter> painter_;  // From the first page on.
};

}  // namespace tessa
