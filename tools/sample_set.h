#pragma once

#include <filesystem>

#include "formats/byte_writer.h"

namespace tessa::tools {

/// Writes the samples that come with the program, every kind among them, into `folder`, which is
/// made if need be, from the scenes in `source` (samples/README.md). Throws std::runtime_error.
void WriteSampleSet(const std::filesystem::path& source, const std::filesystem::path& folder);

/// The content of a file. Throws std::runtime_error.
Bytes ReadBytes(const std::filesystem::path& path);

/// Replaces or makes a file as a whole.
void WriteSample(const std::filesystem::path& path, const Bytes& content);

}  // namespace tessa::tools
