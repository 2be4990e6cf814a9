#include <algorithm>

#include "core/file_access.h"
#include "formats/bin_raster.h"
#include "formats/kelvin.h"
#include "open/still_readers.h"

namespace tessa {

Still ReadBin(const QString& path) {
  Still still;
  still.Kind = KindSit;
  still.Grid.Allocate(kBinWidth, kBinHeight);
  still.Extremes = {9999.9F, -9999.9F};
  still.CalibratedRange = {-40.0F, 120.0F};
  if (const auto file = ReadFileStart(path, kBinDecodeSize, still.Faults)) {
    still.FileSize = file->Size;
    BinImage bin = DecodeBin(file->Data, file->Size);
    still.Faults.insert(still.Faults.end(), bin.Faults.begin(), bin.Faults.end());
    const std::span<float> cells = still.Grid.Cells();
    for (std::size_t i = 0; i < bin.Raster.Present; ++i) {
      cells[i] = static_cast<float>(TenthsOfKelvinToCelsius(bin.Raster.Counts[i]));
      still.Extremes.Minimum = std::min(still.Extremes.Minimum, cells[i]);
      still.Extremes.Maximum = std::max(still.Extremes.Maximum, cells[i]);
    }
  }
  still.StoredScale = still.Extremes;
  return still;
}

}  // namespace tessa
