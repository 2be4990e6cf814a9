#pragma once

#include <benchmark/benchmark.h>

#include <QDir>
#include <cstdint>
#include <vector>

#include "core/application_folder.h"
#include "formats/bmp.h"
#include "formats/frame_array.h"
#include "formats/sequence.h"
#include "formats/sit.h"

/// What the benchmarks share.
namespace tessa {

/// Adds the column "ns/pixel".
inline void PerPixel(benchmark::State& state, double pixels) {
  state.counters["ns/pixel"] = benchmark::Counter(
      pixels * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// An application folder for sessions that read nothing from it.
inline ApplicationFolder NoFolder() {
  return {QDir::tempPath(), QDir::tempPath()};
}

/// Values that differ from pixel to pixel, between `low` and `low` + `span` - 1.
inline std::vector<std::int16_t> ScatteredCounts(int width, int height, int low, int span) {
  std::vector<std::int16_t> counts(static_cast<std::size_t>(width) *
                                   static_cast<std::size_t>(height));
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const auto scattered = static_cast<int>(i * 7919 % static_cast<std::size_t>(span));
    counts[i] = static_cast<std::int16_t>(low + scattered);
  }
  return counts;
}

inline Bytes SitFile() {
  SitFields fields;
  fields.Counts = ScatteredCounts(kSitWidth, kSitHeight, 0, 6000);
  return EncodeSit(fields);
}

/// An 8-bit bitmap of 640 x 480 with what its reserved words are to say.
inline Bytes BitmapFile(std::int16_t reservedLow = 0, std::int16_t reservedHigh = 0) {
  constexpr int kWidth = 640;
  constexpr int kHeight = 480;
  const std::vector<std::int16_t> counts = ScatteredCounts(kWidth, kHeight, 0, 256);
  const std::vector<std::uint8_t> indices(counts.begin(), counts.end());
  ColourTable palette{};
  for (std::size_t i = 0; i < palette.size(); ++i) {
    const auto level = static_cast<std::uint8_t>(i);
    palette[i] = Rgb(level, level, level);
  }
  return EncodeBmp8(kWidth, kHeight, indices, kWidth, palette, reservedLow, reservedHigh);
}
inline constexpr double kBitmapPixels = 640.0 * 480.0;

inline constexpr int kFrameWidth = 320;
inline constexpr int kFrameHeight = 240;
inline constexpr double kFramePixels = static_cast<double>(kFrameWidth) * kFrameHeight;
inline constexpr const char* kFrameStamp = "01/15/2026 10:15:10 AM";

/// One frame: levels for bytes, tenths of a kelvin around room temperature otherwise.
inline Bytes FrameArray(int bytesPerElement) {
  const bool levels = bytesPerElement == 1;
  return EncodeFrameArray(
      kFrameWidth, kFrameHeight,
      ScatteredCounts(kFrameWidth, kFrameHeight, levels ? 0 : 2700, levels ? 256 : 600),
      bytesPerElement);
}

/// A snapshot whose frames carry stamps.
inline Bytes SnapshotFile(int frames) {
  SnapshotFields fields;
  fields.Header.Version = kStampedVersion;
  fields.Header.Frames = frames;
  fields.Header.Width = kFrameWidth;
  fields.Header.Height = kFrameHeight;
  fields.Header.ScaleMax = 50.0F;
  fields.Frames.assign(static_cast<std::size_t>(frames), FrameArray(2));
  fields.Stamps.assign(static_cast<std::size_t>(frames), kFrameStamp);
  return EncodeSnapshot(fields);
}

inline Bytes ContainerStart(int frames, int depth) {
  return EncodeContainerHeader(
      {kContainerVersion, frames, depth, kFrameWidth, kFrameHeight, 0.95F});
}
inline Bytes ContainerFrame(int depth) {
  return EncodeContainerFrame({kFrameStamp, 233.2F, 393.2F, 270.0F, 330.0F},
                              FrameArray(depth == 8 ? 1 : 2));
}
/// A container of one frame.
inline Bytes ContainerFile(int depth) {
  Bytes file = ContainerStart(1, depth);
  const Bytes frame = ContainerFrame(depth);
  file.insert(file.end(), frame.begin(), frame.end());
  return file;
}

}  // namespace tessa
