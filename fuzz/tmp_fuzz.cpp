#include <algorithm>
#include <cmath>

#include "formats/tmp_image.h"
#include "require.h"

using tessa::fuzz::Require;

/// What holds for the raster of either kind.
static void RequireGoodRaster(const tessa::RawRaster& raster, int height,
                              const tessa::Problems& faults, std::size_t fileSize) {
  Require(raster.Width == tessa::kTmpWidth && raster.Height == height, "the raster has its size");
  Require(raster.Counts.size() == static_cast<std::size_t>(raster.Width * raster.Height),
          "the raster has all its counts");
  Require(raster.Present <= raster.Counts.size(), "no more counts than the raster holds");
  Require(std::all_of(raster.Counts.begin() + static_cast<std::ptrdiff_t>(raster.Present),
                      raster.Counts.end(), [](std::int16_t count) { return count == 0; }),
          "counts that the file does not have are zero");
  Require(raster.Present > 0 || tessa::FindNoImage(faults) != nullptr,
          "an empty raster is reported");
  tessa::fuzz::RequireGoodReports(faults, fileSize);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tessa::ByteSpan file(data, size);
  const auto tmp = tessa::DecodeTmp(file.first(std::min(size, tessa::kTmpDecodeSize)), size);
  RequireGoodRaster(tmp.Raster, tessa::kTmpHeight, tmp.Faults, size);
  Require(tmp.Header.Comment.size() == 768 && tmp.Header.Memo.size() == 20,
          "texts have their size");
  Require(std::fabs(tmp.Header.Gain) <= 32769.0, "the gain is a number of the header");
  const auto legacy =
      tessa::DecodeLegacyTmp(file.first(std::min(size, tessa::kLegacyDecodeSize)), size);
  RequireGoodRaster(legacy.Raster, tessa::kLegacyHeight, legacy.Faults, size);
  Require(legacy.Header.StampText.size() == 12, "the stamp has its size");
  const auto& counts = legacy.Raster.Counts;
  Require(std::all_of(counts.begin(), counts.end(),
                      [](std::int16_t count) { return count >= -128 && count <= 127; }),
          "counts are bytes less 128");
  Require(tessa::LegacyGain(legacy.Header.GainCode) > 0.0, "every gain is positive");
  return 0;
}
