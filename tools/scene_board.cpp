#include <array>
#include <utility>

#include "scene_paint.h"
#include "scenes.h"

namespace tessa::tools {
namespace {

// Board coordinates: millimetres, x to the right, y downwards, from the board's upper left corner.
constexpr double kBoardWidth = 100;
constexpr double kBoardHeight = 74;
constexpr double kAmbient = 24;
/// What a shiny metal surface shows: hardly itself, mostly the room.
constexpr double kMirrored = 25;

struct Part {
  Vec2 Centre;
  Vec2 Half;
  double Celsius;  // of its underside, which the board takes up
};

constexpr Part kRegulator{{27, 19.5}, {3.3, 3.1}, 89};
constexpr Part kDiode{{37.5, 17}, {2.2, 1.4}, 73};
constexpr Part kController{{58, 40}, {7.0, 7.0}, 49};
constexpr Part kMemory{{80, 40}, {5.2, 3.9}, 41};
constexpr Part kFlash{{60, 58.5}, {3.2, 2.6}, 36};
constexpr Part kDriver{{20, 54}, {8.6, 8.2}, 60};  // under the heat sink
constexpr Part kTransceiver{{85, 18}, {2.5, 2.0}, 44};
constexpr Part kSenseResistor{{12.5, 27}, {1.6, 0.85}, 63};
constexpr std::array<Part, 8> kSources{kRegulator, kDiode,  kController,  kMemory,
                                       kFlash,     kDriver, kTransceiver, kSenseResistor};
constexpr Part kInductor{{44, 11}, {5.2, 5.2}, 36};

/// Copper areas spread heat and end in visible edges.
double CopperPour(Vec2 at) {
  double d = BoxDistance(at, {27, 15.5}, {12.5, 9.5}, 1.2);
  d = std::min(d, BoxDistance(at, {40, 13}, {10.0, 6.2}, 1.2));
  d = std::min(d, BoxDistance(at, {12, 25}, {6.5, 7.0}, 1.0));
  d = std::min(d, BoxDistance(at, {20, 54}, {15.0, 14.5}, 1.5));
  d = std::min(d, BoxDistance(at, {58, 40}, {10.5, 10.5}, 3.0));
  return d;
}

/// The board's own temperature: conduction along board and copper, loss to the air, held at the
/// sources. Solved on a fixed grid, so that every picture size shows the same board.
class HeatField {
 public:
  HeatField();
  double At(Vec2 at) const;

 private:
  static constexpr int kColumns = 151;
  static constexpr int kRows = 112;
  static constexpr double kStep = kBoardWidth / (kColumns - 1);

  static std::size_t Index(int column, int row) {
    return static_cast<std::size_t>(row * kColumns + column);
  }

  std::vector<float> celsius_;
};

HeatField::HeatField() : celsius_(Index(0, kRows), static_cast<float>(kAmbient + 6)) {
  std::vector<float> conductance(celsius_.size());
  std::vector<char> held(celsius_.size(), 0);
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      const Vec2 at{column * kStep, row * kStep};
      const std::size_t i = Index(column, row);
      conductance[i] = static_cast<float>(Mix(1.0, 5.5, Smooth(0.5, -0.5, CopperPour(at))));
      for (const Part& part : kSources) {
        if (BoxDistance(at, part.Centre, part.Half) < 0) {
          held[i] = 1;
          celsius_[i] = static_cast<float>(part.Celsius);
        }
      }
    }
  }
  // Per cell, in units of the bare board's conductance: heat spreads over some 7 mm in bare board.
  constexpr float kLoss = static_cast<float>((kStep * kStep) / (7.0 * 7.0));
  constexpr float kOverrelaxation = 1.85F;
  // The rest of the circuit heats the air above the board a little.
  constexpr float kAir = static_cast<float>(kAmbient + 4.5);
  for (int pass = 0; pass < 70; ++pass) {
    for (int row = 0; row < kRows; ++row) {
      for (int column = 0; column < kColumns; ++column) {
        const std::size_t i = Index(column, row);
        if (held[i] != 0) {
          continue;
        }
        float sum = kLoss * kAir;
        float weights = kLoss;
        const auto with = [&](std::size_t j) {
          const float g = 0.5F * (conductance[i] + conductance[j]);
          sum += g * celsius_[j];
          weights += g;
        };
        if (column > 0) {
          with(i - 1);
        }
        if (column + 1 < kColumns) {
          with(i + 1);
        }
        if (row > 0) {
          with(i - kColumns);
        }
        if (row + 1 < kRows) {
          with(i + kColumns);
        }
        celsius_[i] += kOverrelaxation * (sum / weights - celsius_[i]);
      }
    }
  }
}

