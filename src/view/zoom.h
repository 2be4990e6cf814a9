#pragma once

#include <optional>

#include "core/view_state.h"
#include "view/picbuf.h"

namespace tessa {

/// Start level and factor for an image of `imageWidth` pixels, and the scale of the view with them:
/// up to 320 wide twice its size, up to 640 full size, above that half size.
void SetZoomForWidth(int imageWidth, ZoomState& zoom, Picbuf& picture);

/// Sets the level, kept within the limits, and the scale of the view.
void SetZoomLevel(int level, ZoomState& zoom, Picbuf& picture);

/// Sets the largest level at which the whole picture is in view in an area of logical pixels. Where
/// even the lowest shows a part only, the level stays at the lowest and the scale is that which
/// just fits, until the next level is set.
void SetZoomToFit(int areaWidth, int areaHeight, ZoomState& zoom, Picbuf& picture);

/// The level that `steps` lead to; the first step up from a scale below the levels leads to the
/// lowest. Nothing where there is no further step.
std::optional<int> LevelAfter(int steps, const ZoomState& zoom);

/// Where the scaled picture lies in the area that the window has for it, logical pixels.
struct ViewPlacement {
  int Left = 0;  // Of the part that is shown.
  int Top = 0;
  int Width = 0;
  int Height = 0;
  int MaxPanX = 0;  // Image pixels that are not in view: the ends of the scroll bars.
  int MaxPanY = 0;
};

/// A picture smaller than the area stands centred, a larger one fills it and can be panned.
ViewPlacement PlaceView(const Picbuf& picture, int areaWidth, int areaHeight);

/// A click on the picture at a client position becomes the centre of the next zooms; the first
/// click on an image stands for its middle.
void RememberClick(int clientX, int clientY, const Picbuf& picture, ZoomState& zoom);

/// Position of a scroll bar that runs from 0 to `maximum` for a remembered centre in a picture of
/// `size` pixels; a centre of -1 stands for the middle.
int PanForCentre(int centre, int size, int maximum);

}  // namespace tessa
