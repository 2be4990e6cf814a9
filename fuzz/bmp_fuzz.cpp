#include "formats/bmp.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tessa::BmpPicture picture = tessa::DecodeBmp({data, size});
  tessa::fuzz::RequireGoodReports(picture.Faults, size);
  const auto width = static_cast<std::size_t>(picture.Width);
  const auto height = static_cast<std::size_t>(picture.Height);
  const std::size_t rowSize = width * static_cast<std::size_t>(picture.Depth) / 8;
  Require(picture.Pixels.size() == rowSize * height, "as many pixels as the size says");
  Require(width * height <= tessa::kMaxPicturePixels, "pictures are bounded");
  Require(picture.Pixels.capacity() <= rowSize * height, "no memory beyond the picture");
  const bool refused = tessa::FindNoImage(picture.Faults) != nullptr;
  Require(refused == picture.Pixels.empty(), "a picture or a reason");
  if (refused || picture.Pixels.size() > std::size_t{1} << 16) {
    return 0;
  }
  Require(width <= tessa::kMaxPictureSide && height <= tessa::kMaxPictureSide, "sides fit");
  Require(picture.Depth == 8 || picture.Depth == 24, "indices or colours");
  const tessa::Bytes file =
      picture.Depth == 8
          ? tessa::EncodeBmp8(picture.Width, picture.Height, picture.Pixels, rowSize,
                              picture.Palette)
          : tessa::EncodeBmp24(picture.Width, picture.Height, picture.Pixels, rowSize);
  const tessa::BmpPicture again = tessa::DecodeBmp(file);
  Require(again.Faults.empty() && again.Pixels == picture.Pixels, "pixels survive a round trip");
  Require(picture.Depth == 24 || again.Palette == picture.Palette, "so does the palette");
  return 0;
}
