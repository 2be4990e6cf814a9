#include "view/picture_file.h"

#include <QBuffer>
#include <QImageWriter>
#include <algorithm>

#include "core/file_access.h"
#include "core/steps.h"
#include "view/jpeg_picture.h"
#include "view/picbuf.h"
#include "view/tiff_picture.h"

namespace tessa {
namespace {

class FileSource : public ByteSource {
 public:
  explicit FileSource(const RandomFile& file) : file_(file) {}

  std::uint64_t Size() const override { return file_.Size(); }
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept override {
    return file_.ReadInto(offset, to);
  }

 private:
  const RandomFile& file_;
};

LoadedPicture LoadBmpPicture(const ByteSource& file, PictureUse use, Problems& faults) {
  BmpPicture bitmap = DecodeBmp(file);
  faults.insert(faults.end(), bitmap.Faults.begin(), bitmap.Faults.end());
  LoadedPicture picture;
  if (bitmap.Width == 0) {
    return picture;
  }
  const bool reduces = bitmap.Depth == 24 && use != PictureUse::kColours;
  picture.Allocate(bitmap.Width, bitmap.Height, reduces ? 8 : bitmap.Depth);
  const auto width = static_cast<std::size_t>(bitmap.Width);
  const std::size_t rowBytes = width * static_cast<std::size_t>(bitmap.Depth / 8);
  for (int row = 0; row < bitmap.Height; ++row) {
    const std::uint8_t* const from =
        bitmap.Pixels.data() + static_cast<std::size_t>(row) * rowBytes;
    if (reduces) {
      ReduceRow(from, width, picture.Row(row));
    } else {
      std::copy_n(from, rowBytes, picture.Row(row));
    }
  }
  if (bitmap.Depth == 8) {
    picture.Palette = bitmap.Palette;
    SettlePalette(use, bitmap.PaletteEntries, picture);
  }
  return picture;
}

}  // namespace

LoadedPicture LoadPictureFile(const QString& path, int fileType, PictureUse use, Problems& faults) {
  const auto file = RandomFile::Open(path, faults);
  if (!file) {
    return {};
  }
  if (file->Size() == 0) {
    faults.push_back({ProblemKind::kUnreadable, 0, "File", "the file is empty", true});
    return {};
  }
  const FileSource source(*file);
  switch (fileType) {
    case Picbuf::kTiff:
      return LoadTiffPicture(source, use, faults);
    case Picbuf::kJpeg:
      return LoadJpegPicture(source, use, faults);
    default:
      return LoadBmpPicture(source, use, faults);
  }
}

Bytes EncodePng(const QImage& picture, PngEffort effort) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "png");
  constexpr int kLeastEffort = 85;  // The first of nine steps; the plugin counts from 100 down.
  if (effort == PngEffort::kQuick) {
    writer.setQuality(kLeastEffort);
  }
  if (!writer.write(picture)) {
    throw StepFailure("the picture cannot be encoded: " + writer.errorString().toStdString());
  }
  return {bytes.begin(), bytes.end()};
}

}  // namespace tessa
