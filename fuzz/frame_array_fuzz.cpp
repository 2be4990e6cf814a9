#include <algorithm>

#include "formats/frame_array.h"
#include "require.h"

/// The first two bytes are the size that is asked for, the others the array.
FUZZ_ENTRY {
  ByteReader reader({data, size});
  const int width = reader.U8();
  const int height = reader.U8();
  const ByteSpan array = reader.Take(reader.Remaining());
  const FrameArrayHeader header = ReadFrameArrayHeader(array);
  const auto frame = DecodeFrameArray(array, width, height);
  if (!frame) {
    return;
  }
  Require(header.Describes(width, height), "only an array of the asked size is a frame");
  Require(header.ByteSize() <= array.size(), "a frame lies in its bytes");
  Require(frame->Pixels.size() == static_cast<std::size_t>(width * height),
          "it has all its pixels");
  const Bytes again = EncodeFrameArray(width, height, frame->Pixels, header.BytesPerElement);
  Require(again.size() == header.ByteSize(), "the size is that of the elements");
  Require(std::equal(again.begin() + kFrameArrayHeaderSize, again.end(),
                     array.begin() + kFrameArrayHeaderSize),
          "elements survive a round trip");
}
