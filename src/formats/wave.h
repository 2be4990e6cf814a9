#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"

namespace tessa {

/// The highest sample rate, in hertz, that a sound is believed to have.
inline constexpr std::uint32_t kHighestSoundRate = 192000;

/// What a wave file says of itself, and where its samples lie.
struct WaveFacts {
  std::uint32_t Rate = 0;  // Hertz, 1 to kHighestSoundRate.
  int Channels = 1;        // 1 or 2.
  int BitsPerSample = 16;  // 8, unsigned, or 16, 24 or 32, signed little-endian.
  std::size_t DataOffset = 0;
  std::size_t DataSize = 0;  // Bytes; never 0, and a whole number of frames.

  std::size_t FrameSize() const { return static_cast<std::size_t>(Channels * BitsPerSample / 8); }
  std::size_t Frames() const { return DataSize / FrameSize(); }
  double Seconds() const { return static_cast<double>(Frames()) / Rate; }
};

/// True when `start` begins as a RIFF file does.
bool IsRiff(ByteSpan start);

/// A fault when no sound has `rate`.
bool CheckSoundRate(std::uint32_t rate, std::uint64_t offset, Problems& faults);

/// Reads the heads of a PCM wave: "RIFF", "WAVE", "fmt " and "data"; chunks between them are passed
/// over and bytes behind the data do not matter. Nothing, and a fault that says why, when the file
/// is no such wave, is cut or has no data. `offset` is where `file` lies in the file it is part of.
std::optional<WaveFacts> ReadWave(ByteSpan file, std::uint64_t offset, Problems& faults);

/// A whole wave file: 44 bytes of header and 16-bit samples of one channel.
Bytes EncodeWave(std::uint32_t rate, std::span<const std::int16_t> samples);

/// The samples of a wave that ReadWave() took, channels interleaved, at 16 bits each.
std::vector<std::int16_t> WaveSamples(ByteSpan file, const WaveFacts& facts);

}  // namespace tessa
