#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <vector>

#include "formats/bmp.h"
#include "formats/problem.h"

namespace tessa {

/// A picture file's content in the two depths of an image buffer.
struct LoadedPicture {
  int Width = 0;  // 0: nothing could be read.
  int Height = 0;
  int Depth = 0;                     // 8 or 24.
  std::vector<std::uint8_t> Pixels;  // Rows from the top without padding; 24: red, green, blue.
  ColourTable Palette{};
};

/// Reads a picture of `fileType` (the values of Picbuf::FileType). Greys and palettes become 8
/// bits, all else 24. Faults say what is wrong; a picture that cannot be read has width 0.
LoadedPicture LoadPictureFile(const QString& path, int fileType, Problems& faults);

/// The bytes of a JPEG file of `quality` 0 to 100. Throws StepFailure.
Bytes EncodeJpeg(const QImage& picture, int quality);

/// The bytes of a PNG file. Throws StepFailure.
Bytes EncodePng(const QImage& picture);

}  // namespace tessa
