#include <algorithm>
#include <cmath>

#include "formats/sit.h"
#include "require.h"

FUZZ_ENTRY {
  const ByteSpan file(data, size);
  const SitImage image = DecodeSit(file.first(std::min(size, kSitDecodeSize)), size);
  RequireGoodRaster(image.Raster, kSitWidth, kSitHeight, image.Faults, size);
  const std::size_t stored = size > kSitHeaderSize ? size - kSitHeaderSize : 0;
  Require(image.Raster.Present == std::min(stored, kSitRasterSize) / 2, "all counts are taken");
  Require(image.Header.Comment.size() == 638 && image.Header.SoundExt.size() == 3 &&
              image.Header.Signature.size() == 10,
          "texts have their field's size");
  Require(std::isfinite(SitVersionOf(image.Header)), "the version is a number");
}
