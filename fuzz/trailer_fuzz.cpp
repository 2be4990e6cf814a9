#include <algorithm>

#include "formats/bmp_trailer.h"
#include "require.h"

/// The first two bytes are the distance, the others the file.
FUZZ_ENTRY {
  ByteReader reader({data, size});
  const std::int16_t distance = reader.I16Le();
  const ByteSpan file = reader.Take(reader.Remaining());
  const auto position = BmpTrailerPosition(file.size(), distance);
  if (!position) {
    return;
  }
  Require(*position + kBmpTrailerSize <= file.size(), "the trailer lies in the file");
  const ByteSpan bytes = file.subspan(static_cast<std::size_t>(*position), kBmpTrailerSize);
  const Bytes again = EncodeBmpTrailer(DecodeBmpTrailer(bytes));
  Require(std::equal(again.begin() + 10, again.end(), bytes.begin() + 10, bytes.end()),
          "the four words survive a round trip");
}
