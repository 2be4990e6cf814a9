#include "view/render_mapping.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#if defined(__SSE2__)
#include <immintrin.h>
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
               std::int32_t& lastValue, std::uint8_t* indices) {
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
    indices[i] = static_cast<std::uint8_t>(lastValue);
  }
}

/// Which pixels of a mapped block are in doubt.
struct BlockDoubt {
  std::uint64_t Ties = 0;   // Bit i: the sum of pixel i lies exactly between two indices.
  bool OutOfReach = false;  // Some temperature is too large, or no number.
};

/// Maps a whole block in double precision and tells what of it is in doubt. `safeDegrees`: up to
/// this size sums fit an integer.
using BlockMapper = BlockDoubt (*)(const float* degrees, const RenderLine& line, float safeDegrees,
                                   std::uint8_t* indices);

#if defined(__SSE2__)

/// 1.5 x 2^52: adding it rounds to the nearest even integer and leaves that in the low 32 bits.
constexpr double kRounder = 6755399441055744.0;

/// Index sums of two pixels, clipped to 0..255, with kRounder added. `ties` gets a bit for each
/// exact half.
__m128d RoundedPair(__m128d sum, std::uint64_t& ties) {
  const __m128d rounder = _mm_set1_pd(kRounder);
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
  __m128 SafeDegrees;
};

/// Four pixels as 32-bit indices.
inline __m128i MapFour(const float* degrees, const BlockLine& line, std::uint64_t& ties,
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

BlockDoubt MapBlock(const float* degrees, const RenderLine& line, float safeDegrees,
                    std::uint8_t* indices) {
  const BlockLine shared{_mm_set1_pd(static_cast<double>(line.Gain)),
                         _mm_set1_pd(static_cast<double>(line.Offset)), _mm_set1_ps(safeDegrees)};
  BlockDoubt doubt;
  __m128 outOfReach = _mm_setzero_ps();
  for (std::size_t i = 0; i < kBlock; i += 16) {
    const __m128i first = MapFour(degrees + i, shared, doubt.Ties, outOfReach);
    const __m128i second = MapFour(degrees + i + 4, shared, doubt.Ties, outOfReach);
    const __m128i third = MapFour(degrees + i + 8, shared, doubt.Ties, outOfReach);
    const __m128i fourth = MapFour(degrees + i + 12, shared, doubt.Ties, outOfReach);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(indices + i),
        _mm_packus_epi16(_mm_packs_epi32(first, second), _mm_packs_epi32(third, fourth)));
  }
  doubt.OutOfReach = _mm_movemask_ps(outOfReach) != 0;
  return doubt;
}

#else

BlockDoubt MapBlock(const float* degrees, const RenderLine& line, float safeDegrees,
                    std::uint8_t* indices) {
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
    indices[i] = static_cast<std::uint8_t>(rounded);
  }
  return doubt;
}

#endif

#if defined(__SSE2__) && defined(__GNUC__)
#define TESSA_AVX2 __attribute__((target("avx2")))

/// Four index sums rounded as in RoundedPair.
TESSA_AVX2 inline __m256d RoundedFour(__m256d sum, std::uint64_t& ties) {
  const __m256d rounder = _mm256_set1_pd(kRounder);
  const __m256d clipped =
      _mm256_min_pd(_mm256_max_pd(sum, _mm256_setzero_pd()), _mm256_set1_pd(255.0));
  const __m256d shifted = _mm256_add_pd(clipped, rounder);
  const __m256d distance = _mm256_sub_pd(clipped, _mm256_sub_pd(shifted, rounder));
  const __m256d onHalf = _mm256_cmp_pd(_mm256_andnot_pd(_mm256_set1_pd(-0.0), distance),
                                       _mm256_set1_pd(kHalf), _CMP_EQ_OQ);
  ties = ties >> 4 | static_cast<std::uint64_t>(_mm256_movemask_pd(onHalf)) << 60;
  return shifted;
}

struct WideLine {
  __m256d Gain;
  __m256d Offset;
  __m256 SafeDegrees;
};

