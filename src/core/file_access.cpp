#include "core/file_access.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "core/path_bytes.h"

namespace tessa {
namespace {

Problem Unreadable(std::string text) {
  return {ProblemKind::kUnreadable, 0, "File", std::move(text), true};
}

}  // namespace

std::string SystemErrorText(int errorNumber) {
  return std::generic_category().message(errorNumber);
}

namespace {

std::optional<FileStamp> StampFrom(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return FileStamp{static_cast<std::uint64_t>(status.st_size), status.st_dev, status.st_ino,
                   status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

}  // namespace

std::optional<FileStamp> StampOf(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 ? StampFrom(status) : std::nullopt;
}

std::optional<FileStamp> StampOf(const QString& path) {
  struct stat status {};
  return ::stat(PathToBytes(path).constData(), &status) == 0 ? StampFrom(status) : std::nullopt;
}

std::optional<RandomFile> RandomFile::Open(const QString& path, Problems& faults) {
  const QByteArray name = PathToBytes(path);
  // Without O_NONBLOCK the opening of a pipe would wait for a writer.
  FileDescriptor file(::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) {
    faults.push_back(Unreadable("the file cannot be opened: " + SystemErrorText(errno)));
    return std::nullopt;
  }
  struct stat status {};
  if (::fstat(file.Get(), &status) != 0) {
    faults.push_back(Unreadable("the file cannot be examined: " + SystemErrorText(errno)));
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    faults.push_back(
        Unreadable(S_ISDIR(status.st_mode) ? "it is a folder, not a file" : "it is no plain file"));
    return std::nullopt;
  }
  return RandomFile(std::move(file), static_cast<std::uint64_t>(status.st_size));
}

Bytes RandomFile::ReadAt(std::uint64_t offset, std::uint64_t count) const {
  Bytes bytes;
  if (offset < size_) {
    bytes.resize(static_cast<std::size_t>(std::min(count, size_ - offset)));
    // Less where it is unreadable, or the file is shorter since it was opened.
    bytes.resize(ReadAllAt(file_.Get(), bytes, offset));
  }
  return bytes;
}

std::size_t RandomFile::ReadInto(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept {
  if (offset >= size_) {
    return 0;
  }
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(to.size(), size_ - offset));
  return ReadAllAt(file_.Get(), to.first(wanted), offset);
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

bool PathExists(const QString& path) {
  struct stat status {};
  return ::stat(PathToBytes(path).constData(), &status) == 0;
}

bool IsFolder(const QString& path) {
  struct stat status {};
  return ::stat(PathToBytes(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsWritable(const QString& path) {
  return ::access(PathToBytes(path).constData(), W_OK) == 0;
}

std::optional<std::uint64_t> FileSize(const QString& path) {
  struct stat status {};
  if (::stat(PathToBytes(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(status.st_size);
}

QString AbsolutePath(const QString& path) {
  if (path.startsWith(QLatin1Char('/'))) {
    return path;
  }
  std::error_code error;
  const std::string folder = std::filesystem::current_path(error).string();
  return JoinPath(PathFromBytes(QByteArray::fromStdString(folder)), path);
}

bool MakeFolders(const QString& path) {
  const std::filesystem::path folder(PathToBytes(path).toStdString());
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return std::filesystem::is_directory(folder, error);
}

bool IsSameFile(const QString& first, const QString& second) {
  struct stat firstStatus {};
  struct stat secondStatus {};
  return ::stat(PathToBytes(first).constData(), &firstStatus) == 0 &&
         ::stat(PathToBytes(second).constData(), &secondStatus) == 0 &&
         firstStatus.st_dev == secondStatus.st_dev && firstStatus.st_ino == secondStatus.st_ino;
}

std::size_t ReadAllAt(int descriptor, std::span<std::uint8_t> bytes, std::uint64_t offset) {
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = ::pread(descriptor, bytes.data() + filled, bytes.size() - filled,
                                static_cast<off_t>(offset + filled));
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got <= 0) {
      break;
    }
    filled += static_cast<std::size_t>(got);
  }
  return filled;
}

}  // namespace tessa
