#include "photo_street.h"

namespace tessa::tools {
namespace {

void PaintSky(Photo& photo, const Camera& camera) {
  const Box all = photo.Everything();
  const double horizon = camera.Project(camera.Eye() + Vec3{0.55, 0, 0.84} * 1000.0).Y;
  photo.Apply(all, [&](Vec2 p, Tint) {
    const double up = Clamp01((horizon - p.Y) / (horizon - all.Top));
    // The sun has set to the right.
    const double side = Smooth(0.0, 4.0, p.X);
    const Tint afterglow = Blend({0.62, 0.56, 0.60}, {0.92, 0.66, 0.47}, side);
    Tint sky = Blend(afterglow, {0.30, 0.37, 0.53}, Smooth(0.0, 0.75, up));
    const double veil = Smooth(-0.1, 0.6, Fractal(p.X * 0.5 + 0.2 * p.Y, p.Y * 1.6, 5, 0.01, 500));
    sky = Blend(sky, Blend({0.44, 0.45, 0.55}, {0.90, 0.66, 0.56}, 0.8 * side * (1 - up)),
                0.55 * veil);
    return sky;
  });
}

/// A bare tree: each branch forks into two or three thinner ones until they are twigs.
void PaintBranch(Photo& photo, const Camera& camera, Random& random, Vec3 from, Vec3 direction,
                 double length, double radius, int forks) {
  const Vec3 to = from + direction * length;
  const double thinner = radius * 0.66;
  const double near = 4.71 / std::sqrt(Dot(from - camera.Eye(), from - camera.Eye()));
  const double bark = 0.13 + random.Uniform(-0.3, 0.3) * 0.05;
  photo.Stroke(camera.Project(from), camera.Project(to), radius * near, thinner * near,
               {bark, bark * 0.95, bark});
  if (forks == 0) {
    return;
  }
  const int count = random.Uniform() < 0.4 ? 3 : 2;
  for (int i = 0; i < count; ++i) {
    const double turn = random.Uniform(0.18, 0.62) * (i % 2 == 0 ? 1 : -1);
    const Vec2 turned = Rotate({direction.X, direction.Y}, turn);
    const Vec3 next = Unit({turned.X, turned.Y + 0.10, random.Uniform(-0.3, 0.3)});
    PaintBranch(photo, camera, random, to, next, length * random.Uniform(0.66, 0.88), thinner,
                forks - 1);
  }
}

Tint GroundTint(Vec2 at, double pixel) {
  const double undulation = Fractal(at.X * 0.5, at.Y * 0.9, 5, pixel * 0.7, 400);
  const double rough = Fractal(at.X * 3.2, at.Y * 3.2, 3, pixel * 3, 405);
  Tint tint = Tint{0.585, 0.63, 0.73} * (1 + 0.12 * undulation + 0.07 * rough);
  // Light from the windows and the lamp at the door falls on the snow.
  for (const Vec2 window : {Vec2{1.95, -0.9}, Vec2{7.75, -0.9}, Vec2{5.4, -0.5}}) {
    tint =
        tint + Tint{0.24, 0.15, 0.03} * (Bell(at.X - window.X, 1.0) * Bell(at.Y - window.Y, 0.9));
  }
  const double way = std::max(std::abs(at.X - 4.95) - 0.75 - 0.10 * undulation, at.Y);
  const double pavement = std::abs(at.Y + 4.6) - 0.95 - 0.12 * undulation;
  const double joints = std::max(Grooves(at.X, 0.5, 0.02, pixel), Grooves(at.Y, 0.5, 0.02, pixel));
  const Tint swept = Tint{0.36, 0.36, 0.38} *
                     (1 + 0.18 * Fractal(at.X * 1.3, at.Y * 1.3, 4, pixel, 410) - 0.3 * joints);
  tint = Blend(tint, swept, Smooth(0.12, -0.12, std::min(way, pavement)));
  // The street: slush, worn down to wet asphalt in the tracks.
  const double street = at.Y + 5.7;
  double bare = 0.25 + 0.45 * Fractal(at.X * 0.6, at.Y * 2.2, 5, pixel, 420);
  for (const double track : {-6.75, -8.2, -9.9}) {
    const double wander = 0.10 * Noise(at.X * 0.35, track, 421);
    bare += 0.9 * Bell(at.Y - track - wander, 0.22);
  }
  const Tint slush = Tint{0.46, 0.475, 0.53} * (1 + 0.10 * rough);
  const Tint asphalt = Tint{0.20, 0.20, 0.225} * (1 + 0.2 * rough);
  tint = Blend(tint, Blend(slush, asphalt, Smooth(0.2, 0.8, bare)), Smooth(0.03, -0.03, street));
  tint = Blend(tint, Grey(0.44), 0.8 * Bell(street - 0.05, 0.05));
  const double cover = EllipseDistance(at, {0.9, -7.5}, {0.33, 0.33});
  tint = Blend(tint, Grey(0.13), Cover(cover, std::max(pixel, 0.03)));
  // Feet of walls and things keep the sky's light off.
  const double toHouse = BoxDistance(at, {5.0, 4.0}, {5.0, 4.0});
  tint = tint * (1 - 0.35 * std::exp(-std::max(toHouse, 0.0) / 0.35));
  return Blend(tint, {0.52, 0.52, 0.60}, Smooth(5, 45, at.Y));
}

}  // namespace

void PaintDuskBehindHouse(Photo& photo, const Camera& camera) {
  PaintSky(photo, camera);
  const Surface rise{{0, 0, 60}, {1, 0, 0}, {0, 1, 0}};
  photo.Paint(
      camera, rise, {-20, -5, 110, 14}, 0.5,
      [](Vec2 at) {
        return 0.6 * (at.Y - 6.0 - 2.6 * Fractal(at.X * 0.16, at.Y * 0.12, 6, 0.02, 510));
      },
      [](Vec2 at, double, double pixel, Tint) {
        return Tint{0.27, 0.29, 0.36} * (1 + 0.25 * Fractal(at.X * 0.9, at.Y * 0.5, 4, pixel, 515));
      });
  const Surface neighbour{{24, 0, 17}, {1, 0, 0}, {0, 1, 0}};
  const std::array<Vec2, 5> outline{{{0, -0.5}, {9, -0.5}, {9, 4.6}, {4.5, 8.6}, {0, 4.6}}};
  photo.Paint(
      camera, neighbour, {-1, -0.5, 10, 9}, 0.05,
      [&](Vec2 at) { return PolygonDistance(at, outline); },
      [](Vec2 at, double d, double pixel, Tint) {
        Tint tint = Tint{0.40, 0.37, 0.36} * (1 + 0.1 * Fractal(at.X, at.Y, 4, pixel, 520));
        tint = Blend(tint, {0.20, 0.15, 0.15}, Smooth(-0.45, -0.3, d) * Smooth(4.4, 4.8, at.Y));
        for (const Vec2 window : {Vec2{2.2, 1.7}, Vec2{6.6, 1.7}, Vec2{2.2, 4.3}, Vec2{4.5, 6.4}}) {
          const double pane = BoxDistance(at, window, {0.6, 0.65}, 0.03);
          const bool lit = window.Y < 2.0;
          tint = Blend(tint, lit ? Tint{0.90, 0.68, 0.38} : Tint{0.15, 0.16, 0.20},
                       Cover(pane, std::max(pixel, 0.05)));
        }
        return tint;
      });
  Random random(7);
  PaintBranch(photo, camera, random, {-3.2, 0, 13}, {0.05, 1, 0}, 3.2, 0.21, 7);
  PaintBranch(photo, camera, random, {17.5, 0, 8}, {-0.08, 1, 0}, 2.9, 0.20, 7);
}

void PaintSnowyGround(Photo& photo, const Camera& camera) {
  const Surface ground{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}};
  photo.Paint(
      camera, ground, {}, 0, [](Vec2 at) { return at.Y - 58; },
      [](Vec2 at, double, double pixel, Tint) { return GroundTint(at, pixel); });
}

