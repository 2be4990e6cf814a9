#pragma once

#include "photo_paint.h"

/// What lies around the house, in the places of its infrared scene.
namespace tessa::tools {

void PaintDuskBehindHouse(Photo& photo, const Camera& camera);
void PaintSnowyGround(Photo& photo, const Camera& camera);
void PaintShrubs(Photo& photo, const Camera& camera);
void PaintWalkers(Photo& photo, const Camera& camera);
void PaintParkedCar(Photo& photo, const Camera& camera);

}  // namespace tessa::tools
