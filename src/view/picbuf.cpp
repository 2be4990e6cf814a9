#include "view/picbuf.h"

#include <QClipboard>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "core/file_access.h"
#include "core/steps.h"
#include "view/jpeg_picture.h"
#include "view/picture_file.h"

namespace tessa {
namespace {

/// 8 points at 96 pixels to the inch, the same on every screen.
constexpr int kTextPixels = 11;

QFont LabelFont() {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(kTextPixels);
  font.setStyleStrategy(QFont::NoAntialias);
  return font;
}

QColor ToQColor(Colour colour) {
  return {RedOf(colour), GreenOf(colour), BlueOf(colour)};
}

/// Writes a pixel of 24 bits.
void StoreColour(Colour colour, std::uint8_t* pixel) {
  pixel[0] = RedOf(colour);
  pixel[1] = GreenOf(colour);
  pixel[2] = BlueOf(colour);
}

}  // namespace

QSize MeasureText(const QString& text) {
  const QFontMetrics metrics(LabelFont());
  return {metrics.horizontalAdvance(text), metrics.height()};
}

void Picbuf::Allocate(int width, int height, int depth) {
  if (width <= 0 || height <= 0 || width > kMaxPictureSide || height > kMaxPictureSide) {
    throw StepFailure("no buffer has " + std::to_string(width) + " by " + std::to_string(height) +
                      " pixels");
  }
  const std::size_t rowBytes =
      static_cast<std::size_t>(width) * static_cast<std::size_t>(depth / 8);
  const std::size_t stride = (rowBytes + 3) / 4 * 4;
  pixels_.assign(stride * static_cast<std::size_t>(height), 0);
  stride_ = stride;
  width_ = width;
  height_ = height;
  depth_ = depth;
}

void Picbuf::CreateBuffer(Colour fill, int height, int width, int bits) {
  if (bits != 8 && bits != 24) {
    throw StepFailure("a buffer has 8 or 24 bits a pixel");
  }
  Allocate(width, height, bits);
  if (bits == 8) {
    palette_ = GreyPalette();
    if (fill != 0) {
      std::fill(pixels_.begin(), pixels_.end(), static_cast<std::uint8_t>(fill));
    }
  } else if (fill != 0) {
    for (int column = 0; column < width_; ++column) {
      PutColour(column, 0, fill);
    }
    for (int row = 1; row < height_; ++row) {
      std::copy_n(PixelAt(0, 0), stride_, PixelAt(0, row));
    }
  }
  Refresh();
}

void Picbuf::LoadFile(Problems& faults, PictureUse use) {
  LoadedPicture picture = LoadPictureFile(FileName, FileType, use, faults);
  if (picture.Width == 0) {
    const Problem* const reason = FindNoImage(faults);
    throw StepFailure(reason != nullptr ? reason->Text : "the picture cannot be read");
  }
  Take(std::move(picture));
}

void Picbuf::Take(LoadedPicture&& picture) {
  pixels_ = std::move(picture.Pixels);
  stride_ = picture.Stride;
  width_ = picture.Width;
  height_ = picture.Height;
  depth_ = picture.Depth;
  palette_ = picture.Palette;
  Refresh();
}

Bytes Picbuf::Encode() const {
  if (FileType == kJpeg) {
    return EncodeJpeg(ToImage(), JpegQuality);
  }
  if (FileType != kBmp) {
    throw StepFailure("pictures are written as BMP or JPEG only");
  }
  return depth_ == 8 ? EncodeBmp8(width_, height_, pixels_, stride_, palette_)
                     : EncodeBmp24(width_, height_, pixels_, stride_);
}

void Picbuf::SaveFile() const {
  if (pixels_.empty()) {
    throw StepFailure("the buffer holds no picture");
  }
  if (FileName.isEmpty()) {
    throw StepFailure("no file is named");
  }
  WriteWholeFile(FileName, Encode(), Overwrite::kReplace);
}

void Picbuf::FreeBuffer() {
  pixels_ = {};
  width_ = 0;
  height_ = 0;
  depth_ = 0;
  stride_ = 0;
  Refresh();
}

void Picbuf::ConvertDepth(int bits) {
  if (bits != 24) {
    throw StepFailure("a buffer converts to 24 bits only");
  }
  if (depth_ != 8) {
    return;
  }
  Picbuf colours;
  colours.Allocate(width_, height_, 24);
  for (int row = 0; row < height_; ++row) {
    const std::uint8_t* const from = PixelAt(0, row);
    std::uint8_t* const to = colours.PixelAt(0, row);
    for (int column = 0; column < width_; ++column) {
      StoreColour(palette_[from[column]], to + 3 * column);
    }
  }
  pixels_ = std::move(colours.pixels_);
  stride_ = colours.stride_;
  depth_ = 24;
  Refresh();
}

void Picbuf::ReduceTo8Bit() {
  if (depth_ < 16) {
    return;
  }
  Picbuf greys;
  greys.Allocate(width_, height_, 8);
  for (int row = 0; row < height_; ++row) {
    ReduceRow(PixelAt(0, row), static_cast<std::size_t>(width_), greys.PixelAt(0, row));
  }
  pixels_ = std::move(greys.pixels_);
  stride_ = greys.stride_;
  depth_ = 8;
  palette_ = GreyPalette();
  Refresh();
}

std::uint8_t* Picbuf::PixelAt(int column, int row) {
  return pixels_.data() + static_cast<std::size_t>(row) * stride_ +
         static_cast<std::size_t>(column) * static_cast<std::size_t>(depth_ / 8);
}

const std::uint8_t* Picbuf::PixelAt(int column, int row) const {
  return pixels_.data() + static_cast<std::size_t>(row) * stride_ +
         static_cast<std::size_t>(column) * static_cast<std::size_t>(depth_ / 8);
}

Colour Picbuf::ColourAt(int column, int row) const {
  const std::uint8_t* const pixel = PixelAt(column, row);
  return depth_ == 8 ? palette_[*pixel] : Rgb(pixel[0], pixel[1], pixel[2]);
}

void Picbuf::PutColour(int column, int row, Colour colour) {
  if (column < 0 || column >= width_ || row < 0 || row >= height_) {
    return;
  }
  std::uint8_t* const pixel = PixelAt(column, row);
  if (depth_ == 8) {
    *pixel = NearestIndex(colour);
  } else {
    StoreColour(colour, pixel);
  }
}

std::uint8_t Picbuf::NearestIndex(Colour colour) const {
  int best = 0;
  int bestDistance = -1;
  for (int i = 0; i < 256; ++i) {
    const Colour entry = palette_[static_cast<std::size_t>(i)];
    const int red = RedOf(entry) - RedOf(colour);
    const int green = GreenOf(entry) - GreenOf(colour);
    const int blue = BlueOf(entry) - BlueOf(colour);
    const int distance = red * red + green * green + blue * blue;
    if (bestDistance < 0 || distance < bestDistance) {
      best = i;
      bestDistance = distance;
    }
  }
  return static_cast<std::uint8_t>(best);
}

void Picbuf::GetRow(std::span<std::int32_t> cells, int row) const {
  if (row < 0 || row >= height_) {
    throw std::out_of_range("the buffer has no such row");
  }
  const std::uint8_t* from = PixelAt(0, row);
  const auto count = std::min(cells.size(), static_cast<std::size_t>(width_));
  for (std::size_t i = 0; i < count; ++i) {
    cells[i] = depth_ == 8
                   ? from[i]
                   : static_cast<std::int32_t>(Rgb(from[3 * i], from[3 * i + 1], from[3 * i + 2]));
  }
  if (count < static_cast<std::size_t>(width_)) {
    throw std::out_of_range("the picture is wider than a row buffer");
  }
}

void Picbuf::PutRow(std::span<const std::int32_t> cells, int row) {
  if (row < 0 || row >= height_) {
    throw std::out_of_range("the buffer has no such row");
  }
  if (cells.size() < static_cast<std::size_t>(width_)) {
    throw std::out_of_range("the picture is wider than a row buffer");
  }
  std::uint8_t* to = PixelAt(0, row);
  for (int column = 0; column < width_; ++column) {
    const std::int32_t cell = cells[static_cast<std::size_t>(column)];
    if (depth_ == 8) {
      to[column] = static_cast<std::uint8_t>(cell);
    } else {
      PutColour(column, row, static_cast<Colour>(cell));
    }
  }
}

void Picbuf::GetRow(std::span<std::uint8_t> cells, int row) const {
  if (row < 0 || row >= height_ || depth_ != 8 || cells.size() < static_cast<std::size_t>(width_)) {
    throw std::out_of_range("the buffer has no such row of indices");
  }
  std::copy_n(PixelAt(0, row), width_, cells.begin());
}

void Picbuf::PutRow(std::span<const std::uint8_t> cells, int row) {
  if (row < 0 || row >= height_ || depth_ != 8 || cells.size() < static_cast<std::size_t>(width_)) {
    throw std::out_of_range("the buffer has no such row of indices");
  }
  std::copy_n(cells.begin(), width_, PixelAt(0, row));
}

std::span<std::uint8_t> Picbuf::IndexRow(int row) {
  if (row < 0 || row >= height_ || depth_ != 8) {
    throw std::out_of_range("the buffer has no such row of indices");
  }
  return {PixelAt(0, row), static_cast<std::size_t>(width_)};
}

void Picbuf::CreatePalette(const ColourTable& table) {
  palette_ = table;
}

Colour Picbuf::GetPaletteColor(int index) const {
  return palette_.at(static_cast<std::size_t>(index));
}

void Picbuf::SetPaletteColor(Colour colour, int index) {
  palette_.at(static_cast<std::size_t>(index)) = colour;
}

Picbuf::Area Picbuf::Selection() const {
  const int left = std::clamp(SelLeft, 0, width_);
  const int top = std::clamp(SelTop, 0, height_);
  const int right = std::clamp(SelLeft + std::max(SelWidth, 0), left, width_);
  const int bottom = std::clamp(SelTop + std::max(SelHeight, 0), top, height_);
  return {left, top, right - left, bottom - top};
}

void Picbuf::CopyFrom(bool useSourceSelection, const Picbuf& source, bool useOwnSelection) {
  if (source.pixels_.empty()) {
    throw StepFailure("the source buffer holds no picture");
  }
  if (!useSourceSelection && !useOwnSelection) {
    pixels_ = source.pixels_;
    width_ = source.width_;
    height_ = source.height_;
    depth_ = source.depth_;
    stride_ = source.stride_;
    palette_ = source.palette_;
    Refresh();
    return;
  }
  if (pixels_.empty()) {
    throw StepFailure("the buffer was never created");
  }
  const Area from = useSourceSelection
                        ? Area{source.SelLeft, source.SelTop, source.SelWidth, source.SelHeight}
                        : Area{0, 0, source.width_, source.height_};
  const Area to =
      useOwnSelection ? Area{SelLeft, SelTop, SelWidth, SelHeight} : Area{0, 0, width_, height_};
  if (from.Width <= 0 || from.Height <= 0) {
    throw StepFailure("the selection of the source is empty");
  }
  const auto scaled = [](int position, int fromSize, int toSize) {
    return static_cast<int>(static_cast<std::int64_t>(position) * fromSize / toSize);
  };
  // Only the rows and columns of this buffer that the selection covers are visited.
  const int firstColumn = std::max(0, -to.Left);
  const int lastColumn = std::min(to.Width, width_ - to.Left);
  const int lastRow = std::min(to.Height, height_ - to.Top);
  std::vector<int> sourceColumns;
  for (int column = firstColumn; column < lastColumn; ++column) {
    const int sourceColumn = from.Left + scaled(column, from.Width, to.Width);
    sourceColumns.push_back(sourceColumn >= 0 && sourceColumn < source.width_ ? sourceColumn : -1);
  }
  for (int row = std::max(0, -to.Top); row < lastRow && !sourceColumns.empty(); ++row) {
    const int sourceRow = from.Top + scaled(row, from.Height, to.Height);
    if (sourceRow >= 0 && sourceRow < source.height_) {
      CopyRow(source, sourceRow, sourceColumns, to.Left + firstColumn, to.Top + row);
    }
  }
  Refresh();
}

void Picbuf::CopyRow(const Picbuf& source, int sourceRow, std::span<const int> sourceColumns,
                     int left, int row) {
  const std::uint8_t* const from = source.PixelAt(0, sourceRow);
  std::uint8_t* const to = PixelAt(left, row);
  const bool copiesColours = depth_ == 24 && source.depth_ == 24;
  for (std::size_t i = 0; i < sourceColumns.size(); ++i) {
    const int column = sourceColumns[i];
    if (column < 0) {
      continue;
    }
    if (copiesColours) {
      std::copy_n(from + 3 * static_cast<std::size_t>(column), 3, to + 3 * i);
    } else if (depth_ == 24) {
      StoreColour(source.palette_[from[column]], to + 3 * i);
    } else if (source.depth_ == 8) {
      to[i] = from[column];
    } else {
      to[i] = NearestIndex(source.ColourAt(column, sourceRow));
    }
  }
}

void Picbuf::DrawLine(int x0, int y0, int x1, int y1) {
  // Bresenham's line in all directions; pixels outside the buffer are passed over.
  const int dx = std::abs(x1 - x0);
  const int dy = -std::abs(y1 - y0);
  const int stepX = x0 < x1 ? 1 : -1;
  const int stepY = y0 < y1 ? 1 : -1;
  int error = dx + dy;
  while (true) {
    PutColour(x0, y0, ForeColor);
    if (x0 == x1 && y0 == y1) {
      return;
    }
    const int doubled = 2 * error;
    if (doubled >= dy) {
      error += dy;
      x0 += stepX;
    }
    if (doubled <= dx) {
      error += dx;
      y0 += stepY;
    }
  }
}

void Picbuf::DrawSelFrame() {
  const int right = SelLeft + SelWidth - 1;
  const int bottom = SelTop + SelHeight - 1;
  const std::array<std::int32_t, 10> corners = {SelLeft, SelTop,  right,  SelTop,  right,
                                                bottom,  SelLeft, bottom, SelLeft, SelTop};
  DrawPolyline(corners);
}

void Picbuf::DrawPolyline(std::span<const std::int32_t> points) {
  if (pixels_.empty()) {
    throw StepFailure("the buffer was never created");
  }
  for (std::size_t i = 0; i + 3 < points.size(); i += 2) {
    // Coordinates far outside would only cost time.
    const auto limited = [](std::int32_t value) {
      return std::clamp(value, -kMaxPictureSide, 2 * kMaxPictureSide);
    };
    DrawLine(limited(points[i]), limited(points[i + 1]), limited(points[i + 2]),
             limited(points[i + 3]));
  }
  Refresh();
}

void Picbuf::DrawSelText() {
  const Area area = Selection();
  if (area.Width == 0 || area.Height == 0) {
    throw StepFailure("the selection for a text is empty");
  }
  // Drawn without smoothing into a mask, so that 8-bit buffers take the text as well.
  QImage mask(area.Width, area.Height, QImage::Format_RGB32);
  mask.fill(Qt::black);
  QPainter painter(&mask);
  painter.setFont(LabelFont());
  painter.setPen(Qt::white);
  QString lines = Text;
  lines.remove(QLatin1Char('\r'));
  // What of the selection lies outside the buffer cuts the text off and does not move it.
  painter.drawText(
      QRect(SelLeft - area.Left, SelTop - area.Top, SelWidth, SelHeight),
      static_cast<int>(Qt::AlignTop | (TextAlign == 2 ? Qt::AlignHCenter : Qt::AlignLeft)), lines);
  painter.end();
  for (int row = 0; row < area.Height; ++row) {
    const auto* const drawn = reinterpret_cast<const QRgb*>(std::as_const(mask).scanLine(row));
    for (int column = 0; column < area.Width; ++column) {
      if (qGreen(drawn[column]) > 127) {
        PutColour(area.Left + column, area.Top + row, ForeColor);
      }
    }
  }
  Refresh();
}

void Picbuf::CopyToClipboard(bool whole) const {
  if (pixels_.empty()) {
    throw StepFailure("the buffer holds no picture");
  }
  const Area area = Selection();
  const QImage picture =
      whole ? ToImage().copy() : ToImage().copy(area.Left, area.Top, area.Width, area.Height);
  QGuiApplication::clipboard()->setImage(picture);
}

int Picbuf::ClientToImageX(int clientX) const {
  return Xpan + static_cast<int>(std::floor(clientX * ZoomDenominator / ZoomNumerator));
}

int Picbuf::ClientToImageY(int clientY) const {
  return Ypan + static_cast<int>(std::floor(clientY * ZoomDenominator / ZoomNumerator));
}

void Picbuf::ScrollView(int vertical, int horizontal) {
  Ypan = vertical;
  Xpan = horizontal;
  Refresh();
}

void Picbuf::Refresh() {
  if (Changed) {
    Changed();
  }
}

QImage Picbuf::ToImage() const {
  if (pixels_.empty()) {
    return {};
  }
  QImage image(pixels_.data(), width_, height_, static_cast<qsizetype>(stride_),
               depth_ == 8 ? QImage::Format_Indexed8 : QImage::Format_RGB888);
  if (depth_ == 8) {
    QList<QRgb> colours(256);
    for (qsizetype i = 0; i < 256; ++i) {
      colours[i] = ToQColor(palette_[static_cast<std::size_t>(i)]).rgb();
    }
    image.setColorTable(colours);
  }
  return image;
}

}  // namespace tessa
