#include <benchmark/benchmark.h>

#include "formats/bmp.h"
#include "formats/calibration.h"
#include "formats/sit.h"

namespace tessa {
namespace {

Bytes SitFile() {
  SitFields fields;
  fields.Counts.resize(std::size_t{kSitWidth} * kSitHeight);
  for (std::size_t i = 0; i < fields.Counts.size(); ++i) {
    fields.Counts[i] = static_cast<std::int16_t>(i * 7919 % 6000);
  }
  return EncodeSit(fields);
}

void PerPixel(benchmark::State& state, double pixels) {
  state.counters["ns/pixel"] = benchmark::Counter(
      pixels * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// From the bytes of a file to degrees.
void DecodeSitFromMemory(benchmark::State& state) {
  const Bytes file = SitFile();
  std::vector<float> degrees(std::size_t{kSitWidth} * kSitHeight);
  for (auto _ : state) {
    const SitImage image = DecodeSit(file, file.size());
    Calibrate(image.Raster.Counts,
              {static_cast<float>(image.Header.Gain), static_cast<float>(image.Header.Offset)},
              degrees);
    benchmark::DoNotOptimize(degrees.data());
  }
  PerPixel(state, static_cast<double>(degrees.size()));
}
BENCHMARK(DecodeSitFromMemory)->Unit(benchmark::kMicrosecond);

void DecodeBmpFromMemory(benchmark::State& state) {
  const std::vector<std::uint8_t> indices(640 * 480, 17);
  const Bytes file = EncodeBmp8(640, 480, indices, 640, {});
  for (auto _ : state) {
    benchmark::DoNotOptimize(DecodeBmp(file));
  }
  PerPixel(state, 640.0 * 480.0);
}
BENCHMARK(DecodeBmpFromMemory)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessa
