#include <array>
#include <utility>

#include "scene_paint.h"
#include "scene_street.h"
#include "scenes.h"

namespace tessa::tools {
namespace {

// The world: metres, x to the right along the house front, y upwards, z away from the street. The
// house stands with its front left corner in the origin.
constexpr double kFrontWidth = 10.0;
constexpr double kDepth = 8.0;
constexpr double kWallHeight = 5.5;
constexpr double kRidgeHeight = 8.9;
constexpr double kEaves = 0.45;
constexpr double kFloorSlab = 2.95;
constexpr double kPlinth = 0.5;

const Surface kGround{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}};
const Surface kFront{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
const Surface kGable{{0, 0, 0}, {0, 0, 1}, {0, 1, 0}};

struct Window {
  Vec2 Centre;
  Vec2 Half;
  double Glass;     // °C in the middle of the panes
  double Radiator;  // kelvins that the radiator behind the wall below adds outside
  int Panes;
  bool Tilted;
  double Shutter;  // how far the roller shutter is down, 0..1
};

constexpr std::array<Window, 5> kFrontWindows{{
    {{1.95, 1.68}, {0.85, 0.72}, 7.0, 4.6, 2, true, 0.0},
    {{7.75, 1.68}, {1.10, 0.72}, 8.6, 5.2, 3, false, 0.0},
    {{1.95, 4.28}, {0.85, 0.68}, 4.2, 2.6, 2, false, 0.55},
    {{4.95, 4.40}, {0.45, 0.55}, 10.2, 0.0, 1, false, 0.0},
    {{7.75, 4.28}, {0.85, 0.68}, 6.2, 3.6, 2, false, 0.0},
}};
constexpr std::array<Window, 3> kGableWindows{{
    {{2.60, 1.68}, {0.60, 0.72}, 6.0, 3.4, 1, false, 0.0},
    {{5.60, 4.28}, {0.60, 0.68}, 3.6, 1.5, 1, false, 0.3},
    {{4.00, 6.75}, {0.50, 0.55}, 2.2, 0.0, 1, false, 0.0},
}};

/// Warm air from a window tilted open creeps up the wall above it.
double Plume(Vec2 at, const Window& window, double pixel) {
  const double rise = at.Y - (window.Centre.Y + window.Half.Y);
  if (rise < -0.1 || rise > 2.2) {
    return 0;
  }
  const double drift = 0.10 * Noise(rise * 2.1, 3.7, 71) * (0.3 + rise);
  const double width = window.Half.X * (0.55 + 0.16 * rise);
  const double wisps = 1 + 0.55 * Fractal(at.X * 3.1, at.Y * 1.6, 3, pixel * 3, 72);
  return 12.5 * wisps * Bell(at.X - window.Centre.X - drift, width) * std::exp(-rise / 0.5) *
         Smooth(-0.1, 0.05, rise);
}

/// What a window does to the wall around it, then the window itself.
double WithWindow(double wall, Vec2 at, const Window& window, double pixel) {
  const Vec2 q = at - window.Centre;
  if (std::abs(q.X) > window.Half.X + 1.2 || q.Y < -window.Half.Y - 1.2 ||
      q.Y > window.Half.Y + 2.3) {
    return wall;
  }
  const double d = BoxDistance(q, {}, window.Half);
  double celsius = wall;

  // The radiator in its niche, where the wall is thin; heat spreads sideways in the masonry.
  const double niche =
      BoxDistance(q, {0, -window.Half.Y - 0.47}, {window.Half.X * 0.78, 0.26}, 0.15);
  celsius += window.Radiator * Smooth(0.28, -0.22, niche) *
             (1 + 0.35 * Fractal(at.X * 2.3, at.Y * 2.3, 2, pixel * 2, 31));
  // The lintel reaches past the opening on both sides; the shutter box sits on the frame.
  const double lintel =
      BoxDistance(q, {0, window.Half.Y + 0.20}, {window.Half.X + 0.22, 0.12}, 0.03);
  celsius += 2.8 * Smooth(0.13, -0.08, lintel);
  const double shutter = BoxDistance(q, {0, window.Half.Y + 0.13}, {window.Half.X, 0.11}, 0.02);
  celsius += 1.9 * Smooth(0.05, -0.04, shutter);
  // The reveal is thin too, and sees the warm frame.
  celsius += 1.6 * std::exp(-std::max(d, 0.0) / 0.09);
  if (window.Tilted) {
    celsius += Plume(at, window, pixel);
  }
  // A metal sill: it mirrors the cold sky, and keeps the strip below it out of the night's view.
  const double sill =
      BoxDistance(q, {0, -window.Half.Y - 0.045}, {window.Half.X + 0.06, 0.03}, 0.01);
  celsius = Mix(celsius, -3.5, 0.9 * Cover(sill, std::max(pixel, 0.02)));

  const double inside = Cover(d, std::max(pixel, 0.025));
  if (inside <= 0) {
    return celsius;
  }
  const double paneWidth = 2 * window.Half.X / window.Panes;
  const double pane = std::floor((q.X + window.Half.X) / paneWidth);
  const double paneCentre = (pane + 0.5) * paneWidth - window.Half.X;
  const double glassEdge =
      BoxDistance(q, {paneCentre, 0}, {0.5 * paneWidth - 0.085, window.Half.Y - 0.09}, 0.01);
  double frame = 3.6 + 1.6 * Bell(d + 0.045, 0.02) + 0.6 * Noise(at.X * 3, at.Y * 3, 33);
  // Glass mirrors what lies opposite: more of the cold sky the higher one looks; a curtain or the
  // room behind shows only through its temperature. Houses and trees opposite end in a skyline. The
  // spacer at the rim leaks.
  const double height = (q.Y + window.Half.Y) / (2 * window.Half.Y);
  const double skyline = (at.Y < kFloorSlab ? 0.62 : 0.22) +
                         0.30 * Fractal(at.X * 1.1 + 3 * pane, window.Centre.Y, 4, pixel, 34);
  double glass = 4.0 + window.Glass - 2.6 * height -
                 2.4 * Smooth(skyline - 0.07, skyline + 0.07, height) +
                 1.7 * Fractal(at.X * 1.6 + 7 * pane, at.Y * 0.8, 3, pixel, 35) +
                 0.9 * Noise(pane * 3.1 + 0.5, window.Centre.X, 36);
  glass += 2.0 * std::exp(std::min(glassEdge, 0.0) / 0.045);
  if (window.Tilted && pane < 1) {
    // The gap at the top of the sash, wedge-shaped down both sides.
    const double fromTop = window.Half.Y - q.Y;
    const double gapTop = Bell(fromTop - 0.05, 0.05);
    const double side = 0.5 * paneWidth - std::abs(q.X - paneCentre);
    const double gapSide = Bell(side - 0.04, 0.03) * Clamp01(1 - fromTop / (2 * window.Half.Y));
    frame = Mix(frame, 17.5, std::max(gapTop, 0.8 * gapSide));
    glass += 3.0 * std::exp(-fromTop / 0.15);
  }
  double closed = Mix(frame, glass, Cover(glassEdge, std::max(pixel, 0.02)));
  // Slats hang outside with still air behind them; they are warm only at their lower end.
  const double slatsEnd = window.Half.Y * (1 - 2 * window.Shutter);
  const double slats = 0.9 + 0.5 * Grooves(at.Y, 0.055, 0.012, pixel) +
                       0.5 * Noise(at.X * 1.5, at.Y * 2.5, 37) +
                       1.8 * std::exp(-std::abs(q.Y - slatsEnd) / 0.07);
  closed = Mix(closed, slats, Smooth(-0.02, 0.02, q.Y - slatsEnd));
  return Mix(celsius, closed, inside);
}

/// Rendered masonry; `x` runs along the wall whose corners are at 0 and `length`.
double Wall(Vec2 at, double length, double pixel, std::uint32_t seed) {
  double celsius = 1.7 + 1.8 * Fractal(at.X * 0.45, at.Y * 0.6, 5, pixel * 0.5, seed) +
                   0.6 * Fractal(at.X * 3.5, at.Y * 3.5, 2, pixel * 3.5, seed + 9);
  // Blocks show through the render: their joints conduct better.
  const double course = std::floor(at.Y / 0.25);
  const double joints = std::max(
      Grooves(at.Y, 0.25, 0.018, pixel),
      0.7 * Grooves(at.X + 0.25 * (course - 2 * std::floor(course / 2)), 0.5, 0.018, pixel));
  celsius += 0.75 * joints * (0.7 + 0.6 * Noise(at.X * 0.8, at.Y * 0.8, seed + 3));
  // Heat bridges: the storey slab, the ring beam under the eaves, the concrete in the corners.
  const double wavering = 1 + 0.25 * Noise(at.X * 1.1, 0.5, seed + 5);
  celsius += 3.2 * wavering * Bell(at.Y - kFloorSlab, 0.11);
  celsius += 0.8 * Bell(at.Y - kFloorSlab, 0.35);
  celsius += 1.8 * Bell(at.Y - kWallHeight + 0.15, 0.22);
  celsius += 2.2 * std::exp(-std::abs(at.X - 0.14) / 0.16);
  celsius += 2.2 * std::exp(-std::abs(length - at.X - 0.14) / 0.16);
  // The very edge cools to two sides.
  celsius -= 2.0 * (std::exp(-std::abs(at.X) / 0.05) + std::exp(-std::abs(length - at.X) / 0.05));
  // The cellar wall is bare, the foot of the wall above it damp.
  celsius -= 0.9 * std::exp(-std::max(at.Y - kPlinth, 0.0) / 0.30) *
             (1 + Noise(at.X * 1.7, 0.3, seed + 6));
  const double plinth = 4.6 + 0.9 * Fractal(at.X * 1.2, at.Y * 2.5, 4, pixel * 2, seed + 7) -
                        1.8 * std::exp(-at.Y / 0.14);
  return Mix(celsius, plinth, Smooth(0.03, -0.03, at.Y - kPlinth));
}

double FrontHeat(Vec2 at, double pixel) {
  double celsius = Wall(at, kFrontWidth, pixel, 100);
  for (const Window& window : kFrontWindows) {
    celsius = WithWindow(celsius, at, window, pixel);
  }
  // The door: wood with three lights, warm at the threshold and where the draught stripping fails.
  const Vec2 door = at - Vec2{4.95, 1.25};
  const double d = BoxDistance(door, {}, {0.55, 1.08});
  celsius += 2.4 * std::exp(-std::max(d, 0.0) / 0.07) +
             1.5 * Smooth(0.3, 0, std::abs(door.X) - 0.6) * Bell(door.Y - 1.22, 0.09);
  double leaf = 5.0 - 0.35 * door.Y + 0.5 * Fractal(at.X * 9, at.Y * 1.1, 3, pixel * 6, 41);
  leaf += 0.6 * (Bell(std::abs(door.X) - 0.32, 0.03) + Bell(door.Y + 0.25, 0.03));
  for (int light = 0; light < 3; ++light) {
    const double pane = BoxDistance(door, {0.0, 0.62 - 0.36 * light}, {0.26, 0.13}, 0.02);
    leaf = Mix(leaf, 10.0 - 0.7 * light, Cover(pane, std::max(pixel, 0.025)));
  }
  leaf += 5.5 * std::exp(-std::max(door.Y + 1.08, 0.0) / 0.06) +
          2.6 * std::exp(-std::max(0.55 - door.X, 0.0) / 0.035);
  celsius = Mix(celsius, leaf, Cover(d, std::max(pixel, 0.02)));
  // The step is stone that has soaked up the draught.
  const double step = BoxDistance(at, {4.95, 0.09}, {0.8, 0.085}, 0.02);
  celsius = Mix(celsius, -1.2 + 2.0 * Bell(door.X, 0.5), Cover(step, std::max(pixel, 0.02)));
  // A lamp beside the door.
  celsius = Mix(celsius, 19.0, Bell(Length(at - Vec2{5.85, 2.02}), std::max(0.075, pixel)));
  // The shelter of the eaves: less open sky, and above all no rain pipe without its cold streak.
  celsius += 1.0 * Smooth(kWallHeight - 1.2, kWallHeight, at.Y);
  const double pipe = std::abs(at.X - 9.72) - 0.055;
  celsius = Mix(celsius, -4.2 + 1.2 * Bell(at.X - 9.70, 0.02) + Grooves(at.Y, 1.9, 0.04, pixel),
                Cover(pipe, std::max(pixel, 0.02)));
  return celsius;
}

double GableHeat(Vec2 at, double pixel) {
  double celsius = Wall(at, kDepth, pixel, 200) - 0.7;
  for (const Window& window : kGableWindows) {
    celsius = WithWindow(celsius, at, window, pixel);
  }
  // The attic is not heated.
  celsius -= 1.7 * Smooth(kWallHeight - 0.1, kWallHeight + 0.3, at.Y);
  // The flue runs up behind this wall.
  return celsius + 2.6 * Bell(at.X - 4.55 - 0.02 * at.Y, 0.26) * Smooth(2.0, 5.0, at.Y) *
                       (1 + 0.4 * Noise(1.5, at.Y * 1.4, 51));
}

/// The front slope: x along the eaves, y up the slope from them.
double RoofHeat(Vec2 at, double length, double pixel) {
  double celsius = -7.4 + 1.7 * Fractal(at.X * 0.35, at.Y * 0.5, 5, pixel * 0.4, 300);
  // Courses of tiles, each a little warmer under the overlap; rafters show as cold lines.
  const double course = at.Y / 0.34;
  const double visible = Clamp01(1.6 - 3.0 * pixel / 0.34);
  celsius += visible * 0.9 * (0.5 - (course - std::floor(course)));
  celsius += 0.45 * Grooves(at.X + 0.15 * std::floor(course), 0.30, 0.03, pixel);
  celsius += visible * 0.35 * Noise(std::floor(at.X / 0.3), std::floor(course), 303);
  celsius -= 1.1 * Grooves(at.X - 0.2, 0.82, 0.08, pixel);
  // Warm air gathers under the ridge.
  celsius += 2.2 * Smooth(length - 1.3, length, at.Y) - 1.4 * Smooth(0.6, 0.0, at.Y);
  // Snow the sun has not reached, slid down towards the eaves.
  const double snow = at.Y - 0.75 - 0.9 * Fractal(at.X * 0.55, 0.7, 4, pixel * 0.5, 304) -
                      0.9 * Smooth(6.0, 10.0, at.X);
  celsius = Mix(celsius, -10.6 + 0.5 * Fractal(at.X * 1.4, at.Y * 1.4, 3, pixel, 305),
                Smooth(0.10, -0.10, snow));
  // Missing insulation: a patch that bleeds upwards between two rafters, and the way it has melted.
  const Vec2 leak = at - Vec2{7.45, 1.95};
  const double ragged = 1 + 0.5 * Fractal(at.X * 1.9, at.Y * 1.3, 4, pixel * 1.5, 306);
  celsius += 16.5 * ragged * Bell(leak.X, 0.62) *
             (leak.Y < 0 ? Bell(leak.Y, 0.50) : std::exp(-leak.Y / 1.1)) *
             (1 - 0.35 * Grooves(at.X - 0.2, 0.82, 0.07, pixel));
  // A roof window: its glass mirrors the zenith, its frame leaks.
  const Vec2 light = at - Vec2{3.0, 2.55};
  const double d = BoxDistance(light, {}, {0.42, 0.62}, 0.02);
  celsius += 4.2 * std::exp(-std::max(d, 0.0) / 0.10) +
             (light.Y > 0.6 ? 3.0 * Bell(light.X, 0.3) * std::exp(-(light.Y - 0.6) / 0.4) : 0.0);
  const double rim = 1.2 + 1.8 * Smooth(-0.2, 0.6, light.Y);
  const double glass = -5.5 - 2.2 * light.Y + 0.6 * Noise(at.X * 2, at.Y * 2, 308);
  const double pane = BoxDistance(light, {}, {0.33, 0.53}, 0.02);
  return Mix(celsius, Mix(rim, glass, Cover(pane, std::max(pixel, 0.03))),
             Cover(d, std::max(pixel, 0.03)));
}

double GroundHeat(Vec2 at, double pixel) {
  // at.Y is the world's z: the house stands from 0 on, the street lies below -5.7.
  const double undulation = Fractal(at.X * 0.5, at.Y * 0.9, 5, pixel * 0.7, 400);
  double celsius =
      -7.2 + 1.9 * undulation + 0.7 * Fractal(at.X * 3.2, at.Y * 3.2, 3, pixel * 3, 405);
  // The house shields what lies near it from the sky.
  const double toHouse =
      BoxDistance(at, {0.5 * kFrontWidth, 0.5 * kDepth}, {0.5 * kFrontWidth, 0.5 * kDepth});
  celsius += 3.2 * std::exp(-std::max(toHouse, 0.0) / 1.3);
  // Paving that was swept: the pavement along the street and the way to the door.
  const double way = std::max(std::abs(at.X - 4.95) - 0.75 - 0.10 * undulation, at.Y);
  const double pavement = std::abs(at.Y + 4.6) - 0.95 - 0.12 * undulation;
  const double slabs =
      0.5 * std::max(Grooves(at.X, 0.5, 0.02, pixel), Grooves(at.Y, 0.5, 0.02, pixel));
  const double swept = -3.2 + 1.3 * Fractal(at.X * 1.3, at.Y * 1.3, 4, pixel, 410) + slabs;
  celsius = Mix(celsius, swept, Smooth(0.15, -0.15, std::min(way, pavement)));
  // The street: slush, with tracks worn down to asphalt that still holds the day's warmth.
  const double street = at.Y + 5.7;
  double asphalt = -4.6 + 1.7 * Fractal(at.X * 0.6, at.Y * 2.2, 5, pixel, 420);
  for (const double track : {-6.75, -8.2, -9.9}) {
    const double wander = 0.10 * Noise(at.X * 0.35, track, 421);
    asphalt += (2.8 + 1.0 * Noise(at.X * 1.1, track * 3, 422)) * Bell(at.Y - track - wander, 0.17);
  }
  celsius = Mix(celsius, asphalt, Smooth(0.04, -0.04, street));
  celsius -= 1.4 * Bell(street - 0.05, 0.06);
  // A gully cover breathes out what comes from below.
  const double cover = EllipseDistance(at, {0.9, -7.5}, {0.33, 0.33});
  celsius += 2.0 * std::exp(-std::max(cover, 0.0) / 0.25);
  celsius = Mix(celsius, 3.2 + 0.8 * Noise(at.X * 9, at.Y * 9, 423), Cover(cover, pixel));
  // Far away the air in between counts for more than the snow.
  return Mix(celsius, -5.8, Smooth(5, 45, at.Y));
}

void PaintSky(Canvas& canvas, const Camera& camera) {
  const Box all = canvas.Everything();
  const double horizon = camera.Project(camera.Eye() + Vec3{0.55, 0, 0.84} * 1000.0).Y;
  canvas.Apply([&](Vec2 p, double) {
    const double up = std::max(0.0, (horizon - p.Y) / (horizon - all.Top));
    // Near the horizon one looks through more air, which is warmer than space behind it.
    const double clear = -14.9 + 7.5 * std::exp(-up / 0.20);
    const double veil = Fractal(p.X * 0.5 + 0.2 * p.Y, p.Y * 1.6, 5, canvas.Pixel(), 500);
    return std::max(-15.0, clear + 2.4 * Smooth(-0.15, 0.6, veil) * Smooth(0.0, 0.4, up));
  });
}

/// A bare tree: each branch forks into two or three thinner ones until they are twigs.
void PaintBranch(Canvas& canvas, const Camera& camera, Random& random, Vec3 from, Vec3 direction,
                 double length, double radius, int forks) {
  const Vec3 to = from + direction * length;
  const double thinner = radius * 0.66;
  const double near = 4.71 / std::sqrt(Dot(from - camera.Eye(), from - camera.Eye()));
  const double celsius = -5.4 + 9.0 * std::min(radius, 0.14) + random.Uniform(-0.3, 0.3);
  canvas.Stroke(camera.Project(from), camera.Project(to), radius * near, thinner * near, celsius);
  if (forks == 0) {
    return;
  }
  const int count = random.Uniform() < 0.4 ? 3 : 2;
  for (int i = 0; i < count; ++i) {
    const double turn = random.Uniform(0.18, 0.62) * (i % 2 == 0 ? 1 : -1);
    const Vec2 turned = Rotate({direction.X, direction.Y}, turn);
    const Vec3 next = Unit({turned.X, turned.Y + 0.10, random.Uniform(-0.3, 0.3)});
    PaintBranch(canvas, camera, random, to, next, length * random.Uniform(0.66, 0.88), thinner,
                forks - 1);
  }
}

void PaintBackground(Canvas& canvas, const Camera& camera) {
  // A wooded rise far behind, then a neighbour's house to the right.
  const Surface rise{{0, 0, 60}, {1, 0, 0}, {0, 1, 0}};
  camera.Paint(
      canvas, rise, {-20, -5, 110, 14}, 0.5,
      [](Vec2 at) {
        return 0.6 * (at.Y - 6.0 - 2.6 * Fractal(at.X * 0.16, at.Y * 0.12, 6, 0.02, 510));
      },
      [](Vec2 at, double, double pixel, double) {
        return -5.6 - 0.10 * at.Y + 0.7 * Fractal(at.X * 0.5, at.Y * 0.5, 4, pixel * 0.5, 515);
      });
  const Surface neighbour{{24, 0, 17}, {1, 0, 0}, {0, 1, 0}};
  const std::array<Vec2, 5> outline{{{0, -0.5}, {9, -0.5}, {9, 4.6}, {4.5, 8.6}, {0, 4.6}}};
  camera.Paint(
      canvas, neighbour, {-1, -0.5, 10, 9}, 0.08,
      [&](Vec2 at) { return PolygonDistance(at, outline); },
      [](Vec2 at, double d, double pixel, double) {
        double celsius = -2.6 + 0.6 * Fractal(at.X * 0.5, at.Y * 0.5, 4, pixel * 0.5, 520);
        celsius = Mix(celsius, -8.0, Smooth(-0.35, -0.15, d) * Smooth(4.4, 4.8, at.Y));
        for (const Vec2 window : {Vec2{2.2, 1.7}, Vec2{6.6, 1.7}, Vec2{2.2, 4.3}, Vec2{4.5, 6.4}}) {
          const double pane = BoxDistance(at, window, {0.6, 0.65}, 0.03);
          celsius = Mix(celsius, 2.4 + window.Y * 0.2, Cover(pane, std::max(pixel, 0.1)));
        }
        return celsius;
      });
}

void PaintHouse(Canvas& canvas, const Camera& camera) {
  const double halfDepth = 0.5 * kDepth;
  const std::array<Vec2, 5> gable{
      {{0, 0}, {kDepth, 0}, {kDepth, kWallHeight}, {halfDepth, kRidgeHeight}, {0, kWallHeight}}};
  camera.Paint(
      canvas, kGable, {0, 0, kDepth, kRidgeHeight}, 0.02,
      [&](Vec2 at) { return PolygonDistance(at, gable); },
      [](Vec2 at, double, double pixel, double) { return GableHeat(at, pixel); });
  camera.Paint(
      canvas, kFront, {0, 0, kFrontWidth, kWallHeight}, 0.02,
      [](Vec2 at) {
        return BoxDistance(at, {0.5 * kFrontWidth, 0.5 * kWallHeight},
                           {0.5 * kFrontWidth, 0.5 * kWallHeight});
      },
      [](Vec2 at, double, double pixel, double) { return FrontHeat(at, pixel); });

  // The chimney stands behind the front slope's upper edge; its exhaust is faint, for gas hardly
  // radiates.
  const double pitch = (kRidgeHeight - kWallHeight) / halfDepth;
  const Surface stack{{5.7, 0, 3.75}, {1, 0, 0}, {0, 1, 0}};
  const Surface stackSide{{5.7, 0, 3.75}, {0, 0, 1}, {0, 1, 0}};
  const auto brick = [](Vec2 at, double, double pixel, double) {
    const double height = at.Y - 8.3;
    double celsius = 0.8 + 3.4 * height + 2.4 * Fractal(at.X * 2.6, at.Y * 1.7, 4, pixel * 2, 320);
    celsius += 0.8 * std::max(Grooves(at.Y, 0.125, 0.01, pixel), 0.0);
    celsius -= 2.4 * Bell(at.Y - 9.95, 0.07);  // the cap slab juts out and radiates to the sky
    return celsius;
  };
  canvas.Apply([&](Vec2 p, double below) {
    Vec2 at;
    if (!camera.Meet(stack, p, at) || at.Y < 9.8 || at.Y > 13.5) {
      return below;
    }
    const double rise = at.Y - 10.0;
    const double bend = 0.35 + 0.32 * rise * rise * 0.5 + 0.16 * Noise(rise * 1.3, 0.2, 330);
    const double gas = Bell(at.X - bend, 0.16 + 0.17 * rise) * std::exp(-std::max(rise, 0.0) / 1.0);
    const double wisps = 0.75 + 0.8 * Fractal(at.X * 2.2 - rise, at.Y * 1.5, 4, 0.02, 331);
    return below + std::max(0.0, 7.5 * gas * wisps * Smooth(-0.2, 0.1, rise));
  });
  const auto stackOutline = [](double width, double flueRadius) {
    return [width, flueRadius](Vec2 at) {
      const double shaft = BoxDistance(at, {0.5 * width, 9.0}, {0.5 * width, 1.05}, 0.01);
      const double cap = BoxDistance(at, {0.5 * width, 9.95}, {0.5 * width + 0.06, 0.07}, 0.01);
      const double flue = BoxDistance(at, {0.5 * width, 10.1}, {flueRadius, 0.14}, 0.02);
      return std::min({shaft, cap, flue});
    };
  };
  const auto stackHeat = [&](Vec2 at, double d, double pixel, double below) {
    return Mix(brick(at, d, pixel, below), 23.5 - 14 * std::abs(at.Y - 10.12),
               Smooth(10.0, 10.04, at.Y));
  };
  camera.Paint(canvas, stackSide, {-0.1, 7.9, 0.7, 10.3}, 0.03, stackOutline(0.6, 0.0), stackHeat);
  camera.Paint(canvas, stack, {-0.1, 7.9, 0.8, 10.3}, 0.03, stackOutline(0.7, 0.16), stackHeat);

  // The front slope with its overhang, then the gutter, the verge board and the eaves' shadow.
  const double run = halfDepth + kEaves;
  const double slope = run * std::sqrt(1 + pitch * pitch);
  const Surface roof{{0, kWallHeight - kEaves * pitch, -kEaves}, {1, 0, 0}, Unit({0, pitch, 1})};
  camera.Paint(
      canvas, roof, {-0.4, 0, kFrontWidth + 0.4, slope}, 0.03,
      [&](Vec2 at) {
        return BoxDistance(at, {0.5 * kFrontWidth, 0.5 * slope},
                           {0.5 * kFrontWidth + 0.35, 0.5 * slope});
      },
      [&](Vec2 at, double, double pixel, double) {
        const double foot = slope - at.Y;
        // Where the stack comes through, the flashing is warm.
        return RoofHeat(at, slope, pixel) + 5.0 * Bell(at.X - 6.05, 0.45) * std::exp(-foot / 0.35);
      });
  const Surface eaves{{-0.35, kWallHeight - kEaves * pitch - 0.16, -kEaves}, {1, 0, 0}, {0, 1, 0}};
  camera.Paint(
      canvas, eaves, {0, 0, kFrontWidth + 0.7, 0.18}, 0.03,
      [](Vec2 at) {
        return BoxDistance(at, {0.5 * kFrontWidth + 0.35, 0.08}, {0.5 * kFrontWidth + 0.35, 0.08},
                           0.05);
      },
      [](Vec2 at, double, double pixel, double) {
        // Bare zinc: the upper half mirrors the sky, the lower half the warmer ground and wall.
        return -7.0 + 4.2 * Smooth(0.11, 0.02, at.Y) + 0.8 * Grooves(at.X, 1.0, 0.03, pixel) +
               0.5 * Noise(at.X * 0.7, 0.1, 340);
      });
  const std::array<Vec2, 4> soffit{
      camera.Project({-0.35, kRidgeHeight, halfDepth}),
      camera.Project({0, kRidgeHeight, halfDepth}),
      camera.Project({0, kWallHeight - kEaves * pitch, kDepth + kEaves}),
      camera.Project({-0.35, kWallHeight - kEaves * pitch, kDepth + kEaves})};
  canvas.Paint(
      Around(soffit, 0.02), 0.012, [&](Vec2 p) { return PolygonDistance(p, soffit); },
      [](Vec2 p, double, double) { return -2.6 + 0.5 * Noise(p.X * 9, p.Y * 9, 341); });
  const std::array<Vec2, 3> verge{
      camera.Project({-0.35, kWallHeight - kEaves * pitch - 0.06, -kEaves}),
      camera.Project({-0.35, kRidgeHeight - 0.06, halfDepth}),
      camera.Project({-0.35, kWallHeight - kEaves * pitch, kDepth + kEaves})};
  canvas.Stroke(verge[0], verge[1], 0.026, 0.020, -4.3);
  canvas.Stroke(verge[1], verge[2], 0.020, 0.016, -4.3);
}

void PaintShrubs(Canvas& canvas, const Camera& camera) {
  struct Shrub {
    double X;
    double Z;
    double Width;
    double Height;
    std::uint32_t Seed;
  };
  for (const Shrub& shrub : {Shrub{-2.9, 3.4, 1.5, 2.2, 610}, Shrub{-0.1, -1.0, 0.65, 0.8, 620},
                             Shrub{3.35, -0.8, 0.5, 0.9, 630}, Shrub{13.0, 1.5, 1.7, 2.3, 640}}) {
    Random random(shrub.Seed);
    const Vec3 foot{shrub.X, 0, shrub.Z};
    const auto twigs = [&](int count) {
      for (int i = 0; i < count; ++i) {
        const double lean = random.Uniform(-0.8, 0.8) * shrub.Width / shrub.Height;
        PaintBranch(canvas, camera, random, foot + Vec3{lean * 0.5, 0, 0}, Unit({lean, 1, 0}),
                    0.36 * shrub.Height, 0.02, 4);
      }
    };
    twigs(7);
    const Surface plane{foot, {0.88, 0, -0.48}, {0, 1, 0}};
    camera.Paint(
        canvas, plane, {-1.5 * shrub.Width, -0.1, 1.5 * shrub.Width, 1.5 * shrub.Height}, 0.05,
        [&](Vec2 at) {
          return EllipseDistance(at, {0, 0.38 * shrub.Height},
                                 {0.85 * shrub.Width, 0.5 * shrub.Height}) +
                 0.22 * Fractal(at.X * 2.6, at.Y * 2.6, 5, 0.02, shrub.Seed);
        },
        [&](Vec2 at, double, double pixel, double) {
          // Leaves hold some of the ground's warmth, snow lies on top of them.
          const double snow =
              Smooth(0.35, 0.95, at.Y / shrub.Height + 0.5 * Noise(at.X * 3, at.Y * 5, 650));
          return -3.6 - 3.0 * snow +
                 2.4 * Fractal(at.X * 7, at.Y * 7, 4, pixel * 5, shrub.Seed + 7);
        });
    twigs(4);
  }
}

}  // namespace

Scene HouseInWinter(int width, int height) {
  Canvas canvas(width, height, 4, 3);
  const Camera camera({-4.5, 1.6, -16}, {4.2, 4.1, 0}, 4.71, {2, 1.5});
  PaintSky(canvas, camera);
  PaintBackground(canvas, camera);
  Random random(7);
  PaintBranch(canvas, camera, random, {-3.2, 0, 13}, {0.05, 1, 0}, 3.2, 0.21, 7);
  PaintBranch(canvas, camera, random, {17.5, 0, 8}, {-0.08, 1, 0}, 2.9, 0.20, 7);
  canvas.Blur(0.004);  // the focus is on the house
  camera.Paint(
      canvas, kGround, {-60, -20, 120, 58}, 0, [](Vec2 at) { return at.Y - 58; },
      [](Vec2 at, double, double pixel, double) { return GroundHeat(at, pixel); });
  PaintHouse(canvas, camera);
  PaintShrubs(canvas, camera);
  PaintPeople(canvas, camera);
  PaintCar(canvas, camera, {2.2, 0, -7.4});
  return std::move(canvas).Take();
}

}  // namespace tessa::tools
