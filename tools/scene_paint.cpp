#include "scene_paint.h"

#include <array>
#include <limits>
#include <numbers>

namespace tessa::tools {
namespace {

/// A well mixed value in -1..1 for a lattice point.
double Lattice(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8da6b343U ^
                    static_cast<std::uint32_t>(y) * 0xd8163841U ^ seed * 0xcb1ab31fU;
  h ^= h >> 15;
  h *= 0x2c1b3c6dU;
  h ^= h >> 12;
  h *= 0x297a2d39U;
  h ^= h >> 15;
  return static_cast<double>(h) / 2147483647.5 - 1.0;
}

}  // namespace

Vec2 Rotate(Vec2 p, double radians) {
  const double c = std::cos(radians);
  const double s = std::sin(radians);
  return {c * p.X - s * p.Y, s * p.X + c * p.Y};
}

Vec3 Cross(Vec3 a, Vec3 b) {
  return {a.Y * b.Z - a.Z * b.Y, a.Z * b.X - a.X * b.Z, a.X * b.Y - a.Y * b.X};
}

Vec3 Unit(Vec3 a) {
  return a * (1.0 / std::sqrt(Dot(a, a)));
}

std::uint64_t Random::Next() {
  state_ += 0x9e3779b97f4a7c15ULL;
  std::uint64_t z = state_;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
  return z ^ (z >> 31);
}

double Random::Uniform() {
  return static_cast<double>(Next() >> 11) * 0x1.0p-53;
}

double Random::Normal() {
  if (hasSpare_) {
    hasSpare_ = false;
    return spare_;
  }
  const double radius = std::sqrt(-2.0 * std::log(1.0 - Uniform()));
  const double angle = 2.0 * std::numbers::pi * Uniform();
  spare_ = radius * std::sin(angle);
  hasSpare_ = true;
  return radius * std::cos(angle);
}

double Smooth(double from, double to, double x) {
  const double t = Clamp01((x - from) / (to - from));
  return t * t * (3 - 2 * t);
}

double Bell(double x, double width) {
  const double t = x / width;
  return std::abs(t) > 4 ? 0.0 : std::exp(-0.5 * t * t);
}

double Cover(double distance, double softness) {
  if (distance >= softness) {
    return 0;
  }
  // Smooth rather than linear: the ramp is a little wider than the pixel but has no kinks, which
  // is how an edge comes through a lens.
  return Smooth(0.75 * softness, -0.75 * softness, distance);
}

double Noise(double x, double y, std::uint32_t seed) {
  const double floorX = std::floor(x);
  const double floorY = std::floor(y);
  const auto column = static_cast<std::int32_t>(floorX);
  const auto row = static_cast<std::int32_t>(floorY);
  double tx = x - floorX;
  double ty = y - floorY;
  tx = tx * tx * tx * (tx * (6 * tx - 15) + 10);
  ty = ty * ty * ty * (ty * (6 * ty - 15) + 10);
  return Mix(Mix(Lattice(column, row, seed), Lattice(column + 1, row, seed), tx),
             Mix(Lattice(column, row + 1, seed), Lattice(column + 1, row + 1, seed), tx), ty);
}

double Fractal(double x, double y, int octaves, double pixel, std::uint32_t seed) {
  double sum = 0;
  double weight = 0.62;
  for (int octave = 0; octave < octaves; ++octave) {
    const double visible = Clamp01(2.0 - 2.0 * pixel);
    if (visible <= 0) {
      break;
    }
    sum += weight * visible * Noise(x, y, seed + static_cast<std::uint32_t>(octave));
    // Turned and shifted from octave to octave, so that the lattices do not line up.
    const double turned = 1.66 * x - 1.12 * y + 17.3;
    y = 1.12 * x + 1.66 * y - 5.9;
    x = turned;
    pixel *= 2;
    weight *= 0.55;
  }
  return sum;
}

double Grooves(double x, double period, double width, double pixel) {
  const double visible = Clamp01(1.6 - 3.2 * pixel / period);
  if (visible <= 0) {
    return 0;
  }
  const double offset = x - period * std::round(x / period);
  // Widened by the pixel, and fainter in proportion: the same heat over more area.
  const double spread = std::sqrt(width * width + 0.16 * pixel * pixel);
  return visible * width / spread * Bell(offset, spread);
}

double BoxDistance(Vec2 p, Vec2 centre, Vec2 half, double radius) {
  const Vec2 q{std::abs(p.X - centre.X) - half.X + radius,
               std::abs(p.Y - centre.Y) - half.Y + radius};
  return Length({std::max(q.X, 0.0), std::max(q.Y, 0.0)}) + std::min(std::max(q.X, q.Y), 0.0) -
         radius;
}

double EllipseDistance(Vec2 p, Vec2 centre, Vec2 half) {
  const Vec2 q = p - centre;
  const Vec2 scaled{q.X / half.X, q.Y / half.Y};
  const Vec2 gradient{scaled.X / half.X, scaled.Y / half.Y};
  const double k0 = Length(scaled);
  const double k1 = Length(gradient);
  // First order about the edge, which is all the edge's cover needs.
  return k1 < 1e-9 ? -std::min(half.X, half.Y) : k0 * (k0 - 1.0) / k1;
}

double CapsuleDistance(Vec2 p, Vec2 a, Vec2 b, double radiusA, double radiusB) {
  const Vec2 ab = b - a;
  const double t = Clamp01(Dot(p - a, ab) / std::max(Dot(ab, ab), 1e-12));
  return Length(p - a - ab * t) - Mix(radiusA, radiusB, t);
}

double PolygonDistance(Vec2 p, std::span<const Vec2> corners) {
  double nearest = std::numeric_limits<double>::max();
  bool inside = false;
  for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
    const Vec2 edge = corners[j] - corners[i];
    const Vec2 w = p - corners[i];
    const double t = Clamp01(Dot(w, edge) / std::max(Dot(edge, edge), 1e-12));
    const Vec2 away = w - edge * t;
    nearest = std::min(nearest, Dot(away, away));
    if ((corners[i].Y > p.Y) != (corners[j].Y > p.Y) &&
        p.X < corners[i].X + edge.X * (p.Y - corners[i].Y) / edge.Y) {
      inside = !inside;
    }
  }
  return inside ? -std::sqrt(nearest) : std::sqrt(nearest);
}

