#include "bench_support.h"
#include "open/load_steps.h"

namespace tessa {
namespace {

/// A change of range: from the temperature grid to the indices in the buffer.
void Render(benchmark::State& state) {
  const auto width = static_cast<int>(state.range(0));
  const auto height = static_cast<int>(state.range(1));
  Session session(NoFolder());
  Progress progress;
  OpenImage& image = session.Image;
  image.ImageKind = KindSit;
  session.Buffers.Picbuf1.CreateBuffer(0, height, width, 8);
  TakeBufferSize(session.Buffers.Picbuf1, image);
  image.TempGrid.Allocate(width, height);
  image.RowBuffers.Allocate(height, width);
  std::uint32_t random = 1;
  for (float& cell : image.TempGrid.Cells()) {
    random = random * 1664525U + 1013904223U;
    cell = static_cast<float>(random >> 16) / 1000.0F - 20.0F;
  }
  const RenderPieces pieces = PiecesForRendering(session, progress);
  float shift = 0.0F;
  for (auto _ : state) {
    float lo = -11.3F + shift;
    float hi = 37.9F + shift;
    shift = shift == 0.0F ? 0.3F : 0.0F;
    RenderRowsSit(lo, hi, pieces);
    benchmark::DoNotOptimize(session.Buffers.Picbuf1.Pixels().data());
  }
  PerPixel(state, static_cast<double>(width) * height);
}
BENCHMARK(Render)
    ->Args({320, 240})
    ->Args({640, 480})
    ->Args({1500, 1200})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessa
