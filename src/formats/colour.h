#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tessa {

/// A colour as the palettes of this program hold it: red in the low byte, then green, then blue.
using Colour = std::uint32_t;
using ColourTable = std::array<Colour, 256>;

constexpr Colour Rgb(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  return static_cast<Colour>(red | green << 8 | blue << 16);
}
constexpr std::uint8_t RedOf(Colour colour) {
  return static_cast<std::uint8_t>(colour);
}
constexpr std::uint8_t GreenOf(Colour colour) {
  return static_cast<std::uint8_t>(colour >> 8);
}
constexpr std::uint8_t BlueOf(Colour colour) {
  return static_cast<std::uint8_t>(colour >> 16);
}

/// Entry i is the grey of level i.
constexpr ColourTable GreyPalette() {
  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto level = static_cast<std::uint8_t>(i);
    table[i] = Rgb(level, level, level);
  }
  return table;
}

}  // namespace tessa