/// Eight pixels as 32-bit indices in the order 0 1 4 5, 2 3 6 7.
TESSA_AVX2 inline __m256i MapEight(const float* degrees, const WideLine& line, std::uint64_t& ties,
                                   __m256& outOfReach) {
  const __m256 eight = _mm256_loadu_ps(degrees);
  outOfReach = _mm256_or_ps(
      outOfReach,
      _mm256_cmp_ps(_mm256_andnot_ps(_mm256_set1_ps(-0.0F), eight), line.SafeDegrees, _CMP_NLE_UQ));
  const __m256d first = _mm256_cvtps_pd(_mm256_castps256_ps128(eight));
  const __m256d second = _mm256_cvtps_pd(_mm256_extractf128_ps(eight, 1));
  const __m256d low =
      RoundedFour(_mm256_add_pd(_mm256_mul_pd(first, line.Gain), line.Offset), ties);
  const __m256d high =
      RoundedFour(_mm256_add_pd(_mm256_mul_pd(second, line.Gain), line.Offset), ties);
  return _mm256_castps_si256(
      _mm256_shuffle_ps(_mm256_castpd_ps(low), _mm256_castpd_ps(high), _MM_SHUFFLE(2, 0, 2, 0)));
}

/// The same operations on twice as many pixels at a time; every result is the same.
TESSA_AVX2 BlockDoubt MapBlockWide(const float* degrees, const RenderLine& line, float safeDegrees,
                                   std::uint8_t* indices) {
  const WideLine shared{_mm256_set1_pd(static_cast<double>(line.Gain)),
                        _mm256_set1_pd(static_cast<double>(line.Offset)),
                        _mm256_set1_ps(safeDegrees)};
  // What packing does to the order, undone: first whole runs of four bytes, then pairs in them.
  const __m256i runs = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
  const __m256i pairs = _mm256_setr_epi8(0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15,  //
                                         0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15);
  BlockDoubt doubt;
  __m256 outOfReach = _mm256_setzero_ps();
  for (std::size_t i = 0; i < kBlock; i += 32) {
    const __m256i first = MapEight(degrees + i, shared, doubt.Ties, outOfReach);
    const __m256i second = MapEight(degrees + i + 8, shared, doubt.Ties, outOfReach);
    const __m256i third = MapEight(degrees + i + 16, shared, doubt.Ties, outOfReach);
    const __m256i fourth = MapEight(degrees + i + 24, shared, doubt.Ties, outOfReach);
    const __m256i packed =
        _mm256_packus_epi16(_mm256_packs_epi32(first, second), _mm256_packs_epi32(third, fourth));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(indices + i),
                        _mm256_shuffle_epi8(_mm256_permutevar8x32_epi32(packed, runs), pairs));
  }
  doubt.OutOfReach = _mm256_movemask_ps(outOfReach) != 0;
  return doubt;
}

#undef TESSA_AVX2

/// The fastest that this processor has.
BlockMapper ChooseMapper() {
  return __builtin_cpu_supports("avx2") != 0 ? MapBlockWide : MapBlock;
}

#else

BlockMapper ChooseMapper() {
  return MapBlock;
}

#endif

/// Maps the first `count` pixels of a block, the doubtful ones once more in extended precision.
void MapExactly(BlockMapper mapBlock, std::span<const float, kBlock> degrees, std::size_t count,
                const RenderLine& line, float safeDegrees, std::int32_t& lastValue,
                std::uint8_t* indices) {
  BlockDoubt doubt = mapBlock(degrees.data(), line, safeDegrees, indices);
  if (doubt.OutOfReach) {
    MapSlowly(degrees.first(count), line, safeDegrees, lastValue, indices);
    return;
  }
  for (; doubt.Ties != 0; doubt.Ties &= doubt.Ties - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(doubt.Ties));
    std::int32_t value = indices[i];
    MapToIndexExtended(degrees[i], line, value);
    indices[i] = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
  }
  lastValue = indices[count - 1];
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
                  std::span<std::uint8_t> indices) {
  static const BlockMapper kMapBlock = ChooseMapper();
  const float safeDegrees = SafeDegrees(line);
  std::size_t at = 0;
  for (; at + kBlock <= degrees.size(); at += kBlock) {
    MapExactly(kMapBlock, degrees.subspan(at).first<kBlock>(), kBlock, line, safeDegrees, lastValue,
               indices.data() + at);
  }
  // The rest goes through the same block, filled up with a harmless value.
  const std::size_t rest = degrees.size() - at;
  if (rest > 0) {
    std::array<float, kBlock> padded;
    std::array<std::uint8_t, kBlock> bytes;
    std::copy_n(degrees.data() + at, rest, padded.begin());
    std::fill(padded.begin() + static_cast<std::ptrdiff_t>(rest), padded.end(), degrees[at]);
    MapExactly(kMapBlock, padded, rest, line, safeDegrees, lastValue, bytes.data());
    std::copy_n(bytes.begin(), rest, indices.data() + at);
  }
}

}  // namespace tessa
