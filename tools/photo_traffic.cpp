#include <span>

#include "photo_street.h"
#include "scene_street.h"

namespace tessa::tools {
namespace {

/// Something of the infrared scene as a stencil: how much of each pixel it covers, and how warm it
/// is there. Painting it over two different grounds tells both.
class Stencil {
 public:
  template <typename Painter>
  Stencil(const Photo& photo, Painter paint)
      : cold_(Raster(photo, 0.0, paint)), warm_(Raster(photo, kGround, paint)) {}

  double CoverAt(Vec2 p) { return Clamp01(1 - (warm_.Value(p) - cold_.Value(p)) / kGround); }
  double CelsiusAt(Vec2 p) { return cold_.Value(p) / std::max(CoverAt(p), 0.02); }

 private:
  static constexpr double kGround = 1000.0;

  template <typename Painter>
  static Canvas Raster(const Photo& photo, double celsius, Painter paint) {
    const Box all = photo.Everything();
    const double width = all.Right - all.Left;
    const double height = all.Bottom - all.Top;
    Canvas canvas(static_cast<int>(std::lround(width / photo.Pixel())),
                  static_cast<int>(std::lround(height / photo.Pixel())), width, height);
    canvas.Apply([&](Vec2, double) { return celsius; });
    paint(canvas);
    return canvas;
  }

