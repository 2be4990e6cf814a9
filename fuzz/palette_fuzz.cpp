#include <vector>

#include "formats/palette_file.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr tessa::Colour kUntouched = 0xFACADE;
  tessa::ColourTable blank;
  blank.fill(kUntouched);
  std::vector<tessa::ColourTable> tables(tessa::kStoredPalettes + 1, blank);
  tessa::Problems faults;
  tessa::DecodePaletteFile({data, size}, tables, faults);
  tessa::fuzz::RequireGoodReports(faults, size);
  Require(faults.empty() == (size >= tessa::kPaletteFileSize), "a short file is reported");
  for (std::size_t i = 0; i < tables.size() * 256; ++i) {
    const tessa::Colour colour = tables[i / 256][i % 256];
    if (4 * i + 4 <= size && i < tessa::kStoredPalettes * 256) {
      Require((colour & 0xFF) == data[4 * i] && colour >> 24 == data[4 * i + 3],
              "colours in order");
    } else {
      Require(colour == kUntouched, "what the file does not reach keeps its value");
    }
  }
  return 0;
}
