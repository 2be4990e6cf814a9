#include "camera/conversion.h"

namespace tessa {

DownloadConversion::DownloadConversion(const Strings& words, const Palettes& palettes)
    : words_(words), palettes_(palettes) {}

}  // namespace tessa
