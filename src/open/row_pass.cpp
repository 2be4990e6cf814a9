#include "open/row_pass.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "open/load_steps.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// Degrees of each of the 256 palette indices. Indices whose formula fails have no entry.
using DegreesOfIndex = std::array<std::optional<float>, 256>;

DegreesOfIndex TxiDegrees(const OpenImage& image) {
  DegreesOfIndex degrees;
  const auto low = static_cast<double>(image.ScaleMin);
  const double span = static_cast<double>(image.ScaleMax) - low;
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    degrees[i] = static_cast<float>(span * (static_cast<double>(i) / 255.0) + low);
  }
  return degrees;
}

DegreesOfIndex TrailerDegrees(const OpenImage& image, StepLog& steps) {
  DegreesOfIndex degrees;
  const auto low = static_cast<double>(image.PaletteTempLow);
  const double span = static_cast<double>(image.PaletteTempHigh) - low;
  const double indices = image.PaletteIndexHigh - image.PaletteIndexLow;
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    steps.Run("degrees of index", [&] {
      const double position = static_cast<double>(i) - image.PaletteIndexLow;
      degrees[i] = static_cast<float>(Divide(position * span, indices) + low);
    });
  }
  return degrees;
}

/// Turns one row of displayed values into degrees.
void MeasureRow(int row, const DegreesOfIndex& degrees, OpenImage& image) {
  const std::span<const std::uint8_t> cells = std::as_const(image.RowBuffers).Row(row);
  const std::span<float> grid = image.TempGrid.Row(row);
  for (std::size_t column = 0; column < cells.size(); ++column) {
    if (const auto& value = degrees.at(static_cast<std::size_t>(cells[column]))) {
      grid[column] = *value;
    }
  }
}

/// The extremes of a bitmap grow with every row, and the range control with them.
void FollowExtremes(int row, Session& session) {
  OpenImage& image = session.Image;
  for (const float degrees : std::as_const(image.TempGrid).Row(row)) {
    image.TempMin = std::min(image.TempMin, degrees);
    image.TempMax = std::max(image.TempMax, degrees);
  }
  InitRangeControl(ImageExtremes(image), StoredScale(image), image.DisplayUnits, session.Range,
                   session.View);
}

}  // namespace

void RunRowPass(FileKind kind, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  const bool isTxi = kind == FileKind::kTxi;
  const bool isMeasuredBmp = kind == FileKind::kBmp && image.HasTemperature;
  DegreesOfIndex degrees;
  if (isTxi) {
    degrees = TxiDegrees(image);
  } else if (isMeasuredBmp) {
    degrees = TrailerDegrees(image, session.Steps);
    image.TempMax = -9999.0F;
    image.TempMin = 9999.0F;
  }
  for (int row = 0; row < image.ImageHeight; ++row) {
    session.View.LoadProgress = (row + 1.0) / image.ImageHeight * 100.0;
    progress.Advance();
    session.Steps.Run("read row", [&] { picture.GetRow(image.RowBuffers.Row(row), row); });
    if (isTxi || isMeasuredBmp) {
      session.Steps.Run("measure row", [&] { MeasureRow(row, degrees, image); });
    }
    if (isMeasuredBmp) {
      session.Steps.Run("follow extremes", [&] { FollowExtremes(row, session); });
    }
    if (image.PaletteReversed) {
      session.Steps.Run("undo reversed palette", [&] {
        for (std::uint8_t& cell : image.RowBuffers.Row(row)) {
          cell = static_cast<std::uint8_t>(255 - cell);
        }
        picture.PutRow(image.RowBuffers.Row(row), row);
      });
    }
  }
  InstallPalette(session);
}

}  // namespace tessa
