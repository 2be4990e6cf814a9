#pragma once

#include <string>

namespace tessa {

/// The arguments of the tool's thumbnail command.
struct ThumbnailCall {
  static constexpr int kLargestSize = 4096;

  std::string Image;
  std::string Out;
  std::string Palette = "0";
  int Size = 256;  // Longest side, pixels; 0: as large as the image, with its palette.
  bool Force = false;
};

/// Writes what a tile of the browser shows of an image as a PNG file; returns the exit status.
int RunThumbnail(const ThumbnailCall& call);

}  // namespace tessa
