#pragma once

#include <sys/types.h>

#include <QHash>
#include <QSet>
#include <QString>
#include <map>
#include <utility>

#include "browser/transfer_names.h"

namespace tessa {

/// The sound files that the SIT images of one folder name. Each image is read once, so that a run
/// over thousands of them stays quick; images that come or go meanwhile are seen.
class FolderSounds {
 public:
  explicit FolderSounds(const QString& folder);

  /// The path of a file of this folder, in the form that paths of sound files have.
  QString PathOf(const QString& file) const;
  /// The sound file that belongs to an image of this folder, as GetSoundName() gives it, if it is
  /// there and a plain file or leads to one; else empty.
  QString Existing(const QString& image);
  /// True when another image that is still here names the same sound file, or may do so: nobody
  /// knows what an image names that cannot be read.
  bool IsNamedByOthers(const QString& sound, const QString& image);
  /// The image is no longer in this folder.
  void ImageLeft(const QString& image);

 private:
  QString Resolve(const QString& image);
  void ReadImages();
  void ReadImage(const QString& name);
  void Forget(const QString& name);

  QString folder_;
  FolderNames names_;
  int imagesOfReading_ = 0;                // The reading of the names that the rest is of.
  QHash<QString, QString> soundOfImage_;   // The names in the headers, empty for none.
  QHash<QString, QSet<QString>> namedBy_;  // Images, by case-folded name of the sound.
  QSet<QString> unknown_;                  // Images that cannot be read.
};

/// One FolderSounds for each folder, whatever path leads to it.
class SoundFolders {
 public:
  FolderSounds& Of(const QString& image);

 private:
  std::map<std::pair<dev_t, ino_t>, FolderSounds> folders_;
};

}  // namespace tessa
