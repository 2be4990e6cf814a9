#include "scene_street.h"

#include <array>
#include <span>

#include "scene_paint.h"

namespace tessa::tools {
namespace {

/// Car coordinates: X from the front bumper to the tail, Y from the ground, metres.
constexpr std::array<Vec2, 22> kBody{
    {{0.06, 0.30}, {0.02, 0.52}, {0.07, 0.68}, {0.22, 0.78},  {0.60, 0.88}, {1.10, 0.96},
     {1.30, 1.02}, {1.66, 1.24}, {2.00, 1.42}, {2.35, 1.475}, {2.80, 1.47}, {3.30, 1.42},
     {3.65, 1.31}, {3.92, 1.08}, {4.08, 0.94}, {4.14, 0.72},  {4.15, 0.45}, {4.08, 0.30},
     {3.70, 0.25}, {2.0, 0.22},  {1.0, 0.22},  {0.30, 0.23}}};
constexpr std::array<Vec2, 5> kFrontPane{
    {{1.52, 1.04}, {2.06, 1.37}, {2.44, 1.405}, {2.44, 1.02}, {1.60, 1.00}}};
constexpr std::array<Vec2, 5> kRearPane{
    {{2.54, 1.02}, {2.54, 1.405}, {3.10, 1.385}, {3.45, 1.28}, {3.66, 1.06}}};
constexpr double kCarWidth = 1.65;
constexpr double kFrontAxle = 0.80;
constexpr double kRearAxle = 3.34;
constexpr double kWheel = 0.315;

/// The engine's warmth through the bonnet and the wing.
double EngineHeat(double x) {
  return 17.0 * Bell(x - 0.66, 0.36);
}

double WheelHeat(Vec2 q, double brake, double pixel) {
  const double r = Length(q);
  const double angle = std::atan2(q.Y, q.X);
  // Tyre warmed by rolling, most at the shoulder; alloy rim mirroring the cold street, the brake's
  // heat behind its spokes.
  const double tyre = 4.6 + 2.2 * Bell(r - 0.30, 0.03) + 0.5 * Noise(q.X * 12, q.Y * 12, 700);
  const double spokes = Smooth(-0.2, 0.5, std::cos(5 * angle + 0.7));
  double rim = Mix(brake, -1.0, spokes);
  rim = Mix(rim, 0.55 * brake, Smooth(0.075, 0.055, r));
  rim = Mix(rim, -0.5, Bell(r - 0.205, 0.016));
  return Mix(rim, tyre, Smooth(-0.5, 0.5, (r - 0.215) / std::max(pixel, 0.02)));
}

double SideHeat(Vec2 at, double d, double pixel) {
  // Lacquered sheet metal: half its own temperature, half a mirror. Below the waist line it shows
  // the street, above it the sky.
  double celsius = -6.0 + 1.6 * Smooth(0.95, 0.35, at.Y) - 2.6 * Smooth(0.86, 0.96, at.Y) +
                   0.7 * Fractal(at.X * 1.4, at.Y * 2.2, 4, pixel * 2, 705);
  celsius += 1.2 * Bell(at.Y - 0.62 - 0.02 * at.X, 0.03) + 0.9 * Bell(at.Y - 0.40, 0.025);
  celsius += 0.75 * EngineHeat(at.X) * Smooth(0.25, 0.75, at.Y);
  // Seams of the doors leak a little of the heater's air.
  const double seams = Bell(at.X - 1.42, 0.012) + Bell(at.X - 2.49, 0.012) +
                       Bell(at.X - 3.42 + 0.25 * (at.Y - 0.8), 0.012);
  celsius += 2.6 * seams * Smooth(0.3, 0.36, at.Y);
  for (const auto pane : {std::span<const Vec2>(kFrontPane), std::span<const Vec2>(kRearPane)}) {
    const double edge = PolygonDistance(at, pane);
    const double glass = -0.6 - 3.2 * Smooth(1.05, 1.4, at.Y) +
                         1.0 * Fractal(at.X * 1.8, at.Y * 1.8, 3, pixel * 2, 710);
    celsius += 1.2 * Bell(edge - 0.02, 0.02);
    celsius = Mix(celsius, glass, Cover(edge, std::max(pixel, 0.02)));
  }
  celsius -= 1.6 * Bell(d, 0.03);  // the roof's and bonnet's curve turns towards the sky
  for (const double axle : {kFrontAxle, kRearAxle}) {
    const double arch = Length(at - Vec2{axle, kWheel}) - 0.375;
    const double behind = axle < 1 ? 6.5 : -2.0;
    celsius += 0.9 * Bell(arch - 0.02, 0.02);
    celsius = Mix(celsius, behind, Cover(arch, std::max(pixel, 0.02)));
  }
  return celsius;
}

double FaceHeat(Vec2 at, double pixel) {
  // Seen from the front: X across the car, grille and lower intake with the radiator behind them.
  const double across = at.X - 0.5 * kCarWidth;
  double celsius =
      -3.2 + 1.4 * Smooth(0.7, 0.3, at.Y) + 0.6 * Fractal(at.X * 2, at.Y * 2, 3, pixel * 2, 720);
  celsius += 6.5 * Smooth(0.50, 0.72, at.Y) * Bell(across, 0.5);
  const double intake = BoxDistance({across, at.Y}, {0, 0.36}, {0.52, 0.07}, 0.04);
  const double grille = BoxDistance({across, at.Y}, {0, 0.63}, {0.34, 0.055}, 0.04);
  const double bars = 1 - 0.35 * Grooves(at.Y, 0.045, 0.012, pixel);
  celsius = Mix(celsius, 13.5 * bars, Cover(intake, std::max(pixel, 0.02)));
  celsius = Mix(celsius, 19.5 * bars, Cover(grille, std::max(pixel, 0.02)));
  const Vec2 mirrored{std::abs(across), at.Y};
  const double lamp = BoxDistance(mirrored, {0.60, 0.66}, {0.16, 0.07}, 0.05);
  celsius = Mix(celsius, 5.5 + 5.5 * Bell(Length(mirrored - Vec2{0.62, 0.66}), 0.07),
                Cover(lamp, std::max(pixel, 0.02)));
  const double plate = BoxDistance({across, at.Y}, {0, 0.48}, {0.26, 0.055}, 0.01);
  return Mix(celsius, -5.0, Cover(plate, std::max(pixel, 0.02)));
}

double BonnetHeat(Vec2 at, double length, double pixel) {
  const double across = at.X - 0.5 * kCarWidth;
  const double along = at.Y / length;
  // Ribs under the sheet stay cool where they bridge the air gap.
  const double ribs = Bell(std::abs(across) - 0.30 - 0.12 * along, 0.035);
  return -5.0 + (25.0 - 5.0 * ribs) * Bell(across - 0.06, 0.46) * Bell(along - 0.52, 0.30) +
         0.9 * Fractal(at.X * 2.5, at.Y * 2.5, 4, pixel * 2, 730);
}

}  // namespace

void PaintCar(Canvas& canvas, const Camera& camera, Vec3 corner) {
  const Surface side{corner, {1, 0, 0}, {0, 1, 0}};
  const Surface ground{corner, {1, 0, 0}, {0, 0, 1}};
  // The ground below has seen no sky, and under the engine it has been warmed from above.
  camera.Paint(
      canvas, ground, {-0.6, -0.7, 5.0, kCarWidth + 0.6}, 0.3,
      [](Vec2 at) {
        return BoxDistance(at, {2.1, 0.5 * kCarWidth}, {2.05, 0.5 * kCarWidth}, 0.25);
      },
      [](Vec2 at, double, double, double below) {
        return below + 3.4 + 7.5 * Bell(at.X - 0.75, 0.55) * Bell(at.Y - 0.7, 0.5);
      });

  // From far to near: off-side wheels, front, windscreen, roof, bonnet, near side, near wheels.
  const auto wheel = [&](double axle, double z, double brake) {
    const Surface plane{corner + Vec3{axle, kWheel, z}, {1, 0, 0}, {0, 1, 0}};
    camera.Paint(
        canvas, plane, {-0.35, -0.35, 0.35, 0.35}, 0.01,
        [](Vec2 at) { return Length(at) - kWheel; },
        [&](Vec2 at, double, double pixel, double) { return WheelHeat(at, brake, pixel); });
  };
  const auto tread = [&](double axle, double from, double to) {
    // The tyre's width: its cross-section over and over, from the far shoulder to the near one.
    constexpr int kSlices = 8;
    for (int slice = 0; slice < kSlices; ++slice) {
      const double z = Mix(to, from, static_cast<double>(slice) / kSlices);
      const Surface plane{corner + Vec3{axle, kWheel, z}, {1, 0, 0}, {0, 1, 0}};
      camera.Paint(
          canvas, plane, {-0.35, -0.35, 0.35, 0.35}, 0.01,
          [](Vec2 at) { return Length(at) - kWheel; },
          [&](Vec2, double, double, double) { return 6.4 - 1.2 * (slice % 3 == 1 ? 1 : 0); });
    }
  };
  tread(kFrontAxle, kCarWidth - 0.20, kCarWidth);
  tread(kFrontAxle, 0.0, 0.19);

  const auto panel = [&](Vec2 from, Vec2 to, double narrowing, auto heat) {
    const Vec2 run = to - from;
    const double length = Length(run);
    const Surface plane{
        corner + Vec3{from.X, from.Y, 0}, {0, 0, 1}, {run.X / length, run.Y / length, 0}};
    const std::array<Vec2, 4> outline{
        {{0, 0}, {kCarWidth, 0}, {kCarWidth - narrowing, length}, {narrowing, length}}};
    camera.Paint(
        canvas, plane, {0, 0, kCarWidth, length}, 0.03,
        [&](Vec2 at) { return PolygonDistance(at, outline) - 0.02; },
        [&](Vec2 at, double d, double pixel, double) { return heat(at, d, length, pixel); });
  };
  panel({0.05, 0.24}, {0.07, 0.76}, 0.02, [](Vec2 at, double, double, double pixel) {
    return FaceHeat(at + Vec2{0, 0.24}, pixel);
  });
  panel({2.02, 1.42}, {3.5, 1.40}, 0.08, [](Vec2 at, double, double, double) {
    return -10.5 + 0.5 * Noise(at.X * 2, at.Y * 2, 740);
  });
  panel({1.28, 0.99}, {2.04, 1.43}, 0.12, [](Vec2 at, double d, double length, double pixel) {
    // The screen mirrors the sky; at its foot the defroster's air comes through.
    const double along = at.Y / length;
    const double glass = -4.2 - 3.6 * along + 7.5 * std::exp(-along / 0.12) +
                         0.8 * Fractal(at.X * 2, at.Y * 2, 3, pixel * 2, 741);
    return Mix(glass, -6.5, Smooth(-0.08, -0.03, d));
  });
  panel({0.10, 0.77}, {1.26, 1.00}, 0.03,
        [](Vec2 at, double, double length, double pixel) { return BonnetHeat(at, length, pixel); });
  camera.Paint(
      canvas, side, {-0.1, 0.15, 4.3, 1.6}, 0.015,
      [](Vec2 at) { return PolygonDistance(at, kBody) - 0.012; },
      [](Vec2 at, double d, double pixel, double) { return SideHeat(at, d, pixel); });
  wheel(kFrontAxle, 0.0, 21);
  wheel(kRearAxle, 0.0, 9);
  const Surface mirror{corner + Vec3{1.62, 1.06, -0.16}, {1, 0, 0}, {0, 1, 0}};
  camera.Paint(
      canvas, mirror, {-0.12, -0.1, 0.12, 0.1}, 0.02,
      [](Vec2 at) {
        return BoxDistance(at, {}, {0.09, 0.065}, 0.05);
      },
      [](Vec2 at, double, double, double) { return -2.0 - 18 * at.Y; });
}

namespace {

struct Walker {
  Vec3 Feet;
  double Height;  // metres
  double Facing;  // 1 walks to the right of the picture, -1 to the left
  double Stride;  // 0 stands, 1 full step
  double Jacket;  // °C of its surface
  double Trousers;
  bool Hat;
  bool Gloves;
  std::uint32_t Seed;
};

void PaintWalker(Canvas& canvas, const Camera& camera, const Walker& walker) {
  const Vec3 away = walker.Feet - camera.Eye();
  const Vec3 right = Unit(Cross({0, 1, 0}, Vec3{away.X, 0, away.Z}));
  const Surface plane{walker.Feet, right * walker.Facing, {0, 1, 0}};
  const double h = walker.Height;
  const auto limb = [&](Vec2 a, Vec2 b, double radiusA, double radiusB, auto heat) {
    a = a * h;
    b = b * h;
    const std::array<Vec2, 2> ends{a, b};
    const double wide = h * std::max(radiusA, radiusB);
    camera.Paint(
        canvas, plane, Around(ends, wide + 0.03), 0.018,
        [&](Vec2 at) {
          return CapsuleDistance(at, a, b, radiusA * h, radiusB * h) +
                 0.008 * Noise(at.X * 14, at.Y * 14, walker.Seed);
        },
        [&](Vec2 at, double d, double pixel, double) { return heat(at * (1 / h), d / h, pixel); });
  };
  // Cloth lies close in some places and stands off in others; its rim is seen at a slant and gives
  // more of the cold surroundings back.
  const auto cloth = [&](double celsius) {
    return [&, celsius](Vec2 at, double d, double pixel) {
      const double folds = Fractal(at.X * 26 + 8 * at.Y, at.Y * 13, 4, pixel * 14, walker.Seed + 1);
      return celsius + 3.4 * folds - 3.0 * Smooth(-0.022, 0.004, d);
    };
  };
  const auto trousers = [&](double extra) {
    return [&, extra](Vec2 at, double d, double pixel) {
      const double thigh = 2.6 * Bell(at.Y - 0.42, 0.07) + 1.4 * Bell(at.Y - 0.28, 0.035);
      return cloth(walker.Trousers + extra + thigh)(at, d, pixel);
    };
  };
  const auto shoe = [&](Vec2 at, double, double) { return 1.5 + 60 * std::max(0.0, at.Y - 0.02); };
  const auto skin = [&](double celsius) {
    return [&, celsius](Vec2 at, double d, double) {
      return celsius - 3.5 * Smooth(-0.012, 0.002, d) +
             0.8 * Noise(at.X * 60, at.Y * 60, walker.Seed + 2);
    };
  };

  const double s = walker.Stride;
  const auto leg = [&](double forward, double bend, double extra) {
    const Vec2 hip{0.005, 0.50};
    const Vec2 knee{0.5 * forward + 0.045 * bend, 0.285};
    const Vec2 ankle{forward - 0.05 * bend, 0.055 + 0.03 * bend};
    limb(ankle + Vec2{-0.012, -0.030}, ankle + Vec2{0.085, -0.036 + 0.02 * forward}, 0.027, 0.018,
         shoe);
    limb(knee, ankle, 0.043, 0.032, trousers(extra - 0.6));
    limb(hip, knee, 0.068, 0.045, trousers(extra));
  };
  const auto arm = [&](double swing, double extra) {
    const Vec2 shoulder{-0.008, 0.795};
    const Vec2 elbow{-0.02 + 0.55 * swing, 0.635};
    const Vec2 wrist{0.035 + 1.0 * swing, 0.505 + 0.25 * std::abs(swing)};
    const Vec2 hand = wrist + Vec2{0.012 + 0.05 * swing, -0.028};
    if (walker.Gloves) {
      limb(wrist, hand, 0.024, 0.026, cloth(9.0));
    } else {
      limb(wrist, hand, 0.020, 0.022, skin(27.5));
    }
    limb(elbow, wrist, 0.036, 0.027, cloth(walker.Jacket + extra - 0.8));
    limb(shoulder, elbow, 0.045, 0.037, cloth(walker.Jacket + extra));
  };

  arm(0.16 * s, -1.2);
  leg(-0.15 * s, 0.9 * s, -1.0);
  leg(0.15 * s, 0.1, 0.0);
  // Neck, then the torso over it so that the collar closes around the neck.
  limb({0.008, 0.82}, {0.016, 0.88}, 0.030, 0.030, skin(32.0));
  const Vec2 pelvis = Vec2{0.0, 0.545} * h;
  const Vec2 chest = Vec2{0.006, 0.745} * h;
  camera.Paint(
      canvas, plane, {-0.2 * h, 0.4 * h, 0.2 * h, 0.9 * h}, 0.018,
      [&](Vec2 at) {
        const double body = SmoothUnion(
            CapsuleDistance(at, pelvis, chest, 0.078 * h, 0.088 * h),
            CapsuleDistance(at, chest, Vec2{0.004, 0.815} * h, 0.075 * h, 0.045 * h), 0.05 * h);
        const double hem = 0.475 * h - at.Y;
        return std::max(body, hem) + 0.010 * Noise(at.X * 11, at.Y * 11, walker.Seed + 4);
      },
      [&](Vec2 at, double d, double pixel, double) {
        const Vec2 q = at * (1 / h);
        // Warm air rises inside a jacket and leaves at the collar; quilting shows its seams.
        double celsius = cloth(walker.Jacket)(q, d / h, pixel);
        celsius += 6.5 * std::exp(-std::max(0.845 - q.Y, 0.0) / 0.022) * Bell(q.X - 0.01, 0.045);
        celsius += 1.8 * Bell(q.Y - 0.735, 0.05) + 2.4 * Bell(q.X - 0.055, 0.006);
        return celsius + 0.9 * Grooves(q.Y, 0.045, 0.005, pixel / h) -
               1.2 * Smooth(0.52, 0.48, q.Y);
      });
  arm(-0.16 * s, 0.0);

  const Vec2 head = Vec2{0.018, 0.928} * h;
  camera.Paint(
      canvas, plane, {-0.1 * h, 0.8 * h, 0.12 * h, 1.05 * h}, 0.012,
      [&](Vec2 at) {
        const Vec2 q = (at - head) * (1 / h);
        const double skull = EllipseDistance(q, {-0.004, 0.006}, {0.052, 0.058});
        const double jaw = EllipseDistance(q, {0.016, -0.026}, {0.032, 0.042});
        const double nose = CapsuleDistance(q, {0.044, 0.0}, {0.053, -0.014}, 0.006, 0.007);
        return h * SmoothUnion(SmoothUnion(skull, jaw, 0.02), nose, 0.012);
      },
      [&](Vec2 at, double d, double, double) {
        const Vec2 q = (at - head) * (1 / h);
        // Warmest at the corner of the eye and the temple, cool at the nose, the cheeks and the
        // ear's rim; hair and cap hide the rest.
        double face = 31.8 + 1.9 * Bell(Length(q - Vec2{0.036, 0.006}), 0.014) -
                      4.8 * Bell(Length(q - Vec2{0.054, -0.012}), 0.009) -
                      1.3 * Bell(Length(q - Vec2{0.028, -0.022}), 0.012) +
                      0.9 * Bell(Length(q - Vec2{0.012, -0.045}), 0.02) -
                      1.8 * Smooth(-0.010, 0.0, d / h);
        const double hairLine = q.X * 0.95 - q.Y * 0.75 + 0.012;
        const double hair = (walker.Hat ? 9.5 : 15.5) +
                            1.5 * Noise(at.X * 30, at.Y * 30, walker.Seed + 5) -
                            2.5 * Smooth(-0.012, 0.0, d / h);
        face = Mix(hair, face, Smooth(-0.006, 0.008, hairLine));
        const double cap = q.Y - 0.026 + 0.15 * q.X;
        const double ear = EllipseDistance(q, {-0.012, -0.006}, {0.008, 0.013});
        face = Mix(face, walker.Hat ? 14.0 : 26.5, 0.85 * Cover(ear, 0.008));
        return walker.Hat ? Mix(face, hair, Smooth(-0.006, 0.006, cap)) : face;
      });
  if (walker.Hat) {
    limb({0.012, 0.978}, {0.006, 0.990}, 0.045, 0.030, cloth(7.5));
  }
}

}  // namespace

void PaintPeople(Canvas& canvas, const Camera& camera) {
  // Two on the pavement, hand in hand; one nearer, crossing the street.
  PaintWalker(canvas, camera, {{1.15, 0, -4.5}, 1.74, 1, 0.75, 9.0, 7.0, true, true, 801});
  PaintWalker(canvas, camera, {{1.78, 0, -4.7}, 1.16, 1, 0.60, 11.0, 8.5, true, false, 811});
  PaintWalker(canvas, camera, {{-1.75, 0, -6.7}, 1.80, 1, 1.0, 8.0, 10.0, false, false, 821});
}

}  // namespace tessa::tools
