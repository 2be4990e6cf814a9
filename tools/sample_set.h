#pragma once

#include <filesystem>
#include <span>

#include "formats/byte_writer.h"
#include "scenes.h"

namespace tessa::tools {

/// Writes the samples that come with the program, every kind among them, into `folder`, which is
/// made if need be. Throws std::runtime_error.
void WriteSampleSet(const std::filesystem::path& folder);

/// Writes each frame into a file of its own beside the sequence `path`: cup-000.APD, cup-001.APD
/// and so on for cup.rti.
void WriteFrameFiles(const std::filesystem::path& path, std::span<const Scene> frames);

/// Replaces or makes a file as a whole.
void WriteSample(const std::filesystem::path& path, const Bytes& content);

}  // namespace tessa::tools
