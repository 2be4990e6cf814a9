#include "browser/transfer_images.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "sound/embed_sound.h"
#include "sound/sound_note.h"

namespace tessa {
namespace {

/// The wave that can go into the image for its sound file, and the header for it; false when the
/// sound has to stay a file.
bool MakeWave(const QString& image, const QString& sound, TransferPlan& plan) {
  try {
    plan.Status = OpenSource(image).Status;
    plan.SoundStatus = OpenSource(sound).Status;
  } catch (const StepFailure&) {
    return false;
  }
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

}  // namespace

TransferPlan ImageTransfer::Plan(const QString& source) {
  TransferPlan plan;
  plan.Source = source;
  plan.Name = PathToBytes(FileNameOf(source));
  plan.ImageIsThere = folder_.Find(plan.Name).has_value();
  plan.ImageIsOurs = IsOurs(plan.Name);
  plan.Sound = sounds_.Of(source).Existing(source);
  if (!plan.Sound.isEmpty()) {
    PlanSound(plan);
  }
  return plan;
}

void ImageTransfer::PlanSound(TransferPlan& plan) {
  plan.SoundName = PathToBytes(FileNameOf(plan.Sound));
  plan.SoundIsEmpty = options_.EmbedSounds && FileSize(plan.Sound) == 0;
  if (plan.SoundIsEmpty || (options_.EmbedSounds && MakeWave(plan.Source, plan.Sound, plan))) {
    return;
  }
  targetNames_.Refresh();
  QStringList alike = targetNames_.Alike(FileNameOf(plan.Sound));
  if (alike.isEmpty() && folder_.Find(plan.SoundName)) {
    alike += FileNameOf(plan.Sound);  // It came just now.
  }
  if (alike.isEmpty()) {
    return;
  }
  // There as here: the name as the image has it, else the only one that is alike.
  const QString wanted = SideSoundNameOf(plan.Source);
  plan.SoundIsUnclear = alike.size() > 1 && !alike.contains(wanted);
  if (plan.SoundIsUnclear) {
    return;
  }
  plan.SoundName = PathToBytes(alike.contains(wanted) ? wanted : alike.first());
  const auto there = folder_.Find(plan.SoundName);
  try {
    plan.SoundIsSame = there && HasSound(OpenSource(plan.Sound), plan);
  } catch (const StepFailure&) {
    // It cannot be read: then it is not the same, and bringing it tells why.
  }
  plan.SoundIsThere = there && !plan.SoundIsSame;
  plan.SoundIsOurs = plan.SoundIsThere && IsOurs(plan.SoundName);
}

bool ImageTransfer::HasSound(const SourceFile& sound, const TransferPlan& plan) const {
  // Many images may name one large sound: what this run brought is not read again.
  const auto known = soundsBrought_.constFind(plan.Sound);
  const auto there = folder_.Find(plan.SoundName);
  const bool isKnown = known != soundsBrought_.constEnd() && known->Name == plan.SoundName &&
                       there && IsUnchanged(known->Source, sound.Status) &&
                       IsUnchanged(known->Target, *there);
  return isKnown || HasSameBytes(sound, folder_, plan.SoundName);
}

/// Time may have passed since the plan was made.
void ImageTransfer::CheckSound(const SourceFile& sound, const TransferPlan& plan) const {
  if (plan.SoundIsSame && !HasSound(sound, plan)) {
    throw StepFailure("it or the file of its name in the target folder was changed just now");
  }
}

bool ImageTransfer::IsOurs(const QByteArray& name) const {
  const auto there = folder_.Find(name);
  return written_.contains(name) ||
         (there && writtenFiles_.count({there->st_dev, there->st_ino}) > 0);
}

void ImageTransfer::Remember(const QByteArray& name) {
  written_.insert(name);
  targetNames_.Add(PathFromBytes(name));
  if (const auto there = folder_.Find(name)) {
    writtenFiles_.insert({there->st_dev, there->st_ino});
  }
}

QString ImageTransfer::WentAlong(const QString& source) {
  const auto brought = soundsBrought_.constFind(sounds_.Of(source).PathOf(source));
  return brought == soundsBrought_.constEnd()
             ? QString()
             : JoinPath(folder_.Path(), PathFromBytes(brought->Name));
}

/// Notes a sound that is in the target folder now.
void ImageTransfer::RememberSound(const TransferPlan& plan, const struct stat& source) {
  Remember(plan.SoundName);
  if (const auto there = folder_.Find(plan.SoundName)) {
    soundsBrought_.insert(plan.Sound, {source, plan.SoundName, *there});
  }
}

}  // namespace tessa
