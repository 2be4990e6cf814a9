#pragma once

#include <QString>
#include <array>
#include <string_view>

#include "core/application_folder.h"
#include "core/open_image.h"
#include "core/view_state.h"
#include "formats/bmp.h"
#include "view/view_buffers.h"

namespace tessa {

inline constexpr int kPaletteCount = 19;
inline constexpr int kOfferedPalettes = 18;

/// Names by position. The last, a copy of the first made when the file is read, is never offered.
inline constexpr std::array<std::string_view, kPaletteCount> PaletteNames = {
    "GRAY SCALE", "TESSASCAN", "SHINE",     "RAIN4402", "RAIN",       "PRISM2", "SATURN",
    "BRIGHTNESS", "FINE",      "HOT METAL", "HOT IRON", "HOT IRON 2", "FIRE",   "RAINBOW",
    "GREYRAI2",   "GREYRAI3",  "GREYRAI4",  "MEDICAL1", "ISOTHERM"};

/// The palettes of a session. Reversing one changes the table itself, so that it stays reversed
/// until the program ends.
struct Palettes {
  std::array<ColourTable, kPaletteCount> PaletteTable{};
  int PaletteIndex = 0;
  ColourTable CurrentPalette{};
  ColourTable CurrentPaletteCopy{};
};

/// Fills the palette list and reads palette.dta. A short or missing file leaves the rest of the
/// table as it was; `faults` then says so.
void LoadPalettes(Palettes& palettes, ViewState& view, const ApplicationFolder& folder,
                  Problems& faults);

/// Refills the palette list with what is offered; the selected position (0 if none) stays.
void FillPaletteList(ViewState& view);

/// The palette number of a name, without regard to case, or of a number's text; -1 for neither.
int FindPalette(const QString& nameOrNumber);

/// Makes palette `index` the one in use, without touching any buffer.
void UsePalette(Palettes& palettes, int index);

void ApplyPalette(Picbuf& buffer, const ColourTable& table);

/// The user selected an entry of the palette list (or the program did on the user's behalf).
/// With no image open nothing but the selection changes.
void SelectPalette(int listPosition, const OpenImage& image, ViewState& view, Palettes& palettes,
                   ViewBuffers& buffers);

/// Black Hot / White Hot: reverses the selected palette and shows it.
void ReversePalette(const OpenImage& image, ViewState& view, Palettes& palettes,
                    ViewBuffers& buffers);

/// Swaps entry i and 255 - i of one palette in the table.
void ReverseTable(ColourTable& table);

}  // namespace tessa
