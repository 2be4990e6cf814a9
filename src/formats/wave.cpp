#include "formats/wave.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace tessa {
namespace {

constexpr std::uint32_t kHeaderSize = 44;
constexpr std::uint32_t kFormatSize = 16;
constexpr std::uint16_t kPcm = 1;
constexpr int kMostChannels = 2;

bool StartsWith(ByteSpan bytes, std::string_view text) {
  return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

/// Reads one wave; knows where it lies, for the faults.
class WaveReader {
 public:
  WaveReader(ByteSpan file, std::uint64_t offset, Problems& faults)
      : reader_(file), offset_(offset), faults_(faults) {}

  std::optional<WaveFacts> Read() {
    const std::string riff = reader_.Text(4);
    reader_.Skip(4);  // The size of all the rest; the chunks tell more.
    if (riff != "RIFF" || reader_.Text(4) != "WAVE") {
      return Refuse(ProblemKind::kWrongKind, 0, "Sound", "no wave starts here");
    }
    bool hasFormat = false;
    while (true) {
      const std::uint64_t chunk = reader_.Offset();
      const std::string name = reader_.Text(4);
      const std::uint32_t size = reader_.U32Le();
      if (reader_.Failed()) {
        return Refuse(ProblemKind::kBadValue, chunk, "data", "the wave has no data");
      }
      if (name == "data") {
        return hasFormat ? ReadData(size)
                         : Refuse(ProblemKind::kBadValue, chunk, "fmt ",
                                  "the wave does not tell its format before its data");
      }
      ByteReader body(reader_.Take(std::uint64_t{size} + size % 2));
      if (reader_.Failed()) {
        return Refuse(ProblemKind::kTruncated, chunk, name == "fmt " ? "fmt " : "data",
                      "the wave ends before its data");
      }
      if (name == "fmt ") {
        if (!ReadFormat(body, chunk)) {
          return std::nullopt;
        }
        hasFormat = true;
      }
    }
  }

 private:
  bool ReadFormat(ByteReader& body, std::uint64_t chunk) {
    const std::uint16_t format = body.U16Le();
    facts_.Channels = body.U16Le();
    facts_.Rate = body.U32Le();
    body.Skip(4);
    const std::uint16_t frameSize = body.U16Le();
    facts_.BitsPerSample = body.U16Le();
    if (body.Failed()) {
      Refuse(ProblemKind::kBadValue, chunk, "fmt ", "the wave's format is cut");
      return false;
    }
    const int bits = facts_.BitsPerSample;
    if (format != kPcm || (bits != 8 && bits != 16 && bits != 24 && bits != 32)) {
      Refuse(ProblemKind::kUnsupported, chunk, "fmt ", "the wave is not plain PCM");
      return false;
    }
    if (facts_.Channels < 1 || facts_.Channels > kMostChannels || frameSize != facts_.FrameSize()) {
      Refuse(ProblemKind::kBadValue, chunk, "fmt ", "the wave's channels make no sense");
      return false;
    }
    constexpr std::uint64_t kRateInChunk = 12;
    return CheckSoundRate(facts_.Rate, offset_ + chunk + kRateInChunk, faults_);
  }

  std::optional<WaveFacts> ReadData(std::uint32_t size) {
    const std::uint64_t at = reader_.Offset();
    if (size > reader_.Remaining() && reader_.Remaining() > 0) {
      return Refuse(ProblemKind::kTruncated, reader_.Size(), "data",
                    "the wave is cut: " + std::to_string(reader_.Remaining()) + " of " +
                        std::to_string(size) + " bytes of its data are there");
    }
    facts_.DataOffset = static_cast<std::size_t>(at);
    facts_.DataSize = size - size % facts_.FrameSize();
    if (facts_.DataSize == 0 || reader_.Remaining() == 0) {
      return Refuse(ProblemKind::kBadValue, at - 4, "data", "the wave has no data");
    }
    return facts_;
  }

  std::nullopt_t Refuse(ProblemKind kind, std::uint64_t at, std::string field, std::string text) {
    faults_.push_back({kind, offset_ + at, std::move(field), std::move(text), false});
    return std::nullopt;
  }

  ByteReader reader_;
  std::uint64_t offset_;
  Problems& faults_;
  WaveFacts facts_;
};

}  // namespace

bool IsRiff(ByteSpan start) {
  return StartsWith(start, "RIFF");
}

bool CheckSoundRate(std::uint32_t rate, std::uint64_t offset, Problems& faults) {
  if (rate >= 1 && rate <= kHighestSoundRate) {
    return true;
  }
  faults.push_back({ProblemKind::kBadValue, offset, "Rate",
                    "the sound's rate makes no sense: " + std::to_string(rate) + " Hz", false});
  return false;
}

std::optional<WaveFacts> ReadWave(ByteSpan file, std::uint64_t offset, Problems& faults) {
  return WaveReader(file, offset, faults).Read();
}

Bytes EncodeWave(std::uint32_t rate, std::span<const std::int16_t> samples) {
  const auto dataSize = static_cast<std::uint32_t>(2 * samples.size());
  ByteWriter writer;
  writer.Reserve(kHeaderSize + dataSize);
  writer.Text("RIFF", 4);
  writer.U32Le(dataSize + kHeaderSize - 8);
  writer.Text("WAVEfmt ", 8);
  writer.U32Le(kFormatSize);
  writer.U16Le(kPcm);
  writer.U16Le(1);
  writer.U32Le(rate);
  writer.U32Le(2 * rate);
  writer.U16Le(2);
  writer.U16Le(16);
  writer.Text("data", 4);
  writer.U32Le(dataSize);
  for (const std::int16_t sample : samples) {
    writer.U16Le(static_cast<std::uint16_t>(sample));
  }
  return writer.Take();
}

std::vector<std::int16_t> WaveSamples(ByteSpan file, const WaveFacts& facts) {
  const auto size = static_cast<std::size_t>(facts.BitsPerSample / 8);
  const ByteSpan data = file.subspan(facts.DataOffset, facts.DataSize);
  std::vector<std::int16_t> samples;
  samples.reserve(data.size() / size);
  for (std::size_t at = 0; at + size <= data.size(); at += size) {
    // The upper two bytes of each sample; a single one is unsigned.
    const unsigned value = size == 1 ? (data[at] ^ 0x80U) << 8U
                                     : data[at + size - 2] | unsigned{data[at + size - 1]} << 8U;
    samples.push_back(static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
  }
  return samples;
}

}  // namespace tessa
