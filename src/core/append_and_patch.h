#pragma once

#include <QString>
#include <optional>
#include <span>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"

namespace tessa {

/// What tells a file from another one or a changed one.
struct FileStamp {
  std::uint64_t Size = 0;
  std::uint64_t Device = 0;
  std::uint64_t Number = 0;         // On the device.
  std::int64_t ChangedSeconds = 0;  // Time of the last change of its bytes, since 1970.
  std::int64_t ChangedNanoseconds = 0;

  bool operator==(const FileStamp&) const = default;
};

/// The stamp of a plain file; nothing for what is none.
std::optional<FileStamp> StampAt(const QString& path);

/// New bytes for a place inside the old part of a file.
struct BytePatch {
  std::uint64_t Offset = 0;
  Bytes Content;
};

/// Appends `content` to a user's file and then puts the patches into its old part. The file must
/// still be what `expected` says. A failure on the way puts the old bytes and the old length back.
/// Throws StepFailure.
void AppendAndPatch(const QString& path, const FileStamp& expected, ByteSpan content,
                    std::span<const BytePatch> patches);

}  // namespace tessa
