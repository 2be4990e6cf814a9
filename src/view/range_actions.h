#pragma once

#include "view/render.h"

namespace tessa {

// What the user does with the range control. Each procedure renders where the rules say so and
// leaves the records for the windows to show. For images whose range cannot be moved they do
// nothing.

/// A thumb came to rest: the range is shown and, while the toggle is red, remembered as the stored
/// scale.
void ThumbAtRest(const RenderPieces& pieces);

/// A thumb is moving. With `autoUpdate` the picture follows, otherwise only the texts do; nothing
/// is remembered.
void ThumbMoving(bool autoUpdate, const RenderPieces& pieces);

/// The entered range is applied ("Update", or Enter in one of the two boxes). Texts are in the unit
/// of display. A range that the slider refuses is replaced by the slider's own.
void RangeApply(const QString& lowText, const QString& highText, const RenderPieces& pieces);

/// "Reset": back to the range that the toggle stands for, without moving the thumbs.
void RangeReset(const RenderPieces& pieces);

/// Enter in one of the boxes for the slider's outer limits, texts in the unit of display. Refused
/// limits are replaced by the present ones.
void ApplyLimitTexts(const QString& minText, const QString& maxText, const RenderPieces& pieces);

/// The toggle between the stored scale (red) and the image's extremes (green) was clicked.
void ToggleRangeByButton(const RenderPieces& pieces);

/// Moves one thumb to the image's extreme on its side, as a double click on it does.
void ResetThumb(bool upper, const RenderPieces& pieces);

}  // namespace tessa
