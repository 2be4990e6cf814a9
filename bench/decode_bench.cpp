// From the bytes of a file to its values, in memory.

#include "bench_support.h"
#include "formats/bin_raster.h"
#include "formats/calibration.h"
#include "formats/tmp_image.h"

namespace tessa {
namespace {

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

void DecodeTmpFromMemory(benchmark::State& state) {
  TmpFields fields;
  fields.Counts = ScatteredCounts(kTmpWidth, kTmpHeight, 0, 6000);
  const Bytes file = EncodeTmp(fields);
  std::vector<float> degrees(fields.Counts.size());
  for (auto _ : state) {
    const TmpImage image = DecodeTmp(ByteSpan(file).first(kTmpDecodeSize), file.size());
    Calibrate(image.Raster.Counts,
              {static_cast<float>(image.Header.Gain), static_cast<float>(image.Header.Offset)},
              degrees);
    benchmark::DoNotOptimize(degrees.data());
  }
  PerPixel(state, static_cast<double>(degrees.size()));
}
BENCHMARK(DecodeTmpFromMemory)->Unit(benchmark::kMicrosecond);

void DecodeLegacyTmpFromMemory(benchmark::State& state) {
  const std::vector<std::int16_t> counts = ScatteredCounts(kTmpWidth, kLegacyHeight, 0, 256);
  LegacyFields fields;
  fields.Values.assign(counts.begin(), counts.end());
  const Bytes file = EncodeLegacyTmp(fields);
  for (auto _ : state) {
    benchmark::DoNotOptimize(DecodeLegacyTmp(file, file.size()));
  }
  PerPixel(state, static_cast<double>(counts.size()));
}
BENCHMARK(DecodeLegacyTmpFromMemory)->Unit(benchmark::kMicrosecond);

void DecodeBinFromMemory(benchmark::State& state) {
  const std::vector<std::int16_t> tenths = ScatteredCounts(kBinWidth, kBinHeight, 2600, 600);
  const Bytes file = EncodeBin(tenths);
  for (auto _ : state) {
    benchmark::DoNotOptimize(DecodeBin(file, file.size()));
  }
  PerPixel(state, static_cast<double>(tenths.size()));
}
BENCHMARK(DecodeBinFromMemory)->Unit(benchmark::kMicrosecond);

/// One frame of a snapshot or sequence; the argument is bytes a pixel.
void DecodeFrameFromMemory(benchmark::State& state) {
  const Bytes array = FrameArray(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(DecodeFrameArray(array, kFrameWidth, kFrameHeight));
  }
  PerPixel(state, kFramePixels);
}
BENCHMARK(DecodeFrameFromMemory)->Arg(2)->Arg(1)->Unit(benchmark::kMicrosecond);

void DecodeBmpFromMemory(benchmark::State& state) {
  const Bytes file = BitmapFile();
  for (auto _ : state) {
    benchmark::DoNotOptimize(DecodeBmp(file));
  }
  PerPixel(state, kBitmapPixels);
}
BENCHMARK(DecodeBmpFromMemory)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessa
