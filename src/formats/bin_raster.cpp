#include "formats/bin_raster.h"

#include <algorithm>

#include "formats/foreign_content.h"

namespace tessa {

BinImage DecodeBin(ByteSpan start, std::uint64_t fileSize) {
  BinImage image;
  image.Raster.Width = kBinWidth;
  image.Raster.Height = kBinHeight;
  image.Raster.Counts.resize(std::size_t{kBinWidth} * kBinHeight);
  if (auto foreign = ForeignContentProblem(start, "a BIN image")) {
    image.Faults.push_back(std::move(*foreign));
  }
  image.Raster.Present = std::min(start.size(), kBinDecodeSize) / 2;
  ByteReader reader(start);
  for (std::int16_t& count : std::span(image.Raster.Counts).first(image.Raster.Present)) {
    count = reader.I16Le();
  }
  if (start.size() < kBinDecodeSize && FindNoImage(image.Faults) == nullptr) {
    image.Faults.push_back(
        {ProblemKind::kTruncated, fileSize, "Raster",
         "the file ends inside its picture: " + std::to_string(image.Raster.Present / kBinWidth) +
             " of 240 rows are whole",
         image.Raster.Present == 0});
  }
  return image;
}

Bytes EncodeBin(std::span<const std::int16_t> tenthsOfKelvin) {
  ByteWriter writer;
  for (const std::int16_t tenths : tenthsOfKelvin) {
    writer.U16Le(static_cast<std::uint16_t>(tenths));
  }
  return writer.Take();
}

}  // namespace tessa