double HeatField::At(Vec2 at) const {
  const double x = std::clamp(at.X / kStep, 0.0, kColumns - 1.001);
  const double y = std::clamp(at.Y / kStep, 0.0, kRows - 1.001);
  const int column = static_cast<int>(x);
  const int row = static_cast<int>(y);
  const std::size_t i = Index(column, row);
  const auto value = [&](std::size_t j) { return static_cast<double>(celsius_[j]); };
  return Mix(Mix(value(i), value(i + 1), x - column),
             Mix(value(i + kColumns), value(i + kColumns + 1), x - column), y - row);
}

/// The board lies a little askew under the camera. Parts stand up to several millimetres above it
/// and lean outwards from the point below the lens.
class BoardView {
 public:
  BoardView(Canvas& canvas, const HeatField& field) : canvas_(canvas), field_(field) {}

  /// Board point for a picture point, at a height above the board.
  static Vec2 ToBoard(Vec2 picture, double height = 0) {
    const Vec2 turned = Rotate(picture - kMiddle, -kAngle) * (1 - height / kDistance);
    return turned + kBelowLens;
  }
  static Vec2 ToPicture(Vec2 board, double height = 0) {
    return Rotate((board - kBelowLens) * (1 / (1 - height / kDistance)), kAngle) + kMiddle;
  }

  double Field(Vec2 at) const { return field_.At(at); }
  double Pixel() const { return canvas_.Pixel(); }

  /// Paints a flat shape at a height; `heat(at, distance)` takes board coordinates.
  template <typename Distance, typename Heat>
  void Flat(const Box& area, double height, double softness, Distance distance, Heat heat,
            double strength = 1) {
    const std::array<Vec2, 4> corners{
        ToPicture({area.Left, area.Top}, height), ToPicture({area.Right, area.Top}, height),
        ToPicture({area.Right, area.Bottom}, height), ToPicture({area.Left, area.Bottom}, height)};
    canvas_.Paint(
        Around(corners, 2 * canvas_.Pixel() + softness), softness,
        [&](Vec2 p) { return distance(ToBoard(p, height)); },
        [&](Vec2 p, double d, double below) { return heat(ToBoard(p, height), d, below); },
        strength);
  }

  /// A body with upright sides: its outline at rising heights, the last one being its top. The
  /// sides get `side(fraction of the height)`.
  template <typename Distance, typename Side, typename Top>
  void Upright(const Box& area, double height, Distance distance, Side side, Top top) {
    const int slices = std::max(2, static_cast<int>(height / 0.6));
    for (int slice = 0; slice < slices; ++slice) {
      const double fraction = static_cast<double>(slice) / slices;
      Flat(area, height * fraction, 0.25, distance,
           [&](Vec2 at, double d, double) { return side(at, d, fraction); });
    }
    Flat(area, height, 0.25, distance, [&](Vec2 at, double d, double) { return top(at, d); });
  }

  static constexpr double kDesignWidth = 116;
  static constexpr double kDesignHeight = 87;

 private:
  static constexpr double kAngle = -0.055;
  static constexpr double kDistance = 190;  // lens to board
  static constexpr Vec2 kMiddle{58, 43.5};
  static constexpr Vec2 kBelowLens{49, 40};

  Canvas& canvas_;
  const HeatField& field_;
};

