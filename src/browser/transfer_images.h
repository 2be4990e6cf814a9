#pragma once

#include <sys/stat.h>

#include <QHash>
#include <QSet>
#include <QString>
#include <memory>
#include <string>
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
  QString Sound;              // The sound file that it names, if it is there.
  bool ImageIsThere = false;  // Something of the image's name stands in the target folder.
  bool SoundIsThere = false;  // A file of the sound's name does, with other bytes.
  bool ImageIsOurs = false;   // This run put the image there ...
  bool SoundIsOurs = false;   // ... or the sound.
  bool SoundIsSame = false;   // The sound is there already, byte for byte.
  bool SoundIsEmpty = false;  // It has no byte to embed: it goes, and the image comes without.
  Bytes Wave;                 // Goes into the image instead of the sound file beside it.
  Bytes Record;               // The header for it.
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
  ImageTransfer(const QString& targetFolder, TransferOptions options)
      : folder_(targetFolder), options_(options) {}

  const TargetFolder& Folder() const { return folder_; }

  /// Looks at an image without changing anything.
  TransferPlan Plan(const QString& source);
  /// Carries it out; what is there is replaced with kReplace alone. Throws StepFailure with the
  /// reason; source and target are then as they were.
  void Bring(const TransferPlan& plan, Overwrite overwrite);
  /// Tries the copying alone and leaves nothing. Throws as Bring() does.
  void Try(const TransferPlan& plan) const;
  /// True for a sound file that was brought with an image of it, though it has not been asked for.
  bool WentAlong(const QString& source) const { return soundsBrought_.contains(SamePath(source)); }
  /// Number of moved images whose sources are still to go.
  std::size_t Waiting() const { return waiting_.size(); }
  bool IsBatchFull() const { return waiting_.size() >= kBatch; }
  /// Waits for the disk and lets the sources of moved images go. To be called when the batch is
  /// full and at the end, also of a run that is broken off. Tells what stayed.
  std::vector<TransferFault> Finish();

 private:
  static constexpr std::size_t kBatch = 64;

  /// A source that is to go, and what it was when it was copied.
  struct LeavingFile {
    QString Source;
    struct stat Status {};
    QString Sound;
    struct stat SoundStatus {};
  };

  FolderSounds& SoundsOf(const QString& source);
  void PlanSound(TransferPlan& plan);
  bool Rename(const TransferPlan& plan, Overwrite overwrite);
  void Copy(const TransferPlan& plan, Overwrite overwrite);
  void LetGo(const LeavingFile& gone, std::vector<TransferFault>& faults);

  TargetFolder folder_;
  TransferOptions options_;
  QHash<QString, std::shared_ptr<FolderSounds>> sounds_;  // By source folder.
  QSet<QByteArray> written_;                              // Names in the target folder.
  QSet<QString> soundsBrought_;                           // Source paths.
  std::vector<LeavingFile> waiting_;
  bool copied_ = false;  // Something may not be on the disk yet.
};

/// Deletes an image and its sound, which stays while another image of the folder names it and when
/// it is no sound. Returns the path of the sound that went, if one did. Throws StepFailure with the
/// reason.
QString DeleteImage(const QString& path, FolderSounds& sounds);

}  // namespace tessa
