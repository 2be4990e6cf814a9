#pragma once

#include <QImage>
#include <QSize>

#include "formats/bmp.h"
#include "view/loaded_picture.h"

namespace tessa {

/// An 8-bit picture in the colours of a palette, as large as it is, with a copy of its indices.
QImage PaletteImage(const LoadedPicture& picture, const ColourTable& palette);

/// The same in true colours, made larger or smaller until it just fits into `room` (pixels);
/// proportions stay, and no side becomes 0.
QImage FittedImage(const LoadedPicture& picture, const ColourTable& palette, QSize room);

}  // namespace tessa
