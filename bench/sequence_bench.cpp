// Frames of snapshots and sequence containers, from the file to the picture.

#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>

#include "bench_support.h"
#include "core/file_access.h"
#include "open/load_image.h"
#include "open/show_frame.h"

namespace tessa {
namespace {

void Open(const QString& path, Session& session, Progress& progress) {
  OpenPath(path, session, progress);
  if (session.Image.FrameCount == 0) {
    throw std::runtime_error("the sequence was not opened");
  }
}

/// Another frame of a snapshot that is open: its frames are in memory.
void ShowSnapshotFrame(benchmark::State& state) {
  constexpr int kFrames = 8;
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("snapshot.rti"));
  WriteWholeFile(path, SnapshotFile(kFrames), Overwrite::kReplace);
  Session session(NoFolder());
  Progress progress;
  Open(path, session, progress);
  for (auto _ : state) {
    session.Image.CurrentFrame = session.Image.CurrentFrame % kFrames + 1;
    ShowFrame(false, session, progress);
    benchmark::DoNotOptimize(session.Buffers.Picbuf1.Pixels().data());
  }
  PerPixel(state, kFramePixels);
}
BENCHMARK(ShowSnapshotFrame)->Unit(benchmark::kMicrosecond);

/// A step to one frame of a container of 20,000 frames, most of which are holes in the file. The
/// first argument is the frame, the second the depth. Where the frame lies must not matter.
void StepContainerFrame(benchmark::State& state) {
  constexpr int kFrames = 20000;
  const auto wanted = static_cast<int>(state.range(0));
  const auto depth = static_cast<int>(state.range(1));
  const Bytes frame = ContainerFrame(depth);
  const Bytes header = ContainerStart(kFrames, depth);
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("sequence.rti"));
  {
    QFile file(path);
    const auto stride = static_cast<qint64>(frame.size());
    const auto write = [&](qint64 at, const Bytes& bytes) {
      return file.seek(at) &&
             file.write(reinterpret_cast<const char*>(bytes.data()),
                        static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size());
    };
    const auto start = static_cast<qint64>(header.size());
    if (!file.open(QIODevice::WriteOnly) || !file.resize(start + kFrames * stride) ||
        !write(0, header) || !write(start, frame) || !write(start + (wanted - 1) * stride, frame)) {
      throw std::runtime_error("the sparse sequence cannot be written");
    }
  }
  Session session(NoFolder());
  Progress progress;
  Open(path, session, progress);
  for (auto _ : state) {
    session.Image.CurrentFrame = wanted;
    if (!ShowFrame(false, session, progress)) {
      throw std::runtime_error("the frame cannot be read");
    }
    benchmark::DoNotOptimize(session.Buffers.Picbuf1.Pixels().data());
  }
  PerPixel(state, kFramePixels);
}
BENCHMARK(StepContainerFrame)
    ->ArgNames({"frame", "depth"})
    ->Args({1, 16})
    ->Args({10000, 16})
    ->Args({1, 8})
    ->Args({10000, 8})
    ->Unit(benchmark::kMicrosecond);

/// A step to a frame that lies in a file of its own.
void StepFrameFile(benchmark::State& state) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("files.rti"));
  WriteWholeFile(path, ContainerFile(16), Overwrite::kReplace);
  WriteWholeFile(FrameFilePath(path, 1), FrameArray(2), Overwrite::kReplace);
  Session session(NoFolder());
  Progress progress;
  Open(path, session, progress);
  for (auto _ : state) {
    if (!ShowFrameFromFile(session, progress)) {
      throw std::runtime_error("the frame file cannot be read");
    }
    benchmark::DoNotOptimize(session.Buffers.Picbuf1.Pixels().data());
  }
  PerPixel(state, kFramePixels);
}
BENCHMARK(StepFrameFile)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessa
