// Pictures: plain ones, and those that carry a temperature scale.

#include <tiffio.h>

#include <QBuffer>
#include <QImage>
#include <QTemporaryFile>
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

/// Eight bits a pixel, packed with LZW.
Bytes GreyTiff(int width, int height, std::vector<std::uint8_t>& levels) {
  QTemporaryFile file;
  TIFF* const tiff =
      file.open() ? TIFFOpen(file.fileName().toLocal8Bit().constData(), "w") : nullptr;
  if (tiff == nullptr) {
    throw std::runtime_error("there is no room for a temporary file");
  }
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  bool written = true;
  for (int row = 0; row < height; ++row) {
    std::uint8_t* const first = levels.data() + static_cast<std::size_t>(row) * width;
    written = written && TIFFWriteScanline(tiff, first, static_cast<std::uint32_t>(row)) == 1;
  }
  TIFFClose(tiff);
  if (!written) {
    throw std::runtime_error("the TIFF picture cannot be written");
  }
  const QByteArray bytes = file.readAll();
  return {bytes.begin(), bytes.end()};
}

}  // namespace

Bytes SceneAsPicture(const Scene& scene, const std::string& ending) {
  const Span line = Extremes(scene);
  if (ending == "bmp") {
    return GreyBitmap(scene, line);
  }
  std::vector<std::uint8_t> levels = Levels(scene, line);
  if (ending == "tif") {
    return GreyTiff(scene.Width, scene.Height, levels);
  }
  const QImage picture(levels.data(), scene.Width, scene.Height, scene.Width,
                       QImage::Format_Grayscale8);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, "JPEG", 92)) {
    throw std::runtime_error("no JPEG picture can be written");
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
