#include "core/append_and_patch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <vector>

#include "core/file_access.h"
#include "core/steps.h"

namespace tessa {
namespace {

[[noreturn]] void Fail(const QString& path, const std::string& reason) {
  throw StepFailure(path.toStdString() + " cannot be changed: " + reason);
}

std::optional<FileStamp> StampOf(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return FileStamp{static_cast<std::uint64_t>(status.st_size), status.st_dev, status.st_ino,
                   status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

bool WriteAt(int descriptor, ByteSpan bytes, std::uint64_t offset) {
  while (!bytes.empty()) {
    const ssize_t written =
        ::pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      return false;
    }
    bytes = bytes.subspan(static_cast<std::size_t>(written));
    offset += static_cast<std::uint64_t>(written);
  }
  return true;
}

bool WritePatches(int descriptor, std::span<const BytePatch> patches) {
  for (const BytePatch& patch : patches) {
    if (!WriteAt(descriptor, patch.Content, patch.Offset)) {
      return false;
    }
  }
  return ::fsync(descriptor) == 0;
}

}  // namespace

std::optional<FileStamp> StampAt(const QString& path) {
  struct stat status {};
  return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? StampOf(status) : std::nullopt;
}

void AppendAndPatch(const QString& path, const FileStamp& expected, ByteSpan content,
                    std::span<const BytePatch> patches) {
  QFile file(path);
  if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered)) {
    Fail(path, file.errorString().toStdString());
  }
  const int descriptor = file.handle();
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || StampOf(status) != expected) {
    Fail(path, "it was changed or replaced since it was opened");
  }
  std::vector<BytePatch> old;
  for (const BytePatch& patch : patches) {
    BytePatch kept{patch.Offset, Bytes(patch.Content.size())};
    if (::pread(descriptor, kept.Content.data(), kept.Content.size(),
                static_cast<off_t>(kept.Offset)) != static_cast<ssize_t>(kept.Content.size())) {
      Fail(path, "a part to be changed cannot be read");
    }
    old.push_back(std::move(kept));
  }
  if (WriteAt(descriptor, content, expected.Size) && ::fsync(descriptor) == 0 &&
      WritePatches(descriptor, patches)) {
    return;
  }
  const std::string reason = SystemErrorText(errno);
  const bool back = WritePatches(descriptor, old);
  if (::ftruncate(descriptor, static_cast<off_t>(expected.Size)) != 0 || !back) {
    Fail(path, reason + "; its old state could not be put back");
  }
  Fail(path, reason + "; it is as it was");
}

}  // namespace tessa
