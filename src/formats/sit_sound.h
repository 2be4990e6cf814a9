#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "formats/sit.h"

namespace tessa {

/// Where the camera's own sound lies in a SIT file that carries one.
inline constexpr std::uint64_t kSitSoundOffset = kSitAttachmentOffset + 8;
/// The camera's fixed sample rate, in hertz, before version 3.1.
inline constexpr std::uint32_t kEarlySoundRate = 2850;

// A header tells its version in two ways that agree in the camera's own files: as the digits and
// points among characters 5 to 10 of the signature, and as the number in characters 6 to 8. Each
// rule goes by one of them.

/// The number that the digits and points of characters 5 to 10 make.
float VersionInTail(const SitHeader& header);
/// The number in characters 6 to 8.
float VersionInMiddle(const SitHeader& header);

/// The rate of the camera's sounds when it does not follow their own header: before version 3.1.
std::optional<std::uint32_t> FixedSoundRate(float version);

/// True when the camera put the sound into the file itself, at kSitSoundOffset.
bool HasEmbeddedSound(const SitHeader& header, std::uint64_t fileSize);

/// True when the header names a sound in another way: its first character is neither blank nor
/// zero.
bool NamesSound(const SitHeader& header);
/// True when what the header names is a position in the file itself.
bool NamesWave(const SitHeader& header);

/// The position, counted from byte 1, that the header gives for a wave; nothing when it is none.
std::optional<std::uint64_t> WavePosition(const SitHeader& header);

/// Name and extension of the sound file that the header names, in code page 1252; empty when it is
/// not a plain name. Blanks at the end of either are no part of it.
std::string SideSoundName(const SitHeader& header);

/// Whether a copy takes the side file along: the version is below 4.0 and nothing of the camera's
/// own is behind the picture. By characters 6 to 8.
bool MayHaveSideSound(const SitHeader& header, std::uint64_t fileSize);

/// True when a wave behind the picture would be found again. The later versions take whatever lies
/// there for the camera's own sound.
bool StaysFindable(const SitHeader& header);

/// The highest position, counted from byte 1, that the header's field holds.
inline constexpr std::uint64_t kHighestWavePosition = 99'999'999;

/// The header's record with the fields of a wave at `position`, counted from byte 1.
std::array<std::uint8_t, kSitHeaderSize> RecordWithWave(const SitHeader& header,
                                                        std::uint64_t position);

}  // namespace tessa
