#pragma once

#include "core/language_strings.h"
#include "core/open_image.h"
#include "core/view_state.h"
#include "view/picbuf.h"

namespace tessa {

/// What the cursor last pointed at.
struct Readout {
  int LastX = -1;  // 1-based image position.
  int LastY = -1;
  int ReadoutIndex = 0;  // Palette index there.
};

/// The cursor is over client position (x, y) of the picture, logical pixels from the corner of what
/// is shown. Writes position and temperature (or palette entry) to the status panels and the tool
/// tip. False when the image position is the one reported last: nothing changed.
bool UpdateReadout(int clientX, int clientY, const OpenImage& image, const Picbuf& picture,
                   const Strings& strings, Readout& readout, ViewState& view);

/// The cursor left the picture.
void ClearReadout(Readout& readout, ViewState& view);

}  // namespace tessa
