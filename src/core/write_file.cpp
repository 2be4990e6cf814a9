#include "core/write_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <QString>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "core/file_access.h"
#include "core/file_descriptor.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"

namespace tessa {
namespace {

const QByteArray kPartPrefix = QByteArrayLiteral(".tessa-");
const QByteArray kPartSuffix = QByteArrayLiteral(".part");
constexpr qsizetype kRandomDigits = 16;
constexpr int kMostTries = 100;
constexpr mode_t kPermissionBits = 0777;  // Not those that run a file as somebody else.
const char* const kAccessList = "system.posix_acl_access";

/// The system refused a call; carries its reason.
class Refused : public std::exception {
 public:
  explicit Refused(std::string reason) : reason_(std::move(reason)) {}
  explicit Refused(int errorNumber) : reason_(SystemErrorText(errorNumber)) {}
  const char* what() const noexcept override { return reason_.c_str(); }

 private:
  std::string reason_;
};

/// Where the file is to stand, after links, and what stands there now.
struct Target {
  FileDescriptor Folder;
  QByteArray Name;
  bool Exists = false;
  struct stat Status {};
};

QByteArray FollowLink(const QByteArray& path) {
  struct stat status {};
  if (::lstat(path.constData(), &status) != 0 || !S_ISLNK(status.st_mode)) {
    return path;
  }
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.constData(), nullptr),
                                                             &std::free);
  if (resolved == nullptr) {
    throw Refused(errno == ENOENT ? "it is a link to a file that is not there"
                                  : SystemErrorText(errno));
  }
  return resolved.get();
}

