#include "view/render_mapping.h"

#include <algorithm>
#include <array>
#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tessa {
namespace {

constexpr std::size_t kBlock = 64;
constexpr double kHalf = 0.5;
/// Beyond this the nearest integer may not fit 32 bits; the exact test is left to the slow road.
constexpr double kSafeMagnitude = 2147483000.0;

/// The largest temperature, by size, whose sum is sure to stay below kSafeMagnitude.
float SafeDegrees(const RenderLine& line) {
  constexpr double kCaution = 0.999999;
  const double room = kSafeMagnitude - std::fabs(static_cast<double>(line.Offset));
  const double degrees = room / std::fabs(static_cast<double>(line.Gain)) * kCaution;
  constexpr double kLargestSingle = 3.4e38;
  // Without a line of finite numbers nothing is safe.
  return degrees >= 0.0 ? static_cast<float>(std::fmin(degrees, kLargestSingle)) : -1.0F;
}

/// Pixel by pixel: those beyond doubt in double, the others in extended precision.
void MapSlowly(std::span<const float> degrees, const RenderLine& line, float safeDegrees,
               std::int32_t& lastValue, std::int32_t* cells, std::uint8_t* indices) {
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    const double sum = static_cast<double>(degrees[i]) * static_cast<double>(line.Gain) +
                       static_cast<double>(line.Offset);
    const double clipped = std::clamp(sum, 0.0, 255.0);
    const double rounded = std::rint(clipped);
    if (std::fabs(degrees[i]) <= safeDegrees && std::fabs(clipped - rounded) != kHalf) {
      lastValue = static_cast<std::int32_t>(rounded);
    } else {
      MapToIndexExtended(degrees[i], line, lastValue);
      lastValue = std::clamp(lastValue, 0, 255);
    }
    cells[i] = lastValue;
    indices[i] = static_cast<std::uint8_t>(lastValue);
  }
}

#if defined(__SSE2__)

/// Index sums of two pixels, clipped to 0..255, with 1.5 x 2^52 added: that addition rounds to the
/// nearest even integer and leaves it in the low 32 bits. `farthest` keeps the largest distance
/// from an integer that was met.
__m128d RoundedPair(__m128d sum, __m128d& farthest) {
  const __m128d rounder = _mm_set1_pd(6755399441055744.0);
  const __m128d clipped = _mm_min_pd(_mm_max_pd(sum, _mm_setzero_pd()), _mm_set1_pd(255.0));
  const __m128d shifted = _mm_add_pd(clipped, rounder);
  const __m128d distance = _mm_sub_pd(clipped, _mm_sub_pd(shifted, rounder));
  farthest = _mm_max_pd(farthest, _mm_andnot_pd(_mm_set1_pd(-0.0), distance));
  return shifted;
}

/// What the pixels of a block share.
struct BlockLine {
  __m128d Gain;
  __m128d Offset;
  __m128 SafeDegrees;  // Temperatures up to this size give sums that fit an integer.
};

struct BlockDoubt {
  __m128d Farthest;
  __m128 TooLarge;  // All bits of a lane that met a temperature that is too large or no number.
};

/// Four pixels as 32-bit indices.
__m128i MapFour(const float* degrees, const BlockLine& line, BlockDoubt& doubt) {
  const __m128 four = _mm_loadu_ps(degrees);
  doubt.TooLarge = _mm_or_ps(
      doubt.TooLarge, _mm_cmpnle_ps(_mm_andnot_ps(_mm_set1_ps(-0.0F), four), line.SafeDegrees));
  const __m128d first = _mm_cvtps_pd(four);
  const __m128d second = _mm_cvtps_pd(_mm_movehl_ps(four, four));
  const __m128d low =
      RoundedPair(_mm_add_pd(_mm_mul_pd(first, line.Gain), line.Offset), doubt.Farthest);
  const __m128d high =
      RoundedPair(_mm_add_pd(_mm_mul_pd(second, line.Gain), line.Offset), doubt.Farthest);
  return _mm_castps_si128(
      _mm_shuffle_ps(_mm_castpd_ps(low), _mm_castpd_ps(high), _MM_SHUFFLE(2, 0, 2, 0)));
}

