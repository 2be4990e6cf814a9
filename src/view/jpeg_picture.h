#pragma once

#include <QImage>

#include "formats/byte_source.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"
#include "view/loaded_picture.h"

namespace tessa {

/// Decodes a JPEG file. Greys become 8 bits, all else 24 or, for the view, luminance. A file that
/// ends early or is damaged gives what could be read and a fault. Refused: arithmetic coding, more
/// than 100 scans or more work in them than a photograph of 100 megapixels takes, and progressive
/// pictures whose coefficients need far more memory than a file of that length can justify.
LoadedPicture LoadJpegPicture(const ByteSource& file, PictureUse use, Problems& faults);

/// The bytes of a JPEG file of `quality` 0 to 100 in colours, from a picture of 8-bit indices or
/// 24-bit colours. Throws StepFailure.
Bytes EncodeJpeg(const QImage& picture, int quality);

}  // namespace tessa
