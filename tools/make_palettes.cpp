// Writes the viewer's palette file, or a picture of all the palettes for looking at.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "palettes.h"

namespace tessa::tools {
namespace {

struct Scene {
  std::size_t Width = 0;
  std::size_t Height = 0;
  std::vector<float> Degrees;  // row by row from the top
};

// A picture of 8-bit RGB, red first in memory as the PPM format has it.
class Picture {
 public:
  Picture(std::size_t width, std::size_t height)
      : width_(width), height_(height), bytes_(width * height * 3, 0x30) {}

  void Set(std::size_t x, std::size_t y, std::uint32_t colour) {
    const std::size_t at = (y * width_ + x) * 3;
    for (unsigned channel = 0; channel < 3; ++channel) {
      bytes_[at + channel] = static_cast<char>(static_cast<unsigned char>(colour >> (8 * channel)));
    }
  }

  std::string Ppm() const {
    std::string ppm = "P6\n" + std::to_string(width_) + ' ' + std::to_string(height_) + "\n255\n";
    ppm.append(bytes_.begin(), bytes_.end());
    return ppm;
  }

 private:
  std::size_t width_;
  std::size_t height_;
  std::vector<char> bytes_;
};

constexpr std::size_t kDigitScale = 3;
constexpr std::size_t kDigitPitch = 4 * kDigitScale;
constexpr std::size_t kLabelWidth = 2 * kDigitPitch + 6;
constexpr std::size_t kStripHeight = 24;
constexpr std::size_t kGap = 6;
constexpr std::size_t kColumns = 6;
constexpr std::size_t kRows = (kPaletteCount + kColumns - 1) / kColumns;

// The palette's number, two digits of three by five dots.
void DrawNumber(Picture& picture, std::size_t left, std::size_t top, std::size_t number) {
  // Rows from the top, three bits each, the leftmost dot the highest bit.
  constexpr std::uint16_t kDigits[] = {0b111101101101111, 0b010110010010111, 0b111001111100111,
                                       0b111001111001111, 0b101101111001001, 0b111100111001111,
                                       0b111100111101111, 0b111001001001001, 0b111101111101111,
                                       0b111101111001111};
  const std::size_t digits[] = {number / 10, number % 10};
  for (std::size_t d = 0; d < 2; ++d) {
    for (std::size_t y = 0; y < 5 * kDigitScale; ++y) {
      for (std::size_t x = 0; x < 3 * kDigitScale; ++x) {
        const std::size_t dot = y / kDigitScale * 3 + x / kDigitScale;
        if ((kDigits[digits[d]] >> (14 - dot) & 1) != 0) {
          picture.Set(left + d * kDigitPitch + x, top + y, 0xFFFFFF);
        }
      }
    }
  }
}

void DrawStrip(Picture& picture, std::size_t left, std::size_t top, std::size_t width,
               const NamedPalette& palette) {
  for (std::size_t x = 0; x < width; ++x) {
    for (std::size_t y = 0; y < kStripHeight; ++y) {
      picture.Set(left + x, top + y, palette.Colours[x * kPaletteColours / width]);
    }
  }
}

Picture DrawStrips(const std::vector<NamedPalette>& palettes) {
  constexpr std::size_t kWidth = 4 * kPaletteColours;
  Picture picture(kLabelWidth + kWidth + 2 * kGap, palettes.size() * (kStripHeight + kGap) + kGap);
  for (std::size_t p = 0; p < palettes.size(); ++p) {
    const std::size_t top = kGap + p * (kStripHeight + kGap);
    DrawNumber(picture, kGap, top + 4, p);
    DrawStrip(picture, kGap + kLabelWidth, top, kWidth, palettes[p]);
  }
  return picture;
}

// Palette entries for a scene: the range from the coldest to the hottest 0.2 % of the pixels, as an
// automatic scale would take it, over the whole palette.
std::vector<std::uint8_t> ScaleScene(const Scene& scene) {
  std::vector<float> sorted;
  std::copy_if(scene.Degrees.begin(), scene.Degrees.end(), std::back_inserter(sorted),
               [](float v) { return std::isfinite(v); });
  if (sorted.empty()) {
    throw std::runtime_error("the scene has no finite temperature");
  }
  std::sort(sorted.begin(), sorted.end());
  const std::size_t cut = sorted.size() / 500;
  const float low = sorted[cut];
  const float high = std::max(sorted[sorted.size() - 1 - cut], std::nextafter(low, 1e30F));
  std::vector<std::uint8_t> entries;
  entries.reserve(scene.Degrees.size());
  for (const float degrees : scene.Degrees) {
    const float part = (degrees - low) / (high - low) * 255.0F;
    entries.push_back(std::isfinite(part)
                          ? static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0F, 255.0F)))
                          : std::uint8_t{0});
  }
  return entries;
}