Box BoxAround(const Part& part, double margin) {
  return {part.Centre.X - part.Half.X - margin, part.Centre.Y - part.Half.Y - margin,
          part.Centre.X + part.Half.X + margin, part.Centre.Y + part.Half.Y + margin};
}

void PaintBench(Canvas& canvas, const BoardView& view) {
  canvas.Apply([&](Vec2 p, double) {
    const Vec2 at = BoardView::ToBoard(p);
    const double d = BoxDistance(at, {0.5 * kBoardWidth, 0.5 * kBoardHeight},
                                 {0.5 * kBoardWidth, 0.5 * kBoardHeight}, 1.5);
    // A rubber mat: the board's warmth falls on it, and there is grain in it.
    const Vec2 edge{std::clamp(at.X, 0.0, kBoardWidth), std::clamp(at.Y, 0.0, kBoardHeight)};
    const double near = 0.16 * (view.Field(edge) - kAmbient) * std::exp(-std::max(d, 0.0) / 3.5);
    return kAmbient - 0.3 + near + 0.35 * Fractal(p.X * 0.03, p.Y * 0.03, 4, 0.03, 900) +
           0.12 * Fractal(p.X * 0.8, p.Y * 0.8, 2, canvas.Pixel() * 0.8, 905);
  });
  // A cable that leaves the picture, warmed a little by its current.
  Vec2 from = BoardView::ToPicture({7, 44}, 4);
  for (const Vec2 to : {Vec2{-3, 46}, Vec2{-9, 50}, Vec2{-16, 58}}) {
    const Vec2 next = BoardView::ToPicture(to, 2);
    canvas.Stroke(from, next, 1.2, 1.2, 29.0);
    from = next;
  }
}

/// A polyline of copper under the solder mask.
struct Trace {
  std::vector<Vec2> Points;
  double Width;
  double Kelvin;
};

std::vector<Trace> Traces() {
  std::vector<Trace> traces;
  // Buses with the usual 45 degree bends: each trace follows its neighbour's bends.
  const auto bus = [&](Vec2 start, Vec2 first, Vec2 second, Vec2 third, Vec2 step, int count,
                       double kelvin) {
    for (int i = 0; i < count; ++i) {
      const Vec2 shift = step * i;
      const double bend = 0.42 * i;
      traces.push_back({{start + shift, first + shift + Vec2{bend * 0.5, 0},
                         second + shift + Vec2{bend * 0.5, 0}, third + shift},
                        0.21,
                        kelvin * (0.7 + 0.3 * ((i * 7) % 3))});
    }
  };
  bus({65, 35.5}, {69, 35.5}, {70.8, 37.3}, {75, 37.3}, {0, 0.95}, 8, 1.2);
  bus({52.5, 47}, {52.5, 50}, {49.5, 53}, {49.5, 70}, {1.05, 0}, 9, 0.9);
  bus({51, 35}, {47, 35}, {44, 32}, {44, 24}, {-0.95, 0.95}, 5, 1.0);
  bus({54, 33}, {54, 28}, {58, 24}, {58, 5}, {1.1, 0}, 7, 0.9);
  bus({82.5, 17}, {76, 17}, {66, 27}, {66, 33}, {0, 1.1}, 4, 0.8);
  bus({87.5, 17}, {91, 17}, {92.5, 18.5}, {96, 18.5}, {0, 1.2}, 3, 0.8);
  bus({65, 44}, {70, 44}, {78, 52}, {96, 52}, {0, 1.2}, 6, 0.8);
  bus({63, 58}, {70, 58}, {73, 61}, {78, 61}, {0, 0.9}, 4, 0.7);
  bus({30, 58}, {36, 58}, {40, 62}, {44, 62}, {0, 1.5}, 5, 1.5);
  traces.push_back({{{8, 40}, {8, 30}, {12, 26}, {16, 22}, {24, 20}}, 1.3, 3.0});
  traces.push_back({{{34, 18}, {40, 18}, {44, 14}, {44, 11}}, 1.4, 3.0});
  traces.push_back({{{49, 11}, {52, 11}, {54, 13}, {54, 20}, {50, 24}, {50, 31}}, 0.9, 1.8});
  traces.push_back({{{30, 26}, {30, 36}, {28, 38}, {28, 46}}, 1.1, 2.2});
  return traces;
}

