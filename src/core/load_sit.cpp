#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "core/date_time_text.h"
#include "core/file_access.h"
#include "core/load_image.h"
#include "core/loaders.h"
#include "formats/ansi_text.h"
#include "view/range_control.h"

namespace tessa {
namespace {

constexpr int kBorder = 3;  // Pixels at each edge that take no part in the extremes.
constexpr float kStartMinimum = 999.0F;
constexpr float kStartMaximum = -999.0F;

QString Text(const std::string& ansi) {
  return QString::fromStdString(AnsiToUtf8(ansi));
}

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

/// True when the image carries its sound inside.
bool HasEmbeddedSound(const SitHeader& header, float version, std::uint64_t fileSize) {
  const bool longEnough = fileSize > kSitAttachmentOffset;
  if (version >= 4.0F) {
    const int code = AttachmentCode(header);
    return code == 1 || code == 3;
  }
  if (version == 3.1F) {
    return longEnough && static_cast<unsigned char>(header.Signature[8]) >= 'I';
  }
  return version > 3.1F && longEnough;
}

/// Name of the wave file that goes with the image.
QString WaveTitle(const OpenImage& image) {
  return image.CurrentFileName.chopped(std::min<qsizetype>(3, image.CurrentFileName.size())) +
         QStringLiteral("WAV");
}

/// Where the image's sound note lies, from the header alone.
void FindSound(const std::uint64_t fileSize, const ApplicationFolder& folder, OpenImage& image) {
  const SitHeader& header = image.SitHeader;
  image.SoundEmbedded = HasEmbeddedSound(header, image.SitVersion, fileSize);
  if (image.SoundEmbedded) {
    image.CanEmbedSound = false;
    image.SoundFileTitle = WaveTitle(image);
    image.SoundFile = folder.Path() + QDir::separator() + image.SoundFileTitle;
    return;
  }
  const char first = header.SoundName.empty() ? '\0' : header.SoundName.front();
  if (first == ' ' || first == '\0') {
    image.SoundFile.clear();
    return;
  }
  const QString name = Text(WithoutZeroBytes(header.SoundName)).trimmed();
  const QString extension = Text(WithoutZeroBytes(header.SoundExt)).trimmed();
  if (extension == QLatin1String("WAV")) {
    image.SoundEmbedded = true;  // The name is a position inside the file.
    image.SoundFileTitle = WaveTitle(image);
    return;
  }
  // A name out of a file never leads out of the image's own folder.
  if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
      name.contains(QLatin1String(".."))) {
    image.SoundFile.clear();
    return;
  }
  image.SoundFileTitle = WaveTitle(image);
  image.SoundFile = QFileInfo(image.CurrentFilePath).absolutePath() + QDir::separator() + name +
                    QLatin1Char('.') + extension;
}

void TakeHeaderTexts(const SitHeader& header, OpenImage& image, ViewState& view) {
  image.ImageTime = TimeFromDigits(header.TimeText);
  image.ImageDate = DateFromDigits(header.DateText);
  view.Comment = Text(WithoutZeroBytes(header.Comment));
  view.Memo = Text(WithoutZeroBytes(header.Memo));
}

void TakeCalibration(const SitHeader& header, OpenImage& image) {
  image.CalRangeMin = static_cast<float>(header.RangeLow);
  image.CalRangeMax = static_cast<float>(header.RangeHigh);
  image.PixelOffset = static_cast<float>(header.Offset);
  image.PixelGain = static_cast<float>(header.Gain);
}

}  // namespace

void LoadSit(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  StepLog& steps = session.Steps;
  Picbuf& picture = session.Buffers.Picbuf1;

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
  picture.FileType = Picbuf::kBmp;

  image.CanEmbedSound = QFileInfo(image.CurrentFilePath).isWritable();
  image.SitFileLength = static_cast<std::int64_t>(fileSize);
  steps.Run("create buffer", [&] { picture.CreateBuffer(0, kSitHeight, kSitWidth, 8); });
  TakeBufferSize(picture, image);
  image.TempGrid.Allocate(image.ImageWidth, image.ImageHeight);
  image.RowBuffers.Allocate(image.ImageHeight, image.ImageWidth);

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
  FindSound(fileSize, session.Folder, image);
  image.HasVisibleImage = false;

  image.HasTemperature = true;
  view.RangeToggleVisible = true;
  ShowCalibratedRange(image, session.Words, view);
  InitRangeControl(extremes, {image.SitScaleMin, image.SitScaleMax}, image.DisplayUnits,
                   session.Range, view);
  image.ImageKind = KindSit;
}

}  // namespace tessa
