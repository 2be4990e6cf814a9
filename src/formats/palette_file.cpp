#include "formats/palette_file.h"

#include <algorithm>
#include <string>

namespace tessa {

void DecodePaletteFile(ByteSpan file, std::span<ColourTable> tables, Problems& faults) {
  ByteReader reader(file);
  for (ColourTable& table : tables.first(std::min(tables.size(), kStoredPalettes))) {
    for (Colour& colour : table) {
      if (reader.Remaining() < 4) {
        faults.push_back({ProblemKind::kTruncated, file.size(), "palette.dta",
                          "the palette file has " + std::to_string(file.size()) + " of " +
                              std::to_string(kPaletteFileSize) + " bytes",
                          false});
        return;
      }
      colour = reader.U32Le();
    }
  }
}

}  // namespace tessa
