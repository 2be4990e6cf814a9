#include "browser/image_note.h"

#include <sys/stat.h>

#include <cerrno>

#include "browser/note_record.h"
#include "browser/tile.h"
#include "core/kinds.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "formats/ansi_text.h"

namespace tessa {
namespace {

const NoteRecord& RecordOf(const QString& path) {
  switch (KindOfName(ShownPath(path).toUpper().trimmed()).Name) {
    case FileKind::kSit:
      return kSitRecord;
    case FileKind::kTmp:
      return IsLegacyTmp(path) ? kLegacyRecord : kTmpRecord;
    default:
      throw StepFailure("only SIT and TMP images carry a comment and a memo");
  }
}

QString TextOf(const Bytes& record, const NoteField& field) {
  const auto from = record.begin() + static_cast<std::ptrdiff_t>(field.At);
  const std::string text(from, from + static_cast<std::ptrdiff_t>(field.Size));
  return QString::fromStdString(AnsiToUtf8(WithoutZeroBytes(text)));
}

/// The bytes of a field with the text in it; zeros behind it.
std::optional<std::string> FieldBytes(const std::optional<QString>& text, const char* name,
                                      const NoteField& field, const Strings& words) {
  if (!text) {
    return std::nullopt;
  }
  const std::string utf8 = WithoutNone(*text, words).toStdString();
  std::string ansi = Utf8ToAnsi(utf8);
  if (AnsiToUtf8(ansi) != utf8) {
    throw StepFailure(std::string("the ") + name +
                      " has a character that the camera's code page 1252 lacks");
  }
  if (ansi.size() > field.Size) {
    throw StepFailure(std::string("the ") + name + " has " + std::to_string(ansi.size()) +
                      " characters; its field holds " + std::to_string(field.Size));
  }
  ansi.resize(field.Size, '\0');
  return ansi;
}

void RequireWritable(const QString& path) {
  struct stat facts {};
  if (::stat(PathToBytes(path).constData(), &facts) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
  if ((facts.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || !IsWritable(path)) {
    throw StepFailure("the file is read-only");
  }
}

}  // namespace

QString WithoutNone(const QString& text, const Strings& words) {
  const QString trimmed = text.trimmed();
  const bool isNone = trimmed.compare(words.LangString(198, "None"), Qt::CaseInsensitive) == 0;
  return isNone ? QString() : trimmed;
}

ImageNote ReadImageNote(const QString& path) {
  const NoteRecord& record = RecordOf(path);
  const Bytes start = OpenNoteFile(path, record).ReadAt(0, record.Size);
  if (start.size() < record.Size) {
    throw StepFailure("the header cannot be read");
  }
  return {TextOf(start, record.Comment), TextOf(start, record.Memo)};
}

void SaveImageNote(const QString& path, const NoteChange& change, const Strings& words) {
  const NoteRecord& record = RecordOf(path);
  OpenNoteFile(path, record);
  RequireWritable(path);
  WriteNote(path, record,
            {FieldBytes(change.Comment, "comment", record.Comment, words),
             FieldBytes(change.Memo, "memo", record.Memo, words)});
}

}  // namespace tessa
