#pragma once

#include <QImage>
#include <QString>
#include <cstdint>

#include "formats/byte_writer.h"
#include "formats/problem.h"
#include "view/loaded_picture.h"

namespace tessa {

/// Reads a picture of `fileType` (the values of Picbuf::FileType), at most 100 million pixels.
/// Faults say what is wrong; a picture that cannot be read has width 0. The file is read a piece at
/// a time, never as a whole.
LoadedPicture LoadPictureFile(const QString& path, int fileType, PictureUse use, Problems& faults);

/// kQuick takes less time for files that are about a fifth larger.
enum class PngEffort { kSmall, kQuick };

/// The bytes of a PNG file. Throws StepFailure.
Bytes EncodePng(const QImage& picture, PngEffort effort = PngEffort::kSmall);

}  // namespace tessa
