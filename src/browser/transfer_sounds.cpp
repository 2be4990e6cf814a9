#include "browser/transfer_sounds.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

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

}  // namespace

void FolderSounds::ReadNames() {
  namespace fs = std::filesystem;
  if (names_) {
    return;
  }
  names_.emplace();
  std::error_code error;
  fs::directory_iterator entry(PathToBytes(folder_).toStdString(), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const QString name =
        PathFromBytes(QByteArray::fromStdString(entry->path().filename().string()));
    (*names_)[name.toCaseFolded()] += name;
  }
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
  ReadNames();
  // Several that differ in case only: nobody can tell which is meant.
  const QStringList alike = names_->value(name.toCaseFolded());
  return alike.size() == 1 ? JoinPath(folder_, alike.first()) : QString();
}

QString FolderSounds::Existing(const QString& image) {
  const QString sound = IsSitName(image) ? Resolve(image) : QString();
  // An image is no sound, whatever another one calls it.
  const bool isSound = !sound.isEmpty() && !IsSitName(sound) && LeadsToPlainFile(sound);
  return isSound ? sound : QString();
}

void FolderSounds::ReadUsers() {
  if (users_) {
    return;
  }
  ReadNames();
  users_.emplace();
  for (const QStringList& alike : *names_) {
    for (const QString& name : alike) {
      const QString sound = Existing(JoinPath(folder_, name));
      if (!sound.isEmpty()) {
        (*users_)[sound].insert(name);
      }
    }
  }
}

bool FolderSounds::IsNamedByOthers(const QString& sound, const QString& image) {
  ReadUsers();
  const QSet<QString> users = users_->value(sound);
  return users.size() > (users.contains(FileNameOf(image)) ? 1 : 0);
}

void FolderSounds::ImageLeft(const QString& image) {
  if (users_) {
    for (QSet<QString>& users : *users_) {
      users.remove(FileNameOf(image));
    }
  }
}

QString SamePath(const QString& path) {
  return JoinPath(FolderOfPath(path), FileNameOf(path));
}

}  // namespace tessa
