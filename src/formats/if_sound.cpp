#include "formats/if_sound.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace tessa {
namespace {

constexpr std::string_view kMark = "/IF";
constexpr std::size_t kRateAt = 8;
constexpr std::size_t kSampleCountAt = 38;
constexpr int kUnusedBits = 6;  // Below the 10 bits of a sample in its 16-bit word.
constexpr int kWaveStep = 32;

}  // namespace

bool IsIfSound(ByteSpan start) {
  return start.size() >= kMark.size() && std::equal(kMark.begin(), kMark.end(), start.begin());
}

std::optional<IfSound> DecodeIfSound(ByteSpan block, std::uint64_t offset, Problems& faults) {
  if (!IsIfSound(block)) {
    faults.push_back({ProblemKind::kWrongKind, offset, "Sound",
                      "no sound of the camera's kind starts here", false});
    return std::nullopt;
  }
  if (block.size() < kIfHeaderSize) {
    faults.push_back({ProblemKind::kTruncated, offset + block.size(), "Sound",
                      "the sound ends inside its header", false});
    return std::nullopt;
  }
  IfSound sound;
  ByteReader reader(block, kRateAt);
  sound.Rate = reader.U32Be();
  reader.Seek(kSampleCountAt);
  sound.SampleCount = reader.U32Be();
  if (sound.SampleCount == 0) {
    faults.push_back({ProblemKind::kBadValue, offset + kSampleCountAt, "SampleCount",
                      "the sound holds no samples", false});
    return sound;
  }
  const std::uint64_t whole = std::min<std::uint64_t>(sound.SampleCount, reader.Remaining() / 2);
  if (whole < sound.SampleCount) {
    faults.push_back({ProblemKind::kTruncated, offset + block.size(), "Samples",
                      "the sound is cut: " + std::to_string(whole) + " of " +
                          std::to_string(sound.SampleCount) + " samples are there",
                      false});
  }
  sound.Samples.reserve(static_cast<std::size_t>(whole));
  for (std::uint64_t i = 0; i < whole; ++i) {
    sound.Samples.push_back(static_cast<std::uint16_t>(reader.U16Be() >> kUnusedBits));
  }
  return sound;
}

Bytes EncodeIfSound(std::uint32_t rate, std::span<const std::uint16_t> samples) {
  ByteWriter writer;
  writer.Reserve(kIfHeaderSize + 2 * samples.size());
  writer.Text(kMark, kRateAt);
  writer.U32Be(rate);
  writer.PadTo(kSampleCountAt);
  writer.U32Be(static_cast<std::uint32_t>(samples.size()));
  for (const std::uint16_t sample : samples) {
    writer.U16Be(static_cast<std::uint16_t>(sample << kUnusedBits));
  }
  return writer.Take();
}

std::vector<std::int16_t> ToWaveSamples(std::span<const std::uint16_t> samples) {
  std::vector<std::int16_t> wave(samples.size());
  std::transform(samples.begin(), samples.end(), wave.begin(), [](std::uint16_t sample) {
    return static_cast<std::int16_t>(sample * kWaveStep);
  });
  return wave;
}

}  // namespace tessa
