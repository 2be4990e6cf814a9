#include "camera/download_options.h"

#include "core/steps.h"
#include "core/units.h"

namespace tessa {
namespace {

constexpr double kLowestQuality = 5.0;
constexpr double kHighestQuality = 100.0;
constexpr int kUsualQuality = 95;

}  // namespace

void ChooseUnit(int unit, DownloadOptions& options) {
  if (unit == options.Unit) {
    return;
  }
  options.Unit = unit;
  for (QString* const limit : {&options.MinTemp, &options.MaxTemp}) {
    if (!limit->isEmpty()) {
      const double degrees = ParseNumber(*limit);
      *limit =
          FormatTenths(unit == 0 ? FahrenheitToCelsius(degrees) : CelsiusToFahrenheit(degrees));
    }
  }
}

bool WantsAnyFormat(const DownloadOptions& options) {
  return options.Sit != 0 || options.Bmp != 0 || options.Jpeg != 0;
}

bool WantsPictures(const DownloadOptions& options) {
  return options.Bmp == 1 || options.Jpeg == 1;
}

int OverlayLines(const DownloadOptions& options) {
  const auto& boxes = options.Overlay;
  if (!WantsPictures(options)) {
    return 0;
  }
  // Date and time share a line.
  const bool hasMoment = boxes[DownloadOptions::kDate] == 1 || boxes[DownloadOptions::kTime] == 1;
  return (hasMoment ? 1 : 0) + (boxes[DownloadOptions::kEmissivity] == 1 ? 1 : 0) +
         (boxes[DownloadOptions::kExtremes] == 1 ? 1 : 0) +
         (boxes[DownloadOptions::kMemo] == 1 ? 1 : 0);
}

int JpegQualityOf(const DownloadOptions& options) {
  const double quality = ParseNumber(options.JpegQuality);
  return quality >= kLowestQuality && quality <= kHighestQuality ? RoundToInteger(quality)
                                                                 : kUsualQuality;
}

}  // namespace tessa
