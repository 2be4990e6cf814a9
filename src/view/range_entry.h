#pragma once

#include <QString>

#include "view/render.h"

namespace tessa {

// The typed side of the range control: what stands in the four boxes is the record's text at every
// moment, typed or told, so a load, a close or a frame step replaces what was typed, and whatever
// works on the entered range finds it in the record. Texts are in the unit of display.

/// The user is typing in the boxes of the range.
void EnterRangeTexts(const QString& low, const QString& high, ViewState& view);

/// The user is typing in the boxes of the slider's limits.
void EnterLimitTexts(const QString& minimum, const QString& maximum, ViewState& view);

/// The limit boxes show the slider's limits again.
void ShowLimitTexts(const RangeSlider& slider, char displayUnits, ViewState& view);

/// "Update", or Enter in a box of the range: applies the texts of the record. A range that the
/// slider refuses is told, and the range in force comes back into the boxes.
void ApplyEnteredRange(const RenderPieces& pieces);

/// The same for the limits.
void ApplyEnteredLimits(const RenderPieces& pieces);

}  // namespace tessa
