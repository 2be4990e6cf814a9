#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <span>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"

namespace tessa {

struct FileStart {
  Bytes Data;              // The first bytes of the file, as many as were asked for and are there.
  std::uint64_t Size = 0;  // Length of the whole file.
};

/// Reads the first `limit` bytes of a regular file. A missing, unreadable or irregular file (a
/// folder, a pipe) gives nothing and a fault that says why.
std::optional<FileStart> ReadFileStart(const QString& path, std::uint64_t limit, Problems& faults);

/// A regular file that is open for reading at any position.
class RandomFile {
 public:
  /// Nothing, and a fault that says why, when `path` is no plain file that can be read.
  static std::optional<RandomFile> Open(const QString& path, Problems& faults);

  RandomFile(RandomFile&& other) noexcept;
  RandomFile(const RandomFile&) = delete;
  RandomFile& operator=(const RandomFile&) = delete;
  RandomFile& operator=(RandomFile&&) = delete;
  ~RandomFile();

  std::uint64_t Size() const { return size_; }
  /// The bytes from `offset` on, at most `count`: fewer where the file ends or cannot be read.
  Bytes ReadAt(std::uint64_t offset, std::uint64_t count) const;
  /// Fills `to` with the bytes from `offset` on and tells how many there were.
  std::size_t ReadInto(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept;

 private:
  RandomFile(int descriptor, std::uint64_t size) : descriptor_(descriptor), size_(size) {}

  int descriptor_;
  std::uint64_t size_;
};

enum class Overwrite { kRefuse, kReplace };

/// Writes a whole file through a temporary name in the same folder and a rename, so that the path
/// holds either the old file or the whole new one. Follows a symbolic link to its target and keeps
/// an old file's permissions. With kRefuse an existing file is left alone. Throws StepFailure.
void WriteWholeFile(const QString& path, ByteSpan content, Overwrite overwrite);

/// The system's words for an error number, in UTF-8.
std::string SystemErrorText(int errorNumber);

}  // namespace tessa
