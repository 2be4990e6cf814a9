#pragma once

#include <cstdint>
#include <string_view>

#include "core/file_access.h"
#include "open/session.h"

namespace tessa {

/// Name of the temporary file that holds the open image's visible picture.
inline const QString kVisibleFileName = QStringLiteral("TESSAVIEW.JPG");

/// The field that faults of the visible picture name.
inline constexpr std::string_view kVisibleField = "VisibleImage";

/// The bytes from `position` (counted from byte 1) to the end of a file when a JPEG starts there;
/// empty otherwise. At most 32 MiB.
Bytes CutOutVisible(const RandomFile& file, std::uint64_t position);

/// Looks for the visible picture of the open SIT image at `position` (counted from byte 1; 0:
/// none), sets HasVisibleImage and what depends on it. Sessions that show pictures also get it as a
/// temporary file and, scaled to 640 x 480, in the buffer for it; a picture that cannot be decoded
/// leaves that buffer empty, a fault, and nothing to choose in the view.
void ExtractVisible(std::uint64_t position, Session& session);

}  // namespace tessa
