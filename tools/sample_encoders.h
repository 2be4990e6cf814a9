#pragma once

#include <string>

#include "formats/byte_writer.h"
#include "scenes.h"

namespace tessa::tools {

/// What a camera would have written beside the picture.
struct SampleFacts {
  std::string Comment;  // Code page 1252.
  std::string Memo;
  std::string DateText = "260115";  // YYMMDD
  std::string TimeText = "163005";  // HHMMSS
  double Emissivity = 0.95;
  double RangeLow = -40.0;  // Calibrated range, degrees Celsius.
  double RangeHigh = 120.0;
};

/// The scene, cut and resampled to 320 x 240, as a SIT file. The gain is as fine as the scene's
/// span allows; the stored scale covers all but the most extreme half percent at each end.
Bytes SceneAsSit(const Scene& scene, const SampleFacts& facts);

/// The scene in its own size as an 8-bit grey picture spanning its extremes, in the format of
/// `ending`: "bmp", "tif" or "jpg". Throws std::runtime_error.
Bytes SceneAsPicture(const Scene& scene, const std::string& ending);

}  // namespace tessa::tools
