#include "photo_house.h"

#include "photo_street.h"
#include "photos.h"

namespace tessa::tools {
namespace {

const Surface kFront{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
const Surface kGable{{0, 0, 0}, {0, 0, 1}, {0, 1, 0}};

constexpr Tint kLampLight{1.0, 0.74, 0.40};
constexpr Vec2 kDoorLamp{5.85, 2.02};

struct Window {
  Vec2 Centre;
  Vec2 Half;
  int Panes;
  double Lamp;     // How brightly the room behind is lit.
  double Shutter;  // How far the roller shutter is down.
};

constexpr std::array<Window, 5> kFrontWindows{{
    {{1.95, 1.68}, {0.85, 0.72}, 2, 0.95, 0.0},
    {{7.75, 1.68}, {1.10, 0.72}, 3, 0.80, 0.0},
    {{1.95, 4.28}, {0.85, 0.68}, 2, 0.10, 0.55},
    {{4.95, 4.40}, {0.45, 0.55}, 1, 0.65, 0.0},
    {{7.75, 4.28}, {0.85, 0.68}, 2, 0.05, 0.0},
}};
constexpr std::array<Window, 3> kGableWindows{{
    {{2.60, 1.68}, {0.60, 0.72}, 1, 0.45, 0.0},
    {{5.60, 4.28}, {0.60, 0.68}, 1, 0.0, 0.3},
    {{4.00, 6.75}, {0.50, 0.55}, 1, 0.0, 0.0},
}};

/// What is seen through or in a pane.
Tint Glass(Vec2 q, Vec2 at, const Window& window, double pane, double pixel) {
  const double height = (q.Y + window.Half.Y) / (2 * window.Half.Y);
  // The evening sky over the roofs opposite.
  const double skyline = (at.Y < 2.95 ? 0.62 : 0.22) +
                         0.30 * Fractal(at.X * 1.1 + 3 * pane, window.Centre.Y, 4, pixel, 34);
  const Tint mirrored =
      Blend({0.10, 0.11, 0.14}, {0.36, 0.40, 0.50}, Smooth(skyline - 0.05, skyline + 0.05, height));
  // Curtains to both sides, the lamp's light strongest in the middle of the room.
  const double side = std::abs(q.X) / window.Half.X;
  const double folds = 0.10 * std::sin(at.X * 46) * Smooth(0.55, 0.75, side);
  const double furniture = 0.35 * Smooth(0.34, 0.26, height + 0.16 * Noise(at.X * 3.1, 1.5, 61));
  const double bright = window.Lamp * (1.02 - 0.32 * Smooth(0.5, 0.8, side) + folds - furniture +
                                       0.10 * Noise(at.X * 2, at.Y * 2, 62));
  return mirrored * (1 - 0.85 * window.Lamp) + kLampLight * bright;
}

Tint WithWindow(Tint wall, Vec2 at, const Window& window, double pixel) {
  const Vec2 q = at - window.Centre;
  if (std::abs(q.X) > window.Half.X + 1.2 || std::abs(q.Y) > window.Half.Y + 1.6) {
    return wall;
  }
  const double edge = std::max(pixel, 0.012);
  const double d = BoxDistance(q, {}, window.Half);
  // Rain has washed dirt down from both ends of the sill.
  const double streaks = Bell(std::abs(q.X) - window.Half.X - 0.03, 0.05) *
                         Smooth(0.0, -0.15, q.Y + window.Half.Y) *
                         std::exp((q.Y + window.Half.Y) / 0.6);
  Tint tint = wall * (1 - 0.16 * streaks);
  tint = tint + kLampLight * (0.16 * window.Lamp * std::exp(-std::max(d, 0.0) / 0.12));
  const double sill =
      BoxDistance(q, {0, -window.Half.Y - 0.045}, {window.Half.X + 0.06, 0.035}, 0.01);
  tint = tint * (1 - 0.35 * Smooth(0.14, 0.0, std::abs(q.Y + window.Half.Y + 0.13)) *
                         Smooth(0.05, -0.05, std::abs(q.X) - window.Half.X));
  tint = Blend(tint, {0.66, 0.70, 0.78}, Cover(sill, edge));  // Snow lies on it.
  const double inside = Cover(d, edge);
  if (inside <= 0) {
    return tint;
  }
  const double paneWidth = 2 * window.Half.X / window.Panes;
  const double pane = std::floor((q.X + window.Half.X) / paneWidth);
  const double paneCentre = (pane + 0.5) * paneWidth - window.Half.X;
  const double glassEdge =
      BoxDistance(q, {paneCentre, 0}, {0.5 * paneWidth - 0.085, window.Half.Y - 0.09}, 0.01);
  // The reveal throws a shadow on the top and left of the frame.
  Tint frame = Tint{0.60, 0.60, 0.62} * (1 - 0.35 * Smooth(-0.05, 0.0, d));
  Tint closed = Blend(frame, Glass(q, at, window, pane, pixel), Cover(glassEdge, edge));
  const double slatsEnd = window.Half.Y * (1 - 2 * window.Shutter);
  const Tint slats = Grey(0.44 - 0.10 * Grooves(at.Y, 0.055, 0.012, pixel) +
                          0.02 * Noise(at.X * 1.5, at.Y * 9, 37));
  closed = Blend(closed, slats, Smooth(-0.01, 0.01, q.Y - slatsEnd));
  return Blend(tint, closed, inside);
}

/// Cream-coloured render that has seen some winters, over a grey plinth.
Tint Wall(Vec2 at, double pixel, std::uint32_t seed) {
  const double mottled = 0.05 * Fractal(at.X * 0.45, at.Y * 0.6, 5, pixel * 0.5, seed) +
                         0.05 * Fractal(at.X * 7, at.Y * 7, 3, pixel * 7, seed + 9);
  const double damp = 0.10 * Smooth(0.9, 0.5, at.Y + 0.25 * Noise(at.X * 1.7, 0.3, seed + 6));
  const double shade = 1.0 + mottled - damp - 0.22 * Smooth(kWallHeight - 0.7, kWallHeight, at.Y);
  const Tint render = Tint{0.565, 0.525, 0.465} * shade;
  const Tint plinth = Grey(0.30 + 0.06 * Fractal(at.X * 2, at.Y * 2, 4, pixel * 2, seed + 7));
  return Blend(render, plinth, Smooth(0.02, -0.02, at.Y - 0.5));
}

Tint FrontTint(Vec2 at, double pixel) {
  const double edge = std::max(pixel, 0.012);
  Tint tint = Wall(at, pixel, 100);
  const double toLamp = Length(at - kDoorLamp);
  tint = tint + kLampLight * (0.42 * std::exp(-toLamp / 0.55));
  for (const Window& window : kFrontWindows) {
    tint = WithWindow(tint, at, window, pixel);
  }
  // A green door with three lights, in a white frame.
  const Vec2 door = at - Vec2{4.95, 1.25};
  tint = Blend(tint, Grey(0.62), Cover(BoxDistance(door, {}, {0.63, 1.14}), edge));
  Tint leaf = Tint{0.13, 0.23, 0.19} * (1 + 0.15 * Fractal(at.X * 12, at.Y * 1.2, 3, pixel, 41));
  leaf = leaf * (1 - 0.35 * (Bell(std::abs(door.X) - 0.32, 0.02) + Bell(door.Y + 0.25, 0.02)));
  leaf = leaf + kLampLight * (0.20 * std::exp(-toLamp / 0.6));
  for (int light = 0; light < 3; ++light) {
    const double pane = BoxDistance(door, {0.0, 0.62 - 0.36 * light}, {0.26, 0.13}, 0.02);
    leaf = Blend(leaf, kLampLight * 0.72, Cover(pane, edge));
  }
  leaf = Blend(leaf, Grey(0.75), Cover(Length(door - Vec2{-0.44, -0.15}) - 0.04, edge));
  tint = Blend(tint, leaf, Cover(BoxDistance(door, {}, {0.55, 1.08}), edge));
  const double step = BoxDistance(at, {4.95, 0.09}, {0.8, 0.085}, 0.02);
  tint = Blend(tint, Tint{0.42, 0.42, 0.43} + kLampLight * 0.08, Cover(step, edge));
  const double pipe = std::abs(at.X - 9.72) - 0.055;
  tint = tint * (1 - 0.3 * Bell(at.X - 9.83, 0.04));
  tint = Blend(tint, Grey(0.38 + 0.16 * Bell(at.X - 9.70, 0.02)), Cover(pipe, edge));
  return tint;
}

Tint GableTint(Vec2 at, double pixel) {
  Tint tint = Wall(at, pixel, 200);
  for (const Window& window : kGableWindows) {
    tint = WithWindow(tint, at, window, pixel);
  }
  return {tint.X * 0.74, tint.Y * 0.77, tint.Z * 0.86};
}

void PaintHouse(Photo& photo, const Camera& camera) {
  const double halfDepth = 0.5 * kDepth;
  const std::array<Vec2, 5> gable{
      {{0, 0}, {kDepth, 0}, {kDepth, kWallHeight}, {halfDepth, kRidgeHeight}, {0, kWallHeight}}};
  photo.Paint(
      camera, kGable, {0, 0, kDepth, kRidgeHeight}, 0.02,
      [&](Vec2 at) { return PolygonDistance(at, gable); },
      [](Vec2 at, double, double pixel, Tint) { return GableTint(at, pixel); });
  photo.Paint(
      camera, kFront, {0, 0, kFrontWidth, kWallHeight}, 0.02,
      [](Vec2 at) {
        return BoxDistance(at, {0.5 * kFrontWidth, 0.5 * kWallHeight},
                           {0.5 * kFrontWidth, 0.5 * kWallHeight});
      },
      [](Vec2 at, double, double pixel, Tint) { return FrontTint(at, pixel); });
  PaintRoof(photo, camera);
  photo.Glow(camera.Project({kDoorLamp.X, kDoorLamp.Y, 0}), 0.016, Grey(0.9));
  photo.Glow(camera.Project({kDoorLamp.X, kDoorLamp.Y, 0}), 0.07, kLampLight * 0.30);
}

}  // namespace

Bytes PhotoOfHouse(int width, int height) {
  Photo photo(width, height, 4, 3);
  const Camera camera({-4.5, 1.6, -16}, {4.2, 4.1, 0}, 4.71, {2, 1.5});
  PaintDuskBehindHouse(photo, camera);
  PaintSnowyGround(photo, camera);
  PaintHouse(photo, camera);
  PaintShrubs(photo, camera);
  PaintWalkers(photo, camera);
  PaintParkedCar(photo, camera);
  photo.Blur(0.0035);
  return photo.Develop(0.012, 41);
}

}  // namespace tessa::tools
