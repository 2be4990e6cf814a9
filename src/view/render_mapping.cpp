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

std::int32_t Clip(std::int32_t value) {
  return std::clamp(value, 0, 255);
}

void MapSlowly(std::span<const float> degrees, const RenderLine& line, std::int32_t& lastValue,
               std::int32_t* cells, std::uint8_t* indices) {
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    MapToIndexExtended(degrees[i], line, lastValue);
    lastValue = Clip(lastValue);
    cells[i] = lastValue;
    indices[i] = static_cast<std::uint8_t>(lastValue);
  }
}

#if defined(__SSE2__)

/// Index sums of two pixels, clipped to 0..255, with 1.5 x 2^52 added: that addition rounds to the
/// nearest even integer and leaves it in the low 32 bits. `doubt` gains all bits for a pixel whose
/// sum lies on a half, is too large for an integer, or is no number.
__m128d RoundedPair(__m128d sum, __m128d& doubt) {
  const __m128d rounder = _mm_set1_pd(6755399441055744.0);
  const __m128d signBit = _mm_set1_pd(-0.0);
  const __m128d clipped = _mm_min_pd(_mm_max_pd(sum, _mm_setzero_pd()), _mm_set1_pd(255.0));
  const __m128d shifted = _mm_add_pd(clipped, rounder);
  const __m128d distance =
      _mm_andnot_pd(signBit, _mm_sub_pd(clipped, _mm_sub_pd(shifted, rounder)));
  doubt = _mm_or_pd(doubt, _mm_cmpeq_pd(distance, _mm_set1_pd(kHalf)));
  doubt = _mm_or_pd(doubt, _mm_cmpnlt_pd(_mm_andnot_pd(signBit, sum), _mm_set1_pd(kSafeMagnitude)));
  return shifted;
}

/// Four pixels as 32-bit indices.
__m128i MapFour(const float* degrees, __m128d gain, __m128d offset, __m128d& doubt) {
  const __m128 four = _mm_loadu_ps(degrees);
  const __m128d first = _mm_cvtps_pd(four);
  const __m128d second = _mm_cvtps_pd(_mm_movehl_ps(four, four));
  const __m128d low = RoundedPair(_mm_add_pd(_mm_mul_pd(first, gain), offset), doubt);
  const __m128d high = RoundedPair(_mm_add_pd(_mm_mul_pd(second, gain), offset), doubt);
  return _mm_castps_si128(
      _mm_shuffle_ps(_mm_castpd_ps(low), _mm_castpd_ps(high), _MM_SHUFFLE(2, 0, 2, 0)));
}

/// Maps a whole block and tells whether every value in it is beyond doubt.
bool MapBlock(const float* degrees, const RenderLine& line, std::int32_t* cells,
              std::uint8_t* indices) {
  const __m128d gain = _mm_set1_pd(static_cast<double>(line.Gain));
  const __m128d offset = _mm_set1_pd(static_cast<double>(line.Offset));
  __m128d doubt = _mm_setzero_pd();
  for (std::size_t i = 0; i < kBlock; i += 16) {
    const __m128i first = MapFour(degrees + i, gain, offset, doubt);
    const __m128i second = MapFour(degrees + i + 4, gain, offset, doubt);
    const __m128i third = MapFour(degrees + i + 8, gain, offset, doubt);
    const __m128i fourth = MapFour(degrees + i + 12, gain, offset, doubt);
    auto* const to = reinterpret_cast<__m128i*>(cells + i);
    _mm_storeu_si128(to, first);
    _mm_storeu_si128(to + 1, second);
    _mm_storeu_si128(to + 2, third);
    _mm_storeu_si128(to + 3, fourth);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(indices + i),
        _mm_packus_epi16(_mm_packs_epi32(first, second), _mm_packs_epi32(third, fourth)));
  }
  return _mm_movemask_pd(doubt) == 0;
}

#else

/// Maps a whole block and tells whether every value in it is beyond doubt.
bool MapBlock(const float* degrees, const RenderLine& line, std::int32_t* cells,
              std::uint8_t* indices) {
  bool safe = true;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const double sum = static_cast<double>(degrees[i]) * static_cast<double>(line.Gain) +
                       static_cast<double>(line.Offset);
    if (!(std::fabs(sum) < kSafeMagnitude)) {
      return false;
    }
    const double clipped = std::clamp(sum, 0.0, 255.0);
    const double rounded = std::nearbyint(clipped);
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
  const long double rounded = std::nearbyint(sum);
  if (!(rounded >= kLowest && rounded <= kHighest)) {
    return false;
  }
  value = static_cast<std::int32_t>(rounded);
  return true;
}

void MapToIndices(std::span<const float> degrees, const RenderLine& line, std::int32_t& lastValue,
                  std::span<std::int32_t> cells, std::span<std::uint8_t> indices) {
  std::size_t at = 0;
  for (; at + kBlock <= degrees.size(); at += kBlock) {
    if (!MapBlock(degrees.data() + at, line, cells.data() + at, indices.data() + at)) {
      MapSlowly(degrees.subspan(at, kBlock), line, lastValue, cells.data() + at,
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
    if (MapBlock(padded.data(), line, values.data(), bytes.data())) {
      std::copy_n(values.begin(), rest, cells.data() + at);
      std::copy_n(bytes.begin(), rest, indices.data() + at);
      lastValue = values[rest - 1];
    } else {
      MapSlowly(degrees.subspan(at), line, lastValue, cells.data() + at, indices.data() + at);
    }
  }
}

}  // namespace tessa
