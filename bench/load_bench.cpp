// Whole loads of every kind: from a path to the finished 8-bit buffer.

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <stdexcept>

#include "bench_support.h"
#include "core/file_access.h"
#include "formats/bin_raster.h"
#include "formats/bmp_trailer.h"
#include "formats/tmp_image.h"
#include "formats/txi_words.h"
#include "open/load_image.h"

namespace tessa {
namespace {

Bytes TmpFile() {
  TmpFields fields;
  fields.Counts = ScatteredCounts(kTmpWidth, kTmpHeight, 0, 6000);
  return EncodeTmp(fields);
}

Bytes LegacyTmpFile() {
  const std::vector<std::int16_t> counts = ScatteredCounts(kTmpWidth, kLegacyHeight, 0, 256);
  LegacyFields fields;
  fields.Values.assign(counts.begin(), counts.end());
  return EncodeLegacyTmp(fields);
}

Bytes BinFile() {
  return EncodeBin(ScatteredCounts(kBinWidth, kBinHeight, 2600, 600));
}

Bytes PlainBitmapFile() {
  return BitmapFile();
}

Bytes TxiFile() {
  return BitmapFile(EncodeTxiWord(-20.0).value(), EncodeTxiWord(100.0).value());
}

Bytes RadiometricBitmapFile() {
  Bytes file = BitmapFile(kBmpTrailerMark, static_cast<std::int16_t>(kBmpTrailerSize));
  const Bytes trailer = EncodeBmpTrailer({239, 16, 3232, 2632});
  file.insert(file.end(), trailer.begin(), trailer.end());
  return file;
}

Bytes PictureFile(const char* format) {
  const std::vector<std::int16_t> counts = ScatteredCounts(640, 480, 0, 256);
  const std::vector<std::uint8_t> levels(counts.begin(), counts.end());
  const QImage picture(levels.data(), 640, 480, 640, QImage::Format_Grayscale8);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, format)) {
    throw std::runtime_error(std::string(format) + " cannot be written");
  }
  return {bytes.begin(), bytes.end()};
}
Bytes TiffFile() {
  return PictureFile("TIFF");
}
Bytes JpegFile() {
  return PictureFile("JPEG");
}

/// Eight frames, all of which are read by the load.
Bytes Snapshot8Frames() {
  return SnapshotFile(8);
}
Bytes Container16File() {
  return ContainerFile(16);
}
Bytes Container8File() {
  return ContainerFile(8);
}

void LoadFile(benchmark::State& state, const char* name, Bytes (*make)()) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QString::fromLatin1(name));
  WriteWholeFile(path, make(), Overwrite::kReplace);
  Session session(NoFolder());
  Progress progress;
  SetCurrentFile(session.Image, path);
  for (auto _ : state) {
    LoadImageFile(session, progress);
    benchmark::DoNotOptimize(session.Buffers.Picbuf1.Pixels().data());
    // A raster without a header changes the name that the kind is told by.
    state.PauseTiming();
    SetCurrentFile(session.Image, path);
    state.ResumeTiming();
  }
  if (FindNoImage(session.Faults) != nullptr) {
    throw std::runtime_error(std::string(name) + " was not loaded");
  }
  PerPixel(state, static_cast<double>(session.Image.ImageWidth) * session.Image.ImageHeight);
}
BENCHMARK_CAPTURE(LoadFile, Sit, "a.sit", SitFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Tmp, "a.tmp", TmpFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, LegacyTmp, "a.tmp", LegacyTmpFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Bin, "a.bin", BinFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Txi, "a.txi", TxiFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Bmp, "a.bmp", PlainBitmapFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, RadiometricBmp, "a.bmp", RadiometricBitmapFile)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Tiff, "a.tif", TiffFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Jpeg, "a.jpg", JpegFile)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Snapshot, "a.rti", Snapshot8Frames)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Sequence16, "a.rti", Container16File)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadFile, Sequence8, "a.rti", Container8File)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessa
