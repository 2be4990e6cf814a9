#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

namespace tessa {

/// The sound files that the SIT images of one folder name. The folder is read once and followed
/// from then on by what is told here, so that a run over thousands of images stays quick.
class FolderSounds {
 public:
  explicit FolderSounds(QString folder) : folder_(std::move(folder)) {}

  /// The sound file that belongs to an image of this folder, as GetSoundName() gives it, if it is
  /// there and a plain file or leads to one; else empty.
  QString Existing(const QString& image);
  /// True when another image that is still here names the same sound file.
  bool IsNamedByOthers(const QString& sound, const QString& image);
  /// The image is no longer in this folder.
  void ImageLeft(const QString& image);

 private:
  QString Resolve(const QString& image);
  void ReadNames();
  void ReadUsers();

  QString folder_;
  std::optional<QHash<QString, QStringList>> names_;    // By case-folded name.
  std::optional<QHash<QString, QSet<QString>>> users_;  // Names of the images, by sound file.
};

/// The path in the form that paths of sound files have.
QString SamePath(const QString& path);

}  // namespace tessa
