#include "browser/transfer_images.h"

#include <fcntl.h>

#include <cerrno>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"
#include "sound/sound_note.h"

namespace tessa {
namespace {

/// Removing a name needs the right to write to its folder.
void CheckMayLeave(const QString& source) {
  if (::faccessat(AT_FDCWD, PathToBytes(FolderOfPath(source)).constData(), W_OK | X_OK,
                  AT_EACCESS) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
}

bool IsLink(const QString& path) {
  struct stat status {};
  return ::lstat(PathToBytes(path).constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

void RemoveName(const QString& path) {
  if (::unlink(PathToBytes(path).constData()) != 0 && errno != ENOENT) {
    throw StepFailure(SystemErrorText(errno));
  }
}

/// Removes the name when the file is still what was copied.
void RemoveUnchanged(const QString& path, const struct stat& copied) {
  struct stat now {};
  if (::stat(PathToBytes(path).constData(), &now) == 0 && !IsUnchanged(copied, now)) {
    throw StepFailure("it was changed since it was copied, so it stays");
  }
  RemoveName(path);
}

/// A wave was made of what was there when the plan was made.
void CheckPlanned(const struct stat& planned, const SourceFile& now) {
  if (!IsUnchanged(planned, now.Status)) {
    throw StepFailure("it was changed just now");
  }
}

StepFailure AboutSound(const QString& sound, const StepFailure& reason) {
  return StepFailure("its sound file " + PlainUtf8(FileNameOf(sound)) + ": " + reason.what());
}

}  // namespace

ImageTransfer::ImageTransfer(const QString& targetFolder, TransferOptions options)
    : folder_(targetFolder),
      options_(options),
      targetNames_("/proc/self/fd/" + QByteArray::number(folder_.Descriptor())) {}

void ImageTransfer::Bring(const TransferPlan& plan, Overwrite overwrite) {
  folder_.CheckWritable();
  if (plan.SoundIsUnclear) {
    throw AboutSound(plan.Sound, StepFailure("several files in the target folder differ from that "
                                             "name in capital letters only"));
  }
  if (overwrite == Overwrite::kReplace) {
    folder_.CheckReplaceable(plan.Name);
    if (plan.SoundIsThere) {
      try {
        folder_.CheckReplaceable(plan.SoundName);
      } catch (const StepFailure& reason) {
        throw AboutSound(plan.Sound, reason);
      }
    }
  }
  if (options_.Move) {
    CheckMayLeave(plan.Source);
  }
  if (!Rename(plan, overwrite)) {
    Copy(plan, overwrite);
  }
  Remember(plan.Name);
}

void ImageTransfer::Try(const TransferPlan& plan) const {
  StagedFile(OpenSource(plan.Source), folder_);
}

bool ImageTransfer::Rename(const TransferPlan& plan, Overwrite overwrite) {
  if (!options_.Move || !plan.Wave.empty() || plan.SoundIsEmpty || IsLink(plan.Source) ||
      !folder_.IsOnDevice(OpenSource(plan.Source).Status)) {
    return false;
  }
  const QString& sound = plan.Sound;
  const bool isLast =
      !sound.isEmpty() && !sounds_.Of(plan.Source).IsNamedByOthers(sound, plan.Source);
  std::optional<SourceFile> openSound;
  std::optional<StagedFile> copy;
  std::optional<ReplacedFile> old;  // Puts the old sound back when the image does not come.
  bool linked = false;
  if (!sound.isEmpty()) {
    try {
      openSound = OpenSource(sound);
      CheckSound(*openSound, plan);
      if (!plan.SoundIsSame) {
        const Overwrite how = plan.SoundIsThere ? overwrite : Overwrite::kRefuse;
        if (how == Overwrite::kReplace) {
          old.emplace(folder_, plan.SoundName);
        }
        // A sound that stays behind as well must not be one file under two names.
        linked = isLast && !IsLink(sound) && LinkInto(sound, folder_, plan.SoundName, how);
        if (!linked) {
          copy.emplace(*openSound, folder_);
          copy->Sync();
          copy->GiveName(plan.SoundName, how);
        }
      }
    } catch (const StepFailure& reason) {
      throw AboutSound(sound, reason);
    }
  }
  const auto takeSoundBack = [&] {
    if (old) {
      old.reset();
    } else if (copy) {
      copy->TakeBack(plan.SoundName);
    } else if (linked) {
      ::unlinkat(folder_.Descriptor(), plan.SoundName.constData(), 0);
    }
  };
  try {
    if (!RenameInto(plan.Source, folder_, plan.Name,
                    plan.ImageIsThere ? overwrite : Overwrite::kRefuse)) {
      takeSoundBack();
      return false;
    }
  } catch (const StepFailure&) {
    takeSoundBack();
    throw;
  }
  copied_ = true;
  if (old) {
    old->LetGo();
  }
  ClearReadOnly(folder_, plan.Name);
  sounds_.Of(plan.Source).ImageLeft(plan.Source);
  if (!sound.isEmpty()) {
    ClearReadOnly(folder_, plan.SoundName);
    if (isLast) {
      try {
        RemoveUnchanged(sound, openSound->Status);
      } catch (const StepFailure&) {
        // It is in both folders now: nothing is lost.
      }
    }
    RememberSound(plan, openSound->Status);
  }
  return true;
}

void ImageTransfer::Copy(const TransferPlan& plan, Overwrite overwrite) {
  const SourceFile source = OpenSource(plan.Source);
  StagedFile image(source, folder_);
  if (!plan.Wave.empty()) {
    CheckPlanned(plan.Status, source);
    image.Change(plan.Record, plan.Wave);
  }
  const bool soundMustCome = options_.Move || options_.SoundMustCome;
  LeavingFile leaving;
  std::optional<StagedFile> sound;
  std::optional<ReplacedFile> old;  // Puts the old sound back when the image does not come.
  bool soundCame = false;
  if (!plan.Sound.isEmpty() && !plan.SoundIsEmpty) {
    try {
      const SourceFile from = OpenSource(plan.Sound);
      leaving.Sound = plan.Sound;
      leaving.SoundStatus = from.Status;
      CheckSound(from, plan);
      if (!plan.Wave.empty()) {
        CheckPlanned(plan.SoundStatus, from);
      } else if (!plan.SoundIsSame) {
        const Overwrite how = plan.SoundIsThere ? overwrite : Overwrite::kRefuse;
        sound.emplace(from, folder_);
        if (how == Overwrite::kReplace) {
          old.emplace(folder_, plan.SoundName);
        }
        sound->GiveName(plan.SoundName, how);
      }
      soundCame = plan.Wave.empty();
    } catch (const StepFailure& reason) {
      if (soundMustCome) {
        throw AboutSound(plan.Sound, reason);
      }
      sound.reset();
      old.reset();
    }
  }
  try {
    image.GiveName(plan.Name, plan.ImageIsThere ? overwrite : Overwrite::kRefuse);
  } catch (const StepFailure&) {
    if (sound && !old) {
      sound->TakeBack(plan.SoundName);
    }
    throw;
  }
  copied_ = true;
  if (old) {
    old->LetGo();
  }
  if (plan.SoundIsEmpty) {
    // Embedding removes a sound file without a byte in it.
    static_cast<void>(IsSoundFile(plan.Sound, EmptySound::kRemove));
  }
  if (soundCame) {
    RememberSound(plan, leaving.SoundStatus);
  }
  if (options_.Move) {
    leaving.Source = plan.Source;
    leaving.Status = source.Status;
    leaving.Copy = image.Release(plan.Name);
    if (soundCame) {
      leaving.SoundCopy =
          sound ? sound->Release(plan.SoundName) : OpenPlaced(folder_, plan.SoundName);
    }
    waiting_.push_back(std::move(leaving));
  }
}

std::vector<TransferFault> ImageTransfer::Finish() {
  std::vector<TransferFault> faults;
  const std::vector<LeavingFile> waiting = std::exchange(waiting_, {});
  if (!std::exchange(copied_, false)) {
    return faults;
  }
  try {
    folder_.Sync();
  } catch (const StepFailure& reason) {
    for (const LeavingFile& gone : waiting) {
      faults.push_back({gone.Source, std::string(reason.what()) + "; the source stays"});
    }
    if (faults.empty()) {
      faults.push_back({QString(), reason.what()});
    }
    return faults;
  }
  for (const LeavingFile& gone : waiting) {
    LetGo(gone, faults);
  }
  return faults;
}

void ImageTransfer::LetGo(const LeavingFile& gone, std::vector<TransferFault>& faults) {
  const auto fault = [&](const std::string& reason) { faults.push_back({gone.Source, reason}); };
  FolderSounds& sounds = sounds_.Of(gone.Source);
  const bool isLast = !gone.Sound.isEmpty() && !sounds.IsNamedByOthers(gone.Sound, gone.Source);
  if (!IsStillThere(folder_, gone.Copy)) {
    return fault("its copy was removed or changed by another program; the source stays");
  }
  if (gone.SoundCopy && !IsStillThere(folder_, *gone.SoundCopy)) {
    return fault("its sound file " + PlainUtf8(FileNameOf(gone.Sound)) +
                 ": the copy was removed or changed by another program; the source stays");
  }
  try {
    RemoveUnchanged(gone.Source, gone.Status);
  } catch (const StepFailure& reason) {
    return fault(std::string("it is in both folders now: ") + reason.what());
  }
  sounds.ImageLeft(gone.Source);
  if (isLast) {
    try {
      RemoveUnchanged(gone.Sound, gone.SoundStatus);
    } catch (const StepFailure&) {
      // It is in the target folder as well: nothing is lost.
    }
  }
}

QString DeleteImage(const QString& path, FolderSounds& sounds) {
  struct stat status {};
  if (::lstat(PathToBytes(path).constData(), &status) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
  if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode)) {
    throw StepFailure(S_ISDIR(status.st_mode) ? "it is a folder, not a file"
                                              : "it is no plain file");
  }
  const QString sound = sounds.Existing(path);
  const bool goes = !sound.isEmpty() && !sounds.IsNamedByOthers(sound, path) &&
                    (FileSize(sound) == 0 || IsSoundFile(sound, EmptySound::kLeave));
  // The image first: at no time is there an image whose sound went before it.
  if (::unlink(PathToBytes(path).constData()) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
  sounds.ImageLeft(path);
  if (goes) {
    try {
      RemoveName(sound);
    } catch (const StepFailure& reason) {
      throw AboutSound(sound, reason);
    }
  }
  return goes ? sound : QString();
}

}  // namespace tessa