double SmoothUnion(double a, double b, double roundness) {
  const double h = std::max(roundness - std::abs(a - b), 0.0) / roundness;
  return std::min(a, b) - 0.25 * roundness * h * h;
}

Box Around(std::span<const Vec2> points, double margin) {
  Box box{points[0].X, points[0].Y, points[0].X, points[0].Y};
  for (const Vec2 p : points) {
    box = {std::min(box.Left, p.X), std::min(box.Top, p.Y), std::max(box.Right, p.X),
           std::max(box.Bottom, p.Y)};
  }
  return {box.Left - margin, box.Top - margin, box.Right + margin, box.Bottom + margin};
}

Canvas::Canvas(int width, int height, double designWidth, double designHeight)
    : scene_{width, height,
             std::vector<float>(static_cast<std::size_t>(width) *
                                static_cast<std::size_t>(height))},
      pixel_(std::min(designWidth / width, designHeight / height)),
      left_(0.5 * (designWidth - pixel_ * width)),
      top_(0.5 * (designHeight - pixel_ * height)) {}

double Canvas::Value(Vec2 p) {
  return static_cast<double>(At(std::min(Index(p.X, left_, 0, scene_.Width), scene_.Width - 1),
                                std::min(Index(p.Y, top_, 0, scene_.Height), scene_.Height - 1)));
}

Box Canvas::Everything() const {
  return {left_, top_, left_ + pixel_ * scene_.Width, top_ + pixel_ * scene_.Height};
}

void Canvas::Stroke(Vec2 a, Vec2 b, double radiusA, double radiusB, double celsius,
                    double strength) {
  const double thinnest = 0.6 * pixel_;
  const double mean = 0.5 * (radiusA + radiusB);
  const double fade = std::min(1.0, mean / thinnest);
  const double widerA = std::max(radiusA, thinnest);
  const double widerB = std::max(radiusB, thinnest);
  const std::array<Vec2, 2> ends{a, b};
  Paint(
      Around(ends, std::max(widerA, widerB) + pixel_), 0,
      [&](Vec2 p) { return CapsuleDistance(p, a, b, widerA, widerB); },
      [&](Vec2, double, double) { return celsius; }, fade * strength);
}

