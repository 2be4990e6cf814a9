#include <unistd.h>

#include <QFile>
#include <array>
#include <cmath>

#include "open/load_image.h"
#include "require.h"

using tessa::fuzz::Require;

namespace {

/// A file name that only this process uses, in a folder that is kept in memory.
QString PathFor(const char* ending) {
  return QStringLiteral("/dev/shm/tessa-fuzz-%1.").arg(::getpid()) + QLatin1String(ending);
}

void WriteInput(const QString& path, const std::uint8_t* data, std::size_t size) {
  QFile file(path);
  Require(file.open(QIODevice::WriteOnly), "the input can be written");
  file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
}

}  // namespace

/// The first byte picks the ending, the others are the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::array<const char*, 9> kEndings = {"rti", "bmp", "txi", "tmp", "sit",
                                                          "bin", "tif", "jpg", "xyz"};
  if (size == 0) {
    return 0;
  }
  const QString path = PathFor(kEndings[data[0] % kEndings.size()]);
  WriteInput(path, data + 1, size - 1);
  const QString folder = QStringLiteral("/dev/shm");
  tessa::Session session(tessa::ApplicationFolder{folder, folder});
  session.ExtractsAttachments = size % 2 == 0;
  tessa::Progress progress;
  tessa::OpenPath(path, session, progress);
  QFile::remove(path);

  const tessa::OpenImage& image = session.Image;
  const tessa::Picbuf& picture = session.Buffers.Picbuf1;
  Require(session.View.PictureVisible && !image.ImageBusy, "a load comes to its end");
  Require(image.ImageWidth == picture.BufWidth() && image.ImageHeight == picture.BufHeight(),
          "the sizes are the buffer's");
  if (image.HasTemperature) {
    Require(
        image.TempGrid.Width() == image.ImageWidth && image.TempGrid.Height() == image.ImageHeight,
        "the grid has the picture's size");
  }
  Require(image.CurrentFilePath == path, "the path stays what it was");
  for (int row = 0; row < image.RowBuffers.Rows(); ++row) {
    for (const std::int32_t cell : std::as_const(image.RowBuffers).Row(row)) {
      Require(cell >= 0 && cell <= 255, "cells are palette indices");
    }
  }
  tessa::fuzz::RequireGoodReports(session.Faults, size - 1);
  return 0;
}
