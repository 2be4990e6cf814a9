#pragma once

#include <sys/stat.h>

#include <QHash>
#include <QSet>
#include <QString>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "browser/transfer_sounds.h"
#include "core/transfer_files.h"
#include "formats/byte_writer.h"

namespace tessa {

/// How images go to another folder.
struct TransferOptions {
  bool Move = false;          // The sources go.
  bool EmbedSounds = false;   // Sound files become waves inside the images where that is possible.
  bool SoundMustCome = true;  // A copy without its sound is a failure; a move always is.
};

/// One image on its way and what would be in its place.
struct TransferPlan {
  QString Source;
  QByteArray Name;              // Of the image, in both folders.
  QString Sound;                // The sound file that it names, if it is there.
  QByteArray SoundName;         // Where the image would find it in the target folder.
  bool ImageIsThere = false;    // Something of the image's name stands in the target folder.
  bool SoundIsThere = false;    // A file of the sound's name does, with other bytes.
  bool ImageIsOurs = false;     // This run put the image there ...
  bool SoundIsOurs = false;     // ... or the sound.
  bool SoundIsSame = false;     // The sound is there already, byte for byte.
  bool SoundIsEmpty = false;    // It has no byte to embed: it goes, and the image comes without.
  bool SoundIsUnclear = false;  // Several there differ in case: the image would find none.
  Bytes Wave;                   // Goes into the image instead of the sound file beside it.
  Bytes Record;                 // The header for it.
  struct stat Status {};        // Of the image and of its sound when `Wave` was made.
  struct stat SoundStatus {};
};

/// A source that stays although its image is in the target folder.
struct TransferFault {
  QString Source;  // Empty: it is about the whole run.
  std::string Reason;
};

/// Brings images with their sounds into one folder, so that each stands whole in at least one place
/// with its sound whenever the process is ended. A move within one file system is a rename; other
/// moves delete their sources in batches, after the copies are on the disk.
class ImageTransfer {
 public:
  /// Throws StepFailure when there is no such folder.
  ImageTransfer(const QString& targetFolder, TransferOptions options);

  const TargetFolder& Folder() const { return folder_; }

  /// Looks at an image without changing anything.
  TransferPlan Plan(const QString& source);
  /// Carries it out; what is there is replaced with kReplace alone. Throws StepFailure with the
  /// reason; source and target are then as they were.
  void Bring(const TransferPlan& plan, Overwrite overwrite);
  /// Tries the copying alone and leaves nothing. Throws as Bring() does.
  void Try(const TransferPlan& plan) const;
  /// Where a sound file went with an image of it, before it was asked for; empty when it did not.
  QString WentAlong(const QString& source);
  /// Number of moved images whose sources are still to go.
  std::size_t Waiting() const { return waiting_.size(); }
  bool IsBatchFull() const { return waiting_.size() >= kBatch; }
  /// Waits for the disk and lets the sources of moved images go. To be called when the batch is
  /// full and at the end, also of a run that is broken off. Tells what stayed.
  std::vector<TransferFault> Finish();

 private:
  static constexpr std::size_t kBatch = 64;

  /// A source that is to go, what it was when it was copied, and its copy.
  struct LeavingFile {
    QString Source;
    struct stat Status {};
    PlacedFile Copy;
    QString Sound;
    struct stat SoundStatus {};
    std::optional<PlacedFile> SoundCopy;  // None when it is inside the image.
  };
  /// A sound file, what it was when it was brought, and what came of it.
  struct BroughtSound {
    struct stat Source {};
    QByteArray Name;
    struct stat Target {};
  };

  void PlanSound(TransferPlan& plan);
  bool HasSound(const SourceFile& sound, const TransferPlan& plan) const;
  void CheckSound(const SourceFile& sound, const TransferPlan& plan) const;
  bool IsOurs(const QByteArray& name) const;
  void Remember(const QByteArray& name);
  void RememberSound(const TransferPlan& plan, const struct stat& source);
  bool Rename(const TransferPlan& plan, Overwrite overwrite);
  void Copy(const TransferPlan& plan, Overwrite overwrite);
  void LetGo(const LeavingFile& gone, std::vector<TransferFault>& faults);

  TargetFolder folder_;
  TransferOptions options_;
  SoundFolders sounds_;
  FolderNames targetNames_;
  QSet<QByteArray> written_;                        // Names in the target folder ...
  std::set<std::pair<dev_t, ino_t>> writtenFiles_;  // ... and their files, whatever the case.
  QHash<QString, BroughtSound> soundsBrought_;      // By source path.
  std::vector<LeavingFile> waiting_;
  bool copied_ = false;  // Something may not be on the disk yet.
};

/// Deletes an image and its sound, which stays while another image of the folder names it and when
/// it is no sound. Returns the path of the sound that went, if one did. Throws StepFailure with the
/// reason.
QString DeleteImage(const QString& path, FolderSounds& sounds);

}  // namespace tessa
