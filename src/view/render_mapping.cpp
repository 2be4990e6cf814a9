#include "view/render_mapping.h"

#include <algorithm>
#include <array>
#include <bit>
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

/// Which pixels of a mapped block are in doubt.
struct BlockDoubt {
  std::uint64_t Ties = 0;   // Bit i: the sum of pixel i lies exactly between two indices.
  bool OutOfReach = false;  // Some temperature is too large, or no number.
};

#if defined(__SSE2__)

/// Index sums of two pixels, clipped to 0..255, with 1.5 x 2^52 added: that addition rounds to the
/// nearest even integer and leaves it in the low 32 bits. `ties` gets a bit for each exact half.
__m128d RoundedPair(__m128d sum, std::uint64_t& ties) {
  const __m128d rounder = _mm_set1_pd(6755399441055744.0);
  const __m128d clipped = _mm_min_pd(_mm_max_pd(sum, _mm_setzero_pd()), _mm_set1_pd(255.0));
  const __m128d shifted = _mm_add_pd(clipped, rounder);
  const __m128d distance = _mm_sub_pd(clipped, _mm_sub_pd(shifted, rounder));
  const __m128d onHalf =
      _mm_cmpeq_pd(_mm_andnot_pd(_mm_set1_pd(-0.0), distance), _mm_set1_pd(kHalf));
  ties = ties >> 2 | static_cast<std::uint64_t>(_mm_movemask_pd(onHalf)) << 62;
  return shifted;
}

/// What the pixels of a block share.
struct BlockLine {
  __m128d Gain;
  __m128d Offset;
  __m128 SafeDegrees;  // Temperatures up to this size give sums that fit an integer.
};

/// Four pixels as 32-bit indices.
__m128i MapFour(const float* degrees, const BlockLine& line, std::uint64_t& ties,
                __m128& outOfReach) {
  const __m128 four = _mm_loadu_ps(degrees);
  outOfReach = _mm_or_ps(outOfReach,
                         _mm_cmpnle_ps(_mm_andnot_ps(_mm_set1_ps(-0.0F), four), line.SafeDegrees));
  const __m128d first = _mm_cvtps_pd(four);
  const __m128d second = _mm_cvtps_pd(_mm_movehl_ps(four, four));
  const __m128d low = RoundedPair(_mm_add_pd(_mm_mul_pd(first, line.Gain), line.Offset), ties);
  const __m128d high = RoundedPair(_mm_add_pd(_mm_mul_pd(second, line.Gain), line.Offset), ties);
  return _mm_castps_si128(
      _mm_shuffle_ps(_mm_castpd_ps(low), _mm_castpd_ps(high), _MM_SHUFFLE(2, 0, 2, 0)));
}

/// Maps a whole block in double precision and tells what of it is in doubt.
BlockDoubt MapBlock(const float* degrees, const RenderLine& line, float safeDegrees,
                    std::int32_t* cells, std::uint8_t* indices) {
  const BlockLine shared{_mm_set1_pd(static_cast<double>(line.Gain)),
                         _mm_set1_pd(static_cast<double>(line.Offset)), _mm_set1_ps(safeDegrees)};
  BlockDoubt doubt;
  __m128 outOfReach = _mm_setzero_ps();
  for (std::size_t i = 0; i < kBlock; i += 16) {
    const __m128i first = MapFour(degrees + i, shared, doubt.Ties, outOfReach);
    const __m128i second = MapFour(degrees + i + 4, shared, doubt.Ties, outOfReach);
    const __m128i third = MapFour(degrees + i + 8, shared, doubt.Ties, outOfReach);
    const __m128i fourth = MapFour(degrees + i + 12, shared, doubt.Ties, outOfReach);
    auto* const to = reinterpret_cast<__m128i*>(cells + i);
    _mm_storeu_si128(to, first);
    _mm_storeu_si128(to + 1, second);
    _mm_storeu_si128(to + 2, third);
    _mm_storeu_si128(to + 3, fourth);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(indices + i),
        _mm_packus_epi16(_mm_packs_epi32(first, second), _mm_packs_epi32(third, fourth)));
  }
  doubt.OutOfReach = _mm_movemask_ps(outOfReach) != 0;
  return doubt;
}

#else

/// Maps a whole block in double precision and tells what of it is in doubt.
BlockDoubt MapBlock(const float* degrees, const RenderLine& line, float safeDegrees,
                    std::int32_t* cells, std::uint8_t* indices) {
  BlockDoubt doubt;
  for (std::size_t i = 0; i < kBlock; ++i) {
    if (!(std::fabs(degrees[i]) <= safeDegrees)) {
      doubt.OutOfReach = true;
      return doubt;
    }
    const double sum = static_cast<double>(degrees[i]) * static_cast<double>(line.Gain) +
                       static_cast<double>(line.Offset);
    const double clipped = std::clamp(sum, 0.0, 255.0);
    const double rounded = std::rint(clipped);
    doubt.Ties |= static_cast<std::uint64_t>(std::fabs(clipped - rounded) == kHalf) << i;
    cells[i] = static_cast<std::int32_t>(rounded);
    indices[i] = static_cast<std::uint8_t>(rounded);
  }
  return doubt;
}

#endif

/// Maps the first `count` pixels of a block, the doubtful ones once more in extended precision.
void MapExactly(std::span<const float, kBlock> degrees, std::size_t count, const RenderLine& line,
                float safeDegrees, std::int32_t& lastValue, std::int32_t* cells,
                std::uint8_t* indices) {
  BlockDoubt doubt = MapBlock(degrees.data(), line, safeDegrees, cells, indices);
  if (doubt.OutOfReach) {
    MapSlowly(degrees.first(count), line, safeDegrees, lastValue, cells, indices);
    return;
  }
  for (; doubt.Ties != 0; doubt.Ties &= doubt.Ties - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(doubt.Ties));
    MapToIndexExtended(degrees[i], line, cells[i]);
    cells[i] = std::clamp(cells[i], 0, 255);
    indices[i] = static_cast<std::uint8_t>(cells[i]);
  }
  lastValue = cells[count - 1];
}

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
    MapExactly(degrees.subspan(at).first<kBlock>(), kBlock, line, safeDegrees, lastValue,
               cells.data() + at, indices.data() + at);
  }
  // The rest goes through the same block, filled up with a harmless value.
  const std::size_t rest = degrees.size() - at;
  if (rest > 0) {
    std::array<float, kBlock> padded;
    std::array<std::int32_t, kBlock> values;
    std::array<std::uint8_t, kBlock> bytes;
    std::copy_n(degrees.data() + at, rest, padded.begin());
    std::fill(padded.begin() + static_cast<std::ptrdiff_t>(rest), padded.end(), degrees[at]);
    MapExactly(padded, rest, line, safeDegrees, lastValue, values.data(), bytes.data());
    std::copy_n(values.begin(), rest, cells.data() + at);
    std::copy_n(bytes.begin(), rest, indices.data() + at);
  }
}

}  // namespace tessa
