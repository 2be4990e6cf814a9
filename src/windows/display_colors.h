#pragma once

#include <QString>

#include "core/language_strings.h"

namespace tessa {

/// Colours of a display: 2 to the power of its bits a pixel, times its planes.
float DisplayColors(int bitsPerPixel, int planes);

/// Why a display of so many colours cannot show images; empty when it can (256 and more).
QString TooFewColorsText(float displayColors, const Strings& words);

}  // namespace tessa
