#include "formats/bmp.h"
#include "require.h"

FUZZ_ENTRY {
  const BmpPicture picture = DecodeBmp({data, size});
  RequireGoodReports(picture.Faults, size);
  const auto width = static_cast<std::size_t>(picture.Width);
  const auto height = static_cast<std::size_t>(picture.Height);
  const std::size_t rowSize = width * static_cast<std::size_t>(picture.Depth) / 8;
  Require(picture.Pixels.size() == rowSize * height, "as many pixels as the size says");
  Require(width * height <= kMaxPicturePixels, "pictures are bounded");
  Require(picture.Pixels.capacity() <= rowSize * height, "no memory beyond the picture");
  const bool refused = FindNoImage(picture.Faults) != nullptr;
  Require(refused == picture.Pixels.empty(), "a picture or a reason");
  if (refused || picture.Pixels.size() > std::size_t{1} << 16) {
    return;
  }
  Require(width <= kMaxPictureSide && height <= kMaxPictureSide, "sides fit");
  Require(picture.Depth == 8 || picture.Depth == 24, "indices or colours");
  const Bytes file =
      picture.Depth == 8
          ? EncodeBmp8(picture.Width, picture.Height, picture.Pixels, rowSize, picture.Palette)
          : EncodeBmp24(picture.Width, picture.Height, picture.Pixels, rowSize);
  const BmpPicture again = DecodeBmp(file);
  Require(again.Faults.empty() && again.Pixels == picture.Pixels, "pixels survive a round trip");
  Require(picture.Depth == 24 || again.Palette == picture.Palette, "so does the palette");
}
