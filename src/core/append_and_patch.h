#pragma once

#include <QString>
#include <span>

#include "core/file_access.h"
#include "formats/byte_writer.h"

namespace tessa {

/// New bytes for a place inside the old part of a file.
struct BytePatch {
  std::uint64_t Offset = 0;
  Bytes Content;
};

/// Appends `content` to a user's file and then puts the patches into its old part, where a header
/// now points to the new bytes. Each half is on the disk before the next begins, so that a kill
/// in between leaves the old file with bytes at its end that nothing points to.
///
/// The file must still be what `expected` says (RandomFile::Stamp() of when it was read), and no
/// other program that uses these locks may be writing it; otherwise nothing is changed. A failure
/// on the way puts the old bytes and the old length back. Throws StepFailure, whose text begins
/// with the path and says so if even that failed.
void AppendAndPatch(const QString& path, const FileStamp& expected, ByteSpan content,
                    std::span<const BytePatch> patches);

}  // namespace tessa
