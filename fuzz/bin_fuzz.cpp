#include <algorithm>

#include "formats/bin_raster.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tessa::ByteSpan start(data, std::min(size, tessa::kBinDecodeSize));
  const tessa::BinImage image = tessa::DecodeBin(start, size);
  const tessa::RawRaster& raster = image.Raster;
  Require(raster.Counts.size() == tessa::kBinDecodeSize / 2, "the raster has its one size");
  Require(raster.Present == start.size() / 2, "all counts are taken");
  const tessa::Bytes again = tessa::EncodeBin(raster.Counts);
  Require(std::equal(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(2 * raster.Present),
                     start.begin()),
          "counts survive a round trip");
  Require(raster.Present > 0 || tessa::FindNoImage(image.Faults) != nullptr,
          "an empty raster is reported");
  tessa::fuzz::RequireGoodReports(image.Faults, size);
  return 0;
}
