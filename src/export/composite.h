#pragma once

#include "open/session.h"

namespace tessa {

/// Draws the open image, its palette bar and its visible-light picture side by side into
/// ViewBuffers::Picbuf3 (24 bits), and the bar alone into PicBuf6. The bar says what the labels of
/// the scale say, so UpdateRangeDisplay must have run. Needs a QGuiApplication for its texts.
void BuildCompositeView(Session& session);

/// The same without the visible-light picture.
void BuildPaletteView(Session& session);

}  // namespace tessa
