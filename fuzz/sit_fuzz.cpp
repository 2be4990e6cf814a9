#include <algorithm>
#include <cmath>

#include "formats/sit.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tessa::ByteSpan file(data, size);
  const tessa::SitImage image =
      tessa::DecodeSit(file.first(std::min(size, tessa::kSitDecodeSize)), size);
  const auto& counts = image.Raster.Counts;
  Require(counts.size() == tessa::kSitRasterSize / 2, "the raster has its one size");
  Require(image.Raster.Present <= counts.size(), "no more counts than the raster holds");
  const std::size_t stored = size > tessa::kSitHeaderSize ? size - tessa::kSitHeaderSize : 0;
  Require(image.Raster.Present == std::min(stored / 2, counts.size()), "all counts are taken");
  Require(std::all_of(counts.begin() + static_cast<std::ptrdiff_t>(image.Raster.Present),
                      counts.end(), [](std::int16_t count) { return count == 0; }),
          "counts that the file does not have are zero");
  const bool isEmpty = image.Raster.Present == 0;
  Require(!isEmpty || tessa::FindNoImage(image.Faults) != nullptr, "an empty raster is reported");
  Require(image.Header.Comment.size() == 638 && image.Header.SoundExt.size() == 3 &&
              image.Header.Signature.size() == 10,
          "texts have their field's size");
  Require(std::isfinite(tessa::SitVersionOf(image.Header)), "the version is a number");
  tessa::fuzz::RequireGoodReports(image.Faults, size);
  return 0;
}
