#include <algorithm>

#include "core/date_time_text.h"
#include "core/file_access.h"
#include "formats/number_text.h"
#include "open/still_readers.h"

namespace tessa {
namespace {

constexpr TemperaturePair kStartExtremes{9999.0F, -9999.0F};

/// Degrees of all counts that the file had, and their extremes.
void TakeRaster(const RawRaster& raster, const LinearCalibration& line, Still& still) {
  const auto counts = std::span(raster.Counts).first(raster.Present);
  if (counts.empty()) {
    return;
  }
  Calibrate(counts, line, still.Grid.Cells());
  const CountExtremes ends = FindExtremes(counts);
  const auto [low, high] = std::minmax({line.Degrees(ends.Low), line.Degrees(ends.High)});
  still.Extremes = {std::min(kStartExtremes.Minimum, low), std::max(kStartExtremes.Maximum, high)};
}

void TakeTmp16(TmpImage tmp, Still& still) {
  still.Grid.Allocate(kTmpWidth, kTmpHeight);
  TakeCameraHeader(tmp.Header, still);
  still.Comment = FieldText(tmp.Header.Comment);
  still.Memo = FieldText(tmp.Header.Memo);
  TakeRaster(tmp.Raster, LineOf(still), still);
  still.Faults.insert(still.Faults.end(), tmp.Faults.begin(), tmp.Faults.end());
  still.Header = std::move(tmp.Header);
}

void TakeTmp8(LegacyImage legacy, Still& still) {
  constexpr float kStepsPerGain = 8.0F;
  const LegacyHeader& header = legacy.Header;
  still.IsLegacy8Bit = true;
  still.Grid.Allocate(kTmpWidth, kLegacyHeight);
  still.Time = TimeFromDigits(header.StampText.substr(6, 6));
  still.Date = DateFromDigits(header.StampText.substr(0, 6));
  still.Comment = FieldText(header.Comment);
  still.Memo = FieldText(header.Memo);
  still.Camera = {static_cast<float>(ParseLeadingNumber(header.EmissivityText)),
                  static_cast<float>(ParseLeadingNumber(header.OffsetText)),
                  static_cast<float>(LegacyGain(header.GainCode))};
  still.CalibratedRange = {-40.0F, 120.0F};
  // An eighth of a single is exact, so the straight line gives the same degrees.
  TakeRaster(legacy.Raster, {still.Camera->Gain / kStepsPerGain, still.Camera->Offset}, still);
  const auto offset = static_cast<double>(still.Camera->Offset);
  const auto gain = static_cast<double>(still.Camera->Gain);
  still.StoredScale = {static_cast<float>(offset - 4.0 * gain),
                       static_cast<float>(offset + 4.0 * gain)};
  still.Faults.insert(still.Faults.end(), legacy.Faults.begin(), legacy.Faults.end());
  still.Header = std::move(legacy.Header);
}

}  // namespace

Still ReadTmp(const QString& path) {
  Still still;
  still.Kind = KindTmp;
  still.Extremes = kStartExtremes;
  const auto file = ReadFileStart(path, kTmpDecodeSize, still.Faults);
  if (file) {
    still.FileSize = file->Size;
  }
  // An empty file is the shortest of the 8-bit kind.
  const bool isEmpty = !file && FileSize(path) == std::uint64_t{0};
  if (isEmpty) {
    TakeTmp8(DecodeLegacyTmp({}, 0), still);
  } else if (!file) {
    still.Grid.Allocate(kTmpWidth, kTmpHeight);
  } else if (file->Size < kTmpLegacyLimit) {
    TakeTmp8(DecodeLegacyTmp(file->Data, file->Size), still);
  } else {
    TakeTmp16(DecodeTmp(file->Data, file->Size), still);
  }
  return still;
}

}  // namespace tessa
