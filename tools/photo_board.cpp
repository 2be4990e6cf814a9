#include "photo_board.h"

#include "photos.h"

namespace tessa::tools {
namespace {

double CopperPour(Vec2 at) {
  double d = BoxDistance(at, {27, 15.5}, {12.5, 9.5}, 1.2);
  d = std::min(d, BoxDistance(at, {40, 13}, {10.0, 6.2}, 1.2));
  d = std::min(d, BoxDistance(at, {12, 25}, {6.5, 7.0}, 1.0));
  d = std::min(d, BoxDistance(at, {20, 54}, {15.0, 14.5}, 1.5));
  return std::min(d, BoxDistance(at, {58, 40}, {10.5, 10.5}, 3.0));
}

void PaintMatAndBoard(Bench& bench) {
  Photo& photo = bench.Picture();
  photo.Apply(photo.Everything(), [&](Vec2 p, Tint) {
    // A blue-grey mat with a grid of lines.
    const double light =
        1.45 - 0.0050 * (p.X + p.Y) + 0.05 * Fractal(p.X * 0.9, p.Y * 0.9, 4, 0.1, 900);
    const double lines =
        std::max(Grooves(p.X, 10, 0.12, bench.Pixel()), Grooves(p.Y, 10, 0.12, bench.Pixel()));
    return (Tint{0.235, 0.285, 0.335} + Grey(0.14) * lines) * light;
  });
  const Vec2 middle{0.5 * kBoardWidth, 0.5 * kBoardHeight};
  const auto outline = BoxAt(middle, middle, 1.5);
  bench.Upright(middle, middle, 1.2, outline, {0.46, 0.44, 0.26}, [&](Vec2 at, double d, Tint) {
    const double light = 1.50 - 0.0050 * (at.X + at.Y) +
                         0.05 * Fractal(at.X * 0.7, at.Y * 0.7, 4, bench.Pixel(), 910);
    const double copper = Smooth(0.15, -0.15, CopperPour(at));
    Tint tint = Blend({0.045, 0.215, 0.125}, {0.085, 0.315, 0.165}, copper);
    tint = tint * (1 - 0.25 * Bell(CopperPour(at), 0.22));
    return Blend(tint * light, Tint{0.36, 0.36, 0.22}, Smooth(-0.25, 0.0, d));
  });
  // The cable, black and red, to the screw terminals.
  for (const double apart : {-1.1, 1.1}) {
    Vec2 from = Bench::ToPicture({7, 44 + apart}, 4);
    for (const Vec2 to : {Vec2{-3, 46}, Vec2{-9, 50}, Vec2{-16, 58}}) {
      const Vec2 next = Bench::ToPicture(to + Vec2{0, apart}, 2);
      photo.Stroke(from + Vec2{0.8, 0.9}, next + Vec2{0.8, 0.9}, 1.1, 1.1, {0.10, 0.12, 0.14});
      const Tint sleeve = apart < 0 ? Tint{0.52, 0.08, 0.07} : Grey(0.07);
      photo.Stroke(from, next, 1.0, 1.0, sleeve);
      photo.Stroke(from + Vec2{-0.2, -0.3}, next + Vec2{-0.2, -0.3}, 0.25, 0.25,
                   sleeve + Grey(0.22));
      from = next;
    }
  }
}

void PaintTraces(Bench& bench) {
  const auto trace = [&](const std::vector<Vec2>& points, double width) {
    for (std::size_t i = 1; i < points.size(); ++i) {
      const Vec2 a = points[i - 1];
      const Vec2 b = points[i];
      const double wide = std::max(width, 0.5 * bench.Pixel());
      const std::array<Vec2, 2> ends{a, b};
      const Box box = Around(ends, wide + 0.2);
      bench.Flat(
          {(box.Left + box.Right) / 2, (box.Top + box.Bottom) / 2},
          {(box.Right - box.Left) / 2, (box.Bottom - box.Top) / 2}, 1.2,
          [&](Vec2 at) { return CapsuleDistance(at, a, b, wide, wide); },
          Plain({0.115, 0.375, 0.20}), std::min(1.0, width / wide));
    }
  };
  const auto bus = [&](Vec2 start, Vec2 first, Vec2 second, Vec2 third, Vec2 step, int count) {
    for (int i = 0; i < count; ++i) {
      const Vec2 shift = step * i;
      const Vec2 bend{0.21 * i, 0};
      trace({start + shift, first + shift + bend, second + shift + bend, third + shift}, 0.21);
    }
  };
  bus({65, 35.5}, {69, 35.5}, {70.8, 37.3}, {75, 37.3}, {0, 0.95}, 8);
  bus({52.5, 47}, {52.5, 50}, {49.5, 53}, {49.5, 70}, {1.05, 0}, 9);
  bus({51, 35}, {47, 35}, {44, 32}, {44, 24}, {-0.95, 0.95}, 5);
  bus({54, 33}, {54, 28}, {58, 24}, {58, 5}, {1.1, 0}, 7);
  bus({82.5, 17}, {76, 17}, {66, 27}, {66, 33}, {0, 1.1}, 4);
  bus({87.5, 17}, {91, 17}, {92.5, 18.5}, {96, 18.5}, {0, 1.2}, 3);
  bus({65, 44}, {70, 44}, {78, 52}, {96, 52}, {0, 1.2}, 6);
  bus({63, 58}, {70, 58}, {73, 61}, {78, 61}, {0, 0.9}, 4);
  bus({30, 58}, {36, 58}, {40, 62}, {44, 62}, {0, 1.5}, 5);
  trace({{8, 40}, {8, 30}, {12, 26}, {16, 22}, {24, 20}}, 1.3);
  trace({{34, 18}, {40, 18}, {44, 14}, {44, 11}}, 1.4);
  trace({{49, 11}, {52, 11}, {54, 13}, {54, 20}, {50, 24}, {50, 31}}, 0.9);
  trace({{30, 26}, {30, 36}, {28, 38}, {28, 46}}, 1.1);

  const auto pad = [&](Vec2 centre, double radius, Tint metal) {
    const double wide = std::max(radius, 0.5 * bench.Pixel());
    bench.Flat(centre, {wide, wide}, 1.2, DiscAt(centre, wide), Plain(metal),
               std::min(1.0, radius * radius / (wide * wide)));
  };
  Random random(31);
  for (int i = 0; i < 150; ++i) {
    const Vec2 at{random.Uniform(4, kBoardWidth - 4), random.Uniform(4, kBoardHeight - 4)};
    pad(at, random.Uniform(0.2, 0.42), kGold);
    pad(at, 0.14, Grey(0.08));
  }
  for (int row = 0; row < 5; ++row) {
    for (int column = 0; column < 7; ++column) {
      pad({17.0 + 1.3 * column, 7.5 + 1.3 * row}, 0.26, kGold);
    }
  }
  for (const Vec2 hole : {Vec2{4.5, 4.5}, Vec2{95.5, 4.5}, Vec2{4.5, 69.5}, Vec2{95.5, 69.5}}) {
    pad(hole, 3.1, kGold);
    pad(hole, 1.65, {0.15, 0.18, 0.21});
  }
  for (const Vec2 at :
       {Vec2{20, 31}, Vec2{36.5, 22.5}, Vec2{58, 52.3}, Vec2{80, 33}, Vec2{86, 24.3},
        Vec2{61, 63.3}, Vec2{12, 19.5}, Vec2{39, 69}, Vec2{88, 57}, Vec2{73, 17}}) {
    Print(bench, at, 4.0, 1.3, Grey(0.80), 1.2);
  }
  Print(bench, {84, 70}, 15, 2.0, Grey(0.85), 1.2);
}

}  // namespace

void Print(Bench& bench, Vec2 at, double length, double size, Tint ink, double height,
           double strength) {
  const Vec2 half{0.5 * length, 0.5 * size};
  bench.Flat(
      at, half, height, BoxAt(at, half),
      [&](Vec2 p, double, Tint below) {
        const Vec2 q = p - at;
        const double letter = std::floor(q.X / (0.75 * size));
        const double stroke = Smooth(
            -0.05, 0.25, Noise(q.X * 2.6 / size + 3.7 * at.X, letter + q.Y * 2.2 / size, 77));
        const double gap = Smooth(0.02, 0.14, q.X / (0.75 * size) - letter);
        return Blend(below, ink, stroke * gap);
      },
      strength);
}

Bytes PhotoOfBoard(int width, int height) {
  Photo photo(width, height, Bench::kDesignWidth, Bench::kDesignHeight);
  Bench bench(photo);
  PaintMatAndBoard(bench);
  PaintTraces(bench);
  PaintBoardParts(bench);
  photo.Blur(0.09);
  return photo.Develop(0.008, 42);
}

}  // namespace tessa::tools
