#include "browser/image_note.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>

#include "browser/tile.h"
#include "core/file_access.h"
#include "core/kinds.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "core/write_file.h"
#include "formats/ansi_text.h"

namespace tessa {
namespace {

/// Sound and photograph included; more than this is no image of a camera.
constexpr std::uint64_t kLargestImage = 1ULL << 30;

struct Field {
  std::size_t At;
  std::size_t Size;
};

/// Where a kind of record keeps its texts.
struct NoteRecord {
  std::size_t Size;
  Field Comment;
  Field Memo;
};

constexpr NoteRecord kSitRecord = {1024, {214, 638}, {982, 20}};
constexpr NoteRecord kTmpRecord = {1002, {214, 768}, {982, 20}};
constexpr NoteRecord kLegacyRecord = {980, {128, 832}, {960, 20}};

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

RandomFile OpenImageFile(const QString& path, const NoteRecord& record) {
  Problems faults;
  auto file = RandomFile::Open(path, faults);
  if (!file) {
    throw StepFailure(faults.front().Text);
  }
  if (file->Size() < record.Size) {
    throw StepFailure("the file ends inside its header");
  }
  return std::move(*file);
}

QString TextOf(const Bytes& record, const Field& field) {
  const auto from = record.begin() + static_cast<std::ptrdiff_t>(field.At);
  const std::string text(from, from + static_cast<std::ptrdiff_t>(field.Size));
  return QString::fromStdString(AnsiToUtf8(WithoutZeroBytes(text)));
}

/// The bytes of a field with the text in it; zeros behind it.
std::string FieldBytes(const QString& text, const char* name, const Field& field,
                       const Strings& words) {
  QString trimmed = text.trimmed();
  if (trimmed.compare(words.LangString(198, "None"), Qt::CaseInsensitive) == 0) {
    trimmed.clear();
  }
  const std::string utf8 = trimmed.toStdString();
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

void PutField(const std::string& bytes, const Field& field, Bytes& file) {
  std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(field.At));
}

struct stat FactsOf(const QString& path) {
  struct stat facts {};
  if (::stat(PathToBytes(path).constData(), &facts) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
  return facts;
}

}  // namespace

ImageNote ReadImageNote(const QString& path) {
  const NoteRecord& record = RecordOf(path);
  const Bytes start = OpenImageFile(path, record).ReadAt(0, record.Size);
  if (start.size() < record.Size) {
    throw StepFailure("the header cannot be read");
  }
  return {TextOf(start, record.Comment), TextOf(start, record.Memo)};
}

void SaveImageNote(const QString& path, const NoteChange& change, const Strings& words) {
  const NoteRecord& record = RecordOf(path);
  const RandomFile file = OpenImageFile(path, record);
  const struct stat facts = FactsOf(path);
  if ((facts.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || !IsWritable(path)) {
    throw StepFailure("the file is read-only");
  }
  if (file.Size() > kLargestImage) {
    throw StepFailure("the file is too large for an image with a comment");
  }
  const auto stamp = file.Stamp();
  Bytes content = file.ReadAt(0, file.Size());
  if (content.size() != file.Size()) {
    throw StepFailure("the file cannot be read to its end");
  }
  if (change.Comment) {
    PutField(FieldBytes(*change.Comment, "comment", record.Comment, words), record.Comment,
             content);
  }
  if (change.Memo) {
    PutField(FieldBytes(*change.Memo, "memo", record.Memo, words), record.Memo, content);
  }
  if (file.Stamp() != stamp) {
    throw StepFailure("the file was changed by another program meanwhile");
  }
  WriteWholeFile(path, content, Overwrite::kReplace);
  const std::array<timespec, 2> times = {facts.st_atim, facts.st_mtim};
  ::utimensat(AT_FDCWD, PathToBytes(path).constData(), times.data(), 0);
}

}  // namespace tessa
