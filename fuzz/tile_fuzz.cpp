#include <array>
#include <string>

#include "browser/tile.h"
#include "browser/tile_picture.h"
#include "session_input.h"

using tessa::fuzz::Require;

/// The first byte picks the ending, the others are the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::array<const char*, 9> kEndings = {"rti", "bmp", "txi", "tmp", "sit",
                                                          "bin", "tif", "jpg", "xyz"};
  if (size == 0) {
    return 0;
  }
  const std::string name = std::string("tile.") + kEndings[data[0] % kEndings.size()];
  const QString path = tessa::fuzz::WriteInput(name.c_str(), {data + 1, size - 1});
  tessa::Tile tile = tessa::DecodeTile(path, tessa::EmptySound::kRemove);
  QFile::remove(path);

  tessa::LoadedPicture& picture = tile.Picture;
  Require(tile.FullWidth == picture.Width && tile.FullHeight == picture.Height,
          "the size told is that of the picture");
  const bool hasPicture = picture.Width > 0;
  Require(hasPicture == (picture.Height > 0), "no picture has one side alone");
  Require(!hasPicture ||
              (picture.Depth == 8 && picture.Stride >= static_cast<std::size_t>(picture.Width) &&
               picture.Pixels.size() >= picture.Stride * static_cast<std::size_t>(picture.Height)),
          "a picture has all of its indices");
  Require(!hasPicture || tessa::FindNoImage(tile.Faults) == nullptr,
          "what costs the image leaves no picture");
  Require(tile.Comment.size() <= 832 && tile.Memo.size() <= 20, "texts fit their fields");
  Require((tile.Sound == tessa::SoundKind::kNone) == tile.SoundReference.isEmpty(),
          "a note has a reference");
  tessa::fuzz::RequireGoodReports(tile.Faults, size - 1);
  if (hasPicture) {
    constexpr int kSide = 64;
    tessa::ShrinkPicture(kSide, picture);
    Require(picture.Width <= kSide && picture.Height <= kSide, "a shrunk picture fits");
    const QSize fitted = tessa::FittedImage(picture, {}, {kSide, kSide / 2}).size();
    Require(fitted.width() > 0 && fitted.height() > 0 && fitted.width() <= kSide &&
                fitted.height() <= kSide / 2,
            "a fitted picture fits");
  }
  return 0;
}
