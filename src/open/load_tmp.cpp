#include <algorithm>
#include <array>

#include "core/date_time_text.h"
#include "core/file_access.h"
#include "formats/bin_raster.h"
#include "formats/kelvin.h"
#include "formats/number_text.h"
#include "open/load_steps.h"
#include "open/loaders.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// Degrees of all counts that the file had, and their extremes; without any, an upside-down pair.
TemperaturePair CalibrateAll(const RawRaster& raster, const LinearCalibration& line,
                             TemperatureGrid& grid) {
  TemperaturePair extremes{9999.0F, -9999.0F};
  const auto counts = std::span(raster.Counts).first(raster.Present);
  if (counts.empty()) {
    return extremes;
  }
  Calibrate(counts, line, grid.Cells());
  const CountExtremes ends = FindExtremes(counts);
  const auto [low, high] = std::minmax({line.Degrees(ends.Low), line.Degrees(ends.High)});
  extremes.Minimum = std::min(extremes.Minimum, low);
  extremes.Maximum = std::max(extremes.Maximum, high);
  return extremes;
}

/// The raster is decoded in one go, so its progress is all or nothing.
void ShowRasterDone(Session& session, Progress& progress) {
  session.View.LoadProgress = 100.0;
  progress.Advance();
}

void TakeRaster(const RawRaster& raster, const LinearCalibration& line, Session& session,
                Progress& progress) {
  OpenImage& image = session.Image;
  TemperaturePair extremes{9999.0F, -9999.0F};
  session.Steps.Run("decode raster",
                    [&] { extremes = CalibrateAll(raster, line, image.TempGrid); });
  ShowRasterDone(session, progress);
  image.TempMin = extremes.Minimum;
  image.TempMax = extremes.Maximum;
}

void LoadTmp16(ByteSpan start, std::uint64_t fileSize, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  TmpImage tmp;
  session.Steps.Run("decode TMP", [&] {
    tmp = DecodeTmp(start, fileSize);
    session.Faults.insert(session.Faults.end(), tmp.Faults.begin(), tmp.Faults.end());
    if (!start.empty()) {
      image.TmpHeader = tmp.Header;
    }
  });
  const TmpHeader& header = image.TmpHeader;
  image.ImageTime = TimeFromDigits(header.TimeText);
  image.ImageDate = DateFromDigits(header.DateText);
  view.Comment = FieldText(header.Comment);
  view.Memo = FieldText(header.Memo);
  ShowLoadingText(session.Words.LangString(180, "Loading"), image, view, progress);
  MakeRasterBuffers(kTmpWidth, kTmpHeight, session);
  image.Emissivity = static_cast<float>(header.EmissivityX100 / 100.0);
  ShowEmissivity(image, session.Words, view);
  TakeCalibration(header, image);
  TakeRaster(tmp.Raster, {image.PixelGain, image.PixelOffset}, session, progress);
  image.ScaleMin = static_cast<float>(header.ScaleCenter - 4.0 * header.ScaleStep);
  image.ScaleMax = static_cast<float>(header.ScaleCenter + 4.0 * header.ScaleStep);
}

void LoadTmp8(ByteSpan start, std::uint64_t fileSize, Session& session, Progress& progress) {
  constexpr float kStepsPerGain = 8.0F;
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  image.IsLegacy8Bit = true;
  LegacyImage legacy;
  session.Steps.Run("decode 8-bit TMP", [&] {
    legacy = DecodeLegacyTmp(start, fileSize);
    session.Faults.insert(session.Faults.end(), legacy.Faults.begin(), legacy.Faults.end());
    image.LegacyHeader = legacy.Header;
  });
  const LegacyHeader& header = image.LegacyHeader;
  image.ImageTime = TimeFromDigits(header.StampText.substr(6, 6));
  image.ImageDate = DateFromDigits(header.StampText.substr(0, 6));
  view.Comment = FieldText(header.Comment);
  view.Memo = FieldText(header.Memo);
  ShowLoadingText(session.Words.LangString(180, "Loading"), image, view, progress);
  MakeRasterBuffers(kTmpWidth, kLegacyHeight, session);
  image.Emissivity = static_cast<float>(ParseLeadingNumber(header.EmissivityText));
  ShowEmissivity(image, session.Words, view);
  image.PixelOffset = static_cast<float>(ParseLeadingNumber(header.OffsetText));
  image.PixelGain = static_cast<float>(LegacyGain(header.GainCode));
  image.CalRangeMin = -40.0F;
  image.CalRangeMax = 120.0F;
  // An eighth of a single is exact, so the straight line gives the same degrees.
  TakeRaster(legacy.Raster, {image.PixelGain / kStepsPerGain, image.PixelOffset}, session,
             progress);
  const auto offset = static_cast<double>(image.PixelOffset);
  const auto gain = static_cast<double>(image.PixelGain);
  image.ScaleMin = static_cast<float>(offset - 4.0 * gain);
  image.ScaleMax = static_cast<float>(offset + 4.0 * gain);
}

}  // namespace

void LoadTmp(Session& session, Progress& progress) {
  std::optional<FileStart> file;
  session.Steps.Run("read TMP file", [&] {
    file = ReadFileStart(session.Image.CurrentFilePath, kTmpDecodeSize, session.Faults);
    if (!file) {
      throw StepFailure(session.Faults.back().Text);
    }
  });
  // An empty file is the shortest of the 8-bit kind.
  const bool isEmpty = FileSize(session.Image.CurrentFilePath) == std::uint64_t{0};
  if (isEmpty || (file && file->Size < kTmpLegacyLimit)) {
    LoadTmp8(file ? ByteSpan(file->Data) : ByteSpan(), file ? file->Size : 0, session, progress);
  } else {
    LoadTmp16(file ? ByteSpan(file->Data) : ByteSpan(), file ? file->Size : 0, session, progress);
  }
  FinishRadiometricLoad(KindTmp, session);
}

void LoadBin(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  view.Comment.clear();
  view.Memo.clear();
  // This word stays English in every language.
  ShowLoadingText(QStringLiteral("Loading"), image, view, progress);
  BinImage bin;
  session.Steps.Run("read BIN file", [&] {
    const auto file = ReadFileStart(image.CurrentFilePath, kBinDecodeSize, session.Faults);
    if (!file) {
      throw StepFailure(session.Faults.back().Text);
    }
    bin = DecodeBin(file->Data, file->Size);
    session.Faults.insert(session.Faults.end(), bin.Faults.begin(), bin.Faults.end());
  });
  MakeRasterBuffers(kBinWidth, kBinHeight, session);
  TemperaturePair extremes{9999.9F, -9999.9F};
  session.Steps.Run("decode raster", [&] {
    const std::span<float> cells = image.TempGrid.Cells();
    for (std::size_t i = 0; i < bin.Raster.Present; ++i) {
      cells[i] = static_cast<float>(TenthsOfKelvinToCelsius(bin.Raster.Counts[i]));
      extremes.Minimum = std::min(extremes.Minimum, cells[i]);
      extremes.Maximum = std::max(extremes.Maximum, cells[i]);
    }
  });
  ShowRasterDone(session, progress);
  image.CalRangeMin = -40.0F;
  image.CalRangeMax = 120.0F;
  image.CurrentFile = image.CurrentFile.chopped(3) + QStringLiteral(".SIT");
  image.SitTempMin = image.SitScaleMin = extremes.Minimum;
  image.SitTempMax = image.SitScaleMax = extremes.Maximum;
  image.HasTemperature = true;
  view.RangeToggleVisible = true;
  view.StatusPanel[5].clear();
  image.ImageKind = KindSit;
}

}  // namespace tessa
