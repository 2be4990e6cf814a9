#pragma once

#include <tiffio.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "formats/byte_source.h"
#include "formats/problem.h"

namespace tessa {

/// What the first directory of a TIFF says about its picture.
struct TiffFacts {
  std::uint32_t Width = 0;  // As stored, before the orientation is applied.
  std::uint32_t Height = 0;
  std::uint16_t Bits = 1;
  std::uint16_t Samples = 1;  // Stored for each pixel.
  std::uint16_t Format = SAMPLEFORMAT_UINT;
  std::uint16_t Photometric = PHOTOMETRIC_MINISBLACK;
  std::uint16_t Planar = PLANARCONFIG_CONTIG;
  std::uint16_t Compression = COMPRESSION_NONE;
  std::uint16_t Orientation = ORIENTATION_TOPLEFT;
  bool Tiled = false;
  int Used = 1;  // Samples that make the picture: 1, 3 or 4.
  bool HoldsDegrees = false;
};

/// One decoder of the library over `file`. Its messages are kept, not printed.
class TiffHandle {
 public:
  explicit TiffHandle(const ByteSource& file);
  TiffHandle(const TiffHandle&) = delete;
  TiffHandle& operator=(const TiffHandle&) = delete;
  ~TiffHandle();

  /// Null when the file could not be opened.
  TIFF* Get() const { return tiff_; }
  /// The library's first complaint.
  std::string Reason() const { return state_.Message.data(); }

  struct State {
    const ByteSource* File = nullptr;
    std::uint64_t Position = 0;
    std::array<char, 400> Message{};
  };

 private:
  State state_;
  TIFF* tiff_ = nullptr;
};

/// Reads and judges the facts: every bound is checked before a pixel is decoded. False, and a
/// fault, for a picture that is not read here.
bool ReadTiffFacts(const TiffHandle& handle, const ByteSource& file, TiffFacts& facts,
                   Problems& faults);

/// The stored rows of a picture from the top, one after the other. Strips are decoded row by row,
/// tiles a row of tiles at a time, so that memory stays far below that of the picture.
class TiffRows {
 public:
  TiffRows(const ByteSource& file, const TiffFacts& facts);

  /// Decodes the row behind the last one. False when the library fails; Reason() says why.
  bool Next();
  /// The present row of sample `sample`: for planes apart its own, else all samples in turn.
  const std::uint8_t* Samples(int sample) const;
  std::string Reason() const;

 private:
  struct Plane {
    std::unique_ptr<TiffHandle> Handle;
    std::vector<std::uint8_t> Rows;  // One row, or a row of tiles.
  };
  bool ReadTiles(Plane& plane, std::uint16_t sample);

  TiffFacts facts_;
  std::vector<Plane> planes_;
  std::size_t rowBytes_ = 0;
  std::uint32_t tileWidth_ = 0;
  std::uint32_t tileHeight_ = 0;
  std::vector<std::uint8_t> tile_;
  std::int64_t row_ = -1;
};

}  // namespace tessa
