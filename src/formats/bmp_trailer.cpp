#include "formats/bmp_trailer.h"

namespace tessa {
namespace {

constexpr std::size_t kIndexHighAt = 10;

}  // namespace

std::optional<std::uint64_t> BmpTrailerPosition(std::uint64_t fileSize, std::int16_t distance) {
  if (distance < static_cast<std::int16_t>(kBmpTrailerSize) ||
      static_cast<std::uint64_t>(distance) > fileSize) {
    return std::nullopt;
  }
  return fileSize - static_cast<std::uint64_t>(distance);
}

BmpTrailer DecodeBmpTrailer(ByteSpan bytes) {
  ByteReader reader(bytes, kIndexHighAt);
  BmpTrailer trailer;
  trailer.IndexHigh = reader.U16Be();
  trailer.IndexLow = reader.U16Be();
  trailer.KelvinHigh = reader.U16Be();
  trailer.KelvinLow = reader.U16Be();
  return trailer;
}

Bytes EncodeBmpTrailer(const BmpTrailer& trailer) {
  ByteWriter writer;
  writer.PadTo(kIndexHighAt);
  writer.U16Be(trailer.IndexHigh);
  writer.U16Be(trailer.IndexLow);
  writer.U16Be(trailer.KelvinHigh);
  writer.U16Be(trailer.KelvinLow);
  return writer.Take();
}

}  // namespace tessa
