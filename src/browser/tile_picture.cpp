#include "browser/tile_picture.h"

#include <algorithm>

#include "browser/tile.h"

namespace tessa {

QImage PaletteImage(const LoadedPicture& picture, const ColourTable& palette) {
  QImage image(picture.Width, picture.Height, QImage::Format_Indexed8);
  QList<QRgb> colours;
  colours.reserve(static_cast<qsizetype>(palette.size()));
  for (const Colour colour : palette) {
    colours.append(qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour)));
  }
  image.setColorTable(colours);
  for (int row = 0; row < picture.Height; ++row) {
    const std::uint8_t* const from =
        picture.Pixels.data() + static_cast<std::size_t>(row) * picture.Stride;
    std::copy_n(from, picture.Width, image.scanLine(row));
  }
  return image;
}

QImage FittedImage(const LoadedPicture& picture, const ColourTable& palette, QSize room) {
  const QSize size = QSize(picture.Width, picture.Height)
                         .scaled(room, Qt::KeepAspectRatio)
                         .expandedTo(QSize(1, 1));
  // A photograph's true colours would take hundreds of megabytes.
  constexpr int kMuchLarger = 4;
  const int side = kMuchLarger * std::max(size.width(), size.height());
  const auto scaled = [&](const LoadedPicture& from) {
    return PaletteImage(from, palette)
        .convertToFormat(QImage::Format_RGB32)
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  };
  if (std::max(picture.Width, picture.Height) <= side) {
    return scaled(picture);
  }
  LoadedPicture smaller = picture;
  ShrinkPicture(side, smaller);
  return scaled(smaller);
}

}  // namespace tessa
