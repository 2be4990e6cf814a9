#include "photo_paint.h"

#include <QBuffer>
#include <QImage>
#include <stdexcept>

namespace tessa::tools {

Photo::Photo(int width, int height, double designWidth, double designHeight)
    : width_(width),
      height_(height),
      pixel_(std::min(designWidth / width, designHeight / height)),
      left_(0.5 * (designWidth - pixel_ * width)),
      top_(0.5 * (designHeight - pixel_ * height)),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

Box Photo::Everything() const {
  return {left_, top_, left_ + pixel_ * width_, top_ + pixel_ * height_};
}

int Photo::Index(double coordinate, double origin, int rounding, int limit) const {
  const double index = std::floor((coordinate - origin) / pixel_) + rounding;
  return static_cast<int>(std::clamp(index, 0.0, static_cast<double>(limit)));
}

Box Photo::Seen(const Camera& camera, const Surface& surface, const Box& area) const {
  std::array<Vec2, 4> corners;
  std::size_t corner = 0;
  for (const double x : {area.Left, area.Right}) {
    for (const double y : {area.Top, area.Bottom}) {
      corners[corner++] = camera.Project(surface.Origin + surface.U * x + surface.V * y);
    }
  }
  return Around(corners, 2 * pixel_);
}

void Photo::Stroke(Vec2 a, Vec2 b, double radiusA, double radiusB, Tint tint) {
  const double thinnest = 0.5 * pixel_;
  const double wideA = std::max(radiusA, thinnest);
  const double wideB = std::max(radiusB, thinnest);
  const std::array<Vec2, 2> ends{a, b};
  Paint(
      Around(ends, std::max(wideA, wideB) + pixel_), 0,
      [&](Vec2 p) { return CapsuleDistance(p, a, b, wideA, wideB); },
      [&](Vec2, double, Tint) { return tint; },
      std::min(1.0, (radiusA + radiusB) / (wideA + wideB)));
}

void Photo::Glow(Vec2 centre, double radius, Tint light) {
  const std::array<Vec2, 1> spot{centre};
  Apply(Around(spot, 4 * radius),
        [&](Vec2 p, Tint below) { return below + light * Bell(Length(p - centre), radius); });
}

void Photo::Blur(double sigma) {
  std::vector<float> plane(pixels_.size());
  for (double Tint::*channel : {&Tint::X, &Tint::Y, &Tint::Z}) {
    for (std::size_t i = 0; i < plane.size(); ++i) {
      plane[i] = static_cast<float>(pixels_[i].*channel);
    }
    GaussianBlur(plane, width_, height_, sigma / pixel_);
    for (std::size_t i = 0; i < plane.size(); ++i) {
      pixels_[i].*channel = static_cast<double>(plane[i]);
    }
  }
}

Bytes Photo::Develop(double grain, std::uint64_t seed) const {
  constexpr int kQuality = 90;
  Random random(seed);
  QImage picture(width_, height_, QImage::Format_RGB888);
  auto pixel = pixels_.begin();
  for (int row = 0; row < height_; ++row) {
    std::uint8_t* out = picture.scanLine(row);
    const double y = (2.0 * row + 1.0) / height_ - 1.0;
    for (int column = 0; column < width_; ++column, ++pixel) {
      const double x = (2.0 * column + 1.0) / width_ - 1.0;
      const double lens = 1.0 - 0.11 * (x * x + y * y);
      // Grain of the sensor: mostly brightness, a little colour.
      const double common = grain * random.Normal();
      for (const double channel : {pixel->X, pixel->Y, pixel->Z}) {
        const double level = channel * lens + common + 0.5 * grain * random.Normal();
        *out++ = static_cast<std::uint8_t>(std::lround(255.0 * Clamp01(level)));
      }
    }
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, "JPEG", kQuality)) {
    throw std::runtime_error("no JPEG can be written");
  }
  return {bytes.begin(), bytes.end()};
}

}  // namespace tessa::tools
