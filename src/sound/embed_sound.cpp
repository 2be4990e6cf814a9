#include "sound/embed_sound.h"

#include <QFileInfo>
#include <array>
#include <limits>

#include "core/append_and_patch.h"
#include "core/steps.h"
#include "sound/convert_sound.h"

namespace tessa {
namespace {

/// An image that is to take a wave, as it is on the disk.
struct Target {
  RandomFile File;
  SitHeader Header;
};

Target OpenTarget(const QString& imagePath) {
  Problems faults;
  auto file = RandomFile::Open(imagePath, faults);
  if (!file) {
    throw StepFailure(faults.front().Text);
  }
  if (!IsSitName(imagePath)) {
    throw StepFailure("only SIT images take sounds");
  }
  Target target{std::move(*file), {}};
  target.Header = ReadSitHeader(target.File.ReadAt(0, kSitHeaderSize), faults);
  if (const Problem* const reason = FindNoImage(faults)) {
    throw StepFailure(reason->Text);
  }
  const std::string refusal = WhyNotEmbed(target.Header, target.File.Size());
  if (!refusal.empty()) {
    throw StepFailure(refusal);
  }
  return target;
}

Bytes RecordFor(const Target& target) {
  const auto record = RecordWithWave(target.Header, target.File.Size() + 1);
  return {record.begin(), record.end()};
}

}  // namespace

std::string WhyNotEmbed(const SitHeader& header, std::uint64_t fileSize) {
  if (AttachmentCode(header) >= 2) {
    return "the place for a sound in its header tells of its photograph, which would be lost";
  }
  if (HasEmbeddedSound(header, fileSize)) {
    return "the camera has put a sound into it already";
  }
  if (!StaysFindable(header)) {
    return "a sound put into an image of this version could not be found again";
  }
  if (fileSize < kSitAttachmentOffset) {
    return "the image is cut, so there is no place behind it";
  }
  if (fileSize >= kHighestWavePosition) {
    return "the image is too long: its header could not hold the sound's position";
  }
  return {};
}

SitHeader HeaderForEmbedding(const QString& imagePath) {
  return OpenTarget(imagePath).Header;
}

NoteWave WaveForImage(const QString& soundPath, const SitHeader& header) {
  NoteWave wave = ReadAnySound(soundPath, FixedSoundRate(VersionInMiddle(header)));
  if (!wave.IsWhole()) {
    throw StepFailure(wave.Faults.front().Text);
  }
  return wave;
}

Bytes ImageWithWave(const QString& imagePath, ByteSpan wave) {
  const Target target = OpenTarget(imagePath);
  Bytes image = target.File.ReadAt(0, std::numeric_limits<std::uint64_t>::max());
  if (image.size() < target.File.Size()) {
    throw StepFailure("the image cannot be read to its end");
  }
  const Bytes record = RecordFor(target);
  std::copy(record.begin(), record.end(), image.begin());
  image.insert(image.end(), wave.begin(), wave.end());
  return image;
}

SitHeader AppendWave(const QString& imagePath, ByteSpan wave, const OpenImage* opened) {
  const Target target = OpenTarget(imagePath);
  const bool isAsOpened = opened == nullptr ||
                          (static_cast<std::int64_t>(target.File.Size()) == opened->SitFileLength &&
                           target.Header.Record == opened->SitHeader.Record);
  const auto stamp = target.File.Stamp();
  if (!stamp || !isAsOpened) {
    throw StepFailure("the image was changed since it was opened");
  }
  const std::array<BytePatch, 1> patches = {{{0, RecordFor(target)}}};
  AppendAndPatch(imagePath, *stamp, wave, patches);
  Problems unused;
  return ReadSitHeader(patches[0].Content, unused);
}

void EmbedSound(const QString& imagePath, const QString& soundPath, ApplicationFolder& folder) {
  const SitHeader header = HeaderOf(imagePath);
  Problems faults;
  if (!CreateWave(soundPath, FixedSoundRate(VersionInMiddle(header)), folder, faults)) {
    throw StepFailure(faults.empty() ? "the sound cannot be converted" : faults.front().Text);
  }
  const auto wave = ReadFileStart(TileWavePath(folder), kLargestSound * 2, faults);
  if (!wave) {
    throw StepFailure(faults.back().Text);
  }
  AppendWave(imagePath, wave->Data);
}

void EmbedIntoOpenImage(OpenImage& image) {
  if (!image.CanEmbedSound) {
    throw StepFailure("this image takes no sound");
  }
  // Converted anew: the temporary wave may have been replaced by that of a tile.
  const NoteWave wave = WaveForImage(image.SoundFile, image.SitHeader);
  const SitHeader header = AppendWave(image.CurrentFilePath, wave.File, &image);
  image.SitHeader = header;
  image.SoundFile = image.SoundTempFile;
  image.CanEmbedSound = false;
  image.SitFileLength += static_cast<std::int64_t>(wave.File.size());
}

}  // namespace tessa