Target OpenTarget(const QString& path) {
  const QByteArray bytes = PathToBytes(path);
  if (bytes.isEmpty() || bytes.contains('\0')) {
    throw Refused(bytes.isEmpty() ? ENOENT : EINVAL);
  }
  const QByteArray resolved = FollowLink(bytes);
  const qsizetype nameStart = resolved.lastIndexOf('/') + 1;
  const QByteArray folder = nameStart == 0 ? QByteArrayLiteral(".") : resolved.left(nameStart);
  Target target;
  target.Name = resolved.mid(nameStart);
  if (target.Name.isEmpty()) {
    throw Refused(EISDIR);
  }
  target.Folder = FileDescriptor(::open(folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!target.Folder) {
    throw Refused(errno);
  }
  if (::fstatat(target.Folder.Get(), target.Name.constData(), &target.Status,
                AT_SYMLINK_NOFOLLOW) == 0) {
    target.Exists = true;
  } else if (errno != ENOENT) {
    throw Refused(errno);
  }
  return target;
}

void CheckReplaceable(const Target& target, Overwrite overwrite) {
  if (!target.Exists) {
    return;
  }
  if (overwrite == Overwrite::kRefuse) {
    throw Refused(EEXIST);
  }
  if (!S_ISREG(target.Status.st_mode)) {
    throw S_ISDIR(target.Status.st_mode) ? Refused(EISDIR) : Refused("it is no plain file");
  }
  // A rename would replace even a write-protected file.
  if (::faccessat(target.Folder.Get(), target.Name.constData(), W_OK, 0) != 0) {
    throw Refused(errno);
  }
}

/// A name that this process made and removes again unless it has become the final one.
class OwnName {
 public:
  OwnName(int folder, QByteArray name, int descriptor) : folder_(folder), name_(std::move(name)) {
    isKnown_ = ::fstat(descriptor, &own_) == 0;
  }
  OwnName(OwnName&& other) noexcept
      : folder_(other.folder_),
        name_(std::exchange(other.name_, {})),
        own_(other.own_),
        isKnown_(other.isKnown_) {}
  OwnName(const OwnName&) = delete;
  OwnName& operator=(const OwnName&) = delete;
  OwnName& operator=(OwnName&&) = delete;
  ~OwnName() {
    struct stat now {};
    if (!name_.isEmpty() && isKnown_ &&
        ::fstatat(folder_, name_.constData(), &now, AT_SYMLINK_NOFOLLOW) == 0 &&
        now.st_dev == own_.st_dev && now.st_ino == own_.st_ino) {
      ::unlinkat(folder_, name_.constData(), 0);
    }
  }

  const char* Get() const { return name_.constData(); }
  void Released() { name_.clear(); }

 private:
  int folder_;
  QByteArray name_;
  struct stat own_ {};
  bool isKnown_ = false;
};

void Fill(const Target& target, int descriptor, ByteSpan content) {
  if (target.Exists) {
    TakeOverRights(target.Folder.Get(), target.Name, target.Status, descriptor);
  }
  if (!WriteAllAt(descriptor, content, 0)) {
    throw Refused(errno);
  }
  if (target.Exists && ::fsync(descriptor) != 0) {
    throw Refused(errno);
  }
  // Closing a second descriptor is where a network file system tells of a full disk.
  const int second = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (second >= 0 && ::close(second) != 0 && errno != EINTR) {
    throw Refused(errno);
  }
}

/// Gives the finished file under its temporary name the final one.
void Rename(const Target& target, OwnName& name, Overwrite overwrite) {
  const int folder = target.Folder.Get();
  const char* const finalName = target.Name.constData();
  if (overwrite == Overwrite::kRefuse) {
    // Both forms also refuse a file that appeared in the meantime.
    if (::renameat2(folder, name.Get(), folder, finalName, RENAME_NOREPLACE) == 0) {
      name.Released();
      return;
    }
    if (errno != EINVAL && errno != ENOSYS) {
      throw Refused(errno);
    }
    if (::linkat(folder, name.Get(), folder, finalName, 0) == 0) {
      return;  // The temporary name goes by itself.
    }
    struct stat now {};
    if (errno == EEXIST || ::fstatat(folder, finalName, &now, AT_SYMLINK_NOFOLLOW) == 0) {
      throw Refused(EEXIST);
    }
  }
  if (::renameat(folder, name.Get(), folder, finalName) != 0) {
    throw Refused(errno);
  }
  name.Released();
}

mode_t FirstMode(const Target& target) {
  return target.Exists ? 0600 : 0666;
}

void WriteNamed(const Target& target, ByteSpan content, Overwrite overwrite) {
  for (int i = 0; i < kMostTries; ++i) {
    const QByteArray part = RandomPartName();
    const FileDescriptor file(::openat(target.Folder.Get(), part.constData(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                       FirstMode(target)));
    if (file) {
      OwnName name(target.Folder.Get(), part, file.Get());
      Fill(target, file.Get(), content);
      Rename(target, name, overwrite);
      return;
    }
    if (errno != EEXIST) {
      break;
    }
  }
  throw Refused(errno);
}

/// Gives a file without a name its final name, or a temporary one first where that one is taken.
/// False when the file system or the surroundings cannot do it.
bool LinkUnnamed(const Target& target, int descriptor, Overwrite overwrite) {
  const std::string source = "/proc/self/fd/" + std::to_string(descriptor);
  const int folder = target.Folder.Get();
  const auto link = [&](const QByteArray& name) {
    return ::linkat(AT_FDCWD, source.c_str(), folder, name.constData(), AT_SYMLINK_FOLLOW) == 0;
  };
  if (!target.Exists && link(target.Name)) {
    return true;
  }
  if (!target.Exists && (errno != EEXIST || overwrite == Overwrite::kRefuse)) {
    if (errno == EEXIST || errno == ENOSPC || errno == EDQUOT || errno == ENAMETOOLONG) {
      throw Refused(errno);
    }
    return false;
  }
  for (int i = 0; i < kMostTries; ++i) {
    const QByteArray part = RandomPartName();
    if (link(part)) {
      OwnName name(folder, part, descriptor);
      Rename(target, name, overwrite);
      return true;
    }
    if (errno != EEXIST) {
      return false;
    }
  }
  return false;
}

bool WriteUnnamed(const Target& target, ByteSpan content, Overwrite overwrite) {
  const FileDescriptor file(
      ::openat(target.Folder.Get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, FirstMode(target)));
  if (!file) {
    return false;
  }
  Fill(target, file.Get(), content);
  return LinkUnnamed(target, file.Get(), overwrite);
}

}  // namespace

void WriteWholeFile(const QString& path, ByteSpan content, Overwrite overwrite) {
  try {
    const Target target = OpenTarget(path);
    CheckReplaceable(target, overwrite);
    if (!WriteUnnamed(target, content, overwrite)) {
      WriteNamed(target, content, overwrite);
    }
    if (target.Exists) {
      const FileDescriptor folder(
          ::openat(target.Folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
      if (folder) {
        static_cast<void>(::fsync(folder.Get()));  // The old or the new name: both are whole.
      }
    }
  } catch (const Refused& reason) {
    throw StepFailure(PlainUtf8(path) + " cannot be written: " + reason.what());
  }
}

void TakeOverRights(int folder, const QByteArray& name, const struct stat& old, int descriptor) {
  mode_t mode = old.st_mode & kPermissionBits;
  struct stat made {};
  bool groupKept = ::fstat(descriptor, &made) == 0 && made.st_gid == old.st_gid;
  if (!groupKept || made.st_uid != old.st_uid) {
    if (::fchown(descriptor, old.st_uid, old.st_gid) == 0) {
      groupKept = true;
    } else if (::fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0) {
      groupKept = true;
    }
  }
  const FileDescriptor source(
      ::openat(folder, name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::array<char, 4096> list{};
  const ssize_t size =
      source ? ::fgetxattr(source.Get(), kAccessList, list.data(), list.size()) : -1;
  const bool hasNone = size < 0 && source && (errno == ENODATA || errno == EOPNOTSUPP);
  const bool listKept =
      hasNone || (size >= 0 && ::fsetxattr(descriptor, kAccessList, list.data(),
                                           static_cast<std::size_t>(size), 0) == 0);
  if (hasNone) {
    static_cast<void>(::fremovexattr(descriptor, kAccessList));  // Inherited from the folder.
  }
  if (!groupKept || !listKept) {
    // The group's bits were meant for another group, or are the outline of the list.
    mode = (mode & ~static_cast<mode_t>(S_IRWXG)) |
           (mode & (mode << 3) & static_cast<mode_t>(S_IRWXG));
  }
  static_cast<void>(::fchmod(descriptor, mode));
}

void SyncFolder(const QString& folder) {
  const FileDescriptor opened(
      ::open(PathToBytes(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened || ::syncfs(opened.Get()) != 0) {
    throw StepFailure(PlainUtf8(folder) + ": it is not certain that the files are on the disk: " +
                      SystemErrorText(errno));
  }
}

bool WriteAllAt(int descriptor, ByteSpan content, std::uint64_t offset) {
  while (!content.empty()) {
    const ssize_t written =
        ::pwrite(descriptor, content.data(), content.size(), static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      errno = written == 0 ? EIO : errno;
      return false;
    }
    content = content.subspan(static_cast<std::size_t>(written));
    offset += static_cast<std::uint64_t>(written);
  }
  return true;
}

QByteArray RandomDigits() {
  std::array<char, kRandomDigits / 2> random{};
  if (::getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) {
    throw StepFailure("no random numbers: " + SystemErrorText(errno));
  }
  return QByteArray(random.data(), random.size()).toHex();
}

QByteArray RandomPartName() {
  // Short, so that it fits wherever the target's own name fits.
  return kPartPrefix + RandomDigits() + kPartSuffix;
}

bool IsPartName(const QByteArray& name) {
  const QByteArray digits = name.mid(kPartPrefix.size(), kRandomDigits);
  return name == kPartPrefix + digits + kPartSuffix && digits.size() == kRandomDigits &&
         std::all_of(digits.begin(), digits.end(), [](char digit) {
           return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f');
         });
}

}  // namespace tessa
