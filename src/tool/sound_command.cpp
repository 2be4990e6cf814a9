#include "tool/sound_command.h"

#include <QFileInfo>
#include <QSet>
#include <cstdio>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "sound/embed_sound.h"
#include "sound/sound_note.h"
#include "tool/streams.h"

namespace tessa {
namespace {

/// The note of an image as a wave; throws StepFailure when there is nothing to be heard.
NoteWave NoteOf(const QString& path, const SoundNote& note) {
  Problems faults;
  if (!ReadFileStart(path, 0, faults)) {
    throw StepFailure(faults.front().Text);
  }
  if (!IsSitName(path)) {
    throw StepFailure("only SIT images have sound notes");
  }
  NoteWave wave = ReadNote(path, note);
  if (wave.File.empty()) {
    throw StepFailure(wave.Faults.empty() ? "the image has no sound note"
                                          : wave.Faults.front().Text);
  }
  return wave;
}

void WriteNote(const QString& path, const QString& target, Overwrite overwrite) {
  const SoundNote note = FindSoundNote(path, EmptySound::kLeave);
  const NoteWave wave = NoteOf(path, note);
  if (IsSameFile(path, target) || IsSameFile(note.Reference, target)) {
    throw StepFailure("the wave would overwrite the note itself");
  }
  WriteWholeFile(target, wave.File, overwrite);
  for (const Problem& fault : wave.Faults) {
    PrintError(path, fault.Text + "; what is there was written");
  }
}

int WrongCall(const char* reason) {
  std::fprintf(stderr, "tessatool: %s\n", reason);
  return kToolWrongCall;
}

QString PlaceOf(const SoundNote& note) {
  switch (note.Kind) {
    case SoundKind::kSideFile:
      return QStringLiteral("in the file ") + note.Reference;
    case SoundKind::kEmbeddedWave:
      return QStringLiteral("as a wave inside the file");
    default:
      return QStringLiteral("inside the file");
  }
}

}  // namespace

int RunSound(const SoundCall& call) {
  if (call.Out.empty() && call.Folder.empty()) {
    return WrongCall("sound needs -o or --folder");
  }
  if (!call.Out.empty() && call.Images.size() > 1) {
    return WrongCall("-o takes one image; use --folder for several");
  }
  const QString folder = FromArgument(call.Folder);
  if (!call.Folder.empty() && !MakeFolders(folder)) {
    PrintError(folder, "the folder cannot be made");
    return kToolFailed;
  }
  int status = kToolDone;
  QSet<QString> written;
  ProgressLine line(call.Images.size());
  std::size_t done = 0;
  StopAfterThisFile();
  for (const std::string& argument : call.Images) {
    if (Interrupted()) {
      return InterruptedStatus();
    }
    const QString path = FromArgument(argument);
    const QString target =
        call.Out.empty()
            ? JoinPath(folder, QFileInfo(path).completeBaseName() + QStringLiteral(".wav"))
            : FromArgument(call.Out);
    try {
      if (written.contains(target)) {
        throw StepFailure("another image of this call has a note of the same name");
      }
      WriteNote(path, target, call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
      written.insert(target);
    } catch (const StepFailure& failure) {
      line.Clear();
      PrintError(path, failure.what());
      status = kToolFailed;
    }
    line.Show(++done);
  }
  return status;
}

int RunEmbed(const EmbedCall& call) {
  if (call.Out.empty() && !call.InPlace) {
    return WrongCall("embed needs -o or --in-place");
  }
  const QString path = FromArgument(call.Image);
  const QString target = FromArgument(call.Out);
  if (!call.InPlace && !IsSitName(target)) {
    return WrongCall("the file that embed writes must end in .sit");
  }
  try {
    const SitHeader header = HeaderForEmbedding(path);
    const QString sound = call.Sound.empty() ? GetSoundName(path) : FromArgument(call.Sound);
    if (sound.isEmpty()) {
      throw StepFailure("no sound file belongs beside the image; name one with --sound");
    }
    if (!call.InPlace && (IsSameFile(path, target) || IsSameFile(sound, target))) {
      throw StepFailure("the result would overwrite what it is made of; see --in-place");
    }
    const NoteWave wave = WaveForImage(sound, header);
    if (call.InPlace) {
      AppendWave(path, wave.File);
    } else {
      WriteWholeFile(target, ImageWithWave(path, wave.File),
                     call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
    }
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

SoundReport ReportSound(Session& session) {
  const QString& path = session.Image.CurrentFilePath;
  const SoundNote note = FindSoundNote(path, EmptySound::kLeave);
  const NoteWave wave = ReadNote(path, note);
  session.Faults.insert(session.Faults.end(), wave.Faults.begin(), wave.Faults.end());
  SoundReport report;
  report.Fields = {{QStringLiteral("SoundKind"), static_cast<int>(note.Kind)},
                   {QStringLiteral("SoundSeconds"), wave.IsWhole() ? wave.Seconds : 0.0},
                   {QStringLiteral("SoundRate"), wave.IsWhole() ? static_cast<int>(wave.Rate) : 0}};
  if (note.Kind != SoundKind::kNone) {
    report.Words = (wave.IsWhole() ? LengthAndRate(wave) : QStringLiteral("cannot be heard")) +
                   QStringLiteral(", ") + PlaceOf(note);
  }
  return report;
}

}  // namespace tessa
