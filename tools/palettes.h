#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tessa::tools {

inline constexpr std::size_t kPaletteCount = 18;
inline constexpr std::size_t kPaletteColours = 256;
inline constexpr std::size_t kPaletteFileBytes = kPaletteCount * kPaletteColours * 4;

// One colour table, entry 0 for the coldest pixel and entry 255 for the hottest. A colour is
// 0x00BBGGRR: red in the low byte, the top byte always zero.
//
// In every palette entry 0 is numerically smaller than entry 255. The viewer recognises a reversed
// palette by comparing those two integers, so a palette that broke this would always count as
// reversed.
struct NamedPalette {
  std::string_view Name;
  std::array<std::uint32_t, kPaletteColours> Colours{};
};

// All palettes in file order. The result is the same on every call and does not depend on the
// locale.
std::vector<NamedPalette> MakePalettes();

// The palettes one after another, four bytes a colour, lowest byte first, no header.
std::vector<std::uint8_t> EncodePaletteFile(std::span<const NamedPalette> palettes);

}  // namespace tessa::tools
