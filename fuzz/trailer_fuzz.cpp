#include <algorithm>

#include "formats/bmp_trailer.h"
#include "require.h"

using tessa::fuzz::Require;

/// The first two bytes are the distance, the others the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tessa::ByteReader reader({data, size});
  const std::int16_t distance = reader.I16Le();
  const tessa::ByteSpan file = reader.Take(reader.Remaining());
  const auto position = tessa::BmpTrailerPosition(file.size(), distance);
  if (!position) {
    return 0;
  }
  Require(*position + tessa::kBmpTrailerSize <= file.size(), "the trailer lies in the file");
  const tessa::ByteSpan bytes =
      file.subspan(static_cast<std::size_t>(*position), tessa::kBmpTrailerSize);
  const tessa::Bytes again = tessa::EncodeBmpTrailer(tessa::DecodeBmpTrailer(bytes));
  Require(std::equal(again.begin() + 10, again.end(), bytes.begin() + 10, bytes.end()),
          "the four words survive a round trip");
  return 0;
}
