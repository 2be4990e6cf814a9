#pragma once

#include "photo_paint.h"

/// The house in the measures and places of scene_house.cpp, so that both pictures lie over one
/// another.
namespace tessa::tools {

inline constexpr double kFrontWidth = 10.0;
inline constexpr double kDepth = 8.0;
inline constexpr double kWallHeight = 5.5;
inline constexpr double kRidgeHeight = 8.9;
inline constexpr double kEaves = 0.45;
inline constexpr double kPitch = (kRidgeHeight - kWallHeight) / (0.5 * kDepth);

/// Chimney, slope, eaves and overhang, over walls that are painted already.
void PaintRoof(Photo& photo, const Camera& camera);

}  // namespace tessa::tools
