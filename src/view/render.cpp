#include "view/render.h"

#include <algorithm>
#include <cmath>

#include "core/units.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// Columns of the kinds whose stored rows are wider than their picture.
constexpr int kNarrowColumns = 255;

float FiniteFloat(double value) {
  const auto stored = static_cast<float>(value);
  if (!std::isfinite(stored)) {
    throw StepFailure("the number does not fit single precision");
  }
  return stored;
}

void Render(float& lo, float& hi, int columns, const RenderPieces& pieces) {
  OpenImage& image = pieces.Image;
  SpreadEqualEnds(lo, hi, pieces.Slider.ScaleMaxLimit());
  const RenderLine line = MakeRenderLine(lo, hi, pieces.Steps);
  SetRangeInForce(static_cast<double>(lo), static_cast<double>(hi), image);
  pieces.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, pieces.View, pieces.Words); });

  std::int32_t value = 0;
  for (int row = 0; row < image.ImageHeight; ++row) {
    if (pieces.View.RenderProgressVisible) {
      pieces.View.RenderProgress = (row + 1.0) / image.ImageHeight * 100.0;
      pieces.Watcher.Advance();
    }
    pieces.Steps.Run("render row",
                     [&] { RenderGridRow(row, columns, line, value, image, pieces.Picture); });
  }
  pieces.Picture.FileType = Picbuf::kBmp;
  pieces.Picture.Refresh();
  pieces.View.BusyPointer = false;
}

}  // namespace

RenderLine MakeRenderLine(float lo, float hi, StepLog& steps) {
  RenderLine line;
  steps.Run("gain", [&] {
    line.Gain = FiniteFloat(Divide(255.0, static_cast<double>(hi) - static_cast<double>(lo)));
  });
  steps.Run("offset", [&] {
    line.Offset = FiniteFloat(0.0 - static_cast<double>(line.Gain) * static_cast<double>(lo));
  });
  return line;
}

void RenderGridRow(int row, int columns, const RenderLine& line, std::int32_t& value,
                   OpenImage& image, Picbuf& picture) {
  const auto degrees = std::as_const(image.TempGrid).Row(row);
  const std::span<std::uint8_t> cells = image.RowBuffers.Row(row);
  const std::span<std::uint8_t> indices = picture.IndexRow(row);
  if (cells.size() < indices.size()) {
    throw std::out_of_range("the picture is wider than a row buffer");
  }
  const auto count =
      std::min({static_cast<std::size_t>(std::max(columns, 0)), degrees.size(), indices.size()});
  MapToIndices(degrees.first(count), line, value, indices);
  std::copy_n(indices.begin(), count, cells.begin());
}

void RenderRows(float& lo, float& hi, const RenderPieces& pieces) {
  const bool wide = RulesByName(pieces.Image).RendersAllColumns;
  Render(lo, hi, wide ? pieces.Image.ImageWidth : kNarrowColumns, pieces);
}

void RenderRowsSit(float& lo, float& hi, const RenderPieces& pieces) {
  Render(lo, hi, pieces.Image.ImageWidth, pieces);
}

void ToggleRangeSource(const RenderPieces& pieces) {
  const OpenImage& image = pieces.Image;
  const bool toImage = pieces.View.Source == RangeSource::kStored;
  pieces.View.Source = toImage ? RangeSource::kImage : RangeSource::kStored;
  float lo = 0.0F;
  float hi = 0.0F;
  if (Holds(RulesByName(image).PlainPairAtLoad, image)) {
    lo = toImage ? image.TempMin : image.ScaleMin;
    hi = toImage ? image.TempMax : image.ScaleMax;
    RenderRows(lo, hi, pieces);
  } else {
    lo = toImage ? image.SitTempMin : image.SitScaleMin;
    hi = toImage ? image.SitTempMax : image.SitScaleMax;
    RenderRowsSit(lo, hi, pieces);
  }
}

void ShowInRange(float lo, float hi, const RenderPieces& pieces) {
  pieces.Slider.SetRangeValues(true, static_cast<double>(hi), static_cast<double>(lo));
  if (RulesByImageKind(pieces.Image).UsesSitPairs) {
    RenderRowsSit(lo, hi, pieces);
  } else {
    RenderRows(lo, hi, pieces);
  }
}

}  // namespace tessa
