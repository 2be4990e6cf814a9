#include "photo_house.h"

namespace tessa::tools {
namespace {

Tint RoofTint(Vec2 at, double length, double pixel) {
  const double course = at.Y / 0.34;
  const double visible = Clamp01(1.6 - 3.0 * pixel / 0.34);
  const double row = std::floor(course);
  double shade = 1 + 0.16 * Fractal(at.X * 0.5, at.Y * 0.7, 5, pixel, 300);
  shade += visible * (0.28 * (0.5 - (course - row)) + 0.14 * Noise(at.X / 0.3, row, 303));
  shade -= 0.35 * Grooves(at.X + 0.15 * row, 0.30, 0.03, pixel);
  Tint tint = Tint{0.33, 0.175, 0.135} * shade;
  // Where warmth comes through, the snow has gone and the tiles are wet.
  const Vec2 leak = at - Vec2{7.45, 1.95};
  const double melted = Bell(leak.X, 0.8) * (leak.Y < 0 ? Bell(leak.Y, 0.9) : std::exp(-leak.Y));
  tint = tint * (1 - 0.35 * Smooth(0.2, 0.8, melted));
  const double drift = at.Y - 0.75 - 0.9 * Fractal(at.X * 0.55, 0.7, 4, pixel * 0.5, 304) -
                       0.9 * Smooth(6.0, 10.0, at.X) + 3.0 * melted;
  const double snowShade =
      1 + 0.07 * Fractal(at.X * 1.4, at.Y * 1.4, 3, pixel, 305) - 0.16 * Bell(drift, 0.05);
  tint = Blend(tint, Tint{0.62, 0.665, 0.755} * snowShade, Smooth(0.06, -0.06, drift));
  // Powder has caught below the ridge too.
  tint = Blend(tint, {0.55, 0.59, 0.67},
               0.35 * Smooth(0.1, 0.7,
                             Fractal(at.X * 2, at.Y * 5, 4, pixel * 3, 309) +
                                 0.5 * Smooth(length - 0.8, length, at.Y)));
  const Vec2 light = at - Vec2{3.0, 2.55};
  tint = Blend(tint, Grey(0.22), Cover(BoxDistance(light, {}, {0.42, 0.62}, 0.02), pixel));
  const Tint glass = Blend({0.30, 0.34, 0.44}, {0.46, 0.46, 0.52}, Smooth(-0.5, 0.5, light.Y));
  return Blend(tint, glass, Cover(BoxDistance(light, {}, {0.33, 0.53}, 0.02), pixel));
}

void PaintChimney(Photo& photo, const Camera& camera) {
  const auto stack = [&](const Surface& surface, double width, double flueRadius, double light) {
    photo.Paint(
        camera, surface, {-0.1, 7.9, 0.8, 10.3}, 0.02,
        [&](Vec2 at) {
          return std::min({BoxDistance(at, {0.5 * width, 9.0}, {0.5 * width, 1.05}, 0.01),
                           BoxDistance(at, {0.5 * width, 9.95}, {0.5 * width + 0.06, 0.07}, 0.01),
                           BoxDistance(at, {0.5 * width, 10.1}, {flueRadius, 0.14}, 0.02)});
        },
        [&](Vec2 at, double, double pixel, Tint) {
          const double joints = Grooves(at.Y, 0.125, 0.012, pixel);
          Tint tint =
              Tint{0.36, 0.19, 0.15} * (1 + 0.3 * Noise(at.X * 4, at.Y * 8, 320) + 0.25 * joints);
          tint = Blend(tint, {0.62, 0.66, 0.74}, Smooth(0.08, 0.04, std::abs(at.Y - 9.97)));
          return Blend(tint, Grey(0.16), Smooth(10.02, 10.05, at.Y)) * light;
        });
  };
  stack({{5.7, 0, 3.75}, {0, 0, 1}, {0, 1, 0}}, 0.6, 0.0, 0.75);
  stack({{5.7, 0, 3.75}, {1, 0, 0}, {0, 1, 0}}, 0.7, 0.16, 1.0);
  // Steam, pale against the sky.
  const Vec2 mouth = camera.Project({6.05, 10.25, 3.75});
  for (int puff = 0; puff < 9; ++puff) {
    const double rise = 0.05 * puff;
    const Vec2 at =
        mouth + Vec2{0.012 + 0.35 * rise * rise + 0.012 * Noise(puff * 0.7, 0, 330), -rise};
    photo.Glow(at, 0.016 + 0.10 * rise, Grey(0.10 * std::exp(-rise / 0.2)));
  }
}

}  // namespace

void PaintRoof(Photo& photo, const Camera& camera) {
  const double halfDepth = 0.5 * kDepth;
  PaintChimney(photo, camera);
  const double run = halfDepth + kEaves;
  const double slope = run * std::sqrt(1 + kPitch * kPitch);
  const double foot = kWallHeight - kEaves * kPitch;
  const Surface roof{{0, foot, -kEaves}, {1, 0, 0}, Unit({0, kPitch, 1})};
  photo.Paint(
      camera, roof, {-0.4, 0, kFrontWidth + 0.4, slope}, 0.02,
      [&](Vec2 at) {
        return BoxDistance(at, {0.5 * kFrontWidth, 0.5 * slope},
                           {0.5 * kFrontWidth + 0.35, 0.5 * slope});
      },
      [&](Vec2 at, double, double pixel, Tint) { return RoofTint(at, slope, pixel); });
  const Surface eaves{{-0.35, foot - 0.16, -kEaves}, {1, 0, 0}, {0, 1, 0}};
  photo.Paint(
      camera, eaves, {0, 0, kFrontWidth + 0.7, 0.18}, 0.02,
      [](Vec2 at) {
        return BoxDistance(at, {0.5 * kFrontWidth + 0.35, 0.08}, {0.5 * kFrontWidth + 0.35, 0.08});
      },
      [](Vec2 at, double, double, Tint) { return Grey(0.24 + 0.22 * Smooth(0.05, 0.13, at.Y)); });
  // The overhang at the gable, seen from below.
  const std::array<Vec2, 4> soffit{camera.Project({-0.35, kRidgeHeight, halfDepth}),
                                   camera.Project({0, kRidgeHeight, halfDepth}),
                                   camera.Project({0, foot, kDepth + kEaves}),
                                   camera.Project({-0.35, foot, kDepth + kEaves})};
  photo.Paint(
      Around(soffit, 0.02), 0, [&](Vec2 p) { return PolygonDistance(p, soffit); },
      [](Vec2, double, Tint) {
        return Tint{0.22, 0.16, 0.13};
      });
  const std::array<Vec2, 3> verge{camera.Project({-0.35, foot - 0.06, -kEaves}),
                                  camera.Project({-0.35, kRidgeHeight - 0.06, halfDepth}),
                                  camera.Project({-0.35, foot, kDepth + kEaves})};
  photo.Stroke(verge[0], verge[1], 0.026, 0.020, {0.20, 0.13, 0.10});
  photo.Stroke(verge[1], verge[2], 0.020, 0.016, {0.16, 0.11, 0.09});
}

}  // namespace tessa::tools
