#include "core/transfer_files.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"

namespace tessa {
namespace {

constexpr std::size_t kPieceSize = 1 << 20;
constexpr mode_t kPermissionBits = 0777;  // Not those that run a file as somebody else.

[[noreturn]] void Refuse(int errorNumber) {
  throw StepFailure(SystemErrorText(errorNumber));
}

void CheckPlain(mode_t mode) {
  if (!S_ISREG(mode)) {
    throw StepFailure(S_ISDIR(mode) ? "it is a folder, not a file" : "it is no plain file");
  }
}

/// As CheckPlain(), of what a file would take the place of.
void CheckTaken(mode_t mode) {
  if (!S_ISREG(mode)) {
    throw StepFailure(S_ISDIR(mode) ? "a folder of that name is in the target folder"
                                    : "what has that name in the target folder is no plain file");
  }
}

/// The same file, and nobody wrote to it.
bool HasSameContent(const struct stat& before, const struct stat& now) {
  return before.st_dev == now.st_dev && before.st_ino == now.st_ino &&
         before.st_size == now.st_size && before.st_mtim.tv_sec == now.st_mtim.tv_sec &&
         before.st_mtim.tv_nsec == now.st_mtim.tv_nsec;
}

/// True where the error only says that the file system cannot do it this way.
bool IsUnsupported(int errorNumber) {
  return errorNumber == EXDEV || errorNumber == EINVAL || errorNumber == ENOSYS ||
         errorNumber == EOPNOTSUPP || errorNumber == EPERM || errorNumber == EMLINK;
}

/// Renames; with kRefuse only where nothing stands under the name. errno tells of a failure.
bool RenameAt(int fromFolder, const char* from, int folder, const char* name, Overwrite overwrite) {
  if (overwrite == Overwrite::kReplace) {
    return ::renameat(fromFolder, from, folder, name) == 0;
  }
  if (::renameat2(fromFolder, from, folder, name, RENAME_NOREPLACE) == 0) {
    return true;
  }
  if (errno != EINVAL && errno != ENOSYS) {
    return false;
  }
  // A second name is refused like that, too, where the file system knows second names.
  if (::linkat(fromFolder, from, folder, name, 0) == 0) {
    return ::unlinkat(fromFolder, from, 0) == 0;
  }
  struct stat status {};
  if (errno == EEXIST || ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
    errno = EEXIST;
    return false;
  }
  return ::renameat(fromFolder, from, folder, name) == 0;
}

}  // namespace

TargetFolder::TargetFolder(const QString& path)
    : path_(path),
      folder_(::open(PathToBytes(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (!folder_ || ::fstat(folder_.Get(), &status_) != 0) {
    Refuse(errno);
  }
}

bool TargetFolder::IsSameFolder(const QString& path) const {
  struct stat other {};
  return ::stat(PathToBytes(path).constData(), &other) == 0 && other.st_dev == status_.st_dev &&
         other.st_ino == status_.st_ino;
}

std::optional<struct stat> TargetFolder::Find(const QByteArray& name) const {
  struct stat status {};
  if (::fstatat(folder_.Get(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return std::nullopt;
  }
  return status;
}

void TargetFolder::CheckReplaceable(const QByteArray& name) const {
  const auto there = Find(name);
  if (!there) {
    return;
  }
  if (!S_ISLNK(there->st_mode)) {
    CheckTaken(there->st_mode);
    return;
  }
  struct stat leadsTo {};
  if (::fstatat(folder_.Get(), name.constData(), &leadsTo, 0) == 0) {
    CheckTaken(leadsTo.st_mode);
  }
}

void TargetFolder::CheckWritable() const {
  if (::faccessat(folder_.Get(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
    throw StepFailure("the target folder cannot be written: " + SystemErrorText(errno));
  }
}

bool TargetFolder::HasName() const {
  struct stat status {};
  return ::fstat(folder_.Get(), &status) == 0 && status.st_nlink > 0;
}

void TargetFolder::Sync() const {
  if (::syncfs(folder_.Get()) != 0) {
    throw StepFailure("it is not certain that the files are on the disk: " +
                      SystemErrorText(errno));
  }
}

SourceFile OpenSource(const QString& path) {
  // Without O_NONBLOCK the opening of a pipe would wait for a writer.
  SourceFile source{
      FileDescriptor(::open(PathToBytes(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), {}};
  if (!source.File || ::fstat(source.File.Get(), &source.Status) != 0) {
    Refuse(errno);
  }
  CheckPlain(source.Status.st_mode);
  return source;
}

bool IsUnchanged(const struct stat& before, const struct stat& now) {
  // The time of change also tells of bytes whose own time was set back, and of second names.
  return HasSameContent(before, now) &&
         (before.st_nlink != now.st_nlink || (before.st_ctim.tv_sec == now.st_ctim.tv_sec &&
                                              before.st_ctim.tv_nsec == now.st_ctim.tv_nsec));
}

PlacedFile OpenPlaced(const TargetFolder& folder, const QByteArray& name) {
  PlacedFile file{name,
                  FileDescriptor(::openat(folder.Descriptor(), name.constData(),
                                          O_PATH | O_NOFOLLOW | O_CLOEXEC)),
                  {}};
  if (!file.File || ::fstat(file.File.Get(), &file.Status) != 0) {
    Refuse(errno);
  }
  return file;
}

bool IsStillThere(const TargetFolder& folder, const PlacedFile& file) {
  const auto there = folder.Find(file.Name);
  return there && HasSameContent(file.Status, *there) && folder.HasName();
}

bool HasSameBytes(const SourceFile& source, const TargetFolder& folder, const QByteArray& name) {
  const FileDescriptor other(::openat(folder.Descriptor(), name.constData(),
                                      O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  struct stat status {};
  if (!other || ::fstat(other.Get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_size != source.Status.st_size) {
    return false;
  }
  const auto size = static_cast<std::uint64_t>(status.st_size);
  std::vector<std::uint8_t> first(std::min<std::uint64_t>(kPieceSize, size));
  std::vector<std::uint8_t> second(first.size());
  for (std::uint64_t at = 0; at < size; at += first.size()) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(first.size(), size - at));
    if (ReadAllAt(source.File.Get(), std::span(first).first(wanted), at) != wanted ||
        ReadAllAt(other.Get(), std::span(second).first(wanted), at) != wanted ||
        !std::equal(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(wanted),
                    second.begin())) {
      return false;
    }
  }
  return true;
}

StagedFile::StagedFile(const SourceFile& source, const TargetFolder& folder) : folder_(&folder) {
  Open();
  try {
    CopyBytes(source);
    struct stat now {};
    if (::fstat(source.File.Get(), &now) != 0 || !IsUnchanged(source.Status, now)) {
      throw StepFailure("it was changed while it was copied");
    }
    TakeOverTraits(source.Status);
  } catch (const StepFailure&) {
    TakeBack(part_);
    throw;
  }
}

StagedFile::StagedFile(StagedFile&& other) noexcept
    : folder_(other.folder_),
      file_(std::move(other.file_)),
      part_(std::exchange(other.part_, {})) {}

StagedFile::~StagedFile() {
  TakeBack(part_);
}

void StagedFile::Open() {
  file_ =
      FileDescriptor(::openat(folder_->Descriptor(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
  if (file_) {
    return;
  }
  const QByteArray part = RandomPartName();
  file_ = FileDescriptor(::openat(folder_->Descriptor(), part.constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file_) {
    Refuse(errno);
  }
  part_ = part;
}

void StagedFile::CopyBytes(const SourceFile& source) const {
  const auto size = static_cast<std::uint64_t>(source.Status.st_size);
  loff_t from = 0;
  loff_t to = 0;
  while (static_cast<std::uint64_t>(from) < size) {
    const ssize_t copied =
        ::copy_file_range(source.File.Get(), &from, file_.Get(), &to,
                          static_cast<std::size_t>(size - static_cast<std::uint64_t>(from)), 0);
    if (copied < 0 && errno == EINTR) {
      continue;
    }
    if (copied < 0 && !IsUnsupported(errno)) {
      Refuse(errno);
    }
    if (copied <= 0) {
      break;  // By hand, which also tells of a file that ends early.
    }
  }
  std::vector<std::uint8_t> piece;
  for (auto at = static_cast<std::uint64_t>(from); at < size; at += piece.size()) {
    piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kPieceSize, size - at)));
    if (ReadAllAt(source.File.Get(), piece, at) != piece.size()) {
      throw StepFailure("it cannot be read to its end");
    }
    if (!WriteAllAt(file_.Get(), piece, at)) {
      Refuse(errno);
    }
  }
}

void StagedFile::TakeOverTraits(const struct stat& status) const {
  static_cast<void>(::fchmod(file_.Get(), (status.st_mode & kPermissionBits) | S_IWUSR));
  const std::array times = {status.st_atim, status.st_mtim};
  static_cast<void>(::futimens(file_.Get(), times.data()));
}

void StagedFile::Change(ByteSpan start, ByteSpan tail) {
  struct stat status {};
  if (::fstat(file_.Get(), &status) != 0 ||
      !WriteAllAt(file_.Get(), tail, static_cast<std::uint64_t>(status.st_size)) ||
      !WriteAllAt(file_.Get(), start, 0)) {
    Refuse(errno);
  }
}

void StagedFile::TakeRightsOf(const QByteArray& name) const {
  const auto there = folder_->Find(name);
  if (there && S_ISREG(there->st_mode)) {
    TakeOverRights(folder_->Descriptor(), name, *there, file_.Get());
  }
}

void StagedFile::Sync() const {
  if (::fsync(file_.Get()) != 0) {
    Refuse(errno);
  }
}

void StagedFile::GiveName(const QByteArray& name, Overwrite overwrite) {
  const int folder = folder_->Descriptor();
  if (overwrite == Overwrite::kReplace) {
    folder_->CheckReplaceable(name);
    Sync();
  }
  // Closing a second descriptor is where a network file system tells of a full disk.
  const int second = ::fcntl(file_.Get(), F_DUPFD_CLOEXEC, 0);
  if (second >= 0 && ::close(second) != 0 && errno != EINTR) {
    Refuse(errno);
  }
  if (part_.isEmpty()) {
    const std::string unnamed = "/proc/self/fd/" + std::to_string(file_.Get());
    const QByteArray linked = overwrite == Overwrite::kReplace ? RandomPartName() : name;
    if (::linkat(AT_FDCWD, unnamed.c_str(), folder, linked.constData(), AT_SYMLINK_FOLLOW) != 0) {
      Refuse(errno);
    }
    if (overwrite == Overwrite::kRefuse) {
      return;
    }
    part_ = linked;
  }
  if (!RenameAt(folder, part_.constData(), folder, name.constData(), overwrite)) {
    Refuse(errno);
  }
  part_.clear();
}

void StagedFile::TakeBack(const QByteArray& name) const {
  if (name.isEmpty()) {
    return;
  }
  struct stat own {};
  const auto there = folder_->Find(name);
  if (there && ::fstat(file_.Get(), &own) == 0 && there->st_dev == own.st_dev &&
      there->st_ino == own.st_ino) {
    ::unlinkat(folder_->Descriptor(), name.constData(), 0);
  }
}

PlacedFile StagedFile::Release(const QByteArray& name) {
  PlacedFile placed{name, std::move(file_), {}};
  if (::fstat(placed.File.Get(), &placed.Status) != 0) {
    Refuse(errno);
  }
  return placed;
}

ReplacedFile::ReplacedFile(const TargetFolder& folder, QByteArray name)
    : folder_(&folder), name_(std::move(name)) {
  const int in = folder.Descriptor();
  if (!folder.Find(name_)) {
    return;
  }
  const QByteArray part = RandomPartName();
  // Where files have one name only, the old one has none until the new one has it.
  if (::linkat(in, name_.constData(), in, part.constData(), 0) != 0 &&
      (!IsUnsupported(errno) ||
       !RenameAt(in, name_.constData(), in, part.constData(), Overwrite::kRefuse))) {
    Refuse(errno);
  }
  part_ = part;
}

ReplacedFile::~ReplacedFile() {
  if (part_.isEmpty()) {
    return;
  }
  const int in = folder_->Descriptor();
  if (::renameat(in, part_.constData(), in, name_.constData()) == 0) {
    // Two names of one file are left alone by the system.
    ::unlinkat(in, part_.constData(), 0);
  }
}

void ReplacedFile::LetGo() {
  if (!part_.isEmpty()) {
    ::unlinkat(folder_->Descriptor(), part_.constData(), 0);
    part_.clear();
  }
}

bool LinkInto(const QString& path, const TargetFolder& folder, const QByteArray& name,
              Overwrite overwrite) {
  const QByteArray from = PathToBytes(path);
  const int target = folder.Descriptor();
  const bool replaces = overwrite == Overwrite::kReplace;
  const QByteArray linked = replaces ? RandomPartName() : name;
  if (::linkat(AT_FDCWD, from.constData(), target, linked.constData(), 0) != 0) {
    if (IsUnsupported(errno)) {
      return false;
    }
    Refuse(errno);
  }
  if (replaces && ::renameat(target, linked.constData(), target, name.constData()) != 0) {
    const int reason = errno;
    ::unlinkat(target, linked.constData(), 0);
    Refuse(reason);
  }
  return true;
}

bool RenameInto(const QString& path, const TargetFolder& folder, const QByteArray& name,
                Overwrite overwrite) {
  const QByteArray from = PathToBytes(path);
  if (overwrite == Overwrite::kReplace) {
    folder.CheckReplaceable(name);
  }
  if (!RenameAt(AT_FDCWD, from.constData(), folder.Descriptor(), name.constData(), overwrite)) {
    if (errno == EXDEV) {
      return false;
    }
    Refuse(errno);
  }
  // Two names of one file are left alone by the system, as if they were one.
  struct stat still {};
  const auto moved = folder.Find(name);
  if (::lstat(from.constData(), &still) == 0 && moved && still.st_dev == moved->st_dev &&
      still.st_ino == moved->st_ino && ::unlink(from.constData()) != 0) {
    Refuse(errno);
  }
  return true;
}

void ClearReadOnly(const TargetFolder& folder, const QByteArray& name) {
  const auto there = folder.Find(name);
  if (there && S_ISREG(there->st_mode) && (there->st_mode & S_IWUSR) == 0) {
    static_cast<void>(::fchmodat(folder.Descriptor(), name.constData(),
                                 (there->st_mode & kPermissionBits) | S_IWUSR, 0));
  }
}

}  // namespace tessa
