#include <algorithm>

#include "formats/bin_raster.h"
#include "require.h"

FUZZ_ENTRY {
  const ByteSpan start(data, std::min(size, kBinDecodeSize));
  const BinImage image = DecodeBin(start, size);
  const RawRaster& raster = image.Raster;
  RequireGoodRaster(raster, 320, 240, image.Faults, size);
  Require(raster.Present == start.size() / 2, "all counts are taken");
  const Bytes again = EncodeBin(raster.Counts);
  Require(std::equal(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(2 * raster.Present),
                     start.begin()),
          "counts survive a round trip");
}
