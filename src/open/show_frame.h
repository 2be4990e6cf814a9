#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

/// True when the open file holds bytes for CurrentFrame, so that drawing it may be worth its time.
bool HasFrame(const OpenImage& image);

/// Shows CurrentFrame of the open snapshot or sequence container: temperatures, extremes, picture.
/// With `useEnteredScale` the range on the screen stays (the entered one while the toggle is red,
/// else the frame's extremes); without it the stored scale is used. A frame that cannot be read
/// goes blank, a fault says so, and the result is false.
bool ShowFrame(bool useEnteredScale, Session& session, Progress& progress);

/// Shows CurrentFrame from its own frame file beside the open image ("B-000.APD" for frame 1 of
/// B.RTI, or the one name that differs in case alone) or, where there is none, from the open file
/// itself; date and time come from the open file either way. Without `keepScale` the palette
/// spreads over the frame's own extremes; with it the entered range stays, its numbers taken as
/// they stand. A frame that neither has goes blank, a fault says so, and the result is false.
bool ShowFrameFile(bool keepScale, Session& session, Progress& progress);

/// The same without `keepScale`, but only when the frame has a file of its own; otherwise nothing
/// happens and the result is false.
bool ShowFrameFromFile(Session& session, Progress& progress);

/// Path of the frame file of 1-based `frame` beside the image at `imagePath`.
QString FrameFilePath(const QString& imagePath, int frame);

}  // namespace tessa
