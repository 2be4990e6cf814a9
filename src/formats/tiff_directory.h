#pragma once

#include "formats/byte_source.h"
#include "formats/problem.h"

namespace tessa {

/// Looks over the first directory of a TIFF or BigTIFF file before a library reads it: the library
/// copies every entry's values, and a few kilobytes of entries that all point at the same bytes
/// would cost it gigabytes. False, and a fault that leaves no image, for what is no TIFF, has no
/// directory inside the file, has more than 512 entries, or names more bytes of values than the
/// file holds.
bool CheckTiffDirectory(const ByteSource& file, Problems& faults);

}  // namespace tessa
