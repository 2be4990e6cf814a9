#pragma once

#include "scene_paint.h"

/// What stands and walks in front of the house.
namespace tessa::tools {

/// A parked car whose engine is still warm, its front towards -x; `corner` is where its front and
/// its near side would meet on the ground.
void PaintCar(Canvas& canvas, const Camera& camera, Vec3 corner);

void PaintPeople(Canvas& canvas, const Camera& camera);

}  // namespace tessa::tools
