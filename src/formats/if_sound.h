#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"

namespace tessa {

/// Size of the header of the camera's own sound format; two bytes for each sample follow it.
inline constexpr std::size_t kIfHeaderSize = 42;

/// A spoken note as the camera records it.
struct IfSound {
  std::uint32_t Rate = 0;              // Hertz, as the header says; not checked.
  std::uint32_t SampleCount = 0;       // As the header says; Samples may hold fewer.
  std::vector<std::uint16_t> Samples;  // 10 bits each, 0 to 1023; those that are whole.
};

/// True when `start` begins with the mark of the format, "/IF".
bool IsIfSound(ByteSpan start);

/// Reads a sound from its mark on; bytes behind its last sample do not matter. Nothing when the
/// mark is missing or the header is cut; a sound that is cut or empty comes with a fault and what
/// is whole of it. `offset` is where `block` lies in its file, for the faults.
std::optional<IfSound> DecodeIfSound(ByteSpan block, std::uint64_t offset, Problems& faults);

/// The bytes of a sound for `samples` of 10 bits each. What is not known of the header is zero.
Bytes EncodeIfSound(std::uint32_t rate, std::span<const std::uint16_t> samples);

/// 10-bit samples as those of a 16-bit wave: 32 for each step, from 0 to 32736, never centred.
std::vector<std::int16_t> ToWaveSamples(std::span<const std::uint16_t> samples);

}  // namespace tessa
