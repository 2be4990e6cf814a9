#include "formats/calibration.h"

#include <algorithm>
#include <bit>
#include <cstring>

// Compiled twice where it can be, the second time for processors with wider registers; one of them
// is taken when the program starts. Results are the same, as nothing is fused or reordered.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define TESSA_ALSO_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define TESSA_ALSO_WIDE
#endif

namespace tessa {

TESSA_ALSO_WIDE
void Calibrate(std::span<const std::int16_t> counts, const LinearCalibration& line,
               std::span<float> degrees) {
  const std::size_t count = std::min(counts.size(), degrees.size());
  const std::int16_t* const from = counts.data();
  float* const to = degrees.data();
  const LinearCalibration local = line;
  for (std::size_t i = 0; i < count; ++i) {
    to[i] = local.Degrees(from[i]);
  }
}

void DecodeCountsBigEndian(std::span<const std::uint8_t> bytes, std::span<std::int16_t> counts) {
  const std::size_t count = std::min(bytes.size() / 2, counts.size());
  const std::uint8_t* const from = bytes.data();
  std::int16_t* const to = counts.data();
  for (std::size_t i = 0; i < count; ++i) {
    std::uint16_t word = 0;
    std::memcpy(&word, from + 2 * i, sizeof word);
    if constexpr (std::endian::native == std::endian::little) {
      word = static_cast<std::uint16_t>(word << 8 | word >> 8);
    }
    to[i] = static_cast<std::int16_t>(word);
  }
}

CountExtremes FindExtremes(std::span<const std::int16_t> counts) {
  std::int16_t low = counts.front();
  std::int16_t high = counts.front();
  for (const std::int16_t count : counts) {
    low = std::min(low, count);
    high = std::max(high, count);
  }
  return {low, high};
}

}  // namespace tessa
