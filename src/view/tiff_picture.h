#pragma once

#include "formats/byte_source.h"
#include "formats/problem.h"
#include "view/loaded_picture.h"

namespace tessa {

/// Decodes the first picture of a TIFF or BigTIFF file.
///
/// Read are 1 to 4 samples a pixel of 1, 2, 4, 8, 16 or 32 bits, unsigned, signed or (one sample)
/// floating point of 32 or 64 bits; strips and tiles, planes together or apart; white or black as
/// zero, palette, RGB, CMYK, and YCbCr where JPEG compresses it; without compression, fax groups 3
/// and 4, LZW, deflate, PackBits, JPEG. Further samples such as transparency are passed over. All
/// else is refused and named. The orientation that the file states is applied.
///
/// Greys of up to 8 unsigned bits keep their levels. Other greys (16 and 32 bits, signed, floating
/// point) are spread from their lowest to their highest value over 0 to 255; what is no finite
/// number is 0. A file of one 32-bit float a pixel whose ImageDescription is kDegreesDescription
/// holds temperatures: they stand in Degrees exactly, and the pixels are left 0.
LoadedPicture LoadTiffPicture(const ByteSource& file, PictureUse use, Problems& faults);

}  // namespace tessa
