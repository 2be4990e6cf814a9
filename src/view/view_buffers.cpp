#include "view/view_buffers.h"

#include <array>
#include <numeric>
#include <vector>

namespace tessa {

void MakePaletteStrips(ViewBuffers& buffers) {
  constexpr int kEntries = 256;
  constexpr int kHorizontalHeight = 25;
  constexpr int kVerticalWidth = 30;
  std::array<std::int32_t, kEntries> ramp{};
  std::iota(ramp.begin(), ramp.end(), 0);
  buffers.PicBuf2.CreateBuffer(0, kHorizontalHeight, kEntries, 8);
  for (int row = 0; row < kHorizontalHeight; ++row) {
    buffers.PicBuf2.PutRow(ramp, row);
  }
  buffers.Picbuf7.CreateBuffer(0, kEntries, kVerticalWidth, 8);
  for (int row = 0; row < kEntries; ++row) {
    const std::vector<std::int32_t> level(kVerticalWidth, kEntries - 1 - row);
    buffers.Picbuf7.PutRow(level, row);
  }
}

}  // namespace tessa
