#include "browser/note_record.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>

#include "core/path_bytes.h"
#include "core/steps.h"
#include "core/write_file.h"

namespace tessa {
namespace {

/// Sound and photograph included; more than this is no image of a camera.
constexpr std::uint64_t kLargestImage = 1ULL << 30;

void PutField(const std::optional<std::string>& bytes, const NoteField& field, Bytes& file) {
  if (bytes) {
    std::copy_n(bytes->begin(), field.Size, file.begin() + static_cast<std::ptrdiff_t>(field.At));
  }
}

struct stat FactsOf(const QString& path) {
  struct stat facts {};
  if (::stat(PathToBytes(path).constData(), &facts) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
  return facts;
}

}  // namespace

RandomFile OpenNoteFile(const QString& path, const NoteRecord& record) {
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

void WriteNote(const QString& path, const NoteRecord& record, const NoteBytes& bytes) {
  const RandomFile file = OpenNoteFile(path, record);
  const struct stat facts = FactsOf(path);
  if (file.Size() > kLargestImage) {
    throw StepFailure("the file is too large for an image with a comment");
  }
  const auto stamp = file.Stamp();
  Bytes content = file.ReadAt(0, file.Size());
  if (content.size() != file.Size()) {
    throw StepFailure("the file cannot be read to its end");
  }
  PutField(bytes.Comment, record.Comment, content);
  PutField(bytes.Memo, record.Memo, content);
  if (file.Stamp() != stamp) {
    throw StepFailure("the file was changed by another program meanwhile");
  }
  WriteWholeFile(path, content, Overwrite::kReplace);
  const std::array<timespec, 2> times = {facts.st_atim, facts.st_mtim};
  ::utimensat(AT_FDCWD, PathToBytes(path).constData(), times.data(), 0);
}

}  // namespace tessa
