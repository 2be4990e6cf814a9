#include "sound/convert_sound.h"

#include <QFile>

#include "core/steps.h"

namespace tessa {
namespace {

/// Runs `step`, which may throw, and keeps the reason when it does.
template <typename Step>
bool Try(Step&& step, Problems& faults) {
  try {
    step();
    return true;
  } catch (const StepFailure& failure) {
    faults.push_back({ProblemKind::kUnreadable, 0, "Sound", failure.what(), false});
    return false;
  }
}

bool WriteWaveFile(const NoteWave& wave, bool exact, const QString& path, Problems& faults) {
  faults.insert(faults.end(), wave.Faults.begin(), wave.Faults.end());
  QFile::remove(path);
  if (!wave.IsWhole()) {
    return false;
  }
  return Try(
      [&] {
        Bytes content = wave.File;
        if (!exact) {
          content.insert(content.end(), wave.File.end() - 2, wave.File.end());
        }
        WriteWholeFile(path, content, Overwrite::kReplace);
      },
      faults);
}

}  // namespace

QString TileWavePath(ApplicationFolder& folder) {
  return folder.TemporaryFile(QStringLiteral("TESSAVIEW.WAV"));
}

QString EmbeddedTileWavePath(ApplicationFolder& folder) {
  return folder.TemporaryFile(QStringLiteral("TESSASPEC.WAV"));
}

SitHeader HeaderOf(const QString& imagePath) {
  Problems unused;
  const auto file = RandomFile::Open(imagePath, unused);
  return file ? ReadSitHeader(file->ReadAt(0, kSitHeaderSize), unused) : SitHeader{};
}

bool OpenWave(const NoteWave& wave, bool exact, const std::function<QString()>& target,
              MediaDevice& device, Problems& faults) {
  // A device that still had the former wave open could not be given this one under the same name.
  Problems unused;
  Try([&] { device.Give(MediaCommand::kClose); }, unused);
  QString path;
  if (!Try([&] { path = target(); }, faults) || !WriteWaveFile(wave, exact, path, faults)) {
    return false;
  }
  if (OpenOnDevice(path, device)) {
    return true;
  }
  QFile::remove(path);
  faults.push_back(
      {ProblemKind::kUnsupported, 0, "Sound", "the sound cannot be opened for playing", false});
  return false;
}

bool CreateWave(const QString& sourcePath, RateOverride rateOverride, ApplicationFolder& folder,
                Problems& faults) {
  const NoteWave wave = ReadSideSound(sourcePath, rateOverride, EmptySound::kRemove);
  QString path;
  return Try([&] { path = TileWavePath(folder); }, faults) &&
         WriteWaveFile(wave, true, path, faults);
}

bool ConvertSidecarSound(const QString& soundPath, const QString& imagePath,
                         ApplicationFolder& folder, MediaDevice& device, Problems& faults) {
  const RateOverride rate = FixedSoundRate(VersionInMiddle(HeaderOf(imagePath)));
  return OpenWave(
      ReadSideSound(soundPath, rate, EmptySound::kRemove), true,
      [&] { return TileWavePath(folder); }, device, faults);
}

bool ExtractEmbeddedWave(std::uint64_t position, const QString& imagePath,
                         ApplicationFolder& folder, MediaDevice& device, Problems& faults) {
  return OpenWave(
      ReadEmbeddedWave(imagePath, position), false, [&] { return TileWavePath(folder); }, device,
      faults);
}

bool ConvertEmbeddedSound(const QString& imagePath, ApplicationFolder& folder, MediaDevice& device,
                          Problems& faults) {
  const RateOverride rate = FixedSoundRate(VersionInTail(HeaderOf(imagePath)));
  return OpenWave(
      ReadEmbeddedSound(imagePath, rate), true, [&] { return EmbeddedTileWavePath(folder); },
      device, faults);
}

void DeleteTempWave(ApplicationFolder& folder) {
  Problems unused;
  Try([&] { QFile::remove(TileWavePath(folder)); }, unused);
}

}  // namespace tessa
