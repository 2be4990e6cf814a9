// The parts on the board, from the flat ones to the tall ones.

#include "photo_board.h"

namespace tessa::tools {
namespace {

constexpr double kTop = 1.2;  // The board's upper face.

void PaintChips(Bench& bench) {
  const auto chip = [&](Vec2 centre, bool upright, double size, bool resistor) {
    const Vec2 half = upright ? Vec2{0.5 * size, size} : Vec2{size, 0.5 * size};
    const Vec2 body = upright ? Vec2{half.X, half.Y * 0.55} : Vec2{half.X * 0.55, half.Y};
    const Vec2 reach{1.5 * size, 1.5 * size};
    bench.Flat(centre, reach, kTop, BoxAt(centre, half * 1.25), Plain(kSolder));
    bench.Flat(centre + Vec2{0.15, 0.15}, reach, kTop, BoxAt(centre + Vec2{0.15, 0.15}, half),
               [](Vec2, double, Tint below) { return below * 0.55; });
    bench.Flat(centre, reach, kTop + 0.6, BoxAt(centre, half), Plain({0.78, 0.78, 0.78}));
    bench.Flat(centre, reach, kTop + 0.6, BoxAt(centre, body),
               Plain(resistor ? Tint{0.10, 0.10, 0.11} : Tint{0.55, 0.43, 0.29}));
  };
  for (int i = 0; i < 7; ++i) {
    chip({50.0 + 2.6 * i, 28.6}, true, 0.62, false);
    chip({69.5, 31.0 + 2.9 * i}, false, 0.55, i % 3 == 0);
  }
  for (int i = 0; i < 6; ++i) {
    chip({45.5, 34.0 + 2.4 * i}, false, 0.62, i > 2);
    chip({73.0 + 2.7 * i, 46.6}, true, 0.6, false);
    chip({78.0 + 2.2 * i, 24.0}, true, 0.55, true);
    chip({66.0 + 2.4 * i, 65.5}, true, 0.7, i % 2 == 0);
  }
  for (int i = 0; i < 4; ++i) {
    chip({18.0 + 3.4 * i, 27.6}, true, 0.8, false);
    chip({38.5, 45.0 + 3.2 * i}, false, 0.75, true);
    chip({33.5, 31.0 + 2.2 * i}, false, 0.6, true);
  }
  chip({52.5, 62.0}, true, 0.8, true);
  chip({12.5, 27}, false, 1.6, true);
}

struct Package {
  Vec2 Centre;
  Vec2 Half;
  double Height;
  int PinsAcross;
  int PinsDown;
};

void PaintPackage(Bench& bench, const Package& package) {
  const Vec2 c = package.Centre;
  const auto pins = [&](bool across, int count) {
    const double along = across ? package.Half.X : package.Half.Y;
    for (int i = 0; i < count; ++i) {
      const double offset = along * (2.0 * (i + 0.5) / count - 1.0) * 0.94;
      const double pitch = 2 * along / count;
      for (const double side : {-1.0, 1.0}) {
        const Vec2 centre = c + (across ? Vec2{offset, side * (package.Half.Y + 0.75)}
                                        : Vec2{side * (package.Half.X + 0.75), offset});
        const Vec2 half = across ? Vec2{0.27 * pitch, 0.75} : Vec2{0.75, 0.27 * pitch};
        bench.Flat(centre, half, kTop + 0.2, BoxAt(centre, half), Plain(kSolder));
      }
    }
  };
  pins(true, package.PinsAcross);
  pins(false, package.PinsDown);
  bench.Upright(c, package.Half, kTop + package.Height, BoxAt(c, package.Half, 0.25), kPlastic,
                [&](Vec2 at, double d, Tint) {
                  const Vec2 q = at - c;
                  const double sheen = 0.035 * Smooth(1.0, -1.0, (q.X + q.Y) / package.Half.X);
                  const double dimple = Bell(Length(q + package.Half - Vec2{1.1, 1.1}), 0.4);
                  return Grey(0.10 + sheen + 0.05 * Bell(d + 0.2, 0.12) - 0.04 * dimple);
                });
  const double size = std::min(1.1, 0.28 * package.Half.Y);
  for (const double line : {-0.9, 0.9}) {
    Print(bench, c + Vec2{0.2, line * size}, 1.15 * package.Half.X, size, Grey(0.62),
          kTop + package.Height, 0.7);
  }
}

void PaintRegulator(Bench& bench) {
  const Vec2 c{27, 19.5};
  bench.Flat(c + Vec2{0, -3.4}, {2.8, 1.8}, kTop + 0.3, BoxAt(c + Vec2{0, -3.4}, {2.7, 1.7}, 0.3),
             [](Vec2 at, double, Tint) {
               return kSolder * (0.95 + 0.2 * Fractal(at.X * 0.7, at.Y * 0.7, 3, 0.1, 940));
             });
  for (const double offset : {-2.3, 0.0, 2.3}) {
    const Vec2 leg = c + Vec2{offset, 4.2};
    bench.Flat(leg, {0.5, 1.4}, kTop + 0.3, BoxAt(leg, {0.42, 1.3}), Plain(kSolder));
  }
  PaintPackage(bench, {c, {3.3, 3.1}, 2.3, 0, 0});
  PaintPackage(bench, {{37.5, 17}, {2.2, 1.4}, 1.8, 0, 1});
}

/// An upright can: dark sleeve with a pale stripe, bare top with a cross stamped into it.
void PaintCapacitor(Bench& bench, Vec2 centre, double radius, double height) {
  bench.Upright(
      centre, {radius, radius}, height, DiscAt(centre, radius), {0.10, 0.11, 0.17},
      [&](Vec2 at, double d, Tint) {
        const Vec2 q = Rotate(at - centre, 0.5);
        const double cross =
            std::max(Bell(q.X, 0.18), Bell(q.Y, 0.18)) * Smooth(0.75, 0.6, Length(q) / radius);
        const double sheen = 0.10 * Bell(Rotate(q, 0.9).X / radius, 0.35);
        const Tint bare = Grey(0.60 + sheen - 0.16 * cross);
        Tint top = Blend({0.12, 0.13, 0.20}, bare, Smooth(-0.13 * radius, -0.20 * radius, d));
        const double stripe = Smooth(0.5, 0.4, std::abs(std::atan2(q.Y, q.X) - 2.4));
        return Blend(top, {0.62, 0.64, 0.68},
                     0.8 * stripe * Smooth(-0.16 * radius, -0.10 * radius, d));
      });
}

void PaintInductor(Bench& bench) {
  const Vec2 c{44, 11};
  bench.Upright(c, {5.2, 5.2}, 4.5, BoxAt(c, {5.2, 5.2}, 1.3), {0.19, 0.19, 0.20},
                [&](Vec2 at, double d, Tint) {
                  const double r = Length(at - c);
                  const double wire = 0.75 + 0.5 * Grooves(r, 0.7, 0.14, bench.Pixel());
                  Tint tint = Grey(0.23 + 0.05 * Bell(d + 0.3, 0.2));
                  tint = Blend(tint, Tint{0.52, 0.27, 0.12} * wire, Smooth(4.4, 4.1, r));
                  return Blend(tint, Grey(0.21), Smooth(2.3, 2.1, r));
                });
}

void PaintHeatSink(Bench& bench) {
  const Vec2 c{20, 54};
  const Vec2 half{10.5, 10.0};
  bench.Upright(c, half, 2.6, BoxAt(c, half, 0.4), Grey(0.07), Plain(Grey(0.055)));
  for (int fin = 0; fin < 7; ++fin) {
    const Vec2 centre{c.X - 9.6 + 3.2 * fin, c.Y};
    bench.Upright(
        centre, {0.55, half.Y}, 9.0, BoxAt(centre, {0.55, half.Y}, 0.2), Grey(0.11),
        [&](Vec2 at, double, Tint) {
          return Grey(0.24 + 0.06 * Noise(at.X * 2, at.Y * 0.7, 961) - 0.003 * (at.Y - c.Y));
        });
  }
}

void PaintPlugs(Bench& bench) {
  const Vec2 shell{94.5, 33};
  bench.Upright(shell, {6.5, 6.0}, 5.0, BoxAt(shell, {6.5, 6.0}, 0.6), {0.50, 0.51, 0.53},
                [&](Vec2 at, double d, Tint) {
                  const Vec2 q = at - shell;
                  double level = 0.66 + 0.10 * Bell((q.X + 1.4 * q.Y) / 5.0, 0.5) +
                                 0.04 * Noise(q.X * 0.3, q.Y * 5, 970) - 0.12 * Bell(d + 0.4, 0.2);
                  for (const double tongue : {-2.6, 2.6}) {
                    const double slot = BoxDistance(q, {0.5, tongue}, {2.4, 0.9}, 0.3);
                    level -= 0.30 * Bell(slot, 0.15);
                  }
                  return Tint{level, level, level * 1.02};
                });
  const Vec2 strip{64, 70.5};
  bench.Upright(strip, {12.7, 2.4}, 3.7, BoxAt(strip, {12.7, 2.4}, 0.3), kPlastic,
                Plain(Grey(0.105)));
  for (int column = 0; column < 10; ++column) {
    for (const double row : {-1.2, 1.2}) {
      const Vec2 centre = strip + Vec2{-11.4 + 2.54 * column, row};
      bench.Upright(centre, {0.36, 0.36}, 7.5, BoxAt(centre, {0.36, 0.36}), kGold * 0.9,
                    Plain(kGold * 1.25));
    }
  }
  const Vec2 terminal{6.5, 42};
  bench.Upright(terminal, {4.5, 6.2}, 8.0, BoxAt(terminal, {4.5, 6.2}, 0.4), {0.10, 0.24, 0.44},
                [&](Vec2 at, double d, Tint) {
                  Tint tint = Tint{0.13, 0.31, 0.56} * (1 - 0.2 * Bell(d + 0.1, 0.2));
                  tint = tint * (1 - 0.4 * Bell(at.Y - terminal.Y, 0.2));
                  for (const double screw : {-3.0, 3.0}) {
                    const Vec2 q = at - terminal - Vec2{0.6, screw};
                    const double slit = Bell(Rotate(q, 0.7 + screw).X, 0.28);
                    tint = Blend(tint, {0.06, 0.10, 0.18}, Smooth(2.2, 1.9, Length(q)));
                    tint = Blend(tint, kSolder * (1 - 0.6 * slit), Smooth(1.7, 1.5, Length(q)));
                  }
                  return tint;
                });
}

void PaintCrystalAndLamp(Bench& bench) {
  const Vec2 crystal{48.5, 27.0};
  bench.Upright(crystal, {2.6, 1.3}, 3.2, BoxAt(crystal, {2.6, 1.3}, 1.25), {0.46, 0.46, 0.47},
                [&](Vec2 at, double d, Tint) {
                  return Grey(0.70 - 0.10 * Bell(d + 0.35, 0.15) - 0.03 * (at.X - crystal.X));
                });
  Print(bench, crystal, 3.4, 0.8, Grey(0.25), 3.2, 0.7);
  const Vec2 lamp{45.5, 66.5};
  bench.Upright(lamp, {1.5, 1.5}, 4.0, DiscAt(lamp, 1.5), {0.20, 0.70, 0.25},
                [&](Vec2 at, double, Tint) {
                  return Blend({0.30, 0.85, 0.32}, {0.93, 1.0, 0.90}, Bell(Length(at - lamp), 0.7));
                });
  bench.Picture().Glow(Bench::ToPicture(lamp, 4), 2.6, {0.10, 0.42, 0.12});
}

}  // namespace

void PaintBoardParts(Bench& bench) {
  PaintChips(bench);
  PaintPackage(bench, {{58, 40}, {7.0, 7.0}, 1.4, 16, 16});
  PaintPackage(bench, {{80, 40}, {5.2, 3.9}, 1.1, 0, 12});
  PaintPackage(bench, {{60, 58.5}, {3.2, 2.6}, 1.5, 0, 4});
  PaintPackage(bench, {{85, 18}, {2.5, 2.0}, 1.5, 0, 4});
  PaintRegulator(bench);
  PaintInductor(bench);
  PaintHeatSink(bench);
  PaintCapacitor(bench, {12.0, 12.5}, 4.1, 11);
  PaintCapacitor(bench, {67.5, 10.5}, 4.9, 13);
  PaintCapacitor(bench, {79.0, 9.0}, 3.2, 9);
  PaintCapacitor(bench, {88.0, 62.5}, 4.1, 11);
  PaintPlugs(bench);
  PaintCrystalAndLamp(bench);
}

}  // namespace tessa::tools
