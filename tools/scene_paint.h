#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "scenes.h"

/// What the scenes are painted with: distance fields for shapes, value noise for texture and a
/// raster that takes soft-edged paint in coordinates independent of its resolution.
namespace tessa::tools {

struct Vec2 {
  double X = 0;
  double Y = 0;
};
inline Vec2 operator+(Vec2 a, Vec2 b) {
  return {a.X + b.X, a.Y + b.Y};
}
inline Vec2 operator-(Vec2 a, Vec2 b) {
  return {a.X - b.X, a.Y - b.Y};
}
inline Vec2 operator*(Vec2 a, double s) {
  return {a.X * s, a.Y * s};
}
inline double Dot(Vec2 a, Vec2 b) {
  return a.X * b.X + a.Y * b.Y;
}
inline double Length(Vec2 a) {
  return std::sqrt(Dot(a, a));
}
Vec2 Rotate(Vec2 p, double radians);

struct Vec3 {
  double X = 0;
  double Y = 0;
  double Z = 0;
};
inline Vec3 operator+(Vec3 a, Vec3 b) {
  return {a.X + b.X, a.Y + b.Y, a.Z + b.Z};
}
inline Vec3 operator-(Vec3 a, Vec3 b) {
  return {a.X - b.X, a.Y - b.Y, a.Z - b.Z};
}
inline Vec3 operator*(Vec3 a, double s) {
  return {a.X * s, a.Y * s, a.Z * s};
}
inline double Dot(Vec3 a, Vec3 b) {
  return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}
Vec3 Cross(Vec3 a, Vec3 b);
Vec3 Unit(Vec3 a);

/// Own generator and own distributions: the standard library's differ between implementations, and
/// the same seed has to give the same picture everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  double Uniform();  ///< 0 included to 1 excluded.
  double Uniform(double low, double high) { return low + (high - low) * Uniform(); }
  double Normal();  ///< Mean 0, standard deviation 1.

 private:
  std::uint64_t Next();

  std::uint64_t state_;
  double spare_ = 0;
  bool hasSpare_ = false;
};

inline double Mix(double a, double b, double t) {
  return a + (b - a) * t;
}
inline double Clamp01(double t) {
  return std::clamp(t, 0.0, 1.0);
}
/// 0 below `from`, 1 above `to`, smooth between; `from` may be the larger one.
double Smooth(double from, double to, double x);
/// A bell of height 1; zero beyond four widths, which spares the exponential.
double Bell(double x, double width);
/// How much of a pixel lies inside a shape, from the distance to its edge (negative inside).
double Cover(double distance, double softness);

/// Value noise between -1 and 1 with features about 1 wide.
double Noise(double x, double y, std::uint32_t seed);
/// Octaves of noise, the coarsest with features about 1 wide; those finer than `pixel` are left
/// out, as a detector averages over them. Standard deviation about 0.3.
double Fractal(double x, double y, int octaves, double pixel, std::uint32_t seed);
/// Grooves of the given period: 0 between and 1 in a groove, fading out where `pixel` is too coarse
/// to show them.
double Grooves(double x, double period, double width, double pixel);

// Distances to shapes, negative inside.
double BoxDistance(Vec2 p, Vec2 centre, Vec2 half, double radius = 0);
double EllipseDistance(Vec2 p, Vec2 centre, Vec2 half);
double CapsuleDistance(Vec2 p, Vec2 a, Vec2 b, double radiusA, double radiusB);
double PolygonDistance(Vec2 p, std::span<const Vec2> corners);
double SmoothUnion(double a, double b, double roundness);

struct Box {
  double Left = 0;
  double Top = 0;
  double Right = 0;
  double Bottom = 0;
};
Box Around(std::span<const Vec2> points, double margin);

/// The raster. Its coordinates run from 0 to `designWidth` and 0 to `designHeight`, y downwards;
/// where the aspect differs, the design is cropped about its centre.
class Canvas {
 public:
  Canvas(int width, int height, double designWidth, double designHeight);

  double Pixel() const { return pixel_; }
  int Width() const { return scene_.Width; }
  int Height() const { return scene_.Height; }
  Vec2 Centre(int column, int row) const {
    return {left_ + (column + 0.5) * pixel_, top_ + (row + 0.5) * pixel_};
  }
  float& At(int column, int row) {
    return scene_.Celsius[static_cast<std::size_t>(row) * static_cast<std::size_t>(scene_.Width) +
                          static_cast<std::size_t>(column)];
  }
  /// The temperature where a picture coordinate falls, the nearest inside for one outside.
  double Value(Vec2 p);

