#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "core/file_descriptor.h"
#include "core/write_file.h"
#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"

namespace tessa {

struct FileStart {
  Bytes Data;              // The first bytes of the file, as many as were asked for and are there.
  std::uint64_t Size = 0;  // Length of the whole file.
};

/// What tells a file from another one or a changed one.
struct FileStamp {
  std::uint64_t Size = 0;
  std::uint64_t Device = 0;
  std::uint64_t Number = 0;         // On the device.
  std::int64_t ChangedSeconds = 0;  // Time of the last change of its bytes, since 1970.
  std::int64_t ChangedNanoseconds = 0;

  bool operator==(const FileStamp&) const = default;
};

/// The stamp of an open plain file; nothing for what is none.
std::optional<FileStamp> StampOf(int descriptor);
/// The same by its path, without opening it.
std::optional<FileStamp> StampOf(const QString& path);

/// Reads the first `limit` bytes of a regular file. A missing, unreadable or irregular file (a
/// folder, a pipe) gives nothing and a fault that says why.
std::optional<FileStart> ReadFileStart(const QString& path, std::uint64_t limit, Problems& faults);

/// A regular file that is open for reading at any position.
class RandomFile {
 public:
  /// Nothing, and a fault that says why, when `path` is no plain file that can be read.
  static std::optional<RandomFile> Open(const QString& path, Problems& faults);

  std::uint64_t Size() const { return size_; }
  /// The file as it is now; nothing when the system will not tell.
  std::optional<FileStamp> Stamp() const { return StampOf(file_.Get()); }
  /// The bytes from `offset` on, at most `count`: fewer where the file ends or cannot be read.
  Bytes ReadAt(std::uint64_t offset, std::uint64_t count) const;
  /// Fills `to` with the bytes from `offset` on and tells how many there were.
  std::size_t ReadInto(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept;

 private:
  RandomFile(FileDescriptor file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

  FileDescriptor file_;
  std::uint64_t size_;
};

/// True when something stands at `path`; a link counts by what it leads to.
bool PathExists(const QString& path);

/// True for a folder and for a link to one.
bool IsFolder(const QString& path);

/// True when this user may write the existing file or folder.
bool IsWritable(const QString& path);

/// Length of a plain file; nothing when there is none.
std::optional<std::uint64_t> FileSize(const QString& path);

/// `path` from the root on; dots and links stay as they are, since resolving them could lead
/// elsewhere.
QString AbsolutePath(const QString& path);

/// Makes a folder and those above it; true when it is there afterwards.
bool MakeFolders(const QString& path);

/// True when both paths lead to the same existing file.
bool IsSameFile(const QString& first, const QString& second);

/// Fills `bytes` from `offset` on; returns how many were there to read.
std::size_t ReadAllAt(int descriptor, std::span<std::uint8_t> bytes, std::uint64_t offset);

/// The system's words for an error number, in UTF-8.
std::string SystemErrorText(int errorNumber);

}  // namespace tessa