void PaintBoard(BoardView& view) {
  const Vec2 middle{0.5 * kBoardWidth, 0.5 * kBoardHeight};
  const auto outline = [&](Vec2 at) { return BoxDistance(at, middle, middle, 1.5); };
  view.Flat(
      {-1, -1, kBoardWidth + 1, kBoardHeight + 1}, 0, 0.2, outline, [&](Vec2 at, double d, double) {
        double celsius = view.Field(at) +
                         0.5 * Fractal(at.X * 0.09, at.Y * 0.09, 3, view.Pixel() * 0.09, 910) +
                         0.22 * Fractal(at.X * 1.3, at.Y * 1.3, 2, view.Pixel() * 1.3, 915);
        // Copper below the mask emits a little less and shows its outline.
        const double pour = CopperPour(at);
        celsius -= 0.035 * (celsius - kMirrored) * Smooth(0.15, -0.15, pour);
        return celsius - 1.2 * Smooth(-1.2, 0.0, d);
      });
  for (const Trace& trace : Traces()) {
    for (std::size_t i = 1; i < trace.Points.size(); ++i) {
      const Vec2 a = trace.Points[i - 1];
      const Vec2 b = trace.Points[i];
      const double wide = std::max(trace.Width, 0.6 * view.Pixel());
      const std::array<Vec2, 2> ends{a, b};
      view.Flat(
          Around(ends, wide + 0.3), 0, 0.12,
          [&](Vec2 at) { return CapsuleDistance(at, a, b, wide, wide); },
          [&](Vec2 at, double, double) {
            // Beside the hottest parts the copper is no warmer than they are.
            const double above = view.Field(at) - kAmbient;
            return view.Field(at) + (1.5 * trace.Kelvin + 0.06 * above) * Clamp01(1.3 - above / 50);
          },
          std::min(1.0, trace.Width / wide));
    }
  }
  // Vias, test pads and mounting holes: bare metal.
  const auto pad = [&](Vec2 centre, double radius, double shine) {
    const double wide = std::max(radius, 0.6 * view.Pixel());
    view.Flat(
        {centre.X - wide - 0.3, centre.Y - wide - 0.3, centre.X + wide + 0.3,
         centre.Y + wide + 0.3},
        0, 0.1, [&](Vec2 at) { return Length(at - centre) - wide; },
        [&](Vec2, double, double below) { return Mix(below, kMirrored, shine); },
        std::min(1.0, radius * radius / (wide * wide)));
  };
  Random random(31);
  for (int i = 0; i < 150; ++i) {
    const Vec2 at{random.Uniform(4, kBoardWidth - 4), random.Uniform(4, kBoardHeight - 4)};
    pad(at, random.Uniform(0.2, 0.42), 0.55);
  }
  for (int row = 0; row < 5; ++row) {
    for (int column = 0; column < 7; ++column) {
      pad({17.0 + 1.3 * column, 7.5 + 1.3 * row}, 0.26, 0.4);
    }
  }
  for (const Vec2 hole : {Vec2{4.5, 4.5}, Vec2{95.5, 4.5}, Vec2{4.5, 69.5}, Vec2{95.5, 69.5}}) {
    pad(hole, 3.1, 0.72);
    view.Flat(
        {hole.X - 2, hole.Y - 2, hole.X + 2, hole.Y + 2}, 0, 0.15,
        [&](Vec2 at) { return Length(at - hole) - 1.65; },
        [&](Vec2, double, double) { return kAmbient + 0.6; });
  }
}

