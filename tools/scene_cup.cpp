#include <array>
#include <utility>

#include "scene_paint.h"
#include "scenes.h"

namespace tessa::tools {
namespace {

// The picture is 4 wide and 3 high; one unit is some 9 cm at the mug.
constexpr double kRoom = 22.0;
constexpr double kTea = 73.0;
constexpr double kTableEdge = 0.98;
constexpr Vec2 kRim{1.78, 1.22};
constexpr Vec2 kRimHalf{0.50, 0.165};
constexpr Vec2 kBase{1.78, 2.22};
constexpr Vec2 kBaseHalf{0.44, 0.145};
// Parts of the whole sequence, 0 its begin and 1 its end.
constexpr double kPourBegin = 0.03;
constexpr double kPourEnd = 0.68;
constexpr double kFull = 0.84;  // of the mug's height

double Level(double time) {
  return kFull * Clamp01((time - kPourBegin) / (kPourEnd - kPourBegin));
}

/// Kelvins above the room of the mug's outside at a height (0 base, 1 rim). Tea warms the wall from
/// the moment it covers it; above the tea the wall warms by conduction and steam alone.
double MugWarmth(double height, double time) {
  const double level = Level(time);
  const double covered =
      kPourBegin + (kPourEnd - kPourBegin) * std::clamp(height, 0.0, kFull) / kFull;
  const double since = std::max(0.0, time - covered);
  const double wetted = 38.0 * (1 - std::exp(-since / 0.20)) + 3.5 * since;
  const double above = std::max(0.0, height - level);
  const double creeping = 24.0 * level * (1 - std::exp(-time / 0.35)) * std::exp(-above / 0.10);
  // The thick bottom stays behind at first.
  const double bottom = 1 - 0.45 * std::exp(-height / 0.07);
  return (height <= level ? std::max(wetted, creeping) : std::max(creeping, 0.0)) * bottom;
}

/// Smoothed over the wall's thickness, which hides the exact line of the level.
double SmoothMugWarmth(double height, double time) {
  double sum = 0;
  constexpr int kReach = 3;
  for (int i = -kReach; i <= kReach; ++i) {
    sum += MugWarmth(height + 0.022 * i, time) * (kReach + 1 - std::abs(i));
  }
  return sum / ((kReach + 1) * (kReach + 1));
}

void PaintRoom(Canvas& canvas) {
  canvas.Apply([&](Vec2 p, double) {
    const double pixel = canvas.Pixel();
    if (p.Y < kTableEdge - pixel) {
      // A tiled wall; a draught from the left, the joints a shade cooler.
      const double tiles = std::max(Grooves(p.X - 0.11, 0.62, 0.010, pixel),
                                    Grooves(p.Y - 0.20, 0.62, 0.010, pixel));
      const double tile = Noise(std::floor((p.X - 0.11) / 0.62 + 0.5) * 1.7,
                                std::floor((p.Y - 0.20) / 0.62 + 0.5) * 1.3, 1001);
      // Warm air of the room gathers above.
      return 22.6 + 0.45 * p.X - 1.3 * p.Y - 0.7 * tiles + 0.35 * tile +
             0.8 * Fractal(p.X * 0.9, p.Y * 0.9, 4, pixel, 1002);
    }
    // Wood: the grain runs across the picture, foreshortened towards the back.
    const double depth = 1 / (0.55 + 0.45 * (p.Y - kTableEdge));
    const double grain = Fractal(p.X * 0.7 * depth, 9.0 * depth * depth, 4, pixel * 3, 1010);
    double celsius = 22.3 + 1.0 * grain + 0.7 * Fractal(p.X * 0.6, p.Y * 1.1, 3, pixel, 1015);
    celsius -= 0.9 * Bell(p.Y - kTableEdge, 0.02);
    // Where the sun came through the window until a while ago; its bars and its edges have blurred.
    const Vec2 floor{p.X + 0.75 * (p.Y - 2.0), p.Y};
    const double sun = BoxDistance(floor, {2.62, 1.92}, {0.92, 0.60}, 0.10);
    const double bars = Bell(floor.X - 2.62, 0.055) + Bell(floor.Y - 1.86, 0.04);
    celsius +=
        4.6 * Smooth(0.10, -0.14, sun) * (1 - 0.55 * std::min(bars, 1.0)) * (1 + 0.22 * grain);
    return celsius;
  });
  // The wall is out of focus.
  canvas.Blur(0.012);
}

/// What a hand leaves that has lain on the table: fingers first to go, the heel of the hand last.
void PaintHandPrint(Canvas& canvas, double time) {
  const double spread = 0.018 + 0.075 * std::sqrt(time);
  canvas.Apply({0.0, 1.35, 1.4, 3.0}, [&](Vec2 p, double below) {
    // Lay the picture flat onto the table, then turn it to the hand.
    const Vec2 q = Rotate({(p.X - 0.66), (p.Y - 2.34) / 0.62}, -0.32);
    struct Finger {
      Vec2 From;
      Vec2 To;
      double Radius;
    };
    constexpr std::array<Finger, 5> kFingers{{{{-0.17, -0.20}, {-0.26, -0.50}, 0.052},
                                              {{-0.06, -0.25}, {-0.08, -0.64}, 0.057},
                                              {{0.06, -0.25}, {0.08, -0.67}, 0.058},
                                              {{0.17, -0.21}, {0.24, -0.56}, 0.055},
                                              {{0.20, 0.10}, {0.44, -0.14}, 0.062}}};
    double fingers = 1e3;
    for (const Finger& finger : kFingers) {
      const Vec2 along = finger.To - finger.From;
      const double t = Clamp01(Dot(q - finger.From, along) / Dot(along, along));
      // Pads press, joints hardly touch.
      const double lifted = 0.011 * (Bell(t - 0.36, 0.07) + Bell(t - 0.70, 0.06));
      fingers = std::min(
          fingers,
          CapsuleDistance(q, finger.From, finger.To, finger.Radius, finger.Radius * 0.86) + lifted);
    }
    const double palm =
        SmoothUnion(BoxDistance(q, {0.0, 0.04}, {0.235, 0.25}, 0.13),
                    CapsuleDistance(q, {-0.12, 0.22}, {0.12, 0.22}, 0.11, 0.12), 0.08);
    const double hollow = 1 - 0.62 * Bell(Length(q - Vec2{0.02, 0.03}), 0.10);
    const double skin = 1 + 0.28 * Fractal(q.X * 9, q.Y * 9, 3, canvas.Pixel() * 9, 1020);
    const double byFingers = 8.8 * std::exp(-time / 0.34) * Smooth(spread, -spread, fingers);
    const double byPalm = 9.6 * std::exp(-time / 0.50) * Smooth(spread, -spread, palm) * hollow;
    return below + skin * std::max(byFingers, byPalm);
  });
}

void PaintGlass(Canvas& canvas) {
  // A tumbler of cold water standing further back.
  constexpr Vec2 kTop{0.72, 0.62};
  constexpr Vec2 kBottom{0.72, 1.42};
  const auto half = [&](double y) { return Mix(0.235, 0.19, (y - kTop.Y) / (kBottom.Y - kTop.Y)); };
  canvas.Paint(
      {0.3, 0.4, 1.2, 1.6}, 0.02,
      [&](Vec2 p) {
        const double side = std::abs(p.X - kTop.X) - half(p.Y);
        const double body = std::max({side, kTop.Y - p.Y, p.Y - kBottom.Y});
        return std::min({body, EllipseDistance(p, kTop, {0.235, 0.055}),
                         EllipseDistance(p, kBottom, {0.19, 0.055})});
      },
      [&](Vec2 p, double, double) {
        const double across = (p.X - kTop.X) / half(p.Y);
        const double filled = Smooth(0.86, 0.93, p.Y - 0.02 * across * across);
        double celsius = Mix(21.0, 18.3, filled) - 1.4 * (p.Y - 1.1) * filled;
        celsius += 2.0 * across * across * across * across;  // the rim mirrors the room
        celsius += 0.5 * Fractal(p.X * 5, p.Y * 3, 3, canvas.Pixel() * 5, 1030);
        const double mouth = EllipseDistance(p, kTop, {0.215, 0.042});
        return Mix(celsius, 20.6 + 2.0 * (p.Y - 0.6), Cover(mouth, 0.02));
      });
}

void PaintMug(Canvas& canvas, double time, double flow) {
  const double level = Level(time);
  const Vec2 tea{kRim.X, Mix(kBase.Y, kRim.Y, level)};
  const Vec2 teaHalf{0.93 * Mix(kBaseHalf.X, kRimHalf.X, level),
                     0.93 * Mix(kBaseHalf.Y, kRimHalf.Y, level)};
  const double pixel = canvas.Pixel();

  // The table under and around the foot.
  canvas.Apply({0.8, 1.7, 2.8, 2.9}, [&](Vec2 p, double below) {
    const double d = EllipseDistance({p.X, kBase.Y + (p.Y - kBase.Y)}, kBase,
                                     {kBaseHalf.X + 0.01, kBaseHalf.Y + 0.01});
    return below + 9.0 * SmoothMugWarmth(0.15, time) / 40 * std::exp(-std::max(d, 0.0) / 0.09);
  });

  // The handle: a ring behind the body, warmed from its two roots.
  const auto ring = [](Vec2 p) {
    const double outer = EllipseDistance(p, {2.26, 1.70}, {0.30, 0.36});
    return std::abs(outer + 0.065) - 0.065;
  };
  canvas.Paint({1.9, 1.2, 2.7, 2.2}, 0.02, ring, [&](Vec2 p, double d, double) {
    const double root = std::max(0.0, p.X - 2.18);
    const double height = Clamp01((kBase.Y - p.Y) / (kBase.Y - kRim.Y));
    return kRoom + SmoothMugWarmth(height, time) * (0.10 + 0.62 * std::exp(-root / 0.10)) -
           0.8 * Smooth(-0.03, 0, d) + 0.4 * Noise(p.X * 6, p.Y * 6, 1040);
  });

  const auto halfAt = [](double y) {
    return Mix(kRimHalf.X, kBaseHalf.X, (y - kRim.Y) / (kBase.Y - kRim.Y));
  };
  canvas.Paint(
      {1.1, 0.95, 2.4, 2.45}, 0.018,
      [&](Vec2 p) {
        const double side =
            std::max({std::abs(p.X - kRim.X) - halfAt(p.Y), kRim.Y - p.Y, p.Y - kBase.Y});
        return std::min(
            {side, EllipseDistance(p, kRim, kRimHalf), EllipseDistance(p, kBase, kBaseHalf)});
      },
      [&](Vec2 p, double, double) {
        const double across = std::clamp((p.X - kRim.X) / halfAt(p.Y), -1.0, 1.0);
        // Lines of equal height are the lower halves of ellipses.
        const double sag = std::sqrt(1 - across * across);
        const double y = p.Y - Mix(kRimHalf.Y, kBaseHalf.Y, Clamp01(p.Y - kRim.Y)) * sag;
        const double height = Clamp01((kBase.Y - y) / (kBase.Y - kRim.Y));
        double warmth = SmoothMugWarmth(
            height + 0.020 * Fractal(p.X * 2.2, p.Y * 2.2, 3, pixel * 2, 1050), time);
        // Glaze seen at a slant mirrors the room; a relief on the front stands off from the tea.
        const double slant = std::abs(across);
        warmth *= 1 - 0.32 * Smooth(0.72, 1.0, slant);
        warmth *= 1 + 0.05 * Fractal(p.X * 3.5, p.Y * 3.5, 3, pixel * 3, 1051);
        const double relief = std::abs(Length({(p.X - 1.66) * 1.08, p.Y - 1.86}) - 0.19) - 0.025;
        warmth *= 1 - 0.06 * Cover(relief, 0.03);
        return kRoom + 0.2 - 0.5 * slant + warmth;
      });

  // The inside: the far wall above the tea, then the tea itself, whatever the rim lets through.
  constexpr Vec2 kMouth{kRimHalf.X - 0.045, kRimHalf.Y - 0.022};
  canvas.Paint(
      {1.2, 1.0, 2.4, 1.45}, 0.012, [&](Vec2 p) { return EllipseDistance(p, kRim, kMouth); },
      [&](Vec2 p, double d, double) {
        const double height = 1 - Clamp01((p.Y - kRim.Y + kMouth.Y) * 1.3);
        // A hollow gathers radiation: the wall inside looks warmer than outside.
        const double wall = kRoom + 1.0 + 0.75 * SmoothMugWarmth(height, time) +
                            26.0 * level * Smooth(0.0, 0.12, time);
        const double edge = EllipseDistance(p, tea, teaHalf);
        // Cells where cooled tea sinks, drifting from frame to frame.
        const double drift = 2.2 * time;
        const double warp = Noise(p.X * 4 + drift, p.Y * 11, 1060);
        const double cells = Fractal(p.X * 7 + warp + drift, p.Y * 20 - drift, 4, pixel * 10, 1061);
        const double surface = kTea + 2.5 * cells - 1.2 * std::abs(warp) -
                               4.5 * Smooth(-0.03, 0.0, edge) * (1 - 0.5 * flow);
        const double poured = level > 0 ? Cover(edge, std::max(0.015, pixel)) : 0.0;
        return Mix(wall, surface, poured) - 4.0 * level * Smooth(-0.02, 0.0, d);
      });

  // The rim's glaze catches the steam.
  canvas.Apply({1.2, 1.0, 2.4, 1.45}, [&](Vec2 p, double below) {
    const double lip = std::abs(EllipseDistance(p, kRim, kRimHalf - Vec2{0.022, 0.012})) - 0.004;
    return below + (3.0 * level - 0.4) * Bell(std::max(lip, 0.0), 0.012);
  });

  // Polished wood mirrors a little of the mug, less the further from its foot.
  canvas.Apply({1.2, kBase.Y, 2.7, 3.0}, [&](Vec2 p, double below) {
    const double across = std::clamp((p.X - kBase.X) / kBaseHalf.X, -1.0, 1.0);
    const double foot = kBase.Y + kBaseHalf.Y * std::sqrt(1 - across * across);
    const double under = p.Y - foot;
    if (under < 0) {
      return below;
    }
    const double inside = Smooth(1.04, 0.90, std::abs(p.X - kBase.X) / kBaseHalf.X);
    const double mirrored = canvas.Value({p.X, foot - 1.1 * under});
    return below + 0.085 * inside * std::exp(-under / 0.35) * std::max(0.0, mirrored - kRoom);
  });
}

/// Where the stream leaves the spout, for a kettle moved by `lift`.
Vec2 Spout(Vec2 lift) {
  return Vec2{2.20, 0.30} + lift;
}

void PaintStream(Canvas& canvas, double time, int frame, Vec2 lift, double flow) {
  if (flow <= 0) {
    return;
  }
  Random random(9000 + static_cast<std::uint64_t>(frame));
  const double surface = Mix(kBase.Y, kRim.Y, Level(time));
  const Vec2 from = Spout(lift);
  const Vec2 to{kRim.X + 0.05 + 0.015 * random.Normal(), surface};
  constexpr int kPieces = 22;
  Vec2 last = from;
  for (int i = 1; i <= kPieces; ++i) {
    const double t = static_cast<double>(i) / kPieces;
    // Falling water: even speed across, growing speed downwards.
    const double across = 0.35 * t + 0.65 * std::sqrt(t);
    const Vec2 next{Mix(from.X, to.X, across) + 0.006 * t * random.Normal(), Mix(from.Y, to.Y, t)};
    const Vec2 middle = (last + next) * 0.5;
    // Behind the mug's front wall it is out of sight.
    if (middle.Y < kRim.Y || EllipseDistance(middle, kRim, kRimHalf - Vec2{0.05, 0.03}) < 0) {
      const double radius = (0.046 - 0.020 * t) * flow * (1 + 0.12 * random.Normal());
      canvas.Stroke(last, next, radius, radius, 80.0 - 3.0 * t);
    }
    last = next;
  }
}

void PaintKettle(Canvas& canvas, double time, Vec2 lift) {
  // Tilted towards the mug; its water keeps level whatever the tilt.
  const Vec2 centre = Vec2{3.10, 0.30} + lift;
  const double tilt = 0.42;
  const double water = centre.Y - 0.12 + 0.30 * Clamp01(time / kPourEnd);
  const auto local = [&](Vec2 p) { return Rotate(p - centre, tilt); };
  const auto body = [](Vec2 q) {
    const double taper = 0.16 * (q.Y + 0.1);
    const double belly = BoxDistance({q.X * (1 - taper), q.Y}, {}, {0.62, 0.66}, 0.22);
    const double spout = CapsuleDistance(q, {-0.48, -0.30}, {-0.83, -0.37}, 0.17, 0.075);
    return SmoothUnion(belly, spout, 0.12);
  };
  const Box area{centre.X - 1.2, centre.Y - 1.2, centre.X + 1.3, centre.Y + 1.2};
  canvas.Paint(
      area, 0.02, [&](Vec2 p) { return body(local(p)); },
      [&](Vec2 p, double d, double) {
        const Vec2 q = local(p);
        const double wet = Smooth(-0.07, 0.10, p.Y - water);
        double celsius = Mix(43.0 - 9.0 * q.Y, 64.0 - 7.0 * q.Y, wet) +
                         3.5 * Fractal(p.X * 1.8, p.Y * 1.8, 4, canvas.Pixel() * 2, 1070);
        celsius -= 7.0 * Smooth(-0.14, 0.0, d);
        celsius -= 9.0 * Smooth(0.50, 0.62, q.Y);  // the foot with its heater's gap
        celsius -= 3.0 * Bell(q.Y + 0.50, 0.018);  // the lid's joint
        const double gauge = BoxDistance(q, {-0.12, 0.06}, {0.045, 0.34}, 0.04);
        celsius += 4.5 * wet * Cover(gauge, 0.03);
        const double lip = Length(q - Vec2{-0.86, -0.36});
        return celsius + (time > 0.02 ? 12.0 : 4.0) * Bell(lip, 0.08);
      });
  // The handle, and the hand on it, mostly beyond the picture.
  const Vec2 grip = centre + Rotate({0.86, -0.12}, -tilt);
  canvas.Paint(
      {grip.X - 0.5, grip.Y - 0.8, grip.X + 0.6, grip.Y + 0.9}, 0.02,
      [&](Vec2 p) {
        const Vec2 q = Rotate(p - grip, tilt);
        return std::abs(BoxDistance(q, {-0.08, 0.0}, {0.24, 0.40}, 0.18) + 0.05) - 0.055;
      },
      [&](Vec2 p, double, double) { return 29.5 + 0.8 * Noise(p.X * 5, p.Y * 5, 1080); });
  for (int finger = 0; finger < 4; ++finger) {
    const Vec2 a = grip + Rotate({0.27, -0.24 + 0.13 * finger}, -tilt);
    const Vec2 b = grip + Rotate({0.03, -0.22 + 0.13 * finger}, -tilt);
    const std::array<Vec2, 2> ends{a, b};
    canvas.Paint(
        Around(ends, 0.1), 0.015, [&](Vec2 p) { return CapsuleDistance(p, a, b, 0.070, 0.060); },
        [&](Vec2 p, double d, double) {
          return 32.6 - 1.8 * Smooth(-0.03, 0.0, d) - 1.2 * Bell(Length(p - b), 0.05) +
                 0.5 * Noise(p.X * 12, p.Y * 12, 1081);
        });
  }
  const Vec2 wrist = grip + Rotate({0.36, -0.02}, -tilt);
  const Vec2 elbow = wrist + Vec2{1.2, 0.15};
  const std::array<Vec2, 2> arm{wrist, elbow};
  canvas.Paint(
      Around(arm, 0.35), 0.02, [&](Vec2 p) { return CapsuleDistance(p, wrist, elbow, 0.20, 0.22); },
      [&](Vec2 p, double d, double) {
        return 32.8 - 1.6 * Smooth(-0.07, 0.0, d) + 0.9 * Fractal(p.X * 4, p.Y * 4, 3, 0.05, 1082);
      });
}

void PaintSpoon(Canvas& canvas, double time) {
  // Steel shows hardly any warmth of its own; its bowl mirrors the mug.
  canvas.Stroke({2.78, 2.44}, {3.52, 2.66}, 0.022, 0.034, 21.2);
  canvas.Paint(
      {2.5, 2.2, 3.0, 2.6}, 0.015,
      [](Vec2 p) {
        return EllipseDistance(Rotate(p - Vec2{2.68, 2.41}, -0.28), {}, {0.15, 0.065});
      },
      [&](Vec2 p, double d, double) {
        const double mirrored = Bell(Length(p - Vec2{2.62, 2.39}), 0.045);
        return 21.0 + 0.16 * SmoothMugWarmth(0.5, time) * mirrored + 0.6 * Smooth(-0.03, 0, d);
      });
}

void PaintSteam(Canvas& canvas, double time) {
  const double strength = 2.6 * Smooth(0.05, 0.35, time);
  canvas.Apply({1.0, 0.0, 2.6, kRim.Y}, [&](Vec2 p, double below) {
    const double rise = kRim.Y - p.Y;
    const double sway = 0.16 * Noise(rise * 2.2 - 7 * time, 0.4 + time, 1090) * rise;
    const double wisps = Fractal(p.X * 4.5 + sway, p.Y * 2.4 + 14 * time, 4, 0.02, 1091);
    const double column = Bell(p.X - kRim.X - sway, 0.17 + 0.12 * rise) * std::exp(-rise / 0.55);
    return below + strength * column * Clamp01(0.45 + 1.3 * wisps) * Smooth(0, 0.08, rise);
  });
}

}  // namespace

Scene WarmingCup(int width, int height, int frame, int frameCount) {
  const double time = frameCount > 1 ? Clamp01(static_cast<double>(frame) / (frameCount - 1)) : 0.0;
  const double flow =
      Smooth(0.0, kPourBegin, time) * Smooth(kPourEnd + 0.02, kPourEnd - 0.03, time);
  const double leaving = Smooth(kPourEnd + 0.03, kPourEnd + 0.20, time);
  const Vec2 lift = Vec2{0.75, -1.75} * leaving;
  Canvas canvas(width, height, 4, 3);
  PaintRoom(canvas);
  PaintHandPrint(canvas, time);
  PaintGlass(canvas);
  PaintMug(canvas, time, flow);
  PaintStream(canvas, time, frame, lift, flow);
  PaintSpoon(canvas, time);
  PaintSteam(canvas, time);
  PaintKettle(canvas, time, lift);
  canvas.Blur(0.006);
  Scene scene = std::move(canvas).Take();
  SensorModel sensor;
  sensor.Seed = 20;
  sensor.Frame = static_cast<std::uint32_t>(frame);
  AddSensorNoise(scene, sensor);
  return scene;
}

}  // namespace tessa::tools
