#include <QDir>
#include <algorithm>

#include "core/date_time_text.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/side_file.h"
#include "formats/ansi_text.h"
#include "formats/sit_sound.h"
#include "open/load_steps.h"
#include "open/loaders.h"
#include "open/visible_image.h"
#include "view/range_control.h"

namespace tessa {
namespace {

constexpr int kBorder = 3;  // Pixels at each edge that take no part in the extremes.
constexpr float kStartMinimum = 999.0F;
constexpr float kStartMaximum = -999.0F;

/// Extremes inside the border, over the pixels that the file has. A pixel outside the calibrated
/// range does not move the extreme on that side.
TemperaturePair FindSitExtremes(const OpenImage& image, const RawRaster& raster,
                                const LinearCalibration& line) {
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
    if (low >= image.CalRangeMin && high <= image.CalRangeMax) {
      extremes.Minimum = std::min(extremes.Minimum, low);
      extremes.Maximum = std::max(extremes.Maximum, high);
      continue;
    }
    for (const float degrees : image.TempGrid.Row(row).subspan(kBorder, count)) {
      if (degrees > extremes.Maximum && degrees <= image.CalRangeMax) {
        extremes.Maximum = degrees;
      }
      if (degrees < extremes.Minimum && degrees >= image.CalRangeMin) {
        extremes.Minimum = degrees;
      }
    }
  }
  return extremes;
}

/// Name of the wave file that goes with the image.
QString WaveTitle(const OpenImage& image) {
  return image.CurrentFileName.chopped(std::min<qsizetype>(3, image.CurrentFileName.size())) +
         QStringLiteral("WAV");
}

/// Where the image's sound note lies, from the header and the names in the image's folder alone.
void FindSound(const std::uint64_t fileSize, const ApplicationFolder& folder, OpenImage& image) {
  const SitHeader& header = image.SitHeader;
  image.CanEmbedSound = IsWritable(image.CurrentFilePath) && StaysFindable(header);
  image.SoundEmbedded = HasEmbeddedSound(header, fileSize);
  if (image.SoundEmbedded) {
    image.CanEmbedSound = false;
    image.SoundFileTitle = WaveTitle(image);
    image.SoundFile = folder.Path() + QDir::separator() + image.SoundFileTitle;
    return;
  }
  const QString name = QString::fromStdString(AnsiToUtf8(SideSoundName(header)));
  if (name.isEmpty() || NamesWave(header)) {
    image.SoundFile = name;
    return;
  }
  image.SoundFile = FindSideFile(image.CurrentFilePath, name);
  if (!image.SoundFile.isEmpty()) {
    image.SoundFileTitle = WaveTitle(image);
  }
}

void TakeHeaderTexts(const SitHeader& header, OpenImage& image, ViewState& view) {
  image.ImageTime = TimeFromDigits(header.TimeText);
  image.ImageDate = DateFromDigits(header.DateText);
  view.Comment = FieldText(header.Comment);
  view.Memo = FieldText(header.Memo);
}

}  // namespace

void LoadSit(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  StepLog& steps = session.Steps;

  SitImage sit;
  std::uint64_t fileSize = 0;
  steps.Run("read SIT file", [&] {
    const auto file = ReadFileStart(image.CurrentFilePath, kSitDecodeSize, session.Faults);
    if (!file) {
      throw StepFailure(session.Faults.back().Text);
    }
    fileSize = file->Size;
    sit = DecodeSit(file->Data, fileSize);
    session.Faults.insert(session.Faults.end(), sit.Faults.begin(), sit.Faults.end());
    image.SitHeader = sit.Header;
  });
  const SitHeader& header = image.SitHeader;
  TakeHeaderTexts(header, image, view);
  ShowLoadingText(session.Words.LangString(180, "Loading"), image, view, progress);

  image.SitFileLength = static_cast<std::int64_t>(fileSize);
  MakeRasterBuffers(kSitWidth, kSitHeight, session);
  image.Emissivity = static_cast<float>(header.EmissivityX100 / 100.0);
  ShowEmissivity(image, session.Words, view);
  TakeCalibration(header, image);

  const LinearCalibration line{image.PixelGain, image.PixelOffset};
  TemperaturePair extremes{kStartMinimum, kStartMaximum};
  steps.Run("decode raster", [&] {
    Calibrate(std::span(sit.Raster.Counts).first(sit.Raster.Present), line, image.TempGrid.Cells());
    extremes = FindSitExtremes(image, sit.Raster, line);
  });
  view.LoadProgress = 100.0;
  progress.Advance();
  image.SitTempMin = extremes.Minimum;
  image.SitTempMax = extremes.Maximum;
  image.SitScaleMin = static_cast<float>(header.ScaleCenter - 4.0 * header.ScaleStep);
  image.SitScaleMax = static_cast<float>(header.ScaleCenter + 4.0 * header.ScaleStep);

  image.SitVersion = SitVersionOf(header);
  if (FindNoImage(session.Faults) == nullptr) {
    FindSound(fileSize, session.Folder, image);
  }
  ExtractVisible(VisiblePosition(header, sit.VisibleLength), session);

  FinishRadiometricLoad(KindSit, session);
}

}  // namespace tessa
