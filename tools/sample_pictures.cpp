// Pictures: plain ones, and those that carry a temperature scale.

#include <QBuffer>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "formats/bmp.h"
#include "formats/bmp_trailer.h"
#include "formats/kelvin.h"
#include "formats/txi_words.h"
#include "sample_encoders.h"
#include "sample_measures.h"
#include "view/picbuf.h"

namespace tessa::tools {
namespace {

Bytes GreyBitmap(const Scene& scene, const Span& line, std::int16_t reservedLow = 0,
                 std::int16_t reservedHigh = 0) {
  return EncodeBmp8(scene.Width, scene.Height, Levels(scene, line),
                    static_cast<std::size_t>(scene.Width), GreyPalette(), reservedLow,
                    reservedHigh);
}

}  // namespace

Bytes SceneAsPicture(const Scene& scene, const std::string& ending) {
  const Span line = Extremes(scene);
  if (ending == "bmp") {
    return GreyBitmap(scene, line);
  }
  const std::vector<std::uint8_t> levels = Levels(scene, line);
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

Bytes SceneAsTxi(const Scene& scene) {
  // Whole tenths around the scene.
  const Span extremes = Extremes(scene);
  const Span line{std::floor(extremes.Low * 10.0) / 10.0, std::ceil(extremes.High * 10.0) / 10.0};
  const auto low = EncodeTxiWord(line.Low);
  const auto high = EncodeTxiWord(line.High);
  if (!low || !high || line.High < 0.0) {
    throw std::runtime_error("a TXI image cannot hold a scale with these limits");
  }
  return GreyBitmap(scene, line, *low, *high);
}

Bytes SceneAsRadiometricBmp(const Scene& scene) {
  constexpr std::uint16_t kIndexLow = 16;
  constexpr std::uint16_t kIndexHigh = 239;
  const Span extremes = Extremes(scene);
  const double span = extremes.High - extremes.Low;
  const auto kelvinTenths = [&](double index) {
    return (extremes.Low + span * index / 255.0 + kKelvinOffset) * 10.0;
  };
  const double low = std::floor(kelvinTenths(kIndexLow));
  const double high = std::max(std::ceil(kelvinTenths(kIndexHigh)), low + 1.0);
  const BmpTrailer trailer{kIndexHigh, kIndexLow, static_cast<std::uint16_t>(high),
                           static_cast<std::uint16_t>(low)};
  // The line that the trailer tells, continued to both ends.
  const double step = (high - low) / 10.0 / (kIndexHigh - kIndexLow);
  const double start = low / 10.0 - kKelvinOffset - step * kIndexLow;
  Bytes file = GreyBitmap(scene, {start, start + 255.0 * step}, kBmpTrailerMark,
                          static_cast<std::int16_t>(kBmpTrailerSize));
  const Bytes end = EncodeBmpTrailer(trailer);
  file.insert(file.end(), end.begin(), end.end());
  return file;
}

}  // namespace tessa::tools
