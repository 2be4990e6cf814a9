#include <algorithm>
#include <cmath>

#include "formats/tmp_image.h"
#include "require.h"

FUZZ_ENTRY {
  const ByteSpan file(data, size);
  const auto tmp = DecodeTmp(file.first(std::min(size, kTmpDecodeSize)), size);
  RequireGoodRaster(tmp.Raster, kTmpWidth, kTmpHeight, tmp.Faults, size);
  Require(tmp.Header.Comment.size() == 768 && tmp.Header.Memo.size() == 20,
          "texts have their size");
  Require(std::fabs(tmp.Header.Gain) <= 32769.0, "the gain is a number of the header");
  const auto legacy = DecodeLegacyTmp(file.first(std::min(size, kLegacyDecodeSize)), size);
  RequireGoodRaster(legacy.Raster, kTmpWidth, kLegacyHeight, legacy.Faults, size);
  Require(legacy.Header.StampText.size() == 12, "the stamp has its size");
  const auto& counts = legacy.Raster.Counts;
  Require(std::all_of(counts.begin(), counts.end(),
                      [](std::int16_t count) { return count >= -128 && count <= 127; }),
          "counts are bytes less 128");
  Require(LegacyGain(legacy.Header.GainCode) > 0.0, "every gain is positive");
}