/// Small parts that have no name: resistors and capacitors two by two millimetres and less.
void PaintChips(BoardView& view) {
  const auto chip = [&](Vec2 centre, bool upright, double size, double kelvin) {
    const Vec2 half = upright ? Vec2{0.5 * size, size} : Vec2{size, 0.5 * size};
    const Box area{centre.X - 2 * size, centre.Y - 2 * size, centre.X + 2 * size,
                   centre.Y + 2 * size};
    view.Flat(
        area, 0, 0.12, [&](Vec2 at) { return BoxDistance(at, centre, half + half * 0.25, 0.1); },
        [&](Vec2, double, double below) { return Mix(below, kMirrored, 0.5); });
    view.Flat(
        area, 0.5, 0.15,
        [&](Vec2 at) {
          return BoxDistance(at, centre,
                             upright ? Vec2{half.X, half.Y * 0.62} : Vec2{half.X * 0.62, half.Y});
        },
        [&](Vec2 at, double, double) { return view.Field(at) + kelvin; });
  };
  Random random(57);
  // Around the controller, close to its supply pins.
  for (int i = 0; i < 7; ++i) {
    chip({50.0 + 2.6 * i, 28.6}, true, 0.62, random.Uniform(-0.5, 1.5));
    chip({69.5, 31.0 + 2.9 * i}, false, 0.55, random.Uniform(-0.5, 1.0));
  }
  for (int i = 0; i < 6; ++i) {
    chip({45.5, 34.0 + 2.4 * i}, false, 0.62, random.Uniform(-0.5, 2.0));
    chip({73.0 + 2.7 * i, 46.6}, true, 0.6, random.Uniform(-0.5, 0.8));
    chip({78.0 + 2.2 * i, 24.0}, true, 0.55, random.Uniform(0.0, 2.5));
    chip({66.0 + 2.4 * i, 65.5}, true, 0.7, random.Uniform(-0.4, 1.4));
  }
  for (int i = 0; i < 4; ++i) {
    chip({18.0 + 3.4 * i, 27.6}, true, 0.8, random.Uniform(0.5, 3.0));
    chip({38.5, 45.0 + 3.2 * i}, false, 0.75, random.Uniform(0.5, 5.0));
    chip({33.5, 31.0 + 2.2 * i}, false, 0.6, random.Uniform(0.0, 1.5));
  }
  chip({52.5, 62.0}, true, 0.8, 11.0);  // a lamp's series resistor
  chip(kSenseResistor.Centre, false, 1.6, 3.0);
}

/// An integrated circuit: pins that mirror the room, a body warmest above its die.
void PaintPackage(BoardView& view, const Part& part, double dieKelvin, Vec2 die, int pinsAcross,
                  int pinsDown, double height) {
  const auto pins = [&](bool across, int count) {
    const double along = across ? part.Half.X : part.Half.Y;
    for (int i = 0; i < count; ++i) {
      const double offset = along * (2.0 * (i + 0.5) / count - 1.0) * 0.94;
      const double pitch = 2 * along / count;
      for (const double side : {-1.0, 1.0}) {
        const Vec2 centre = part.Centre + (across ? Vec2{offset, side * (part.Half.Y + 0.75)}
                                                  : Vec2{side * (part.Half.X + 0.75), offset});
        const Vec2 half = across ? Vec2{0.27 * pitch, 0.75} : Vec2{0.75, 0.27 * pitch};
        view.Flat(
            {centre.X - 1.4, centre.Y - 1.4, centre.X + 1.4, centre.Y + 1.4}, 0.2, 0.1,
            [&](Vec2 at) { return BoxDistance(at, centre, half, 0.1); },
            [&](Vec2, double, double below) { return Mix(below, kMirrored, 0.6); });
      }
    }
  };
  if (pinsAcross > 0) {
    pins(true, pinsAcross);
  }
  if (pinsDown > 0) {
    pins(false, pinsDown);
  }
  const double spread = 0.42 * std::min(part.Half.X, part.Half.Y);
  view.Upright(
      BoxAround(part, 0.5), height,
      [&](Vec2 at) { return BoxDistance(at, part.Centre, part.Half, 0.25); },
      [&](Vec2, double, double fraction) { return part.Celsius - 2.0 + fraction; },
      [&](Vec2 at, double d) {
        const Vec2 q = at - part.Centre;
        const double r = Length(q - die);
        double celsius = part.Celsius - 1.0 + dieKelvin * std::exp(-r * r / (2 * spread * spread));
        celsius -= 1.3 * Smooth(-0.9, 0.0, d) * (1 + 0.04 * dieKelvin);
        // The dimple that marks pin 1, and the printing, a matter of emissivity.
        celsius -= 0.9 * Bell(Length(q + part.Half - Vec2{1.1, 1.1}), 0.35);
        const double line = Smooth(0.25, 0.15, std::abs(std::abs(q.Y - 0.25) - 0.8)) *
                            Smooth(0.65 * part.Half.X, 0.55 * part.Half.X, std::abs(q.X));
        const double letters = Smooth(-0.1, 0.2, Noise(q.X * 2.2, std::floor(q.Y), 930));
        return celsius - 0.55 * line * letters +
               0.25 * Fractal(at.X * 0.6, at.Y * 0.6, 3, view.Pixel(), 931);
      });
}

