#include <algorithm>
#include <cmath>
#include <numbers>

#include "sample_encoders.h"

namespace tessa::tools {

// The format is a header and 10-bit samples at the top of big-endian words.
Bytes ToneBlock() {
  constexpr std::uint32_t kRate = 8000;
  constexpr std::uint32_t kSamples = 12000;
  constexpr std::size_t kHeaderSize = 42;
  ByteWriter writer;
  writer.Text("/IF", 8);
  writer.U32Be(kRate);
  writer.PadTo(38);
  writer.U32Be(kSamples);
  writer.PadTo(kHeaderSize);
  for (std::uint32_t i = 0; i < kSamples; ++i) {
    // Two strokes of a bell, the second lower.
    const double seconds = static_cast<double>(i) / kRate;
    const double since = seconds < 0.5 ? seconds : seconds - 0.5;
    const double pitch = 2.0 * std::numbers::pi * (seconds < 0.5 ? 880.0 : 659.3) * since;
    const double loudness = std::min(since / 0.005, 1.0) * std::exp(-since / 0.22);
    const double wave = (std::sin(pitch) + 0.3 * std::sin(2.0 * pitch)) / 1.3;
    const auto sample = static_cast<std::uint16_t>(std::lround(512.0 + 420.0 * loudness * wave));
    writer.U16Be(static_cast<std::uint16_t>(sample << 6));
  }
  return writer.Take();
}

}  // namespace tessa::tools