void Canvas::Blur(double sigma) {
  GaussianBlur(scene_.Celsius, scene_.Width, scene_.Height, sigma / pixel_);
}

void GaussianBlur(std::vector<float>& values, int width, int height, double sigma) {
  if (sigma < 0.05) {
    return;
  }
  const int reach = std::max(1, static_cast<int>(std::ceil(3.0 * sigma)));
  std::vector<float> kernel(static_cast<std::size_t>(reach) + 1);
  double sum = 0;
  for (int i = 0; i <= reach; ++i) {
    const double weight = std::exp(-0.5 * i * i / (sigma * sigma));
    kernel[static_cast<std::size_t>(i)] = static_cast<float>(weight);
    sum += i == 0 ? weight : 2 * weight;
  }
  for (float& weight : kernel) {
    weight = static_cast<float>(static_cast<double>(weight) / sum);
  }
  std::vector<float> blurred(values.size());
  const auto at = [width](int column, int row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(column);
  };
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      float total = kernel[0] * values[at(column, row)];
      for (int i = 1; i <= reach; ++i) {
        total += kernel[static_cast<std::size_t>(i)] *
                 (values[at(std::max(column - i, 0), row)] +
                  values[at(std::min(column + i, width - 1), row)]);
      }
      blurred[at(column, row)] = total;
    }
  }
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      values[at(column, row)] = kernel[0] * blurred[at(column, row)];
    }
    for (int i = 1; i <= reach; ++i) {
      const float weight = kernel[static_cast<std::size_t>(i)];
      const int above = std::max(row - i, 0);
      const int below = std::min(row + i, height - 1);
      for (int column = 0; column < width; ++column) {
        values[at(column, row)] +=
            weight * (blurred[at(column, above)] + blurred[at(column, below)]);
      }
    }
  }
}

Camera::Camera(Vec3 eye, Vec3 target, double focalLength, Vec2 middle)
    : eye_(eye),
      forward_(Unit(target - eye)),
      right_(Unit(Cross({0, 1, 0}, forward_))),
      up_(Cross(forward_, right_)),
      focalLength_(focalLength),
      middle_(middle) {}

Vec2 Camera::Project(Vec3 p) const {
  const Vec3 q = p - eye_;
  // Points beside or behind the camera are drawn out far beyond the picture's border.
  const double scale = focalLength_ / std::max(Dot(q, forward_), 0.05);
  return {middle_.X + scale * Dot(q, right_), middle_.Y - scale * Dot(q, up_)};
}

bool Camera::Meet(const Surface& surface, Vec2 picture, Vec2& hit) const {
  const Vec3 ray =
      forward_ * focalLength_ + right_ * (picture.X - middle_.X) + up_ * (middle_.Y - picture.Y);
  const Vec3 normal = Cross(surface.U, surface.V);
  const double slope = Dot(ray, normal);
  if (std::abs(slope) < 1e-9) {
    return false;
  }
  const Vec3 toOrigin = surface.Origin - eye_;
  const double t = Dot(toOrigin, normal) / slope;
  if (t <= 0) {
    return false;
  }
  const Vec3 q = ray * t - toOrigin;
  hit = {Dot(q, surface.U), Dot(q, surface.V)};
  return true;
}

Box Camera::PictureBox(const Surface& surface, const Box& area, double margin) const {
  std::array<Vec2, 4> corners;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const Vec3 corner = surface.Origin + surface.U * (i % 2 == 0 ? area.Left : area.Right) +
                        surface.V * (i < 2 ? area.Top : area.Bottom);
    if (Dot(corner - eye_, forward_) < 0.1) {
      // A surface that reaches past the camera has no bounds in the picture.
      constexpr double kFar = 1e6;
      return {-kFar, -kFar, kFar, kFar};
    }
    corners[i] = Project(corner);
  }
  return Around(corners, margin);
}

}  // namespace tessa::tools
