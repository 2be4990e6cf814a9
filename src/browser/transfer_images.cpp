#include "browser/transfer_images.h"

#include <fcntl.h>

#include <cerrno>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"
#include "sound/embed_sound.h"
#include "sound/sound_note.h"

namespace tessa {
namespace {

QByteArray NameOf(const QString& path) {
  return PathToBytes(FileNameOf(path));
}

/// The wave that can go into the image for its sound file, and the header for it; false when the
/// sound has to stay a file.
bool MakeWave(const QString& image, const QString& sound, TransferPlan& plan) {
  Problems unused;
  const auto file = RandomFile::Open(image, unused);
  if (!file) {
    return false;
  }
  const SitHeader header = ReadSitHeader(file->ReadAt(0, kSitHeaderSize), unused);
  if (FindNoImage(unused) != nullptr || !WhyNotEmbed(header, file->Size()).empty()) {
    return false;
  }
  NoteWave wave = ReadSideSound(sound, FixedSoundRate(VersionInMiddle(header)), EmptySound::kLeave);
  if (!wave.IsWhole()) {
    return false;
  }
  const auto record = RecordWithWave(header, file->Size() + 1);
  plan.Record.assign(record.begin(), record.end());
  plan.Wave = std::move(wave.File);
  return true;
}

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

StepFailure AboutSound(const QString& sound, const StepFailure& reason) {
  return StepFailure("its sound file " + PlainUtf8(FileNameOf(sound)) + ": " + reason.what());
}

}  // namespace

FolderSounds& ImageTransfer::SoundsOf(const QString& source) {
  auto& sounds = sounds_[FolderOfPath(source)];
  if (!sounds) {
    sounds = std::make_shared<FolderSounds>(FolderOfPath(source));
  }
  return *sounds;
}

TransferPlan ImageTransfer::Plan(const QString& source) {
  TransferPlan plan;
  plan.Source = source;
  plan.ImageIsThere = folder_.Find(NameOf(source)).has_value();
  plan.ImageIsOurs = written_.contains(NameOf(source));
  plan.Sound = SoundsOf(source).Existing(source);
  if (!plan.Sound.isEmpty()) {
    PlanSound(plan);
  }
  return plan;
}

void ImageTransfer::PlanSound(TransferPlan& plan) {
  plan.SoundIsEmpty = options_.EmbedSounds && FileSize(plan.Sound) == 0;
  if (plan.SoundIsEmpty || (options_.EmbedSounds && MakeWave(plan.Source, plan.Sound, plan))) {
    return;
  }
  const QByteArray name = NameOf(plan.Sound);
  const auto there = folder_.Find(name);
  if (!there) {
    return;
  }
  try {
    const SourceFile sound = OpenSource(plan.Sound);
    // Many images may name one large sound: what this run brought is not read again.
    const bool isKnown =
        soundsBrought_.contains(plan.Sound) && there->st_size == sound.Status.st_size;
    plan.SoundIsSame = isKnown || HasSameBytes(sound, folder_, name);
  } catch (const StepFailure&) {
    // It cannot be read: then it is not the same, and bringing it tells why.
  }
  plan.SoundIsThere = !plan.SoundIsSame;
  plan.SoundIsOurs = plan.SoundIsThere && written_.contains(name);
}

void ImageTransfer::Bring(const TransferPlan& plan, Overwrite overwrite) {
  if (overwrite == Overwrite::kReplace) {
    folder_.CheckReplaceable(NameOf(plan.Source));
    if (plan.SoundIsThere) {
      folder_.CheckReplaceable(NameOf(plan.Sound));
    }
  }
  if (options_.Move) {
    CheckMayLeave(plan.Source);
  }
  if (!Rename(plan, overwrite)) {
    Copy(plan, overwrite);
  }
  written_.insert(NameOf(plan.Source));
  if (!plan.Sound.isEmpty() && plan.Wave.empty() && !plan.SoundIsEmpty) {
    written_.insert(NameOf(plan.Sound));
    soundsBrought_.insert(plan.Sound);
  }
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
  const QByteArray soundName = NameOf(sound);
  const bool isLast =
      !sound.isEmpty() && !SoundsOf(plan.Source).IsNamedByOthers(sound, plan.Source);
  std::optional<SourceFile> openSound;
  std::optional<StagedFile> copy;
  bool linked = false;
  if (!sound.isEmpty()) {
    try {
      openSound = OpenSource(sound);
      if (!plan.SoundIsSame) {
        const Overwrite how = plan.SoundIsThere ? overwrite : Overwrite::kRefuse;
        // A sound that stays behind as well must not be one file under two names.
        linked = isLast && !IsLink(sound) && LinkInto(sound, folder_, soundName, how);
        if (!linked) {
          copy.emplace(*openSound, folder_);
          copy->Sync();
          copy->GiveName(soundName, how);
        }
      }
    } catch (const StepFailure& reason) {
      throw AboutSound(sound, reason);
    }
  }
  const auto takeSoundBack = [&] {
    if (plan.SoundIsThere) {
      return;  // What was there before is gone; the source's own is where it was.
    }
    if (copy) {
      copy->TakeBack(soundName);
    } else if (linked) {
      ::unlinkat(folder_.Descriptor(), soundName.constData(), 0);
    }
  };
  try {
    if (!RenameInto(plan.Source, folder_, NameOf(plan.Source),
                    plan.ImageIsThere ? overwrite : Overwrite::kRefuse)) {
      takeSoundBack();
      return false;
    }
  } catch (const StepFailure&) {
    takeSoundBack();
    throw;
  }
  copied_ = true;
  ClearReadOnly(folder_, NameOf(plan.Source));
  SoundsOf(plan.Source).ImageLeft(plan.Source);
  if (!sound.isEmpty()) {
    ClearReadOnly(folder_, soundName);
    if (isLast) {
      try {
        RemoveUnchanged(sound, openSound->Status);
      } catch (const StepFailure&) {
        // It is in both folders now: nothing is lost.
      }
    }
  }
  return true;
}

void ImageTransfer::Copy(const TransferPlan& plan, Overwrite overwrite) {
  const SourceFile source = OpenSource(plan.Source);
  StagedFile image(source, folder_);
  if (!plan.Wave.empty()) {
    image.Change(plan.Record, plan.Wave);
  }
  const bool soundMustCome = options_.Move || options_.SoundMustCome;
  struct stat soundStatus {};
  std::optional<StagedFile> sound;
  if (!plan.Sound.isEmpty() && !plan.SoundIsEmpty) {
    try {
      const SourceFile from = OpenSource(plan.Sound);
      soundStatus = from.Status;
      if (plan.Wave.empty() && !plan.SoundIsSame) {
        sound.emplace(from, folder_);
        sound->GiveName(NameOf(plan.Sound), plan.SoundIsThere ? overwrite : Overwrite::kRefuse);
      }
    } catch (const StepFailure& reason) {
      if (soundMustCome) {
        throw AboutSound(plan.Sound, reason);
      }
      sound.reset();
    }
  }
  try {
    image.GiveName(NameOf(plan.Source), plan.ImageIsThere ? overwrite : Overwrite::kRefuse);
  } catch (const StepFailure&) {
    if (sound && !plan.SoundIsThere) {
      sound->TakeBack(NameOf(plan.Sound));
    }
    throw;
  }
  copied_ = true;
  if (plan.SoundIsEmpty) {
    // Embedding removes a sound file without a byte in it.
    static_cast<void>(IsSoundFile(plan.Sound, EmptySound::kRemove));
  }
  if (options_.Move) {
    waiting_.push_back(
        {plan.Source, source.Status, plan.SoundIsEmpty ? QString() : plan.Sound, soundStatus});
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
      faults.push_back({gone.Source, reason.what()});
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
  try {
    RemoveUnchanged(gone.Source, gone.Status);
  } catch (const StepFailure& reason) {
    faults.push_back({gone.Source, reason.what()});
    return;
  }
  FolderSounds& sounds = SoundsOf(gone.Source);
  const bool isLast = !gone.Sound.isEmpty() && !sounds.IsNamedByOthers(gone.Sound, gone.Source);
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
