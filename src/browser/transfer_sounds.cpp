#include "browser/transfer_sounds.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "sound/sound_note.h"

namespace tessa {
namespace {

bool IsThere(const QString& path) {
  struct stat status {};
  return ::lstat(PathToBytes(path).constData(), &status) == 0;
}

bool LeadsToPlainFile(const QString& path) {
  struct stat status {};
  return ::stat(PathToBytes(path).constData(), &status) == 0 && S_ISREG(status.st_mode);
}

/// True for what may be an image although its header cannot be read.
bool IsUnreadable(const QString& path) {
  struct stat status {};
  if (::stat(PathToBytes(path).constData(), &status) != 0) {
    return errno != ENOENT;
  }
  if (!S_ISREG(status.st_mode)) {
    return false;
  }
  Problems unused;
  const auto file = RandomFile::Open(path, unused);
  return !file || file->ReadAt(0, kSitHeaderSize).size() <
                      std::min<std::uint64_t>(kSitHeaderSize, file->Size());
}

}  // namespace

FolderSounds::FolderSounds(const QString& folder) : folder_(folder), names_(PathToBytes(folder)) {}

QString FolderSounds::PathOf(const QString& file) const {
  return JoinPath(folder_, FileNameOf(file));
}

QString FolderSounds::Resolve(const QString& image) {
  const QString name = SideSoundNameOf(image);
  if (name.isEmpty()) {
    return {};
  }
  const QString exact = JoinPath(folder_, name);
  if (IsThere(exact)) {
    return exact;
  }
  names_.Refresh();
  // Several that differ in case only: nobody can tell which is meant.
  const QStringList alike = names_.Alike(name);
  return alike.size() == 1 ? JoinPath(folder_, alike.first()) : QString();
}

QString FolderSounds::Existing(const QString& image) {
  const QString sound = IsSitName(image) ? Resolve(image) : QString();
  // An image is no sound, whatever another one calls it.
  const bool isSound = !sound.isEmpty() && !IsSitName(sound) && LeadsToPlainFile(sound);
  return isSound ? sound : QString();
}

void FolderSounds::ReadImages() {
  const int reading = names_.Refresh();
  if (imagesOfReading_ == reading) {
    return;
  }
  imagesOfReading_ = reading;
  for (const QString& name : soundOfImage_.keys() + unknown_.values()) {
    if (!names_.Has(name)) {
      Forget(name);
    }
  }
  for (const QStringList& alike : names_.All()) {
    for (const QString& name : alike) {
      if (IsSitName(name) && !soundOfImage_.contains(name)) {
        ReadImage(name);
      }
    }
  }
}

void FolderSounds::ReadImage(const QString& name) {
  const QString path = JoinPath(folder_, name);
  const QString sound = SideSoundNameOf(path);
  if (sound.isEmpty() && IsUnreadable(path)) {
    unknown_.insert(name);
    return;
  }
  unknown_.remove(name);
  soundOfImage_[name] = sound;
  if (!sound.isEmpty()) {
    namedBy_[sound.toCaseFolded()].insert(name);
  }
}

bool FolderSounds::IsNamedByOthers(const QString& sound, const QString& image) {
  ReadImages();
  const QString own = FileNameOf(image);
  if (!names_.IsComplete() || unknown_.size() > (unknown_.contains(own) ? 1 : 0)) {
    return true;
  }
  const QString name = FileNameOf(sound);
  const QSet<QString> users = namedBy_.value(name.toCaseFolded());
  return std::any_of(users.begin(), users.end(), [&](const QString& user) {
    const QString wanted = soundOfImage_.value(user);
    // A name that is not there to the letter may mean any that is alike.
    return user != own && (wanted == name || !names_.Has(wanted));
  });
}

void FolderSounds::Forget(const QString& name) {
  unknown_.remove(name);
  const auto known = soundOfImage_.constFind(name);
  if (known != soundOfImage_.constEnd()) {
    namedBy_[known->toCaseFolded()].remove(name);
    soundOfImage_.erase(known);
  }
}

void FolderSounds::ImageLeft(const QString& image) {
  names_.Remove(FileNameOf(image));
  Forget(FileNameOf(image));
}

FolderSounds& SoundFolders::Of(const QString& image) {
  const QString folder = FolderOfPath(image);
  struct stat status {};
  // In a folder that cannot be asked nothing can be read either.
  const bool isKnown = ::stat(PathToBytes(folder).constData(), &status) == 0;
  const std::pair key =
      isKnown ? std::pair(status.st_dev, status.st_ino) : std::pair<dev_t, ino_t>(0, 0);
  return folders_.try_emplace(key, folder).first->second;
}

}  // namespace tessa
