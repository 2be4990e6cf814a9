#pragma once

#include "view/picbuf.h"

namespace tessa {

/// The image buffers of the main view.
struct ViewBuffers {
  Picbuf Picbuf1;   // The open image: 8-bit indices.
  Picbuf PicBuf2;   // Horizontal palette strip, 256 x 25, column value = palette index.
  Picbuf Picbuf7;   // Vertical palette strip, 30 x 256, top row = index 255.
  Picbuf Picbuf3;   // Composite of image, palette bar and visible picture.
  Picbuf PicBuf6;   // The palette bar part alone.
  Picbuf Picbuf8;   // 24-bit working copy of the image.
  Picbuf Picbuf9;   // 24-bit working copy of the vertical strip.
  Picbuf Picbuf10;  // Scratch.
};

/// The image buffers of the main window.
struct VisibleBuffers {
  Picbuf Picbuf3;  // The visible-light picture of the open image, 640 x 480.
  Picbuf PicBuf2;  // What it is loaded into.
};

/// Creates and fills the two palette strips.
void MakePaletteStrips(ViewBuffers& buffers);

}  // namespace tessa
