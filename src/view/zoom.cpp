#include "view/zoom.h"

#include <algorithm>
#include <cmath>

namespace tessa {
namespace {

constexpr int kSmallWidth = 320;
constexpr int kFullSizeWidth = 640;

void SetScale(const ZoomState& zoom, Picbuf& picture) {
  const auto factor = static_cast<double>(zoom.ZoomFactor);
  if (factor < 1.0 && zoom.ZoomLevel == 1) {
    picture.ZoomNumerator = 1.0;
    picture.ZoomDenominator = 1.0 / factor;
  } else {
    picture.ZoomNumerator = zoom.ZoomLevel * factor;
    picture.ZoomDenominator = 1.0;
  }
}

}  // namespace

void SetZoomForWidth(int imageWidth, ZoomState& zoom, Picbuf& picture) {
  zoom.ZoomMin = 1;
  zoom.ZoomMax = 15;
  zoom.ZoomCentreX = -1;
  zoom.ZoomCentreY = -1;
  zoom.ZoomFactor = imageWidth <= kSmallWidth ? 1.0F : 0.5F;
  SetZoomLevel(imageWidth <= kFullSizeWidth ? 2 : 1, zoom, picture);
  picture.ScrollView(0, 0);
}

void SetZoomLevel(int level, ZoomState& zoom, Picbuf& picture) {
  zoom.ZoomLevel = std::clamp(level, zoom.ZoomMin, zoom.ZoomMax);
  zoom.FitsWindow = false;
  SetScale(zoom, picture);
}

void SetZoomToFit(int areaWidth, int areaHeight, ZoomState& zoom, Picbuf& picture) {
  if (picture.BufWidth() == 0 || picture.BufHeight() == 0) {
    return;
  }
  for (int level = zoom.ZoomMax; level >= zoom.ZoomMin; --level) {
    SetZoomLevel(level, zoom, picture);
    const ViewPlacement placement = PlaceView(picture, areaWidth, areaHeight);
    if (placement.MaxPanX == 0 && placement.MaxPanY == 0) {
      return;
    }
  }
  const double columns = static_cast<double>(picture.BufWidth()) / std::max(areaWidth, 1);
  const double rows = static_cast<double>(picture.BufHeight()) / std::max(areaHeight, 1);
  // A little more, so that no rounding leaves the last row or column out.
  constexpr double kSpare = 1.0 + 1e-9;
  picture.ZoomNumerator = 1.0;
  picture.ZoomDenominator = std::max(columns, rows) * kSpare;
  zoom.FitsWindow = true;
}

std::optional<int> LevelAfter(int steps, const ZoomState& zoom) {
  if (!zoom.FitsWindow) {
    return zoom.ZoomLevel + steps;
  }
  return steps > 0 ? std::optional(zoom.ZoomMin + steps - 1) : std::nullopt;
}

ViewPlacement PlaceView(const Picbuf& picture, int areaWidth, int areaHeight) {
  const double scale = picture.ZoomNumerator / picture.ZoomDenominator;
  // Only whole image pixels are shown, so that the last one is as wide as the others.
  const auto place = [scale](int size, int area, int& start, int& shown, int& maxPan) {
    const int visible = std::min(size, static_cast<int>(std::max(area, 0) / scale));
    shown = static_cast<int>(visible * scale);
    start = (area - shown) / 2;
    maxPan = size - visible;
  };
  ViewPlacement placement;
  place(picture.BufWidth(), areaWidth, placement.Left, placement.Width, placement.MaxPanX);
  place(picture.BufHeight(), areaHeight, placement.Top, placement.Height, placement.MaxPanY);
  return placement;
}

void RememberClick(int clientX, int clientY, const Picbuf& picture, ZoomState& zoom) {
  if (zoom.ZoomCentreY == -1) {
    zoom.ZoomCentreX = picture.BufWidth() / 2;
    zoom.ZoomCentreY = picture.BufHeight() / 2;
  } else {
    zoom.ZoomCentreX = picture.ClientToImageX(clientX);
    zoom.ZoomCentreY = picture.ClientToImageY(clientY) + 1;
  }
}

int PanForCentre(int centre, int size, int maximum) {
  if (size <= 0) {
    return 0;
  }
  const int middle = centre == -1 ? size / 2 : centre;
  const double position = static_cast<double>(middle) / size * maximum;
  return std::min(static_cast<int>(std::nearbyint(position)), maximum);
}

}  // namespace tessa