void PaintShrubs(Photo& photo, const Camera& camera) {
  struct Shrub {
    double X;
    double Z;
    double Width;
    double Height;
    std::uint32_t Seed;
  };
  for (const Shrub& shrub : {Shrub{-2.9, 3.4, 1.5, 2.2, 610}, Shrub{-0.1, -1.0, 0.65, 0.8, 620},
                             Shrub{3.35, -0.8, 0.5, 0.9, 630}, Shrub{13.0, 1.5, 1.7, 2.3, 640}}) {
    const Surface plane{{shrub.X, 0, shrub.Z}, {0.88, 0, -0.48}, {0, 1, 0}};
    photo.Paint(
        camera, plane, {-1.5 * shrub.Width, -0.1, 1.5 * shrub.Width, 1.5 * shrub.Height}, 0.03,
        [&](Vec2 at) {
          return EllipseDistance(at, {0, 0.38 * shrub.Height},
                                 {0.85 * shrub.Width, 0.5 * shrub.Height}) +
                 0.22 * Fractal(at.X * 2.6, at.Y * 2.6, 5, 0.02, shrub.Seed);
        },
        [&](Vec2 at, double, double pixel, Tint) {
          const double leaves = Fractal(at.X * 7, at.Y * 7, 4, pixel * 5, shrub.Seed + 7);
          const double snow =
              Smooth(0.55, 0.95,
                     at.Y / shrub.Height + 0.5 * Noise(at.X * 3, at.Y * 5, 650) + 0.4 * leaves);
          return Blend(Tint{0.13, 0.16, 0.12} * (1 + 0.9 * leaves), {0.56, 0.60, 0.69}, snow);
        });
  }
}

}  // namespace tessa::tools
