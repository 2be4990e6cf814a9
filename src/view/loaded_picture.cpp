#include "view/loaded_picture.h"

#include <algorithm>
#include <array>

namespace tessa {

void LoadedPicture::Allocate(int width, int height, int depth) {
  const std::size_t rowBytes =
      static_cast<std::size_t>(width) * static_cast<std::size_t>(depth / 8);
  Stride = (rowBytes + 3) / 4 * 4;
  Pixels.assign(Stride * static_cast<std::size_t>(height), 0);
  Width = width;
  Height = height;
  Depth = depth;
  if (depth == 8) {
    Palette = GreyPalette();
  }
}

void ReduceRow(const std::uint8_t* from, std::size_t count, std::uint8_t* to) {
  for (std::size_t i = 0; i < count; ++i, from += 3) {
    to[i] = Luminance(from[0], from[1], from[2]);
  }
}

void SettlePalette(PictureUse use, int entries, LoadedPicture& picture) {
  constexpr auto kUpperHalf = 128;
  const bool isShort =
      entries < 256 || std::all_of(picture.Palette.begin() + kUpperHalf, picture.Palette.end(),
                                   [](Colour colour) { return colour == 0; });
  if (!isShort) {
    return;
  }
  if (use == PictureUse::kMeasured) {
    // What the file leaves out must not look like the dark end of a reversed palette.
    if (entries > 0 && entries < 256) {
      std::fill(picture.Palette.begin() + entries, picture.Palette.end(),
                picture.Palette[static_cast<std::size_t>(entries - 1)]);
    }
    return;
  }
  if (use == PictureUse::kView) {
    std::array<std::uint8_t, 256> levels{};
    std::transform(picture.Palette.begin(), picture.Palette.end(), levels.begin(),
                   [](Colour c) { return Luminance(RedOf(c), GreenOf(c), BlueOf(c)); });
    for (std::uint8_t& pixel : picture.Pixels) {
      pixel = levels[pixel];
    }
    picture.Palette = GreyPalette();
    return;
  }
  LoadedPicture colours;
  colours.Allocate(picture.Width, picture.Height, 24);
  for (int row = 0; row < picture.Height; ++row) {
    const std::uint8_t* const from = picture.Row(row);
    std::uint8_t* to = colours.Row(row);
    for (int column = 0; column < picture.Width; ++column, to += 3) {
      const Colour colour = picture.Palette[from[column]];
      to[0] = RedOf(colour);
      to[1] = GreenOf(colour);
      to[2] = BlueOf(colour);
    }
  }
  picture = std::move(colours);
}

bool CheckPictureSize(std::uint64_t width, std::uint64_t height, Problems& faults) {
  const auto refuse = [&](ProblemKind kind, const char* text) {
    faults.push_back({kind, 0, "Size", text, true});
    return false;
  };
  if (width == 0 || height == 0) {
    return refuse(ProblemKind::kBadValue, "the picture has no pixels");
  }
  if (width > kMaxPictureSide || height > kMaxPictureSide) {
    return refuse(ProblemKind::kTooLarge, "the picture has a side of more than 32767 pixels");
  }
  if (width * height > kMaxPicturePixels) {
    return refuse(ProblemKind::kTooLarge, "the picture has more than 100 million pixels");
  }
  return true;
}

}  // namespace tessa
