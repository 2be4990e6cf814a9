#pragma once

#include "core/language_strings.h"
#include "core/open_image.h"
#include "core/progress.h"
#include "core/steps.h"
#include "core/view_state.h"
#include "view/picbuf.h"
#include "view/range_slider.h"
#include "view/render_mapping.h"

namespace tessa {

/// What a change of range works on; references to the parts of a session.
struct RenderPieces {
  OpenImage& Image;
  ViewState& View;
  Picbuf& Picture;
  RangeSlider& Slider;
  const Strings& Words;
  StepLog& Steps;
  Progress& Watcher;
};

/// Maps TempGrid onto palette indices so that `lo` becomes 0 and `hi` 255, both degrees Celsius,
/// writes the range texts and brings the scale into line. Equal ends are spread first; the caller
/// sees the result. For every kind but SIT. Kinds that neither TXI, SEQ, BMP, RTI nor TIF files
/// hold are drawn in their first 255 columns only; the others keep what the loader gave them.
void RenderRows(float& lo, float& hi, const RenderPieces& pieces);

/// The same for SIT images, over all columns.
void RenderRowsSit(float& lo, float& hi, const RenderPieces& pieces);

/// The line that takes `lo` to index 0 and `hi` to index 255. A number that single precision cannot
/// hold, or equal ends, leave it at 0.
RenderLine MakeRenderLine(float lo, float hi, StepLog& steps);

/// Maps the first `columns` cells of one row of TempGrid into the row buffer and the picture.
/// `value` carries the last index from row to row. Throws std::out_of_range for a picture that is
/// wider than a row buffer.
void RenderGridRow(int row, int columns, const RenderLine& line, std::int32_t& value,
                   OpenImage& image, Picbuf& picture);

/// Flips between the stored scale (red) and the image's extremes (green) and renders, as the end of
/// a load does.
void ToggleRangeSource(const RenderPieces& pieces);

/// Shows the image in the given range without remembering it: the thumbs follow when the range
/// control accepts the values. For images that CanMoveRange.
void ShowInRange(float lo, float hi, const RenderPieces& pieces);

}  // namespace tessa
