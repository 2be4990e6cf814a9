#include "core/append_and_patch.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "core/file_descriptor.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"
#include "core/write_file.h"

namespace tessa {
namespace {

[[noreturn]] void Fail(const QString& path, const std::string& reason) {
  throw StepFailure(PlainUtf8(path) + " cannot be changed: " + reason);
}

/// What stood where the patches go. Nothing when it cannot be read or a patch reaches beyond
/// `size`.
std::vector<BytePatch> ReadOld(int descriptor, std::span<const BytePatch> patches,
                               std::uint64_t size) {
  std::vector<BytePatch> old;
  for (const BytePatch& patch : patches) {
    if (patch.Offset > size || patch.Content.size() > size - patch.Offset) {
      throw StepFailure("a part to be changed lies beyond its end");
    }
    BytePatch kept{patch.Offset, Bytes(patch.Content.size())};
    if (ReadAllAt(descriptor, kept.Content, kept.Offset) != kept.Content.size()) {
      throw StepFailure("a part to be changed cannot be read");
    }
    old.push_back(std::move(kept));
  }
  return old;
}

bool WritePatches(int descriptor, std::span<const BytePatch> patches) {
  for (const BytePatch& patch : patches) {
    if (!WriteAllAt(descriptor, patch.Content, patch.Offset)) {
      return false;
    }
  }
  return ::fsync(descriptor) == 0;
}

bool PutBack(int descriptor, std::span<const BytePatch> old, std::uint64_t size) {
  const bool patched = WritePatches(descriptor, old);
  return ::ftruncate(descriptor, static_cast<off_t>(size)) == 0 && ::fsync(descriptor) == 0 &&
         patched;
}

}  // namespace

void AppendAndPatch(const QString& path, const FileStamp& expected, ByteSpan content,
                    std::span<const BytePatch> patches) {
  const FileDescriptor file(::open(PathToBytes(path).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (!file) {
    Fail(path, SystemErrorText(errno));
  }
  if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    Fail(path, "another program is writing it");
  }
  const auto now = StampOf(file.Get());
  if (!now) {
    Fail(path, "it is no plain file");
  }
  if (*now != expected) {
    Fail(path, "it was changed or replaced since it was opened");
  }
  std::vector<BytePatch> old;
  try {
    old = ReadOld(file.Get(), patches, now->Size);
  } catch (const StepFailure& failure) {
    Fail(path, failure.what());
  }
  // The second half runs only when the first is on the disk.
  if (WriteAllAt(file.Get(), content, now->Size) && ::fsync(file.Get()) == 0 &&
      WritePatches(file.Get(), patches)) {
    return;
  }
  const std::string reason = SystemErrorText(errno);
  if (!PutBack(file.Get(), old, now->Size)) {
    Fail(path, reason + "; its old state could not be put back: " + SystemErrorText(errno));
  }
  Fail(path, reason + "; it is as it was");
}

}  // namespace tessa
