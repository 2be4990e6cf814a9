#include "sound/sound_note.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFileInfo>
#include <algorithm>

#include "core/path_bytes.h"
#include "core/side_file.h"
#include "formats/ansi_text.h"
#include "formats/if_sound.h"
#include "formats/wave.h"

namespace tessa {
namespace {

constexpr std::uint64_t kRateAt = 8;

/// Deletes a plain file that still has no byte in it.
void RemoveEmptyFile(const QString& path) {
  const QByteArray name = PathToBytes(path);
  struct stat status {};
  if (::stat(name.constData(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0) {
    ::unlink(name.constData());
  }
}

/// Opens a file that holds or is a sound. What stands in the way costs no image.
std::optional<RandomFile> OpenSound(const QString& path, Problems& faults) {
  Problems own;
  auto file = RandomFile::Open(path, own);
  for (const Problem& fault : own) {
    faults.push_back({fault.Kind, 0, "SoundFile",
                      QFileInfo(path).fileName().toStdString() + ": " + fault.Text, false});
  }
  return file;
}

Problem TooLarge(std::uint64_t offset) {
  return {ProblemKind::kTooLarge, offset, "Sound", "the sound is larger than 64 megabytes", false};
}

/// Converts the camera's sound that lies at `offset`.
void ConvertIfSound(const RandomFile& file, std::uint64_t offset, RateOverride rate,
                    NoteWave& wave) {
  Bytes block = file.ReadAt(offset, kIfHeaderSize);
  if (block.size() == kIfHeaderSize && IsIfSound(block)) {
    Problems unused;
    const std::uint64_t needed =
        kIfHeaderSize + 2 * std::uint64_t{DecodeIfSound(block, offset, unused)->SampleCount};
    if (std::min(needed, file.Size() - offset) > kLargestSound) {
      wave.Faults.push_back(TooLarge(offset));
      return;
    }
    block = file.ReadAt(offset, needed);
  }
  const auto sound = DecodeIfSound(block, offset, wave.Faults);
  if (!sound) {
    return;
  }
  wave.Rate = rate.value_or(sound->Rate);
  if (CheckSoundRate(wave.Rate, offset + kRateAt, wave.Faults) && !sound->Samples.empty()) {
    wave.Seconds = static_cast<double>(sound->Samples.size()) / wave.Rate;
    wave.File = EncodeWave(wave.Rate, ToWaveSamples(sound->Samples));
  }
}

/// Takes the bytes from `offset` on as a wave.
void TakeWave(const RandomFile& file, std::uint64_t offset, NoteWave& wave) {
  if (offset >= file.Size() || !IsRiff(file.ReadAt(offset, 4))) {
    wave.Faults.push_back({ProblemKind::kBadValue, std::min(offset, file.Size()), "SoundName",
                           "no wave starts at the position that the header gives", false});
    return;
  }
  if (file.Size() - offset > kLargestSound) {
    wave.Faults.push_back(TooLarge(offset));
    return;
  }
  wave.File = file.ReadAt(offset, kLargestSound);
  if (const auto facts = ReadWave(wave.File, offset, wave.Faults)) {
    wave.Rate = facts->Rate;
    wave.Seconds = facts->Seconds();
    return;
  }
  // Other programs may play what is not PCM or cut inside its data; of the rest nothing is heard.
  const Problem& fault = wave.Faults.back();
  if (fault.Kind != ProblemKind::kUnsupported &&
      !(fault.Kind == ProblemKind::kTruncated && fault.Offset == file.Size())) {
    wave.File.clear();
  }
}

}  // namespace

bool IsSitName(const QString& path) {
  return PathToBytes(path).right(3).toUpper() == "SIT";  // Of bytes, ASCII letters alone.
}

QString SideSoundPath(const QString& imagePath, const SitHeader& header) {
  const QString name = QString::fromStdString(AnsiToUtf8(SideSoundName(header)));
  return name.isEmpty() ? name : FindSideFile(imagePath, name);
}

bool IsSoundFile(const QString& path, EmptySound empty) {
  Problems unused;
  const auto file = RandomFile::Open(path, unused);
  if (file && file->Size() == 0 && empty == EmptySound::kRemove) {
    RemoveEmptyFile(path);
  }
  return file && IsIfSound(file->ReadAt(0, 3));
}

QString SideSoundNameOf(const QString& imagePath) {
  Problems unused;
  const auto file = RandomFile::Open(imagePath, unused);
  if (!file) {
    return {};
  }
  const SitHeader header = ReadSitHeader(file->ReadAt(0, kSitHeaderSize), unused);
  const bool isWave = QString::fromStdString(header.SoundExt).toUpper() == QLatin1String("WAV");
  return isWave || !MayHaveSideSound(header, file->Size())
             ? QString()
             : QString::fromStdString(AnsiToUtf8(SideSoundName(header)));
}

QString GetSoundName(const QString& imagePath) {
  const QString name = SideSoundNameOf(imagePath);
  return name.isEmpty() ? name : FindSideFile(imagePath, name);
}

SoundNote FindSoundNote(const QString& imagePath, EmptySound empty) {
  SoundNote note;
  if (!IsSitName(imagePath)) {
    return note;
  }
  Problems headerFaults;
  const auto file = RandomFile::Open(imagePath, headerFaults);
  if (!file) {
    return note;
  }
  note.Header = ReadSitHeader(file->ReadAt(0, kSitHeaderSize), headerFaults);
  if (FindNoImage(headerFaults) != nullptr) {
    return note;
  }
  if (HasEmbeddedSound(note.Header, file->Size())) {
    note.Kind = SoundKind::kEmbeddedSound;
    note.Reference = QStringLiteral("SIT");
  } else if (SitVersionOf(note.Header) >= 4.0F || !NamesSound(note.Header)) {
    return note;
  } else if (NamesWave(note.Header)) {
    note.Kind = SoundKind::kEmbeddedWave;
    note.Reference = QString::fromStdString(AnsiToUtf8(note.Header.SoundName));
  } else {
    const QString path = SideSoundPath(imagePath, note.Header);
    if (path.isEmpty()) {
      note.Faults.push_back(
          {ProblemKind::kBadValue, kSoundNameAt, "SoundName",
           SideSoundName(note.Header).empty()
               ? "the header's name for a sound file is not a plain name"
               : "several sound files differ from the header's name in capital letters only",
           false});
    } else if (IsSoundFile(path, empty)) {
      note.Kind = SoundKind::kSideFile;
      note.Reference = path;
    } else if (OpenSound(path, note.Faults)) {
      note.Faults.push_back(
          {ProblemKind::kWrongKind, 0, "SoundFile",
           QFileInfo(path).fileName().toStdString() + " is no sound of the camera's kind", false});
    }
  }
  return note;
}

NoteWave ReadSideSound(const QString& soundPath, RateOverride rate, EmptySound empty) {
  NoteWave wave;
  if (const auto file = OpenSound(soundPath, wave.Faults)) {
    if (file->Size() == 0) {
      wave.Faults.push_back({ProblemKind::kUnreadable, 0, "SoundFile",
                             QFileInfo(soundPath).fileName().toStdString() + " is empty", false});
      if (empty == EmptySound::kRemove) {
        RemoveEmptyFile(soundPath);
      }
    } else {
      ConvertIfSound(*file, 0, rate, wave);
    }
  }
  return wave;
}

NoteWave ReadEmbeddedSound(const QString& imagePath, RateOverride rate) {
  NoteWave wave;
  if (const auto file = OpenSound(imagePath, wave.Faults)) {
    if (file->Size() <= kSitSoundOffset) {
      wave.Faults.push_back({ProblemKind::kTruncated, file->Size(), "Sound",
                             "the file ends before the sound it should carry", false});
    } else {
      ConvertIfSound(*file, kSitSoundOffset, rate, wave);
    }
  }
  return wave;
}

NoteWave ReadEmbeddedWave(const QString& imagePath, std::uint64_t position) {
  NoteWave wave;
  if (const auto file = OpenSound(imagePath, wave.Faults)) {
    if (position == 0) {
      wave.Faults.push_back({ProblemKind::kBadValue, kSoundNameAt, "SoundName",
                             "the header's position of a wave is no number", false});
    } else {
      TakeWave(*file, position - 1, wave);
    }
  }
  return wave;
}

NoteWave ReadAnySound(const QString& soundPath, RateOverride rate) {
  NoteWave wave;
  {
    const auto file = OpenSound(soundPath, wave.Faults);
    if (!file) {
      return wave;
    }
    if (IsRiff(file->ReadAt(0, 4))) {
      TakeWave(*file, 0, wave);
      return wave;
    }
  }
  return ReadSideSound(soundPath, rate, EmptySound::kLeave);
}

NoteWave ReadNote(const QString& imagePath, const SoundNote& note) {
  switch (note.Kind) {
    case SoundKind::kSideFile:
      return ReadSideSound(note.Reference, FixedSoundRate(VersionInMiddle(note.Header)),
                           EmptySound::kLeave);
    case SoundKind::kEmbeddedWave:
      return ReadEmbeddedWave(imagePath, WavePosition(note.Header).value_or(0));
    case SoundKind::kEmbeddedSound:
      return ReadEmbeddedSound(imagePath, FixedSoundRate(VersionInTail(note.Header)));
    case SoundKind::kNone:
      break;
  }
  NoteWave none;
  none.Faults = note.Faults;
  return none;
}

QString LengthAndRate(const NoteWave& wave) {
  return QStringLiteral("%1 s at %2 Hz").arg(wave.Seconds, 0, 'f', 1).arg(wave.Rate);
}

}  // namespace tessa
