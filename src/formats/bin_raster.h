#pragma once

#include <cstdint>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/calibration.h"
#include "formats/problem.h"

namespace tessa {

inline constexpr int kBinWidth = 320;
inline constexpr int kBinHeight = 240;
inline constexpr std::size_t kBinDecodeSize = std::size_t{kBinWidth} * kBinHeight * 2;

/// A raster without a header: 320 x 240 little-endian signed values in tenths of a kelvin.
struct BinImage {
  RawRaster Raster;
  Problems Faults;
};

/// Decodes the first min(`fileSize`, kBinDecodeSize) bytes of a file.
BinImage DecodeBin(ByteSpan start, std::uint64_t fileSize);

Bytes EncodeBin(std::span<const std::int16_t> tenthsOfKelvin);

}  // namespace tessa