void PaintRegulator(BoardView& view) {
  const Vec2 c = kRegulator.Centre;
  // The soldered tab reaches out above the body; bare metal, so that only part of its heat shows.
  view.Flat(
      {c.X - 4, c.Y - 6.5, c.X + 4, c.Y}, 0.3, 0.2,
      [&](Vec2 at) {
        return BoxDistance(at, c + Vec2{0, -3.4}, {2.7, 1.7}, 0.3);
      },
      [&](Vec2 at, double, double) {
        return 62.0 + 1.5 * Fractal(at.X, at.Y, 2, view.Pixel(), 940);
      });
  for (const double offset : {-2.3, 0.0, 2.3}) {
    view.Flat(
        {c.X - 4, c.Y, c.X + 4, c.Y + 7}, 0.3, 0.2,
        [&](Vec2 at) {
          return BoxDistance(at, c + Vec2{offset, 4.2}, {0.42, 1.3}, 0.1);
        },
        [&](Vec2, double, double below) { return Mix(below, kMirrored, 0.45); });
  }
  view.Upright(
      BoxAround(kRegulator, 1), 2.3,
      [&](Vec2 at) { return BoxDistance(at, c, kRegulator.Half, 0.3); },
      [&](Vec2, double, double fraction) { return 84.0 + 3 * fraction; },
      [&](Vec2 at, double d) {
        const double r = Length(at - c - Vec2{0.2, -0.7});
        return 86.6 + 6.0 * std::exp(-r * r / 5.5) - 2.6 * Smooth(-0.8, 0.0, d) +
               0.25 * Fractal(at.X, at.Y, 2, view.Pixel(), 941);
      });
  PaintPackage(view, kDiode, 4.0, {-0.2, 0.0}, 0, 1, 1.8);
}

/// An upright can: dark sleeve, bare top with a vent stamped into it.
void PaintCapacitor(BoardView& view, Vec2 centre, double radius, double height, double celsius) {
  const Box area{centre.X - radius - 0.5, centre.Y - radius - 0.5, centre.X + radius + 0.5,
                 centre.Y + radius + 0.5};
  view.Upright(
      area, height, [&](Vec2 at) { return Length(at - centre) - radius; },
      [&](Vec2 at, double, double fraction) {
        const Vec2 q = at - centre;
        const double stripe = Bell(std::atan2(q.Y, q.X) - 2.4, 0.35);
        // Towards the hot parts of the board the sleeve is warmer.
        const Vec2 toward = Vec2{30, 22} - centre;
        const double facing = Dot(q, toward) / (radius * Length(toward));
        return celsius + 1.8 * (1 - fraction) + 2.2 * facing - 0.8 * stripe;
      },
      [&](Vec2 at, double d) {
        const Vec2 q = Rotate(at - centre, 0.5);
        const double bare = Smooth(-0.13 * radius, -0.20 * radius, d);
        double top = Mix(celsius, kMirrored + 0.22 * (celsius - kMirrored), 0.85);
        top += 0.9 * (Bell(q.X, 0.16) + Bell(q.Y, 0.16)) * Smooth(0.75, 0.6, Length(q) / radius);
        top += 0.5 * q.X / radius;  // one side mirrors the operator
        return Mix(celsius + 1.2, top, bare);
      });
}

