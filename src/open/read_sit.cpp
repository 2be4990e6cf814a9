#include <algorithm>

#include "core/file_access.h"
#include "core/side_file.h"
#include "formats/ansi_text.h"
#include "formats/sit_sound.h"
#include "open/still_readers.h"

namespace tessa {
namespace {

constexpr int kBorder = 3;  // Pixels at each edge that take no part in the extremes.
constexpr float kStartMinimum = 999.0F;
constexpr float kStartMaximum = -999.0F;

/// Extremes inside the border, over the pixels that the file has. A pixel outside the calibrated
/// range does not move the extreme on that side.
TemperaturePair FindSitExtremes(const Still& still, const RawRaster& raster,
                                const LinearCalibration& line) {
  const TemperaturePair& calibrated = still.CalibratedRange;
  TemperaturePair extremes{kStartMinimum, kStartMaximum};
  const auto width = static_cast<std::size_t>(raster.Width);
  const std::size_t inner = width - 2 * kBorder;
  for (int row = kBorder; row < raster.Height - kBorder; ++row) {
    const std::size_t start = static_cast<std::size_t>(row) * width + kBorder;
    if (start >= raster.Present) {
      break;
    }
    const std::size_t count = std::min(inner, raster.Present - start);
    // Degrees rise or fall steadily with the count, so two of them speak for the whole row unless
    // they leave the calibrated range.
    const CountExtremes counts = FindExtremes(std::span(raster.Counts).subspan(start, count));
    const float first = line.Degrees(counts.Low);
    const float second = line.Degrees(counts.High);
    const float low = std::min(first, second);
    const float high = std::max(first, second);
    if (low >= calibrated.Minimum && high <= calibrated.Maximum) {
      extremes.Minimum = std::min(extremes.Minimum, low);
      extremes.Maximum = std::max(extremes.Maximum, high);
      continue;
    }
    for (const float degrees : still.Grid.Row(row).subspan(kBorder, count)) {
      if (degrees > extremes.Maximum && degrees <= calibrated.Maximum) {
        extremes.Maximum = degrees;
      }
      if (degrees < extremes.Minimum && degrees >= calibrated.Minimum) {
        extremes.Minimum = degrees;
      }
    }
  }
  return extremes;
}

/// Where the image's sound note lies, from the header and the names in the image's folder alone.
SoundFacts FindSound(const SitHeader& header, std::uint64_t fileSize, const QString& path) {
  SoundFacts sound;
  sound.Embedded = HasEmbeddedSound(header, fileSize);
  if (sound.Embedded) {
    return sound;
  }
  sound.CanEmbed = IsWritable(path) && StaysFindable(header);
  sound.File = QString::fromStdString(AnsiToUtf8(SideSoundName(header)));
  if (!sound.File.isEmpty() && !NamesWave(header)) {
    sound.File = FindSideFile(path, sound.File);
    sound.IsBeside = !sound.File.isEmpty();
  }
  return sound;
}

}  // namespace

Still ReadSit(const QString& path) {
  Still still;
  still.Kind = KindSit;
  still.Extremes = {kStartMinimum, kStartMaximum};
  const auto file = ReadFileStart(path, kSitDecodeSize, still.Faults);
  if (!file) {
    still.Grid.Allocate(kSitWidth, kSitHeight);
    return still;
  }
  still.FileSize = file->Size;
  SitImage sit = DecodeSit(file->Data, file->Size);
  still.Faults.insert(still.Faults.end(), sit.Faults.begin(), sit.Faults.end());
  const SitHeader& header = sit.Header;
  TakeCameraHeader(header, still);
  still.Comment = FieldText(header.Comment);
  still.Memo = FieldText(header.Memo);

  const LinearCalibration line = LineOf(still);
  const std::size_t present = sit.Raster.Present;
  still.Grid.AllocateUnset(kSitWidth, kSitHeight);
  Calibrate(std::span(sit.Raster.Counts).first(present), line, still.Grid.Cells());
  std::ranges::fill(still.Grid.Cells().subspan(present), 0.0F);
  still.Extremes = FindSitExtremes(still, sit.Raster, line);

  still.Version = SitVersionOf(header);
  if (FindNoImage(still.Faults) == nullptr) {
    still.Sound = FindSound(header, still.FileSize, path);
  }
  still.PhotographPosition = VisiblePosition(header, sit.VisibleLength);
  still.Header = std::move(sit.Header);
  return still;
}

}  // namespace tessa
