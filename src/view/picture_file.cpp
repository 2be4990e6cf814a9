#include "view/picture_file.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "core/file_access.h"
#include "core/steps.h"
#include "view/picbuf.h"

namespace tessa {
namespace {

/// Memory that a coded picture may need until it is shown: a base, and what its own size makes
/// plausible for a photograph.
constexpr std::uint64_t kPictureBase = 64ULL << 20;
constexpr std::uint64_t kPicturePerByte = 64;
constexpr std::uint64_t kBytesPerPixel = 12;

Problem NoPicture(ProblemKind kind, std::string field, std::string text) {
  return {kind, 0, std::move(field), std::move(text), true};
}

void TakeImage(const QImage& source, LoadedPicture& picture) {
  QImage image = source;
  const bool isPalette = image.format() == QImage::Format_Indexed8 ||
                         image.format() == QImage::Format_Mono ||
                         image.format() == QImage::Format_MonoLSB;
  const bool isGrey = image.format() == QImage::Format_Grayscale8;
  if (isPalette) {
    image.convertTo(QImage::Format_Indexed8);
    const QList<QRgb> colours = image.colorTable();
    for (qsizetype i = 0; i < std::min<qsizetype>(colours.size(), 256); ++i) {
      picture.Palette[static_cast<std::size_t>(i)] =
          Rgb(static_cast<std::uint8_t>(qRed(colours[i])),
              static_cast<std::uint8_t>(qGreen(colours[i])),
              static_cast<std::uint8_t>(qBlue(colours[i])));
    }
  } else if (isGrey) {
    picture.Palette = GreyPalette();
  } else {
    image.convertTo(QImage::Format_RGB888);
  }
  picture.Width = image.width();
  picture.Height = image.height();
  picture.Depth = isPalette || isGrey ? 8 : 24;
  const std::size_t rowBytes =
      static_cast<std::size_t>(picture.Width) * static_cast<std::size_t>(picture.Depth / 8);
  picture.Pixels.resize(rowBytes * static_cast<std::size_t>(picture.Height));
  for (int row = 0; row < picture.Height; ++row) {
    std::copy_n(image.constScanLine(row), rowBytes,
                picture.Pixels.data() + static_cast<std::size_t>(row) * rowBytes);
  }
}

/// True for a JPEG whose last scan has no end mark behind it. The toolkit's reader fills up such a
/// picture with grey and says nothing.
bool EndsInsideScan(ByteSpan file, std::string_view format) {
  constexpr std::array<std::uint8_t, 2> kScanStart = {0xFF, 0xDA};
  constexpr std::array<std::uint8_t, 2> kImageEnd = {0xFF, 0xD9};
  if (format != "jpeg") {
    return false;
  }
  const auto scan = std::find_end(file.begin(), file.end(), kScanStart.begin(), kScanStart.end());
  const auto end = std::find_end(file.begin(), file.end(), kImageEnd.begin(), kImageEnd.end());
  return scan != file.end() && (end == file.end() || end < scan);
}

/// What the first bytes must be, so that nothing else reaches the toolkit's reader.
bool HasSignature(ByteSpan file, std::string_view format) {
  const auto startsWith = [&](std::string_view mark) {
    return file.size() >= mark.size() &&
           std::equal(mark.begin(), mark.end(), file.begin(), [](char wanted, std::uint8_t byte) {
             return static_cast<std::uint8_t>(wanted) == byte;
           });
  };
  return format == "jpeg" ? startsWith("\xFF\xD8\xFF")
                          : startsWith(std::string_view("II\x2A\0", 4)) ||
                                startsWith(std::string_view("MM\0\x2A", 4));
}

/// Decodes through the toolkit's reader for `format` ("tiff", "jpeg").
LoadedPicture DecodeWithToolkit(const FileStart& file, const char* format, Problems& faults) {
  LoadedPicture picture;
  QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.Data.data()),
                                             static_cast<qsizetype>(file.Data.size()));
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, format);
  QImageReader::setAllocationLimit(0);  // The limits are judged below.
  reader.setAutoDetectImageFormat(false);
  const QSize size = HasSignature(file.Data, format) ? reader.size() : QSize();
  const std::string name = QString::fromLatin1(format).toUpper().toStdString();
  if (size.isEmpty()) {
    faults.push_back(NoPicture(ProblemKind::kWrongKind, "Signature",
                               "the file is no " + name + " picture that can be read"));
    return picture;
  }
  if (size.width() > kMaxPictureSide || size.height() > kMaxPictureSide) {
    faults.push_back(NoPicture(ProblemKind::kTooLarge, "Size",
                               "the picture has a side of more than 32767 pixels"));
    return picture;
  }
  const std::uint64_t needed = static_cast<std::uint64_t>(size.width()) *
                               static_cast<std::uint64_t>(size.height()) * kBytesPerPixel;
  if (needed > kPictureBase + kPicturePerByte * file.Size) {
    faults.push_back(NoPicture(ProblemKind::kTooLarge, "Size",
                               "the picture claims to be far larger than its file can justify"));
    return picture;
  }
  if (EndsInsideScan(file.Data, format)) {
    faults.push_back({ProblemKind::kTruncated, file.Size, "Pixels",
                      "the JPEG data ends early: part of the picture is missing", false});
  }
  QImage image;
  if (!reader.read(&image) || image.isNull()) {
    faults.push_back(NoPicture(
        ProblemKind::kTruncated, "Pixels",
        "the " + name + " data cannot be decoded: " + reader.errorString().toStdString()));
    return picture;
  }
  TakeImage(image, picture);
  return picture;
}

Bytes EncodeWithToolkit(const QImage& picture, const char* format, int quality) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  if (quality >= 0) {
    writer.setQuality(quality);
  }
  if (!writer.write(picture)) {
    throw StepFailure("the picture cannot be encoded: " + writer.errorString().toStdString());
  }
  return {bytes.begin(), bytes.end()};
}

}  // namespace

LoadedPicture LoadPictureFile(const QString& path, int fileType, Problems& faults) {
  LoadedPicture picture;
  const auto file = ReadFileStart(path, std::numeric_limits<std::uint64_t>::max(), faults);
  if (!file) {
    return picture;
  }
  if (fileType == Picbuf::kTiff) {
    return DecodeWithToolkit(*file, "tiff", faults);
  }
  if (fileType == Picbuf::kJpeg) {
    return DecodeWithToolkit(*file, "jpeg", faults);
  }
  BmpPicture bitmap = DecodeBmp(file->Data);
  faults.insert(faults.end(), bitmap.Faults.begin(), bitmap.Faults.end());
  picture.Width = bitmap.Width;
  picture.Height = bitmap.Height;
  picture.Depth = bitmap.Depth;
  picture.Pixels = std::move(bitmap.Pixels);
  picture.Palette = bitmap.Palette;
  return picture;
}

Bytes EncodeJpeg(const QImage& picture, int quality) {
  return EncodeWithToolkit(picture, "jpeg", quality);
}

Bytes EncodePng(const QImage& picture) {
  return EncodeWithToolkit(picture, "png", -1);
}

}  // namespace tessa
