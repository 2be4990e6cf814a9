#pragma once

#include <QIcon>
#include <QSize>

#include "formats/bmp.h"

namespace tessa {

/// Size of a palette's picture in a list, logical pixels.
inline constexpr QSize kSwatchSize(72, 14);

/// A palette as a small bar from cold to hot.
QIcon PaletteSwatch(const ColourTable& table);

}  // namespace tessa