void PaintInductor(BoardView& view) {
  const Vec2 c = kInductor.Centre;
  view.Upright(
      BoxAround(kInductor, 1), 4.5,
      [&](Vec2 at) { return BoxDistance(at, c, kInductor.Half, 1.3); },
      [&](Vec2, double, double fraction) { return 33.5 - 1.5 * fraction; },
      [&](Vec2 at, double d) {
        const double r = Length(at - c);
        double celsius = 32.0 - 0.12 * (at.X - c.X) + 0.8 * Smooth(-0.7, 0.0, d);
        celsius += 2.6 * Smooth(4.4, 4.0, r) * (0.7 + 0.3 * Grooves(r, 0.7, 0.14, view.Pixel()));
        celsius = Mix(celsius, 31.2, Smooth(2.3, 2.0, r));
        return celsius + 0.3 * Fractal(at.X, at.Y, 3, view.Pixel(), 950);
      });
}

void PaintHeatSink(BoardView& view) {
  const Vec2 c = kDriver.Centre;
  const Vec2 half{10.5, 10.0};
  const Box area{c.X - 11.5, c.Y - 11, c.X + 11.5, c.Y + 11};
  // Black anodised: the gaps between the fins act as cavities and show the base's full heat.
  view.Upright(
      area, 2.0, [&](Vec2 at) { return BoxDistance(at, c, half, 0.4); },
      [&](Vec2, double, double) { return 56.5; },
      [&](Vec2 at, double) {
        const Vec2 q = at - c;
        return 60.5 - 0.012 * Dot(q, q) + 0.4 * Noise(at.X, at.Y, 960);
      });
  for (int fin = 0; fin < 7; ++fin) {
    const double x = c.X - 9.6 + 3.2 * fin;
    const double warmth = 56.0 - 0.035 * (x - c.X) * (x - c.X);
    view.Upright(
        {x - 1, c.Y - 11, x + 1, c.Y + 11}, 9.0,
        [&](Vec2 at) {
          return BoxDistance(at, {x, c.Y}, {0.55, half.Y}, 0.2);
        },
        [&](Vec2, double, double fraction) { return warmth + 2.0 - 3.5 * fraction; },
        [&](Vec2 at, double) {
          const double y = (at.Y - c.Y) / half.Y;
          return warmth - 1.8 - 1.6 * y * y + 0.5 * Noise(at.X * 2, at.Y * 0.7, 961);
        });
  }
}

