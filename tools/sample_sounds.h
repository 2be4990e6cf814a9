#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tessa::tools {

/// A few syllables as of a speaking voice: 10-bit samples for `rate` hertz, a second and a half.
std::vector<std::uint16_t> SpokenNote(std::uint32_t rate);
/// Two strokes of a bell: 10-bit samples, a second and a half.
std::vector<std::uint16_t> ChimeNote(std::uint32_t rate);

/// Writes an image for each way of keeping a note into `folder`, and the sound file that lies
/// beside the first. Throws std::runtime_error.
void WriteSoundSamples(const std::filesystem::path& folder);

}  // namespace tessa::tools