/// Maps a whole block and tells whether every value in it is beyond doubt.
bool MapBlock(const float* degrees, const RenderLine& line, float safeDegrees, std::int32_t* cells,
              std::uint8_t* indices) {
  const BlockLine shared{_mm_set1_pd(static_cast<double>(line.Gain)),
                         _mm_set1_pd(static_cast<double>(line.Offset)), _mm_set1_ps(safeDegrees)};
  BlockDoubt doubt{_mm_setzero_pd(), _mm_setzero_ps()};
  for (std::size_t i = 0; i < kBlock; i += 16) {
    const __m128i first = MapFour(degrees + i, shared, doubt);
    const __m128i second = MapFour(degrees + i + 4, shared, doubt);
    const __m128i third = MapFour(degrees + i + 8, shared, doubt);
    const __m128i fourth = MapFour(degrees + i + 12, shared, doubt);
    auto* const to = reinterpret_cast<__m128i*>(cells + i);
    _mm_storeu_si128(to, first);
    _mm_storeu_si128(to + 1, second);
    _mm_storeu_si128(to + 2, third);
    _mm_storeu_si128(to + 3, fourth);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(indices + i),
        _mm_packus_epi16(_mm_packs_epi32(first, second), _mm_packs_epi32(third, fourth)));
  }
  const __m128d onHalf = _mm_cmpeq_pd(doubt.Farthest, _mm_set1_pd(kHalf));
  return _mm_movemask_pd(onHalf) == 0 && _mm_movemask_ps(doubt.TooLarge) == 0;
}

#else

/// Maps a whole block and tells whether every value in it is beyond doubt.
bool MapBlock(const float* degrees, const RenderLine& line, float safeDegrees, std::int32_t* cells,
              std::uint8_t* indices) {
  bool safe = true;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const double sum = static_cast<double>(degrees[i]) * static_cast<double>(line.Gain) +
                       static_cast<double>(line.Offset);
    if (!(std::fabs(degrees[i]) <= safeDegrees)) {
      return false;
    }
    const double clipped = std::clamp(sum, 0.0, 255.0);
    const double rounded = std::rint(clipped);
    safe = safe && std::fabs(clipped - rounded) != kHalf;
    cells[i] = static_cast<std::int32_t>(rounded);
    indices[i] = static_cast<std::uint8_t>(rounded);
  }
  return safe;
}

#endif

}  // namespace

bool MapToIndexExtended(float degrees, const RenderLine& line, std::int32_t& value) {
  constexpr long double kLowest = -2147483648.0L;
  constexpr long double kHighest = 2147483647.0L;
  const long double sum = static_cast<long double>(line.Gain) * static_cast<long double>(degrees) +
                          static_cast<long double>(line.Offset);
  const long double rounded = std::rint(sum);
  if (!(rounded >= kLowest && rounded <= kHighest)) {
    return false;
  }
  value = static_cast<std::int32_t>(rounded);
  return true;
}

void MapToIndices(std::span<const float> degrees, const RenderLine& line, std::int32_t& lastValue,
                  std::span<std::int32_t> cells, std::span<std::uint8_t> indices) {
  const float safeDegrees = SafeDegrees(line);
  std::size_t at = 0;
  for (; at + kBlock <= degrees.size(); at += kBlock) {
    if (!MapBlock(degrees.data() + at, line, safeDegrees, cells.data() + at, indices.data() + at)) {
      MapSlowly(degrees.subspan(at, kBlock), line, safeDegrees, lastValue, cells.data() + at,
                indices.data() + at);
    } else {
      lastValue = cells[at + kBlock - 1];
    }
  }
  // The rest goes through the same block, filled up with a harmless value.
  const std::size_t rest = degrees.size() - at;
  if (rest > 0) {
    std::array<float, kBlock> padded;
    std::array<std::int32_t, kBlock> values;
    std::array<std::uint8_t, kBlock> bytes;
    std::copy_n(degrees.data() + at, rest, padded.begin());
    std::fill(padded.begin() + static_cast<std::ptrdiff_t>(rest), padded.end(), degrees[at]);
    if (MapBlock(padded.data(), line, safeDegrees, values.data(), bytes.data())) {
      std::copy_n(values.begin(), rest, cells.data() + at);
      std::copy_n(bytes.begin(), rest, indices.data() + at);
      lastValue = values[rest - 1];
    } else {
      MapSlowly(degrees.subspan(at), line, safeDegrees, lastValue, cells.data() + at,
                indices.data() + at);
    }
  }
}

}  // namespace tessa