  /// Calls `change(point, celsius)` for each pixel of the box; what it returns replaces the value.
  template <typename Change>
  void Apply(const Box& box, Change change) {
    const int firstColumn = Index(box.Left, left_, 0, scene_.Width);
    const int lastColumn = Index(box.Right, left_, 1, scene_.Width);
    const int firstRow = Index(box.Top, top_, 0, scene_.Height);
    const int lastRow = Index(box.Bottom, top_, 1, scene_.Height);
    for (int row = firstRow; row < lastRow; ++row) {
      for (int column = firstColumn; column < lastColumn; ++column) {
        float& value = At(column, row);
        value = static_cast<float>(change(Centre(column, row), static_cast<double>(value)));
      }
    }
  }
  template <typename Change>
  void Apply(Change change) {
    Apply(Everything(), change);
  }

  /// Paints a shape: `distance(point)` gives its edge, `heat(point, distance, below)` its
  /// temperature. `softness` widens the edge beyond a pixel, `strength` 0..1 is its opacity.
  template <typename Distance, typename Heat>
  void Paint(const Box& box, double softness, Distance distance, Heat heat, double strength = 1) {
    const double edge = std::max(softness, pixel_);
    Apply(box, [&](Vec2 p, double below) {
      const double d = distance(p);
      const double cover = Cover(d, edge) * strength;
      return cover > 0 ? Mix(below, heat(p, d, below), cover) : below;
    });
  }

  /// A tapering line that stays right even when thinner than a pixel.
  void Stroke(Vec2 a, Vec2 b, double radiusA, double radiusB, double celsius, double strength = 1);

  /// Gaussian blur, `sigma` in design units.
  void Blur(double sigma);

  Box Everything() const;
  Scene Take() && { return std::move(scene_); }

 private:
  int Index(double coordinate, double origin, int rounding, int limit) const {
    const double index = std::floor((coordinate - origin) / pixel_) + rounding;
    return static_cast<int>(std::clamp(index, 0.0, static_cast<double>(limit)));
  }

  Scene scene_;
  double pixel_;
  double left_;
  double top_;
};

/// Gaussian blur of a raster in place, `sigma` in pixels, the borders continued outwards.
void GaussianBlur(std::vector<float>& values, int width, int height, double sigma);

/// A plane in space with its own coordinates: X along `U`, Y along `V`, both of unit length.
struct Surface {
  Vec3 Origin;
  Vec3 U;
  Vec3 V;
};

/// A pinhole camera. World: metres, y upwards. Picture: the canvas' design coordinates.
class Camera {
 public:
  Camera(Vec3 eye, Vec3 target, double focalLength, Vec2 middle);

  Vec2 Project(Vec3 p) const;
  Vec3 Eye() const { return eye_; }
  /// Where the sight line through a picture point meets a surface; false when it does not.
  bool Meet(const Surface& surface, Vec2 picture, Vec2& hit) const;

  /// Paints a shape lying on a surface, `area` bounding it in the surface's coordinates (Top and
  /// Bottom being its lowest and highest y). `distance(at)` and `heat(at, distance, pixel, below)`
  /// take surface coordinates, `pixel` is what a pixel covers there, in metres.
  template <typename Distance, typename Heat>
  void Paint(Canvas& canvas, const Surface& surface, const Box& area, double softness,
             Distance distance, Heat heat) const {
    canvas.Apply(PictureBox(surface, area, canvas.Pixel()), [&](Vec2 p, double below) {
      Vec2 at;
      Vec2 right;
      Vec2 down;
      const double step = canvas.Pixel();
      if (!Meet(surface, p, at) || !Meet(surface, p + Vec2{step, 0}, right) ||
          !Meet(surface, p + Vec2{0, step}, down)) {
        return below;
      }
      const Vec2 across = right - at;
      const Vec2 along = down - at;
      const double pixel = std::sqrt(std::abs(across.X * along.Y - across.Y * along.X));
      const double d = distance(at);
      const double cover = Cover(d, std::max(softness, pixel));
      return cover > 0 ? Mix(below, heat(at, d, pixel, below), cover) : below;
    });
  }

 private:
  Box PictureBox(const Surface& surface, const Box& area, double margin) const;

  Vec3 eye_;
  Vec3 forward_;
  Vec3 right_;
  Vec3 up_;
  double focalLength_;
  Vec2 middle_;
};

}  // namespace tessa::tools