Picture DrawScenes(const std::vector<NamedPalette>& palettes, const Scene& scene) {
  constexpr std::size_t kWidest = 400;  // pixels of one copy; larger scenes are thinned out
  const std::size_t step = (scene.Width + kWidest - 1) / kWidest;
  const std::size_t width = (scene.Width + step - 1) / step;
  const std::size_t height = (scene.Height + step - 1) / step;
  const std::size_t cellWidth = std::max(width, kLabelWidth + 1) + kGap;
  const std::size_t cellHeight = height + kStripHeight + 2 * kGap;
  const std::vector<std::uint8_t> entries = ScaleScene(scene);
  Picture picture(kColumns * cellWidth + kGap, kRows * cellHeight + kGap);
  for (std::size_t p = 0; p < palettes.size(); ++p) {
    const std::size_t left = kGap + p % kColumns * cellWidth;
    const std::size_t top = kGap + p / kColumns * cellHeight;
    DrawNumber(picture, left, top + 4, p);
    DrawStrip(picture, left + kLabelWidth, top, cellWidth - kGap - kLabelWidth, palettes[p]);
    for (std::size_t y = 0; y < height; ++y) {
      for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t entry = entries[y * step * scene.Width + x * step];
        picture.Set(left + x, top + kStripHeight + kGap + y, palettes[p].Colours[entry]);
      }
    }
  }
  return picture;
}

std::optional<std::size_t> ParseSize(std::string_view text) {
  constexpr std::size_t kLargest = 65536;
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool complete = error == std::errc{} && end == text.data() + text.size();
  return complete && value > 0 && value <= kLargest ? std::optional(value) : std::nullopt;
}

// Reads little-endian 32-bit floats, whatever the byte order of this machine.
Scene ReadScene(const std::filesystem::path& path, std::string_view dimensions) {
  const std::size_t cross = dimensions.find('x');
  const auto width = ParseSize(dimensions.substr(0, cross));
  const auto height =
      cross == std::string_view::npos ? std::nullopt : ParseSize(dimensions.substr(cross + 1));
  if (!width || !height) {
    throw std::runtime_error("the scene's size must be given as WIDTHxHEIGHT");
  }
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (bytes.size() != *width * *height * 4) {
    throw std::runtime_error("cannot read " + path.string() + " as a scene of that size");
  }
  Scene scene{.Width = *width, .Height = *height, .Degrees = {}};
  scene.Degrees.reserve(*width * *height);
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    std::uint32_t bits = 0;
    for (unsigned i = 0; i < 4; ++i) {
      bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    }
    scene.Degrees.push_back(std::bit_cast<float>(bits));
  }
  return scene;
}

// Replaces the file in one step, so that an interrupted run leaves the old one whole.
void WriteFile(const std::filesystem::path& path, std::string_view bytes) {
  std::filesystem::path temporary = path;
  temporary += ".tmp";
  std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  std::error_code error;
  if (out) {
    std::filesystem::rename(temporary, path, error);
  }
  if (!out || error) {
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    throw std::runtime_error("cannot write " + path.string());
  }
}

int Run(int argc, char** argv) {
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  const bool sheet = !arguments.empty() && arguments[0] == "--sheet";
  const std::size_t count = arguments.size();
  if (sheet ? count != 2 && count != 4 : count != 1 || arguments[0].starts_with('-')) {
    std::fputs(
        "usage: make_palettes OUT.dta\n"
        "       make_palettes --sheet OUT.ppm [SCENE.f32 WIDTHxHEIGHT]\n",
        stderr);
    return 2;
  }
  const std::vector<NamedPalette> palettes = MakePalettes();
  if (!sheet) {
    const std::vector<std::uint8_t> bytes = EncodePaletteFile(palettes);
    WriteFile(arguments[0], std::string(bytes.begin(), bytes.end()));
  } else if (count == 2) {
    WriteFile(arguments[1], DrawStrips(palettes).Ppm());
  } else {
    WriteFile(arguments[1], DrawScenes(palettes, ReadScene(arguments[2], arguments[3])).Ppm());
  }
  return 0;
}

}  // namespace
}  // namespace tessa::tools

int main(int argc, char** argv) {
  try {
    return tessa::tools::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "make_palettes: %s\n", failure.what());
    return 1;
  }
}
