#include "core/private_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QList>
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>

#include "core/file_access.h"
#include "core/plain_line.h"
#include "core/steps.h"

namespace tessa {
namespace {

const QByteArray kRunPrefix = QByteArrayLiteral("run-");
constexpr const char* kLockName = "lock";
constexpr std::uint64_t kMostLockBytes = 64 << 10;
constexpr int kMostCleaned = 200;  // Folders at one time; the rest waits for the next time.

/// The files that the program makes whatever is open.
constexpr std::array<const char*, 6> kOwnNames = {"TESSAVIEW.JPG", "TESSAVIEW2.JPG",
                                                  "TESSANVIS.JPG", "TESSAVIEW.WAV",
                                                  "TESSASPEC.WAV", "tmp.bmp"};

/// True for a folder of this user's that nobody else may write to.
bool IsOurs(int folder, mode_t forbidden) {
  struct stat status {};
  return ::fstat(folder, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & forbidden) == 0;
}

FileDescriptor OpenFolderAt(int folder, const char* name) {
  return FileDescriptor(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

FileDescriptor OpenLock(int folder, int flags) {
  return FileDescriptor(
      ::openat(folder, kLockName, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | flags, 0600));
}

/// The names in a folder; nothing when it cannot be read.
std::optional<QList<QByteArray>> NamesIn(int folder) {
  const int second = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  DIR* const entries = second < 0 ? nullptr : ::fdopendir(second);
  if (entries == nullptr) {
    if (second >= 0) {
      ::close(second);
    }
    return std::nullopt;
  }
  QList<QByteArray> names;
  while (const dirent* const entry = ::readdir(entries)) {
    const QByteArray name(entry->d_name);
    if (name != "." && name != "..") {
      names.append(name);
    }
  }
  ::closedir(entries);
  return names;
}

QList<QByteArray> RegisteredNames(int lock) {
  Bytes text(kMostLockBytes);
  text.resize(ReadAllAt(lock, text, 0));
  return QByteArray(reinterpret_cast<const char*>(text.data()), static_cast<qsizetype>(text.size()))
      .split('\0');
}

/// Removes the program's own files from a folder whose lock this process holds, the lock itself
/// last. With `allOrNothing`, a folder that holds anything else stays as it is.
void RemoveOwnFiles(int folder, int lock, bool allOrNothing) {
  const auto names = NamesIn(folder);
  const QList<QByteArray> registered = RegisteredNames(lock);
  if (!names) {
    return;
  }
  const auto isOwn = [&](const QByteArray& name) {
    struct stat status {};
    return (std::find(kOwnNames.begin(), kOwnNames.end(), name) != kOwnNames.end() ||
            IsPartName(name) || name == kLockName || registered.contains(name)) &&
           ::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
  };
  if (allOrNothing && !std::all_of(names->begin(), names->end(), isOwn)) {
    return;
  }
  for (const QByteArray& name : *names) {
    if (name != kLockName && isOwn(name)) {
      ::unlinkat(folder, name.constData(), 0);
    }
  }
  ::unlinkat(folder, kLockName, 0);
}

/// Removes what ended processes left behind. The home is locked, so nobody is making a folder.
void RemoveLeftovers(int home) {
  int cleaned = 0;
  for (const QByteArray& name : NamesIn(home).value_or(QList<QByteArray>())) {
    if (!name.startsWith(kRunPrefix) || cleaned == kMostCleaned) {
      continue;
    }
    const FileDescriptor folder = OpenFolderAt(home, name.constData());
    if (!folder || !IsOurs(folder.Get(), 077)) {
      continue;
    }
    ++cleaned;
    const FileDescriptor lock = OpenLock(folder.Get(), 0);
    if (lock && ::flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) {
      continue;  // Somebody lives here.
    }
    if (lock) {
      RemoveOwnFiles(folder.Get(), lock.Get(), true);
    }
    ::unlinkat(home, name.constData(), AT_REMOVEDIR);  // Only if it is empty.
  }
}

/// Locks the home against others who make folders or clean it; false when one of them stands still.
bool LockHome(int lock) {
  constexpr int kTries = 200;
  for (int i = 0; i < kTries; ++i) {
    if (::flock(lock, LOCK_EX | LOCK_NB) == 0) {
      return true;
    }
    if (errno != EWOULDBLOCK && errno != EINTR) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

QByteArray Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && *value == '/' ? QByteArray(value) : QByteArray();
}

}  // namespace

PrivateFolder::PrivateFolder(FileDescriptor home, QByteArray path, QByteArray name,
                             FileDescriptor folder, FileDescriptor lock)
    : home_(std::move(home)),
      path_(std::move(path)),
      name_(std::move(name)),
      folder_(std::move(folder)),
      lock_(std::move(lock)) {}

std::unique_ptr<PrivateFolder> PrivateFolder::MakeIn(const QByteArray& base) {
  const FileDescriptor around(::open(base.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!around || !IsOurs(around.Get(), 022)) {
    return nullptr;
  }
  ::mkdirat(around.Get(), kHomeName, 0700);
  FileDescriptor home = OpenFolderAt(around.Get(), kHomeName);
  if (!home || !IsOurs(home.Get(), 077)) {
    return nullptr;
  }
  // Between making a folder and locking it, it would look like a dead one.
  const FileDescriptor making = OpenLock(home.Get(), O_CREAT);
  if (!making || !LockHome(making.Get())) {
    return nullptr;
  }
  RemoveLeftovers(home.Get());
  const QByteArray name = kRunPrefix + RandomDigits();
  if (::mkdirat(home.Get(), name.constData(), 0700) != 0) {
    return nullptr;
  }
  FileDescriptor folder = OpenFolderAt(home.Get(), name.constData());
  FileDescriptor lock = folder ? OpenLock(folder.Get(), O_CREAT | O_EXCL) : FileDescriptor();
  if (!lock || ::flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) {
    if (lock) {
      ::unlinkat(folder.Get(), kLockName, 0);
    }
    ::unlinkat(home.Get(), name.constData(), AT_REMOVEDIR);
    return nullptr;
  }
  const QByteArray path = base + '/' + kHomeName + '/' + name;
  return std::unique_ptr<PrivateFolder>(
      new PrivateFolder(std::move(home), path, name, std::move(folder), std::move(lock)));
}

std::unique_ptr<PrivateFolder> PrivateFolder::Make(const std::vector<QByteArray>& homes,
                                                   const QByteArray& shared) {
  for (const QByteArray& base : homes) {
    if (!base.isEmpty()) {
      if (auto made = MakeIn(base)) {
        return made;
      }
    }
  }
  QByteArray path = shared + "/tessaview-XXXXXX";
  if (::mkdtemp(path.data()) != nullptr) {
    FileDescriptor folder = OpenFolderAt(AT_FDCWD, path.constData());
    FileDescriptor lock = folder ? OpenLock(folder.Get(), O_CREAT | O_EXCL) : FileDescriptor();
    if (lock && IsOurs(folder.Get(), 077)) {
      return std::unique_ptr<PrivateFolder>(new PrivateFolder(FileDescriptor(), path, QByteArray(),
                                                              std::move(folder), std::move(lock)));
    }
  }
  throw StepFailure("no folder for temporary files can be made in " +
                    PlainLine(std::string_view(shared.constData())) + ": " +
                    SystemErrorText(errno));
}

std::unique_ptr<PrivateFolder> PrivateFolder::MakeInUsualPlace() {
  const QByteArray home = Variable("HOME");
  QByteArray cache = Variable("XDG_CACHE_HOME");
  if (cache.isEmpty() && !home.isEmpty()) {
    cache = home + "/.cache";
  }
  if (!cache.isEmpty()) {
    ::mkdir(cache.constData(), 0700);
  }
  const QByteArray shared = Variable("TMPDIR");
  return Make({Variable("XDG_RUNTIME_DIR"), cache},
              shared.isEmpty() ? QByteArrayLiteral("/tmp") : shared);
}

PrivateFolder::~PrivateFolder() {
  RemoveOwnFiles(folder_.Get(), lock_.Get(), false);
  if (home_) {
    ::unlinkat(home_.Get(), name_.constData(), AT_REMOVEDIR);
  } else {
    ::rmdir(path_.constData());
  }
}

void PrivateFolder::Register(const QByteArray& name) {
  const QByteArray entry = name + '\0';
  struct stat status {};
  const bool isName = !name.isEmpty() && !name.contains('/') && !name.contains('\0');
  if (!isName || ::fstat(lock_.Get(), &status) != 0 ||
      !WriteAllAt(lock_.Get(),
                  ByteSpan(reinterpret_cast<const std::uint8_t*>(entry.constData()),
                           static_cast<std::size_t>(entry.size())),
                  static_cast<std::uint64_t>(status.st_size))) {
    throw StepFailure("the name of a temporary file cannot be kept");
  }
}

}  // namespace tessa
