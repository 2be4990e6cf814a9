#include "windows/display_colors.h"

#include <cmath>

namespace tessa {

float DisplayColors(int bitsPerPixel, int planes) {
  return std::ldexp(static_cast<float>(planes), bitsPerPixel);
}

QString TooFewColorsText(float displayColors, const Strings& words) {
  constexpr float kLeastColors = 256.0F;
  if (displayColors >= kLeastColors) {
    return {};
  }
  return words.LangString(260,
                          "This Version of Corvane T-40 Viewer requires 256 or Greater Color "
                          "Display Mode") +
         QStringLiteral("\r\n") + words.LangString(283, "You only have") + QLatin1Char(' ') +
         QString::number(static_cast<double>(displayColors)) + QLatin1Char(' ') +
         words.LangString(286, "colors") + QLatin1Char('.');
}

}  // namespace tessa