  Canvas cold_;
  Canvas warm_;
};

struct Clothes {
  Vec3 Feet;
  double Height;
  Tint Jacket;
  Tint Trousers;
  Tint Head;  // Hat or hair.
};

}  // namespace

void PaintWalkers(Photo& photo, const Camera& camera) {
  const std::array<Clothes, 3> walkers{{
      {{1.15, 0, -4.5}, 1.74, {0.36, 0.10, 0.11}, {0.13, 0.14, 0.20}, {0.55, 0.52, 0.48}},
      {{1.78, 0, -4.7}, 1.16, {0.70, 0.50, 0.12}, {0.16, 0.20, 0.34}, {0.20, 0.38, 0.55}},
      {{-1.75, 0, -6.7}, 1.80, {0.16, 0.22, 0.31}, {0.11, 0.11, 0.12}, {0.17, 0.12, 0.09}},
  }};
  for (const Clothes& walker : walkers) {
    const Surface ground{walker.Feet, {1, 0, 0}, {0, 0, 1}};
    photo.Paint(
        camera, ground, {-0.6, -0.4, 0.6, 0.4}, 0.2,
        [](Vec2 at) {
          return EllipseDistance(at, {0, 0}, {0.35, 0.18});
        },
        [](Vec2, double, double, Tint below) { return below * 0.62; });
  }
  Stencil stencil(photo, [&](Canvas& canvas) { PaintPeople(canvas, camera); });
  for (const Clothes& walker : walkers) {
    const Vec2 feet = camera.Project(walker.Feet);
    const Vec2 top = camera.Project(walker.Feet + Vec3{0, walker.Height, 0});
    const double tall = feet.Y - top.Y;
    const Box box{feet.X - 0.32 * tall, top.Y - 0.1 * tall, feet.X + 0.32 * tall,
                  feet.Y + 0.1 * tall};
    photo.Apply(box, [&](Vec2 p, Tint below) {
      const double cover = stencil.CoverAt(p);
      if (cover <= 0.02) {
        return below;
      }
      const double up = (feet.Y - p.Y) / tall;
      const double celsius = stencil.CelsiusAt(p);
      Tint tint = Blend(walker.Trousers, walker.Jacket, Smooth(0.475, 0.485, up));
      // What is as warm as skin is skin; above the collar what is not is hat or hair.
      tint = Blend(tint, walker.Head, Smooth(0.865, 0.875, up));
      tint = Blend(tint, {0.66, 0.48, 0.40}, Smooth(19.5, 23.0, celsius));
      tint = Blend({0.10, 0.09, 0.09}, tint, Smooth(0.03, 0.045, up));
      // Cloth that stands off is colder, and lies in its own shade.
      const double folds = Clamp01(0.75 + 0.045 * (celsius - (up > 0.48 ? 9.0 : 8.0)));
      return Blend(below, tint * (0.55 + 0.6 * folds), cover);
    });
  }
}

void PaintParkedCar(Photo& photo, const Camera& camera) {
  const Vec3 corner{2.2, 0, -7.4};
  constexpr double kLength = 4.15;
  constexpr double kCarWidth = 1.65;
  const Surface ground{corner, {1, 0, 0}, {0, 0, 1}};
  photo.Paint(
      camera, ground, {-0.6, -0.7, 5.0, kCarWidth + 0.6}, 0.3,
      [&](Vec2 at) {
        return BoxDistance(at, {0.5 * kLength, 0.5 * kCarWidth}, {0.49 * kLength, 0.5 * kCarWidth},
                           0.25);
      },
      [](Vec2, double, double, Tint below) { return below * 0.30; });
  Stencil stencil(photo, [&](Canvas& canvas) { PaintCar(canvas, camera, corner); });
  const Surface side{corner, {1, 0, 0}, {0, 1, 0}};
  // Dark red lacquer: the sky lies in what faces up, the snow in the lower flanks.
  photo.Apply(photo.Everything(), [&](Vec2 p, Tint below) {
    const double cover = stencil.CoverAt(p);
    Vec2 at;
    if (cover <= 0.02 || !camera.Meet(side, p, at)) {
      return below;
    }
    Tint tint = Blend({0.30, 0.07, 0.075}, {0.20, 0.045, 0.05}, Smooth(0.75, 0.35, at.Y));
    tint = tint + Tint{0.16, 0.15, 0.19} * Smooth(0.78, 1.0, at.Y) +
           Grey(0.12) * Bell(at.Y - 0.62, 0.03);
    return Blend(below, tint, cover);
  });
  const auto glass = [&](const Surface& surface, std::span<const Vec2> outline) {
    photo.Paint(
        camera, surface, Around(outline, 0.05), 0.01,
        [&](Vec2 at) { return PolygonDistance(at, outline); },
        [](Vec2 at, double d, double, Tint) {
          const Tint pane = Blend({0.09, 0.10, 0.12}, {0.34, 0.36, 0.42},
                                  Smooth(-0.3, 0.5, Fractal(at.X * 1.8, at.Y * 1.8, 3, 0.01, 710)));
          return Blend(pane, Grey(0.06), Smooth(-0.03, -0.01, d));
        });
  };
  constexpr std::array<Vec2, 5> kFrontPane{
      {{1.52, 1.04}, {2.06, 1.37}, {2.44, 1.405}, {2.44, 1.02}, {1.60, 1.00}}};
  constexpr std::array<Vec2, 5> kRearPane{
      {{2.54, 1.02}, {2.54, 1.405}, {3.10, 1.385}, {3.45, 1.28}, {3.66, 1.06}}};
  constexpr std::array<Vec2, 4> kScreen{{{0.06, 0.06}, {1.59, 0.06}, {1.50, 0.84}, {0.15, 0.84}}};
  glass({corner + Vec3{1.28, 0.99, 0}, {0, 0, 1}, Unit({0.76, 0.44, 0})}, kScreen);
  glass(side, kFrontPane);
  glass(side, kRearPane);
  for (const double axle : {0.80, 3.34}) {
    photo.Paint(
        camera, side, {axle - 0.45, -0.1, axle + 0.45, 0.75}, 0.01,
        [&](Vec2 at) {
          return Length(at - Vec2{axle, 0.315}) - 0.375;
        },
        [](Vec2, double, double, Tint) { return Grey(0.035); });
    photo.Paint(
        camera, side, {axle - 0.45, -0.1, axle + 0.45, 0.75}, 0.01,
        [&](Vec2 at) {
          return Length(at - Vec2{axle, 0.315}) - 0.315;
        },
        [&](Vec2 at, double, double pixel, Tint) {
          const Vec2 q = at - Vec2{axle, 0.315};
          const double r = Length(q);
          const double spokes = Smooth(-0.2, 0.5, std::cos(5 * std::atan2(q.Y, q.X) + 0.7));
          const Tint rim = Grey(Mix(0.09, 0.55 + 0.3 * q.Y, std::max(spokes, Bell(r - 0.2, 0.02))));
          return Blend(rim, Grey(0.07), Smooth(-0.5, 0.5, (r - 0.215) / std::max(pixel, 0.02)));
        });
  }
  // The front: grille, intake, plate and the lamps, one of them lit for parking.
  const Surface face{corner + Vec3{0.05, 0, 0}, {0, 0, 1}, {0, 1, 0}};
  const auto detail = [&](Vec2 centre, Vec2 half, double radius, Tint tint) {
    const Vec2 middle = centre + Vec2{0.5 * kCarWidth, 0};
    photo.Paint(
        camera, face, {middle.X - 0.7, 0.2, middle.X + 0.7, 0.85}, 0.01,
        [&](Vec2 at) { return BoxDistance(at, middle, half, radius); },
        [&](Vec2 at, double, double pixel, Tint) {
          return tint * (1 - 0.4 * Grooves(at.Y, 0.045, 0.012, pixel));
        });
  };
  detail({0, 0.36}, {0.52, 0.07}, 0.04, Grey(0.05));
  detail({0, 0.63}, {0.34, 0.055}, 0.04, Grey(0.07));
  detail({0, 0.48}, {0.26, 0.055}, 0.01, Grey(0.62));
  for (const double lamp : {-0.60, 0.60}) {
    detail({lamp, 0.66}, {0.16, 0.07}, 0.05, {0.62, 0.63, 0.66});
  }
  photo.Paint(
      camera, side, {0.1, 0.5, 0.5, 0.8}, 0.01,
      [](Vec2 at) {
        return EllipseDistance(at, {0.20, 0.66}, {0.13, 0.06});
      },
      [](Vec2, double, double, Tint) {
        return Tint{0.66, 0.64, 0.62};
      });
}

}  // namespace tessa::tools
