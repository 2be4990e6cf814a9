#include <vector>

#include "formats/palette_file.h"
#include "require.h"

FUZZ_ENTRY {
  constexpr Colour kUntouched = 0xFACADE;
  ColourTable blank;
  blank.fill(kUntouched);
  std::vector<ColourTable> tables(kStoredPalettes + 1, blank);
  Problems faults;
  DecodePaletteFile({data, size}, tables, faults);
  RequireGoodReports(faults, size);
  Require(faults.empty() == (size >= kPaletteFileSize), "a short file is reported");
  for (std::size_t i = 0; i < tables.size() * 256; ++i) {
    const Colour colour = tables[i / 256][i % 256];
    if (4 * i + 4 <= size && i < kStoredPalettes * 256) {
      Require((colour & 0xFF) == data[4 * i] && colour >> 24 == data[4 * i + 3],
              "colours in order");
    } else {
      Require(colour == kUntouched, "what the file does not reach keeps its value");
    }
  }
}
