#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "scene.h"

namespace tessa::tools {

/// Two strokes of a bell: 10-bit samples for `rate` hertz, a second and a half.
std::vector<std::uint16_t> ChimeNote(std::uint32_t rate);

/// Writes an image of `scene` for each way of keeping a note into `folder`, and the sound file that
/// lies beside the first. Throws std::runtime_error.
void WriteSoundSamples(const Scene& scene, const std::filesystem::path& folder);

}  // namespace tessa::tools
