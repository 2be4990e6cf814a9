#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "formats/calibration.h"
#include "formats/problem.h"

namespace tessa::fuzz {

/// Ends the fuzz run with the input at hand as its find when a promise of a decoder is broken.
inline void Require(bool holds, const char* promise) {
  if (!holds) {
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
  }
}

/// What holds for the faults of any decoder.
inline void RequireGoodReports(const Problems& faults, std::uint64_t fileSize) {
  for (const Problem& fault : faults) {
    Require(fault.Offset <= fileSize, "a fault lies in the file");
    Require(!fault.Field.empty() && !fault.Text.empty(), "a fault has a field and a sentence");
    Require(fault.Text.back() != '.', "a sentence has no final full stop");
  }
  Require(faults.size() < 16, "a file is not buried under faults");
}

/// What holds for the raster of any still image of `width` x `height`.
inline void RequireGoodRaster(const RawRaster& raster, int width, int height,
                              const Problems& faults, std::size_t fileSize) {
  Require(raster.Width == width && raster.Height == height, "the raster has its size");
  Require(raster.Counts.size() == static_cast<std::size_t>(width * height),
          "the raster has all its counts");
  Require(raster.Present <= raster.Counts.size(), "no more counts than the raster holds");
  Require(std::all_of(raster.Counts.begin() + static_cast<std::ptrdiff_t>(raster.Present),
                      raster.Counts.end(), [](std::int16_t count) { return count == 0; }),
          "counts that the file does not have are zero");
  Require(raster.Present > 0 || FindNoImage(faults) != nullptr, "an empty raster is reported");
  RequireGoodReports(faults, fileSize);
}

}  // namespace tessa::fuzz

// For the entries, each of which is a program of its own.
using namespace tessa;
using namespace tessa::fuzz;

/// FUZZ_ENTRY { what has to hold for the `size` bytes from `data` on }
#define FUZZ_ENTRY                                                                    \
  static void RunEntry(const std::uint8_t*, std::size_t);                             \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    RunEntry(data, size);                                                             \
    return 0;                                                                         \
  }                                                                                   \
  static void RunEntry([[maybe_unused]] const std::uint8_t* data, [[maybe_unused]] std::size_t size)
