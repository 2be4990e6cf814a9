#pragma once

#include <QString>
#include <optional>

#include "core/language_strings.h"

namespace tessa {

/// The two texts that SIT and TMP images carry in their headers.
struct ImageNote {
  QString Comment;
  QString Memo;
};

/// The texts of the image at `path`. Throws StepFailure for a file that has none or that cannot be
/// read.
ImageNote ReadImageNote(const QString& path);

/// The text trimmed; empty for the word for none in any letter case.
QString WithoutNone(const QString& text, const Strings& words);

/// New texts; one that is not given stays as it is.
struct NoteChange {
  std::optional<QString> Comment;
  std::optional<QString> Memo;
};

/// Puts texts into the header of the image at `path`, trimmed; an empty one, and the word for none
/// in any letter case, clears its field. All else in the file stays byte for byte, and so do its
/// times and permissions; a link stays a link. Throws StepFailure, and the file is as it was, when
/// a text does not fit its field or code page 1252 lacks one of its characters, when the file is
/// read-only, has no such fields, or was changed by somebody else meanwhile.
void SaveImageNote(const QString& path, const NoteChange& change, const Strings& words);

}  // namespace tessa
