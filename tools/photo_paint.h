#pragma once

#include <array>

#include "formats/byte_writer.h"
#include "scene_paint.h"

/// What the photos are painted with, beside the distance fields and the noise of the scenes.
namespace tessa::tools {

/// A colour as the screen shows it: red, green and blue from 0 to 1.
using Tint = Vec3;

inline Tint Blend(Tint a, Tint b, double t) {
  return a + (b - a) * t;
}
inline Tint Grey(double level) {
  return {level, level, level};
}

/// The raster. Coordinates as those of a Canvas.
class Photo {
 public:
  Photo(int width, int height, double designWidth, double designHeight);

  double Pixel() const { return pixel_; }
  Box Everything() const;

  /// Calls `change(point, tint)` for each pixel of the box; what it returns replaces the pixel.
  template <typename Change>
  void Apply(const Box& box, Change change) {
    const int firstColumn = Index(box.Left, left_, 0, width_);
    const int lastColumn = Index(box.Right, left_, 1, width_);
    const int firstRow = Index(box.Top, top_, 0, height_);
    const int lastRow = Index(box.Bottom, top_, 1, height_);
    for (int row = firstRow; row < lastRow; ++row) {
      for (int column = firstColumn; column < lastColumn; ++column) {
        Tint& pixel = At(column, row);
        pixel = change(Centre(column, row), pixel);
      }
    }
  }

  /// Paints a flat shape: `distance(point)` gives its edge, `tint(point, distance, below)` its
  /// colour.
  template <typename Distance, typename Colouring>
  void Paint(const Box& box, double softness, Distance distance, Colouring tint,
             double strength = 1) {
    const double edge = std::max(softness, pixel_);
    Apply(box, [&](Vec2 p, Tint below) {
      const double d = distance(p);
      const double cover = Cover(d, edge) * strength;
      return cover > 0 ? Blend(below, tint(p, d, below), cover) : below;
    });
  }

  /// Paints a shape lying on a surface that all of `area` is in front of the camera, or, with an
  /// empty area, on the whole picture's view of it. `tint(at, distance, pixel, below)` takes
  /// surface coordinates and what a pixel covers there.
  template <typename Distance, typename Colouring>
  void Paint(const Camera& camera, const Surface& surface, const Box& area, double softness,
             Distance distance, Colouring tint) {
    const Box box = area.Left < area.Right ? Seen(camera, surface, area) : Everything();
    Apply(box, [&](Vec2 p, Tint below) {
      Vec2 at;
      Vec2 right;
      Vec2 down;
      if (!camera.Meet(surface, p, at) || !camera.Meet(surface, p + Vec2{pixel_, 0}, right) ||
          !camera.Meet(surface, p + Vec2{0, pixel_}, down)) {
        return below;
      }
      const Vec2 across = right - at;
      const Vec2 along = down - at;
      const double pixel = std::sqrt(std::abs(across.X * along.Y - across.Y * along.X));
      const double d = distance(at);
      const double cover = Cover(d, std::max(softness, pixel));
      return cover > 0 ? Blend(below, tint(at, d, pixel, below), cover) : below;
    });
  }

  /// A tapering line that stays right even when thinner than a pixel.
  void Stroke(Vec2 a, Vec2 b, double radiusA, double radiusB, Tint tint);

  /// Lays light over a spot, fading out over `radius`.
  void Glow(Vec2 centre, double radius, Tint light);

  /// Gaussian blur, `sigma` in design units.
  void Blur(double sigma);

  /// The finished picture: a lens that darkens its corners, grain, and a JPEG.
  Bytes Develop(double grain, std::uint64_t seed) const;

 private:
  int Index(double coordinate, double origin, int rounding, int limit) const;
  Vec2 Centre(int column, int row) const {
    return {left_ + (column + 0.5) * pixel_, top_ + (row + 0.5) * pixel_};
  }
  Tint& At(int column, int row) {
    return pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(column)];
  }
  Box Seen(const Camera& camera, const Surface& surface, const Box& area) const;

  int width_;
  int height_;
  double pixel_;
  double left_;
  double top_;
  std::vector<Tint> pixels_;
};

}  // namespace tessa::tools
