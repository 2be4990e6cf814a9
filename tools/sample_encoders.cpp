#include "sample_encoders.h"

#include <QBuffer>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "formats/bmp.h"
#include "formats/fixed32.h"
#include "formats/sit.h"
#include "view/picbuf.h"

namespace tessa::tools {
namespace {

/// What the field will say once it is written.
double AsFixed32(double value) {
  const Fixed32Parts parts = EncodeFixed32(value);
  return DecodeFixed32(parts.Whole, parts.Fraction);
}

/// The temperature below which `share` of the pixels lie.
double Percentile(const Scene& scene, double share) {
  std::vector<float> sorted = scene.Celsius;
  const auto at = static_cast<std::ptrdiff_t>(share * static_cast<double>(sorted.size() - 1));
  std::nth_element(sorted.begin(), sorted.begin() + at, sorted.end());
  return static_cast<double>(sorted[static_cast<std::size_t>(at)]);
}

}  // namespace

Bytes SceneAsSit(const Scene& source, const SampleFacts& facts) {
  const Scene scene = Resample(source, kSitWidth, kSitHeight);
  const auto [low, high] = std::minmax_element(scene.Celsius.begin(), scene.Celsius.end());
  const double middle = (static_cast<double>(*low) + static_cast<double>(*high)) / 2.0;
  SitFields fields;
  fields.DateText = facts.DateText;
  fields.TimeText = facts.TimeText;
  fields.Comment = facts.Comment;
  fields.Memo = facts.Memo;
  fields.EmissivityX100 = static_cast<std::int16_t>(std::lround(facts.Emissivity * 100.0));
  fields.RangeLow = facts.RangeLow;
  fields.RangeHigh = facts.RangeHigh;
  // A whole number of degrees in the middle of the counts; hundredths unless the span is too wide.
  fields.Offset = std::round(middle);
  const double reach = std::max(static_cast<double>(*high) - fields.Offset,
                                fields.Offset - static_cast<double>(*low));
  fields.Gain = AsFixed32(std::max(0.01, reach / 32000.0));
  if (fields.Offset < 0.0 && fields.Offset > -1.0) {
    fields.Offset = 0.0;
  }
  constexpr double kOutliers = 0.005;
  const double scaleLow = std::floor(Percentile(scene, kOutliers));
  const double scaleHigh = std::ceil(Percentile(scene, 1.0 - kOutliers));
  fields.ScaleCenter = AsFixed32((scaleLow + scaleHigh) / 2.0);
  fields.ScaleStep = AsFixed32(std::max(scaleHigh - scaleLow, 1.0) / 8.0);
  fields.Counts.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    const double count = std::round((static_cast<double>(celsius) - fields.Offset) / fields.Gain);
    fields.Counts.push_back(static_cast<std::int16_t>(std::clamp(count, -32768.0, 32767.0)));
  }
  return EncodeSit(fields);
}

Bytes SceneAsPicture(const Scene& scene, const std::string& ending) {
  const auto [low, high] = std::minmax_element(scene.Celsius.begin(), scene.Celsius.end());
  const double span = std::max(static_cast<double>(*high) - static_cast<double>(*low), 1e-6);
  std::vector<std::uint8_t> levels;
  levels.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    const double level = (static_cast<double>(celsius) - static_cast<double>(*low)) / span * 255.0;
    levels.push_back(static_cast<std::uint8_t>(std::lround(level)));
  }
  if (ending == "bmp") {
    return EncodeBmp8(scene.Width, scene.Height, levels, static_cast<std::size_t>(scene.Width),
                      GreyPalette());
  }
  const QImage picture(levels.data(), scene.Width, scene.Height, scene.Width,
                       QImage::Format_Grayscale8);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, ending == "tif" ? "TIFF" : "JPEG", ending == "tif" ? -1 : 92)) {
    throw std::runtime_error("no picture of the ending " + ending + " can be written");
  }
  return {bytes.begin(), bytes.end()};
}

}  // namespace tessa::tools
