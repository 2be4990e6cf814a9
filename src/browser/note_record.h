#pragma once

#include <QString>
#include <optional>
#include <string>

#include "core/file_access.h"

namespace tessa {

struct NoteField {
  std::size_t At;
  std::size_t Size;
};

/// Where a kind of record, which is the start of its file, keeps the texts of the user.
struct NoteRecord {
  std::size_t Size;
  NoteField Comment;
  NoteField Memo;
};

inline constexpr NoteRecord kSitRecord = {1024, {214, 638}, {982, 20}};
inline constexpr NoteRecord kTmpRecord = {1002, {214, 768}, {982, 20}};
inline constexpr NoteRecord kLegacyRecord = {980, {128, 832}, {960, 20}};

/// Opens an image that is long enough for the record. Throws StepFailure.
RandomFile OpenNoteFile(const QString& path, const NoteRecord& record);

/// New bytes of the two fields, each of its field's size; nothing leaves a field as it is.
struct NoteBytes {
  std::optional<std::string> Comment;
  std::optional<std::string> Memo;
};

/// Puts them into the image at `path`. All else stays byte for byte, and so do times and
/// permissions; a link stays a link. Throws StepFailure, and the file is as it was, when it cannot
/// be written or was changed by somebody else meanwhile.
void WriteNote(const QString& path, const NoteRecord& record, const NoteBytes& bytes);

}  // namespace tessa
