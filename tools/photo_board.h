#pragma once

#include "photo_paint.h"

/// What the photo of the board is painted with. The view and the places of the parts are those of
/// scene_board.cpp, so that both pictures lie over one another.
namespace tessa::tools {

// Board coordinates: millimetres, x to the right, y downwards, from the board's upper left corner.
inline constexpr double kBoardWidth = 100;
inline constexpr double kBoardHeight = 74;
inline constexpr Tint kSolder{0.66, 0.67, 0.68};
inline constexpr Tint kGold{0.72, 0.58, 0.28};
inline constexpr Tint kPlastic{0.075, 0.075, 0.08};

/// The view from above, a little askew; what stands up leans outwards. The lamp is to the upper
/// left.
class Bench {
 public:
  explicit Bench(Photo& photo) : photo_(photo) {}

  static Vec2 ToBoard(Vec2 picture, double height = 0) {
    return Rotate(picture - kMiddle, -kAngle) * (1 - height / kDistance) + kBelowLens;
  }
  static Vec2 ToPicture(Vec2 board, double height = 0) {
    return Rotate((board - kBelowLens) * (1 / (1 - height / kDistance)), kAngle) + kMiddle;
  }

  double Pixel() const { return photo_.Pixel(); }

  /// A flat shape at a height; `tint(at, distance)` takes board coordinates.
  template <typename Distance, typename Colouring>
  void Flat(Vec2 centre, Vec2 reach, double height, Distance distance, Colouring tint,
            double strength = 1, double softness = 0.05) {
    const std::array<Vec2, 4> corners{
        ToPicture(centre - reach, height), ToPicture(centre + Vec2{reach.X, -reach.Y}, height),
        ToPicture(centre + reach, height), ToPicture(centre + Vec2{-reach.X, reach.Y}, height)};
    photo_.Paint(
        Around(corners, 2 * photo_.Pixel() + softness), softness,
        [&](Vec2 p) { return distance(ToBoard(p, height)); },
        [&](Vec2 p, double d, Tint below) { return tint(ToBoard(p, height), d, below); }, strength);
  }

  /// A body with upright sides that casts a shadow. `side` is lit by where it faces.
  template <typename Distance, typename Colouring>
  void Upright(Vec2 centre, Vec2 reach, double height, Distance distance, Tint side,
               Colouring top) {
    const Vec2 fall = kShadow * height;
    Flat(
        centre + fall * 0.5, reach + Vec2{height, height}, 0,
        [&](Vec2 at) { return std::min(distance(at - fall * 0.5), distance(at - fall)); },
        [](Vec2, double, Tint below) { return below; });
    for (const double part : {0.35, 0.7, 1.0}) {
      Flat(
          centre + fall * part, reach + Vec2{1, 1}, 0,
          [&](Vec2 at) { return distance(at - fall * part); },
          [](Vec2, double, Tint below) { return below * 0.78; }, 1, 0.3 + 0.12 * height);
    }
    const int slices = std::max(2, static_cast<int>(height / 0.35));
    for (int slice = 0; slice < slices; ++slice) {
      const double fraction = static_cast<double>(slice) / slices;
      Flat(centre, reach + Vec2{1, 1}, height * fraction, distance, [&](Vec2 at, double, Tint) {
        const Vec2 q = at - centre;
        const double facing = -Dot(q, kShadow) / (Length(q) * Length(kShadow) + 1e-9);
        return side * (0.8 + 0.35 * facing + 0.1 * fraction);
      });
    }
    Flat(centre, reach + Vec2{1, 1}, height, distance, top);
  }

  Photo& Picture() { return photo_; }

  static constexpr double kDesignWidth = 116;
  static constexpr double kDesignHeight = 87;

 private:
  static constexpr double kAngle = -0.055;
  static constexpr double kDistance = 190;
  static constexpr Vec2 kMiddle{58, 43.5};
  static constexpr Vec2 kBelowLens{49, 40};
  static constexpr Vec2 kShadow{0.42, 0.34};

  Photo& photo_;
};

inline auto BoxAt(Vec2 centre, Vec2 half, double radius = 0.1) {
  return [=](Vec2 at) { return BoxDistance(at, centre, half, radius); };
}
inline auto DiscAt(Vec2 centre, double radius) {
  return [=](Vec2 at) { return Length(at - centre) - radius; };
}
inline auto Plain(Tint tint) {
  return [=](Vec2, double, Tint) { return tint; };
}

/// White print: words too small to be read.
void Print(Bench& bench, Vec2 at, double length, double size, Tint ink, double height,
           double strength = 0.8);

void PaintBoardParts(Bench& bench);

}  // namespace tessa::tools
