#include "sound/image_sound.h"

#include <QFile>

#include "sound/convert_sound.h"

namespace tessa {
namespace {

/// `mayEmbed`: the note is not a wave in the image yet.
bool OpenNote(const NoteWave& wave, bool exact, bool mayEmbed, Session& session,
              MediaDevice& device) {
  OpenImage& image = session.Image;
  SoundControls& controls = session.View.Sound;
  const QString name = image.CurrentFileName.chopped(3) + QStringLiteral("WAV");
  const bool opened = OpenWave(
      wave, exact,
      [&] {
        image.SoundTempFile = session.Folder.TemporaryFile(name);
        image.SoundFileTitle = name;
        return image.SoundTempFile;
      },
      device, session.Faults);
  if (!opened) {
    image.SoundTempFile.clear();
    image.SoundFileTitle.clear();
  }
  controls.PlayVisible = opened;
  controls.EmbedVisible = opened && mayEmbed && image.CanEmbedSound;
  controls.LengthText = opened ? LengthAndRate(wave) : QString();
  return opened;
}

}  // namespace

bool OpenSitEmbeddedSound(Session& session, MediaDevice& device) {
  const OpenImage& image = session.Image;
  const NoteWave wave = ReadEmbeddedSound(image.CurrentFilePath, FixedSoundRate(image.SitVersion));
  return OpenNote(wave, true, true, session, device);
}

bool OpenSidecarSound(const QString& soundPath, Session& session, MediaDevice& device) {
  const RateOverride rate = FixedSoundRate(VersionInMiddle(session.Image.SitHeader));
  const NoteWave wave = ReadSideSound(soundPath, rate, EmptySound::kRemove);
  return OpenNote(wave, true, true, session, device);
}

bool OpenEmbeddedWave(std::uint64_t position, Session& session, MediaDevice& device) {
  const NoteWave wave = ReadEmbeddedWave(session.Image.CurrentFilePath, position);
  return OpenNote(wave, false, false, session, device);
}

bool OpenImageSound(std::int64_t selector, Session& session, MediaDevice& device) {
  switch (selector) {
    case -1:
      return OpenSitEmbeddedSound(session, device);
    case 0:
      return OpenSidecarSound(session.Image.SoundFile, session, device);
    default:
      return OpenEmbeddedWave(static_cast<std::uint64_t>(selector), session, device);
  }
}

void OpenNoteOfImage(Session& session, MediaDevice& device) {
  const OpenImage& image = session.Image;
  session.View.Sound.PlayVisible = false;
  session.View.Sound.EmbedVisible = false;
  session.View.Sound.LengthText.clear();
  if (image.SoundFile.isEmpty() || FindNoImage(session.Faults) != nullptr) {
    return;
  }
  if (image.SoundEmbedded) {
    OpenImageSound(-1, session, device);
  } else if (!NamesWave(image.SitHeader)) {
    OpenImageSound(0, session, device);
  } else if (const auto position = WavePosition(image.SitHeader)) {
    OpenImageSound(static_cast<std::int64_t>(*position), session, device);
  } else {
    OpenEmbeddedWave(0, session, device);  // No position: tells so.
  }
}

void CloseNoteOfImage(Session& session, MediaDevice& device) {
  OpenImage& image = session.Image;
  StepLog steps;
  if (device.LastCommand() == MediaCommand::kPlay) {
    steps.Run("stop note", [&] { device.Give(MediaCommand::kStop); });
  }
  steps.Run("close note", [&] { device.Give(MediaCommand::kClose); });
  if (!image.SoundTempFile.isEmpty()) {
    QFile::remove(image.SoundTempFile);
    image.SoundTempFile.clear();
    image.SoundFileTitle.clear();
  }
}

}  // namespace tessa