void PaintConnectors(BoardView& view) {
  // A metal shell at the right edge, a pin strip at the lower one, screw terminals at the left.
  const Vec2 shell{94.5, 33};
  view.Upright(
      {86, 26, 102, 41}, 5.0,
      [&](Vec2 at) {
        return BoxDistance(at, shell, {6.5, 6.0}, 0.6);
      },
      [&](Vec2, double, double fraction) { return 27.2 - fraction; },
      [&](Vec2 at, double d) {
        double celsius = 25.6 + 0.12 * (at.Y - shell.Y) + 0.6 * Smooth(-0.5, 0.0, d);
        for (const double tongue : {-2.6, 2.6}) {
          const double slot = BoxDistance(at, shell + Vec2{0.5, tongue}, {2.4, 0.9}, 0.3);
          celsius += 2.0 * Smooth(0.2, -0.2, slot);
        }
        return celsius + 0.4 * Noise(at.X * 0.4, at.Y * 0.4, 970);
      });
  const Vec2 strip{64, 70.5};
  view.Upright(
      {50, 67, 78, 74}, 2.5,
      [&](Vec2 at) {
        return BoxDistance(at, strip, {12.7, 2.4}, 0.3);
      },
      [&](Vec2 at, double, double) { return view.Field(at) - 0.8; },
      [&](Vec2 at, double) { return view.Field(at) - 1.4 + 0.2 * Noise(at.X, at.Y, 971); });
  for (int pin = 0; pin < 20; ++pin) {
    const Vec2 centre = strip + Vec2{-11.4 + 2.54 * (pin / 2), pin % 2 == 0 ? -1.2 : 1.2};
    view.Upright(
        {centre.X - 1, centre.Y - 1, centre.X + 1, centre.Y + 1}, 6.5,
        [&](Vec2 at) {
          return BoxDistance(at, centre, {0.36, 0.36}, 0.1);
        },
        [&](Vec2, double, double) { return 26.6; }, [](Vec2, double) { return 25.4; });
  }
  const Vec2 terminal{6.5, 42};
  view.Upright(
      {1, 35, 12, 49}, 8.0,
      [&](Vec2 at) {
        return BoxDistance(at, terminal, {4.5, 6.2}, 0.4);
      },
      [&](Vec2, double, double fraction) { return 34.0 - 2.5 * fraction; },
      [&](Vec2 at, double) {
        double celsius = 31.0 + 0.3 * Noise(at.X * 0.7, at.Y * 0.7, 972);
        for (const double screw : {-3.0, 3.0}) {
          const Vec2 q = at - terminal - Vec2{0.6, screw};
          const double head = Smooth(1.75, 1.5, Length(q));
          celsius = Mix(celsius, 29.0 + 1.5 * Bell(Rotate(q, 0.7 + screw).X, 0.25), head);
          celsius += 1.2 * Bell(Length(q) - 1.95, 0.25);
        }
        return celsius;
      });
  // A crystal in its can, and a lit lamp.
  const Vec2 crystal{48.5, 27.0};
  view.Upright(
      {44, 24, 53, 30}, 2.0,
      [&](Vec2 at) {
        return BoxDistance(at, crystal, {2.6, 1.3}, 1.25);
      },
      [&](Vec2, double, double) { return 30.0; },
      [&](Vec2 at, double d) { return 26.5 + 2.0 * Smooth(-0.6, 0.0, d) + 0.1 * (at.X - 48); });
  const Vec2 lamp{45.5, 66.5};
  view.Upright(
      {42, 63, 49, 70}, 4.0, [&](Vec2 at) { return Length(at - lamp) - 1.5; },
      [&](Vec2, double, double fraction) { return 37 - 2 * fraction; },
      [&](Vec2 at, double) { return 35.5 + 6.5 * Bell(Length(at - lamp), 0.6); });
}

}  // namespace

Scene CircuitBoard(int width, int height) {
  Canvas canvas(width, height, BoardView::kDesignWidth, BoardView::kDesignHeight);
  static const HeatField field;  // the same for every picture
  BoardView view(canvas, field);
  PaintBench(canvas, view);
  PaintBoard(view);
  PaintChips(view);
  PaintPackage(view, kController, 7.5, {-0.6, 0.4}, 16, 16, 1.4);
  PaintPackage(view, kMemory, 2.5, {0.5, 0.0}, 0, 12, 1.1);
  PaintPackage(view, kFlash, 1.5, {}, 0, 4, 1.5);
  PaintPackage(view, kTransceiver, 4.0, {0.2, 0.1}, 0, 4, 1.5);
  PaintRegulator(view);
  PaintInductor(view);
  PaintHeatSink(view);
  PaintCapacitor(view, {12.0, 12.5}, 4.1, 11, 35.5);
  PaintCapacitor(view, {67.5, 10.5}, 4.9, 13, 30.5);
  PaintCapacitor(view, {79.0, 9.0}, 3.2, 9, 29.5);
  PaintCapacitor(view, {88.0, 62.5}, 4.1, 11, 28.5);
  PaintConnectors(view);
  // Nothing as small as a part's edge is sharp at this distance.
  canvas.Blur(0.16);
  return std::move(canvas).Take();
}

}  // namespace tessa::tools
