#include "core/file_access.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "core/steps.h"

namespace tessa {
namespace {

/// Owns a file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int Get() const { return descriptor_; }
  /// The result of close(), where a full disk on a network may show itself.
  int Close() {
    const int result = descriptor_ >= 0 ? ::close(descriptor_) : 0;
    descriptor_ = -1;
    return result;
  }

 private:
  int descriptor_;
};

Problem Unreadable(std::string text) {
  return {ProblemKind::kUnreadable, 0, "File", std::move(text), true};
}

[[noreturn]] void FailWrite(const QString& path, int errorNumber) {
  throw StepFailure(path.toStdString() + " cannot be written: " + SystemErrorText(errorNumber));
}

/// Removes a temporary file unless it has taken its final name.
class TemporaryName {
 public:
  explicit TemporaryName(const QByteArray& target) {
    static std::atomic<unsigned> counter{0};
    const qsizetype nameStart = target.lastIndexOf('/') + 1;
    // Short, so that it fits wherever the target's own name fits.
    name_ = target.left(nameStart) + ".tessa-" + QByteArray::number(::getpid()) + '-' +
            QByteArray::number(counter.fetch_add(1)) + ".part";
  }
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;
  ~TemporaryName() {
    if (!name_.isEmpty()) {
      ::unlink(name_.constData());
    }
  }

  const char* Get() const { return name_.constData(); }
  void Released() { name_.clear(); }

 private:
  QByteArray name_;
};

bool WriteAll(int descriptor, ByteSpan content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      return false;
    }
    content = content.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

std::string SystemErrorText(int errorNumber) {
  return std::generic_category().message(errorNumber);
}

std::optional<RandomFile> RandomFile::Open(const QString& path, Problems& faults) {
  const QByteArray name = QFile::encodeName(path);
  // Without O_NONBLOCK the opening of a pipe would wait for a writer.
  const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    faults.push_back(Unreadable("the file cannot be opened: " + SystemErrorText(errno)));
    return std::nullopt;
  }
  RandomFile file(descriptor, 0);
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    faults.push_back(Unreadable("the file cannot be examined: " + SystemErrorText(errno)));
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    faults.push_back(
        Unreadable(S_ISDIR(status.st_mode) ? "it is a folder, not a file" : "it is no plain file"));
    return std::nullopt;
  }
  file.size_ = static_cast<std::uint64_t>(status.st_size);
  return file;
}

RandomFile::RandomFile(RandomFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_) {}

RandomFile::~RandomFile() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
}

Bytes RandomFile::ReadAt(std::uint64_t offset, std::uint64_t count) const {
  Bytes bytes;
  if (offset >= size_) {
    return bytes;
  }
  bytes.resize(static_cast<std::size_t>(std::min(count, size_ - offset)));
  bytes.resize(ReadInto(offset, bytes));
  return bytes;
}

std::size_t RandomFile::ReadInto(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept {
  std::size_t filled = 0;
  while (filled < to.size() && offset + filled < size_) {
    const std::size_t wanted = std::min<std::uint64_t>(to.size() - filled, size_ - offset - filled);
    const ssize_t got =
        ::pread(descriptor_, to.data() + filled, wanted, static_cast<off_t>(offset + filled));
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got <= 0) {  // Unreadable there, or shorter since it was opened.
      break;
    }
    filled += static_cast<std::size_t>(got);
  }
  return filled;
}

std::optional<FileStart> ReadFileStart(const QString& path, std::uint64_t limit, Problems& faults) {
  const auto file = RandomFile::Open(path, faults);
  if (!file) {
    return std::nullopt;
  }
  if (file->Size() == 0) {
    faults.push_back(Unreadable("the file is empty"));
    return std::nullopt;
  }
  const std::uint64_t wanted = std::min(file->Size(), limit);
  FileStart start{file->ReadAt(0, wanted), file->Size()};
  if (start.Data.size() < wanted) {
    if (start.Data.empty()) {
      faults.push_back(Unreadable("the file cannot be read"));
      return std::nullopt;
    }
    start.Size = start.Data.size();
  }
  return start;
}

void WriteWholeFile(const QString& path, ByteSpan content, Overwrite overwrite) {
  const QFileInfo existing(path);
  const QString target = existing.isSymLink() && existing.exists() ? existing.canonicalFilePath()
                                                                   : existing.absoluteFilePath();
  const QByteArray targetName = QFile::encodeName(target);
  struct stat status {};
  const bool exists = ::stat(targetName.constData(), &status) == 0;
  if (exists && overwrite == Overwrite::kRefuse) {
    FailWrite(path, EEXIST);
  }
  if (exists && !S_ISREG(status.st_mode)) {
    FailWrite(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
  }
  if (exists && ::access(targetName.constData(), W_OK) != 0) {
    FailWrite(path, errno);  // A rename would replace even a write-protected file.
  }
  TemporaryName temporary(targetName);
  Descriptor file(::open(temporary.Get(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (file.Get() < 0) {
    FailWrite(path, errno);
  }
  if (exists) {
    static_cast<void>(::fchmod(file.Get(), status.st_mode & 07777));
  }
  if (!WriteAll(file.Get(), content) || file.Close() != 0) {
    FailWrite(path, errno);
  }
  // The first form also refuses a file that appeared in the meantime.
  if (overwrite == Overwrite::kRefuse &&
      ::renameat2(AT_FDCWD, temporary.Get(), AT_FDCWD, targetName.constData(), RENAME_NOREPLACE) ==
          0) {
    temporary.Released();
    return;
  }
  if (overwrite == Overwrite::kRefuse && errno != EINVAL && errno != ENOSYS) {
    FailWrite(path, errno);
  }
  if (::rename(temporary.Get(), targetName.constData()) != 0) {
    FailWrite(path, errno);
  }
  temporary.Released();
}

}  // namespace tessa
