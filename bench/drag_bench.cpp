#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>

#include "bench_support.h"
#include "core/file_access.h"
#include "formats/frame_array.h"
#include "formats/sequence.h"
#include "open/session.h"
#include "view/range_actions.h"
#include "widgets/picbuf_widget.h"
#include "windows/main_window.h"
#include "windows/view_pict.h"

namespace tessa {
namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;

/// A snapshot of 640 x 480 pixels between 0 and about 60 degrees.
Bytes LargeSnapshot() {
  SnapshotFields fields;
  fields.Header.Version = 1.0F;
  fields.Header.Frames = 1;
  fields.Header.Width = kWidth;
  fields.Header.Height = kHeight;
  fields.Header.ScaleMax = 60.0F;
  fields.Header.Emissivity = 0.95F;
  fields.Frames = {EncodeFrameArray(kWidth, kHeight, ScatteredCounts(kWidth, kHeight, 2732, 600))};
  return EncodeSnapshot(fields);
}

/// One movement of a thumb with the picture following: from the slider's new value to painted
/// pixels, scale and texts.
void DragThumb(benchmark::State& state) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("drag.rti"));
  WriteWholeFile(path, LargeSnapshot(), Overwrite::kReplace);
  Session session(ApplicationFolder{folder.path(), folder.path()});
  PrepareSession(session);
  UserSettings user(folder.filePath(QStringLiteral("settings.ini")));
  MainWindow window(session, user);
  window.show();
  window.OpenFile(path);
  QCoreApplication::processEvents();
  Progress progress;
  double high = 40.0;
  for (auto _ : state) {
    high = high > 50.0 ? 40.0 : high + 0.1;
    session.Range.SetRangeValues(true, high, 10.0);
    ThumbMoving(true, PiecesForRendering(session, progress));
    window.BringIntoLine();
    window.View().repaint();
    window.View().Picture().repaint();
  }
  PerPixel(state, static_cast<double>(kWidth) * kHeight);
}
BENCHMARK(DragThumb)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessa

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
